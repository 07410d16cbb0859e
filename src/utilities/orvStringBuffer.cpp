#include "utilities/orvStringBuffer.h"

#include "frame/arithmetic.h"
#include "frame/automation/describe.h"
#include "frame/values/text.h"

#include <cstring>

namespace orvane {
namespace {

/// Both parts in storage of exactly their length.
WString joined(WStringView front, WStringView back) {
    if (front.size() + back.size() > kLongestText) raise(error::kOutOfMemory);
    std::u16string text;
    text.reserve(front.size() + back.size());
    text.append(front).append(back);
    return WString(std::move(text));
}

}  // namespace

const automation::ClassTable& orvStringBuffer::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<orvStringBuffer>(
                   "orvStringBuffer", automation::Instancing::creatable,
                   {0x0F9D5C46, 0x4A0A, 0x4E77, {0x88, 0x48, 0xE9, 0x7B, 0xD1, 0xF0, 0xB2, 0x58}},
                   {0x7DEC580F, 0xCFCB, 0x45CE, {0xBC, 0x22, 0xCF, 0x0C, 0x7E, 0xC4, 0x20, 0x4D}})
            .method<&orvStringBuffer::Trim>("Trim")
            .method<&orvStringBuffer::AddText>("AddText", {"Text"})
            .method<&orvStringBuffer::Alloc>("Alloc", {"Size", {"Character", u" "}})
            .propertyPut<&orvStringBuffer::putValue>("Value", {"Value"})
            .propertyGet<&orvStringBuffer::Value>("Value")
            .propertyGet<&orvStringBuffer::Size>("Size")
            .build();
    });
    return table;
}

orvStringBuffer::orvStringBuffer() : AutomationObject(table()) {}

void orvStringBuffer::replace(WString buffer) {
    size_ = len(buffer);
    buffer_ = std::move(buffer);
}

void orvStringBuffer::Trim() {
    replace(left(buffer_, checkedSubtract(position_, 1)));
}

void orvStringBuffer::AddText(WStringView text) {
    if (text.empty()) return;
    const std::int32_t length = len(text);
    if (position_ > size_) {
        replace(joined(buffer_, text));
    } else if (checkedAdd(position_, length) > size_) {
        const std::int32_t used = checkedSubtract(position_, 1);
        if (used < 0) raise(error::kInvalidArgument);
        replace(joined(buffer_.view().substr(0, static_cast<std::size_t>(used)), text));
    } else {
        std::memcpy(buffer_.edit().data() + (position_ - 1), text.data(),
                    text.size() * sizeof(char16_t));
    }
    position_ = checkedAdd(position_, length);
}

void orvStringBuffer::Alloc(std::int32_t size, const Variant& character) {
    replace(stringOf(size, character));
    position_ = 1;
}

void orvStringBuffer::putValue(WStringView text) {
    replace(WString(text));
    position_ = checkedAdd(size_, 1);
}

}  // namespace orvane
