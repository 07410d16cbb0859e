#include "utilities/orvSort.h"

#include "small_stack.h"
#include "sort_reference.h"

#include "support/rounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace orvane {
namespace {

using test::literalQuickSort;
using test::numbersAfter;

/// Sizes around the widths at which the sort changes its ways, and some beyond.
const std::size_t kSizes[] = {0,   1,   2,   3,   4,   5,   6,   7,    8,   9,   15,
                              16,  17,  31,  32,  33,  34,  63,  64,   65,  66,  67,
                              95,  96,  97,  127, 128, 129, 130, 160,  191, 192, 193,
                              194, 255, 256, 257, 300, 500, 777, 1000, 2000};

bool same(std::int32_t left, std::int32_t right) {
    return left == right;
}
bool same(const WString& left, const WString& right) {
    return left == right && left.isNull() == right.isNull();
}
bool same(const Variant& left, const Variant& right) {
    if (left.type() != right.type()) return false;
    if (left.type() == VarType::Null || left.type() == VarType::Empty) return true;
    const double* first = left.as<double>();
    if (first != nullptr && std::isnan(*first)) return std::isnan(*right.as<double>());
    return isEqual(left, right);
}

void sort(Array<std::int32_t>& array) {
    make<orvSort>()->QuickSort_ByLong(array);
}
void sort(Array<WString>& array) {
    make<orvSort>()->QuickSort_ByString(array);
}
void sort(Array<Variant>& array) {
    Variant holder(array);
    make<orvSort>()->QuickSort(holder);
    array = *holder.asArray<Variant>();
}

/// Sorts both ways from one seed: elements, their order and the numbers drawn must be the same.
/// False when the written-down form would not end.
template <class T>
bool expectLikeReference(const std::vector<T>& elements, std::uint64_t seed) {
    auto expected = elements;
    bool ends = false;
    const auto expectedNumbers = numbersAfter(seed, [&] {
        ends = literalQuickSort(expected.data(), 0, static_cast<std::int32_t>(elements.size()) - 1);
    });
    if (!ends) return false;
    auto array = Array<T>::of(elements);
    const auto numbers = numbersAfter(seed, [&] { sort(array); });
    EXPECT_EQ(numbers, expectedNumbers) << elements.size() << " elements, seed " << seed;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(same(array.elements()[i], expected[i]))
            << "element " << i << " of " << elements.size() << ", seed " << seed;
    }
    return true;
}

template <class T, class Make>
void expectLikeReferenceForAllSizes(Make makeElement) {
    for (std::uint32_t seed = 1; seed <= static_cast<std::uint32_t>(test::rounds(6)); ++seed) {
        for (std::size_t size : kSizes) {
            std::mt19937 random(seed * 10000 + static_cast<std::uint32_t>(size));
            std::vector<T> elements;
            for (std::size_t i = 0; i < size; ++i)
                elements.push_back(makeElement(random, i));
            ASSERT_TRUE(expectLikeReference(elements, seed));
            if (testing::Test::HasFailure()) return;
        }
    }
}

void expectLongsLikeReference(std::uint32_t values) {
    expectLikeReferenceForAllSizes<std::int32_t>([values](std::mt19937& random, std::size_t) {
        const auto number = static_cast<std::uint32_t>(random());
        return static_cast<std::int32_t>(values == 0 ? number : number % values);
    });
}

TEST(QuickSortReference, RandomLongsEndAlike) {
    expectLongsLikeReference(0);
}

TEST(QuickSortReference, LongsOfFewValuesEndAlike) {
    for (std::uint32_t values : {1U, 2U, 3U, 10U, 40U})
        expectLongsLikeReference(values);
}

TEST(QuickSortReference, SortedAndReversedLongsEndAlike) {
    expectLikeReferenceForAllSizes<std::int32_t>(
        [](std::mt19937&, std::size_t i) { return static_cast<std::int32_t>(i) - 100; });
    expectLikeReferenceForAllSizes<std::int32_t>(
        [](std::mt19937&, std::size_t i) { return 100 - static_cast<std::int32_t>(i); });
}

TEST(QuickSortReference, TheGreatestAndLeastLongsEndAlike) {
    expectLikeReferenceForAllSizes<std::int32_t>([](std::mt19937& random, std::size_t) {
        const std::int32_t ends[] = {std::numeric_limits<std::int32_t>::min(),
                                     std::numeric_limits<std::int32_t>::max(), 0, -1};
        return ends[random() % 4];
    });
}

TEST(QuickSortReference, EqualTextsKeepTheOrderThatTheExchangesGiveThem) {
    expectLikeReferenceForAllSizes<WString>([](std::mt19937& random, std::size_t) {
        return random() % 2 == 0 ? WString() : WString(u"");  // equal, and yet to be told apart
    });
}

TEST(QuickSortReference, TextsOfEveryLengthAndPrefixEndAlike) {
    expectLikeReferenceForAllSizes<WString>([](std::mt19937& random, std::size_t) {
        std::u16string text(random() % 20, u'a');
        if (random() % 2 == 0 && !text.empty())
            text[random() % text.size()] = static_cast<char16_t>(random());
        return text.empty() && random() % 2 == 0 ? WString() : WString(text);
    });
}

TEST(QuickSortReference, VariantsOfOneTypeEndAlike) {
    expectLikeReferenceForAllSizes<Variant>([](std::mt19937& random, std::size_t) {
        return Variant(static_cast<std::int32_t>(random() % 50));
    });
    expectLikeReferenceForAllSizes<Variant>(
        [](std::mt19937&, std::size_t) { return Variant(7.5); });
}

TEST(QuickSortReference, VariantsOfSeveralTypesEndAlike) {
    expectLikeReferenceForAllSizes<Variant>([](std::mt19937& random, std::size_t) {
        const auto number = static_cast<std::int16_t>(random() % 4);
        switch (random() % 6) {
        case 0:
            return Variant(number);
        case 1:
            return Variant(static_cast<double>(number));
        case 2:
            return Variant(number == 0);
        case 3:
            return Variant(WString(std::u16string(1, static_cast<char16_t>(u'0' + number))));
        case 4:
            return Variant(Currency{number * 10000});
        default:
            return number == 0 ? Variant() : Variant(u"x");
        }
    });
}

TEST(QuickSortReference, VariantsWithNullsAndNoNumbersEndAlikeWhereTheReferenceEnds) {
    int ended = 0;
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        std::mt19937 random(static_cast<std::uint32_t>(seed));
        std::vector<Variant> elements;
        for (std::size_t i = 0; i < 3 + seed % 9; ++i)
            elements.emplace_back(static_cast<std::int32_t>(random() % 6));
        elements[random() % elements.size()] =
            seed % 2 == 0 ? Variant::null() : Variant(std::numeric_limits<double>::quiet_NaN());
        if (seed % 3 == 0) elements[random() % elements.size()] = Variant::null();
        if (expectLikeReference(elements, seed)) ++ended;
    }
    EXPECT_GT(ended, 200);
    EXPECT_LT(ended, 2000);  // there were some that it can't sort
}

class HundredThousandLongs : public testing::Test {
protected:
    /// Sorts them on a stack of 256 KB.
    void expectSorted(std::vector<std::int32_t> elements) {
        auto array = Array<std::int32_t>::of(elements);
        test::onSmallStack([&] { make<orvSort>()->QuickSort_ByLong(array); });
        std::ranges::sort(elements);
        EXPECT_TRUE(std::ranges::equal(array.elements(), elements));
    }

    std::vector<std::int32_t> elements_ = std::vector<std::int32_t>(100000);
};

TEST_F(HundredThousandLongs, SortedAreSortedOnASmallStack) {
    std::int32_t next = 0;
    for (std::int32_t& element : elements_)
        element = ++next;
    expectSorted(elements_);
}

TEST_F(HundredThousandLongs, ReversedAreSortedOnASmallStack) {
    std::int32_t next = 0;
    for (std::int32_t& element : elements_)
        element = --next;
    expectSorted(elements_);
}

TEST_F(HundredThousandLongs, AllEqualAreSortedOnASmallStack) {
    expectSorted(elements_);
}

TEST_F(HundredThousandLongs, AllEqualButOneAreSortedOnASmallStack) {
    elements_[70000] = -1;
    expectSorted(elements_);
    elements_[70000] = 1;
    expectSorted(elements_);
}

TEST_F(HundredThousandLongs, RandomAreSortedOnASmallStack) {
    std::mt19937 random(5);
    for (std::int32_t& element : elements_)
        element = static_cast<std::int32_t>(random());
    expectSorted(elements_);
}

TEST(QuickSortSmallStack, TextsAndVariantsThatAreAllEqualAreSortedToo) {
    auto texts = Array<WString>::of(std::vector<WString>(20000, WString(u"same")));
    auto numbers = Variant(Array<Variant>::of(std::vector<Variant>(20000, Variant(1.5))));
    auto nulls = Variant(Array<Variant>::of(std::vector<Variant>(2000, Variant::null())));
    test::onSmallStack([&] {
        const auto sorter = make<orvSort>();
        sorter->QuickSort_ByString(texts);
        sorter->QuickSort(numbers);
        sorter->QuickSort(nulls);
    });
    EXPECT_EQ(texts.at(19999), u"same");
    EXPECT_EQ(*numbers.asArray<Variant>()->at(0).as<double>(), 1.5);
    EXPECT_EQ(nulls.asArray<Variant>()->at(1999).type(), VarType::Null);
}

}  // namespace
}  // namespace orvane
