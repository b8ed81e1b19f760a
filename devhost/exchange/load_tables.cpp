#include "devhost/exchange/table_exchange.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <span>
#include <stdexcept>

#include "devhost/exchange/cell_binding.h"
#include "devhost/exchange/csv_rows.h"
#include "devhost/exchange/stored_columns.h"
#include "devhost/exchange/table_files.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

std::string readFile(const TableFile& file) {
    constexpr std::size_t pieceBytes = std::size_t{1} << 20;
    std::ifstream stream(file.path, std::ios::binary);
    std::string bytes;
    while (stream.is_open() && stream) {
        const std::size_t begin = bytes.size();
        bytes.resize(begin + pieceBytes);
        stream.read(bytes.data() + begin, pieceBytes);
        bytes.resize(begin + static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.is_open() || stream.bad()) {
        throw std::runtime_error(joined({file.name(), ": cannot be read: ", std::strerror(errno)}));
    }
    return bytes;
}

std::string listed(std::span<const std::string> names) {
    std::string list;
    for (const std::string& name : names) list.append(list.empty() ? "" : ", ").append(name);
    return list;
}

/// One file on its way into its table.
class TableLoad {
  public:
    TableLoad(portable::SqliteConnection& connection, const TableFile& file, const ExchangeWatcher& watcher)
        : connection_(connection),
          file_(file),
          name_(file.name()),
          watcher_(watcher),
          rows_(readFile(file)),
          columns_(storedColumns(connection, file.table->sNombre)) {}

    /// `progressed` is called with the bytes that were read. Gives back the number of rows.
    template <class Progressed>
    std::size_t run(const Progressed& progressed) {
        readHeader();
        prepareInsertion();
        std::size_t count = 0;
        while (nextRow()) {
            addRow();
            if (++count % rowsBetweenProgress == 0) progressed(count, rows_.bytesRead());
        }
        return count;
    }

  private:
    /// A column of the file that is one of the table.
    struct Source {
        std::size_t cell;
        const StoredColumn* column;
    };

    [[noreturn]] void raise(std::string_view reason) const {
        throw std::runtime_error(joined({name_, ", line ", std::to_string(rows_.line()), ": ", reason}));
    }
    [[noreturn]] void raise(const StoredColumn& column, std::string_view reason) const {
        throw std::runtime_error(
            joined({name_, ", line ", std::to_string(rows_.line()), ", column ", column.name, ": ", reason}));
    }

    bool nextRow() {
        try {
            return rows_.next();
        } catch (const std::runtime_error& error) {
            raise(error.what());
        }
    }

    /// What the host's tables say of the column; nullptr for one that only the database file has.
    const Columna* described(const StoredColumn& column) const {
        const auto& known = file_.table->columnas;
        const auto found = std::ranges::find_if(
            known, [&](const Columna& one) { return equalIgnoringAsciiCase(one.sNombre, column.name); });
        return found == known.end() ? nullptr : &*found;
    }

    void readHeader() {
        if (!nextRow())
            throw std::runtime_error(name_ + ": it is empty; its first line must name the columns");
        std::vector<std::string> foreign;
        headerCells_ = rows_.cells().size();
        for (std::size_t cell = 0; cell < headerCells_; ++cell) {
            const std::string_view name = trimBlanks(rows_.cells()[cell].text);
            const auto column = std::ranges::find_if(
                columns_, [&](const StoredColumn& one) { return equalIgnoringAsciiCase(one.name, name); });
            if (column == columns_.end()) {
                foreign.push_back(joined({"'", name, "'"}));
            } else if (std::ranges::find(sources_, &*column, &Source::column) != sources_.end()) {
                raise(*column, "it stands twice");
            } else {
                sources_.push_back({cell, &*column});
            }
        }
        if (sources_.empty()) {
            raise(joined({"it names no column of the table ", file_.table->sNombre,
                          "; the first line must name the columns"}));
        }
        if (!foreign.empty()) remark("left out, as the table has no such column: " + listed(foreign));
        remarkMissing();
    }

    void remarkMissing() {
        std::vector<std::string> missing;
        for (const StoredColumn& column : columns_) {
            if (std::ranges::find(sources_, &column, &Source::column) != sources_.end()) continue;
            const Columna* const ours = described(column);
            if (ours && ours->papel == Papel::Clave) raise(column, "it is missing, and identifies the rows");
            if (!column.key) {
                missing.push_back(column.name);
            } else if (ours) {
                remark("has no column " + column.name + ": the rows are numbered as they come");
            }
        }
        if (!missing.empty()) remark("Null in every row, as the file has no such column: " + listed(missing));
    }

    void remark(std::string_view text) const {
        if (watcher_.remarked) watcher_.remarked(joined({name_, ": ", text}));
    }

    void prepareInsertion() {
        std::string sql = joined({"INSERT INTO ", file_.table->sNombre, " VALUES ("});
        for (const StoredColumn& column : columns_) {
            const auto source = std::ranges::find(sources_, &column, &Source::column);
            // Null also where the table has a value of its own for a column that is not given.
            sql += source == sources_.end() ? "NULL" : "?" + std::to_string(source - sources_.begin() + 1);
            sql += &column == &columns_.back() ? ')' : ',';
        }
        insertion_ = portable::prepare(connection_.handle(), sql, SQLITE_PREPARE_PERSISTENT);
    }

    void addRow() {
        const std::vector<CsvCell>& cells = rows_.cells();
        if (cells.size() != headerCells_) {
            raise(joined({std::to_string(cells.size()), cells.size() == 1 ? " cell" : " cells",
                          ", but the first line has ", std::to_string(headerCells_)}));
        }
        int parameter = 0;
        for (const Source& source : sources_) {
            const CsvCell& cell = cells[source.cell];
            if (const auto reason = bindCell(insertion_.get(), ++parameter, *source.column, cell)) {
                raise(*source.column, *reason);
            }
            if (source.column->key) takeKey(*source.column, cell);
        }
        const int result = sqlite3_step(insertion_.get());
        if (result != SQLITE_DONE) raiseRefused();
        sqlite3_reset(insertion_.get());
    }

    void takeKey(const StoredColumn& column, const CsvCell& cell) {
        key_ = {&column, cell.text};
        if (!cell.null && !cell.text.empty()) return;
        const Columna* const ours = described(column);
        if (ours && ours->papel == Papel::Clave) raise(column, "it is empty, and identifies the row");
    }

    [[noreturn]] void raiseRefused() const {
        sqlite3* const database = connection_.handle();
        if (sqlite3_extended_errcode(database) == SQLITE_CONSTRAINT_PRIMARYKEY && key_.column) {
            raise(*key_.column, joined({"'", key_.text, "' stands in an earlier row, too"}));
        }
        throw portable::providerError(database);
    }

    struct Key {
        const StoredColumn* column = nullptr;
        std::string_view text;
    };

    portable::SqliteConnection& connection_;
    const TableFile& file_;
    std::string name_;
    const ExchangeWatcher& watcher_;
    CsvRows rows_;
    std::vector<StoredColumn> columns_;
    std::size_t headerCells_ = 0;
    std::vector<Source> sources_;
    portable::StatementHandle insertion_;
    Key key_;  ///< of the row at hand
};

std::vector<ExchangedTable> addRows(portable::SqliteConnection& connection, std::span<const TableFile> files,
                                    const ExchangeWatcher& watcher) {
    std::uintmax_t allBytes = 0;
    std::uintmax_t bytesBefore = 0;
    for (const TableFile& file : files) allBytes += std::filesystem::file_size(file.path);
    std::vector<ExchangedTable> loaded;
    for (const TableFile& file : files) {
        const std::string name = file.name();
        const auto progressed = [&](std::size_t rows, std::size_t bytes) {
            if (!watcher.progressed) return;
            const double share = static_cast<double>(bytesBefore + bytes) / static_cast<double>(allBytes);
            watcher.progressed({name, rows, share});
        };
        loaded.push_back({name, TableLoad(connection, file, watcher).run(progressed)});
        bytesBefore += std::filesystem::file_size(file.path);
    }
    return loaded;
}

void rollBack(portable::SqliteConnection& connection) {
    try {
        connection.RollbackTrans();
    } catch (const RuntimeError&) {  // a full disk has ended the transaction already
    }
}

}  // namespace

std::vector<ExchangedTable> loadTables(portable::SqliteConnection& connection,
                                       const std::filesystem::path& folder, const ExchangeWatcher& watcher) {
    const FolderFiles files = findTableFiles(folder);
    for (const std::string& other : files.others) {
        if (watcher.remarked) watcher.remarked(other + ": left out, as no table of the host has this name");
    }
    if (files.tables.empty()) {
        throw std::runtime_error(joined({"no CSV file in '", folder.string(), "' has the name of a table"}));
    }
    for (const TableFile& file : files.tables) {
        if (std::filesystem::is_directory(file.path))
            throw std::runtime_error(file.name() + ": it is a folder");
    }
    connection.BeginTrans();
    try {
        auto loaded = addRows(connection, files.tables, watcher);
        connection.CommitTrans();
        return loaded;
    } catch (...) {
        rollBack(connection);
        throw;
    }
}

}  // namespace pxtarvo::devhost
