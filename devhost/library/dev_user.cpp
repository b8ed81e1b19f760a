#include "devhost/library/dev_user.h"

#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// Takes the first of a queue.
template <class T>
std::optional<T> next(std::deque<T>& queue) {
    if (queue.empty()) return std::nullopt;
    T first = std::move(queue.front());
    queue.pop_front();
    return first;
}

/// Case is ignored for the letters of the user's code page, as a list that searches while one types does.
bool beginsWith(std::string_view text, std::string_view beginning) {
    const std::u16string whole = toUtf16(text);
    const std::u16string wanted = toUtf16(beginning);
    const auto lower = [](char16_t unit) -> char16_t {
        const bool ascii = unit >= u'A' && unit <= u'Z';
        const bool latin = unit >= u'À' && unit <= u'Þ' && unit != u'×';
        return ascii || latin ? static_cast<char16_t>(unit + 0x20) : unit;
    };
    if (wanted.size() > whole.size()) return false;
    for (std::size_t at = 0; at < wanted.size(); ++at) {
        if (lower(whole[at]) != lower(wanted[at])) return false;
    }
    return true;
}

/// Position of the first row whose `column` begins with `typed`.
std::optional<std::int32_t> firstRow(Recordset& rows, std::string_view column, std::string_view typed) {
    for (std::int32_t position = 0; !rows.Eof(); ++position, rows.MoveNext()) {
        const Variant value = rows.Fields(column);
        const std::string* text = value.get<std::string>();
        if (text && beginsWith(*text, typed)) return position;
    }
    return std::nullopt;
}

}  // namespace

bool DevUser::lastMessageIs(std::string_view text) const {
    return !messages_.empty() && messages_.back().message.text == text;
}

std::optional<std::int32_t> DevUser::choose(const Busqueda& busqueda, Recordset& rows) {
    if (onSearchOpens) onSearchOpens();
    const std::optional<SearchChoice> choice = next(choices);
    if (!choice) return onSearch ? onSearch(busqueda, rows) : std::nullopt;
    if (const auto* position = std::get_if<std::int32_t>(&*choice)) return *position;
    if (const auto* typed = std::get_if<std::string>(&*choice)) {
        if (rows.RecordCount() > 0) rows.MoveFirst();
        return firstRow(rows, busqueda.sCampo, *typed);
    }
    return std::nullopt;
}

void DevUser::windowShown(Window& window) {
    if (onWindowShown) onWindowShown(window);
}

portable::Reply DevUser::reply(const Message& message) {
    portable::Reply reply;
    const auto prepared = next(replies);
    if (prepared) reply = *prepared;
    if (message.buttons == MessageButtons::YesNo && reply.answer == MessageAnswer::Ok) {
        reply.answer = message.defaultsToNo ? MessageAnswer::No : MessageAnswer::Yes;
        if (yesNo && !prepared) reply.answer = *yesNo;
    }
    messages_.push_back({message, reply.answer});
    if (recorder_) recorder_->message(message, reply.answer);
    if (onMessage) onMessage(ShownMessage(messages_.back()));
    return reply;
}

std::optional<std::string> DevUser::chooseFile(const OpenFileName& record) {
    if (const auto prepared = next(files)) return *prepared;
    return onChooseFile ? onChooseFile(record) : std::nullopt;
}

void DevUser::yielded() {
    if (onYielded) onYielded();
}

void DevUser::windowUnloaded(Window& window) {
    if (recorder_) recorder_->unload(window.plan().name);
}

}  // namespace pxtarvo::devhost
