#pragma once

// A result that is read whole before anyone sees it: its count is exact, statements that run later do not
// disturb it, and clones share its rows.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/portable/sqlite/read_hold.h"
#include "platform/portable/sqlite/result_rows.h"

namespace pxtarvo::portable {

class ClientRecordset final : public Recordset {
  public:
    /// Closed: what a statement without rows gives.
    ClientRecordset() = default;
    /// Open on the first row, if there is one. Walking a long result keeps `hold`, where there is one.
    explicit ClientRecordset(std::shared_ptr<const ResultRows> rows,
                             const std::shared_ptr<ReadHold>& hold = nullptr)
        : rows_(std::move(rows)) {
        if (rows_->rowCount() >= longResult) hold_ = hold;
    }
    /// Every row must have a value for each name.
    ClientRecordset(const std::vector<std::string>& names, std::vector<std::vector<Variant>> rows);

    /// Executes `source` and keeps a copy of the result; the cursor and lock types of a client-side result
    /// are its own.
    void Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t cursorType,
              std::int32_t lockType, std::int32_t options) override;
    void Close() override;
    std::int32_t State() const override { return rows_ ? adStateOpen : adStateClosed; }
    bool Bof() const override;
    bool Eof() const override;
    void MoveFirst() override;
    void MoveNext() override;
    std::int32_t RecordCount() const override;
    std::int32_t AbsolutePosition() const override;
    void AbsolutePosition(std::int32_t position) override;
    std::int32_t FieldCount() const override;
    std::string FieldName(std::int32_t position) const override;
    Variant Fields(std::int32_t position) const override;
    Variant Fields(std::string_view name) const override;
    ObjectRef<Recordset> Clone() const override;

  private:
    static constexpr std::size_t longResult = 100;

    /// 3704 when closed.
    const ResultRows& rows() const;

    std::shared_ptr<const ResultRows> rows_;
    std::size_t current_ = 0;  ///< 0-based; the row count when past the last row
    std::weak_ptr<ReadHold> hold_;
    std::unique_ptr<ReadHold::Walk> walk_;  ///< from the first step to the last
};

}  // namespace pxtarvo::portable
