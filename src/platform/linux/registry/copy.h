#pragma once

#include "platform/linux/registry/database.h"
#include "platform/linux/registry/places.h"

namespace orvane::store {

/// Opens a private copy of a database that this process can't read where it lies, good until it is
/// closed. It holds what was committed last.
///
/// Two readers need it. Where a writer of a database with a rollback journal died in the middle of
/// its work, that work lies half in the database until a process undoes it that may write there;
/// in the copy it is undone. A reader of a database with a log needs files beside it, for which
/// there is no room on a full disk and no right on one that is read-only.
///
/// The copy is made in the folder for temporary files or, where it can't be made there, in the
/// system's memory. Throws `Failure`, contention when somebody has changed the database meanwhile
/// or is about to.
void openCopy(Database& database, const Place& place, Database::Journal journal);

}  // namespace orvane::store
