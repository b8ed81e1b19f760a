#pragma once

// The connection to a source list: an Access file, read only.

#include <memory>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/portable/access/row_source.h"
#include "platform/portable/files/drive_paths.h"

namespace pxtarvo::portable {

class JetCatalog;

/// Must be owned by a shared pointer (makeObject), as its recordsets keep it alive. The rows of its
/// recordsets are those that lie in the file when they are read.
class JetConnection : public Connection,
                      public RowSource,
                      public std::enable_shared_from_this<JetConnection> {
  public:
    explicit JetConnection(DrivePaths paths);
    ~JetConnection() override;

    /// "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=<path>;…" by OLE DB's rules: keywords ignore case, the
    /// last one of a name counts, blanks around a value do not, and a value that begins with a quote ends
    /// with one. Raises 3705 while open, -2147217805 for a malformed string, 3706 for another provider and
    /// -2147467259 for a keyword that the provider lacks.
    void ConnectionString(std::string_view value) override;
    /// Raises -2147467259 for a file that is missing or cannot be read as a database, 3705 when open already
    /// and -2147217843 for a user or a password other than those of an unprotected file ("" or Admin, none).
    void Open(std::string_view userId, std::string_view password, std::int32_t options) override;
    std::int32_t State() const override { return catalog_ ? adStateOpen : adStateClosed; }

    /// Serves the statements of openRows.
    ObjectRef<Recordset> Execute(std::string_view commandText, std::int32_t options) override;
    void BeginTrans() override;
    void CommitTrans() override { endTransaction(); }
    void RollbackTrans() override { endTransaction(); }

    /// "SELECT * FROM table" and "SELECT count(*) FROM table", the table in brackets or not; -2147217900 for
    /// any other statement, -2147217865 for an unknown table, 3709 while closed.
    std::unique_ptr<RowStream> openRows(std::string_view statement) override;

  private:
    void requireOpen() const;
    void endTransaction();

    DrivePaths paths_;
    bool providerNamed_ = false;
    std::string dataSource_;
    std::unique_ptr<const JetCatalog> catalog_;  ///< none while closed
    bool inTransaction_ = false;
};

}  // namespace pxtarvo::portable
