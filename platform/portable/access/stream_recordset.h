#pragma once

// The recordset of a source list: its rows are read as the code walks them, forwards, and again from the
// start when it asks for the first one once more.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/portable/access/row_source.h"

namespace pxtarvo::portable {

/// ADO's numbers for a connection that cannot be used and for what a cursor cannot do.
inline constexpr std::int32_t adErrInvalidConnection = 3709;
inline constexpr std::int32_t adErrFeatureNotAvailable = 3251;

class StreamRecordset : public Recordset {
  public:
    /// `connection` must be open and a RowSource, else 3709; it is kept until Close. Whatever cursor and lock
    /// are asked for, this one is what the connection has. The first row is current afterwards.
    void Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t cursorType,
              std::int32_t lockType, std::int32_t options) override;
    void Close() override;
    std::int32_t State() const override { return rows_ ? adStateOpen : adStateClosed; }

    bool Bof() const override;
    bool Eof() const override;
    /// Reads the list again from its start when rows were passed.
    void MoveFirst() override;
    void MoveNext() override;
    /// -1: a stream does not know.
    std::int32_t RecordCount() const override;
    /// -1, for the same reason; moving by position is 3251.
    std::int32_t AbsolutePosition() const override { return RecordCount(); }
    void AbsolutePosition(std::int32_t position) override;

    std::int32_t FieldCount() const override { return openRows().columnCount(); }
    std::string FieldName(std::int32_t position) const override;
    Variant Fields(std::int32_t position) const override;
    Variant Fields(std::string_view name) const override;
    /// 3251: there is no second pass over a stream.
    ObjectRef<Recordset> Clone() const override;

  private:
    enum class Position { FirstRow, LaterRow, PastTheEnd, Empty };

    RowStream& openRows() const;
    void advance(Position reached, Position exhausted);

    ObjectRef<Connection> connection_;  ///< outlives rows_
    std::unique_ptr<RowStream> rows_;   ///< none while closed
    Position position_ = Position::Empty;
};

}  // namespace pxtarvo::portable
