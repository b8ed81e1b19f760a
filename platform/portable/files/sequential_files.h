#pragma once

// The language's sequential text files on this machine: Windows-1252, paths with a drive letter looked up
// where the drive is.

#include "platform/numbered_files.h"
#include "platform/portable/files/drive_paths.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

class SequentialFiles : public NumberedFiles {
  public:
    /// What becomes of the files that are written.
    enum class Output { Kept, Discarded /**< each opens or fails as it would, and stays as it was */ };

    explicit SequentialFiles(DrivePaths paths = DrivePaths(), Output output = Output::Kept);

  private:
    std::unique_ptr<SystemFile> openFile(std::string_view path, bool forOutput) override;
    std::string encoded(std::string_view text) const override { return toWindows1252(text); }
    std::string decoded(std::string_view bytes) const override { return fromWindows1252(bytes); }

    DrivePaths paths_;
    Output output_;
};

}  // namespace pxtarvo::portable
