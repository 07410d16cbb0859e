#include "application/AppObject.h"

#include "frame/values/conversions.h"

namespace orvane {

WString AppObject::Title() const {
    return toText(object_.get(u"Title"));
}

std::int32_t AppObject::Major() const {
    return toLong(object_.get(u"Major"));
}

std::int32_t AppObject::Minor() const {
    return toLong(object_.get(u"Minor"));
}

std::int32_t AppObject::Revision() const {
    return toLong(object_.get(u"Revision"));
}

}  // namespace orvane
