#include "platform/portable/sqlite/sqlite_connection.h"

#include <utility>

namespace pxtarvo::portable {

namespace {

constexpr int busyMilliseconds = 2000;  ///< how long a statement waits for another process's lock

/// Makes a statement ready for its next run.
class StatementReset {
  public:
    explicit StatementReset(sqlite3_stmt* statement) : statement_(statement) {}
    StatementReset(const StatementReset&) = delete;
    StatementReset& operator=(const StatementReset&) = delete;
    ~StatementReset() { sqlite3_reset(statement_); }

  private:
    sqlite3_stmt* statement_;
};

/// Keeps the hold from the first step to the last.
class WalkedRecordset final : public ClientRecordset {
  public:
    WalkedRecordset(std::shared_ptr<const ResultRows> rows, const std::shared_ptr<ReadHold>& hold)
        : ClientRecordset(std::move(rows)), hold_(hold) {}

    void Close() override {
        ClientRecordset::Close();
        walk_.reset();
    }
    void MoveNext() override {
        ClientRecordset::MoveNext();
        if (Eof()) {
            walk_.reset();
        } else if (!walk_) {
            if (auto hold = hold_.lock()) walk_ = std::make_unique<ReadHold::Walk>(std::move(hold));
        }
    }

  private:
    std::weak_ptr<ReadHold> hold_;
    std::unique_ptr<ReadHold::Walk> walk_;
};

DatabaseHandle openDatabase(const std::string& path, DatabaseMode mode) {
    sqlite3* opened = nullptr;
    const int create = mode == DatabaseMode::CreateIfMissing ? SQLITE_OPEN_CREATE : 0;
    const int result =
        sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | create, nullptr);
    DatabaseHandle database(opened);
    if (result != SQLITE_OK) {
        throw RuntimeError(ErrorNumber::ProviderFailure,
                           "No se puede abrir la base de datos '" + path + "'.");
    }
    return database;
}

int timesPrepared(sqlite3_stmt* statement) {
    return sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_REPREPARE, 0);
}

}  // namespace

SqliteConnection::SqliteConnection(const std::string& path, const Clock& clock, DatabaseMode mode)
    : functions_(clock),
      database_(openDatabase(path, mode)),
      hold_(std::make_shared<ReadHold>(database_.get())) {
    sqlite3* const database = database_.get();
    sqlite3_extended_result_codes(database, 1);
    sqlite3_busy_timeout(database, busyMilliseconds);
    // a misspelt "name" must never turn into a text
    sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    addServerFunctions(database, functions_);
    // with a rollback journal an undone transaction leaves the file as it was, byte for byte
    portable::run(database, "PRAGMA journal_mode = DELETE; PRAGMA cache_size = -32768");
    schema_.refresh(database);
}

void SqliteConnection::readColumns(PreparedStatement& statement) const {
    sqlite3_stmt* const handle = statement.handle.get();
    const int count = sqlite3_column_count(handle);
    if (count == 0) return;
    auto columns = std::make_shared<ResultColumns>();
    for (int column = 0; column < count; ++column) {
        const char* const declared = sqlite3_column_decltype(handle, column);
        ColumnDeclaration declaration;
        if (declared) {
            declaration = readDeclaration(declared);
        } else if (statement.translatedTypes.size() == static_cast<std::size_t>(count)) {
            declaration = statement.translatedTypes[static_cast<std::size_t>(column)];
        }
        columns->names.emplace_back(sqlite3_column_name(handle, column));
        columns->declarations.push_back(declaration);
    }
    statement.columns = std::move(columns);
}

std::unique_ptr<PreparedStatement> SqliteConnection::prepareTranslated(std::string_view commandText) {
    Translation translation = translateStatement(commandText, schema_.tables());
    auto statement = std::make_unique<PreparedStatement>();
    statement->handle = prepare(database_.get(), translation.sql, SQLITE_PREPARE_PERSISTENT);
    statement->servesShape = translation.servesShape();
    statement->literals = std::move(translation.literals);
    statement->translatedTypes = std::move(translation.columns);
    readColumns(*statement);
    return statement;
}

PreparedStatement& SqliteConnection::lookUp(std::string_view commandText,
                                            std::unique_ptr<PreparedStatement>& own) {
    takeShape(commandText, shape_);
    if (PreparedStatement* statement = cache_.find(shape_.key)) return *statement;
    if (schema_.refresh(database_.get())) cache_.clear();
    own = prepareTranslated(commandText);
    if (!own->servesShape) return *own;
    own->model = {std::string(commandText), shape_.literals};
    return cache_.insert(shape_.key, std::move(own));
}

template <class Bind>
ObjectRef<Recordset> SqliteConnection::run(PreparedStatement& statement, bool wantsRecords,
                                           const Bind& bind) {
    sqlite3_stmt* const handle = statement.handle.get();
    const StatementReset reset(handle);
    if (statement.servesShape) cache_.running(statement);
    for (std::size_t index = 0; index < statement.literals.size(); ++index) {
        if (const LiteralUse& use = statement.literals[index]; use.bound) bind(index, use);
    }
    functions_.beginStatement();
    bool row = step(handle);
    if (const int times = timesPrepared(handle); times != statement.preparations) {
        statement.preparations = times;
        readColumns(statement);
    }
    if (!wantsRecords) {
        while (row) row = step(handle);
        return nullptr;
    }
    if (!statement.columns) return makeObject<ClientRecordset>();
    auto rows = std::make_shared<StoredRows>(statement.columns);
    for (; row; row = step(handle)) rows->append(handle);
    constexpr std::size_t longResult = 100;
    if (rows->rowCount() < longResult) return makeObject<ClientRecordset>(std::move(rows));
    return makeObject<WalkedRecordset>(std::move(rows), hold_);
}

ObjectRef<Recordset> SqliteConnection::runAsWritten(PreparedStatement& statement, bool wantsRecords) {
    auto result = run(statement, wantsRecords, [&](std::size_t index, const LiteralUse& use) {
        bindLiteral(statement.handle.get(), static_cast<int>(index) + 1, shape_.literals[index], use);
    });
    failure_.reset();
    return result;
}

ObjectRef<Recordset> SqliteConnection::Execute(std::string_view commandText, std::int32_t options) {
    refuseLostTransaction();
    const bool wantsRecords = options == adOptionUnspecified || (options & adExecuteNoRecords) == 0;
    try {
        if (PreparedStatement* expected = cache_.expected();
            expected && followShape(commandText, expected->model, shape_)) {
            return runAsWritten(*expected, wantsRecords);
        }
        std::unique_ptr<PreparedStatement> own;
        return runAsWritten(lookUp(commandText, own), wantsRecords);
    } catch (const RuntimeError& error) {
        raiseFailure(error);
    }
}

bool SqliteConnection::runBound(BoundStatement& statement, std::span<const LiteralValue> literals) {
    refuseLostTransaction();
    try {
        if (statement.generation_ != cache_.generation()) {
            std::unique_ptr<PreparedStatement> own;
            statement.prepared_ = &lookUp(statement.text_, own);
            if (own) return false;
            statement.generation_ = cache_.generation();
        }
        PreparedStatement& prepared = *statement.prepared_;
        if (prepared.literals.size() != literals.size()) {
            throw RuntimeError(ErrorNumber::InvalidProcedureCall);
        }
        run(prepared, false, [&](std::size_t index, const LiteralUse& use) {
            bindValue(prepared.handle.get(), static_cast<int>(index) + 1, literals[index], use);
        });
        failure_.reset();
        return true;
    } catch (const RuntimeError& error) {
        raiseFailure(error);
    }
}

void SqliteConnection::raiseFailure(const RuntimeError& error) {
    const std::optional<RuntimeError> raised = std::exchange(functions_.raised, std::nullopt);
    failed(raised ? *raised : error);
    if (raised) throw *raised;
    throw;
}

void SqliteConnection::failed(const RuntimeError& error) {
    const bool ended = transaction_ == Transaction::Open && sqlite3_get_autocommit(database_.get()) != 0;
    if (ended) transaction_ = Transaction::Lost;
    if (ended || error.is(ErrorNumber::ProviderFailure)) {
        failure_.emplace(ErrorNumber::ProviderFailure, std::string(error.description()));
    }
}

void SqliteConnection::refuseLostTransaction() const {
    if (transaction_ == Transaction::Lost) throw *failure_;
}

void SqliteConnection::requireTransaction() {
    if (transaction_ != Transaction::None) return;
    if (failure_) throw *std::exchange(failure_, std::nullopt);
    throw RuntimeError(ErrorNumber::NoTransactionOpen);
}

void SqliteConnection::runOrFail(const char* sql) {
    try {
        portable::run(database_.get(), sql);
        failure_.reset();
    } catch (const RuntimeError& error) {
        failed(error);
        throw;
    }
}

void SqliteConnection::BeginTrans() {
    if (transaction_ != Transaction::None) throw RuntimeError(ErrorNumber::TransactionAlreadyOpen);
    runOrFail("BEGIN IMMEDIATE");
    transaction_ = Transaction::Open;
}

void SqliteConnection::CommitTrans() {
    requireTransaction();
    refuseLostTransaction();
    runOrFail("COMMIT");
    transaction_ = Transaction::None;
}

void SqliteConnection::RollbackTrans() {
    requireTransaction();
    if (transaction_ == Transaction::Open) portable::run(database_.get(), "ROLLBACK");
    transaction_ = Transaction::None;
    failure_.reset();
}

void SqliteConnection::runNative(const std::string& script) {
    refuseLostTransaction();
    cache_.clear();
    hold_->release();
    runOrFail(script.c_str());
}

}  // namespace pxtarvo::portable
