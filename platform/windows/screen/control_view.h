#pragma once

// The real control behind a Control: created from its plan, kept up to date as an observer tells, and the
// source of the user's actions.

#include <memory>
#include <string_view>

#include "platform/controls.h"
#include "platform/windows/system/win32.h"

namespace pxtarvo::windows {

class WindowView;

class ControlView {
  public:
    ControlView(WindowView& parent, Control& control) : parent_(parent), control_(control) {}
    ControlView(const ControlView&) = delete;
    ControlView& operator=(const ControlView&) = delete;
    /// Destroys the real control.
    virtual ~ControlView();

    /// nullptr for a control that the window paints itself.
    HWND handle() const noexcept { return handle_; }
    Control& control() const noexcept { return control_; }

    /// Takes position, size and font from the plan, at the window's resolution.
    virtual void place();
    /// Shows what code changed; what a long run changes at every row waits for refresh() or until the control
    /// becomes visible.
    virtual void update(ControlProperty property);
    virtual void refresh() {}
    /// Visible and enabled as the control and its container say.
    void applyState();
    /// Moves the keyboard focus here. `byTab` when the user did it with the Tab key.
    virtual void takeFocus(bool byTab);
    /// What the user's click, space key or mnemonic does.
    virtual void activate() {}

    /// The control's notifications. `answer` is what its message returns.
    virtual void command(WORD) {}
    virtual void notify(NMHDR&, LRESULT&) {}
    /// Before the control is painted: sets colours and answers with the background, or nullptr for the
    /// control's own.
    virtual HBRUSH colors(UINT, HDC) { return nullptr; }
    virtual void draw(const DRAWITEMSTRUCT&) {}
    /// Sees a message before the control does and may change it; true keeps it from the control.
    virtual bool intercept(UINT, WPARAM&, LPARAM) { return false; }

  protected:
    /// Creates the real control, hidden. Raises 7 (out of memory) when Windows refuses.
    void create(const wchar_t* windowClass, DWORD style, DWORD extendedStyle = 0, std::string_view text = {});
    /// What the window paints beneath the control changed with it.
    void repaintParent() const;
    bool takingFocus() const noexcept { return takingFocus_; }
    /// Remembers that refresh() has work to do.
    void deferUpdate();

    WindowView& parent_;

  private:
    static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR view);
    LRESULT message(UINT message, WPARAM wParam, LPARAM lParam);

    Control& control_;
    HWND handle_ = nullptr;
    bool takingFocus_ = false;
};

/// The view that shows a control of this kind; a bare one for a shape, which the window paints.
std::unique_ptr<ControlView> makeView(WindowView& parent, Control& control);

// What makeView() asks one after the other; each answers with nothing for a control of another kind.
std::unique_ptr<ControlView> makeTextView(WindowView& parent, Control& control);
std::unique_ptr<ControlView> makeButtonView(WindowView& parent, Control& control);
std::unique_ptr<ControlView> makeListView(WindowView& parent, Control& control);
std::unique_ptr<ControlView> makeGridView(WindowView& parent, Control& control);

/// A view of this class where `control` is of the class that it shows.
template <class View, class Shown, class... Arguments>
std::unique_ptr<ControlView> viewOfKind(WindowView& parent, Control& control, Arguments... arguments) {
    auto* const shown = dynamic_cast<Shown*>(&control);
    return shown ? std::make_unique<View>(parent, *shown, arguments...) : nullptr;
}

}  // namespace pxtarvo::windows
