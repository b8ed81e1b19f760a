// The common open-file dialog, in the record's form before it grew.

#include <algorithm>

#include "platform/windows/screen/windows_desktop.h"
#include "platform/windows/system/module_theme.h"
#include "platform/windows/system/wide_text.h"

#include <commdlg.h>

namespace pxtarvo::windows {

namespace {

using Record = OPENFILENAME_NT4A;
static_assert(sizeof(Record) == (sizeof(void*) == 4 ? 76 : 136));

/// The dialog reads a filter until it finds two zeros in its own order of pairs; these follow any filter.
constexpr std::size_t zerosAfterFilter = 64;

/// A buffer of `size` bytes that begins with `content`, cut so that it ends with a zero.
std::string buffer(std::string_view content, std::uint32_t size) {
    std::string bytes = toAnsi(content);
    bytes.resize(std::min<std::size_t>(bytes.size(), size > 0 ? size - 1 : 0));
    bytes.resize(std::max<std::size_t>(size, 1), '\0');
    return bytes;
}

/// All of a buffer but its last byte: what the dialog wrote, its zero, and what stood there before.
std::string content(std::string_view buffer) {
    return fromAnsi(buffer.substr(0, buffer.size() - 1));
}

}  // namespace

bool WindowsDesktop::getOpenFileName(OpenFileName& record) {
    refresh();
    const std::string filter = toAnsi(record.lpstrFilter) + std::string(zerosAfterFilter, '\0');
    const std::string folder = toAnsi(record.lpstrInitialDir);
    const std::string title = toAnsi(record.lpstrTitle);
    std::string file = buffer(record.lpstrFile, record.nMaxFile);
    std::string fileTitle = buffer(record.lpstrFileTitle, record.nMaxFileTitle);

    Record dialog{};
    dialog.lStructSize = sizeof(dialog);
    dialog.hInstance = moduleHandle();
    dialog.lpstrFilter = filter.c_str();
    dialog.lpstrFile = file.data();
    dialog.nMaxFile = record.nMaxFile;
    dialog.lpstrFileTitle = fileTitle.data();
    dialog.nMaxFileTitle = record.nMaxFileTitle;
    dialog.lpstrInitialDir = folder.c_str();
    dialog.lpstrTitle = title.c_str();

    const ThemeScope theme;
    if (!GetOpenFileNameA(reinterpret_cast<OPENFILENAMEA*>(&dialog))) return false;
    record.lpstrFile = content(file);
    record.lpstrFileTitle = content(fileTitle);
    return true;
}

}  // namespace pxtarvo::windows
