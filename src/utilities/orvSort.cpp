#include "utilities/orvSort.h"

#include "frame/automation/describe.h"
#include "frame/values/compare.h"
#include "frame/values/conversions.h"
#include "utilities/insertion_sort.h"
#include "utilities/quick_sort.h"

namespace orvane {
namespace {

struct Insertion {
    static void sort(std::span<Variant> elements, std::int32_t) {
        insertionSort(elements, isGreater);
    }
    template <class T>
    static void sort(std::span<T> elements, std::int32_t) {
        insertionSort(elements, std::greater<T>());
    }
};

struct Quick {
    template <class T>
    static void sort(std::span<T> elements, std::int32_t lower) {
        quickSort(elements, lower);
    }
};

/// Whether an array has an element to be sorted; raises 9 when it can't be read by one index.
bool hasRange(const ArrayBase& array) {
    if (array.lowerBound() >= array.upperBound()) return false;
    if (array.dimensions() != 1) raise(error::kSubscriptOutOfRange);
    return true;
}

template <class Algorithm, class T>
void sortElements(Array<T>& array) {
    if (hasRange(array)) Algorithm::sort(array.elements(), array.lowerBound());
}

/// Runs `sort` and then `store`, also when `sort` fails.
template <class Sort, class Store>
void sortAndStore(Sort sort, Store store) {
    try {
        sort();
    } catch (...) {
        store();
        throw;
    }
    store();
}

/// Sorts an array whose elements have a type of their own as the Variants that they are read as.
template <class Algorithm>
void sortConverted(ArrayBase& array) {
    if (!hasRange(array)) return;
    Array<Variant> values = Array<Variant>::withBounds(array.bounds());
    const auto indexOf = [&](std::size_t place) {
        return static_cast<std::int32_t>(array.lowerBound() + static_cast<std::int64_t>(place));
    };
    for (std::size_t i = 0; i < array.size(); ++i)
        values.elements()[i] = array.element(indexOf(i));
    sortAndStore([&] { sortElements<Algorithm>(values); },
                 [&] {
                     for (std::size_t i = 0; i < array.size(); ++i)
                         array.setElement(indexOf(i), values.elements()[i]);
                 });
}

template <class Algorithm>
void sortAny(Variant& holder) {
    if (auto* variants = holder.asArray<Variant>()) return sortElements<Algorithm>(*variants);
    if (auto* longs = holder.asArray<std::int32_t>()) return sortElements<Algorithm>(*longs);
    if (auto* texts = holder.asArray<WString>()) return sortElements<Algorithm>(*texts);
    ArrayBase* const array = holder.array();
    if (array == nullptr) raise(error::kTypeMismatch);
    sortConverted<Algorithm>(*array);
}

template <class Algorithm>
void sortHeld(Variant& holder) {
    if (!holder.isReference()) return sortAny<Algorithm>(holder);
    Variant held = holder.value();
    if (!held.isArray()) raise(error::kTypeMismatch);
    sortAndStore([&] { sortAny<Algorithm>(held); }, [&] { holder.assign(held); });
}

/// The items are copied, sorted and dropped: the result would belong in a collection that no one
/// but this call could see.
template <class Algorithm, class T>
void sortCopy(const Object& collection) {
    const std::int32_t count = toLong(collection.get(u"Count"));
    Array<T> items(1, count);
    for (std::int32_t i = 1;; ++i) {
        items.at(i) = convertTo<T>(collection.get(u"Item", {Variant(i)}));
        if (i == count) break;
    }
    sortElements<Algorithm>(items);
}

}  // namespace

const automation::ClassTable& orvSort::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<orvSort>(
                   "orvSort", automation::Instancing::global,
                   {0x14926308, 0xCBA8, 0x484C, {0x81, 0x1F, 0x6B, 0xF9, 0x7E, 0x28, 0x2B, 0x72}},
                   {0xEAC60479, 0xBB6F, 0x4CFD, {0x9B, 0xA6, 0x60, 0x7E, 0xF1, 0x45, 0xA0, 0x98}})
            .method<&orvSort::InsertionSortC>("InsertionSortC", {"SortCollection"})
            .method<&orvSort::InsertionSortC_ByString>("InsertionSortC_ByString",
                                                       {"SortCollection"})
            .method<&orvSort::InsertionSortC_ByLong>("InsertionSortC_ByLong", {"SortCollection"})
            .method<&orvSort::QuickSortC>("QuickSortC", {"SortCollection"})
            .method<&orvSort::QuickSortC_ByString>("QuickSortC_ByString", {"SortCollection"})
            .method<&orvSort::QuickSortC_ByLong>("QuickSortC_ByLong", {"SortCollection"})
            .method<&orvSort::InsertionSort>("InsertionSort", {"SortArray"})
            .method<&orvSort::InsertionSort_ByLong>("InsertionSort_ByLong", {"SortArray"})
            .method<&orvSort::InsertionSort_ByString>("InsertionSort_ByString", {"SortArray"})
            .method<&orvSort::QuickSort>("QuickSort", {"SortArray"})
            .method<&orvSort::QuickSort_ByLong>("QuickSort_ByLong", {"SortArray"})
            .method<&orvSort::QuickSort_ByString>("QuickSort_ByString", {"SortArray"})
            .build();
    });
    return table;
}

orvSort::orvSort() : AutomationObject(table()) {}

void orvSort::InsertionSortC(const Object& sortCollection) {
    sortCopy<Insertion, Variant>(sortCollection);
}
void orvSort::InsertionSortC_ByString(const Object& sortCollection) {
    sortCopy<Insertion, WString>(sortCollection);
}
void orvSort::InsertionSortC_ByLong(const Object& sortCollection) {
    sortCopy<Insertion, std::int32_t>(sortCollection);
}
void orvSort::QuickSortC(const Object& sortCollection) {
    sortCopy<Quick, Variant>(sortCollection);
}
void orvSort::QuickSortC_ByString(const Object& sortCollection) {
    sortCopy<Quick, WString>(sortCollection);
}
void orvSort::QuickSortC_ByLong(const Object& sortCollection) {
    sortCopy<Quick, std::int32_t>(sortCollection);
}

void orvSort::InsertionSort(Variant& sortArray) {
    sortHeld<Insertion>(sortArray);
}
void orvSort::InsertionSort_ByLong(Array<std::int32_t>& sortArray) {
    sortElements<Insertion>(sortArray);
}
void orvSort::InsertionSort_ByString(Array<WString>& sortArray) {
    sortElements<Insertion>(sortArray);
}
void orvSort::QuickSort(Variant& sortArray) {
    sortHeld<Quick>(sortArray);
}
void orvSort::QuickSort_ByLong(Array<std::int32_t>& sortArray) {
    sortElements<Quick>(sortArray);
}
void orvSort::QuickSort_ByString(Array<WString>& sortArray) {
    sortElements<Quick>(sortArray);
}

}  // namespace orvane
