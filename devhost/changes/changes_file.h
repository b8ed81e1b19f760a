#pragma once

// The file in which the changes of a run are kept: a line that names the format, a line with the SHA-256 of
// the rest in hexadecimal digits, and the changeset.

#include <fstream>
#include <string>
#include <string_view>

namespace pxtarvo::devhost {

/// Made before the run, so that a file that cannot be written is known before anything is changed.
class ChangesFile {
  public:
    /// Creates the file; raises std::runtime_error with its name where that fails, and where it is there
    /// already and not empty: it may be the only way back from a run.
    explicit ChangesFile(std::string path);
    /// Raises std::runtime_error where not all of it could be written.
    void write(std::string_view changes);

  private:
    std::string path_;
    std::ofstream file_;
};

/// The changes kept in a file. Raises std::runtime_error, with the file's name, for one that is missing, is
/// none of these or is not whole.
std::string readChangesFile(const std::string& path);

}  // namespace pxtarvo::devhost
