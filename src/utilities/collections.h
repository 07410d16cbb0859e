#pragma once

#include "frame/values/variant.h"

#include <cstdint>

/// Search and text of a host's collection: what `orvMain`'s members of these names do. A collection
/// is any object with `Count` and `Item`, counted from 1; it is reached by these names, and what it
/// raises comes through. Nothing raises 91 when it is reached for.
namespace orvane {

/// The position of the first item from `startAt` to `endAt` that equals `findWhat` as a `Variant`,
/// else 0 with `isFound` False. Bounds that are left out are 1 and the count. An object among the
/// items is compared by its default member; one without raises what the comparison raises.
std::int32_t InCollection(const Object& collection, const Variant& findWhat, const Variant& startAt,
                          const Variant& endAt, bool& isFound);

/// Whether `InCollection` finds it.
bool IsInCollection(const Object& collection, const Variant& findWhat, const Variant& startAt,
                    const Variant& endAt);

/// The items as text, with `delimiter` between each two; an Error value has a text as well. An
/// item that can't be had or converted raises its error with `raiseErrors`, else it adds nothing
/// and its delimiter is there all the same.
WString JoinCollection(const Object& source, WStringView delimiter, bool raiseErrors);

}  // namespace orvane
