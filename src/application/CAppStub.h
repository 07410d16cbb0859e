#pragma once

#include "frame/automation/automation_object.h"
#include "frame/values/variant.h"
#include "frame/values/wstring.h"

#include <cstdint>

namespace orvane {

/// Stands for the application object of a host that has none: its default interface is the host
/// application interface (`IHostApplication`), by slot and by name. It answers its title and
/// version; every other property is empty, and what is written to one is ignored.
///
/// Private: hosts get no class factory and no type information for it.
class CAppStub final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    CAppStub();

    /// Fills the fields. No slot: only the library makes stubs.
    void Init(WStringView title, std::int16_t major, std::int16_t minor, std::int16_t revision);

    WString Title() { return title_; }
    void putTitle(WStringView value) { title_ = WString(value); }
    std::int16_t Major() { return major_; }
    std::int16_t Minor() { return minor_; }
    std::int16_t Revision() { return revision_; }

    /// What the other properties answer and do, by their type.
    WString noText() { return {}; }
    std::int32_t noNumber() { return 0; }
    bool noFlag() { return false; }
    void ignoreText(WStringView) {}
    void ignoreNumber(std::int32_t) {}
    void ignoreFlag(bool) {}

    void StartLogging(WStringView, std::int32_t) {}
    void LogEvent(WStringView, const Variant&) {}

private:
    WString title_;
    std::int16_t major_ = 0;
    std::int16_t minor_ = 0;
    std::int16_t revision_ = 0;
};

}  // namespace orvane
