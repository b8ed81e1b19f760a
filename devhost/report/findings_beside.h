#pragma once

// The findings of a list, made by a thread of their own while a run reads the list.

#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "devhost/report/list_findings.h"

namespace pxtarvo::devhost {

class FindingsBeside {
  public:
    explicit FindingsBeside(const ListKind& kind);
    ~FindingsBeside();
    FindingsBeside(const FindingsBeside&) = delete;
    FindingsBeside& operator=(const FindingsBeside&) = delete;

    std::vector<std::int32_t> wanted() const { return findings_.wanted(); }
    /// Takes the row, and gives one with values of no meaning in its place, whose memory serves again. Waits
    /// where the thread is far behind.
    void row(ListRow& row);
    /// The findings of all rows so far; valid until the next row. Raises what the thread has met.
    const ListFindings& settled();

  private:
    /// Rows that are filled, gone through and filled anew, so that neither thread gives the other memory
    /// back.
    struct Batch {
        std::vector<ListRow> rows;
        std::size_t used = 0;
    };

    void handOver();
    void work();

    ListFindings findings_;
    Batch batch_;
    std::mutex guard_;  ///< of what follows
    std::condition_variable changed_;
    std::vector<Batch> waiting_;
    std::vector<Batch> done_;
    bool working_ = false;
    bool ending_ = false;
    std::exception_ptr failure_;
    std::thread thread_;
};

}  // namespace pxtarvo::devhost
