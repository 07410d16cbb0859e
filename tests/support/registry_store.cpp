#include "support/registry_store.h"

#include "platform/shlwapi.h"

#include <random>

#ifndef _WIN32
#include "platform/linux/registry_module.h"

#include <cstdlib>
#endif

namespace orvane::test {

namespace {

std::string uniqueKey() {
    std::random_device random;
    return "Software\\Orvane tests " + std::to_string(random()) + "-" + std::to_string(random());
}

#ifndef _WIN32
constexpr const char* kUser = "ORVANE_REGISTRY_USER";
constexpr const char* kMachine = "ORVANE_REGISTRY_MACHINE";

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

void setEnvironment(const char* name, const std::string& value) {
    if (value.empty()) {
        ::unsetenv(name);
    } else {
        ::setenv(name, value.c_str(), 1);
    }
}
#endif

}  // namespace

#ifdef _WIN32

RegistryStore::RegistryStore() : key_(uniqueKey()) {}

RegistryStore::~RegistryStore() {
    platform::shlwapi.SHDeleteKeyA(platform::kHkeyCurrentUser, key_);
    platform::shlwapi.SHDeleteKeyA(platform::kHkeyLocalMachine, key_);
}

#else

RegistryStore::RegistryStore()
    : formerUser_(environment(kUser)), formerMachine_(environment(kMachine)), key_(uniqueKey()) {
    closeDatabases();
    setEnvironment(kUser, userFolder());
    setEnvironment(kMachine, machineFolder());
}

RegistryStore::~RegistryStore() {
    closeDatabases();
    setEnvironment(kUser, formerUser_);
    setEnvironment(kMachine, formerMachine_);
}

void RegistryStore::closeDatabases() {
    if (const OrvaneStoreTable* store = platform::registryStore()) store->close();
}

#endif

}  // namespace orvane::test
