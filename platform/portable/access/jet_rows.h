#pragma once

// The rows of a table of an Access file, in the order in which they lie in it.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/portable/access/jet_table.h"
#include "platform/portable/access/row_source.h"

namespace pxtarvo::portable {

class JetRows : public RowStream {
  public:
    JetRows(std::shared_ptr<const JetFile> file, JetTable table);

    std::int32_t columnCount() const override { return static_cast<std::int32_t>(table_.columns.size()); }
    const std::string& columnName(std::int32_t position) const override {
        return table_.columns[static_cast<std::size_t>(position)].name;
    }
    /// Raises -2147467259 on damage, also when the file ends with fewer rows than the table counts.
    bool next() override;
    /// Texts and memos as Text, whole; Decimal with the column's scale. Raises -2147467259 on damage and for
    /// a column of a kind that has no such value (OLE objects, binary data, identifiers).
    Variant value(std::int32_t position) const override;
    void rewind() override;

  private:
    bool nextDataPage();
    void followPointer();
    void readRowFrame();
    bool isNull(const JetColumn& column) const;
    JetBytes fieldBytes(const JetColumn& column) const;
    Variant decoded(const JetColumn& column, JetBytes bytes) const;
    JetBytes longValue(JetBytes header) const;
    std::string text(JetBytes bytes) const;

    std::shared_ptr<const JetFile> file_;
    JetTable table_;

    JetPage page_;
    std::uint64_t pageNumber_ = 0;
    std::size_t rowOnPage_ = 0;
    std::size_t rowsOnPage_ = 0;
    std::uint64_t rowsPassed_ = 0;
    JetPage movedRowPage_;

    // The current row, within one of the two pages.
    JetBytes row_;
    std::size_t columnsInRow_ = 0;
    JetBytes notNull_;
    std::size_t variableColumnsInRow_ = 0;
    const unsigned char* variableOffsets_ = nullptr;  ///< the first one; they go downwards

    // Kept for their memory.
    mutable JetPage longValuePage_;
    mutable std::vector<unsigned char> longValueBytes_;
};

/// The number of rows that a table says it has, in one row of one column.
class JetRowCount : public RowStream {
  public:
    explicit JetRowCount(std::uint32_t count) : count_(static_cast<std::int32_t>(count)) {}

    std::int32_t columnCount() const override { return 1; }
    const std::string& columnName(std::int32_t position) const override;
    bool next() override { return !std::exchange(passed_, true); }
    Variant value(std::int32_t) const override { return count_; }
    void rewind() override { passed_ = false; }

  private:
    std::int32_t count_;
    bool passed_ = false;
};

}  // namespace pxtarvo::portable
