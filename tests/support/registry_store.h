#pragma once

#include "platform/registry.h"
#include "support/temp_dir.h"

#include <string>

namespace orvane::test {

/// A registry for a test to write to, which nobody else looks at.
///
/// On Linux both roots lie in a new folder while this lives. On Windows the registry is the
/// system's: a test keeps to the key `key()`, which is gone at the end.
class RegistryStore {
public:
    RegistryStore();
    ~RegistryStore();
    RegistryStore(const RegistryStore&) = delete;
    RegistryStore& operator=(const RegistryStore&) = delete;

    /// A path below `HKEY_CURRENT_USER` (and, where that may be written, `HKEY_LOCAL_MACHINE`) for
    /// the test's own keys. It is not there at first.
    const std::string& key() const { return key_; }
    /// A path below it.
    std::string key(const std::string& below) const { return key_ + "\\" + below; }

#ifndef _WIN32
    /// The folders of the two databases.
    std::string userFolder() const {
        return dir_.file("user");
    }
    std::string machineFolder() const {
        return dir_.file("machine");
    }
    std::string userFile() const {
        return userFolder() + "/registry.db";
    }
    std::string machineFile() const {
        return machineFolder() + "/registry.db";
    }
    /// Closes the databases, as the end of a process does.
    static void closeDatabases();
#endif

private:
#ifndef _WIN32
    TempDir dir_;
    std::string formerUser_;
    std::string formerMachine_;
#endif
    std::string key_;
};

/// A test with such a registry.
class RegistryTest : public testing::Test {
protected:
    RegistryStore store_;
};

}  // namespace orvane::test
