#include "devhost/report/findings_beside.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace pxtarvo::devhost {

namespace {

constexpr std::size_t batchRows = 256;
constexpr std::size_t mostWaiting = 32;  // batches

}  // namespace

FindingsBeside::FindingsBeside(const ListKind& kind) : findings_(kind), thread_([this] { work(); }) {}

FindingsBeside::~FindingsBeside() {
    {
        const std::lock_guard held(guard_);
        ending_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void FindingsBeside::row(ListRow& row) {
    batch_.rows.resize(batchRows);
    std::swap(batch_.rows[batch_.used++], row);
    if (batch_.used == batchRows) handOver();
}

void FindingsBeside::handOver() {
    {
        std::unique_lock held(guard_);
        changed_.wait(held, [&] { return waiting_.size() < mostWaiting; });
        waiting_.push_back(std::exchange(batch_, {}));
        if (!done_.empty()) {
            batch_.rows = std::move(done_.back().rows);
            done_.pop_back();
        }
    }
    changed_.notify_all();
}

const ListFindings& FindingsBeside::settled() {
    handOver();
    std::unique_lock held(guard_);
    changed_.wait(held, [&] { return waiting_.empty() && !working_; });
    if (failure_) std::rethrow_exception(failure_);
    return findings_;
}

void FindingsBeside::work() {
    std::unique_lock held(guard_);
    while (true) {
        changed_.wait(held, [&] { return ending_ || !waiting_.empty(); });
        if (ending_) return;
        std::vector<Batch> taken = std::exchange(waiting_, {});
        working_ = true;
        held.unlock();
        changed_.notify_all();
        std::exception_ptr failure;
        try {
            for (const Batch& batch : taken) {
                for (std::size_t at = 0; at < batch.used; ++at) findings_.row(batch.rows[at]);
            }
        } catch (...) {
            failure = std::current_exception();
        }
        held.lock();
        working_ = false;
        if (failure) failure_ = failure;
        std::ranges::move(taken, std::back_inserter(done_));
        changed_.notify_all();
    }
}

}  // namespace pxtarvo::devhost
