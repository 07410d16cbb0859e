#include "module/registration_places.h"

namespace orvane::automation {

namespace {

void addInterface(std::vector<RegistrationTree>& trees, const LibraryTable& library,
                  const std::u16string& name, REFGUID interfaceId) {
    trees.push_back({u"Interface\\" + guidText(interfaceId),
                     {{u"", u"", name},
                      {u"TypeLib", u"", guidText(library.id)},
                      {u"TypeLib", u"Version", versionText(library)}}});
}

}  // namespace

// For the whole machine where the process may, which is as root, and else for its user.
std::vector<RegistrationPlace> registrationPlaces() {
    return {{platform::kHkeyLocalMachine, u"Software\\Classes\\"},
            {platform::kHkeyCurrentUser, u"Software\\Classes\\"}};
}

// What the system's automation library writes on Windows, but for the marshallers: there are none.
// The library itself answers for its types.
void addTypes(std::vector<RegistrationTree>& trees, const LibraryTable& library,
              const std::u16string& path) {
    const std::u16string id = u"TypeLib\\" + guidText(library.id);
    trees.push_back({id + u"\\" + versionText(library),
                     {{u"", u"", library.help},
                      {u"FLAGS", u"", u"0"},
                      {u"0\\linux64", u"", path},
                      {u"HELPDIR", u"", path.substr(0, path.rfind(u'/') + 1)}},
                     id});
    for (const ClassTable* table : library.classes) {
        addInterface(trees, library, u"_" + asciiText(table->name), table->interfaceId);
        if (table->events.name != nullptr) {
            addInterface(trees, library, asciiText(table->events.name), table->events.interfaceId);
        }
        for (const InterfaceAlias& alias : table->aliases)
            addInterface(trees, library, asciiText(alias.name), alias.interfaceId);
    }
}

bool registerTypeLibrary(const std::u16string&) {
    return true;
}

bool unregisterTypeLibrary(const LibraryTable&) {
    return true;
}

}  // namespace orvane::automation
