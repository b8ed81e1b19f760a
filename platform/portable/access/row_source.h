#pragma once

// How a recordset of the portable body gets the rows of a statement: one forward pass at a time, decoded on
// demand, so that a list of any length takes the memory of one row.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/values/variant.h"

namespace pxtarvo::portable {

class RowStream {
  public:
    virtual ~RowStream() = default;
    virtual std::int32_t columnCount() const = 0;
    /// 0-based; the position must be in range (so below).
    virtual const std::string& columnName(std::int32_t position) const = 0;
    /// To the next row, the first one at the first call; false past the last. May raise the provider's error.
    virtual bool next() = 0;
    /// Of the current row.
    virtual Variant value(std::int32_t position) const = 0;
    /// Before the first row again.
    virtual void rewind() = 0;
};

/// What a connection must also be for a recordset of this body to be opened on it.
class RowSource {
  public:
    virtual ~RowSource() = default;
    /// Raises the provider's error for a statement that it cannot run.
    virtual std::unique_ptr<RowStream> openRows(std::string_view statement) = 0;
};

}  // namespace pxtarvo::portable
