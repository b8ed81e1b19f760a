#pragma once

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace pxtarvo::devhost {

/// A folder of its own in the system's place for temporary files, gone with its contents afterwards.
class ScratchFolder {
  public:
    /// Raises std::system_error where none can be made.
    ScratchFolder() {
        if (mkdtemp(path_.data()) != nullptr) return;
        throw std::system_error(errno, std::generic_category(), "no temporary folder");
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string file(std::string_view name) const { return (std::filesystem::path(path_) / name).string(); }

  private:
    std::string path_ = (std::filesystem::temp_directory_path() / "pxtarvo-host-XXXXXX").string();
};

}  // namespace pxtarvo::devhost
