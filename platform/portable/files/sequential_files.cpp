#include "platform/portable/files/sequential_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/values/runtime_error.h"

namespace pxtarvo::portable {

namespace fs = std::filesystem;

namespace {

constexpr mode_t readableByAll = 0666;  // as far as the user's mask lets it be

[[noreturn]] void raiseTransferError() {
    const bool full = errno == ENOSPC || errno == EDQUOT;
    throw RuntimeError(full ? ErrorNumber::DiskFull : ErrorNumber::DeviceInputOutput);
}

/// What the language raises for a file that did not open.
ErrorNumber openingError(int systemError, const fs::path& place, bool forOutput) {
    switch (systemError) {
        case ENOENT: {
            std::error_code unknown;
            const fs::path folder = place.parent_path();
            return !forOutput && (folder.empty() || fs::is_directory(folder, unknown))
                       ? ErrorNumber::FileNotFound
                       : ErrorNumber::PathNotFound;
        }
        case ENOTDIR:
            return ErrorNumber::PathNotFound;
        case EACCES:
        case EPERM:
            return ErrorNumber::PermissionDenied;
        default:
            return ErrorNumber::PathFileAccess;
    }
}

/// A call that a signal interrupted is made again.
template <class Call>
ssize_t uninterrupted(Call call) {
    ssize_t result;
    do result = call();
    while (result < 0 && errno == EINTR);
    if (result < 0) raiseTransferError();
    return result;
}

class DescriptorFile : public SystemFile {
  public:
    DescriptorFile(const std::string& place, bool forOutput)
        : descriptor_(
              ::open(place.c_str(), (forOutput ? O_WRONLY | O_CREAT : O_RDONLY) | O_CLOEXEC, readableByAll)) {
        if (descriptor_ < 0) throw RuntimeError(openingError(errno, place, forOutput));
    }
    ~DescriptorFile() override { ::close(descriptor_); }
    DescriptorFile(const DescriptorFile&) = delete;
    DescriptorFile& operator=(const DescriptorFile&) = delete;

    std::size_t read(char* to, std::size_t count) override {
        return static_cast<std::size_t>(uninterrupted([&] { return ::read(descriptor_, to, count); }));
    }

    void write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const ssize_t now =
                uninterrupted([&] { return ::write(descriptor_, bytes.data(), bytes.size()); });
            bytes.remove_prefix(static_cast<std::size_t>(now));
        }
    }

    void truncate() override {
        if (::ftruncate(descriptor_, 0) < 0 && errno != EINVAL) raiseTransferError();  // EINVAL: a device
    }

    bool same(const SystemFile& other) const override {
        const Identity mine = identity();
        return mine == static_cast<const DescriptorFile&>(other).identity();
    }

  private:
    using Identity = std::pair<dev_t, ino_t>;

    Identity identity() const {
        struct stat status {};
        if (::fstat(descriptor_, &status) < 0) throw RuntimeError(ErrorNumber::PathFileAccess);
        return {status.st_dev, status.st_ino};
    }

    int descriptor_;
};

/// Opened as if it were to be written.
class DiscardedFile : public DescriptorFile {
  public:
    DiscardedFile(const std::string& place, bool existed) : DescriptorFile(place, true) {
        if (!existed) ::unlink(place.c_str());
    }
    void write(std::string_view) override {}
    void truncate() override {}
};

}  // namespace

SequentialFiles::SequentialFiles(DrivePaths paths, Output output)
    : paths_(std::move(paths)), output_(output) {}

std::unique_ptr<SystemFile> SequentialFiles::openFile(std::string_view path, bool forOutput) {
    const std::string place = paths_.resolve(path);
    std::error_code unknown;
    if (place.empty() || fs::is_directory(place, unknown)) throw RuntimeError(ErrorNumber::PathFileAccess);
    if (forOutput && output_ == Output::Discarded) {
        return std::make_unique<DiscardedFile>(place, fs::exists(fs::symlink_status(place, unknown)));
    }
    return std::make_unique<DescriptorFile>(place, forOutput);
}

}  // namespace pxtarvo::portable
