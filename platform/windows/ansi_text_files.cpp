#include "platform/windows/ansi_text_files.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/runtime_error.h"
#include "platform/windows/wide_text.h"

namespace pxtarvo::windows {

namespace {

constexpr int lastFileNumber = 511;
constexpr std::size_t bufferSize = 32768;
constexpr char carriageReturn = '\r';
constexpr char lineFeed = '\n';

struct CloseFileHandle {
    void operator()(HANDLE file) const noexcept { CloseHandle(file); }
};
using FileHandle = std::unique_ptr<void, CloseFileHandle>;

[[noreturn]] void raise(std::int32_t number) {
    throw RuntimeError(number, std::string(errorDescription(number)));
}

[[noreturn]] void raiseTransferError(DWORD systemError) {
    if (systemError == ERROR_DISK_FULL || systemError == ERROR_HANDLE_DISK_FULL) raise(diskFullError);
    throw RuntimeError(deviceInputOutputError, "Error de E/S de dispositivo");
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

FileHandle openFile(std::string_view path, bool forOutput) {
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

}  // namespace

class AnsiTextFiles::File {
  public:
    /// Does not change the file yet.
    File(std::string_view path, bool forOutput)
        : file_(openFile(path, forOutput)), identity_(identityOf(file_)), forOutput_(forOutput) {}
    virtual ~File() = default;

    bool excludes(const File& other) const noexcept {
        return (forOutput_ || other.forOutput_) && identity_ == other.identity_;
    }
    virtual void finish() {}

  protected:
    HANDLE handle() const noexcept { return file_.get(); }

  private:
    FileHandle file_;
    FileIdentity identity_;
    bool forOutput_;
};

class AnsiTextFiles::InputFile : public File {
  public:
    explicit InputFile(std::string_view path) : File(path, false) {}

    bool atEnd() { return next_ == end_ && !fill(); }

    std::string line() {
        if (atEnd()) throw RuntimeError(ErrorNumber::InputPastEnd);
        std::string bytes;
        while (!atEnd()) {
            const char* const from = buffer_.data() + next_;
            const char* const to = buffer_.data() + end_;
            const char* const stop = std::find(from, to, carriageReturn);
            bytes.append(from, stop);
            next_ += static_cast<std::size_t>(stop - from);
            if (stop == to) continue;
            ++next_;
            if (!atEnd() && buffer_[next_] == lineFeed) ++next_;
            break;
        }
        return fromAnsi(bytes);
    }

  private:
    /// False at the end of the file.
    bool fill() {
        DWORD read = 0;
        if (!ReadFile(handle(), buffer_.data(), static_cast<DWORD>(buffer_.size()), &read, nullptr)) {
            raiseTransferError(GetLastError());
        }
        next_ = 0;
        end_ = read;
        return read > 0;
    }

    std::array<char, bufferSize> buffer_;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
};

class AnsiTextFiles::OutputFile : public File {
  public:
    explicit OutputFile(std::string_view path) : File(path, true) {}
    ~OutputFile() override {
        try {
            finish();
        } catch (const RuntimeError&) {
            // Nobody is left to be told.
        }
    }

    void truncate() {
        if (!SetEndOfFile(handle())) raiseTransferError(GetLastError());
    }

    void print(std::string_view text) {
        pending_ += toAnsi(text);
        pending_ += carriageReturn;
        pending_ += lineFeed;
        if (pending_.size() >= bufferSize) finish();
    }

    void finish() override {
        const std::string bytes = std::exchange(pending_, {});
        for (std::size_t written = 0; written < bytes.size();) {
            DWORD now = 0;
            const auto rest = static_cast<DWORD>(bytes.size() - written);
            if (!WriteFile(handle(), bytes.data() + written, rest, &now, nullptr)) {
                raiseTransferError(GetLastError());
            }
            if (now == 0) raise(diskFullError);
            written += now;
        }
    }

  private:
    std::string pending_;
};

AnsiTextFiles::AnsiTextFiles() = default;
AnsiTextFiles::~AnsiTextFiles() = default;

void AnsiTextFiles::requireFree(int number) const {
    if (number < 1 || number > lastFileNumber) throw RuntimeError(ErrorNumber::BadFileNumber);
    if (files_.contains(number)) throw RuntimeError(ErrorNumber::FileAlreadyOpen);
}

void AnsiTextFiles::requireUnshared(const File& opened) const {
    for (const auto& [number, file] : files_) {
        if (file->excludes(opened)) throw RuntimeError(ErrorNumber::FileAlreadyOpen);
    }
}

template <class Wanted>
Wanted& AnsiTextFiles::open(int number) const {
    const auto found = files_.find(number);
    if (found == files_.end()) throw RuntimeError(ErrorNumber::BadFileNumber);
    auto* file = dynamic_cast<Wanted*>(found->second.get());
    if (!file) throw RuntimeError(ErrorNumber::BadFileMode);
    return *file;
}

void AnsiTextFiles::openForInput(int number, std::string_view path) {
    requireFree(number);
    auto file = std::make_unique<InputFile>(path);
    requireUnshared(*file);
    files_.emplace(number, std::move(file));
}

void AnsiTextFiles::openForOutput(int number, std::string_view path) {
    requireFree(number);
    auto file = std::make_unique<OutputFile>(path);
    requireUnshared(*file);
    file->truncate();
    files_.emplace(number, std::move(file));
}

bool AnsiTextFiles::atEnd(int number) {
    return open<InputFile>(number).atEnd();
}

std::string AnsiTextFiles::lineInput(int number) {
    return open<InputFile>(number).line();
}

void AnsiTextFiles::print(int number, std::string_view text) {
    open<OutputFile>(number).print(text);
}

void AnsiTextFiles::close(int number) {
    const auto node = files_.extract(number);
    if (!node.empty()) node.mapped()->finish();
}

}  // namespace pxtarvo::windows
