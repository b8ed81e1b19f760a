#include "devhost/changes/changes_file.h"

#include <filesystem>
#include <future>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "devhost/changes/checksum.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::string_view formatLine = "PXTarvo changes 1\n";

}  // namespace

ChangesFile::ChangesFile(std::string path) : path_(std::move(path)) {
    std::error_code missing;
    if (const auto bytes = std::filesystem::file_size(path_, missing); !missing && bytes > 0) {
        throw std::runtime_error("'" + path_ +
                                 "' is there already, and may hold what an earlier run changed");
    }
    file_.open(path_, std::ios::binary | std::ios::trunc);
    if (!file_) throw std::runtime_error("'" + path_ + "' cannot be written");
}

void ChangesFile::write(std::string_view changes) {
    auto checksum = std::async(std::launch::async, [changes] { return sha256(changes); });
    // Whatever ends the writing early leaves a file that is not taken for a whole one.
    file_ << formatLine << sha256({}) << '\n' << changes;
    file_.seekp(static_cast<std::streamoff>(formatLine.size()));
    file_ << checksum.get();
    file_.close();
    if (!file_)
        throw std::runtime_error("'" + path_ + "' could not be written whole; the changes are not kept");
}

std::string readChangesFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file || std::filesystem::is_directory(path))
        throw std::runtime_error("'" + path + "' cannot be read");
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::string_view rest = bytes;
    if (!rest.starts_with(formatLine)) {
        throw std::runtime_error("'" + path + "' holds no changes that --changes has kept");
    }
    rest.remove_prefix(formatLine.size());
    const std::size_t lineEnd = rest.find('\n');
    if (lineEnd == rest.npos || sha256(rest.substr(lineEnd + 1)) != rest.substr(0, lineEnd)) {
        throw std::runtime_error("'" + path + "' is damaged or not whole");
    }
    return std::string(rest.substr(lineEnd + 1));
}

}  // namespace pxtarvo::devhost
