#pragma once

#include "frame/values/object.h"

#include <utility>

namespace orvane {

/// A font: an object of the hosts' runtime.
class Font : public Object {
public:
    Font() = default;
    Font(std::nullptr_t) {}
    explicit Font(Object object) : Object(std::move(object)) {}
};

}  // namespace orvane
