#pragma once

// Prepared statements, found by their shape.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/portable/dialect/sql_tokens.h"
#include "platform/portable/dialect/sql_translator.h"
#include "platform/portable/sqlite/result_rows.h"
#include "platform/portable/sqlite/sqlite_handles.h"

namespace pxtarvo::portable {

/// A translated statement, ready to be run again with other literals.
struct PreparedStatement {
    StatementHandle handle;
    std::vector<LiteralUse> literals;
    std::vector<ColumnDeclaration> translatedTypes;
    std::shared_ptr<const ResultColumns> columns;  ///< empty for a statement without rows
    bool servesShape = true;  ///< serves every statement of its shape, so that it may be cached
    int preparations = 0;     ///< how often SQLite has prepared it anew, for a changed schema
    std::uint64_t lastUse = 0;
    ShapeModel model;                        ///< of its shape
    PreparedStatement* successor = nullptr;  ///< the statement that ran after it the last time
};

class StatementCache {
  public:
    /// The statement that is likely to come next, as programs repeat themselves; nullptr when nothing is
    /// known.
    PreparedStatement* expected() const noexcept { return last_ ? last_->successor : nullptr; }
    /// Must be told of every statement of this cache that runs.
    void running(PreparedStatement& statement) noexcept;
    /// nullptr when the shape is not there.
    PreparedStatement* find(std::string_view shape);
    /// The least recently used statement leaves when the cache is full.
    PreparedStatement& insert(std::string shape, std::unique_ptr<PreparedStatement> statement);
    void clear();
    /// Another number whenever a statement has left: until then every statement stays where it is. Never 0.
    std::uint64_t generation() const noexcept { return generation_; }
    std::size_t size() const noexcept { return statements_.size(); }

    static constexpr std::size_t capacity = 256;

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const noexcept {
            return std::hash<std::string_view>()(text);
        }
    };
    std::unordered_map<std::string, std::unique_ptr<PreparedStatement>, Hash, std::equal_to<>> statements_;
    PreparedStatement* last_ = nullptr;
    std::uint64_t uses_ = 0;
    std::uint64_t generation_ = 1;
};

}  // namespace pxtarvo::portable
