#include "frame/automation/type_info/type_description.h"

#include "frame/automation/library_lifetime.h"

#include <algorithm>
#include <exception>
#include <string>

namespace orvane::automation {

namespace {

struct Types {
    std::vector<TypeDescription> all;
    std::size_t own = 0;
    std::vector<std::string> interfaceNames;
};

// Interfaces bear the class's name behind an underscore.
void addClasses(Types& types, const LibraryTable& library) {
    types.interfaceNames.reserve(library.classes.size());
    for (const ClassTable* table : library.classes) {
        types.interfaceNames.push_back(std::string("_") + table->name);
        types.all.push_back({TKIND_DISPATCH, types.interfaceNames.back().c_str(),
                             table->interfaceId, nullptr, table});
        if (table->events.name != nullptr) {
            types.all.push_back({TKIND_DISPATCH, table->events.name, table->events.interfaceId,
                                 nullptr, nullptr, &table->events});
        }
        types.all.push_back({TKIND_COCLASS, table->name, table->classId, table->help, table});
    }
}

Types collect() {
    const LibraryTable& library = libraryTable();
    Types types;
    for (const EnumTable* table : library.enums) {
        types.all.push_back({TKIND_ENUM, table->name, {}, nullptr, nullptr, nullptr, table});
    }
    addClasses(types, library);
    for (const ClassTable* table : library.classes) {
        for (const InterfaceAlias& alias : table->aliases) {
            types.all.push_back({TKIND_ALIAS, alias.name, alias.interfaceId, nullptr, table});
        }
    }
    types.own = types.all.size();
    types.all.push_back({TKIND_INTERFACE, "IDispatch", IID_IDispatch});
    types.all.push_back({TKIND_DISPATCH, "Picture", IID_IPictureDisp});
    types.all.push_back({TKIND_DISPATCH, "Font", IID_IFontDisp});
    return types;
}

const Types& types() {
    static const Types& collected = permanent<Types>([] { return collect(); });
    return collected;
}

template <class Matches>
HREFTYPE find(Matches&& matches) {
    const auto& all = types().all;
    const auto found = std::ranges::find_if(all, matches);
    // Every table that a member refers to is in the library's lists; a program ends here at its
    // first look at the type information otherwise.
    if (found == all.end()) std::terminate();
    return static_cast<HREFTYPE>(found - all.begin());
}

}  // namespace

const std::vector<Member>* TypeDescription::members() const {
    if (kind != TKIND_DISPATCH) return nullptr;
    if (events != nullptr) return &events->events;
    return classTable != nullptr ? &classTable->members : nullptr;
}

const std::vector<TypeDescription>& describedTypes() {
    return types().all;
}

std::size_t ownTypeCount() {
    return types().own;
}

HREFTYPE referenceTo(const ClassTable& defaultInterface) {
    return find([&](const TypeDescription& type) {
        return type.isDual() && type.classTable == &defaultInterface;
    });
}

HREFTYPE referenceTo(const EnumTable& table) {
    return find([&](const TypeDescription& type) { return type.enumTable == &table; });
}

HREFTYPE referenceTo(const EventTable& events) {
    return find([&](const TypeDescription& type) { return type.events == &events; });
}

HREFTYPE dispatchReference() {
    return static_cast<HREFTYPE>(types().own);
}

HREFTYPE referenceTo(HostInterface interface) {
    const std::size_t place = interface == HostInterface::picture ? 1 : 2;
    return static_cast<HREFTYPE>(types().own + place);
}

}  // namespace orvane::automation
