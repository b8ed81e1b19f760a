#pragma once

// A source list that no sample file holds: rows given by the test, read through the same recordset as a
// file's.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/portable/access/row_source.h"
#include "platform/portable/files/drive_paths.h"

namespace pxtarvo::test {

/// One row by position, as long as the list's columns; at an empty one the list breaks.
using ListRow = std::vector<Variant>;

/// A row as the yearly lists have it: code, price, date, group, description at their positions.
ListRow listRow(Variant code, Variant price, Variant group, Variant description = "DESCRIPCION",
                Variant date = Variant(Date{39630.0}) /* 1 July 2008 */);

/// What makes the connections to such a list, for DevHostOptions::makeSource. `stateAfterOpen` is what a
/// connection says of itself once it was opened.
std::function<ObjectRef<Connection>(const portable::DrivePaths&)> memorySource(
    std::vector<ListRow> rows, std::int32_t stateAfterOpen = adStateOpen);

}  // namespace pxtarvo::test
