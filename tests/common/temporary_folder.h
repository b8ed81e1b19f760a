#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/values/runtime_error.h"

namespace pxtarvo::tests {

/// In memory where there is such a place: runs that write as they go wait for a disk at every row.
inline std::filesystem::path quickPlace() {
    const std::filesystem::path memory = "/dev/shm";
    const bool there = !getenv("TMPDIR") && std::filesystem::is_directory(memory);
    return there ? memory : std::filesystem::temp_directory_path();
}

/// A folder of its own for a test, gone afterwards.
class TemporaryFolder {
  public:
    explicit TemporaryFolder(const std::filesystem::path& place = quickPlace()) {
        std::string pattern = (place / "pxtarvo-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
        path_ = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string file(std::string_view name) const { return (path_ / name).string(); }
    /// Writes a file, its folders included, and returns its path.
    std::string write(std::string_view name, std::string_view bytes) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << bytes;
        return file(name);
    }

  private:
    std::filesystem::path path_;
};

inline std::string bytesOf(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return std::move(bytes).str();
}

inline std::string sample(std::string_view name) {
    return std::string(PXTARVO_SAMPLES_DIR "/").append(name);
}

/// The number of the error that `action` raises, 0 for none.
template <class Action>
std::int32_t errorOf(Action&& action) {
    try {
        action();
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return 0;
}

}  // namespace pxtarvo::tests
