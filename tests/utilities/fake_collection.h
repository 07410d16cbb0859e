#pragma once

#include "frame/automation/abi.h"
#include "frame/automation/marshal.h"
#include "frame/errors.h"
#include "frame/values/conversions.h"
#include "support/host_object.h"

#include <string>
#include <utility>
#include <vector>

namespace orvane::test {

/// A collection of a host: `Count` and `Item`, reached by name, counted from 1. Items can be made
/// to fail, and the requests are noted.
class FakeCollection final : public HostObject {
public:
    explicit FakeCollection(std::vector<Variant> items) : items_(std::move(items)) {}

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* id) override {
        const void* units = names[0];
        const WStringView name(static_cast<const char16_t*>(units));
        *id = name == u"Count" ? kCount : name == u"Item" ? kItem : DISPID_UNKNOWN;
        return *id == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO*, UINT*) override {
        if (id == kCount) {
            requests.push_back("Count");
            if (countFails) return failure(error::kPermissionDenied);
            automation::toVariant(*result, Variant(static_cast<std::int32_t>(items_.size())));
            return S_OK;
        }
        if (id != kItem || parameters->cArgs != 1) return DISP_E_MEMBERNOTFOUND;
        const std::int32_t index = toLong(automation::fromVariant(parameters->rgvarg[0]));
        requests.push_back("Item " + std::to_string(index));
        if (index == failingItem) return failure(error::kPermissionDenied);
        if (index < 1 || index > static_cast<std::int32_t>(items_.size())) {
            return failure(error::kSubscriptOutOfRange);
        }
        automation::toVariant(*result, items_[static_cast<std::size_t>(index - 1)]);
        return S_OK;
    }

    std::vector<std::string> requests;
    bool countFails = false;
    std::int32_t failingItem = -1;

private:
    static constexpr DISPID kCount = 11;
    static constexpr DISPID kItem = 12;

    static HRESULT failure(std::int32_t number) {
        return static_cast<HRESULT>(0x800A0000U | static_cast<std::uint32_t>(number));
    }

    std::vector<Variant> items_;
};

}  // namespace orvane::test
