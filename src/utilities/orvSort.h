#pragma once

#include "frame/automation/array_argument.h"
#include "frame/automation/automation_object.h"
#include "frame/values/array.h"
#include "frame/values/object.h"

namespace orvane {

/// Sorts of arrays and collections, ascending: Longs by value, texts by units, anything else as
/// `Variant`s compare.
///
/// The array members sort in place, whatever the lower bound. They raise 9 for an array that is
/// unallocated or of several dimensions. Insertion sort is stable; quick sort draws its pivots at
/// random (`nqGetRnd`), so what is equal ends up in any order.
///
/// The collection members sort a copy of the items and drop it: the collection stays as it was.
/// Hosts rely on no more than the errors: 91 for Nothing, 9 for no items, and what an item's
/// conversion or a comparison raises.
class orvSort final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvSort();

    void InsertionSortC(const Object& sortCollection);
    void InsertionSortC_ByString(const Object& sortCollection);
    void InsertionSortC_ByLong(const Object& sortCollection);
    void QuickSortC(const Object& sortCollection);
    void QuickSortC_ByString(const Object& sortCollection);
    void QuickSortC_ByLong(const Object& sortCollection);

    /// Sorts the array that `sortArray` holds, of whatever element type. Raises 13 when it holds
    /// none, and a comparison's error, with the array as far as it was sorted.
    void InsertionSort(Variant& sortArray);
    void InsertionSort_ByLong(Array<std::int32_t>& sortArray);
    void InsertionSort_ByString(Array<WString>& sortArray);
    void QuickSort(Variant& sortArray);
    void QuickSort_ByLong(Array<std::int32_t>& sortArray);
    void QuickSort_ByString(Array<WString>& sortArray);
};

}  // namespace orvane
