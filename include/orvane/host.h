#pragma once

/// A small client for C++ hosts, the same on both platforms. It reaches the library through its
/// four exports only:
///
///     #include <orvane/OrvBase0301.h>
///     #include <orvane/host.h>
///
///     orvane::host::Library library;                     // beside the program, or ORVANE_LIBRARY
///     auto& app = library.global<_orvMain>();            // the hidden instance of this thread
///     orvane::host::Pointer<_CommandLineParser> line;
///     library.check(app.CommandLine(line.receive()));
///
/// Objects belong to the thread that made them. On Windows a program that uses this header links
/// oleaut32 and uuid.

#include "orvane/automation.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <map>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#include <unistd.h>
#endif

namespace orvane::host {

/// A counted reference to an interface.
template <class Interface>
class Pointer {
public:
    Pointer() = default;
    Pointer(const Pointer& other) : pointer_(other.pointer_) {
        if (pointer_ != nullptr) pointer_->AddRef();
    }
    Pointer(Pointer&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    Pointer& operator=(Pointer other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~Pointer() {
        if (pointer_ != nullptr) pointer_->Release();
    }
    /// Takes over the caller's reference.
    static Pointer adopt(Interface* pointer) {
        Pointer result;
        result.pointer_ = pointer;
        return result;
    }

    /// The place for a call to store a reference in; lets go of the former one.
    Interface** receive() {
        *this = Pointer();
        return &pointer_;
    }
    /// The place of an in/out argument.
    Interface** place() { return &pointer_; }
    Interface* get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    Interface& operator*() const { return *pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }

    /// Another interface of the same object, or null.
    template <class Other>
    Pointer<Other> query(REFIID iid) const {
        void* found = nullptr;
        if (pointer_ == nullptr || FAILED(pointer_->QueryInterface(iid, &found))) return {};
        return Pointer<Other>::adopt(static_cast<Other*>(found));
    }

private:
    Interface* pointer_ = nullptr;
};

/// The units of the longest string: the count of bytes before them is a signed 32-bit number to
/// those who read it.
inline constexpr std::size_t kLongestText = INT32_MAX / sizeof(OLECHAR);

/// Strings as the binary interface has them. On Linux they are blocks of `malloc`. Throws
/// std::bad_alloc for a text that is too long for one.
inline BSTR newText(std::u16string_view text) {
    if (text.size() > kLongestText) throw std::bad_alloc();
#ifdef _WIN32
    BSTR result = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                    static_cast<UINT>(text.size()));
    if (result == nullptr) throw std::bad_alloc();
    return result;
#else
    const auto bytes = static_cast<std::uint32_t>(text.size() * sizeof(OLECHAR));
    auto* block = static_cast<std::uint8_t*>(
        std::malloc(sizeof bytes + std::size_t{bytes} + sizeof(OLECHAR)));
    if (block == nullptr) throw std::bad_alloc();
    std::memcpy(block, &bytes, sizeof bytes);
    if (bytes != 0) std::memcpy(block + sizeof bytes, text.data(), bytes);
    std::memset(block + sizeof bytes + bytes, 0, sizeof(OLECHAR));
    void* units = block + sizeof bytes;
    return static_cast<BSTR>(units);
#endif
}

inline void freeText(BSTR text) {
#ifdef _WIN32
    SysFreeString(text);
#else
    void* units = text;
    if (text != nullptr) std::free(static_cast<std::uint8_t*>(units) - sizeof(std::uint32_t));
#endif
}

inline std::u16string_view viewOf(BSTR text) {
    if (text == nullptr) return {};
    std::uint32_t bytes;
    const void* units = text;
    std::memcpy(&bytes, static_cast<const std::uint8_t*>(units) - sizeof bytes, sizeof bytes);
    return {static_cast<const char16_t*>(units), bytes / sizeof(char16_t)};
}

/// A string of the host's own: an argument, or a place for a result.
class Text {
public:
    Text() = default;
    Text(std::u16string_view text) : text_(newText(text)) {}
    Text(const char16_t* text) : Text(std::u16string_view(text)) {}
    Text(const Text& other) : text_(other.text_ ? newText(other.view()) : nullptr) {}
    Text(Text&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    Text& operator=(Text other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Text() { freeText(text_); }

    operator BSTR() const { return text_; }
    BSTR* receive() {
        freeText(std::exchange(text_, nullptr));
        return &text_;
    }
    /// The place of an in/out argument.
    BSTR* place() { return &text_; }
    std::u16string_view view() const { return viewOf(text_); }
    friend bool operator==(const Text& text, std::u16string_view other) {
        return text.view() == other;
    }
    friend bool operator==(const Text& text, const char16_t* other) { return text.view() == other; }

private:
    BSTR text_ = nullptr;
};

/// What a failed call tells.
class Error : public std::exception {
public:
    Error(HRESULT failedStatus, std::u16string text, std::u16string from)
        : status(failedStatus), description(std::move(text)), source(std::move(from)) {}

    const char* what() const noexcept override { return "a call of the library failed"; }

    /// The run-time error's number: the low word of 0x800Axxxx, else the status as it is.
    std::int32_t number() const {
        const auto bits = static_cast<std::uint32_t>(status);
        return static_cast<std::int32_t>((bits >> 16) == 0x800A ? bits & 0xFFFF : bits);
    }

    HRESULT status;
    std::u16string description;
    std::u16string source;
};

/// The library could not be loaded, or is none.
class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A loaded library. It stays loaded while this object lives; all objects of it must be released
/// before.
class Library {
public:
    /// Loads from `path` (UTF-8); an empty one stands for the environment variable ORVANE_LIBRARY
    /// and, where that isn't set, for the library's own name beside the program.
    explicit Library(std::string path = {}, const char* defaultName = kDefaultName) {
        if (path.empty()) path = defaultPath(defaultName);
        open(path);
        getClassObject_ = entry<GetClassObject>("DllGetClassObject");
        canUnloadNow_ = entry<CanUnloadNow>("DllCanUnloadNow");
        registerServer_ = entry<CanUnloadNow>("DllRegisterServer");
        unregisterServer_ = entry<CanUnloadNow>("DllUnregisterServer");
        if (!getClassObject_ || !canUnloadNow_ || !registerServer_ || !unregisterServer_) {
            close();
            throw LoadError(path + " lacks an entry point");
        }
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() {
        // What other threads left behind can't be released here.
        for (auto& each : globals_) {
            if (each.first.first != std::this_thread::get_id()) {
                [[maybe_unused]] IDispatch* const left =
                    std::exchange(*each.second.place(), nullptr);
            }
        }
        globals_.clear();
        canUnloadNow_();  // the library lets go of what it keeps for this thread
        close();
    }

    /// `DllGetClassObject`: the factory of a class as `Interface`.
    template <class Interface>
    Pointer<Interface> classObject(REFCLSID classId, REFIID iid) {
        void* found = nullptr;
        const HRESULT status = getClassObject_(classId, iid, &found);
        if (FAILED(status)) throw Error(status, {}, {});
        {
            const std::lock_guard lock(mutex_);
            usedClass_ = classId;
        }
        return Pointer<Interface>::adopt(static_cast<Interface*>(found));
    }

    /// A new object of the class whose default interface is `Interface`.
    template <class Interface>
    Pointer<Interface> create() {
        void* made = nullptr;
        const auto factory = classObject<IClassFactory>(Interface::kClassId, IID_IClassFactory);
        check(factory->CreateInstance(nullptr, Interface::kInterfaceId, &made));
        return Pointer<Interface>::adopt(static_cast<Interface*>(made));
    }

    /// A new object of the class that is registered under a ProgID, of whatever component. On
    /// Windows a program that calls this links ole32, too, and has initialised it on the thread.
    Pointer<IDispatch> createObject(const char16_t* progId) {
        Pointer<IUnknown> made;
        makeRegistered(progId, made.receive());
        auto object = made.query<IDispatch>(IID_IDispatch);
        if (!object) throw Error(E_NOINTERFACE, {}, {});
        return object;
    }

    /// The calling thread's hidden instance of a global class, made on first use. It lives until
    /// `endThread`; those of the thread that ends this object go with it.
    template <class Interface>
    Interface& global() {
        const Key key{std::this_thread::get_id(), Interface::kProgId};
        {
            const std::lock_guard lock(mutex_);
            const auto known = globals_.find(key);
            if (known != globals_.end()) return static_cast<Interface&>(*known->second);
        }
        auto made = create<Interface>();
        Interface& instance = *made;
        instance.AddRef();
        const std::lock_guard lock(mutex_);
        globals_.emplace(key, Pointer<IDispatch>::adopt(&instance));
        return instance;
    }

    /// Releases the calling thread's hidden instances: to be called before a thread ends.
    void endThread() {
        std::vector<Pointer<IDispatch>> dropped;  // released after the lock
        const std::lock_guard lock(mutex_);
        for (auto each = globals_.begin(); each != globals_.end();) {
            if (each->first.first != std::this_thread::get_id()) {
                ++each;
                continue;
            }
            dropped.push_back(std::move(each->second));
            each = globals_.erase(each);
        }
    }

    /// Throws `Error` for a failed status, with what the library told about it on this thread.
    void check(HRESULT status) {
        if (FAILED(status)) throw errorOf(status);
    }

    /// `DllCanUnloadNow`.
    bool canUnload() const { return canUnloadNow_() == S_OK; }
    HRESULT registerServer() const { return registerServer_(); }
    HRESULT unregisterServer() const { return unregisterServer_(); }
    /// `DllGetClassObject` as it is.
    HRESULT getClassObject(REFCLSID classId, REFIID iid, void** object) const {
        return getClassObject_(classId, iid, object);
    }

#ifdef _WIN32
    static constexpr const char* kDefaultName = "OrvaneBase0301.DLL";
    HRESULT errorInfo(IErrorInfo** info) {
        return GetErrorInfo(0, info);
    }
    HRESULT clear(VARIANT* value) {
        return VariantClear(value);
    }
#else
    static constexpr const char* kDefaultName = "libOrvaneBase0301.so";
    HRESULT errorInfo(IErrorInfo** info) {
        return runtime()->GetError(info);
    }
    HRESULT clear(VARIANT* value) {
        return runtime()->ClearVariant(value);
    }
    /// Strings, arrays and values, through the factory of `classId` or of the class used last.
    Pointer<IOrvaneRuntime> runtime(REFCLSID classId) {
        void* found = nullptr;
        if (FAILED(getClassObject_(classId, IID_IOrvaneRuntime, &found))) {
            throw LoadError("the library has no such class");
        }
        return Pointer<IOrvaneRuntime>::adopt(static_cast<IOrvaneRuntime*>(found));
    }
    Pointer<IOrvaneRuntime> runtime() {
        CLSID known;
        {
            const std::lock_guard lock(mutex_);
            known = usedClass_;
        }
        return runtime(known);
    }
#endif

private:
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();
    using Key = std::pair<std::thread::id, std::string>;

    Error errorOf(HRESULT status) {
        Pointer<IErrorInfo> info;
        Text description;
        Text source;
        if (errorInfo(info.receive()) == S_OK && info) {
            info->GetDescription(description.receive());
            info->GetSource(source.receive());
        }
        return Error(status, std::u16string(description.view()), std::u16string(source.view()));
    }

#ifdef _WIN32
    void makeRegistered(const char16_t* progId, IUnknown** object) {
        CLSID classId{};
        void* made = nullptr;
        check(CLSIDFromProgID(reinterpret_cast<const OLECHAR*>(progId), &classId));
        check(CoCreateInstance(classId, nullptr, CLSCTX_SERVER, IID_IUnknown, &made));
        *object = static_cast<IUnknown*>(made);
    }
    static std::wstring wide(const std::string& text) {
        const int size =
            MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
        std::wstring result(static_cast<std::size_t>(size), L'\0');
        MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(),
                            size);
        return result;
    }
    static std::string narrow(const wchar_t* text) {
        const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
        std::string result(static_cast<std::size_t>(size), '\0');
        WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
        result.resize(static_cast<std::size_t>(size) - 1);
        return result;
    }
    static std::string defaultPath(const char* name) {
        wchar_t buffer[32768];
        if (const DWORD size = GetEnvironmentVariableW(L"ORVANE_LIBRARY", buffer, 32768);
            size != 0 && size < 32768) {
            return narrow(buffer);
        }
        GetModuleFileNameW(nullptr, buffer, 32768);
        const std::string program = narrow(buffer);
        return program.substr(0, program.rfind('\\') + 1) + name;
    }
    void open(const std::string& path) {
        module_ = LoadLibraryW(wide(path).c_str());
        if (module_ == nullptr) throw LoadError("can't load " + path);
    }
    void close() {
        FreeLibrary(module_);
    }
    template <class Function>
    Function entry(const char* name) const {
        return reinterpret_cast<Function>(
            reinterpret_cast<void (*)()>(GetProcAddress(module_, name)));
    }

    HMODULE module_ = nullptr;
#else
    void makeRegistered(const char16_t* progId, IUnknown** object) {
        check(runtime()->CreateObject(progId, object));
    }
    static std::string defaultPath(const char* name) {
        if (const char* set = std::getenv("ORVANE_LIBRARY"); set != nullptr && *set != 0)
            return set;
        std::string program(4096, '\0');
        const auto size = readlink("/proc/self/exe", program.data(), program.size());
        program.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
        return program.substr(0, program.rfind('/') + 1) + name;
    }
    void open(const std::string& path) {
        module_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (module_ == nullptr) throw LoadError(dlerror());
    }
    void close() {
        dlclose(module_);
    }
    template <class Function>
    Function entry(const char* name) const {
        return reinterpret_cast<Function>(dlsym(module_, name));
    }

    void* module_ = nullptr;
#endif

    GetClassObject getClassObject_ = nullptr;
    CanUnloadNow canUnloadNow_ = nullptr;
    CanUnloadNow registerServer_ = nullptr;
    CanUnloadNow unregisterServer_ = nullptr;
    CLSID usedClass_{};
    std::mutex mutex_;
    std::map<Key, Pointer<IDispatch>> globals_;
};

}  // namespace orvane::host
