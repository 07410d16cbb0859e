// Quick sort of 100,000 elements against std::sort and two scalar versions of the same form: one
// whose scans start again from the ends of the range, as the form is written down, and one that
// goes on where the last pass stopped.

#include "bench.h"

#include "support/random.h"
#include "utilities/orvSort.h"

#include <algorithm>
#include <cstdlib>
#include <random>

namespace {

using orvane::Array;
using orvane::WString;
using orvane::bench::medianTime;
using orvane::bench::medianTimes;
using orvane::bench::printRatio;

constexpr std::size_t kCount = 100000;

/// The form, one element at a time.
template <bool goesOn, class T>
void scalarSort(T* array, std::int32_t low, std::int32_t high) {
    while (low < high) {
        if (high - low == 1) {
            if (array[low] > array[high]) std::swap(array[low], array[high]);
            return;
        }
        std::swap(array[high], array[orvane::nqGetRnd(low, high)]);
        const T pivot = array[high];
        std::int32_t i = low;
        std::int32_t j = high;
        std::int32_t stop = high;
        for (;;) {
            while (array[i] <= pivot && i < stop)
                ++i;
            while (array[j] >= pivot && j > i)
                --j;
            if (i >= j) break;
            std::swap(array[i], array[j]);
            if constexpr (goesOn) {
                stop = j;
            } else {
                i = low;
                j = high;
            }
        }
        std::swap(array[i], array[high]);
        if (i - low < high - i) {
            scalarSort<goesOn>(array, low, i - 1);
            low = i + 1;
        } else {
            scalarSort<goesOn>(array, i + 1, high);
            high = i - 1;
        }
    }
}

void sortWithLibrary(orvane::orvSort& sorter, Array<std::int32_t>& array) {
    sorter.QuickSort_ByLong(array);
}
void sortWithLibrary(orvane::orvSort& sorter, Array<WString>& array) {
    sorter.QuickSort_ByString(array);
}

template <class T>
class Input {
public:
    Input(const char* name, std::vector<T> elements)
        : name_(name), elements_(std::move(elements)), array_(Array<T>::of(elements_)) {}

    /// Prints the ratios; `slow` says whether the form as it is written down is measured too.
    void measure(bool slow) {
        const auto library = [&] { sortWithLibrary(*sorter_, filled()); };
        const auto standard = [&] { std::ranges::sort(filled().elements()); };
        const auto goingOn = [&] { scalar<true>(); };
        const auto [own, peer] = medianTimes(library, standard);
        printRatio(name_, own, "std::sort", peer);
        const auto [again, scalarTime] = medianTimes(library, goingOn);
        printRatio("", again, "scalar, going on", scalarTime);
        if (slow) printRatio("", own, "scalar form", medianTime([&] { scalar<false>(); }, 1));
    }

private:
    Array<T>& filled() {
        std::ranges::copy(elements_, array_.elements().begin());
        return array_;
    }

    template <bool goesOn>
    void scalar() {
        scalarSort<goesOn>(filled().elements().data(), 0, static_cast<std::int32_t>(kCount) - 1);
        if (!std::ranges::is_sorted(array_.elements())) std::exit(1);
    }

    const char* name_;
    std::vector<T> elements_;
    Array<T> array_;
    orvane::Ref<orvane::orvSort> sorter_ = orvane::make<orvane::orvSort>();
};

template <class Make>
auto elementsBy(Make makeElement) {
    std::vector<decltype(makeElement(0))> elements;
    for (std::size_t i = 0; i < kCount; ++i)
        elements.push_back(makeElement(static_cast<std::int32_t>(i)));
    return elements;
}

}  // namespace

int main() {
    std::mt19937 random(11);
    const auto anyLong = [&](std::int32_t) { return static_cast<std::int32_t>(random()); };
    const auto anyText = [&](std::int32_t) {
        std::u16string text(u"name ");
        for (std::size_t i = 4 + random() % 12; i != 0; --i)
            text += static_cast<char16_t>(u'a' + random() % 26);
        return WString(text);
    };
    Input("100,000 random Longs", elementsBy(anyLong)).measure(true);
    Input("100,000 sorted Longs", elementsBy([](std::int32_t i) { return i; })).measure(false);
    Input("100,000 reversed Longs", elementsBy([](std::int32_t i) { return -i; })).measure(false);
    Input("100,000 random texts", elementsBy(anyText)).measure(false);
    return 0;
}
