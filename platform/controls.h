#pragma once

// The controls of a window: small objects that hold their state and call the handler that the window gave
// them. A body of the desktop observes them (to draw) and passes on what the user does (user... members).
// Once the window is unloaded, what code writes into a control is ignored.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/values/locale.h"

namespace pxtarvo {

class Window;
class Control;

enum class ControlKind {
    TextBox,
    Label,
    Frame,
    OptionButton,
    ComboBox,
    CheckBox,
    PushButton,
    ProgressBar,
    ListView,
    DataGrid,
    Shape
};

/// Position and size within the window's client area, in 1/96 inch.
struct Rect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

inline constexpr int notIndexed = -1;
inline constexpr int noTabStop = -1;

/// What a window's class declares of a control, once, for every body of the desktop.
struct ControlPlan {
    std::string_view name{};  ///< the control's name; elements of an array share it
    int index = notIndexed;   ///< position in the control array
    Rect rect{};
    int tabIndex = noTabStop;    ///< place in the tab order; option buttons of one container are one stop
    std::string_view caption{};  ///< "&" marks a mnemonic in push buttons, option buttons and check boxes
    int maxLength = 0;           ///< text boxes: characters that the user can type, 0 for any number
    bool visible = true;
    bool enabled = true;
    std::string_view container{};  ///< name of the frame that holds it, empty for the window itself
};

enum class ControlProperty {
    Text,
    Caption,
    Visible,
    Enabled,
    Colors,
    Selection,
    Value,
    Range,
    Items,
    Columns,
    Rows
};

/// A body's view of a window's controls.
class ControlObserver {
  public:
    virtual ~ControlObserver() = default;
    virtual void controlChanged(Control& control, ControlProperty property) = 0;
    /// Code moved the focus, to the window's active control or away from all of them.
    virtual void focusMoved() = 0;
    /// The window's caption or enabled state changed.
    virtual void windowChanged() = 0;
};

class Control {
  public:
    Control(Window& window, ControlKind kind, const ControlPlan& plan);
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control();

    ControlKind kind() const noexcept { return kind_; }
    const ControlPlan& plan() const noexcept { return plan_; }
    /// "Text1(3)", or the bare name outside an array.
    std::string fullName() const;
    Window& window() const noexcept { return window_; }

    // Hiding or disabling the control that has the focus moves the focus on to the next one in the tab order.

    bool visible() const noexcept { return visible_; }
    void setVisible(bool visible);
    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled);
    const std::string& tag() const noexcept { return tag_; }
    void setTag(std::string_view tag);

    /// Whether the user can put the focus here now.
    bool takesFocus() const;
    void setFocus();

    std::function<void()> onGotFocus;
    std::function<void()> onLostFocus;

  protected:
    /// Whether code may still write: false once the window is unloaded.
    bool writable() const;
    void changed(ControlProperty property);
    /// Writes a member of the control's where code may still write, and tells the observer.
    template <class Value, class Written>
    void write(Value& member, Written&& value, ControlProperty property) {
        if (!writable()) return;
        member = std::forward<Written>(value);
        changed(property);
    }
    /// The same, but nothing happens where the member has this value already.
    template <class Value, class Written>
    void writeOther(Value& member, Written&& value, ControlProperty property) {
        if (!(member == value)) write(member, std::forward<Written>(value), property);
    }

  private:
    Window& window_;
    ControlKind kind_;
    ControlPlan plan_;
    std::string tag_;
    bool visible_;
    bool enabled_;
};

class TextBox : public Control {
  public:
    TextBox(Window& window, const ControlPlan& plan) : Control(window, ControlKind::TextBox, plan) {}

    const std::string& text() const noexcept { return text_; }
    /// Up to the first character of code 0, as the platform's text box shows and returns it.
    void setText(std::string_view text);

    /// Colours as 0x00BBGGRR.
    std::uint32_t backColor() const noexcept { return backColor_; }
    void setBackColor(std::uint32_t color) { writeOther(backColor_, color, ControlProperty::Colors); }
    std::uint32_t foreColor() const noexcept { return foreColor_; }
    void setForeColor(std::uint32_t color) { writeOther(foreColor_, color, ControlProperty::Colors); }

    /// Selection in characters.
    int selectionStart() const noexcept { return selectionStart_; }
    int selectionLength() const noexcept { return selectionLength_; }
    void select(int start, int length);

    std::function<void()> onChange;
    /// The key's ANSI code; 0 in it afterwards cancels the key.
    std::function<void(std::int16_t& KeyAscii)> onKeyPress;

    /// The user's typing left this text in the box.
    void userText(std::string_view text);
    /// The user's caret and marking, in characters.
    void userSelection(int start, int length) noexcept {
        selectionStart_ = start;
        selectionLength_ = length;
    }

  private:
    std::string text_;
    std::uint32_t backColor_ = 0x00FFFFFF;
    std::uint32_t foreColor_ = 0x00000000;
    int selectionStart_ = 0;
    int selectionLength_ = 0;
};

class Label : public Control {
  public:
    Label(Window& window, const ControlPlan& plan)
        : Control(window, ControlKind::Label, plan), caption_(plan.caption) {}
    const std::string& caption() const noexcept { return caption_; }
    void setCaption(std::string_view caption) { writeOther(caption_, caption, ControlProperty::Caption); }

  private:
    std::string caption_;
};

class Frame : public Control {
  public:
    Frame(Window& window, const ControlPlan& plan) : Control(window, ControlKind::Frame, plan) {}
};

class Shape : public Control {
  public:
    Shape(Window& window, const ControlPlan& plan) : Control(window, ControlKind::Shape, plan) {}
};

class PushButton : public Control {
  public:
    PushButton(Window& window, const ControlPlan& plan) : Control(window, ControlKind::PushButton, plan) {}
    std::function<void()> onClick;
};

/// One of the option buttons of a container: choosing it clears the others. Setting it in code raises no
/// event.
class OptionButton : public Control {
  public:
    OptionButton(Window& window, const ControlPlan& plan)
        : Control(window, ControlKind::OptionButton, plan) {}
    bool value() const noexcept { return value_; }
    void setValue(bool value);
    std::function<void()> onClick;

  private:
    bool value_ = false;
};

class CheckBox : public Control {
  public:
    CheckBox(Window& window, const ControlPlan& plan) : Control(window, ControlKind::CheckBox, plan) {}
    bool value() const noexcept { return value_; }
    void setValue(bool value) { writeOther(value_, value, ControlProperty::Value); }
    std::function<void()> onClick;

  private:
    bool value_ = false;
};

/// A drop-down list: the user chooses one of the items.
class ComboBox : public Control {
  public:
    ComboBox(Window& window, const ControlPlan& plan) : Control(window, ControlKind::ComboBox, plan) {}
    void addItem(std::string_view item);
    const std::vector<std::string>& items() const noexcept { return items_; }
    /// -1 for none.
    int listIndex() const noexcept { return listIndex_; }
    /// 380 ("valor de propiedad no válido") beyond the items.
    void setListIndex(int index);
    /// The chosen item, or "" for none.
    std::string text() const;

  private:
    std::vector<std::string> items_;
    int listIndex_ = -1;
};

/// Takes a value beyond its maximum, and a maximum of 0, without error.
class ProgressBar : public Control {
  public:
    ProgressBar(Window& window, const ControlPlan& plan) : Control(window, ControlKind::ProgressBar, plan) {}
    double minimum() const noexcept { return minimum_; }
    double maximum() const noexcept { return maximum_; }
    double value() const noexcept { return value_; }
    void setMinimum(double minimum) { write(minimum_, minimum, ControlProperty::Range); }
    void setMaximum(double maximum) { write(maximum_, maximum, ControlProperty::Range); }
    void setValue(double value) { write(value_, value, ControlProperty::Value); }

  private:
    double minimum_ = 0;
    double maximum_ = 100;
    double value_ = 0;
};

struct ListColumn {
    std::string caption;
    int width = 0;  ///< twips (1/1440 inch)
};

class ListView : public Control {
  public:
    ListView(Window& window, const ControlPlan& plan) : Control(window, ControlKind::ListView, plan) {}
    void setColumns(std::vector<ListColumn> columns) {
        write(columns_, std::move(columns), ControlProperty::Columns);
    }
    const std::vector<ListColumn>& columns() const noexcept { return columns_; }

  private:
    std::vector<ListColumn> columns_;
};

struct GridColumn {
    std::string caption{};
    int width = 0;  ///< twips (1/1440 inch)
    bool visible = true;
    bool centred = false;
    std::string format{};  ///< "" or "DD/MM/YYYY"
};

/// What a grid shows of a value in this column; Null is empty. Raises what converting the value raises.
std::string cellText(const GridColumn& column, const Variant& value, const Locale& locale);

/// A grid that shows a recordset and shares its current row: it follows the code's moves without an event,
/// and the user's choice of a row moves the recordset.
class DataGrid : public Control {
  public:
    DataGrid(Window& window, const ControlPlan& plan) : Control(window, ControlKind::DataGrid, plan) {}
    const ObjectRef<Recordset>& dataSource() const noexcept { return dataSource_; }
    void setDataSource(ObjectRef<Recordset> rows) {
        write(dataSource_, std::move(rows), ControlProperty::Rows);
    }
    const std::vector<GridColumn>& columns() const noexcept { return columns_; }
    void setColumns(std::vector<GridColumn> columns) {
        write(columns_, std::move(columns), ControlProperty::Columns);
    }
    /// The user chose the row at this 1-based position.
    void userRow(std::int32_t position);

  private:
    ObjectRef<Recordset> dataSource_;
    std::vector<GridColumn> columns_;
};

/// Controls of one kind and name, addressed by index.
template <class T>
class ControlArray {
  public:
    /// All have the name and the container of `common`.
    ControlArray(Window& window, const ControlPlan& common, std::initializer_list<ControlPlan> plans) {
        for (ControlPlan plan : plans) {
            plan.name = common.name;
            plan.container = common.container;
            elements_.emplace(plan.index, std::make_unique<T>(window, plan));
        }
    }
    /// 340 (ControlArrayElement) for an index that the array lacks.
    T& operator[](int index) const {
        const auto found = elements_.find(index);
        if (found == elements_.end()) throw RuntimeError(ErrorNumber::ControlArrayElement);
        return *found->second;
    }
    auto begin() const { return elements_.begin(); }
    auto end() const { return elements_.end(); }

  private:
    std::map<int, std::unique_ptr<T>> elements_;
};

}  // namespace pxtarvo
