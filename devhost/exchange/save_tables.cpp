#include "devhost/exchange/table_exchange.h"

#include <csv.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "devhost/exchange/csv_rows.h"
#include "devhost/exchange/stored_columns.h"
#include "devhost/exchange/table_files.h"
#include "devhost/exchange/text_lines.h"
#include "host/tables.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// Removes the files again unless they are to stay; each has its own name only then.
class WrittenFiles {
  public:
    WrittenFiles() = default;
    WrittenFiles(const WrittenFiles&) = delete;
    WrittenFiles& operator=(const WrittenFiles&) = delete;
    ~WrittenFiles() {
        std::error_code ignored;
        for (const std::filesystem::path& file : files_) std::filesystem::remove(file, ignored);
    }

    std::filesystem::path add(const std::filesystem::path& file) {
        names_.push_back(file);
        return files_.emplace_back(file) += ".unfinished";
    }
    void keep() {
        for (std::size_t at = 0; at < files_.size(); ++at) {
            std::filesystem::rename(files_[at], names_[at]);
            files_[at] = names_[at];  // to be removed where a later one fails
        }
        files_.clear();
    }

  private:
    std::vector<std::filesystem::path> names_;
    std::vector<std::filesystem::path> files_;
};

/// Until its end every statement sees the database as it is now.
class OneMoment {
  public:
    explicit OneMoment(sqlite3* database) : database_(database) { portable::run(database, "BEGIN"); }
    OneMoment(const OneMoment&) = delete;
    OneMoment& operator=(const OneMoment&) = delete;
    ~OneMoment() { sqlite3_exec(database_, "ROLLBACK", nullptr, nullptr, nullptr); }

  private:
    sqlite3* database_;
};

void appendQuoted(std::string& line, std::string_view text) {
    const std::size_t begin = line.size();
    line.resize(begin + csv_write(nullptr, 0, text.data(), text.size()));
    csv_write(line.data() + begin, line.size() - begin, text.data(), text.size());
}

bool needsQuotes(std::string_view text) {
    return text.empty() || text == nullWord || text.front() == ' ' || text.back() == ' ' ||
           text.find_first_of(",;\t\"\r\n") != text.npos;
}

template <class Number>
void appendNumber(std::string& line, Number number) {
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    line.append(digits.data(), written.ptr);
}

/// False for a value that no CSV file can hold.
bool appendCell(std::string& line, sqlite3_stmt* row, int column) {
    switch (sqlite3_column_type(row, column)) {
        case SQLITE_NULL:
            return true;
        case SQLITE_INTEGER:
            appendNumber(line, static_cast<std::int64_t>(sqlite3_column_int64(row, column)));
            return true;
        case SQLITE_FLOAT:
            appendNumber(line, sqlite3_column_double(row, column));
            return std::isfinite(sqlite3_column_double(row, column));
        case SQLITE_TEXT: {
            const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
            const std::string_view text(bytes, static_cast<std::size_t>(sqlite3_column_bytes(row, column)));
            needsQuotes(text) ? appendQuoted(line, text) : void(line.append(text));
            return isUtf8(text);
        }
        default:
            return false;
    }
}

struct TableSize {
    const Tabla* table;
    std::size_t rows;
};

std::vector<TableSize> tableSizes(sqlite3* database) {
    std::vector<TableSize> sizes;
    for (const Tabla& table : tablasHost) {
        const auto count = portable::prepare(database, joined({"SELECT count(*) FROM ", table.sNombre}));
        portable::step(count.get());
        sizes.push_back({&table, static_cast<std::size_t>(sqlite3_column_int64(count.get(), 0))});
    }
    return sizes;
}

class TableSave {
  public:
    TableSave(portable::SqliteConnection& connection, const Tabla& table, const std::filesystem::path& file)
        : table_(table), columns_(storedColumns(connection, table.sNombre)), stream_(file, std::ios::binary) {
        check();
        rows_ = portable::prepare(connection.handle(), selection());
    }

    template <class Progressed>
    std::size_t run(const Progressed& progressed) {
        std::size_t count = 0;
        while (portable::step(rows_.get())) {
            writeRow(++count);
            if (count % rowsBetweenProgress == 0) progressed(count);
        }
        stream_.close();
        check();
        return count;
    }

  private:
    void check() const {
        if (stream_) return;
        throw std::runtime_error(joined({table_.sNombre, ".csv: cannot be written: ", std::strerror(errno)}));
    }

    /// Writes the names of the columns, too.
    std::string selection() {
        std::string names;
        for (const StoredColumn& column : columns_)
            names.append(names.empty() ? "" : ",").append(column.name);
        stream_ << names << '\n';
        return joined({"SELECT ", names, " FROM ", table_.sNombre, " ORDER BY rowid"});
    }

    void writeRow(std::size_t number) {
        line_.clear();
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            if (column > 0) line_ += ',';
            if (!appendCell(line_, rows_.get(), static_cast<int>(column))) {
                throw std::runtime_error(
                    joined({table_.sNombre, ", row ", std::to_string(number), ", column ",
                            columns_[column].name, ": no CSV file can hold the value"}));
            }
        }
        if (line_.empty()) line_ = nullWord;  // an empty line would be no row
        line_ += '\n';
        stream_ << line_;
        check();
    }

    const Tabla& table_;
    std::vector<StoredColumn> columns_;
    std::ofstream stream_;
    portable::StatementHandle rows_;
    std::string line_;
};

}  // namespace

std::vector<ExchangedTable> saveTables(portable::SqliteConnection& connection,
                                       const std::filesystem::path& folder, const ExchangeWatcher& watcher) {
    std::filesystem::create_directories(folder);
    if (const FolderFiles there = findTableFiles(folder); !there.tables.empty()) {
        throw std::runtime_error(joined({"'", there.tables.front().path.string(), "' exists already"}));
    }
    const OneMoment moment(connection.handle());
    const std::vector<TableSize> sizes = tableSizes(connection.handle());
    double allRows = 0;
    for (const TableSize& size : sizes) allRows += static_cast<double>(size.rows);
    double rowsBefore = 0;
    WrittenFiles files;
    std::vector<ExchangedTable> saved;
    for (const TableSize& size : sizes) {
        const std::string name = joined({size.table->sNombre, ".csv"});
        const auto progressed = [&](std::size_t rows) {
            if (!watcher.progressed) return;
            watcher.progressed({name, rows, (rowsBefore + static_cast<double>(rows)) / allRows});
        };
        TableSave save(connection, *size.table, files.add(folder / name));
        saved.push_back({name, save.run(progressed)});
        rowsBefore += static_cast<double>(size.rows);
    }
    files.keep();
    return saved;
}

}  // namespace pxtarvo::devhost
