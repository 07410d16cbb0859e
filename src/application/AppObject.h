#pragma once

#include "frame/values/object.h"
#include "frame/values/wstring.h"

#include <cstdint>

namespace orvane {

/// The host's application object, as members get it in their argument `AppObject`: any object that
/// answers these properties by name. Every read asks the object anew.
///
/// A read raises 91 when the argument was left out, 438 when the object lacks the property, what
/// the object itself raises, and the conversion's error for a value of a bad type.
class AppObject {
public:
    explicit AppObject(Object object) : object_(std::move(object)) {}

    WString Title() const;
    std::int32_t Major() const;
    std::int32_t Minor() const;
    std::int32_t Revision() const;

private:
    Object object_;
};

}  // namespace orvane
