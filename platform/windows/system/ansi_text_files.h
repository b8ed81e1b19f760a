#pragma once

#include "platform/numbered_files.h"

namespace pxtarvo::windows {

/// The language's sequential text files, in the system's ANSI code page.
class AnsiTextFiles : public NumberedFiles {
    std::unique_ptr<SystemFile> openFile(std::string_view path, bool forOutput) override;
    std::string encoded(std::string_view text) const override;
    std::string decoded(std::string_view bytes) const override;
};

}  // namespace pxtarvo::windows
