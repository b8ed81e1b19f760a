#pragma once

// The file of a list: what it is, and what it looks like.

#include <memory>
#include <optional>
#include <string>

#include "devhost/report/run_report.h"
#include "platform/portable/access/row_source.h"

namespace pxtarvo::devhost {

/// What can be told of a file without reading it as a list; nothing where it cannot be read.
std::optional<ListFile> describeListFile(const std::string& place);

/// What the first rows of an Access list look like, and how many it has.
struct ListPreview {
    ListLook look;
    std::int32_t rows = 0;
};
/// Nothing for a workbook and for a file that is no such list.
std::optional<ListPreview> previewList(const std::string& place, const ListKind& kind);

}  // namespace pxtarvo::devhost
