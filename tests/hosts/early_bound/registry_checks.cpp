#include "checks.h"

#include <random>
#include <string>

namespace orvane::tests::early_bound {
namespace {

// The platform's own headers have macros of the constants' names.
constexpr auto kCurrentUser = static_cast<RegistryRoot_Const>(static_cast<LONG>(0x80000001));

VARIANT textValue(const Text& text) {
    VARIANT argument{};
    argument.vt = VT_BSTR;
    argument.bstrVal = text;
    return argument;
}

/// The number of items in a collection that the library gave, which goes with that; -1 for none.
LONG countOf(IDispatch* collection) {
    if (collection == nullptr) return -1;
    DISPPARAMS none{};
    VARIANT result{};
    constexpr DISPID kCount = 2;
    const HRESULT status = collection->Invoke(kCount, GUID_NULL, LOCALE_USER_DEFAULT,
                                              DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                                              &result, nullptr, nullptr);
    collection->Release();
    return status == S_OK && result.vt == VT_I4 ? result.lVal : -1;
}

std::u16string uniqueKey() {
    std::u16string path = u"Software\\Orvane host ";
    for (const char digit : std::to_string(std::random_device()()))
        path += static_cast<char16_t>(digit);
    return path;
}

}  // namespace

void checkRegistry(Library& library) {
    const auto registry = library.create<_orvRegistry>();
    const std::u16string path = uniqueKey();
    const Text key(path);
    const Text below(path + u"\\below");
    const Text name(u"value");
    VARIANT_BOOL done = 1;
    VARIANT_BOOL flag = VARIANT_TRUE;
    library.check(registry->IsKeyExist(kCurrentUser, key, &done));
    expect(done == VARIANT_FALSE, "IsKeyExist of a missing key");
    LONG error = -1;
    library.check(registry->get_LastRegError(&error));
    expect(error == 2, "LastRegError");
    library.check(registry->CreateKey(kCurrentUser, below, &flag, &done));
    expect(done == VARIANT_TRUE && flag == VARIANT_FALSE, "CreateKey");
    library.check(registry->SetValue(kCurrentUser, key, name, rtLong, longValue(7), &flag, &done));
    expect(done == VARIANT_TRUE && flag == VARIANT_TRUE, "SetValue");
    VARIANT value{};
    library.check(registry->GetValue(kCurrentUser, key, name, rtLong, &flag, &value));
    expect(flag == VARIANT_TRUE && value.vt == VT_I4 && value.lVal == 7, "GetValue");
    const Text text(u"text");
    library.check(
        registry->SetValue(kCurrentUser, key, name, rtLong, textValue(text), &flag, &done));
    expect(done == VARIANT_FALSE, "SetValue of another type");
    IDispatch* names = nullptr;
    library.check(registry->GetSubKeysNames(kCurrentUser, key, &names));
    expect(countOf(names) == 1, "GetSubKeysNames");
    names = nullptr;
    library.check(registry->GetValuesNames(kCurrentUser, key, &names));
    expect(countOf(names) == 1, "GetValuesNames");
    library.check(registry->DeleteValue(kCurrentUser, key, name, &done));
    expect(done == VARIANT_TRUE, "DeleteValue");
    library.check(registry->DeleteKey(kCurrentUser, key, &done));
    expect(done == VARIANT_FALSE, "DeleteKey of a key with sub-keys");
    library.check(registry->DeleteKeyRecurse(kCurrentUser, key, &done));
    expect(done == VARIANT_TRUE, "DeleteKeyRecurse");
    names = nullptr;
    library.check(registry->GetSubKeysNames(kCurrentUser, key, &names));
    expect(names == nullptr, "GetSubKeysNames of a missing key");
}

}  // namespace orvane::tests::early_bound
