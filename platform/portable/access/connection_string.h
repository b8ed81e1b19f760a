#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pxtarvo::portable {

/// The keywords of an OLE DB connection string with their values, in order: "keyword=value" between
/// semicolons. Blanks around either do not count; a doubled "=" belongs to the keyword; a value may stand
/// between quotes of either kind, doubled inside. Raises -2147217805 for a string of another form.
std::vector<std::pair<std::string, std::string>> parseConnectionString(std::string_view text);

}  // namespace pxtarvo::portable
