#include "platform/portable/dialect/sql_schema.h"

#include <algorithm>

#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

template <class Named>
const Named* findNamed(const std::vector<Named>& all, std::string_view name) {
    const auto found = std::find_if(
        all.begin(), all.end(), [name](const Named& one) { return equalIgnoringAsciiCase(one.name, name); });
    return found == all.end() ? nullptr : &*found;
}

}  // namespace

const SqlColumn* SqlTable::column(std::string_view name) const {
    return findNamed(columns, name);
}

const SqlTable* SqlSchema::table(std::string_view name) const {
    return findNamed(tables, name);
}

}  // namespace pxtarvo::portable
