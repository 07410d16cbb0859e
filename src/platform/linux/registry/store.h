#pragma once

// The interface of libOrvaneRegistry.so: what takes the place of the system's registry on Linux.
//
// The library binds the module at run time and asks for one function, orvaneRegistryStore.
// Everything that crosses is plain C. Names are UTF-16 units, twice: as they were spelled, and
// folded, which is what names are compared by. A path is names with one backslash between two.
// Codes are the platform's, 0 for success.

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Grows whenever anything below changes; a caller refuses any other value.
#define ORVANE_STORE_VERSION 4u

/// Name of the one exported function, for dlsym.
#define ORVANE_STORE_ENTRY "orvaneRegistryStore"

/// The predefined keys that the store knows. Classes are the user's "Software\Classes" over the
/// machine's.
enum OrvaneStoreRoot { ORVANE_STORE_USER = 0, ORVANE_STORE_MACHINE = 1, ORVANE_STORE_CLASSES = 2 };

/// A name or path: `spelled` and `folded` have the same length.
typedef struct OrvaneStoreName {
    const uint16_t* spelled;
    const uint16_t* folded;
    uint32_t units;
} OrvaneStoreName;

/// A key that was opened: its root, its number there (0 for the root itself, and always for
/// classes) and its folded path from the root.
typedef struct OrvaneStoreKey {
    int32_t root;
    int64_t id;
    const uint16_t* path;
    uint32_t units;
} OrvaneStoreKey;

typedef struct OrvaneStoreInformation {
    uint32_t subKeys;
    uint32_t longestSubKey;
    uint32_t values;
    uint32_t longestValueName;
    /// Bytes as they are stored, of text values and of all others.
    uint32_t longestText;
    uint32_t longestOther;
} OrvaneStoreInformation;

/// Takes what a call found; the pointers are good until it returns.
typedef void (*OrvaneStoreTake)(void* context, const uint16_t* name, uint32_t units, uint32_t type,
                                const uint8_t* data, size_t size);

/// The store's operations; any thread may call them. Every call is one transaction, done or not
/// done when it returns, whatever other processes do. A key that was deleted since it was opened
/// gives 1018.
typedef struct OrvaneStoreTable {
    /// ORVANE_STORE_VERSION of the module.
    uint32_t version;

    /// Finds a key below another one and gives its number. With `forWriting` also tells, by 5,
    /// that this user may not change it.
    uint32_t (*open)(const OrvaneStoreKey* base, const OrvaneStoreName* path, int forWriting,
                     int64_t* id);
    /// The same, and makes what is missing; `created` tells whether the key itself was.
    uint32_t (*create)(const OrvaneStoreKey* base, const OrvaneStoreName* path, int forWriting,
                       int64_t* id, int* created);
    uint32_t (*query)(const OrvaneStoreKey* key, const OrvaneStoreName* name, OrvaneStoreTake take,
                      void* context);
    uint32_t (*set)(const OrvaneStoreKey* key, const OrvaneStoreName* name, uint32_t type,
                    const uint8_t* data, size_t size);
    uint32_t (*deleteValue)(const OrvaneStoreKey* key, const OrvaneStoreName* name);
    /// Facts of a key and the names that they count, of one moment: `takeSubKey` and `takeValue`,
    /// either of which may be null, get each name alone, in the order of their places.
    uint32_t (*information)(const OrvaneStoreKey* key, OrvaneStoreInformation* information,
                            OrvaneStoreTake takeSubKey, OrvaneStoreTake takeValue, void* context);
    /// A sub-key by its place from 0; `take` gets its name alone. 259 behind the last one. A value
    /// likewise, without its data unless that is asked for.
    uint32_t (*subKey)(const OrvaneStoreKey* key, uint32_t index, OrvaneStoreTake take,
                       void* context);
    uint32_t (*value)(const OrvaneStoreKey* key, uint32_t index, int withData, OrvaneStoreTake take,
                      void* context);
    /// Deletes a key; 1020 when it has sub-keys.
    uint32_t (*deleteEmpty)(const OrvaneStoreKey* base, const OrvaneStoreName* path);
    /// Deletes a key with all below it; with an empty path what is in `base`, but not `base`.
    uint32_t (*deleteTree)(const OrvaneStoreKey* base, const OrvaneStoreName* path);

    /// Make the calls of this thread up to `commit` or `rollback` one transaction. Each root's
    /// part is done or not done, and a failure may come between them: `committed` gets a bit,
    /// 1 << root, for each root whose part lasts.
    uint32_t (*begin)(void);
    uint32_t (*commit)(uint32_t* committed);
    uint32_t (*rollback)(void);
    /// Within a transaction: from here to its end nobody else changes a root, so that what is found
    /// there, or isn't, stays so. Does nothing in a root that isn't there or that this user may not
    /// change.
    uint32_t (*claim)(int32_t root);

    /// Closes the databases. The next call opens them again, where the environment says then.
    void (*close)(void);
} OrvaneStoreTable;

/// The module's table; it lives as long as the module is loaded.
const OrvaneStoreTable* orvaneRegistryStore(void);

#ifdef __cplusplus
}
#endif
