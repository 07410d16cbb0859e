#include "utilities/orvSort.h"

#include "sort_reference.h"
#include "support/raised_error.h"

#include "frame/automation/describe.h"
#include "frame/values/conversions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::numbersAfter;
using test::raisedBy;
using testing::ElementsAre;

using Longs = std::vector<std::int32_t>;
using Texts = std::vector<std::u16string>;

/// A host's collection: its items are reached by `Count` and `Item`.
class Items final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table() {
        static const automation::ClassTable& table = automation::classTable([] {
            return automation::ClassBuilder<Items>("Items", automation::Instancing::internal,
                                                   {0x5F0A3C11, 0x7B1D, 0x4A52, {1}},
                                                   {0x5F0A3C12, 0x7B1D, 0x4A52, {1}})
                .propertyGet<&Items::Count>("Count")
                .propertyGet<&Items::Item>("Item", {"Index"})
                .build();
        });
        return table;
    }
    Items() : AutomationObject(table()) {}

    std::int32_t Count() { return static_cast<std::int32_t>(values.size()); }
    Variant Item(std::int32_t index) {
        asked.push_back(index);
        return values[static_cast<std::size_t>(index) - 1];
    }

    std::vector<Variant> values;
    Longs asked;
};

/// An object that stands for a number and fails when it is asked for the n-th time.
class Number final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table() {
        static const automation::ClassTable& table = automation::classTable([] {
            return automation::ClassBuilder<Number>("Number", automation::Instancing::internal,
                                                    {0x5F0A3C13, 0x7B1D, 0x4A52, {1}},
                                                    {0x5F0A3C14, 0x7B1D, 0x4A52, {1}})
                .propertyGet<&Number::Value>("Value")
                .defaultMember()
                .build();
        });
        return table;
    }
    Number() : AutomationObject(table()) {}

    std::int32_t Value() {
        if (++asked == failsAt) raise(1000);
        return value;
    }

    std::int32_t value = 0;
    int asked = 0;
    int failsAt = 0;
};

Variant longVariant(std::int32_t value) {
    return Variant(value);
}

template <class T>
std::vector<T> elementsOf(const Array<T>& array) {
    return {array.elements().begin(), array.elements().end()};
}

Longs longsOf(const Variant& holder) {
    Longs longs;
    for (const Variant& each : holder.asArray<Variant>()->elements())
        longs.push_back(toLong(each));
    return longs;
}

/// Both algorithms, each test for either.
struct Algorithm {
    const char* name;
    void (orvSort::*any)(Variant&);
    void (orvSort::*longs)(Array<std::int32_t>&);
    void (orvSort::*texts)(Array<WString>&);
    void (orvSort::*items)(const Object&);
    void (orvSort::*longItems)(const Object&);
    void (orvSort::*textItems)(const Object&);
};

class Sort : public testing::TestWithParam<Algorithm> {
protected:
    void sort(Variant& array) { ((*sorter_).*GetParam().any)(array); }
    void sort(Array<std::int32_t>& array) { ((*sorter_).*GetParam().longs)(array); }
    void sort(Array<WString>& array) { ((*sorter_).*GetParam().texts)(array); }

    Longs sorted(const Longs& elements) {
        auto array = Array<std::int32_t>::of(elements);
        sort(array);
        return elementsOf(array);
    }
    Texts sortedTexts(const Texts& elements) {
        auto array = Array<WString>::of({elements.begin(), elements.end()});
        sort(array);
        Texts texts;
        for (const WString& each : array.elements())
            texts.push_back(each.units());
        return texts;
    }

    /// Expects that no number is drawn for the sort of `elements` in each of the three ways.
    void expectNoDraw(const Longs& elements) {
        const auto untouched = numbersAfter(9, [] {});
        EXPECT_EQ(numbersAfter(9, [&] { sorted(elements); }), untouched);
        EXPECT_EQ(numbersAfter(9, [&] { sortedTexts(Texts(elements.size(), u"x")); }), untouched);
        Variant holder(Array<Variant>::of({elements.begin(), elements.end()}));
        EXPECT_EQ(numbersAfter(9, [&] { sort(holder); }), untouched);
    }

    Ref<Items> itemsOf(std::vector<Variant> values) {
        const auto items = make<Items>();
        items->values = std::move(values);
        return items;
    }

    Ref<orvSort> sorter_ = make<orvSort>();
};

INSTANTIATE_TEST_SUITE_P(
    Either, Sort,
    testing::Values(Algorithm{"insertion", &orvSort::InsertionSort, &orvSort::InsertionSort_ByLong,
                              &orvSort::InsertionSort_ByString, &orvSort::InsertionSortC,
                              &orvSort::InsertionSortC_ByLong, &orvSort::InsertionSortC_ByString},
                    Algorithm{"quick", &orvSort::QuickSort, &orvSort::QuickSort_ByLong,
                              &orvSort::QuickSort_ByString, &orvSort::QuickSortC,
                              &orvSort::QuickSortC_ByLong, &orvSort::QuickSortC_ByString}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_P(Sort, OfOneElementLeavesItAndDrawsNoNumber) {
    EXPECT_THAT(sorted({7}), ElementsAre(7));
    EXPECT_THAT(sortedTexts({u"b"}), ElementsAre(u"b"));
    expectNoDraw({7});
}

TEST_P(Sort, OfTwoElementsDrawsNoNumber) {
    EXPECT_THAT(sorted({2, 1}), ElementsAre(1, 2));
    EXPECT_THAT(sorted({1, 2}), ElementsAre(1, 2));
    expectNoDraw({2, 1});
}

TEST_P(Sort, OfThreeEqualElementsEnds) {
    EXPECT_THAT(sorted({4, 4, 4}), ElementsAre(4, 4, 4));
    EXPECT_THAT(sortedTexts({u"a", u"a", u"a"}), ElementsAre(u"a", u"a", u"a"));
    Variant holder(Array<Variant>::of({Variant(4.0), longVariant(4), Variant(u"4")}));
    sort(holder);
    EXPECT_THAT(longsOf(holder), ElementsAre(4, 4, 4));
}

TEST_P(Sort, OfBoundsFromMinus5To5SortsAcrossTheZero) {
    Array<std::int32_t> array(-5, 5);
    for (std::int32_t i = -5; i <= 5; ++i)
        array.at(i) = -i;
    sort(array);
    for (std::int32_t i = -5; i <= 5; ++i)
        EXPECT_EQ(array.at(i), i);
    Variant holder(array);
    holder.array()->setElement(-5, longVariant(9));
    sort(holder);
    EXPECT_EQ(holder.array()->lowerBound(), -5);
    EXPECT_EQ(toLong(holder.array()->element(5)), 9);
}

TEST_P(Sort, PutsACapitalLetterBeforeAnySmallLetter) {
    EXPECT_THAT(sortedTexts({u"a", u"Z", u"b", u"A"}), ElementsAre(u"A", u"Z", u"a", u"b"));
    Variant holder(Array<Variant>::of({Variant(u"a"), Variant(u"Z"), Variant(u"A")}));
    sort(holder);
    EXPECT_EQ(toText(holder.array()->element(1)), u"Z");
}

TEST_P(Sort, OfACollectionLeavesItInItsOrder) {
    const auto items = itemsOf({longVariant(3), longVariant(1), longVariant(2)});
    for (const auto member : {GetParam().items, GetParam().longItems, GetParam().textItems}) {
        items->asked.clear();
        ((*sorter_).*member)(items->asObject());
        EXPECT_THAT(items->asked, ElementsAre(1, 2, 3));
        EXPECT_EQ(*items->values[0].as<std::int32_t>(), 3);
        EXPECT_EQ(*items->values[1].as<std::int32_t>(), 1);
        EXPECT_EQ(*items->values[2].as<std::int32_t>(), 2);
    }
}

TEST_P(Sort, OfLongsIsByValue) {
    EXPECT_THAT(sorted({10, -9, 2147483647, 9, -2147483647 - 1, 0}),
                ElementsAre(-2147483647 - 1, -9, 0, 9, 10, 2147483647));
}

TEST_P(Sort, OfTextsIsByUnitsAndPutsAPrefixFirst) {
    EXPECT_THAT(sortedTexts({u"\uFFFF", u"10", u"9", u"", u"1", u"\u0416", u"long text of words",
                             u"long text of w", u"long text of wards"}),
                ElementsAre(u"", u"1", u"10", u"9", u"long text of w", u"long text of wards",
                            u"long text of words", u"\u0416", u"\uFFFF"));
}

TEST_P(Sort, OfVariantsIsByTheirComparison) {
    Variant holder(Array<Variant>::of({Variant(u"x"), Variant(u"10"), Variant(2.5), Variant(true),
                                       Variant(Currency{30000}), longVariant(9), Variant()}));
    sort(holder);
    std::vector<std::u16string> texts;
    for (const Variant& each : holder.asArray<Variant>()->elements())
        texts.push_back(toText(each).units());
    EXPECT_THAT(texts, ElementsAre(u"True", u"", u"2.5", u"3", u"9", u"10", u"x"));
}

TEST_P(Sort, OfAnArrayOfAnyElementTypeInAVariantKeepsTheType) {
    Variant bytes(Array<std::uint8_t>::of({200, 3, 100, 3}));
    sort(bytes);
    EXPECT_THAT(elementsOf(*bytes.asArray<std::uint8_t>()), ElementsAre(3, 3, 100, 200));
    Variant doubles(Array<double>::of({0.5, -1e300, 7, 0.25}));
    sort(doubles);
    EXPECT_THAT(elementsOf(*doubles.asArray<double>()), ElementsAre(-1e300, 0.25, 0.5, 7));
    Variant flags(Array<bool>::of({false, true, false}));
    sort(flags);
    EXPECT_TRUE(flags.asArray<bool>()->at(0));  // True is -1
    Variant longs(Array<std::int32_t>::of({3, 1, 2}));
    sort(longs);
    EXPECT_THAT(elementsOf(*longs.asArray<std::int32_t>()), ElementsAre(1, 2, 3));
    Variant texts(Array<WString>::of({u"b", u"a", u"C"}));
    sort(texts);
    EXPECT_EQ(texts.asArray<WString>()->at(0), u"C");
}

TEST_P(Sort, OfAVariantThatStandsForAVariableSortsThatVariable) {
    Variant variable(Array<Variant>::of({longVariant(3), longVariant(1), longVariant(2)}));
    Variant reference = Variant::reference(variable);
    sort(reference);
    EXPECT_THAT(longsOf(variable), ElementsAre(1, 2, 3));
}

TEST_P(Sort, OfAVariantWithoutAnArrayRaises13) {
    for (Variant holder : {Variant(), longVariant(1), Variant(u"text"), Variant::null()}) {
        EXPECT_EQ(raisedBy([&] { sort(holder); }), error::kTypeMismatch);
        Variant reference = Variant::reference(holder);
        EXPECT_EQ(raisedBy([&] { sort(reference); }), error::kTypeMismatch);
    }
}

TEST_P(Sort, OfAnUnallocatedArrayRaises9) {
    Array<std::int32_t> longs;
    Array<WString> texts;
    EXPECT_EQ(raisedBy([&] { sort(longs); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(raisedBy([&] { sort(texts); }), error::kSubscriptOutOfRange);
    for (Variant holder :
         {Variant(Array<Variant>()), Variant(Array<std::int32_t>()), Variant(Array<double>())}) {
        EXPECT_EQ(raisedBy([&] { sort(holder); }), error::kSubscriptOutOfRange);
    }
}

TEST_P(Sort, OfAnArrayWithoutElementsDoesNothing) {
    auto longs = Array<std::int32_t>::empty(3);
    sort(longs);
    EXPECT_EQ(longs.upperBound(), 2);
    Variant holder(Array<Variant>::empty());
    sort(holder);
    EXPECT_EQ(holder.array()->upperBound(), -1);
}

TEST_P(Sort, OfAnArrayOfTwoDimensionsRaises9) {
    auto longs = Array<std::int32_t>::withBounds({{0, 3}, {0, 3}});
    EXPECT_EQ(raisedBy([&] { sort(longs); }), error::kSubscriptOutOfRange);
    Variant holder(Array<double>::withBounds({{0, 3}, {0, 3}}));
    EXPECT_EQ(raisedBy([&] { sort(holder); }), error::kSubscriptOutOfRange);
}

TEST_P(Sort, OfValuesThatDoNotCompareRaises13) {
    Variant holder(Array<Variant>::of({longVariant(1), Variant(ErrorValue{5})}));
    EXPECT_EQ(raisedBy([&] { sort(holder); }), error::kTypeMismatch);
    Variant arrays(Array<Variant>::of(
        {Variant(Array<double>::of({1})), Variant(Array<double>::of({1})), longVariant(1)}));
    EXPECT_EQ(raisedBy([&] { sort(arrays); }), error::kTypeMismatch);
}

TEST_P(Sort, OfValuesWithANullRaisesNothingAndKeepsThemAll) {
    for (std::uint64_t seed = 0; seed < 50; ++seed) {
        Variant holder(Array<Variant>::of({longVariant(3), Variant::null(), longVariant(2),
                                           Variant::null(), longVariant(1), longVariant(5)}));
        numbersAfter(seed, [&] { sort(holder); });
        std::int32_t sum = 0;
        int nulls = 0;
        for (const Variant& each : holder.asArray<Variant>()->elements()) {
            if (each.type() == VarType::Null) ++nulls;
            else sum += toLong(each);
        }
        EXPECT_EQ(nulls, 2);
        EXPECT_EQ(sum, 11);
    }
}

TEST_P(Sort, OfObjectsIsByTheirDefaultMember) {
    std::vector<Variant> objects;
    std::vector<Ref<Number>> numbers;
    for (std::int32_t value : {3, 1, 2}) {
        numbers.push_back(make<Number>());
        numbers.back()->value = value;
        objects.emplace_back(numbers.back()->asObject());
    }
    Variant holder(Array<Variant>::of(objects));
    sort(holder);
    EXPECT_TRUE(holder.asArray<Variant>()->at(0).as<Object>()->is(numbers[1]->asObject()));
    EXPECT_TRUE(holder.asArray<Variant>()->at(2).as<Object>()->is(numbers[0]->asObject()));
    EXPECT_GT(numbers[0]->asked, 0);
}

TEST_P(Sort, OfAnEmptyCollectionRaises9) {
    const auto items = itemsOf({});
    for (const auto member : {GetParam().items, GetParam().longItems, GetParam().textItems}) {
        EXPECT_EQ(raisedBy([&] { ((*sorter_).*member)(items->asObject()); }),
                  error::kSubscriptOutOfRange);
    }
}

TEST_P(Sort, OfNothingAsACollectionRaises91) {
    EXPECT_EQ(raisedBy([&] { ((*sorter_).*GetParam().items)(Object()); }), error::kObjectNotSet);
}

TEST_P(Sort, OfAnObjectThatIsNoCollectionRaises438) {
    EXPECT_EQ(raisedBy([&] { ((*sorter_).*GetParam().items)(sorter_->asObject()); }),
              error::kNoSuchMember);
}

TEST_P(Sort, OfACollectionRaisesWhatAnItemsConversionRaises) {
    const auto raised = [&](void (orvSort::*member)(const Object&), Variant item) {
        const auto items = itemsOf({longVariant(1), std::move(item)});
        return raisedBy([&] { ((*sorter_).*member)(items->asObject()); });
    };
    EXPECT_EQ(raised(GetParam().longItems, Variant(u"word")), error::kTypeMismatch);
    EXPECT_EQ(raised(GetParam().longItems, Variant(3e9)), error::kOverflow);
    EXPECT_EQ(raised(GetParam().longItems, Variant::null()), error::kInvalidUseOfNull);
    EXPECT_EQ(raised(GetParam().longItems, Variant(u"12")), 0);
    EXPECT_EQ(raised(GetParam().textItems, Variant::null()), error::kInvalidUseOfNull);
    EXPECT_EQ(raised(GetParam().textItems, Variant(1.5)), 0);
    EXPECT_EQ(raised(GetParam().items, Variant(u"word")), 0);
    EXPECT_EQ(raised(GetParam().items, Variant(ErrorValue{5})), error::kTypeMismatch);
}

TEST(InsertionSort, IsStable) {
    Variant holder(Array<Variant>::of(
        {Variant(u"2"), Variant(2.0), longVariant(1), Variant(std::int16_t{2}), Variant(1.0)}));
    make<orvSort>()->InsertionSort(holder);
    std::vector<VarType> types;
    for (const Variant& each : holder.asArray<Variant>()->elements())
        types.push_back(each.type());
    EXPECT_THAT(types, ElementsAre(VarType::Long, VarType::Double, VarType::String, VarType::Double,
                                   VarType::Integer));
}

TEST(InsertionSort, ThatFailsLeavesWhatWasMovedUpAndTheKeyGone) {
    const auto number = make<Number>();
    number->value = 1;
    number->failsAt = 2;
    Variant holder(
        Array<Variant>::of({Variant(number->asObject()), longVariant(8), longVariant(2)}));
    EXPECT_EQ(raisedBy([&] { make<orvSort>()->InsertionSort(holder); }), 1000);
    EXPECT_EQ(toLong(holder.array()->element(1)), 8);
    EXPECT_EQ(toLong(holder.array()->element(2)), 8);
    EXPECT_EQ(number->asked, 2);
}

TEST(InsertionSort, OfAVariableThatFailsStoresWhatWasSorted) {
    Variant variable(Array<Variant>::of({longVariant(2), longVariant(1), Variant(ErrorValue{5})}));
    Variant reference = Variant::reference(variable);
    EXPECT_EQ(raisedBy([&] { make<orvSort>()->InsertionSort(reference); }), error::kTypeMismatch);
    EXPECT_EQ(toLong(variable.array()->element(0)), 1);
    EXPECT_EQ(toLong(variable.array()->element(1)), 2);
}

TEST(QuickSort, DrawsANumberForThreeElements) {
    auto array = Array<std::int32_t>::of({2, 3, 1});
    EXPECT_NE(numbersAfter(1, [&] { make<orvSort>()->QuickSort_ByLong(array); }),
              numbersAfter(1, [] {}));
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2, 3));
}

}  // namespace
}  // namespace orvane
