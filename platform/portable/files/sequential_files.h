#pragma once

// The language's sequential text files on this machine: Windows-1252, paths with a drive letter looked up
// where the drive is.

#include "platform/numbered_files.h"
#include "platform/portable/files/drive_paths.h"

namespace pxtarvo::portable {

class SequentialFiles : public NumberedFiles {
  public:
    explicit SequentialFiles(DrivePaths paths = DrivePaths());

  private:
    std::unique_ptr<SystemFile> openFile(std::string_view path, bool forOutput) override;
    std::string encoded(std::string_view text) const override;
    std::string decoded(std::string_view bytes) const override;

    DrivePaths paths_;
};

}  // namespace pxtarvo::portable
