#include "platform/portable/access/jet_connection.h"

#include <algorithm>
#include <utility>

#include "platform/portable/access/connection_string.h"
#include "platform/portable/access/jet_catalog.h"
#include "platform/portable/access/jet_rows.h"
#include "platform/portable/access/stream_recordset.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

constexpr std::string_view providerName = "Microsoft.Jet.OLEDB.4.0";
constexpr std::string_view defaultUser = "Admin";
// Known, and without effect on reading an unprotected file.
constexpr std::string_view otherKeywords[] = {"Persist Security Info", "User ID", "Password", "Mode"};

constexpr std::int32_t providerNotFound = 3706;
constexpr std::int32_t authenticationFailed = -2147217843;

bool isOtherKeyword(std::string_view keyword) {
    return std::ranges::any_of(
        otherKeywords, [&](std::string_view known) { return equalIgnoringAsciiCase(keyword, known); });
}

struct ListQuery {
    std::string_view table;
    bool counts = false;  ///< "count(*)" instead of "*"
};

/// Reads the words and signs of a statement one by one.
class StatementReader {
  public:
    explicit StatementReader(std::string_view statement) : statement_(statement), rest_(statement) {}

    ListQuery listQuery() {
        ListQuery query;
        expectWord("SELECT");
        if (nextIs("*")) {
            expect("*");
        } else {
            query.counts = true;
            expectWord("count");
            for (const std::string_view sign : {"(", "*", ")"}) expect(sign);
        }
        expectWord("FROM");
        query.table = table();
        if (nextIs(";")) expect(";");
        skipBlanks();
        if (!rest_.empty()) raise();
        return query;
    }

  private:
    static bool isWordCharacter(unsigned char c) {
        return c == '_' || c >= 0x80 || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
               (c >= 'a' && c <= 'z');
    }

    [[noreturn]] void raise() const {
        throw RuntimeError(ErrorNumber::SqlSyntax,
                           "Instrucción SQL no válida para un origen de datos de sólo lectura: '" +
                               std::string(statement_) + "'.");
    }
    void skipBlanks() {
        const std::size_t blanks = rest_.find_first_not_of(" \t\r\n");
        rest_.remove_prefix(blanks == std::string_view::npos ? rest_.size() : blanks);
    }
    bool nextIs(std::string_view sign) {
        skipBlanks();
        return rest_.starts_with(sign);
    }
    void expect(std::string_view sign) {
        if (!nextIs(sign)) raise();
        rest_.remove_prefix(sign.size());
    }
    std::string_view word() {
        skipBlanks();
        std::size_t length = 0;
        while (length < rest_.size() && isWordCharacter(static_cast<unsigned char>(rest_[length]))) ++length;
        const std::string_view result = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return result;
    }
    void expectWord(std::string_view expected) {
        if (!equalIgnoringAsciiCase(word(), expected)) raise();
    }
    std::string_view table() {
        std::string_view name;
        if (nextIs("[")) {
            expect("[");
            name = rest_.substr(0, rest_.find(']'));
            rest_.remove_prefix(name.size());
            expect("]");
        } else {
            name = word();
        }
        if (name.empty()) raise();
        return name;
    }

    std::string_view statement_;
    std::string_view rest_;
};

}  // namespace

JetConnection::JetConnection(DrivePaths paths) : paths_(std::move(paths)) {}

JetConnection::~JetConnection() = default;

void JetConnection::ConnectionString(std::string_view value) {
    if (catalog_) throw RuntimeError(ErrorNumber::ObjectOpen);
    providerNamed_ = false;
    dataSource_.clear();
    for (auto& [keyword, text] : parseConnectionString(value)) {
        if (equalIgnoringAsciiCase(keyword, "Provider")) {
            providerNamed_ = equalIgnoringAsciiCase(text, providerName);
        } else if (equalIgnoringAsciiCase(keyword, "Data Source")) {
            dataSource_ = std::move(text);
        } else if (!isOtherKeyword(keyword)) {
            throw RuntimeError(ErrorNumber::ProviderFailure,
                               "No se pudo encontrar el archivo ISAM instalable.");
        }
    }
}

void JetConnection::Open(std::string_view userId, std::string_view password, std::int32_t) {
    if (catalog_) throw RuntimeError(ErrorNumber::ObjectOpen);
    if (!providerNamed_) {
        throw RuntimeError(
            providerNotFound,
            "No se encontró el proveedor especificado. Es posible que no esté instalado correctamente.");
    }
    if (!(userId.empty() || equalIgnoringAsciiCase(userId, defaultUser)) || !password.empty()) {
        throw RuntimeError(authenticationFailed, "No es un nombre de cuenta o una contraseña válidos.");
    }
    catalog_ = std::make_unique<const JetCatalog>(
        std::make_shared<const JetFile>(paths_.resolve(dataSource_), dataSource_));
}

void JetConnection::requireOpen() const {
    if (!catalog_) throw RuntimeError(ErrorNumber::ObjectClosed);
}

ObjectRef<Recordset> JetConnection::Execute(std::string_view commandText, std::int32_t) {
    requireOpen();
    auto rows = makeObject<StreamRecordset>();
    rows->Open(commandText, ObjectRef<Connection>(shared_from_this()), adOpenDynamic, adLockOptimistic,
               adCmdText);
    return rows;
}

void JetConnection::BeginTrans() {
    requireOpen();
    if (inTransaction_) throw RuntimeError(ErrorNumber::TransactionAlreadyOpen);
    inTransaction_ = true;
}

void JetConnection::endTransaction() {
    requireOpen();
    if (!inTransaction_) throw RuntimeError(ErrorNumber::NoTransactionOpen);
    inTransaction_ = false;
}

std::unique_ptr<RowStream> JetConnection::openRows(std::string_view statement) {
    requireOpen();
    const ListQuery query = StatementReader(statement).listQuery();
    JetTable table = catalog_->table(query.table);
    if (query.counts) return std::make_unique<JetRowCount>(table.rowCount);
    return std::make_unique<JetRows>(catalog_->file(), std::move(table));
}

}  // namespace pxtarvo::portable
