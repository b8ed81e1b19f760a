#include "devhost/watch/list_watch.h"

#include <utility>

#include "platform/values/runtime_error.h"

namespace pxtarvo::devhost {

void ListWatch::columns(std::vector<std::string> names) {
    names_ = std::move(names);
    read_.resize(names_.size());
    row_.values.resize(names_.size());
    present_.resize(names_.size());
}

void ListWatch::beginRow(Rest rest) {
    endRow();
    rest_ = std::move(rest);
    present_.assign(present_.size(), false);
    number_ += 1;
    last_ = -1;
    inRow_ = true;
    stopped_ = false;
}

void ListWatch::reading(std::int32_t position) {
    const auto at = static_cast<std::size_t>(position);
    if (!inRow_ || at >= row_.values.size()) return;
    last_ = position;
    read_[at] = true;
}

void ListWatch::seen(std::int32_t position, const Variant& value) {
    const auto at = static_cast<std::size_t>(position);
    if (!inRow_ || at >= row_.values.size() || present_[at]) return;
    row_.values[at] = value;
    present_[at] = true;
}

void ListWatch::complete(std::int32_t position) {
    const auto at = static_cast<std::size_t>(position);
    if (at >= row_.values.size() || present_[at]) return;
    try {
        row_.values[at] = rest_ ? rest_(position) : Variant();
    } catch (const RuntimeError&) {
        row_.values[at] = Variant();  // damage in what no run reads stops none
    }
    present_[at] = true;
}

void ListWatch::endRow(bool stopped) {
    if (!std::exchange(inRow_, false)) return;
    if (stopped && last_ < 0) {
        number_ -= 1;
        rest_ = nullptr;
        return;
    }
    stopped_ = stopped;
    if (stopped) {
        for (std::size_t at = 0; at < row_.values.size(); ++at) complete(static_cast<std::int32_t>(at));
    } else {
        for (const std::int32_t position : wanted) complete(position);
    }
    rest_ = nullptr;
    if (!onRow) return;
    row_.number = number_;
    if (stopped) {
        ListRow copy = row_;
        onRow(copy);
    } else {
        onRow(row_);
        row_.values.resize(present_.size());
    }
}

}  // namespace pxtarvo::devhost
