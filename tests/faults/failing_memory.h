#pragma once

// The program's memory, told to run out: operator new of the whole program is replaced.

namespace pxtarvo::tests {

/// While it lives, the allocations from the `first` one on (1-based, counted from its making) fail, `count`
/// of them in a row. One at a time.
class FailingMemory {
  public:
    FailingMemory(long first, long count);
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
    ~FailingMemory();
};

/// Allocations that the last FailingMemory saw.
long allocationsSeen();

}  // namespace pxtarvo::tests
