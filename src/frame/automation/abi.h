#pragma once

#include "orvane/automation.h"

#include "frame/values/wstring.h"

/// The binary interface's text type is `wchar_t` on Windows and `char16_t` elsewhere: the same 16
/// bits. These helpers are the only casts between the two.
namespace orvane::automation {

inline const OLECHAR* toOle(const char16_t* text) {
    return reinterpret_cast<const OLECHAR*>(text);
}
inline const char16_t* fromOle(const OLECHAR* text) {
    return reinterpret_cast<const char16_t*>(text);
}

/// The units of a BSTR where they are; a null one is a view without data.
inline WStringView viewOf(BSTR text) {
    return text == nullptr ? WStringView() : WStringView(fromOle(text), SysStringLen(text));
}

/// A new BSTR; a null string gives null. Throws `std::bad_alloc`.
inline BSTR newBstr(WStringView text) {
    if (text.data() == nullptr) return nullptr;
    BSTR result = SysAllocStringLen(toOle(text.data()), static_cast<UINT>(text.size()));
    if (result == nullptr) throw std::bad_alloc();
    return result;
}

}  // namespace orvane::automation
