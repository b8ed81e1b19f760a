// Text boxes and labels.

#include <algorithm>

#include "platform/values/text.h"
#include "platform/windows/screen/control_view.h"
#include "platform/windows/screen/gdi_object.h"
#include "platform/windows/screen/window_view.h"
#include "platform/windows/system/wide_text.h"

namespace pxtarvo::windows {

namespace {

/// The ANSI code that a key press has in the language, 0 for a character outside the code page's bytes.
std::int16_t ansiCode(wchar_t character) {
    char bytes[2]{};
    const int size = WideCharToMultiByte(CP_ACP, 0, &character, 1, bytes, sizeof(bytes), nullptr, nullptr);
    return size == 1 ? static_cast<unsigned char>(bytes[0]) : 0;
}

wchar_t characterOf(std::int16_t ansi) {
    const char byte = static_cast<char>(ansi);
    wchar_t character = 0;
    MultiByteToWideChar(CP_ACP, 0, &byte, 1, &character, 1);
    return character;
}

/// How many UTF-16 units the first `characters` characters of a text take.
int utf16Units(std::string_view text, int characters) {
    if (characters <= 0) return 0;
    return static_cast<int>(toUtf16(firstCharacters(text, static_cast<std::size_t>(characters))).size());
}

class TextView : public ControlView {
  public:
    TextView(WindowView& parent, TextBox& box) : ControlView(parent, box), box_(box) {
        create(WC_EDITW, WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, box.text());
        if (box.plan().maxLength > 0)
            SendMessageW(handle(), EM_LIMITTEXT, static_cast<WPARAM>(box.plan().maxLength), 0);
        select();
    }

    void place() override {
        ControlView::place();
        const RECT place = parent_.scaled(box_.plan().rect);
        const int height = std::min<int>(parent_.fieldHeight(), place.bottom - place.top);
        SetWindowPos(handle(), nullptr, place.left, (place.top + place.bottom - height) / 2,
                     place.right - place.left, height, SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void update(ControlProperty property) override {
        switch (property) {
            case ControlProperty::Text:
                writing_ = true;
                SetWindowTextW(handle(), WideText(box_.text()).c_str());
                writing_ = false;
                break;
            case ControlProperty::Colors:
                brush_.reset();
                InvalidateRect(handle(), nullptr, TRUE);
                break;
            case ControlProperty::Selection:
                select();
                break;
            default:
                ControlView::update(property);
        }
    }

    void takeFocus(bool byTab) override {
        if (byTab) SendMessageW(handle(), EM_SETSEL, 0, -1);
        ControlView::takeFocus(byTab);
    }

    void command(WORD code) override {
        if (code != EN_CHANGE || writing_) return;
        box_.window().handle([&] { box_.userText(windowText(handle())); });
        noteSelection();
    }

    HBRUSH colors(UINT message, HDC dc) override {
        if (message != WM_CTLCOLOREDIT) return nullptr;  // a disabled box keeps its grey
        if (!brush_) brush_.reset(CreateSolidBrush(box_.backColor()));
        SetBkColor(dc, box_.backColor());
        SetTextColor(dc, box_.foreColor());
        return brush_.get();
    }

    bool intercept(UINT message, WPARAM& wParam, LPARAM) override {
        if (message == WM_KEYUP || message == WM_LBUTTONUP || message == WM_KILLFOCUS) noteSelection();
        if (message != WM_CHAR) return false;
        noteSelection();
        if (box_.onKeyPress && press(wParam)) return true;
        // An edit control beeps at these two; they act when they are released.
        return wParam == VK_RETURN || wParam == VK_ESCAPE;
    }

  private:
    /// True when the handler cancelled the key; a changed one goes on in its place.
    bool press(WPARAM& character) {
        const std::int16_t pressed = ansiCode(static_cast<wchar_t>(character));
        if (pressed == 0) return false;
        std::int16_t KeyAscii = pressed;
        box_.window().handle([&] { box_.onKeyPress(KeyAscii); });
        if (KeyAscii == 0) return true;
        if (KeyAscii != pressed) character = characterOf(KeyAscii);
        return false;
    }

    /// Takes the user's caret and marking over, for whoever asks the box.
    void noteSelection() {
        DWORD start = 0;
        DWORD end = 0;
        SendMessageW(handle(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
        const std::u16string text = toUtf16(box_.text());
        const auto characters = [&](DWORD units) {
            const auto last =
                text.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(units, text.size()));
            return static_cast<int>(std::count_if(
                text.begin(), last, [](char16_t unit) { return unit < 0xDC00 || unit > 0xDFFF; }));
        };
        box_.userSelection(characters(start), characters(end) - characters(start));
    }

    void select() {
        const int start = utf16Units(box_.text(), box_.selectionStart());
        const int end = utf16Units(box_.text(), box_.selectionStart() + box_.selectionLength());
        SendMessageW(handle(), EM_SETSEL, static_cast<WPARAM>(start), end);
    }

    TextBox& box_;
    Brush brush_;
    bool writing_ = false;
};

/// Painted through a bitmap: its text changes at every row of a run and must not flicker.
class LabelView : public ControlView {
  public:
    LabelView(WindowView& parent, Label& label) : ControlView(parent, label), label_(label) {
        create(WC_STATICW, SS_OWNERDRAW | SS_NOPREFIX, 0, label.caption());
    }

    void update(ControlProperty property) override {
        if (property != ControlProperty::Caption) return ControlView::update(property);
        stale_ = true;
        deferUpdate();
    }

    void refresh() override {
        if (!std::exchange(stale_, false)) return;
        SetWindowTextW(handle(), WideText(label_.caption()).c_str());
        InvalidateRect(handle(), nullptr, FALSE);
    }

    void draw(const DRAWITEMSTRUCT& item) override {
        const int width = item.rcItem.right - item.rcItem.left;
        const int height = item.rcItem.bottom - item.rcItem.top;
        const MemoryDc memory(CreateCompatibleDC(item.hDC));
        const Bitmap bitmap(CreateCompatibleBitmap(item.hDC, width, height));
        if (!memory || !bitmap) return;
        const Selected selectedBitmap(memory.get(), bitmap.get());
        const Selected selectedFont(memory.get(), parent_.font());
        RECT area{0, 0, width, height};
        FillRect(memory.get(), &area, GetSysColorBrush(COLOR_BTNFACE));
        SetBkMode(memory.get(), TRANSPARENT);
        SetTextColor(memory.get(), GetSysColor(label_.enabled() ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
        TEXTMETRICW metrics{};
        GetTextMetricsW(memory.get(), &metrics);
        const bool oneLine = height < 2 * metrics.tmHeight;
        const UINT lines = oneLine ? DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS : DT_WORDBREAK;
        const WideText text(label_.caption());
        DrawTextW(memory.get(), text.c_str(), text.length(), &area, DT_LEFT | DT_NOPREFIX | lines);
        BitBlt(item.hDC, item.rcItem.left, item.rcItem.top, width, height, memory.get(), 0, 0, SRCCOPY);
    }

  private:
    Label& label_;
    bool stale_ = false;
};

}  // namespace

std::unique_ptr<ControlView> makeTextView(WindowView& parent, Control& control) {
    if (auto view = viewOfKind<TextView, TextBox>(parent, control)) return view;
    return viewOfKind<LabelView, Label>(parent, control);
}

}  // namespace pxtarvo::windows
