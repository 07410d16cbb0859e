#pragma once

#include "frame/values/array.h"
#include "frame/values/variant.h"

namespace orvane {

/// A `multipart/form-data` body of plain elements: `arguments` alternates names and values from its
/// lower bound on, each converted to a text. Its `Content-Type` line goes behind the lines of
/// `headersToUpdate`.
///
/// An array with the upper bound -1, whatever the lower one, and an odd number of elements give an
/// empty text and leave the headers alone. Raises 9 for an array without dimensions or with several
/// of them, and what the conversion of an element raises; the headers are then as they were.
WString BuildForm(WString& headersToUpdate, const Array<Variant>& arguments);

}  // namespace orvane
