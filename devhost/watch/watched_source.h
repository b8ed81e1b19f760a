#pragma once

// A source list that is watched while a run reads it, and that a further run reads on where the one before
// stopped.

#include <functional>
#include <memory>

#include "devhost/watch/list_watch.h"
#include "platform/database.h"
#include "platform/portable/files/drive_paths.h"

namespace pxtarvo::devhost {

/// What makes the connections to the list, for DevHostOptions::makeSource: each run opens its own, all of
/// them read the one list in turn. The first reads from the start, the next ones what follows the row at
/// which the one before ended.
std::function<ObjectRef<Connection>(const portable::DrivePaths&)> watchedSource(
    std::shared_ptr<ListWatch> watch);

}  // namespace pxtarvo::devhost
