#include "devhost/wine/screen/search_window.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/values/conversion.h"
#include "platform/windows/automation/automation_values.h"
#include "platform/windows/automation/com_headers.h"

#include <commctrl.h>

namespace pxtarvo::devhost {

namespace {

using windows::Bstr;

constexpr int margin = 10;
constexpr int boxHeight = 22;
constexpr int listHeight = 260;
constexpr int twipsPerPixel = 15;
constexpr int scrollBarRoom = 24;

struct Row {
    std::string first;
    std::string second;
    std::string searched;
};

OLECHAR* wide(const char16_t* text) {
    return reinterpret_cast<OLECHAR*>(const_cast<char16_t*>(text));
}

class SearchWindow {
  public:
    SearchWindow(const Busqueda& busqueda, std::vector<Row> rows) : rows_(std::move(rows)) {
        const int widths[] = {std::max(busqueda.nAncho1 / twipsPerPixel, 60),
                              std::max(busqueda.nAncho2 / twipsPerPixel, 60)};
        const int inner = widths[0] + widths[1] + scrollBarRoom;
        registerClass();
        owner_ = GetActiveWindow();
        RECT frame{0, 0, inner + 2 * margin, 3 * margin + boxHeight + listHeight};
        AdjustWindowRectEx(&frame, style, FALSE, 0);
        const int width = frame.right - frame.left;
        const int height = frame.bottom - frame.top;
        const Bstr title(busqueda.sTituloVentana);
        window_ = CreateWindowExW(0, wide(searchWindowClass), title.get(), style,
                                  (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                                  (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height, owner_,
                                  nullptr, GetModuleHandleW(nullptr), this);
        box_ = CreateWindowExW(WS_EX_CLIENTEDGE, wide(u"EDIT"), wide(u""),
                               WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, margin, margin, inner, boxHeight,
                               window_, nullptr, GetModuleHandleW(nullptr), nullptr);
        list_ = CreateWindowExW(WS_EX_CLIENTEDGE, wide(u"SysListView32"), wide(u""),
                                WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS,
                                margin, 2 * margin + boxHeight, inner, listHeight, window_, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
        for (const HWND child : {box_, list_}) {
            SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
        }
        SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
        addColumn(0, busqueda.sTitulo1, widths[0]);
        addColumn(1, busqueda.sTitulo2, widths[1]);
        for (std::size_t at = 0; at < rows_.size(); ++at) addRow(static_cast<int>(at));
        select(0);
    }
    SearchWindow(const SearchWindow&) = delete;
    SearchWindow& operator=(const SearchWindow&) = delete;
    ~SearchWindow() {
        // The window below must be there for the system to activate it.
        if (owner_) EnableWindow(owner_, TRUE);
        DestroyWindow(window_);
        if (owner_) SetActiveWindow(owner_);
    }

    std::optional<std::int32_t> run() {
        if (owner_) EnableWindow(owner_, FALSE);
        ShowWindow(window_, SW_SHOW);
        SetForegroundWindow(window_);
        SetFocus(box_);
        MSG message{};
        while (!closed_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
            if (GetAncestor(message.hwnd, GA_ROOT) == window_ && key(message)) continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (message.message == WM_QUIT) PostQuitMessage(static_cast<int>(message.wParam));
        return chosen_;
    }

  private:
    static constexpr DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU;

    static void registerClass() {
        WNDCLASSEXW description{};
        description.cbSize = sizeof(description);
        description.lpfnWndProc = &SearchWindow::procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
        description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
        description.lpszClassName = wide(searchWindowClass);
        RegisterClassExW(&description);  // the second time it is there already
    }

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_NCCREATE) {
            SetWindowLongPtrW(
                window, GWLP_USERDATA,
                reinterpret_cast<LONG_PTR>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams));
        }
        auto* self = reinterpret_cast<SearchWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self && self->message(message, wParam, lParam)) return 0;
        return DefWindowProcW(window, message, wParam, lParam);
    }

    bool message(UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_CLOSE) {
            closed_ = true;
            return true;
        }
        if (message == WM_COMMAND && HIWORD(wParam) == EN_CHANGE) search();
        if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == NM_DBLCLK) choose();
        return false;
    }

    /// True when the key was worked off.
    bool key(const MSG& message) {
        const bool released = message.message == WM_KEYUP;
        if (message.message != WM_KEYDOWN && !released) return false;
        switch (message.wParam) {
            case VK_RETURN:
            case VK_ESCAPE:
                if (!released) {
                    pressed_ = message.wParam;
                } else if (pressed_ == message.wParam) {
                    message.wParam == VK_RETURN ? choose() : void(closed_ = true);
                }
                return true;
            case VK_UP:
            case VK_DOWN:
                if (!released) select(selected() + (message.wParam == VK_UP ? -1 : 1));
                return true;
            default:
                return false;
        }
    }

    void addColumn(int at, const std::string& title, int width) {
        const Bstr text(title);
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.cx = width;
        column.pszText = text.get();
        SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(at), reinterpret_cast<LPARAM>(&column));
    }

    void addRow(int at) {
        const Row& row = rows_[static_cast<std::size_t>(at)];
        const Bstr first(row.first);
        const Bstr second(row.second);
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = at;
        item.pszText = first.get();
        SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        item.iSubItem = 1;
        item.pszText = second.get();
        SendMessageW(list_, LVM_SETITEMTEXTW, static_cast<WPARAM>(at), reinterpret_cast<LPARAM>(&item));
    }

    int selected() const {
        return static_cast<int>(SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    }

    void select(int at) {
        if (rows_.empty()) return;
        at = std::clamp(at, 0, static_cast<int>(rows_.size()) - 1);
        LVITEMW item{};
        item.stateMask = item.state = LVIS_SELECTED | LVIS_FOCUSED;
        SendMessageW(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(at), reinterpret_cast<LPARAM>(&item));
        SendMessageW(list_, LVM_ENSUREVISIBLE, static_cast<WPARAM>(at), FALSE);
    }

    void choose() {
        if (selected() >= 0) chosen_ = selected();
        closed_ = true;
    }

    void search() {
        OLECHAR typed[256];
        const int length = GetWindowTextW(box_, typed, static_cast<int>(std::size(typed)));
        for (std::size_t at = 0; at < rows_.size(); ++at) {
            const Bstr text(rows_[at].searched);
            if (static_cast<int>(SysStringLen(text.get())) < length) continue;
            const int order =
                CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, text.get(), length, typed, length);
            if (order == CSTR_EQUAL) return select(static_cast<int>(at));
        }
    }

    std::vector<Row> rows_;
    HWND owner_ = nullptr;
    HWND window_ = nullptr;
    HWND box_ = nullptr;
    HWND list_ = nullptr;
    WPARAM pressed_ = 0;
    bool closed_ = false;
    std::optional<std::int32_t> chosen_;
};

}  // namespace

std::optional<std::int32_t> showSearchWindow(const Busqueda& busqueda, Recordset& rows) {
    std::vector<Row> shown;
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto text = [&](const Variant& value) { return joinedText(value, spanishLocale()); };
        shown.push_back({text(rows.Fields(1)), text(rows.Fields(2)),
                         text(rows.Fields(std::string_view(busqueda.sCampo)))});
    }
    return SearchWindow(busqueda, std::move(shown)).run();
}

}  // namespace pxtarvo::devhost
