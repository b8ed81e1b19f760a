#pragma once

// Whether the columns of an Access list look like those that its import reads.

#include <string>
#include <vector>

#include "devhost/report/list_kind.h"
#include "platform/portable/access/row_source.h"

namespace pxtarvo::devhost {

enum class LookFault { TooFewColumns, NoCodes, NoPrices, NoDescriptions };

struct ListLook {
    std::vector<LookFault> faults;
    std::int32_t columns = 0;  ///< that the list has
};

/// Reads the first rows of the list.
ListLook lookAt(portable::RowStream& rows, const ListKind& kind);

}  // namespace pxtarvo::devhost
