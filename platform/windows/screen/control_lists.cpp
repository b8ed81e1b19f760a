// Drop-down lists and progress bars.

#include <algorithm>
#include <cmath>

#include "platform/windows/screen/control_view.h"
#include "platform/windows/screen/window_view.h"
#include "platform/windows/system/wide_text.h"

namespace pxtarvo::windows {

namespace {

class ComboView : public ControlView {
  public:
    ComboView(WindowView& parent, ComboBox& combo) : ControlView(parent, combo), combo_(combo) {
        create(WC_COMBOBOXW, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST | CBS_HASSTRINGS);
        addItems();
        choose();
    }

    void place() override {
        ControlView::place();
        // The rectangle's height is that of the dropped list; the field stands like a text box beside it.
        constexpr int textBoxHeight = 22;
        constexpr int edges = 6;
        const Rect& rect = combo_.plan().rect;
        const RECT field = parent_.scaled({rect.left, rect.top, rect.width, textBoxHeight});
        SendMessageW(handle(), CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), parent_.fieldHeight() - edges);
        SetWindowPos(handle(), nullptr, field.left, (field.top + field.bottom - parent_.fieldHeight()) / 2, 0,
                     0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void update(ControlProperty property) override {
        switch (property) {
            case ControlProperty::Items:
                return addItems();
            case ControlProperty::Value:
                return choose();
            default:
                ControlView::update(property);
        }
    }

    void command(WORD code) override {
        if (code != CBN_SELCHANGE) return;
        const auto chosen = static_cast<int>(SendMessageW(handle(), CB_GETCURSEL, 0, 0));
        combo_.window().handle([&] { combo_.setListIndex(chosen); });
    }

  private:
    void addItems() {
        const auto shown = static_cast<std::size_t>(SendMessageW(handle(), CB_GETCOUNT, 0, 0));
        for (std::size_t item = shown; item < combo_.items().size(); ++item) {
            SendMessageW(handle(), CB_ADDSTRING, 0,
                         reinterpret_cast<LPARAM>(WideText(combo_.items()[item]).c_str()));
        }
    }

    void choose() { SendMessageW(handle(), CB_SETCURSEL, static_cast<WPARAM>(combo_.listIndex()), 0); }

    ComboBox& combo_;
};

/// Its value is written at every row of a run, so the bar follows when the window is refreshed.
class ProgressView : public ControlView {
  public:
    ProgressView(WindowView& parent, ProgressBar& bar) : ControlView(parent, bar), bar_(bar) {
        create(PROGRESS_CLASSW, PBS_SMOOTH);
        show();
    }

    void update(ControlProperty property) override {
        if (property != ControlProperty::Value && property != ControlProperty::Range)
            return ControlView::update(property);
        stale_ = true;
        deferUpdate();
    }

    void refresh() override {
        if (std::exchange(stale_, false)) show();
    }

  private:
    static constexpr int steps = 10000;

    void show() {
        const double range = bar_.maximum() - bar_.minimum();
        const double part = range > 0 ? (bar_.value() - bar_.minimum()) / range : 0;
        SendMessageW(handle(), PBM_SETRANGE32, 0, steps);
        SendMessageW(handle(), PBM_SETPOS,
                     static_cast<WPARAM>(std::lround(std::clamp(part, 0.0, 1.0) * steps)), 0);
    }

    ProgressBar& bar_;
    bool stale_ = false;
};

}  // namespace

std::unique_ptr<ControlView> makeListView(WindowView& parent, Control& control) {
    if (auto view = viewOfKind<ComboView, ComboBox>(parent, control)) return view;
    return viewOfKind<ProgressView, ProgressBar>(parent, control);
}

}  // namespace pxtarvo::windows
