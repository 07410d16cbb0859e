#pragma once

#include "settings/orvRegistry.h"
#include "support/registry_store.h"

#include <random>
#include <string>

namespace orvane::test {

/// A name that no other test, process or run uses.
inline std::u16string uniqueText(const char16_t* start) {
    static const std::string number = std::to_string(std::random_device()());
    static int count = 0;
    std::u16string text(start);
    for (const char digit : " " + number + " " + std::to_string(++count))
        text += static_cast<char16_t>(digit);
    return text;
}

/// An application's place among the settings of a `RegistryStore`, under a title of its own: gone
/// with all in it, from both roots, at the end.
class SettingsPlace {
public:
    SettingsPlace() = default;
    ~SettingsPlace() {
        for (const RegistryRoot_Const root :
             {RegistryRoot_Const::currentUser, RegistryRoot_Const::localMachine})
            registry_->DeleteKeyRecurse(root, key());
    }
    SettingsPlace(const SettingsPlace&) = delete;
    SettingsPlace& operator=(const SettingsPlace&) = delete;

    const std::u16string& title() const { return title_; }
    /// The application's key, or the key of one of its versions, below the root.
    std::u16string key() const { return u"Software\\Tarn Hollow\\Orvane\\" + title_; }
    std::u16string key(const std::u16string& version) const { return key() + u"\\" + version; }

    /// Stores a text under one of the application's keys ("Version 1.2").
    void store(const std::u16string& version, const std::u16string& name, const char16_t* text,
               RegistryRoot_Const root = RegistryRoot_Const::currentUser) {
        bool existed = false;
        registry_->SetValue(root, key(version), name, RegistryType_Const::rtString, Variant(text),
                            existed);
    }
    void makeKey(const std::u16string& version) {
        bool existed = false;
        registry_->CreateKey(RegistryRoot_Const::currentUser, key(version), existed);
    }
    /// What a version's own key holds, Empty when it holds nothing of this name.
    Variant stored(const std::u16string& version, const std::u16string& name,
                   RegistryType_Const type = RegistryType_Const::rtString,
                   RegistryRoot_Const root = RegistryRoot_Const::currentUser) {
        bool success = false;
        Variant value = registry_->GetValue(root, key(version), name, type, success);
        return success ? value : Variant();
    }
    orvRegistry& registry() { return *registry_; }

private:
    RegistryStore store_;
    std::u16string title_ = uniqueText(u"Orvane test");
    Ref<orvRegistry> registry_ = make<orvRegistry>();
};

}  // namespace orvane::test
