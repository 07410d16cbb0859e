#include "platform/ole32.h"

#include "platform/win32/system.h"

#include <objbase.h>
#include <oleauto.h>

#include <cstring>

namespace orvane::platform {

namespace win32 {

namespace {

std::int32_t classIdFromProgId(const std::u16string& progId, ClassIdBytes& classId) {
    CLSID found{};
    const auto* name = reinterpret_cast<const wchar_t*>(progId.c_str());
    const HRESULT result = ::CLSIDFromProgID(name, &found);
    static_assert(sizeof(found) == sizeof(classId));
    if (SUCCEEDED(result)) std::memcpy(classId.bytes.data(), &found, sizeof(found));
    return result;
}

// Asked for late-bound calls first: a class in another process may answer nothing but that.
std::int32_t createInstance(const ClassIdBytes& classId, IUnknown*& object) {
    CLSID id{};
    std::memcpy(&id, classId.bytes.data(), sizeof(id));
    void* made = nullptr;
    HRESULT result = ::CoCreateInstance(id, nullptr, CLSCTX_SERVER, IID_IDispatch, &made);
    if (result == E_NOINTERFACE) {
        result = ::CoCreateInstance(id, nullptr, CLSCTX_SERVER, IID_IUnknown, &made);
    }
    object = SUCCEEDED(result) ? static_cast<IUnknown*>(made) : nullptr;
    return result;
}

std::int32_t stringFromGuid(const ClassIdBytes& classId, std::span<char16_t> text) {
    GUID id{};
    std::memcpy(&id, classId.bytes.data(), sizeof(id));
    return ::StringFromGUID2(id, reinterpret_cast<wchar_t*>(text.data()),
                             static_cast<int>(text.size()));
}

constexpr Ole32 bound() {
    Ole32 table;
    table.CLSIDFromProgID.bind<classIdFromProgId>();
    table.CoCreateInstance.bind<createInstance>();
    table.StringFromGUID2.bind<stringFromGuid>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit Ole32 ole32 = win32::bound();

}  // namespace orvane::platform
