#include "platform/portable/sqlite/statement_cache.h"

#include <algorithm>

namespace pxtarvo::portable {

void StatementCache::running(PreparedStatement& statement) noexcept {
    if (last_) last_->successor = &statement;
    last_ = &statement;
    statement.lastUse = ++uses_;
}

void StatementCache::clear() {
    ++generation_;
    last_ = nullptr;
    statements_.clear();
}

PreparedStatement* StatementCache::find(std::string_view shape) {
    const auto found = statements_.find(shape);
    return found == statements_.end() ? nullptr : found->second.get();
}

PreparedStatement& StatementCache::insert(std::string shape, std::unique_ptr<PreparedStatement> statement) {
    if (statements_.size() >= capacity) {
        // What leaves must be nobody's successor.
        last_ = nullptr;
        ++generation_;
        for (const auto& [key, kept] : statements_) kept->successor = nullptr;
        statements_.erase(std::min_element(
            statements_.begin(), statements_.end(),
            [](const auto& a, const auto& b) { return a.second->lastUse < b.second->lastUse; }));
    }
    return *statements_.insert_or_assign(std::move(shape), std::move(statement)).first->second;
}

}  // namespace pxtarvo::portable
