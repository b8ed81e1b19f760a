// Everything that is clicked, and what stands around it: push buttons, option buttons, check boxes, frames.

#include "platform/windows/screen/control_view.h"
#include "platform/windows/screen/window_view.h"

namespace pxtarvo::windows {

namespace {

/// Also a frame, whose inside is the window's own background.
class ButtonView : public ControlView {
  public:
    ButtonView(WindowView& parent, Control& control, DWORD style, DWORD extendedStyle = 0)
        : ControlView(parent, control) {
        create(WC_BUTTONW, style, extendedStyle, control.plan().caption);
    }

    void command(WORD code) override {
        // An option button also reports a click when it merely gets the focus.
        if (code == BN_CLICKED && !takingFocus()) activate();
    }

    HBRUSH colors(UINT, HDC dc) override {
        SetBkMode(dc, TRANSPARENT);
        return GetSysColorBrush(COLOR_BTNFACE);
    }
};

class PushButtonView : public ButtonView {
  public:
    PushButtonView(WindowView& parent, PushButton& button)
        : ButtonView(parent, button, WS_TABSTOP | BS_PUSHBUTTON), button_(button) {}

    void activate() override { button_.window().handle(button_.onClick); }

  private:
    PushButton& button_;
};

/// Option buttons and check boxes: the Control keeps the mark, the real control shows it.
template <class Marked>
class MarkView : public ButtonView {
  public:
    MarkView(WindowView& parent, Marked& marked, DWORD style)
        : ButtonView(parent, marked, WS_TABSTOP | style), marked_(marked) {
        mark();
    }

    void update(ControlProperty property) override {
        if (property == ControlProperty::Value) return mark();
        ControlView::update(property);
    }

    void activate() override {
        constexpr bool option = std::is_same_v<Marked, OptionButton>;
        marked_.setValue(option || !marked_.value());
        marked_.window().handle(marked_.onClick);
    }

  private:
    void mark() { SendMessageW(handle(), BM_SETCHECK, marked_.value() ? BST_CHECKED : BST_UNCHECKED, 0); }

    Marked& marked_;
};

}  // namespace

std::unique_ptr<ControlView> makeButtonView(WindowView& parent, Control& control) {
    if (auto view = viewOfKind<PushButtonView, PushButton>(parent, control)) return view;
    if (auto view = viewOfKind<MarkView<OptionButton>, OptionButton>(parent, control, BS_RADIOBUTTON))
        return view;
    if (auto view = viewOfKind<MarkView<CheckBox>, CheckBox>(parent, control, BS_CHECKBOX)) return view;
    return viewOfKind<ButtonView, Frame>(parent, control, BS_GROUPBOX, WS_EX_TRANSPARENT);
}

}  // namespace pxtarvo::windows
