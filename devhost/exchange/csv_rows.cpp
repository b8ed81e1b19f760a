#include "devhost/exchange/csv_rows.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

namespace pxtarvo::devhost {

namespace {

constexpr unsigned char parserOptions = CSV_STRICT | CSV_STRICT_FINI | CSV_EMPTY_IS_NULL;
constexpr std::size_t bufferStep = 4096;

int noSpace(unsigned char) {
    return 0;
}

char separatorOf(std::string_view firstLine) {
    constexpr std::string_view separators = ",;\t";
    std::size_t counts[separators.size()] = {};
    bool quoted = false;
    for (const char c : firstLine) {
        if (c == CSV_QUOTE) quoted = !quoted;
        const std::size_t which = quoted ? separators.npos : separators.find(c);
        if (which != separators.npos) ++counts[which];
    }
    return separators[static_cast<std::size_t>(std::ranges::max_element(counts) - counts)];
}

}  // namespace

CsvRows::CsvRows(std::string bytes) : lines_(std::move(bytes)) {
    csv_init(&parser_, parserOptions);
    csv_set_space_func(&parser_, noSpace);
    csv_set_blk_size(&parser_, bufferStep);
}

CsvRows::~CsvRows() {
    csv_free(&parser_);
}

void CsvRows::takeCell(void* text, std::size_t length, void* self) {
    auto& rows = *static_cast<CsvRows*>(self);
    if (rows.failure_) return;
    try {
        const std::string_view cell(static_cast<const char*>(text), length);
        // The parser keeps its state between its calls only, so such a line goes to it byte by byte.
        const bool quoted = rows.mayBeQuotedNull_ && rows.parser_.quoted != 0;
        const bool null = text == nullptr || (cell == nullWord && !quoted);
        rows.pieces_.push_back({rows.texts_.size(), length, null});
        rows.texts_.append(cell);
    } catch (...) {
        rows.failure_ = std::current_exception();  // the parser knows no exceptions
    }
}

void CsvRows::takeRowEnd(int, void* self) {
    auto& rows = *static_cast<CsvRows*>(self);
    if (rows.failure_) return;
    try {
        rows.rows_.push_back({rows.pieces_.size(), rows.beginLine_});
        rows.beginLine_ = rows.lines_.number();
    } catch (...) {
        rows.failure_ = std::current_exception();
    }
}

void CsvRows::raise(std::size_t line, const char* reason) {
    line_ = line;
    throw std::runtime_error(reason);
}

void CsvRows::parse(std::string_view text) {
    while (!text.empty()) {
        const std::size_t done = csv_parse(&parser_, text.data(), text.size(), takeCell, takeRowEnd, this);
        if (failure_) std::rethrow_exception(failure_);
        text.remove_prefix(done);
        if (text.empty()) return;
        if (csv_error(&parser_) != CSV_EPARSE) throw std::bad_alloc();
        if (parser_.quoted != 0) raise(lines_.number(), "text follows a closing quote");
        // A quote in the midst of a cell without quotes is a character like others.
        csv_set_opts(&parser_, parserOptions & ~CSV_STRICT);
        csv_parse(&parser_, text.data(), 1, takeCell, takeRowEnd, this);
        csv_set_opts(&parser_, parserOptions);
        text.remove_prefix(1);
    }
}

void CsvRows::readLine(std::string_view line) {
    if (lines_.number() == 1) csv_set_delim(&parser_, static_cast<unsigned char>(separatorOf(line)));
    mayBeQuotedNull_ = line.find("\"NULL\"") != line.npos;
    if (!mayBeQuotedNull_) return parse(line);
    for (std::size_t at = 0; at < line.size(); ++at) parse(line.substr(at, 1));
}

void CsvRows::finish() {
    finished_ = true;
    if (csv_fini(&parser_, takeCell, takeRowEnd, this) != 0) raise(beginLine_, "a quote is never closed");
    if (failure_) std::rethrow_exception(failure_);
}

bool CsvRows::readRow() {
    rows_.clear();
    nextRow_ = 0;
    if (nextPiece_ == pieces_.size()) {
        pieces_.clear();
        texts_.clear();
        nextPiece_ = 0;
    }
    bool begun = nextPiece_ < pieces_.size();  ///< a row that goes on in the next line
    while (rows_.empty() && !finished_) {
        std::string_view line;
        const std::size_t before = lines_.number();
        bool more = false;
        try {
            more = lines_.next(line);
        } catch (const std::runtime_error& error) {
            raise(lines_.number(), error.what());
        }
        if (!more) {
            finish();
            break;
        }
        if (!begun) beginLine_ = before + 1;
        readLine(line);
        begun = begun || line.find_first_not_of("\r\n") != line.npos;
    }
    return !rows_.empty();
}

bool CsvRows::next() {
    if (nextRow_ == rows_.size() && !readRow()) return false;
    const Row& row = rows_[nextRow_++];
    line_ = row.line;
    cells_.clear();
    for (; nextPiece_ < row.endPiece; ++nextPiece_) {
        const Piece& piece = pieces_[nextPiece_];
        cells_.push_back({std::string_view(texts_).substr(piece.begin, piece.length), piece.null});
    }
    return true;
}

}  // namespace pxtarvo::devhost
