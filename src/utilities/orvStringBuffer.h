#pragma once

#include "frame/automation/automation_object.h"

namespace orvane {

/// Builds a long text from many small pieces without copying the whole of it each time: `Alloc`
/// makes the storage once, filled with a padding character, and `AddText` writes into it.
///
/// Storage that was too small grows by what the piece needs and no more, with a copy of the whole
/// for every piece: how much to ask for is the host's decision.
class orvStringBuffer final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvStringBuffer();

    /// Takes the padding behind the text away. Raises 5 before the first `Alloc` or `Value`.
    void Trim();

    /// Adds a piece behind the text so far. In place, without an allocation, when at least one
    /// character of padding stays behind it; a piece that reaches the end or goes past it drops the
    /// padding, and behind a full buffer it is appended. An empty text changes nothing. Raises 5
    /// before the first `Alloc` or `Value`, 6 when the position overflows, 7 when the text would
    /// be longer than one can be.
    void AddText(WStringView text);

    /// New storage of `size` times `character`, a text whose first unit counts or a character code.
    /// The text so far is lost. Raises 5 for a negative size; the object is then as it was.
    void Alloc(std::int32_t size, const Variant& character);

    /// Makes `text` the whole content, without padding.
    void putValue(WStringView text);
    /// The whole storage, padding included.
    const WString& Value() const { return buffer_; }

    /// The length of the storage in characters.
    std::int32_t Size() const { return size_; }

private:
    void replace(WString buffer);

    WString buffer_;
    std::int32_t size_ = 0;      ///< the length of `buffer_`
    std::int32_t position_ = 0;  ///< where the next piece goes, from 1; 0 in a new object
};

}  // namespace orvane
