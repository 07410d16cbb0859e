#include "registry/registry_store.h"

#include "utf8.h"

#include "platform/advapi32.h"
#include "platform/kernel32.h"
#include "platform/shlwapi.h"

#include <algorithm>
#include <utility>

namespace orvane::tool {

namespace {

using platform::ResultCode;

constexpr ResultCode kNotFound{platform::kErrorFileNotFound};
constexpr ResultCode kNoMoreItems{platform::kErrorNoMoreItems};
constexpr ResultCode kNotSupported{platform::kErrorNotSupported};

platform::RegistryKey rootOf(const KeyName& key) {
    return platform::RegistryKey{static_cast<std::uint32_t>(key.root)};
}

std::string nameOf(const KeyName& key) {
    return toUtf8(textOf(key));
}

std::string nameOf(const KeyName& key, const std::u16string& valueName) {
    return nameOf(key) + ", " + (valueName.empty() ? "@" : "\"" + toUtf8(valueName) + "\"");
}

void check(ResultCode result, const std::string& what) {
    if (result != ResultCode::success) {
        throw RegistryFailure(what, static_cast<std::uint32_t>(result));
    }
}

/// The system's text for an error, without the full stop and line break at its end.
std::string errorText(std::uint32_t number) {
    const std::string ansi =
        platform::kernel32.FormatMessageA(platform::ModuleHandle::none, number);
    std::u16string text;
    for (const char byte : ansi)
        text += platform::ansiCodePage()[static_cast<unsigned char>(byte)];
    while (!text.empty() && (text.back() <= u' ' || text.back() == u'.'))
        text.pop_back();
    return toUtf8(text);
}

/// An open key, closed at its end.
class OpenKey {
public:
    OpenKey(const KeyName& name, std::uint32_t access) {
        check(platform::advapi32.RegOpenKeyExW(rootOf(name), name.path, 0, access, key_),
              nameOf(name));
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey() { platform::advapi32.RegCloseKey(key_); }

    /// The key, made first if it isn't there.
    static OpenKey created(const KeyName& name) { return OpenKey(name); }

    operator platform::RegistryKey() const { return key_; }

private:
    explicit OpenKey(const KeyName& name) {
        platform::KeyDisposition disposition{};
        check(platform::advapi32.RegCreateKeyExW(rootOf(name), name.path, 0, platform::kKeySetValue,
                                                 key_, disposition),
              nameOf(name));
    }

    platform::RegistryKey key_{};
};

KeyName below(const KeyName& key, const std::u16string& name) {
    return {key.root, key.path.empty() ? name : key.path + u"\\" + name};
}

void addTree(RegistryFile& file, const KeyName& key) {
    if (const char* flaw = flawOf(key.path); flaw != nullptr) {
        throw Failure(nameOf(key) + ": " + flaw + " can't be written to a registry file");
    }
    file.push_back({key, false, valuesOf(key)});
    for (const std::u16string& name : subKeysOf(key))
        addTree(file, below(key, name));
}

void removeTree(const KeyName& key) {
    const ResultCode removed = platform::shlwapi.SHDeleteKeyW(rootOf(key), key.path);
    if (removed != kNotFound) check(removed, nameOf(key));
}

void change(const OpenKey& open, const KeyName& key, const FileValue& value) {
    if (value.remove) {
        const ResultCode removed = platform::advapi32.RegDeleteValueW(open, value.name);
        if (removed != kNotFound) check(removed, nameOf(key, value.name));
    } else {
        check(platform::advapi32.RegSetValueExW(open, value.name,
                                                static_cast<std::uint32_t>(value.type), value.data),
              nameOf(key, value.name));
    }
}

void apply(const FileKey& key) {
    if (key.remove) {
        removeTree(key.name);
        return;
    }
    const OpenKey open = OpenKey::created(key.name);
    for (const FileValue& value : key.values)
        change(open, key.name, value);
}

/// Undoes everything at its end unless it was committed.
class Transaction {
public:
    Transaction() {
        const ResultCode begun = platform::registryTransactions.Begin();
        if (begun != kNotSupported) check(begun, "registry");
        isOpen_ = begun == ResultCode::success;
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction() {
        if (isOpen_) platform::registryTransactions.Rollback();
    }

    void commit() {
        if (std::exchange(isOpen_, false)) {
            check(platform::registryTransactions.Commit(), "registry");
        }
    }

private:
    bool isOpen_ = false;
};

}  // namespace

RegistryFailure::RegistryFailure(const std::string& what, std::uint32_t number)
    : Failure(what + ": error " + std::to_string(number) + " " + errorText(number)), code(number) {}

std::vector<std::u16string> subKeysOf(const KeyName& key) {
    const OpenKey open(key, platform::kKeyEnumerateSubKeys);
    std::vector<std::u16string> names;
    for (std::uint32_t index = 0;; ++index) {
        std::u16string name;
        const ResultCode result = platform::advapi32.RegEnumKeyExW(open, index, name);
        if (result == kNoMoreItems) return names;
        check(result, nameOf(key));
        names.push_back(std::move(name));
    }
}

std::vector<FileValue> valuesOf(const KeyName& key) {
    const OpenKey open(key, platform::kKeyQueryValue);
    std::vector<FileValue> values;
    for (std::uint32_t index = 0;; ++index) {
        FileValue value;
        std::uint32_t type = 0;
        const ResultCode result =
            platform::advapi32.RegEnumValueW(open, index, value.name, type, value.data);
        if (result == kNoMoreItems) return values;
        check(result, nameOf(key));
        value.type = static_cast<ValueType>(type);
        values.push_back(std::move(value));
    }
}

FileValue readValue(const KeyName& key, const std::u16string& name) {
    const OpenKey open(key, platform::kKeyQueryValue);
    FileValue value;
    value.name = name;
    std::uint32_t type = 0;
    check(platform::advapi32.RegQueryValueExW(open, name, type, value.data), nameOf(key, name));
    value.type = static_cast<ValueType>(type);
    return value;
}

void writeValue(const KeyName& key, const FileValue& value) {
    change(OpenKey::created(key), key, value);
}

void deleteValue(const KeyName& key, const std::u16string& name) {
    const OpenKey open(key, platform::kKeySetValue);
    check(platform::advapi32.RegDeleteValueW(open, name), nameOf(key, name));
}

void deleteKey(const KeyName& key, bool recursive) {
    if (key.path.empty()) throw Failure(nameOf(key) + ": a root can't be deleted");
    if (!recursive && !subKeysOf(key).empty()) {
        throw Failure(nameOf(key) + ": has sub-keys; --recursive deletes them, too");
    }
    check(platform::shlwapi.SHDeleteKeyW(rootOf(key), key.path), nameOf(key));
}

RegistryFile exportedTree(const KeyName& key) {
    RegistryFile file;
    addTree(file, key);
    return file;
}

void importAll(const RegistryFile& file) {
    Transaction transaction;
    for (const FileKey& key : file)
        apply(key);
    transaction.commit();
}

}  // namespace orvane::tool
