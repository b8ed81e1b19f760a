#include "platform/portable/files/drive_paths.h"

#include <glib.h>

#include <memory>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace fs = std::filesystem;

namespace {

// Nothing can be below a device, and trying to fails as a missing folder does.
constexpr std::string_view impossibleFolder = "/dev/null/";

bool hasDriveLetter(std::string_view path) {
    return path.size() >= 2 && path[1] == ':' && g_ascii_isalpha(path[0]);
}

/// For comparing names; a name that is not UTF-8 compares by its bytes.
std::string foldedCase(std::string_view name) {
    const auto length = static_cast<gssize>(name.size());
    if (!g_utf8_validate(name.data(), length, nullptr)) return std::string(name);
    const std::unique_ptr<char, decltype(&g_free)> folded(g_utf8_casefold(name.data(), length), &g_free);
    return folded.get();
}

/// The components of what follows the drive letter, "." and ".." worked off.
std::vector<std::string_view> components(std::string_view path) {
    std::vector<std::string_view> result;
    while (!path.empty()) {
        const std::size_t end = path.find_first_of("\\/");
        const std::string_view component = path.substr(0, end);
        path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
        if (component == "..") {
            if (!result.empty()) result.pop_back();
        } else if (!component.empty() && component != ".") {
            result.push_back(component);
        }
    }
    return result;
}

/// The name in `folder` that `component` means.
std::optional<fs::path> entryIgnoringCase(const fs::path& folder, std::string_view component) {
    std::error_code failed;
    if (fs::exists(fs::symlink_status(folder / component, failed))) return folder / component;

    const std::string wanted = foldedCase(component);
    std::optional<fs::path> found;
    fs::directory_iterator entry(folder, failed);
    for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
        const fs::path& candidate = entry->path();
        if (foldedCase(candidate.filename().native()) != wanted) continue;
        if (!found || candidate.native() < found->native()) found = candidate;
    }
    return found;
}

}  // namespace

DrivePaths::DrivePaths(std::string_view driveC, StandIn standIn) : driveC_(driveC) {
    standIn.place = resolve(standIn.place);
    standIn_ = std::move(standIn);
}

std::string DrivePaths::resolve(std::string_view path) const {
    if (!standIn_.path.empty() && equalIgnoringAsciiCase(path, standIn_.path)) return standIn_.place;
    if (!hasDriveLetter(path)) return std::string(path);
    if (driveC_.empty() || g_ascii_toupper(path[0]) != 'C') return std::string(impossibleFolder).append(path);

    fs::path resolved = driveC_;
    bool exists = true;
    for (const std::string_view component : components(path.substr(2))) {
        std::optional<fs::path> entry;
        if (exists) entry = entryIgnoringCase(resolved, component);
        exists = entry.has_value();
        resolved = exists ? *std::move(entry) : resolved / component;
    }
    return resolved.string();
}

}  // namespace pxtarvo::portable
