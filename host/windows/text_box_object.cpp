#include "host/windows/text_box_object.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/values/conversion.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"
#include "platform/windows/screen/window_handles.h"
#include "platform/windows/system/user_locale.h"

namespace pxtarvo::windows {

namespace {

constexpr std::int32_t readOnlyProperty = 383;

/// System colours (0x800000nn) become the colour that they stand for now.
std::uint32_t colorOf(const Variant& value) {
    // Whole, but handed over as a Double as often as not, and then without a sign.
    const double number = toDouble(value, userLocale());
    if (!(number >= INT32_MIN && number <= UINT32_MAX)) throw RuntimeError(ErrorNumber::Overflow);
    const auto color = static_cast<std::uint32_t>(static_cast<std::int64_t>(number));
    constexpr std::uint32_t systemColor = 0x80000000u;
    if ((color & 0xFF000000u) == systemColor) return GetSysColor(static_cast<int>(color & 0xFFu));
    return color & 0x00FFFFFFu;
}

/// A piece of `text`, cut by characters where it ends early.
std::string_view piece(std::string_view text, int start, int length) {
    const std::string_view before = firstCharacters(text, static_cast<std::size_t>(std::max(start, 0)));
    return firstCharacters(text.substr(before.size()), static_cast<std::size_t>(std::max(length, 0)));
}

void replaceSelection(TextBox& box, std::string_view text) {
    const std::string before(
        firstCharacters(box.text(), static_cast<std::size_t>(std::max(box.selectionStart(), 0))));
    const std::string after = box.text().substr(
        before.size() + piece(box.text(), box.selectionStart(), box.selectionLength()).size());
    box.setText(before + std::string(text) + after);
    box.select(static_cast<int>(characterCount(before) + characterCount(text)), 0);
}

struct Member {
    std::u16string_view name;
    Variant (*get)(const TextBox&);
    void (*put)(TextBox&, const Variant&);  ///< none where code cannot change it
};

std::string textOf(const Variant& value) {
    return toText(value, userLocale());
}
std::int32_t longOf(const Variant& value) {
    return toLong(value, userLocale());
}

constexpr auto members = std::to_array<Member>({
    {u"Text", [](const TextBox& box) -> Variant { return box.text(); },
     [](TextBox& box, const Variant& value) { box.setText(textOf(value)); }},
    {u"BackColor", [](const TextBox& box) -> Variant { return static_cast<std::int32_t>(box.backColor()); },
     [](TextBox& box, const Variant& value) { box.setBackColor(colorOf(value)); }},
    {u"ForeColor", [](const TextBox& box) -> Variant { return static_cast<std::int32_t>(box.foreColor()); },
     [](TextBox& box, const Variant& value) { box.setForeColor(colorOf(value)); }},
    {u"SelStart", [](const TextBox& box) -> Variant { return std::int32_t{box.selectionStart()}; },
     [](TextBox& box, const Variant& value) { box.select(longOf(value), 0); }},
    {u"SelLength", [](const TextBox& box) -> Variant { return std::int32_t{box.selectionLength()}; },
     [](TextBox& box, const Variant& value) { box.select(box.selectionStart(), longOf(value)); }},
    {u"SelText",
     [](const TextBox& box) -> Variant {
         return piece(box.text(), box.selectionStart(), box.selectionLength());
     },
     [](TextBox& box, const Variant& value) { replaceSelection(box, textOf(value)); }},
    {u"Enabled", [](const TextBox& box) -> Variant { return box.enabled(); },
     [](TextBox& box, const Variant& value) { box.setEnabled(toBoolean(value, userLocale())); }},
    {u"Visible", [](const TextBox& box) -> Variant { return box.visible(); },
     [](TextBox& box, const Variant& value) { box.setVisible(toBoolean(value, userLocale())); }},
    {u"hWnd",
     // Window handles fit 32 bits on every Windows.
     [](const TextBox& box) -> Variant { return static_cast<std::int32_t>(HandleToLong(handleOf(box))); },
     nullptr},
    {u"Tag", [](const TextBox& box) -> Variant { return box.tag(); },
     [](TextBox& box, const Variant& value) { box.setTag(textOf(value)); }},
    {u"MaxLength", [](const TextBox& box) -> Variant { return std::int32_t{box.plan().maxLength}; }, nullptr},
    {u"Name", [](const TextBox& box) -> Variant { return box.plan().name; }, nullptr},
    {u"Index", [](const TextBox& box) -> Variant { return static_cast<std::int16_t>(box.plan().index); },
     nullptr},
    {u"SetFocus", nullptr, nullptr},
});

constexpr int textPlace = 0;
constexpr int setFocusPlace = static_cast<int>(members.size()) - 1;

constexpr auto names = [] {
    std::array<std::u16string_view, members.size()> list{};
    std::ranges::transform(members, list.begin(), &Member::name);
    return list;
}();

}  // namespace

TextBoxObject::TextBoxObject(TextBox& box) : AutomationObject({names, textPlace}), box_(&box) {}

OwnedVariant TextBoxObject::member(int place, const CallArguments& arguments) {
    if (!box_) throw RuntimeError(ErrorNumber::ObjectNotSet);
    const Member& asked = members[static_cast<std::size_t>(place)];
    if (place == setFocusPlace) {
        box_->setFocus();
    } else if (!arguments.isPut()) {
        return asked.get(*box_);
    } else if (asked.put) {
        asked.put(*box_, arguments.value(0));
    } else {
        throw RuntimeError(readOnlyProperty, "La propiedad es de sólo lectura");
    }
    return {};
}

}  // namespace pxtarvo::windows
