#pragma once

#include "platform/linux/registry/database.h"
#include "platform/linux/registry/places.h"

namespace orvane::store {

/// Opens what was committed last in a database whose writer died in the middle of its work. That
/// work lies half in the database and is undone by the next process that may write there; one that
/// may not gets a copy in which it is undone, good until it is closed.
///
/// Throws `Failure`, contention when somebody has undone it since or is about to.
void openWithoutUnfinished(Database& database, const Place& place);

}  // namespace orvane::store
