#include "platform/portable/sequential_files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/runtime_error.h"
#include "platform/text.h"

namespace pxtarvo::portable {

namespace fs = std::filesystem;

namespace {

constexpr int lastFileNumber = 511;
constexpr char carriageReturn = '\r';
constexpr char lineFeed = '\n';

struct CloseStream {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, CloseStream>;

[[noreturn]] void raiseTransferError(int systemError) {
    if (systemError == ENOSPC || systemError == EDQUOT) throw RuntimeError(diskFullError, "Disco lleno");
    throw RuntimeError(deviceInputOutputError, "Error de E/S de dispositivo");
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

Stream openStream(const std::string& place, bool forOutput) {
    std::error_code unknown;
    if (place.empty() || fs::is_directory(place, unknown)) throw RuntimeError(ErrorNumber::PathFileAccess);
    Stream stream(std::fopen(place.c_str(), forOutput ? "wbe" : "rbe"));
    if (!stream) throw RuntimeError(openingError(errno, place, forOutput));
    return stream;
}

}  // namespace

class SequentialFiles::File {
  public:
    File(std::string place, bool forOutput)
        : place_(std::move(place)), stream_(openStream(place_, forOutput)), forOutput_(forOutput) {}
    virtual ~File() = default;

    bool forOutput() const noexcept { return forOutput_; }
    bool isAt(const std::string& place) const {
        std::error_code unknown;
        return place_ == place || fs::equivalent(place_, place, unknown);
    }
    void close() {
        if (std::fclose(stream_.release()) != 0) raiseTransferError(errno);
    }

  protected:
    std::FILE* stream() const noexcept { return stream_.get(); }

  private:
    std::string place_;
    Stream stream_;
    bool forOutput_;
};

class SequentialFiles::InputFile : public File {
  public:
    explicit InputFile(std::string place) : File(std::move(place), false) {}

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
        return fromWindows1252(bytes);
    }

  private:
    /// False at the end of the file.
    bool fill() {
        next_ = 0;
        end_ = std::fread(buffer_.data(), 1, buffer_.size(), stream());
        if (end_ == 0 && std::ferror(stream())) raiseTransferError(errno);
        return end_ > 0;
    }

    std::array<char, 32768> buffer_;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
};

class SequentialFiles::OutputFile : public File {
  public:
    explicit OutputFile(std::string place) : File(std::move(place), true) {}

    void print(std::string_view text) {
        const std::string bytes = toWindows1252(text) + carriageReturn + lineFeed;
        if (std::fwrite(bytes.data(), 1, bytes.size(), stream()) != bytes.size()) raiseTransferError(errno);
    }
};

SequentialFiles::SequentialFiles(DrivePaths paths) : paths_(std::move(paths)) {}

SequentialFiles::~SequentialFiles() = default;

/// The system's path of a file about to be opened, after the checks of its number and of what is open
/// already.
std::string SequentialFiles::placeFor(int number, std::string_view path, bool forOutput) const {
    if (number < 1 || number > lastFileNumber) throw RuntimeError(ErrorNumber::BadFileNumber);
    if (files_.contains(number)) throw RuntimeError(ErrorNumber::FileAlreadyOpen);
    std::string place = paths_.resolve(path);
    for (const auto& [other, file] : files_) {
        if ((forOutput || file->forOutput()) && file->isAt(place))
            throw RuntimeError(ErrorNumber::FileAlreadyOpen);
    }
    return place;
}

template <class Wanted>
Wanted& SequentialFiles::open(int number) const {
    const auto found = files_.find(number);
    if (found == files_.end()) throw RuntimeError(ErrorNumber::BadFileNumber);
    auto* file = dynamic_cast<Wanted*>(found->second.get());
    if (file == nullptr) throw RuntimeError(ErrorNumber::BadFileMode);
    return *file;
}

void SequentialFiles::openForInput(int number, std::string_view path) {
    files_.emplace(number, std::make_unique<InputFile>(placeFor(number, path, false)));
}

void SequentialFiles::openForOutput(int number, std::string_view path) {
    files_.emplace(number, std::make_unique<OutputFile>(placeFor(number, path, true)));
}

bool SequentialFiles::atEnd(int number) {
    return open<InputFile>(number).atEnd();
}

std::string SequentialFiles::lineInput(int number) {
    return open<InputFile>(number).line();
}

void SequentialFiles::print(int number, std::string_view text) {
    open<OutputFile>(number).print(text);
}

void SequentialFiles::close(int number) {
    const auto node = files_.extract(number);
    if (!node.empty()) node.mapped()->close();
}

}  // namespace pxtarvo::portable
