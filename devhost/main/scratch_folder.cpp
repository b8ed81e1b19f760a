#include "devhost/main/scratch_folder.h"

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace pxtarvo::devhost {

ScratchFolder::ScratchFolder()
    : path_((std::filesystem::temp_directory_path() / "pxtarvo-host-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "no temporary folder");
    }
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ScratchFolder::file(std::string_view name) const {
    return (std::filesystem::path(path_) / name).string();
}

}  // namespace pxtarvo::devhost
