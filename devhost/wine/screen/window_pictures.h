#pragma once

#include <string>
#include <vector>

#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::devhost {

/// Keeps pictures of windows as they stand on the display.
class WindowPictures {
  public:
    static constexpr DWORD paintingTime = 300;  ///< ms until a window that appeared is painted

    /// Without a folder none are kept. What fails is added to `troubles`, which must outlive the pictures.
    WindowPictures(std::string folder, std::vector<std::string>& troubles)
        : folder_(std::move(folder)), troubles_(troubles) {}

    bool kept() const noexcept { return !folder_.empty(); }
    /// In a file under the name, numbered in the order of the pictures.
    void take(HWND window, const std::string& name);

  private:
    std::string folder_;
    std::vector<std::string>& troubles_;
    int count_ = 0;
};

}  // namespace pxtarvo::devhost
