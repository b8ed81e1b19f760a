#pragma once

#include "platform/numbered_files.h"
#include "platform/windows/system/wide_text.h"

namespace pxtarvo::windows {

/// The language's sequential text files, in the system's ANSI code page.
class AnsiTextFiles : public NumberedFiles {
    std::unique_ptr<SystemFile> openFile(std::string_view path, bool forOutput) override;
    std::string encoded(std::string_view text) const override { return toAnsi(text); }
    std::string decoded(std::string_view bytes) const override { return fromAnsi(bytes); }
};

}  // namespace pxtarvo::windows
