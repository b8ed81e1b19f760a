#include "platform/portable/statement_cache.h"

#include <algorithm>

namespace pxtarvo::portable {

PreparedStatement* StatementCache::find(std::string_view shape) {
    const auto found = statements_.find(shape);
    if (found == statements_.end()) return nullptr;
    found->second->lastUse = ++uses_;
    return found->second.get();
}

PreparedStatement& StatementCache::insert(std::string shape, std::unique_ptr<PreparedStatement> statement) {
    if (statements_.size() >= capacity) {
        statements_.erase(std::min_element(
            statements_.begin(), statements_.end(),
            [](const auto& a, const auto& b) { return a.second->lastUse < b.second->lastUse; }));
    }
    statement->lastUse = ++uses_;
    return *statements_.insert_or_assign(std::move(shape), std::move(statement)).first->second;
}

}  // namespace pxtarvo::portable
