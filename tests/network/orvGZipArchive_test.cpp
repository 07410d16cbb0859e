#include "network/orvGZipArchive.h"

#include "gzip_member.h"
#include "gzip_outcome.h"
#include "support/allocations.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <new>

namespace orvane {
namespace {

using namespace std::literals;
using test::deflated;
using test::GzipOutcome;
using test::littleEndian;
using test::Member;
using test::outcomeOf;
using test::raisedBy;
using test::referenceGzip;
using test::zlibCrc;
using enum gzUncompressErrors;

constexpr auto kText = "some data, some data, some data"sv;

class GZipArchive : public testing::Test {
protected:
    gzUncompressErrors uncompress(const std::string& bytes) {
        return archive_->UncompressData(fromAnsi(bytes));
    }
    gzUncompressErrors uncompress(const Member& member) { return uncompress(member.bytes()); }
    std::string data() { return toAnsi(archive_->UncompressedData()); }
    /// Succeeds when every field is as `Clear` leaves it.
    testing::AssertionResult isClear() {
        const auto fields = outcomeOfFields();
        if (fields == GzipOutcome()) return testing::AssertionSuccess();
        return testing::AssertionFailure() << fields;
    }
    GzipOutcome outcomeOfFields() {
        GzipOutcome fields;
        fields.id1 = archive_->ID1();
        fields.id2 = archive_->ID2();
        fields.method = archive_->CompressionMethod();
        fields.flags = static_cast<std::int32_t>(archive_->Flags());
        fields.time = archive_->ModificationTime();
        fields.extraFlags = archive_->ExtraFlags();
        fields.os = static_cast<std::int32_t>(archive_->OS());
        fields.extra = toAnsi(archive_->ExtraData());
        fields.fileName = toAnsi(archive_->FileName());
        fields.comment = toAnsi(archive_->Comment());
        fields.headerCrc = archive_->HeaderCRC16();
        fields.dataLength = archive_->DataLen();
        fields.dataCrc = archive_->DataCRC32();
        fields.data = toAnsi(archive_->UncompressedData());
        return fields;
    }

    Ref<orvGZipArchive> archive_ = make<orvGZipArchive>();
};

TEST_F(GZipArchive, EmptyDataAndDataOfOneCharacterAreNoGZip) {
    EXPECT_EQ(uncompress(""), gzueNotGZip);
    EXPECT_EQ(archive_->UncompressData(WStringView()), gzueNotGZip);
    EXPECT_EQ(uncompress("\x1F"), gzueNotGZip);
    EXPECT_TRUE(isClear());
}

TEST_F(GZipArchive, TwoMagicBytesAloneRaise5) {
    EXPECT_EQ(raisedBy([&] { uncompress("\x1F\x8B"); }), error::kInvalidArgument);
}

TEST_F(GZipArchive, FixedHeaderWithNothingBehindItSucceedsWithEmptyData) {
    EXPECT_EQ(uncompress(Member("").header()), gzueSuccess);
    EXPECT_EQ(data(), "");
    EXPECT_EQ(archive_->ID1(), 31);
    EXPECT_EQ(archive_->DataLen(), 0);
}

TEST_F(GZipArchive, MethodOtherThan8WithAValidBodyIsAccepted) {
    for (const int method : {0, 7, 9, 255}) {
        Member member(kText);
        member.method = static_cast<std::uint8_t>(method);
        EXPECT_EQ(uncompress(member), gzueSuccess);
        EXPECT_EQ(data(), kText);
        EXPECT_EQ(archive_->CompressionMethod(), method);
    }
}

TEST_F(GZipArchive, ReservedFlagIsInvalidAndId1Reads0After) {
    for (int flags = 0x20; flags < 0x100; ++flags) {
        Member member(kText);
        member.flags = static_cast<std::uint8_t>(flags);
        const bool reserved = (flags & 0xE0) != 0;
        ASSERT_TRUE(reserved);
        EXPECT_EQ(uncompress(member), gzueInvalidFlags) << flags;
        EXPECT_EQ(archive_->ID1(), 0);
        EXPECT_TRUE(isClear());
    }
}

TEST_F(GZipArchive, FileNameWithoutANulInTheRestIsInvalid) {
    Member member("");
    member.flags = 8;
    EXPECT_EQ(uncompress(member.header()), gzueInvalidFileNameLen);
    EXPECT_EQ(uncompress(member.header() + "name and more"), gzueInvalidFileNameLen);
    EXPECT_TRUE(isClear());
}

TEST_F(GZipArchive, FileNameWithANulAtOnceIsEmpty) {
    Member member(kText);
    member.flags = 8;
    member.optional = "\0"s;
    EXPECT_EQ(uncompress(member), gzueSuccess);
    EXPECT_EQ(toAnsi(archive_->FileName()), "");
    EXPECT_EQ(data(), kText);
}

TEST_F(GZipArchive, LengthZeroAndCrcZeroSucceedWithEmptyDataWhateverTheBodyIs) {
    Member member(kText);
    member.crc = 0;
    member.length = 0;
    EXPECT_EQ(uncompress(member), gzueSuccess);
    EXPECT_EQ(data(), "");
    member.body = "no deflate at all";
    EXPECT_EQ(uncompress(member), gzueSuccess);
    EXPECT_EQ(archive_->DataLen(), 0);
    member.crc = 1;
    EXPECT_EQ(uncompress(member), gzueCRCMismatch);
    EXPECT_TRUE(isClear());
}

TEST_F(GZipArchive, LengthGreaterThanTheDataIsACrcMismatch) {
    Member member(kText);
    for (const std::uint32_t more : {1u, 2u, 1000u, 1u << 20, 0x7FFFFFFFu - member.length}) {
        Member longer = member;
        longer.length += more;
        EXPECT_EQ(uncompress(longer), gzueCRCMismatch) << more;
        EXPECT_TRUE(isClear());
    }
}

TEST_F(GZipArchive, LengthSmallerThanTheDataIsACrcMismatch) {
    Member member(kText);
    while (--member.length > 0)
        EXPECT_EQ(uncompress(member), gzueCRCMismatch) << member.length;
}

TEST_F(GZipArchive, TextOfLibraryNotAvailableIsThatOfAnUnknownError) {
    EXPECT_EQ(archive_->UncompressErrorCodeToString(gzueLibraryNotAvailable),
              u"Неизвестная ошибка");
}

TEST_F(GZipArchive, TextsOfResults) {
    const struct {
        int code;
        const char16_t* text;
    } rows[] = {
        {0, u"Операция выполнена успешно"},
        {1, u"Данные не являются GZip архивом"},
        {2, u"CRC32 данных не совпадают с CRC32, указанным в архиве"},
        {3, u"Неверное значение длины дополнительных данных"},
        {4, u"Неверное значение длины имени файла"},
        {5, u"Неверное значение длины комментария"},
        {6, u"В архиве используются зарезервированные флаги"},
        {7, u"Неверное значение длины даных"},
        {8, u"Неизвестная ошибка"},
        {9, u"Неизвестная ошибка"},
        {-1, u"Неизвестная ошибка"},
        {0x7FFFFFFF, u"Неизвестная ошибка"},
    };
    for (const auto& row : rows) {
        const auto code = static_cast<gzUncompressErrors>(row.code);
        EXPECT_EQ(archive_->UncompressErrorCodeToString(code), row.text) << row.code;
    }
}

TEST_F(GZipArchive, TextsOfOperatingSystems) {
    const char16_t* const texts[] = {u"FAT filesystem (MS-DOS, OS/2, NT/Win32)",
                                     u"Amiga",
                                     u"VMS (or OpenVMS)",
                                     u"Unix",
                                     u"VM/CMS",
                                     u"Atari TOS",
                                     u"HPFS filesystem (OS/2, NT)",
                                     u"Macintosh",
                                     u"Z-System",
                                     u"CP/M",
                                     u"TOPS-20",
                                     u"NTFS filesystem (NT)",
                                     u"QDOS",
                                     u"Acorn RISCOS"};
    const auto textOf = [&](int code) {
        return archive_->OSCodeToString(static_cast<gzArchiveOS>(code));
    };
    for (int code = 0; code < 14; ++code)
        EXPECT_EQ(textOf(code), texts[code]) << code;
    for (const int code : {14, 254, 255, 256, -1, 0x7FFFFFFF})
        EXPECT_EQ(textOf(code), u"Unknown") << code;
}

TEST_F(GZipArchive, EveryFieldOfAFullHeaderIsRead) {
    Member member(kText);
    member.flags = 0x1F;
    member.time = 0x12345678;
    member.extraFlags = 2;
    member.os = 11;
    member.optional = littleEndian(7, 4) + "abc" + "file.txt\0"s + "a comment\0"s + "\x34\x82";
    EXPECT_EQ(uncompress(member), gzueSuccess);
    EXPECT_EQ(archive_->ID1(), 31);
    EXPECT_EQ(archive_->ID2(), 139);
    EXPECT_EQ(archive_->CompressionMethod(), 8);
    EXPECT_EQ(static_cast<int>(archive_->Flags()), 0x1F);
    EXPECT_EQ(archive_->ModificationTime(), 0x12345678);
    EXPECT_EQ(archive_->ExtraFlags(), 2);
    EXPECT_EQ(archive_->OS(), gzArchiveOS::gzosNTFSFileSystem);
    EXPECT_EQ(toAnsi(archive_->ExtraData()), littleEndian(7, 4) + "abc");
    EXPECT_EQ(toAnsi(archive_->FileName()), "file.txt");
    EXPECT_EQ(toAnsi(archive_->Comment()), "a comment");
    EXPECT_EQ(archive_->HeaderCRC16(), static_cast<std::int16_t>(0x8234));
    EXPECT_EQ(archive_->DataLen(), static_cast<std::int32_t>(kText.size()));
    EXPECT_EQ(archive_->DataCRC32(), static_cast<std::int32_t>(zlibCrc(kText)));
    EXPECT_EQ(data(), kText);
}

TEST_F(GZipArchive, ClearTakesEveryFieldBack) {
    Member member(kText);
    member.flags = 0x1F;
    member.time = 1;
    member.extraFlags = 2;
    member.optional = littleEndian(4, 4) + "f\0c\0xx"s;
    ASSERT_EQ(uncompress(member), gzueSuccess);
    EXPECT_FALSE(isClear());
    archive_->Clear();
    EXPECT_TRUE(isClear());
    EXPECT_EQ(archive_->OS(), gzArchiveOS::gzosUnknown);
}

TEST_F(GZipArchive, TimesAndCrcsAreSigned) {
    Member member(kText);
    member.time = 0xFFFFFFFE;
    EXPECT_EQ(uncompress(member), gzueSuccess);
    EXPECT_EQ(archive_->ModificationTime(), -2);
    // A body whose CRC has its highest bit set.
    std::string text = "0";
    while ((zlibCrc(text) & 0x80000000) == 0)
        ++text[0];
    EXPECT_EQ(uncompress(Member(text)), gzueSuccess);
    EXPECT_LT(archive_->DataCRC32(), 0);
    EXPECT_EQ(archive_->ModificationTime(), 0);
}

TEST_F(GZipArchive, EveryByteOfTheFixedHeaderGivesWhatTheReferenceGives) {
    Member member(kText);
    member.optional = littleEndian(5, 4) + "xname\0comment\0hh"s;
    const std::string good = member.bytes();
    for (std::size_t place = 0; place < 10; ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string bytes = good;
            bytes[place] = static_cast<char>(byte);
            EXPECT_EQ(outcomeOf(*archive_, bytes), referenceGzip(bytes)) << place << ' ' << byte;
        }
    }
}

TEST_F(GZipArchive, EveryTruncationGivesWhatTheReferenceGives) {
    Member member("text with\nlines\n");
    for (const int flags : {0, 4, 8, 16, 2, 0x1E, 0x20}) {
        member.flags = static_cast<std::uint8_t>(flags);
        member.optional.clear();
        if ((flags & 4) != 0) member.optional += littleEndian(6, 4) + "ex";
        if ((flags & 8) != 0) member.optional += "name\0"s;
        if ((flags & 16) != 0) member.optional += "comment\0"s;
        if ((flags & 2) != 0) member.optional += "hc";
        const std::string bytes = member.bytes();
        for (std::size_t size = 0; size <= bytes.size(); ++size) {
            const std::string cut = bytes.substr(0, size);
            const test::GzipReference reference(cut);
            const GzipOutcome outcome = outcomeOf(*archive_, cut);
            if (reference.tooLong()) {
                EXPECT_EQ(outcome.code, 2) << flags << ' ' << size;
            } else {
                EXPECT_EQ(outcome, reference.outcome()) << flags << ' ' << size;
            }
        }
    }
}

TEST_F(GZipArchive, EveryChangedByteGivesWhatTheReferenceGives) {
    Member member("text with\nlines\n");
    member.flags = 8;
    member.optional = "name\0"s;
    const std::string good = member.bytes();
    for (std::size_t place = 0; place < good.size(); ++place) {
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string bytes = good;
            bytes[place] = static_cast<char>(bytes[place] ^ change);
            const test::GzipReference reference(bytes);
            const GzipOutcome outcome = outcomeOf(*archive_, bytes);
            if (reference.tooLong()) {
                EXPECT_EQ(outcome.code, 2) << place << ' ' << change;
            } else {
                EXPECT_EQ(outcome, reference.outcome()) << place << ' ' << change;
            }
        }
    }
}

TEST_F(GZipArchive, DataShorterThanTheFixedHeaderRaises5AndLeavesNoPartOfIt) {
    const std::string header = Member(kText).header();
    for (std::size_t size = 2; size < 10; ++size) {
        ASSERT_EQ(uncompress(Member(kText)), gzueSuccess);
        EXPECT_EQ(raisedBy([&] { uncompress(header.substr(0, size)); }), error::kInvalidArgument);
        EXPECT_TRUE(isClear()) << size;
    }
}

TEST_F(GZipArchive, ExtraFieldCountsItsOwnFourLengthBytes) {
    Member member(kText);
    member.flags = 4;
    const std::string tail = member.body + littleEndian(member.crc, 4) + littleEndian(31, 4);
    const auto withExtra = [&](const std::string& extra) { return member.header() + extra + tail; };
    EXPECT_EQ(uncompress(withExtra(littleEndian(4, 4))), gzueSuccess);
    EXPECT_EQ(toAnsi(archive_->ExtraData()), littleEndian(4, 4));
    EXPECT_EQ(uncompress(withExtra(littleEndian(9, 4) + "\0\x01zzz"s)), gzueSuccess);
    EXPECT_EQ(toAnsi(archive_->ExtraData()), littleEndian(9, 4) + "\0\x01zzz"s);
    EXPECT_EQ(data(), kText);
}

TEST_F(GZipArchive, ExtraFieldMayBeShorterThanItsLength) {
    Member member("");
    member.flags = 4;
    // One byte of the four is the field; the other three are taken for the body.
    EXPECT_EQ(uncompress(member.header() + littleEndian(1, 4) + std::string(8, '\0')), gzueSuccess);
    EXPECT_EQ(toAnsi(archive_->ExtraData()), "\x01");
    EXPECT_EQ(data(), "");
}

TEST_F(GZipArchive, ExtraFieldOutOfTheRestIsInvalid) {
    Member member("");
    member.flags = 4;
    const auto with = [&](const std::string& rest) { return uncompress(member.header() + rest); };
    EXPECT_EQ(with(littleEndian(12, 4) + "1234567"), gzueInvalidExtraDataLen);
    EXPECT_EQ(with(littleEndian(0, 4) + "12345678"), gzueInvalidExtraDataLen);
    EXPECT_EQ(with(littleEndian(0xFFFFFFFF, 4) + "12345678"), gzueInvalidExtraDataLen);
    EXPECT_EQ(with(littleEndian(0x80000000, 4) + "12345678"), gzueInvalidExtraDataLen);
    // A length of less than four characters reads 0.
    for (const std::string& rest : {""s, "\1"s, "\1\0"s, "\1\0\0"s})
        EXPECT_EQ(with(rest), gzueInvalidExtraDataLen);
    // All of the rest is allowed; nothing is left for the trailer then.
    EXPECT_EQ(with(littleEndian(11, 4) + "1234567"), gzueSuccess);
    EXPECT_EQ(archive_->ExtraData().size(), 11U);
}

TEST_F(GZipArchive, StandardExtraFieldIsInvalid) {
    Member member(kText);
    member.flags = 4;
    member.optional = littleEndian(6, 2) + "AB" + littleEndian(2, 2) + "xy";
    EXPECT_EQ(uncompress(member), gzueInvalidExtraDataLen);
}

TEST_F(GZipArchive, CommentFollowsTheRulesOfTheFileName) {
    Member member(kText);
    member.flags = 16;
    member.optional = "\0"s;
    EXPECT_EQ(uncompress(member), gzueSuccess);
    EXPECT_EQ(toAnsi(archive_->Comment()), "");
    EXPECT_EQ(uncompress(member.header() + "no end"), gzueInvalidCommentLen);
    member.flags = 24;
    EXPECT_EQ(uncompress(member.header() + "name\0comment"s), gzueInvalidCommentLen);
    EXPECT_TRUE(isClear());
}

TEST_F(GZipArchive, HeaderCrcIsTwoCharactersThatNobodyCompares) {
    Member member(kText);
    member.flags = 2;
    member.optional = "\xFF\x7F";
    EXPECT_EQ(uncompress(member), gzueSuccess);
    EXPECT_EQ(archive_->HeaderCRC16(), 0x7FFF);
    // One character is no number and is cut off all the same.
    EXPECT_EQ(uncompress(member.header() + "z"), gzueSuccess);
    EXPECT_EQ(archive_->HeaderCRC16(), 0);
    EXPECT_EQ(uncompress(member.header()), gzueSuccess);
    EXPECT_EQ(archive_->HeaderCRC16(), 0);
}

TEST_F(GZipArchive, TrailerShorterThanEightCharactersReads0Where) {
    const std::string header = Member("").header();
    // Fewer than four: no length. Four to seven: a length and no CRC.
    EXPECT_EQ(uncompress(header + "abc"), gzueSuccess);
    EXPECT_EQ(archive_->DataLen(), 0);
    EXPECT_EQ(uncompress(header + littleEndian(0, 4)), gzueSuccess);
    EXPECT_EQ(uncompress(header + "abc" + littleEndian(0, 4)), gzueSuccess);
    EXPECT_EQ(archive_->DataCRC32(), 0);
    EXPECT_EQ(uncompress(header + littleEndian(5, 4)), gzueCRCMismatch);
}

TEST_F(GZipArchive, LengthOf2GiBAndMoreIsInvalid) {
    Member member(kText);
    for (const std::uint32_t length : {0x80000000u, 0x80000001u, 0xFFFFFFFFu}) {
        member.length = length;
        EXPECT_EQ(uncompress(member), gzueInvalidDataLen);
        EXPECT_TRUE(isClear());
    }
}

TEST_F(GZipArchive, MemberOfTwentyBytesThatTellsOf2GiBIsAMismatchAtOnce) {
    Member member("");
    member.length = 0x7FFFFFFF;
    member.crc = 1;
    ASSERT_EQ(member.bytes().size(), 20U);
    EXPECT_EQ(uncompress(member), gzueCRCMismatch);
    EXPECT_TRUE(isClear());
}

TEST_F(GZipArchive, DataLongerThanATextCanBeRaises7) {
    Member member("");
    // The CRC of 2 GiB less one of NULs: the data would be good.
    member.length = 0x7FFFFFFF;
    std::uint32_t crc = 0;
    const std::string zeros(1 << 20, '\0');
    const std::uint32_t block = zlibCrc(zeros);
    for (int i = 0; i < 2047; ++i)
        crc = static_cast<std::uint32_t>(::crc32_combine(crc, block, 1 << 20));
    const std::string rest((1 << 20) - 1, '\0');
    member.crc = static_cast<std::uint32_t>(::crc32_combine(crc, zlibCrc(rest), (1 << 20) - 1));
    EXPECT_EQ(raisedBy([&] { uncompress(member); }), error::kOutOfMemory);
    EXPECT_TRUE(isClear());
}

TEST_F(GZipArchive, ShortMemoryAtAnyPlaceLeavesNoPartOfAMember) {
    // Texts and data of sizes of their own: each is the first that there is no memory for.
    Member member(std::string(1 << 17, 'x'));
    member.flags = 0x1C;
    member.optional = littleEndian(3000, 4) + std::string(2996, 'e') + std::string(2000, 'n') +
                      "\0"s + std::string(1000, 'c') + "\0"s;
    const std::string filled = std::string(1 << 17, 'x') + std::string(1 << 19, '\0');
    member.crc = zlibCrc(filled);
    member.length = static_cast<std::uint32_t>(filled.size());
    const WString text = fromAnsi(member.bytes());
    ASSERT_EQ(archive_->UncompressData(text), gzueSuccess);
    ASSERT_EQ(data(), filled);
    // The filled text, the data, extra field, name and comment: units of two bytes.
    for (const std::size_t most : {1U << 20, 1U << 18, 6000U, 4000U, 2000U}) {
        {
            const test::ShortMemory memory(most);
            // Error 7 to a host.
            EXPECT_THROW(archive_->UncompressData(text), std::bad_alloc) << most;
        }
        EXPECT_TRUE(isClear()) << most;
        EXPECT_EQ(archive_->UncompressData(text), gzueSuccess) << most;
    }
}

TEST_F(GZipArchive, NulsThatFillTheLengthUpBelongToTheData) {
    Member member(kText);
    for (const std::size_t fill : {1U, 9U, 5000U, 1000000U}) {
        const std::string filled = std::string(kText) + std::string(fill, '\0');
        member.crc = zlibCrc(filled);
        member.length = static_cast<std::uint32_t>(filled.size());
        EXPECT_EQ(uncompress(member), gzueSuccess) << fill;
        EXPECT_EQ(data(), filled);
        // The length is the one that zlib tells.
        EXPECT_EQ(archive_->DataLen(), static_cast<std::int32_t>(kText.size()));
    }
}

TEST_F(GZipArchive, BodyThatIsDamagedAtItsEndIsTrustedOnTheCrcAlone) {
    Member member(kText);
    member.body += "garbage";
    EXPECT_EQ(uncompress(member), gzueSuccess);
    EXPECT_EQ(data(), kText);
    // What could be inflated of a stream that breaks off, with NULs behind it.
    Member broken(std::string(3000, 'a') + "b");
    broken.body.resize(broken.body.size() - 3);
    const GzipOutcome reference = referenceGzip(broken.bytes());
    EXPECT_EQ(reference.code, 2);
    EXPECT_EQ(outcomeOf(*archive_, broken.bytes()), reference);
}

TEST_F(GZipArchive, SecondMemberGivesAWrongTrailer) {
    const std::string first = Member("first").bytes();
    EXPECT_EQ(uncompress(first + Member("other").bytes()), gzueCRCMismatch);
    EXPECT_EQ(uncompress(first + Member("longer than the first").bytes()), gzueCRCMismatch);
    // The same member twice has the first one's trailer at its end.
    EXPECT_EQ(uncompress(first + first), gzueSuccess);
    EXPECT_EQ(data(), "first");
}

TEST_F(GZipArchive, PaddingGivesAWrongTrailer) {
    const std::string member = Member(kText).bytes();
    EXPECT_EQ(uncompress(member + "\0"s), gzueCRCMismatch);
    EXPECT_EQ(uncompress(member + std::string(4, '\0')), gzueCRCMismatch);
    // Eight NULs are a trailer of their own: no data, and a CRC of none.
    EXPECT_EQ(uncompress(member + std::string(8, '\0')), gzueSuccess);
    EXPECT_EQ(data(), "");
    EXPECT_EQ(uncompress(member + std::string(4, '\xFF')), gzueInvalidDataLen);
}

TEST_F(GZipArchive, OneObjectReadsManyMembers) {
    Member named("one");
    named.flags = 8;
    named.optional = "name\0"s;
    EXPECT_EQ(uncompress(named), gzueSuccess);
    EXPECT_EQ(uncompress(Member("two")), gzueSuccess);
    EXPECT_EQ(data(), "two");
    EXPECT_EQ(toAnsi(archive_->FileName()), "");
    EXPECT_EQ(uncompress("none"), gzueNotGZip);
    EXPECT_TRUE(isClear());
    EXPECT_EQ(uncompress(named), gzueSuccess);
    EXPECT_EQ(data(), "one");
}

TEST_F(GZipArchive, EveryByteGoesThroughInBothDirections) {
    std::string all;
    for (std::uint32_t i = 0; i < 70000; ++i)
        all += static_cast<char>(i * i >> 3);
    for (const int level : {0, 1, 9}) {
        EXPECT_EQ(uncompress(Member(all, level)), gzueSuccess) << level;
        EXPECT_EQ(data(), all);
    }
    EXPECT_EQ(archive_->UncompressedData().size(), all.size());
}

TEST_F(GZipArchive, DataOfManySizesIsReadAsTheReferenceReadsIt) {
    for (std::size_t size = 0; size < 600; ++size) {
        std::string text;
        for (std::size_t i = 0; i < size; ++i)
            text += static_cast<char>(i % 7 == 0 ? 0x80 + i % 128 : 'a' + i % 20);
        const std::string bytes = Member(text).bytes();
        const GzipOutcome outcome = outcomeOf(*archive_, bytes);
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.data, text);
        EXPECT_EQ(outcome, referenceGzip(bytes)) << size;
    }
}

TEST_F(GZipArchive, UnitsWithoutAByteAreQuestionMarks) {
    // The magic bytes are compared as units; everything behind them becomes bytes.
    WString text = fromAnsi(Member(kText).header());
    text.edit()[2] = u'\u4E00';
    text += fromAnsi(std::string(8, '\0'));
    EXPECT_EQ(archive_->UncompressData(text), gzueSuccess);
    EXPECT_EQ(archive_->CompressionMethod(), '?');
    text.edit()[1] = u'\u4E00';
    EXPECT_EQ(archive_->UncompressData(text), gzueNotGZip);
    // A name keeps its units.
    Member named("");
    named.flags = 8;
    WString whole = fromAnsi(named.header()) + u"\u4E00\u4E8C";
    whole += fromAnsi(std::string(9, '\0'));
    EXPECT_EQ(archive_->UncompressData(whole), gzueSuccess);
    EXPECT_EQ(archive_->FileName(), u"\u4E00\u4E8C");
}

TEST_F(GZipArchive, FaultsAreToldInTheOrderOfTheWalk) {
    Member member(kText);
    member.flags = 0xFC;
    member.length = 0xFFFFFFFF;
    EXPECT_EQ(uncompress(member), gzueInvalidFlags);
    member.flags = 0x1C;
    member.optional = littleEndian(0, 4);
    EXPECT_EQ(uncompress(member), gzueInvalidExtraDataLen);
    member.body = "no NUL";
    member.crc = 0x01010101;
    member.optional = littleEndian(4, 4);
    EXPECT_EQ(uncompress(member), gzueInvalidFileNameLen);
    member.optional = littleEndian(4, 4) + "\0"s;
    EXPECT_EQ(uncompress(member), gzueInvalidCommentLen);
    member.optional = littleEndian(4, 4) + "\0\0"s;
    EXPECT_EQ(uncompress(member), gzueInvalidDataLen);
    member.length = 5;
    EXPECT_EQ(uncompress(member), gzueCRCMismatch);
}

}  // namespace
}  // namespace orvane
