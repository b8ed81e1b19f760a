#pragma once

// A result that is read whole before anyone sees it: its count is exact, statements that run later do not
// disturb it, and clones share its rows.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"

namespace pxtarvo {

/// The rows of such a result, shared by every cursor over it.
class ResultRows {
  public:
    ResultRows(const ResultRows&) = delete;
    ResultRows& operator=(const ResultRows&) = delete;
    virtual ~ResultRows() = default;

    const std::vector<std::string>& names() const noexcept { return names_; }
    virtual std::size_t rowCount() const noexcept = 0;
    /// `row` and `column` must be in range. Raises the provider's error for a value that it cannot give.
    virtual Variant value(std::size_t row, std::size_t column) const = 0;

  protected:
    /// The names must live as long as the rows.
    explicit ResultRows(const std::vector<std::string>& names) noexcept : names_(names) {}

  private:
    const std::vector<std::string>& names_;
};

/// What `result` has from its current row on, each value as the database gave it; one that could not be read
/// raises its error where it is asked for. Raises what walking the result raises.
std::shared_ptr<const ResultRows> readToEnd(Recordset& result);

class ClientRecordset : public Recordset {
  public:
    /// Closed: what a statement without rows gives.
    ClientRecordset() = default;
    /// Open on the first row, if there is one.
    explicit ClientRecordset(std::shared_ptr<const ResultRows> rows) : rows_(std::move(rows)) {}

    /// Executes `source` and keeps a copy of the result; the cursor and lock types are its own.
    void Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t cursorType,
              std::int32_t lockType, std::int32_t options) override;
    void Close() override;
    std::int32_t State() const override { return rows_ ? adStateOpen : adStateClosed; }
    bool Bof() const override { return rows().rowCount() == 0; }
    bool Eof() const override { return current_ >= rows().rowCount(); }
    void MoveFirst() override;
    void MoveNext() override;
    std::int32_t RecordCount() const override { return static_cast<std::int32_t>(rows().rowCount()); }
    std::int32_t AbsolutePosition() const override;
    void AbsolutePosition(std::int32_t position) override;
    std::int32_t FieldCount() const override { return static_cast<std::int32_t>(rows().names().size()); }
    std::string FieldName(std::int32_t position) const override;
    Variant Fields(std::int32_t position) const override;
    Variant Fields(std::string_view name) const override;
    ObjectRef<Recordset> Clone() const override;

  private:
    /// 3704 when closed.
    const ResultRows& rows() const;
    /// 3265 for an unknown one.
    std::size_t column(std::int32_t position) const;

    std::shared_ptr<const ResultRows> rows_;
    std::size_t current_ = 0;  ///< 0-based; the row count when past the last row
};

}  // namespace pxtarvo
