#include "devhost/wine/screen/user_hands.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

constexpr LPARAM pressed = 1;
constexpr auto released = static_cast<LPARAM>(0xC0000001u);

class PostedHands : public UserHands {
  public:
    explicit PostedHands(std::vector<std::string>& troubles) : troubles_(troubles) {}

    void click(HWND control) override {
        RECT area{};
        GetClientRect(control, &area);
        const LPARAM place = MAKELPARAM(area.right / 2, area.bottom / 2);
        PostMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, place);
        PostMessageW(control, WM_LBUTTONUP, 0, place);
    }

    void close(HWND window) override { PostMessageW(window, WM_CLOSE, 0, 0); }

    void type(HWND box, std::string_view text) override {
        SendMessageW(box, EM_SETSEL, 0, -1);
        if (text.empty()) return press(box, {vkDelete}, Held::None);
        for (const char16_t unit : toUtf16(text)) {
            PostMessageW(box, WM_CHAR, unit, pressed);
            release(box, keyOf(unit));
        }
    }

    void press(HWND target, const std::vector<std::int16_t>& keys, Held held) override {
        if (held != Held::None) troubles_.push_back("held keys need a keyboard");
        for (const std::int16_t key : keys) {
            PostMessageW(target, WM_KEYDOWN, static_cast<WPARAM>(key), pressed);
            release(target, key);
        }
    }

    void pressInDialog(HWND dialog, HWND target, std::int16_t key, WORD command) override {
        due_ = key;
        if (command != 0) {
            PostMessageW(dialog, WM_COMMAND, command, 0);
        } else {
            PostMessageW(target, WM_KEYDOWN, static_cast<WPARAM>(key), pressed);
        }
    }

    void dialogGone() override {
        const std::int16_t key = std::exchange(due_, {});
        const HWND focus = GetFocus();
        if (key != 0 && focus) release(focus, key);
    }

  private:
    static void release(HWND target, std::int16_t key) {
        PostMessageW(target, WM_KEYUP, static_cast<WPARAM>(key), released);
    }

    std::vector<std::string>& troubles_;
    std::int16_t due_ = 0;  ///< the key whose release is still to come
};

}  // namespace

std::unique_ptr<UserHands> makePostedHands(std::vector<std::string>& troubles) {
    return std::make_unique<PostedHands>(troubles);
}

}  // namespace pxtarvo::devhost
