#pragma once

// What the system uses of ADO: connections and recordsets, with ADO's own names, numbers and errors.
// Everything here may raise RuntimeError with the provider's number and description.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/object_ref.h"
#include "platform/values/variant.h"

namespace pxtarvo {

/// ADO's enumerations, in the values that the system passes or tests.
inline constexpr std::int32_t adStateClosed = 0;
inline constexpr std::int32_t adStateOpen = 1;
inline constexpr std::int32_t adOpenDynamic = 2;
inline constexpr std::int32_t adLockOptimistic = 3;
inline constexpr std::int32_t adCmdText = 1;
inline constexpr std::int32_t adOptionUnspecified = -1;
inline constexpr std::int32_t adExecuteNoRecords = 128;

class Connection;

/// A result with a current row. A host connection's results are client-side (all rows read, count known); a
/// source list is a stream.
class Recordset {
  public:
    virtual ~Recordset() = default;

    /// Runs `source` on `connection`; a recordset may be opened again after Close. 3705 when it is open.
    virtual void Open(std::string_view source, const ObjectRef<Connection>& connection,
                      std::int32_t cursorType, std::int32_t lockType, std::int32_t options) = 0;
    /// 3704 when it is closed, as every other member but State.
    virtual void Close() = 0;
    virtual std::int32_t State() const = 0;

    /// ADO's BOF and EOF (EOF is a macro of the C library).
    virtual bool Bof() const = 0;
    virtual bool Eof() const = 0;
    /// 3021 when the result has no rows.
    virtual void MoveFirst() = 0;
    /// 3021 when already past the last row.
    virtual void MoveNext() = 0;
    /// -1 where the cursor cannot tell.
    virtual std::int32_t RecordCount() const = 0;
    /// 1-based position of the current row, for a grid bound to this result; -1 where the cursor cannot tell,
    /// before the first or past the last row.
    virtual std::int32_t AbsolutePosition() const = 0;
    /// 3021 when no such row.
    virtual void AbsolutePosition(std::int32_t position) = 0;

    virtual std::int32_t FieldCount() const = 0;
    /// By 0-based position. 3265 for an unknown one.
    virtual std::string FieldName(std::int32_t position) const = 0;
    /// The current row's value. 3265 for an unknown position or name (case is ignored), 3021 when there is no
    /// current row.
    virtual Variant Fields(std::int32_t position) const = 0;
    virtual Variant Fields(std::string_view name) const = 0;
    /// An independent cursor over the same rows, for a grid to paint from.
    virtual ObjectRef<Recordset> Clone() const = 0;
};

class Connection {
  public:
    virtual ~Connection() = default;

    virtual void ConnectionString(std::string_view value) = 0;
    virtual void Open(std::string_view userId, std::string_view password, std::int32_t options) = 0;
    virtual std::int32_t State() const = 0;

    /// Runs one statement. The result of a statement without rows is a closed recordset (reading it is 3704),
    /// or with adExecuteNoRecords nothing at all.
    virtual ObjectRef<Recordset> Execute(std::string_view commandText, std::int32_t options) = 0;
    /// TransactionAlreadyOpen when one is open: a connection holds one.
    virtual void BeginTrans() = 0;
    /// Both NoTransactionOpen when none is open.
    virtual void CommitTrans() = 0;
    virtual void RollbackTrans() = 0;
};

}  // namespace pxtarvo
