#pragma once

// What a run reads of its list, as it reads it: the row at hand, its values, which column came last.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/values/variant.h"

namespace pxtarvo::devhost {

/// A row of the list. Valid while it is being visited.
struct ListRow {
    std::int32_t number = 0;      ///< 1-based
    std::vector<Variant> values;  ///< by position; Empty where there is none
};

/// Follows a list over one run, or over several that go on where the one before stopped.
class ListWatch {
  public:
    /// Each row once, after the run has finished with it. Values may be swapped for others of a row that was
    /// given earlier.
    std::function<void(ListRow&)> onRow;
    /// The positions whose values onRow needs, whether the run reads them or not.
    std::vector<std::int32_t> wanted;
    /// Gives the value at a position that the run itself has not read; Empty for none.
    using Rest = std::function<Variant(std::int32_t position)>;

    /// The list's columns, by position.
    void columns(std::vector<std::string> names);
    const std::vector<std::string>& columns() const noexcept { return names_; }
    /// Which of them a run has read.
    const std::vector<bool>& readColumns() const noexcept { return read_; }

    /// A row is the current one; its values are those that the run reads, the others come from `rest`.
    void beginRow(Rest rest);
    /// The run is about to read the value at a position, which may fail; it has read it.
    void reading(std::int32_t position);
    void seen(std::int32_t position, const Variant& value);
    /// The run has left the row. Where it has `stopped` in it, all of the row's values are kept; where it has
    /// stopped before it read any, the row does not count.
    void endRow(bool stopped = false);

    /// Whether the run that left the last row has stopped in it.
    bool stoppedInRow() const noexcept { return stopped_; }
    /// The row at hand or, between two rows, the last one; 0 before the first.
    std::int32_t row() const noexcept { return number_; }
    /// What was read last, in that row; -1 for nothing.
    std::int32_t lastPosition() const noexcept { return last_; }
    /// The values of the row at hand, or of the last one where a run has stopped in it.
    const std::vector<Variant>& values() const noexcept { return row_.values; }

  private:
    void complete(std::int32_t position);

    std::vector<std::string> names_;
    std::vector<bool> read_;
    ListRow row_;
    std::int32_t number_ = 0;
    std::vector<bool> present_;  ///< of its values
    Rest rest_;
    std::int32_t last_ = -1;
    bool inRow_ = false;
    bool stopped_ = false;
};

}  // namespace pxtarvo::devhost
