#include "platform/windows/system/ansi_text_files.h"

#include "platform/values/runtime_error.h"

namespace pxtarvo::windows {

namespace {

struct CloseFileHandle {
    void operator()(HANDLE file) const noexcept { CloseHandle(file); }
};
using FileHandle = std::unique_ptr<void, CloseFileHandle>;

[[noreturn]] void raiseTransferError(DWORD systemError) {
    const bool full = systemError == ERROR_DISK_FULL || systemError == ERROR_HANDLE_DISK_FULL;
    throw RuntimeError(full ? ErrorNumber::DiskFull : ErrorNumber::DeviceInputOutput);
}

/// What the language raises for a file that did not open.
ErrorNumber openingError(DWORD systemError) {
    switch (systemError) {
        case ERROR_FILE_NOT_FOUND:
            return ErrorNumber::FileNotFound;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
            return ErrorNumber::PathNotFound;
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_WRITE_PROTECT:
            return ErrorNumber::PermissionDenied;
        default:
            return ErrorNumber::PathFileAccess;
    }
}

bool isFolder(const WideText& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

FileHandle openHandle(std::string_view path, bool forOutput) {
    const WideText wide(path);
    if (path.empty() || isFolder(wide)) throw RuntimeError(ErrorNumber::PathFileAccess);
    const HANDLE file = CreateFileW(wide.c_str(), forOutput ? GENERIC_WRITE : GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    forOutput ? OPEN_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) throw RuntimeError(openingError(GetLastError()));
    return FileHandle(file);
}

/// What tells one file from another, whatever paths lead to it.
struct FileIdentity {
    DWORD volume = 0;
    DWORD high = 0;
    DWORD low = 0;
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

FileIdentity identityOf(const FileHandle& file) {
    BY_HANDLE_FILE_INFORMATION information;
    if (!GetFileInformationByHandle(file.get(), &information))
        throw RuntimeError(ErrorNumber::PathFileAccess);
    return {information.dwVolumeSerialNumber, information.nFileIndexHigh, information.nFileIndexLow};
}

class HandleFile : public SystemFile {
  public:
    HandleFile(std::string_view path, bool forOutput)
        : file_(openHandle(path, forOutput)), identity_(identityOf(file_)) {}

    std::size_t read(char* to, std::size_t count) override {
        DWORD read = 0;
        if (!ReadFile(file_.get(), to, static_cast<DWORD>(count), &read, nullptr))
            raiseTransferError(GetLastError());
        return read;
    }

    void write(std::string_view bytes) override {
        while (!bytes.empty()) {
            DWORD now = 0;
            if (!WriteFile(file_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &now, nullptr))
                raiseTransferError(GetLastError());
            if (now == 0) throw RuntimeError(ErrorNumber::DiskFull);
            bytes.remove_prefix(now);
        }
    }

    void truncate() override {
        if (!SetEndOfFile(file_.get())) raiseTransferError(GetLastError());
    }

    bool same(const SystemFile& other) const override {
        return identity_ == static_cast<const HandleFile&>(other).identity_;
    }

  private:
    FileHandle file_;
    FileIdentity identity_;
};

}  // namespace

std::unique_ptr<SystemFile> AnsiTextFiles::openFile(std::string_view path, bool forOutput) {
    return std::make_unique<HandleFile>(path, forOutput);
}

}  // namespace pxtarvo::windows
