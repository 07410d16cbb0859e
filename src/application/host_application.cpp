#include "application/host_application.h"

#include "frame/automation/abi.h"
#include "frame/automation/error_info.h"
#include "frame/errors.h"

namespace orvane {
namespace {

IHostApplication* interfaceOf(const Object& object) {
    if (object.isNothing()) raise(error::kObjectNotSet);
    void* found = nullptr;
    if (FAILED(object.unknown()->QueryInterface(kHostApplicationInterface, &found))) {
        raise(error::kTypeMismatch);
    }
    return static_cast<IHostApplication*>(found);
}

using NumberSlot = HRESULT (STDMETHODCALLTYPE IHostApplication::*)(SHORT*);

std::int16_t numberIn(IHostApplication& application, NumberSlot slot) {
    SHORT number = 0;
    const HRESULT status = (application.*slot)(&number);
    if (FAILED(status)) automation::raiseStatus(status);
    return number;
}

}  // namespace

HostApplication::HostApplication(const Object& object) : application_(interfaceOf(object)) {}

WString HostApplication::Title() const {
    BSTR text = nullptr;
    const HRESULT status = application_->get_Title(&text);
    if (FAILED(status)) automation::raiseStatus(status);
    WString title(automation::viewOf(text));
    SysFreeString(text);
    return title;
}

std::int16_t HostApplication::Major() const {
    return numberIn(*application_, &IHostApplication::get_Major);
}

std::int16_t HostApplication::Minor() const {
    return numberIn(*application_, &IHostApplication::get_Minor);
}

std::int16_t HostApplication::Revision() const {
    return numberIn(*application_, &IHostApplication::get_Revision);
}

}  // namespace orvane
