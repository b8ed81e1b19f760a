#include "platform/numbered_files.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/values/runtime_error.h"

namespace pxtarvo {

namespace {

constexpr int lastFileNumber = 511;
constexpr std::size_t bufferSize = 32768;
constexpr char carriageReturn = '\r';
constexpr char lineFeed = '\n';

}  // namespace

class NumberedFiles::File {
  public:
    File(std::unique_ptr<SystemFile> file, bool forOutput) : file_(std::move(file)), forOutput_(forOutput) {}
    virtual ~File() = default;

    bool forOutput() const noexcept { return forOutput_; }
    SystemFile& file() const noexcept { return *file_; }
    virtual void finish() {}

  private:
    std::unique_ptr<SystemFile> file_;
    bool forOutput_;
};

class NumberedFiles::InputFile : public File {
  public:
    explicit InputFile(std::unique_ptr<SystemFile> file) : File(std::move(file), false) {}

    bool atEnd() { return next_ == end_ && !fill(); }
    std::int32_t linesRead() const noexcept { return linesRead_; }

    std::string line() {
        if (atEnd()) throw RuntimeError(ErrorNumber::InputPastEnd);
        ++linesRead_;
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
        return bytes;
    }

  private:
    /// False at the end of the file.
    bool fill() {
        next_ = 0;
        end_ = 0;
        end_ = file().read(buffer_.data(), buffer_.size());
        return end_ > 0;
    }

    std::array<char, bufferSize> buffer_;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
    std::int32_t linesRead_ = 0;
};

class NumberedFiles::OutputFile : public File {
  public:
    explicit OutputFile(std::unique_ptr<SystemFile> file) : File(std::move(file), true) {}
    ~OutputFile() override {
        try {
            finish();
        } catch (const RuntimeError&) {
            // Nobody is left to be told.
        }
    }

    void print(std::string_view bytes) {
        pending_.append(bytes).append({carriageReturn, lineFeed});
        if (pending_.size() >= bufferSize) finish();
    }

    void finish() override { file().write(std::exchange(pending_, {})); }

  private:
    std::string pending_;
};

NumberedFiles::NumberedFiles() = default;

NumberedFiles::~NumberedFiles() = default;

std::unique_ptr<SystemFile> NumberedFiles::openUnder(int number, std::string_view path, bool forOutput) {
    if (number < 1 || number > lastFileNumber) throw RuntimeError(ErrorNumber::BadFileNumber);
    if (files_.contains(number)) throw RuntimeError(ErrorNumber::FileAlreadyOpen);
    std::unique_ptr<SystemFile> opened = openFile(path, forOutput);
    for (const auto& [other, file] : files_) {
        if ((forOutput || file->forOutput()) && file->file().same(*opened)) {
            throw RuntimeError(ErrorNumber::FileAlreadyOpen);
        }
    }
    return opened;
}

template <class Wanted>
Wanted& NumberedFiles::open(int number) const {
    const auto found = files_.find(number);
    if (found == files_.end()) throw RuntimeError(ErrorNumber::BadFileNumber);
    auto* file = dynamic_cast<Wanted*>(found->second.get());
    if (!file) throw RuntimeError(ErrorNumber::BadFileMode);
    return *file;
}

int NumberedFiles::freeFile(int lowest) const {
    while (files_.contains(lowest)) ++lowest;
    if (lowest > lastFileNumber) throw RuntimeError(ErrorNumber::TooManyFiles);
    return lowest;
}

void NumberedFiles::openForInput(int number, std::string_view path) {
    files_.emplace(number, std::make_unique<InputFile>(openUnder(number, path, false)));
}

void NumberedFiles::openForOutput(int number, std::string_view path) {
    auto file = std::make_unique<OutputFile>(openUnder(number, path, true));
    file->file().truncate();
    files_.emplace(number, std::move(file));
}

bool NumberedFiles::atEnd(int number) {
    return open<InputFile>(number).atEnd();
}

std::string NumberedFiles::lineInput(int number) {
    return decoded(open<InputFile>(number).line());
}

void NumberedFiles::print(int number, std::string_view text) {
    open<OutputFile>(number).print(encoded(text));
}

void NumberedFiles::close(int number) {
    const auto node = files_.extract(number);
    if (!node.empty()) node.mapped()->finish();
}

std::int32_t NumberedFiles::linesRead(int number) const {
    const auto found = files_.find(number);
    const auto* file = found == files_.end() ? nullptr : dynamic_cast<InputFile*>(found->second.get());
    return file ? file->linesRead() : 0;
}

}  // namespace pxtarvo
