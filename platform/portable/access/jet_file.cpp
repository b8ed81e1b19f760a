#include "platform/portable/access/jet_file.h"

// libmdb's header includes glib's inside extern "C", where glib's C++ parts do not compile.
#include <glib.h>
#include <mdbtools.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "platform/portable/access/libmdb_messages.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

// The first bytes of every Jet file, the version after them: 0 for Access 97, 1 for Access 2000 to 2003.
constexpr std::string_view jetSignature("\0\1\0\0Standard Jet DB\0", 20);
constexpr char jet3Version = 0;
constexpr char jet4Version = 1;

// Of a data page: its kind, the table that it belongs to, the count of rows, then two bytes for each row.
constexpr unsigned char dataPageKind = 1;
constexpr std::size_t pageOwnerOffset = 4;
constexpr std::size_t pageRowCountOffset = 12;
constexpr std::size_t pageFirstRowOffset = 14;
// Of a row's two bytes: where it begins (it ends where the row before it begins) and what became of it.
constexpr std::uint32_t rowStartMask = 0x1FFF;
constexpr std::uint32_t rowPointerFlag = 0x4000;
constexpr std::uint32_t rowDeletedFlag = 0x8000;

std::string quoted(std::string_view fileName) {
    return "'" + std::string(fileName) + "'";
}

[[noreturn]] void raiseProviderFailure(std::string description) {
    throw RuntimeError(ErrorNumber::ProviderFailure, std::move(description));
}

[[noreturn]] void raiseUnreadable(std::string_view fileName) {
    raiseProviderFailure(
        "El motor de base de datos Microsoft Jet no puede abrir el archivo " + quoted(fileName) +
        ". Está abierto en modo exclusivo por otro usuario o bien necesita permiso para ver sus datos.");
}

/// libmdb takes anything for a database and complains later.
void checkSignature(const std::string& place, std::string_view fileName) {
    std::error_code unknown;
    const auto status = std::filesystem::status(place, unknown);
    if (place.empty() || status.type() == std::filesystem::file_type::not_found) {
        raiseProviderFailure("No se pudo encontrar el archivo " + quoted(fileName) + ".");
    }
    std::array<char, jetSignature.size() + 1> start{};
    std::ifstream file;
    if (std::filesystem::is_regular_file(status)) file.open(place, std::ios::binary);
    if (!file.is_open()) raiseUnreadable(fileName);
    file.read(start.data(), start.size());

    const bool isJet = file && std::string_view(start.data(), jetSignature.size()) == jetSignature;
    if (isJet && start.back() == jet4Version) return;
    if (isJet && start.back() == jet3Version) {
        raiseProviderFailure("La base de datos " + quoted(fileName) +
                             " tiene el formato de Access 97, que este lector no admite.");
    }
    raiseProviderFailure("Formato de base de datos " + quoted(fileName) + " no reconocido.");
}

struct FreeTable {
    void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};

// libmdb has the names of the precision and the scale the wrong way round.
JetColumn describe(const MdbColumn& column) {
    return {.name = column.name,
            .type = column.col_type,
            .fixed = column.is_fixed != 0,
            .number = static_cast<std::size_t>(column.col_num),
            .fixedOffset = static_cast<std::size_t>(column.fixed_offset),
            .size = static_cast<std::size_t>(column.col_size),
            .variableNumber = column.var_col_num,
            .scale = static_cast<std::uint8_t>(column.col_prec)};
}

}  // namespace

void raiseDamagedFile(std::string_view fileName) {
    raiseProviderFailure(
        "El motor de base de datos Microsoft Jet no pudo leer todos los registros del archivo " +
        quoted(fileName) + ": está dañado o incompleto.");
}

bool JetPage::belongsTo(std::uint32_t definitionPage) const {
    return bytes_[0] == dataPageKind && littleEndian32(&bytes_[pageOwnerOffset]) == definitionPage;
}

std::size_t JetPage::rowCount() const {
    return littleEndian16(&bytes_[pageRowCountOffset]);
}

std::optional<JetPage::Row> JetPage::row(std::size_t index) const {
    const std::size_t entryOffset = pageFirstRowOffset + 2 * index;
    if (index >= rowCount() || entryOffset + 2 > jetPageSize) return std::nullopt;
    const std::uint32_t entry = littleEndian16(&bytes_[entryOffset]);
    const std::size_t start = entry & rowStartMask;
    const std::size_t end =
        index == 0 ? jetPageSize : littleEndian16(&bytes_[entryOffset - 2]) & rowStartMask;
    if (start > end || end > jetPageSize) return std::nullopt;
    return Row{.bytes = std::span(bytes_).subspan(start, end - start),
               .deleted = (entry & rowDeletedFlag) != 0,
               .pointer = (entry & rowPointerFlag) != 0};
}

class JetFile::Handle {
  public:
    explicit Handle(const std::string& place) {
        const LibmdbMessagesOff quiet;
        mdb_ = mdb_open(place.c_str(), MDB_NOFLAGS);
        if (mdb_ != nullptr) hasCatalog_ = mdb_read_catalog(mdb_, MDB_TABLE) != nullptr;
    }
    ~Handle() {
        const LibmdbMessagesOff quiet;
        if (mdb_ != nullptr) mdb_close(mdb_);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    bool usable() const noexcept { return mdb_ != nullptr && hasCatalog_; }
    MdbHandle* get() const noexcept { return mdb_; }

  private:
    MdbHandle* mdb_ = nullptr;
    bool hasCatalog_ = false;
};

JetFile::JetFile(const std::string& place, std::string_view fileName) : place_(place), fileName_(fileName) {
    checkSignature(place, fileName);
    handle_ = std::make_unique<Handle>(place);
    if (!handle_->usable()) raiseDamagedFile(fileName_);
}

JetFile::~JetFile() = default;

JetTable JetFile::table(std::string_view name) const {
    MdbCatalogEntry* entry = nullptr;
    const GPtrArray* catalog = handle_->get()->catalog;
    for (guint i = 0; i < catalog->len && entry == nullptr; ++i) {
        auto* candidate = static_cast<MdbCatalogEntry*>(g_ptr_array_index(catalog, i));
        if (equalIgnoringAsciiCase(candidate->object_name, name)) entry = candidate;
    }
    if (entry == nullptr) {
        throw RuntimeError(
            ErrorNumber::NoSuchTable,
            "El motor de base de datos Microsoft Jet no pudo encontrar la tabla o consulta de entrada " +
                quoted(name) + ". Asegúrese de que existe y que su nombre está escrito correctamente.");
    }

    const LibmdbMessagesOff quiet;
    const std::unique_ptr<MdbTableDef, FreeTable> definition(mdb_read_table(entry));
    if (!definition || mdb_read_columns(definition.get()) == nullptr) raiseDamagedFile(fileName_);
    JetTable table;
    table.definitionPage = static_cast<std::uint32_t>(entry->table_pg);
    table.rowCount = definition->num_rows;
    table.hasVariableColumns = definition->num_var_cols > 0;
    table.pageMap.assign(definition->usage_map, definition->usage_map + definition->map_sz);
    for (guint i = 0; i < definition->columns->len; ++i) {
        table.columns.push_back(
            describe(*static_cast<MdbColumn*>(g_ptr_array_index(definition->columns, i))));
    }
    return table;
}

std::uint32_t JetFile::nextPage(JetTable& table, std::uint32_t after) const {
    const LibmdbMessagesOff quiet;
    const gint32 page = mdb_map_find_next(handle_->get(), table.pageMap.data(),
                                          static_cast<unsigned>(table.pageMap.size()), after);
    if (page < 0) raiseDamagedFile(fileName_);
    return static_cast<std::uint32_t>(page);
}

/// libmdb fills up a page that the file holds a part of. A file that someone is writing to grows.
bool JetFile::holdsPage(std::uint32_t number) const {
    if (number >= wholePages_) {
        std::error_code failed;
        const std::uintmax_t size = std::filesystem::file_size(place_, failed);
        wholePages_ = failed ? 0 : size / jetPageSize;
    }
    return number < wholePages_;
}

void JetFile::readPage(std::uint32_t number, JetPage& page) const {
    MdbHandle& mdb = *handle_->get();
    if (holdsPage(number)) {
        const LibmdbMessagesOff quiet;
        if (mdb_read_pg(&mdb, number) == static_cast<ssize_t>(jetPageSize)) {
            std::copy_n(mdb.pg_buf, jetPageSize, page.data());
            return;
        }
        mdb.cur_pg = 0;  // libmdb takes a page that it failed to read for the current one
    }
    raiseDamagedFile(fileName_);
}

}  // namespace pxtarvo::portable
