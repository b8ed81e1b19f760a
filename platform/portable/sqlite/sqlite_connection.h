#pragma once

// The host connection of the portable body: a SQLite file that takes the statements of the host's server.

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/portable/dialect/sql_tokens.h"
#include "platform/portable/sqlite/bound_statement.h"
#include "platform/portable/sqlite/literal_binding.h"
#include "platform/portable/sqlite/read_hold.h"
#include "platform/portable/sqlite/sqlite_functions.h"
#include "platform/portable/sqlite/sqlite_handles.h"
#include "platform/portable/sqlite/sqlite_schema.h"
#include "platform/portable/sqlite/statement_cache.h"
#include "platform/values/clock.h"

namespace pxtarvo::portable {

enum class DatabaseMode {
    Existing,        ///< the file must be there
    CreateIfMissing  ///< an empty database is made where there is none
};

/// Open from its construction to its end; what an open transaction wrote is undone then. To be used by one
/// thread.
class SqliteConnection final : public Connection {
  public:
    /// `path` is UTF-8, or ":memory:" with CreateIfMissing. The clock must outlive the connection. Raises
    /// ProviderFailure for a file that cannot be opened or is no database.
    SqliteConnection(const std::string& path, const Clock& clock, DatabaseMode mode);
    ~SqliteConnection() override { hold_->finish(); }
    static ObjectRef<SqliteConnection> open(const std::string& path, const Clock& clock) {
        return makeObject<SqliteConnection>(path, clock, DatabaseMode::Existing);
    }
    static ObjectRef<SqliteConnection> create(const std::string& path, const Clock& clock) {
        return makeObject<SqliteConnection>(path, clock, DatabaseMode::CreateIfMissing);
    }

    /// 3705, both: the connection is open already.
    void ConnectionString(std::string_view) override { throw RuntimeError(ErrorNumber::ObjectOpen); }
    void Open(std::string_view, std::string_view, std::int32_t) override {
        throw RuntimeError(ErrorNumber::ObjectOpen);
    }
    std::int32_t State() const override { return adStateOpen; }

    /// Runs one statement in the server's dialect (sql_translator.h); every command is a text, and of the
    /// options only adExecuteNoRecords counts. A failed statement leaves nothing of itself behind and the
    /// transaction open. Raises SqlSyntax, NoSuchTable, ConversionFailed, IntegrityViolation, or
    /// ProviderFailure for the file's own troubles.
    ObjectRef<Recordset> Execute(std::string_view commandText, std::int32_t options) override;

    /// Does what Execute would do, with adExecuteNoRecords and `literals` written into the text in their
    /// order; raises the same, and InvalidProcedureCall where the text has not as many literals. False, and
    /// nothing done, where one of its literals can be no parameter. Texts must live until the statement runs
    /// again.
    bool runBound(BoundStatement& statement, std::span<const LiteralValue> literals);

    /// The file is locked for other writers at once. A failure of the file may undo the transaction; from
    /// then on everything but RollbackTrans raises ProviderFailure with its description, so that no later
    /// write stands alone. Where none is open because of a failure of the file, an end of one is refused with
    /// that failure.
    void BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;
    bool inTransaction() const noexcept { return transaction_ == Transaction::Open; }

    /// Runs statements of SQLite's own dialect that give no rows: what creates and fills the tables. The
    /// columns of the tables name no collation, indexes of text columns name dealerCollation. Raises the
    /// provider's error.
    void runNative(const std::string& script);

    /// For measuring, and for tests that set up what no statement can.
    sqlite3* handle() const noexcept { return database_.get(); }
    std::size_t cachedStatements() const noexcept { return cache_.size(); }

  private:
    enum class Transaction { None, Open, Lost };

    std::unique_ptr<PreparedStatement> prepareTranslated(std::string_view commandText);
    void readColumns(PreparedStatement& statement) const;
    /// The statement of the shape of `commandText`, which is then in shape_; one that serves no other text is
    /// not kept but put into `own`.
    PreparedStatement& lookUp(std::string_view commandText, std::unique_ptr<PreparedStatement>& own);
    /// `bind` is called with each bound literal's index and use.
    template <class Bind>
    ObjectRef<Recordset> run(PreparedStatement& statement, bool wantsRecords, const Bind& bind);
    ObjectRef<Recordset> runAsWritten(PreparedStatement& statement, bool wantsRecords);
    /// To be called where an error of a statement was caught: raises it, or the one that a function of ours
    /// had.
    [[noreturn]] void raiseFailure(const RuntimeError& error);
    /// Runs statements of SQLite's own.
    void runOrFail(const char* sql);
    /// Keeps a failure of the file in mind, and that SQLite ended the transaction by itself.
    void failed(const RuntimeError& error);
    void refuseLostTransaction() const;
    /// Raises that no transaction is open, or the failure for which there is none.
    void requireTransaction();

    FunctionState functions_;
    DatabaseHandle database_;
    StatementCache cache_;  ///< its statements must go before the database
    std::shared_ptr<ReadHold> hold_;
    SqliteSchema schema_;
    StatementShape shape_;  ///< of the statement at hand
    Transaction transaction_ = Transaction::None;
    std::optional<RuntimeError> failure_;  ///< of the file, until a statement succeeds
};

}  // namespace pxtarvo::portable
