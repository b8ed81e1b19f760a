#include "devhost/wine/screen/window_pictures.h"

#include <sys/wait.h>

#include <cstdio>

#include "devhost/wine/screen/machine_program.h"

namespace pxtarvo::devhost {

void WindowPictures::take(HWND window, const std::string& name) {
    constexpr DWORD painted = 60;  // ms until what was painted is on the display
    if (!kept()) return;
    // What is due is painted, and a wait lets Wine hand it to the display.
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    MsgWaitForMultipleObjects(0, nullptr, FALSE, painted, 0);
    RECT rect{};
    GetWindowRect(window, &rect);
    char place[64];
    std::snprintf(place, sizeof(place), "%dx%d+%d+%d", int(rect.right - rect.left),
                  int(rect.bottom - rect.top), int(rect.left), int(rect.top));
    char number[8];
    std::snprintf(number, sizeof(number), "%02d-", ++count_ % 1000);
    const pid_t child = startProgram(
        {"import", "-window", "root", "-crop", place, "+repage", folder_ + "/" + number + name + ".png"});
    int status = 0;
    if (child == 0 || waitpid(child, &status, 0) < 0 || status != 0) {
        troubles_.push_back("no picture could be taken of " + name);
    }
}

}  // namespace pxtarvo::devhost
