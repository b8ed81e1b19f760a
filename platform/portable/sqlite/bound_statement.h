#pragma once

// A statement of the host server's dialect that is run again and again, its literals handed over as values:
// it is scanned and looked up once instead of at every run.

#include <cstdint>
#include <string>
#include <utility>

namespace pxtarvo::portable {

struct PreparedStatement;

class BoundStatement {
  public:
    /// In `text` every place of a value holds any literal of the value's kind: a number without a sign, or a
    /// text. It may be run on one connection only.
    explicit BoundStatement(std::string text) : text_(std::move(text)) {}

  private:
    friend class SqliteConnection;

    std::string text_;
    PreparedStatement* prepared_ = nullptr;  ///< in the connection's cache
    std::uint64_t generation_ = 0;           ///< of the cache when it was found there; 0 before
};

}  // namespace pxtarvo::portable
