#include "tests/faults/failing_memory.h"

#include <cstdlib>
#include <new>

namespace {

struct Plan {
    bool armed = false;
    long seen = 0;
    long first = 0;
    long count = 0;
} plan;

void* allocated(std::size_t size) noexcept {
    if (plan.armed && ++plan.seen >= plan.first && plan.seen < plan.first + plan.count) return nullptr;
    return std::malloc(size > 0 ? size : 1);
}

void* required(std::size_t size) {
    if (void* const memory = allocated(size)) return memory;
    throw std::bad_alloc();
}

}  // namespace

// All of them, so that no sanitizer's own stands beside them.
void* operator new(std::size_t size) {
    return required(size);
}
void* operator new[](std::size_t size) {
    return required(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace pxtarvo::tests {

FailingMemory::FailingMemory(long first, long count) {
    plan = {true, 0, first, count};
}

FailingMemory::~FailingMemory() {
    plan.armed = false;
}

long allocationsSeen() {
    return plan.seen;
}

}  // namespace pxtarvo::tests
