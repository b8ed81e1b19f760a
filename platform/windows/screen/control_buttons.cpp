// Everything that is clicked, and what stands around it: push buttons, option buttons, check boxes, frames
// and shapes.

#include "platform/windows/screen/control_view.h"
#include "platform/windows/screen/window_view.h"

namespace pxtarvo::windows {

namespace {

class ButtonView : public ControlView {
  public:
    ButtonView(WindowView& parent, Control& control, DWORD style) : ControlView(parent, control) {
        create(WC_BUTTONW, WS_TABSTOP | style, 0, control.plan().caption);
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
        : ButtonView(parent, button, BS_PUSHBUTTON), button_(button) {}

    void activate() override { button_.window().handle(button_.onClick); }

  private:
    PushButton& button_;
};

/// Option buttons and check boxes: the Control keeps the mark, the real control shows it.
template <class Marked>
class MarkView : public ButtonView {
  public:
    MarkView(WindowView& parent, Marked& marked, DWORD style)
        : ButtonView(parent, marked, style), marked_(marked) {
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

class FrameView : public ControlView {
  public:
    FrameView(WindowView& parent, Frame& frame) : ControlView(parent, frame) {
        // Its inside is the window's own background.
        create(WC_BUTTONW, BS_GROUPBOX, WS_EX_TRANSPARENT, frame.plan().caption);
    }

    HBRUSH colors(UINT, HDC dc) override {
        SetBkMode(dc, TRANSPARENT);
        return GetSysColorBrush(COLOR_BTNFACE);
    }
};

/// The window paints it.
class ShapeView : public ControlView {
  public:
    using ControlView::ControlView;
};

}  // namespace

std::unique_ptr<ControlView> makePushButtonView(WindowView& parent, PushButton& button) {
    return std::make_unique<PushButtonView>(parent, button);
}

std::unique_ptr<ControlView> makeOptionView(WindowView& parent, OptionButton& option) {
    return std::make_unique<MarkView<OptionButton>>(parent, option, BS_RADIOBUTTON);
}

std::unique_ptr<ControlView> makeCheckView(WindowView& parent, CheckBox& check) {
    return std::make_unique<MarkView<CheckBox>>(parent, check, BS_CHECKBOX);
}

std::unique_ptr<ControlView> makeFrameView(WindowView& parent, Frame& frame) {
    return std::make_unique<FrameView>(parent, frame);
}

std::unique_ptr<ControlView> makeShapeView(WindowView& parent, Shape& shape) {
    return std::make_unique<ShapeView>(parent, shape);
}

}  // namespace pxtarvo::windows
