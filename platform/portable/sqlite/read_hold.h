#pragma once

// While a long result is being walked, the database stays open for reading: the queries asked for each of its
// rows then need not lock and unlock the file one by one. Other processes can read meanwhile; a writer waits.

#include <memory>

#include "platform/portable/sqlite/sqlite_handles.h"

namespace pxtarvo::portable {

class ReadHold {
  public:
    /// The database must outlive the object.
    explicit ReadHold(sqlite3* database) noexcept : database_(database) {}
    ReadHold(const ReadHold&) = delete;
    ReadHold& operator=(const ReadHold&) = delete;

    /// One walk, until its end. Raises nothing: without the hold everything works as well, only slower.
    class Walk {
      public:
        explicit Walk(std::shared_ptr<ReadHold> hold) : hold_(std::move(hold)) { hold_->begin(); }
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        ~Walk() { hold_->end(); }

      private:
        std::shared_ptr<ReadHold> hold_;
    };

    /// Lets go for good whatever walks are under way: the connection ends.
    void finish() noexcept;
    /// Lets go until the next walk begins: some statements tolerate no reader.
    void release() noexcept { sqlite3_reset(reader_.get()); }

  private:
    void begin() noexcept;
    void end() noexcept {
        if (--walks_ == 0) release();
    }

    sqlite3* database_;
    StatementHandle reader_;
    int walks_ = 0;
};

}  // namespace pxtarvo::portable
