#include "devhost/library/context_use.h"

#include <utility>

namespace pxtarvo::devhost {

ContextUse::ContextUse(std::shared_ptr<HostState> state) : state_(std::move(state)) {
    conduct_.context = ++state_->contexts;
}

void ContextUse::asked(std::string_view member) const {
    if (stale_ && state_->checks) state_->checks->staleContext(member);
}

/// The first member called after a write begins the next one.
void ContextUse::begin() {
    if (std::exchange(begun_, true)) return;
    conduct_.stale = stale_;
    conduct_.limpiarCalled = conduct_.tablaSet = conduct_.limpiarFirst = false;
}

void ContextUse::limpiar(std::int32_t nOpcion) {
    begin();
    if (state_->checks) state_->checks->limpiar(nOpcion);
    conduct_.limpiarCalled = true;
    if (!conduct_.tablaSet) conduct_.limpiarFirst = true;
}

void ContextUse::tabla() {
    begin();
    conduct_.tablaSet = true;
}

void ContextUse::write(const HostWrite& write) {
    begin();
    const bool rotating = static_cast<bool>(state_->rotate);
    if (state_->checks && state_->checks->write(write, conduct_, rotating)) giveUp();
}

void ContextUse::giveUp() {
    if (!std::exchange(stale_, true)) state_->rotate();
}

}  // namespace pxtarvo::devhost
