#include "module/registration.h"

#include "frame/automation/abi.h"
#include "frame/automation/table.h"

#include <windows.h>

#include <string>
#include <vector>

namespace orvane::automation {

namespace {

constexpr HRESULT kSelfRegistrationOfTypeLibrary = static_cast<HRESULT>(0x80040200);
constexpr HRESULT kSelfRegistrationOfClasses = static_cast<HRESULT>(0x80040201);

/// The marshaller that works from type libraries, for the older interface identifiers.
constexpr const wchar_t* kAutomationMarshaler = L"{00020424-0000-0000-C000-000000000046}";

/// A text value below HKEY_CLASSES_ROOT; `name` is empty for a key's default value.
struct Entry {
    std::wstring key;
    std::wstring name;
    std::wstring value;
};

std::wstring wide(const char* ascii) {
    return {ascii, ascii + std::char_traits<char>::length(ascii)};
}

std::wstring guidText(REFGUID guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
    return text;
}

std::wstring versionText(const LibraryTable& library) {
    return std::to_wstring(library.major) + L"." + std::to_wstring(library.minor);
}

std::wstring modulePath() {
    HMODULE module = nullptr;
    static const char place = 0;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&place), &module);
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::wstring progIdOf(const LibraryTable& library, const ClassTable& table) {
    return wide(library.progIdPrefix) + L"." + wide(table.name);
}

std::wstring classKey(const ClassTable& table) {
    return L"CLSID\\" + guidText(table.classId);
}

std::wstring aliasKey(const InterfaceAlias& alias) {
    return L"Interface\\" + guidText(alias.interfaceId);
}

void addClass(std::vector<Entry>& entries, const LibraryTable& library, const ClassTable& table,
              const std::wstring& path) {
    const std::wstring progId = progIdOf(library, table);
    const std::wstring key = classKey(table);
    entries.push_back({key, L"", progId});
    entries.push_back({key + L"\\InprocServer32", L"", path});
    entries.push_back({key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"});
    entries.push_back({key + L"\\VERSION", L"", versionText(library)});
    entries.push_back({key + L"\\TypeLib", L"", guidText(library.id)});
    entries.push_back({key + L"\\Programmable", L"", L""});
    if (table.instancing == Instancing::internal) return;
    entries.push_back({key + L"\\ProgID", L"", progId});
    entries.push_back({progId, L"", progId});
    entries.push_back({progId + L"\\Clsid", L"", guidText(table.classId)});
}

void addAlias(std::vector<Entry>& entries, const LibraryTable& library,
              const InterfaceAlias& alias) {
    const std::wstring key = aliasKey(alias);
    entries.push_back({key, L"", wide(alias.name)});
    entries.push_back({key + L"\\ProxyStubClsid", L"", kAutomationMarshaler});
    entries.push_back({key + L"\\ProxyStubClsid32", L"", kAutomationMarshaler});
    entries.push_back({key + L"\\TypeLib", L"", guidText(library.id)});
    entries.push_back({key + L"\\TypeLib", L"Version", versionText(library)});
}

bool write(const Entry& entry) {
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CLASSES_ROOT, entry.key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                        &key, nullptr) != ERROR_SUCCESS) {
        return false;
    }
    const auto* data = reinterpret_cast<const BYTE*>(entry.value.c_str());
    const auto size = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
    const LSTATUS status = RegSetValueExW(key, entry.name.empty() ? nullptr : entry.name.c_str(), 0,
                                          REG_SZ, data, size);
    RegCloseKey(key);
    return status == ERROR_SUCCESS;
}

// RegDeleteKey refuses keys with subkeys, and the call that takes whole trees is missing on the
// oldest systems.
bool removeTree(const std::wstring& path) {
    HKEY key = nullptr;
    const LSTATUS opened =
        RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_ENUMERATE_SUB_KEYS, &key);
    if (opened == ERROR_FILE_NOT_FOUND) return true;
    if (opened != ERROR_SUCCESS) return false;
    wchar_t name[256];
    DWORD length = static_cast<DWORD>(std::size(name));
    bool removed = true;
    while (removed && RegEnumKeyExW(key, 0, name, &length, nullptr, nullptr, nullptr, nullptr) ==
                          ERROR_SUCCESS) {
        removed = removeTree(path + L"\\" + name);
        length = static_cast<DWORD>(std::size(name));
    }
    RegCloseKey(key);
    return RegDeleteKeyW(HKEY_CLASSES_ROOT, path.c_str()) == ERROR_SUCCESS && removed;
}

// The system fails to remove a type library that isn't registered.
bool isTypeLibraryRegistered(const LibraryTable& library) {
    const std::wstring path = L"TypeLib\\" + guidText(library.id) + L"\\" + versionText(library);
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(key);
    return true;
}

HRESULT registerTypeLibrary(const std::wstring& path) {
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library))) {
        return kSelfRegistrationOfTypeLibrary;
    }
    std::wstring file = path;
    const HRESULT status = RegisterTypeLib(library, file.data(), nullptr);
    library->Release();
    return FAILED(status) ? kSelfRegistrationOfTypeLibrary : S_OK;
}

}  // namespace

HRESULT registerLibrary() try {
    const LibraryTable& library = libraryTable();
    const std::wstring path = modulePath();
    std::vector<Entry> entries;
    for (const ClassTable* table : library.classes) {
        addClass(entries, library, *table, path);
        for (const InterfaceAlias& alias : table->aliases)
            addAlias(entries, library, alias);
    }
    HRESULT status = registerTypeLibrary(path);
    for (const Entry& entry : entries) {
        if (SUCCEEDED(status) && !write(entry)) status = kSelfRegistrationOfClasses;
    }
    if (FAILED(status)) unregisterLibrary();
    return status;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT unregisterLibrary() try {
    const LibraryTable& library = libraryTable();
    bool removed = true;
    for (const ClassTable* table : library.classes) {
        removed = removeTree(classKey(*table)) && removed;
        if (table->instancing != Instancing::internal) {
            removed = removeTree(progIdOf(library, *table)) && removed;
        }
        for (const InterfaceAlias& alias : table->aliases) {
            removed = removeTree(aliasKey(alias)) && removed;
        }
    }
    if (isTypeLibraryRegistered(library) &&
        FAILED(
            UnRegisterTypeLib(library.id, library.major, library.minor, LANG_NEUTRAL, SYS_WIN32))) {
        return kSelfRegistrationOfTypeLibrary;
    }
    return removed ? S_OK : kSelfRegistrationOfClasses;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

}  // namespace orvane::automation
