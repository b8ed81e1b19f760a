#include <sys/wait.h>

#include "devhost/wine/screen/machine_program.h"
#include "devhost/wine/screen/user_hands.h"

namespace pxtarvo::devhost {

namespace {

constexpr DWORD arrivalTime = 120;    // ms that real input takes to arrive
constexpr DWORD arrivalLimit = 5000;  // ms that it may take
constexpr DWORD arrivalPause = 10;    // ms between two looks
constexpr DWORD keyboardTime = 250;   // ms until a dialog has the keyboard
constexpr DWORD keyLost = 3000;       // ms after which a dialog that is still there has not got its key

/// Wine's own property that names a window on the display.
constexpr const char* windowOnTheDisplay = "__wine_x11_whole_window";

class KeyboardHands : public UserHands {
  public:
    explicit KeyboardHands(std::vector<std::string>& troubles) : troubles_(troubles) {}

    void click(HWND control) override {
        RECT rect{};
        GetWindowRect(control, &rect);
        clickAt((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
    }

    /// Where a window without the desktop's own frame has it.
    void close(HWND window) override {
        RECT rect{};
        GetWindowRect(window, &rect);
        clickAt(rect.right - GetSystemMetrics(SM_CXDLGFRAME) - GetSystemMetrics(SM_CXSIZE) / 2,
                rect.top + GetSystemMetrics(SM_CYDLGFRAME) + GetSystemMetrics(SM_CYSIZE) / 2);
    }

    void type(HWND, std::string_view text) override {
        start(
            {"key", "Home", "key", "shift+End", "key", "Delete", "type", "--delay", "20", std::string(text)});
    }

    void press(HWND, const std::vector<std::int16_t>& keys, Held held) override {
        std::vector<std::string> names = {"key"};
        for (const std::int16_t key : keys) names.push_back(keyName(key));
        if (held != Held::None) names[1].insert(0, held == Held::Shift ? "shift+" : "alt+");
        start(std::move(names));
    }

    void pressInDialog(HWND dialog, HWND, std::int16_t key, WORD) override {
        press(dialog, {key}, Held::None);
        key_ = key;
        pressedAt_ = GetTickCount();
    }

    /// Where the window below was hidden just before, the display can leave its focus on the desktop, though
    /// Wine believes it here: it is put here, and the key is pressed once more.
    void dialogStays(HWND dialog) override {
        const DWORD now = GetTickCount();
        if (key_ == 0 || now - pressedAt_ <= keyLost || busy()) return;
        pressedAt_ = now;
        const auto shown = reinterpret_cast<std::uintptr_t>(GetPropA(dialog, windowOnTheDisplay));
        start({"windowfocus", std::to_string(shown), "key", keyName(key_)});
    }

    void dialogGone() override { key_ = 0; }
    DWORD dialogRest() const override { return keyboardTime; }

    bool busy() override {
        if (child_ != 0) {
            int status = 0;
            if (waitpid(child_, &status, WNOHANG) == 0) return true;
            child_ = 0;
            if (status != 0) troubles_.push_back("xdotool failed");
            arrivesAt_ = GetTickCount() + arrivalTime;
        }
        return static_cast<LONG>(arrivesAt_ - GetTickCount()) > 0;
    }

    void awaitArrival(Deed deed) override {
        const bool key = deed == Deed::Press;
        if (!key && deed != Deed::Click && deed != Deed::Close) return;
        const auto arrived = [&] {
            MSG release;
            if (busy()) return false;
            if (key) return PeekMessageW(&release, nullptr, WM_KEYUP, WM_KEYUP, PM_NOREMOVE) != FALSE;
            return (HIWORD(GetQueueStatus(QS_MOUSEBUTTON)) & QS_MOUSEBUTTON) != 0;
        };
        const DWORD begun = GetTickCount();
        while (!arrived()) {
            if (GetTickCount() - begun > arrivalLimit)
                return troubles_.push_back("what the hands did has not arrived");
            Sleep(arrivalPause);
        }
    }

  private:
    void clickAt(LONG x, LONG y) { start({"mousemove", std::to_string(x), std::to_string(y), "click", "1"}); }

    void start(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "xdotool");
        child_ = startProgram(std::move(arguments));
        if (child_ == 0) troubles_.push_back("xdotool cannot be started");
    }

    std::vector<std::string>& troubles_;
    pid_t child_ = 0;
    DWORD arrivesAt_ = 0;
    std::int16_t key_ = 0;  ///< the one that is to close the dialog
    DWORD pressedAt_ = 0;
};

}  // namespace

std::unique_ptr<UserHands> makeKeyboardHands(std::vector<std::string>& troubles) {
    return std::make_unique<KeyboardHands>(troubles);
}

}  // namespace pxtarvo::devhost
