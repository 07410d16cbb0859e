#include "frame/automation/create_object.h"

#include "frame/automation/automation_object.h"
#include "frame/automation/table.h"
#include "frame/errors.h"
#include "frame/values/text.h"
#include "platform/ole32.h"

namespace orvane {
namespace {

WString lowered(const char* name) {
    std::u16string text;
    for (; *name != 0; ++name)
        text += static_cast<unsigned char>(*name);
    return lCase(text);
}

Object createOwn(WStringView progId) {
    const automation::LibraryTable& library = automation::libraryTable();
    const WString asked = lCase(progId);
    const WString prefix = lowered(library.progIdPrefix) + u".";
    for (const automation::ClassTable* table : library.classes) {
        const bool forHosts = table->instancing != automation::Instancing::internal;
        if (forHosts && asked == (prefix + lowered(table->name)).view()) {
            return Object::adopt(table->create()->defaultInterface());
        }
    }
    raise(error::kCantCreateObject);
}

}  // namespace

Object createObject(WStringView progId) {
    platform::ClassIdBytes classId{};
    const std::int32_t found = platform::ole32.CLSIDFromProgID(std::u16string(progId), classId);
    if (found == platform::kNoRegistration) return createOwn(progId);
    IUnknown* object = nullptr;
    if (found < 0 || platform::ole32.CoCreateInstance(classId, object) < 0) {
        raise(error::kCantCreateObject);
    }
    return Object::adopt(object);
}

}  // namespace orvane
