#pragma once

// The writes that a host has refused: how many, and the first of them.

#include <cstddef>
#include <string>
#include <string_view>

#include "devhost/record/host_write.h"

namespace pxtarvo::devhost {

class RefusedWrites {
  public:
    void add(const HostWrite& write, std::string_view reason);

    std::size_t count() const noexcept { return count_; }
    /// The first one's kind, table, row and reason, the row by its condition or by an inserted row's code or
    /// identifier: "insert Art, ART_Cod = 0100123: …".
    const std::string& first() const noexcept { return first_; }

  private:
    std::size_t count_ = 0;
    std::string first_;
};

}  // namespace pxtarvo::devhost
