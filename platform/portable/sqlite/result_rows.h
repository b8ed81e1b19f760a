#pragma once

// The rows of a statement's result.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/client_recordset.h"
#include "platform/portable/dialect/column_types.h"

struct sqlite3_stmt;

namespace pxtarvo::portable {

/// Both in the order of the columns.
struct ResultColumns {
    std::vector<std::string> names;
    std::vector<ColumnDeclaration> declarations;
};

/// Rows as SQLite stored them, one behind the other in a few large blocks; a value is made when it is asked
/// for.
class StoredRows final : public ResultRows {
  public:
    explicit StoredRows(std::shared_ptr<const ResultColumns> columns)
        : ResultRows(columns->names), columns_(std::move(columns)) {}

    /// Copies the current row of a statement with as many columns.
    void append(sqlite3_stmt* statement);

    std::size_t rowCount() const noexcept override { return rowCount_; }
    /// Raises ConversionFailed for a stored value that the column's declared type cannot hold.
    Variant value(std::size_t row, std::size_t column) const override;

  private:
    // A row in words: a payload for each column (the integer, the bits of the double, or a text's offset from
    // the row's beginning and its length in bytes), then a kind for each column, then the texts.
    using Word = std::uint64_t;
    /// Makes room for a row of `words`, of which `kept` words at the front of the free room are begun
    /// already.
    void makeRoom(std::size_t words, std::size_t kept);

    static constexpr std::size_t innerWords = 48;  ///< enough for a result of one ordinary row
    std::shared_ptr<const ResultColumns> columns_;
    // not set to anything: every word is written before it is read
    Word inner_[innerWords];
    std::vector<std::unique_ptr<Word[]>> blocks_;
    Word* free_ = inner_;
    std::size_t freeWords_ = innerWords;
    std::size_t nextBlockWords_ = 4 * innerWords;
    const Word* firstRow_ = nullptr;  ///< most results have one row
    std::vector<const Word*> laterRows_;
    std::size_t rowCount_ = 0;
};

}  // namespace pxtarvo::portable
