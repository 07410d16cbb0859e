#pragma once

#include "frame/automation/abi.h"
#include "frame/automation/marshal.h"
#include "frame/errors.h"
#include "frame/values/variant.h"
#include "support/host_object.h"

#include <string>
#include <utility>
#include <vector>

namespace orvane::test {

/// An application object of a host: `Title`, `Major`, `Minor` and `Revision`, answered by name.
/// Properties can be taken away or made to fail, and the reads are noted.
class FakeApplication final : public HostObject {
public:
    FakeApplication(Variant title, Variant major, Variant minor, Variant revision = 0)
        : properties{{u"Title", std::move(title)},
                     {u"Major", std::move(major)},
                     {u"Minor", std::move(minor)},
                     {u"Revision", std::move(revision)}} {}

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* id) override {
        const WStringView name(automation::fromOle(names[0]));
        for (std::size_t i = 0; i < properties.size(); ++i) {
            if (properties[i].first != name) continue;
            *id = static_cast<DISPID>(i + 1);
            return S_OK;
        }
        *id = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO*, UINT*) override {
        if (parameters->cArgs != 0) return DISP_E_BADPARAMCOUNT;
        const auto& [name, value] = properties.at(static_cast<std::size_t>(id - 1));
        reads.push_back(name);
        if (name == failing) return static_cast<HRESULT>(0x800A0000U | error::kPermissionDenied);
        automation::toVariant(*result, value);
        return S_OK;
    }

    std::vector<std::pair<std::u16string, Variant>> properties;
    std::vector<std::u16string> reads;
    std::u16string failing;
};

}  // namespace orvane::test
