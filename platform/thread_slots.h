#pragma once

// One value of a kind for each thread that asks for it, kept for the process's lifetime: not given up at the
// end of the thread, and not with the process's statics, when windows, files and other modules may be gone
// already. A list of the process keeps the values reachable.

#include <list>
#include <memory>
#include <mutex>

namespace pxtarvo {

template <class Value>
class ThreadSlots {
  public:
    /// The calling thread's value, nullptr before it has one.
    static Value* find() noexcept { return mine(); }

    /// The calling thread's value, default-constructed first where it has none.
    static Value& get() {
        Value*& slot = mine();
        if (!slot) {
            static All& all = *std::make_unique<All>().release();
            const std::lock_guard guard(all.lock);
            slot = &all.values.emplace_back();
        }
        return *slot;
    }

  private:
    struct All {
        std::mutex lock;
        std::list<Value> values;
    };
    static Value*& mine() noexcept {
        thread_local Value* slot = nullptr;
        return slot;
    }
};

}  // namespace pxtarvo
