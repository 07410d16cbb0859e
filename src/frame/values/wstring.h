#pragma once

#include <compare>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {

/// A text argument: a view of UTF-16 units that the caller keeps. A null string is a view without
/// data; it has length 0 and equals the empty one.
using WStringView = std::u16string_view;

/// A wide string: UTF-16 units, any value including 0. It remembers whether it is null; null and
/// empty are equal in every comparison and differ only where a string crosses to the platform or
/// to a host.
class WString {
public:
    WString() = default;
    WString(std::u16string text) : text_(std::move(text)), null_(false) {}
    WString(const char16_t* text) : text_(text), null_(false) {}
    /// Copies the units; a view without data gives a null string.
    explicit WString(WStringView text) : text_(text), null_(text.data() == nullptr) {}

    bool isNull() const { return null_; }
    bool empty() const { return text_.empty(); }
    std::size_t size() const { return text_.size(); }
    const char16_t* data() const { return null_ ? nullptr : text_.data(); }
    char16_t operator[](std::size_t index) const { return text_[index]; }

    WStringView view() const { return null_ ? WStringView() : WStringView(text_); }
    operator WStringView() const { return view(); }
    const std::u16string& units() const { return text_; }

    /// The units for changing in place; the string is no longer null.
    std::u16string& edit() {
        null_ = false;
        return text_;
    }

    WString& operator+=(WStringView text) {
        null_ = false;
        text_ += text;
        return *this;
    }

    friend WString operator+(WString left, WStringView right) {
        left += right;
        return left;
    }
    friend WString operator+(WString left, const char16_t* right) {
        left += WStringView(right);
        return left;
    }
    friend WString operator+(const char16_t* left, const WString& right) {
        return WString(left) + right.view();
    }

    friend bool operator==(const WString& left, const WString& right) {
        return left.text_ == right.text_;
    }
    friend bool operator==(const WString& left, WStringView right) { return left.text_ == right; }
    friend bool operator==(const WString& left, const char16_t* right) {
        return left.text_ == right;
    }
    /// Binary comparison of units.
    friend std::strong_ordering operator<=>(const WString& left, const WString& right) {
        return left.text_.compare(right.text_) <=> 0;
    }

private:
    std::u16string text_;
    bool null_ = true;
};

}  // namespace orvane
