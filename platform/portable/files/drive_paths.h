#pragma once

// Where the files named with a drive letter are: C: is a folder of this machine, looked up as Windows looks
// names up, without regard to case.

#include <filesystem>
#include <string>
#include <string_view>

namespace pxtarvo::portable {

/// A file elsewhere that stands for the one of a fixed path.
struct StandIn {
    std::string path;   ///< whatever the case of its letters; empty for no such file
    std::string place;  ///< any path that DrivePaths resolves
};

class DrivePaths {
  public:
    /// `driveC` is the folder that stands for drive C:, UTF-8; empty when nothing does.
    explicit DrivePaths(std::string_view driveC = {}, StandIn standIn = {});

    /// The system's own path of `path` (UTF-8). Behind a drive letter the components, separated by either
    /// slash, are looked up one by one ignoring case, accented letters included; an exact name goes first,
    /// then the first one in byte order; what does not exist is appended as it stands. ".." does not leave
    /// the drive. A drive that nothing stands for gives a path that cannot exist. Any other path comes back
    /// unchanged. Raises nothing.
    std::string resolve(std::string_view path) const;

  private:
    std::filesystem::path driveC_;
    StandIn standIn_;  ///< its place already resolved
};

}  // namespace pxtarvo::portable
