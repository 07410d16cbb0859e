#include "settings/settings_versions.h"

#include "frame/values/conversions.h"
#include "versions_reference.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace orvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Collection collectionOf(std::initializer_list<const char16_t*> texts) {
    Collection collection;
    for (const char16_t* text : texts)
        collection.add(text);
    return collection;
}

std::vector<std::u16string> itemsOf(const Collection& collection) {
    std::vector<std::u16string> items;
    for (std::int32_t index = 1; index <= collection.count(); ++index)
        items.push_back(toText(collection.item(index)).units());
    return items;
}

std::vector<std::u16string> sorted(std::initializer_list<const char16_t*> texts) {
    Collection versions = collectionOf(texts);
    SortVersions(versions);
    return itemsOf(versions);
}

TEST(VersionPartToLong, DigitsAreANumber) {
    EXPECT_EQ(VersionPartToLong(u"0"), 0);
    EXPECT_EQ(VersionPartToLong(u"7"), 7);
    EXPECT_EQ(VersionPartToLong(u"1234567890"), 1234567890);
    EXPECT_EQ(VersionPartToLong(u"007"), 7);
}

TEST(VersionPartToLong, AnyOtherCharacterMakesItZero) {
    for (const char16_t* text : {u"1a", u"a", u" 1", u"1 ", u"-1", u"+1", u"1e2", u"&H1", u"1,5",
                                 u"\u0661", u"1\t", u"./"})
        EXPECT_EQ(VersionPartToLong(text), 0);
    EXPECT_EQ(VersionPartToLong(std::u16string(u"1\0", 2)), 0);
}

TEST(VersionPartToLong, EmptyPartIsZero) {
    EXPECT_EQ(VersionPartToLong(u""), 0);
    EXPECT_EQ(VersionPartToLong({}), 0);
}

TEST(VersionPartToLong, PartTooLongForALongIsZero) {
    EXPECT_EQ(VersionPartToLong(u"2147483647"), 2147483647);
    EXPECT_EQ(VersionPartToLong(u"2147483648"), 0);
    EXPECT_EQ(VersionPartToLong(u"4294967297"), 0);
    EXPECT_EQ(VersionPartToLong(u"18446744073709551617"), 0);
    EXPECT_EQ(VersionPartToLong(std::u16string(1000, u'9')), 0);
}

TEST(VersionPartToLong, LeadingZerosDoNotMakeItTooLong) {
    EXPECT_EQ(VersionPartToLong(std::u16string(1000, u'0') + u"2147483647"), 2147483647);
}

TEST(CompareVersions, FirstIsNewerOrOlderOrEqual) {
    EXPECT_EQ(CompareVersions(u"1.2", u"1.2"), 0);
    EXPECT_EQ(CompareVersions(u"1.3", u"1.2"), 1);
    EXPECT_EQ(CompareVersions(u"1.2", u"1.3"), 2);
    EXPECT_EQ(CompareVersions(u"2.0", u"1.9"), 1);
}

TEST(CompareVersions, ComparesNumbersNotText) {
    EXPECT_EQ(CompareVersions(u"1.10", u"1.9"), 1);
    EXPECT_EQ(CompareVersions(u"9.0", u"10.0"), 2);
    EXPECT_EQ(CompareVersions(u"1.02", u"1.2"), 0);
}

TEST(CompareVersions, MissingPartsAreZero) {
    EXPECT_EQ(CompareVersions(u"1.2", u"1.2.0"), 0);
    EXPECT_EQ(CompareVersions(u"1", u"1.0.0.0"), 0);
    EXPECT_EQ(CompareVersions(u"1.2", u"1.2.0.1"), 2);
    EXPECT_EQ(CompareVersions(u"1.2.1", u"1.2"), 1);
}

TEST(CompareVersions, PartsThatAreNoNumberAreZero) {
    EXPECT_EQ(CompareVersions(u"1.2b", u"1.0"), 0);
    EXPECT_EQ(CompareVersions(u"x", u"0"), 0);
    EXPECT_EQ(CompareVersions(u"x.1", u"0.0"), 1);
    EXPECT_EQ(CompareVersions(u"", u"0.0"), 0);
    EXPECT_EQ(CompareVersions(u"...", u""), 0);
    EXPECT_EQ(CompareVersions(u".1", u"0.1"), 0);
    EXPECT_EQ(CompareVersions(u"1.99999999999", u"1.0"), 0);
}

TEST(SortVersions, Ascends) {
    EXPECT_THAT(sorted({u"2.0", u"1.2", u"1.10", u"0.9"}),
                ElementsAre(u"0.9", u"1.2", u"1.10", u"2.0"));
}

TEST(SortVersions, TiesKeepTheFirst) {
    EXPECT_THAT(sorted({u"1.2.0", u"1.2", u"1.1", u"1.02", u"1.2.0.0"}),
                ElementsAre(u"1.1", u"1.2.0", u"1.2", u"1.02", u"1.2.0.0"));
}

TEST(SortVersions, EmptySourceGivesAnEmptyCollection) {
    EXPECT_THAT(sorted({}), IsEmpty());
}

TEST(SortVersions, OneItemStays) {
    EXPECT_THAT(sorted({u"1.2"}), ElementsAre(u"1.2"));
}

TEST(SortVersions, ResultHasNoKeys) {
    Collection versions;
    versions.add(u"2.0", u"two");
    versions.add(u"1.0", u"one");
    SortVersions(versions);
    EXPECT_THAT(itemsOf(versions), ElementsAre(u"1.0", u"2.0"));
    EXPECT_FALSE(versions.hasKey(u"one"));
    EXPECT_FALSE(versions.hasKey(u"two"));
}

TEST(SortVersions, AgreesWithASelectionSort) {
    std::minstd_rand random(4711);
    const auto upTo = [&](unsigned most) { return random() % (most + 1); };
    for (int round = 0; round < 300; ++round) {
        Collection versions;
        Collection reference;
        for (auto count = upTo(12); count > 0; --count) {
            std::u16string text;
            for (auto length = upTo(7); length > 0; --length)
                text += u"01290.."[upTo(6)];
            versions.add(WString(text));
            reference.add(WString(text));
        }
        SortVersions(versions);
        test::referenceSort(reference);
        ASSERT_EQ(itemsOf(versions), itemsOf(reference)) << "round " << round;
    }
}

TEST(CompareVersions, AgreesWithTheReference) {
    std::minstd_rand random(815);
    const auto text = [&] {
        std::u16string units;
        for (auto length = random() % 14; length > 0; --length)
            units += u"0129.9.5a"[random() % 9];
        return units;
    };
    for (int round = 0; round < 20000; ++round) {
        const std::u16string first = text();
        const std::u16string second = text();
        ASSERT_EQ(CompareVersions(first, second), test::referenceCompare(first, second))
            << testing::PrintToString(first) << " and " << testing::PrintToString(second);
    }
}

TEST(PreviousVersion, IsTheNewestOlderOne) {
    const Collection names = collectionOf({u"Version 1.2", u"Version 1.10", u"Version 2.0"});
    EXPECT_EQ(newestVersionBefore(u"2.0", names), u"1.10");
    EXPECT_EQ(newestVersionBefore(u"2.1", names), u"2.0");
    EXPECT_EQ(newestVersionBefore(u"1.10", names), u"1.2");
    EXPECT_EQ(newestVersionBefore(u"1.5", names), u"1.2");
}

TEST(PreviousVersion, NewerAndEqualOnesAreNeverUsed) {
    EXPECT_EQ(newestVersionBefore(u"1.0", collectionOf({u"Version 2.0"})), u"");
    EXPECT_EQ(newestVersionBefore(u"1.0", collectionOf({u"Version 1.0", u"Version 1.0.0"})), u"");
}

TEST(PreviousVersion, IsEmptyWithoutKeys) {
    EXPECT_EQ(newestVersionBefore(u"1.0", Collection()), u"");
}

TEST(PreviousVersion, KeyInLowerCaseIsRecognised) {
    EXPECT_EQ(newestVersionBefore(u"2.0", collectionOf({u"version 1.2", u"vErSiOn 1.1"})), u"1.2");
}

TEST(PreviousVersion, OtherKeysAreIgnored) {
    const Collection names =
        collectionOf({u"Version", u"Version ", u"Version1.3", u"Versions 1.4", u"My Version 1.5",
                      u"Version\t1.6", u"1.7", u"", u"Version 1.1"});
    EXPECT_EQ(newestVersionBefore(u"2.0", names), u"1.1");
}

TEST(PreviousVersion, BlanksAroundNameAndVersionAreTrimmed) {
    EXPECT_EQ(newestVersionBefore(u"2.0", collectionOf({u" \tVersion   1.3 \r\n"})), u"1.3");
}

TEST(PreviousVersion, LetterCountsAsVersionZeroAndIsTheOldest) {
    EXPECT_EQ(newestVersionBefore(u"1.0", collectionOf({u"Version x"})), u"x");
    EXPECT_EQ(newestVersionBefore(u"1.0", collectionOf({u"Version 0.1", u"Version x"})), u"0.1");
    EXPECT_EQ(newestVersionBefore(u"0.0", collectionOf({u"Version x"})), u"");
}

TEST(PreviousVersion, TextIsTakenAsItStands) {
    EXPECT_EQ(newestVersionBefore(u"2.0", collectionOf({u"Version 001.02.0 beta"})),
              u"001.02.0 beta");
}

TEST(PreviousVersion, OfEqualOnesTheLastNameCounts) {
    EXPECT_EQ(newestVersionBefore(
                  u"2.0", collectionOf({u"Version 1.2", u"Version 1.2.0", u"Version 1.02"})),
              u"1.02");
}

}  // namespace
}  // namespace orvane
