#pragma once

// All faults of a list: the run is made again for what follows each row that stopped it, over a copy of the
// tables.

#include <memory>
#include <vector>

#include "devhost/main/window_command.h"
#include "devhost/watch/list_watch.h"

namespace pxtarvo::devhost {

/// Makes the run read its list through the watch; a further run in a host of the same options reads on.
void watchList(DevHostOptions& host, const WindowCommand& command, const std::shared_ptr<ListWatch>& watch);

/// Why a run did not end well, in the language of the windows.
std::string reasonForDealer(const DevHost& host, const RunEnding& ending);
/// The row at which a run has stopped; `reason` as above.
ListFault faultAt(const ListWatch& watch, std::string reason);
/// Why a run stopped, without the number, of the row or of the error, that its message begins with.
std::string bareReason(std::string told);

/// What stops the runs that follow one which the watch has seen stop. `host` is a host for nothing else,
/// whose tables come to harm; its options have been through watchList().
std::vector<ListFault> furtherFaults(DevHost& host, const CommonOptions& options,
                                     const WindowCommand& command, const ListWatch& watch);

/// The same for the article file at `place`, whose lines from `firstLine` (1-based) on are read.
/// `hostOptions` are those of such a host, without an article file.
std::vector<ListFault> faultyLines(DevHostOptions hostOptions, const CommonOptions& options,
                                   const WindowCommand& command, const std::string& place,
                                   std::int32_t firstLine);
/// The text of a line as a report shows it.
ListFault faultyLine(const std::string& place, std::int32_t line, std::string reason);

}  // namespace pxtarvo::devhost
