#pragma once

#include <optional>

#include "host/host_field_helper.h"
#include "platform/database.h"

namespace pxtarvo::devhost {

/// The field helper's search list: a modal window with the two columns to show and a box whose text moves the
/// choice to the first row that begins with it. Enter and a double click choose, Esc and the cross do not;
/// keys act when they are released, so that no release reaches the window below. Gives the 0-based position
/// of the chosen row. The rows' own position is not restored.
std::optional<std::int32_t> showSearchWindow(const Busqueda& busqueda, Recordset& rows);

/// The class of its window, for who looks for it.
inline constexpr char16_t searchWindowClass[] = u"HostSearchList";

}  // namespace pxtarvo::devhost
