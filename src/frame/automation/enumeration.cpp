#include "frame/automation/enumeration.h"

#include "frame/automation/com_list.h"
#include "frame/automation/marshal.h"

namespace orvane::automation {
namespace {

struct StoredValue {
    Variant value;
    void copyTo(VARIANT& out) const { toVariant(out, value); }
};
using ValueEnumerator = ListEnumerator<IEnumVARIANT, VARIANT, StoredValue>;

}  // namespace

Enumeration newEnumeration(std::vector<Variant> values) {
    std::vector<StoredValue> stored;
    stored.reserve(values.size());
    for (Variant& value : values)
        stored.push_back({std::move(value)});
    return Enumeration(Object::adopt(new ValueEnumerator(IID_IEnumVARIANT, std::move(stored))));
}

}  // namespace orvane::automation
