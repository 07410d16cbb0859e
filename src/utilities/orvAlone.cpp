#include "utilities/orvAlone.h"

#include "frame/automation/describe.h"
#include "frame/values/codepage.h"
#include "platform/kernel32.h"
#include "platform/user32.h"
#include "support/host_facts.h"
#include "support/text.h"

#include <vector>

namespace orvane {
namespace {

using platform::kernel32;
using platform::MutexHandle;
using platform::user32;

constexpr const char16_t* kHelp =
    u"Возвращает True, если программа с таким GUID уже загружена, иначе - False";

/// Makes the mutex of a name; true when nobody had it.
bool takeName(const std::u16string& name, MutexHandle& mutex) {
    mutex = kernel32.CreateMutexA(toAnsi(name));
    const std::uint32_t error = platform::lastError();
    return error != platform::kErrorAlreadyExists && error != platform::kErrorAccessDenied;
}

/// The name of the calling thread's desktop; empty when there is none.
WString desktopName() {
    constexpr std::size_t kUsualSize = 100;
    const platform::DesktopHandle desktop = user32.GetThreadDesktop(kernel32.GetCurrentThreadId());
    if (desktop == platform::DesktopHandle::none) return {};
    // One byte more than the platform is told of: a NUL behind whatever it writes.
    std::vector<std::uint8_t> buffer(kUsualSize + 1);
    std::uint32_t needed = 0;
    const auto askName = [&](std::size_t size) {
        return user32.GetUserObjectInformationA(desktop, platform::UserObjectInformation::name,
                                                std::span(buffer).first(size), needed);
    };
    bool known = askName(kUsualSize);
    if (needed > kUsualSize) {
        const std::size_t size = needed;
        buffer.assign(size + 1, 0);
        known = askName(size);
    }
    if (!known) return {};
    return nqGetStringFromPointerA(reinterpret_cast<const char*>(buffer.data()));
}

/// The name of a mutex in a scope of the application's.
std::u16string scopedName(WStringView appGuid, std::u16string_view scope, const WString& within) {
    std::u16string name(appGuid);
    name += scope;
    name += WStringView(within);
    return name;
}

}  // namespace

const automation::ClassTable& orvAlone::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<orvAlone>(
                   "orvAlone", automation::Instancing::creatable,
                   {0xAF6DF20F, 0xA1C6, 0x41DE, {0xBA, 0x39, 0xFD, 0xBE, 0x48, 0x2A, 0x41, 0xA8}},
                   {0x9C979059, 0x80EE, 0x4F72, {0x9B, 0x21, 0x94, 0x9F, 0xA5, 0x58, 0x6E, 0x8B}})
            .method<&orvAlone::IsAlone>("IsAlone", {"AppGUID"})
            .help(kHelp)
            .method<&orvAlone::IsAloneOnDesktop>("IsAloneOnDesktop", {"AppGUID"})
            .help(kHelp)
            .method<&orvAlone::IsAloneAtUser>("IsAloneAtUser", {"AppGUID"})
            .help(kHelp)
            .build();
    });
    return table;
}

orvAlone::orvAlone() : AutomationObject(table()) {}

orvAlone::~orvAlone() {
    for (const MutexHandle mutex : {systemMutex_, desktopMutex_, userMutex_}) {
        if (mutex != MutexHandle::none) kernel32.CloseMutexHandle(mutex);
    }
}

// The field keeps the closed handle: hosts rely on what follows from that.
void orvAlone::closeSystemMutex() {
    if (systemMutex_ != MutexHandle::none) kernel32.CloseMutexHandle(systemMutex_);
}

bool orvAlone::IsAlone(WStringView appGuid) {
    closeSystemMutex();
    return takeName(std::u16string(appGuid), systemMutex_);
}

bool orvAlone::IsAloneOnDesktop(WStringView appGuid) {
    closeSystemMutex();
    return takeName(scopedName(appGuid, u"_Desktop_", desktopName()), desktopMutex_);
}

bool orvAlone::IsAloneAtUser(WStringView appGuid) {
    closeSystemMutex();
    return takeName(scopedName(appGuid, u"_User_", nqGetFullUserName(true)), userMutex_);
}

}  // namespace orvane
