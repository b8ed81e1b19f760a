#include "platform/controls.h"

#include "platform/values/conversion.h"
#include "platform/window.h"

namespace pxtarvo {

namespace {

bool canHaveFocus(ControlKind kind) {
    return kind != ControlKind::Label && kind != ControlKind::Frame && kind != ControlKind::ProgressBar &&
           kind != ControlKind::Shape;
}

}  // namespace

Control::Control(Window& window, ControlKind kind, const ControlPlan& plan)
    : window_(window), kind_(kind), plan_(plan), visible_(plan.visible), enabled_(plan.enabled) {
    window_.controls_.push_back(this);
}

Control::~Control() {
    std::erase(window_.controls_, this);
}

std::string Control::fullName() const {
    std::string name(plan_.name);
    if (plan_.index != notIndexed) name.append("(").append(std::to_string(plan_.index)).append(")");
    return name;
}

bool Control::writable() const {
    return !window_.unloaded();
}

void Control::changed(ControlProperty property) {
    if (window_.observer()) window_.observer()->controlChanged(*this, property);
}

void Control::setVisible(bool visible) {
    if (!writable() || visible == visible_) return;
    visible_ = visible;
    window_.passFocusOn(*this);
    changed(ControlProperty::Visible);
}

void Control::setEnabled(bool enabled) {
    if (!writable() || enabled == enabled_) return;
    enabled_ = enabled;
    window_.passFocusOn(*this);
    changed(ControlProperty::Enabled);
}

void Control::setTag(std::string_view tag) {
    if (writable()) tag_ = tag;
}

bool Control::takesFocus() const {
    return canHaveFocus(kind_) && visible_ && enabled_ && writable();
}

void Control::setFocus() {
    if (!takesFocus()) return;
    window_.focusOn(*this);
    if (window_.observer()) window_.observer()->focusMoved();
}

void TextBox::setText(std::string_view text) {
    if (!writable()) return;
    userText(text.substr(0, text.find('\0')));
    changed(ControlProperty::Text);
}

void TextBox::userText(std::string_view text) {
    if (text == text_) return;
    text_ = text;
    userSelection(0, 0);
    if (onChange) onChange();
}

void TextBox::select(int start, int length) {
    if (!writable()) return;
    userSelection(start, length);
    changed(ControlProperty::Selection);
}

void OptionButton::setValue(bool value) {
    if (!writable()) return;
    if (value) {
        for (Control* other : window().controls()) {
            auto* option = dynamic_cast<OptionButton*>(other);
            if (option && option != this && option->plan().container == plan().container)
                option->setValue(false);
        }
    }
    writeOther(value_, value, ControlProperty::Value);
}

void ComboBox::addItem(std::string_view item) {
    if (!writable()) return;
    items_.emplace_back(item);
    changed(ControlProperty::Items);
}

void ComboBox::setListIndex(int index) {
    if (!writable()) return;
    if (index < -1 || index >= static_cast<int>(items_.size())) {
        throw RuntimeError(ErrorNumber::InvalidPropertyValue);
    }
    write(listIndex_, index, ControlProperty::Value);
}

std::string ComboBox::text() const {
    return listIndex_ < 0 ? std::string() : items_[static_cast<std::size_t>(listIndex_)];
}

std::string cellText(const GridColumn& column, const Variant& value, const Locale& locale) {
    if (column.format.empty() || value.isNull()) return joinedText(value, locale);
    return dayMonthYear(value, locale);
}

void DataGrid::userRow(std::int32_t position) {
    if (dataSource_) dataSource_->AbsolutePosition(position);
}

}  // namespace pxtarvo
