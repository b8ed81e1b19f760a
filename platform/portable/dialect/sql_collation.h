#pragma once

// How the host's server compares and orders texts: case and trailing blanks (U+0020) do not count, accents
// do.

#include <string_view>

namespace pxtarvo::portable {

/// The collation's name in the database. Only indexes name it (CREATE INDEX … ON Art (Art_Cod COLLATE
/// DEALER)), so that any SQLite tool can read the tables.
inline constexpr const char* dealerCollation = "DEALER";

/// Negative, 0 or positive. A total order of UTF-8 texts, malformed ones included: punctuation, digits,
/// letters; ñ is a letter of its own after n, other accents only decide between texts that are equal without
/// them.
int compareDealerTexts(std::string_view a, std::string_view b) noexcept;

}  // namespace pxtarvo::portable
