#pragma once

// A write as a statement in the host's SQL dialect.

#include <cstdint>
#include <string>

#include "devhost/record/host_write.h"
#include "platform/values/locale.h"
#include "platform/values/variant.h"

namespace pxtarvo::devhost {

/// Appends `value` as a literal of the kind `nTipo`: 0 as 0 or 1, 1 as a whole number (halves rounded to the
/// even one), 2 as a number (a text read as the user writes numbers), 3 as a quoted text, 4 as a quoted
/// DD/MM/YYYY, 6 as it stands; Null is NULL in every kind. Raises the conversion's error for a value that the
/// kind cannot take, 5 for an unknown kind.
void appendLiteral(std::string& sql, std::int32_t nTipo, const Variant& value, const Locale& locale);

/// Appends the statement that does `write`. Raises as appendLiteral does.
void composeWrite(std::string& sql, const HostWrite& write, const Locale& locale);

}  // namespace pxtarvo::devhost
