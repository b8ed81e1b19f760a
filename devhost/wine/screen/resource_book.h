#pragma once

// What the plug-in's module takes from the system: windows, fonts, brushes and so on, noted where the module
// calls for them, as Wine itself does not count them.

#include <map>
#include <set>
#include <string_view>
#include <vector>

#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::devhost {

class ResourceBook {
  public:
    /// The one book of the process; begins to count at its first use. `plugIn` must stay loaded for good.
    static const ResourceBook& of(HMODULE plugIn);

    /// How many the module has taken so far, by the function that gave them.
    const std::map<std::string_view, int>& taken() const noexcept { return taken_; }
    /// The functions that gave what is still there, one for each resource.
    std::vector<std::string_view> left() const;

  private:
    struct Calls;
    explicit ResourceBook(HMODULE plugIn);

    std::map<void*, std::string_view> names_;  ///< of the functions that give resources
    std::map<std::string_view, int> taken_;
    std::multimap<const void*, std::string_view> there_;
    std::set<HWND> windows_;  ///< given up with their parents too, whoever destroys those
    HMODULE plugIn_;
};

}  // namespace pxtarvo::devhost
