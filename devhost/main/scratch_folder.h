#pragma once

#include <string>
#include <string_view>

namespace pxtarvo::devhost {

/// A folder of its own in the system's place for temporary files, gone with its contents afterwards.
class ScratchFolder {
  public:
    /// Raises std::system_error where none can be made.
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string file(std::string_view name) const;

  private:
    std::string path_;
};

}  // namespace pxtarvo::devhost
