#include "platform/controls.h"

#include <algorithm>

#include "platform/values/conversion.h"
#include "platform/window.h"

namespace pxtarvo {

namespace {

bool canHaveFocus(ControlKind kind) {
    switch (kind) {
        case ControlKind::Label:
        case ControlKind::Frame:
        case ControlKind::ProgressBar:
        case ControlKind::Shape:
            return false;
        default:
            return true;
    }
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

TextBox::TextBox(Window& window, const ControlPlan& plan) : Control(window, ControlKind::TextBox, plan) {}

void TextBox::setText(std::string_view text) {
    if (!writable()) return;
    userText(text.substr(0, text.find('\0')));
    changed(ControlProperty::Text);
}

void TextBox::userText(std::string_view text) {
    if (text == text_) return;
    text_ = text;
    selectionStart_ = 0;
    selectionLength_ = 0;
    if (onChange) onChange();
}

void TextBox::userSelection(int start, int length) noexcept {
    selectionStart_ = start;
    selectionLength_ = length;
}

void TextBox::setBackColor(std::uint32_t color) {
    if (!writable() || color == backColor_) return;
    backColor_ = color;
    changed(ControlProperty::Colors);
}

void TextBox::setForeColor(std::uint32_t color) {
    if (!writable() || color == foreColor_) return;
    foreColor_ = color;
    changed(ControlProperty::Colors);
}

void TextBox::select(int start, int length) {
    if (!writable()) return;
    selectionStart_ = start;
    selectionLength_ = length;
    changed(ControlProperty::Selection);
}

Label::Label(Window& window, const ControlPlan& plan)
    : Control(window, ControlKind::Label, plan), caption_(plan.caption) {}

void Label::setCaption(std::string_view caption) {
    if (!writable() || caption == caption_) return;
    caption_ = caption;
    changed(ControlProperty::Caption);
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
    if (value == value_) return;
    value_ = value;
    changed(ControlProperty::Value);
}

void CheckBox::setValue(bool value) {
    if (!writable() || value == value_) return;
    value_ = value;
    changed(ControlProperty::Value);
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
    listIndex_ = index;
    changed(ControlProperty::Value);
}

std::string ComboBox::text() const {
    return listIndex_ < 0 ? std::string() : items_[static_cast<std::size_t>(listIndex_)];
}

void ProgressBar::setMinimum(double minimum) {
    if (!writable()) return;
    minimum_ = minimum;
    changed(ControlProperty::Range);
}

void ProgressBar::setMaximum(double maximum) {
    if (!writable()) return;
    maximum_ = maximum;
    changed(ControlProperty::Range);
}

void ProgressBar::setValue(double value) {
    if (!writable()) return;
    value_ = value;
    changed(ControlProperty::Value);
}

void ListView::setColumns(std::vector<ListColumn> columns) {
    if (!writable()) return;
    columns_ = std::move(columns);
    changed(ControlProperty::Columns);
}

std::string cellText(const GridColumn& column, const Variant& value, const Locale& locale) {
    if (column.format.empty() || value.isNull()) return joinedText(value, locale);
    return dayMonthYear(value, locale);
}

void DataGrid::setDataSource(ObjectRef<Recordset> rows) {
    if (!writable()) return;
    dataSource_ = std::move(rows);
    changed(ControlProperty::Rows);
}

void DataGrid::setColumns(std::vector<GridColumn> columns) {
    if (!writable()) return;
    columns_ = std::move(columns);
    changed(ControlProperty::Columns);
}

void DataGrid::userRow(std::int32_t position) {
    if (dataSource_) dataSource_->AbsolutePosition(position);
}

}  // namespace pxtarvo
