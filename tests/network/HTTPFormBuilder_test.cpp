#include "network/HTTPFormBuilder.h"

#include "network/any_unit.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using enum htfbTransferEncoding;

#define B u"--EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43"
constexpr const char16_t* kHeader =
    u"Content-Type: multipart/form-data; boundary=EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43\r\n";

class FormBuilder : public testing::Test {
protected:
    Ref<HTTPFormBuilder> builder_ = make<HTTPFormBuilder>();

    /// What a fresh builder makes of one element, without the lines around the part.
    template <class Add>
    std::u16string partOf(Add&& add) {
        builder_->Clear();
        add(*builder_);
        const std::u16string form = builder_->FormData().units();
        const std::u16string front = B u"\r\n";
        const std::u16string back = B u"--";
        EXPECT_TRUE(form.starts_with(front) && form.ends_with(back));
        return form.substr(front.size(), form.size() - front.size() - back.size());
    }
    std::u16string element(htfbTransferEncoding encoding, WStringView type = {},
                           WStringView charset = {}, WStringView file = {}) {
        return partOf([&](HTTPFormBuilder& builder) {
            builder.AddElement(u"n", u"data", encoding, type, charset, file);
        });
    }
};

TEST_F(FormBuilder, WithoutElementsIsTheClosingLine) {
    EXPECT_EQ(builder_->FormData(), B u"--");
}

TEST_F(FormBuilder, ATextElementHasANameAndNoMore) {
    EXPECT_EQ(partOf([](HTTPFormBuilder& builder) { builder.AddTextElement(u"n", u"text"); }),
              u"Content-Disposition: form-data; name=\"n\"\r\n\r\ntext\r\n");
    EXPECT_EQ(partOf([](HTTPFormBuilder& builder) { builder.AddTextElement({}, {}); }),
              u"Content-Disposition: form-data; name=\"\"\r\n\r\n\r\n");
}

TEST_F(FormBuilder, ABinaryElementHasAFileAndItsType) {
    EXPECT_EQ(partOf([](HTTPFormBuilder& builder) {
                  builder.AddBinaryElement(u"n", u"a.png", u"image/png", u"\x89PNG");
              }),
              u"Content-Disposition: form-data; name=\"n\"; filename=\"a.png\"\r\n"
              u"Content-Type: image/png\r\nContent-Transfer-Encoding: binary\r\n\r\n\x89PNG\r\n");
}

TEST_F(FormBuilder, ABinaryElementWithoutAFileNameIsStillBinary) {
    EXPECT_EQ(
        partOf([](HTTPFormBuilder& builder) { builder.AddBinaryElement(u"n", u"", u"", u"d"); }),
        u"Content-Disposition: form-data; name=\"n\"\r\n"
        u"Content-Transfer-Encoding: binary\r\n\r\nd\r\n");
}

TEST_F(FormBuilder, ACharsetWithoutATypeHasNoLine) {
    EXPECT_EQ(element(htfbText, u"", u"utf-8"),
              u"Content-Disposition: form-data; name=\"n\"\r\n\r\ndata\r\n");
}

TEST_F(FormBuilder, ACharsetStandsBehindItsType) {
    EXPECT_EQ(element(htfbText, u"text/plain", u"utf-8"),
              u"Content-Disposition: form-data; name=\"n\"\r\n"
              u"Content-Type: text/plain; charset=utf-8\r\n\r\ndata\r\n");
    EXPECT_EQ(element(htfbText, u"text/plain"), u"Content-Disposition: form-data; name=\"n\"\r\n"
                                                u"Content-Type: text/plain\r\n\r\ndata\r\n");
}

TEST_F(FormBuilder, EncodingsAreNamedAndNotCarriedOut) {
    const std::u16string disposition = u"Content-Disposition: form-data; name=\"n\"\r\n";
    const std::u16string data = u"\r\ndata\r\n";
    EXPECT_EQ(element(htfbText), disposition + data);
    EXPECT_EQ(element(htfbBinary), disposition + u"Content-Transfer-Encoding: binary\r\n" + data);
    EXPECT_EQ(element(htfbBase64), disposition + u"Content-Transfer-Encoding: base64\r\n" + data);
    EXPECT_EQ(element(static_cast<htfbTransferEncoding>(3)), disposition + data);
    EXPECT_EQ(element(static_cast<htfbTransferEncoding>(-1)), disposition + data);
}

TEST_F(FormBuilder, AllLinesStandInTheirOrder) {
    EXPECT_EQ(element(htfbBase64, u"text/html", u"koi8-r", u"f.htm"),
              u"Content-Disposition: form-data; name=\"n\"; filename=\"f.htm\"\r\n"
              u"Content-Type: text/html; charset=koi8-r\r\n"
              u"Content-Transfer-Encoding: base64\r\n\r\ndata\r\n");
}

TEST_F(FormBuilder, NothingIsEscaped) {
    EXPECT_EQ(partOf([](HTTPFormBuilder& builder) {
                  builder.AddElement(u"a\"b", u"x\r\n" B u"--\r\n", htfbText, u"t;\r\n", u"c\"",
                                     u"f\"g");
              }),
              u"Content-Disposition: form-data; name=\"a\"b\"; filename=\"f\"g\"\r\n"
              u"Content-Type: t;\r\n; charset=c\"\r\n\r\nx\r\n" B u"--\r\n\r\n");
}

TEST_F(FormBuilder, TheHeaderDependsOnNoElement) {
    EXPECT_EQ(builder_->Header(), kHeader);
    builder_->AddTextElement(u"a", u"1");
    EXPECT_EQ(builder_->Header(), kHeader);
}

TEST_F(FormBuilder, StaysOpenAfterItWasRead) {
    builder_->AddTextElement(u"a", u"1");
    const std::u16string first = builder_->FormData().units();
    EXPECT_EQ(builder_->FormData().units(), first);
    builder_->AddTextElement(u"b", u"2");
    EXPECT_EQ(builder_->FormData().units(),
              first.substr(0, first.size() - 2) +
                  u"\r\nContent-Disposition: form-data; name=\"b\"\r\n\r\n2\r\n" B u"--");
}

TEST_F(FormBuilder, ClearForgetsTheElements) {
    builder_->AddTextElement(u"a", u"1");
    builder_->Clear();
    EXPECT_EQ(builder_->FormData(), B u"--");
    builder_->AddTextElement(u"a", u"1");
    EXPECT_NE(builder_->FormData(), B u"--");
}

TEST_F(FormBuilder, BuildersAreApartFromEachOther) {
    const auto other = make<HTTPFormBuilder>();
    builder_->AddTextElement(u"a", u"1");
    EXPECT_EQ(other->FormData(), B u"--");
}

TEST_F(FormBuilder, TakesAMebiOfAnythingInEveryPlace) {
    const std::u16string any = test::anyUnits(test::kMebi, u"\r\n-\"\0");
    EXPECT_EQ(partOf([&](HTTPFormBuilder& builder) {
                  builder.AddElement(any, any, htfbText, any, any, any);
              }),
              u"Content-Disposition: form-data; name=\"" + any + u"\"; filename=\"" + any +
                  u"\"\r\nContent-Type: " + any + u"; charset=" + any + u"\r\n\r\n" + any +
                  u"\r\n");
}

TEST_F(FormBuilder, IsWholeAfterManyElements) {
    std::u16string expected;
    for (char16_t i = 0; i < 400; ++i) {
        const std::u16string data(20000, static_cast<char16_t>(u'A' + i));
        builder_->AddTextElement(u"n", data);
        expected += B u"\r\nContent-Disposition: form-data; name=\"n\"\r\n\r\n" + data + u"\r\n";
    }
    EXPECT_TRUE(builder_->FormData().units() == expected + B u"--");
    builder_->AddTextElement(u"n", u"");
    EXPECT_TRUE(builder_->FormData().units().starts_with(expected));
}

TEST_F(FormBuilder, WorksLateBound) {
    const Object late = builder_->asObject();
    late.call(u"AddElement", {u"a", 1});
    late.call(u"AddElement", {u"b", u"2", std::int32_t{2}, Variant::missing(), u"c", u"d"});
    EXPECT_EQ(*late.get(u"FormData").as<WString>(),
              B u"\r\nContent-Disposition: form-data; "
                u"name="
                u"\"a\"\r\n\r\n1\r"
                u"\n" B u"\r\nContent-Disposition: form-data; name=\"b\"; filename=\"d\"\r\n"
                u"Content-Transfer-Encoding: base64\r\n\r\n2\r\n" B u"--");
    EXPECT_EQ(test::raisedBy([&] { late.call(u"AddElement", {u"a"}); }),
              error::kArgumentNotOptional);
    EXPECT_EQ(test::raisedBy([&] { late.put(u"FormData", u""); }), error::kNoSuchMember)
        << "read-only";
}

}  // namespace
}  // namespace orvane
