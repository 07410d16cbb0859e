#include "pictures/PictureFormats_Global.h"

#include "frame/automation/host_picture.h"
#include "pictures/CFileCommon.h"
#include "pictures/CFilePCX.h"
#include "pictures/CFilePSD.h"
#include "pictures/CFileTGA.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace orvane {
namespace {

using test::raisedBy;

using Log = std::vector<std::string>;

/// A reader that answers as it is told and notes what it is asked.
class FakeReader final : public IFileFormat {
public:
    FakeReader(std::string name, Log& log) : name_(std::move(name)), log_(log) {}

    bool wants = true;
    Picture picture;
    std::int32_t raises = 0;

    bool Verify(WStringView fileName) override {
        EXPECT_EQ(fileName, u"file.any");
        log_.push_back(name_ + " Verify");
        return wants;
    }
    Picture LoadPicture(WStringView, const Ref<PictureInfo>& info) override {
        EXPECT_TRUE(info);
        log_.push_back(name_ + " LoadPicture");
        if (raises != 0) raise(raises);
        return picture;
    }

private:
    std::string name_;
    Log& log_;
};

TEST(IFileFormat, ThePlainClassWantsNoFileAndReadsNone) {
    IFileFormat plain;
    const auto info = make<PictureInfo>();
    info->SetInfo({5, 6, 7, {}, {}}, orvPictureTypeEx::orvPteBMP);
    EXPECT_FALSE(plain.Verify(u"file.any"));
    EXPECT_TRUE(plain.LoadPicture(u"file.any", info).isNothing());
    EXPECT_EQ(info->Width(), 5);
}

class ReaderChain : public testing::Test {
protected:
    /// Puts the fakes in place of the apartment's readers; they go with the last object.
    ReaderChain() {
        PictureFormats& formats = EnsureFormats();
        common_ = replace(formats.common, "common");
        gdiPlus_ = replace(formats.gdiPlus, "GDI+");
        psd_ = replace(formats.psd, "PSD");
        pcx_ = replace(formats.pcx, "PCX");
        tga_ = replace(formats.tga, "TGA");
    }

    FakeReader* replace(std::unique_ptr<IFileFormat>& reader, const char* name) {
        auto fake = std::make_unique<FakeReader>(name, log_);
        FakeReader* raw = fake.get();
        reader = std::move(fake);
        return raw;
    }

    Picture load() { return LoadPictureAnyFormat(u"file.any", info_); }

    Log log_;
    Ref<PictureInfo> info_ = make<PictureInfo>();
    FakeReader* common_;
    FakeReader* gdiPlus_;
    FakeReader* psd_;
    FakeReader* pcx_;
    FakeReader* tga_;
};

TEST_F(ReaderChain, AsksAllReadersInTheirOrder) {
    EXPECT_EQ(raisedBy([this] { load(); }), error::kInvalidPicture);
    EXPECT_EQ(log_, (Log{"common Verify", "common LoadPicture", "GDI+ Verify", "GDI+ LoadPicture",
                         "PSD Verify", "PSD LoadPicture", "PCX Verify", "PCX LoadPicture",
                         "TGA Verify", "TGA LoadPicture"}));
}

TEST_F(ReaderChain, EndsAtTheFirstPicture) {
    psd_->picture = emptyPicture();
    EXPECT_TRUE(load().is(psd_->picture));
    EXPECT_EQ(log_, (Log{"common Verify", "common LoadPicture", "GDI+ Verify", "GDI+ LoadPicture",
                         "PSD Verify", "PSD LoadPicture"}));
}

TEST_F(ReaderChain, TheHostsLoaderGoesFirst) {
    for (FakeReader* reader : {common_, gdiPlus_, psd_, pcx_, tga_}) {
        reader->picture = emptyPicture();
    }
    EXPECT_TRUE(load().is(common_->picture));
    EXPECT_EQ(log_, (Log{"common Verify", "common LoadPicture"}));
}

TEST_F(ReaderChain, DoesNotLoadWithAReaderThatDoesNotWantTheFile) {
    gdiPlus_->wants = psd_->wants = pcx_->wants = false;
    tga_->picture = emptyPicture();
    EXPECT_TRUE(load().is(tga_->picture));
    EXPECT_EQ(log_, (Log{"common Verify", "common LoadPicture", "GDI+ Verify", "PSD Verify",
                         "PCX Verify", "TGA Verify", "TGA LoadPicture"}));
}

TEST_F(ReaderChain, AReaderThatFailsPassesTheFileOn) {
    tga_->picture = emptyPicture();
    EXPECT_TRUE(load().is(tga_->picture));
    EXPECT_EQ(log_.size(), 10U);
}

TEST_F(ReaderChain, AReaderThatIsNotThereTakesNoPart) {
    EnsureFormats().gdiPlus.reset();
    EnsureFormats().psd.reset();
    tga_->picture = emptyPicture();
    EXPECT_TRUE(load().is(tga_->picture));
    EXPECT_EQ(log_, (Log{"common Verify", "common LoadPicture", "PCX Verify", "PCX LoadPicture",
                         "TGA Verify", "TGA LoadPicture"}));
}

TEST_F(ReaderChain, AnErrorThatAReaderRaisesEndsTheChain) {
    psd_->raises = error::kInternal;
    tga_->picture = emptyPicture();
    EXPECT_EQ(raisedBy([this] { load(); }), error::kInternal);
    EXPECT_EQ(log_.back(), "PSD LoadPicture");
}

TEST_F(ReaderChain, TriesNothingWhenThereIsAPicture) {
    Picture result = emptyPicture();
    TryFormat(common_, u"file.any", info_, result);
    EXPECT_EQ(log_, Log());
}

TEST_F(ReaderChain, KeepsReadersThatAreThere) {
    EXPECT_EQ(EnsureFormats().common.get(), common_);
    EXPECT_EQ(EnsureFormats().tga.get(), tga_);
}

TEST_F(ReaderChain, CreatesOnlyReadersThatAreMissing) {
    EnsureFormats().psd.reset();
    EnsureFormats().pcx.reset();
    EnsureFormats().tga.reset();
    EXPECT_NE(dynamic_cast<CFilePSD*>(EnsureFormats().psd.get()), nullptr);
    EXPECT_NE(dynamic_cast<CFilePCX*>(EnsureFormats().pcx.get()), nullptr);
    EXPECT_NE(dynamic_cast<CFileTGA*>(EnsureFormats().tga.get()), nullptr);
    EXPECT_EQ(EnsureFormats().common.get(), common_);
}

TEST(EnsureFormats, GivesTheSameReadersAgain) {
    const auto keepsTheApartment = make<PictureInfo>();
    const IFileFormat* const common = EnsureFormats().common.get();
    EXPECT_NE(dynamic_cast<const CFileCommon*>(common), nullptr);
    EXPECT_EQ(EnsureFormats().common.get(), common);
}

TEST(EnsureFormats, GivesEachThreadReadersOfItsOwn) {
    const auto keepsTheApartment = make<PictureInfo>();
    const IFileFormat* const mine = EnsureFormats().common.get();
    const IFileFormat* theirs = mine;
    std::thread([&] {
        const auto keepsTheirs = make<PictureInfo>();
        theirs = EnsureFormats().common.get();
    }).join();
    EXPECT_NE(theirs, mine);
}

TEST(EnsureFormats, TheReadersGoWithTheApartmentsLastObject) {
    Log log;
    auto keepsTheApartment = make<PictureInfo>();
    EnsureFormats().psd = std::make_unique<FakeReader>("PSD", log);
    keepsTheApartment = nullptr;
    EXPECT_NE(dynamic_cast<const CFilePSD*>(EnsureFormats().psd.get()), nullptr);
}

}  // namespace
}  // namespace orvane
