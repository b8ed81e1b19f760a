#include "devhost/watch/watched_source.h"

#include <string>
#include <utility>

#include "devhost/record/forwarding_connection.h"
#include "platform/portable/access/row_source.h"
#include "platform/portable/access/stream_recordset.h"
#include "platform/portable/portable_platform.h"

namespace pxtarvo::devhost {

using portable::RowSource;
using portable::RowStream;

namespace {

/// The list's connection and what is left of its rows, across runs.
struct WatchedList {
    std::shared_ptr<ListWatch> watch;
    ObjectRef<Connection> connection;  ///< made by the first run
    std::shared_ptr<RowStream> rows;   ///< opened by the first run
};

class WatchedRows : public RowStream {
  public:
    explicit WatchedRows(std::shared_ptr<WatchedList> list) : list_(std::move(list)) {}
    ~WatchedRows() override { list_->watch->endRow(true); }

    std::int32_t columnCount() const override { return rows().columnCount(); }
    const std::string& columnName(std::int32_t position) const override {
        return rows().columnName(position);
    }
    void rewind() override { rows().rewind(); }

    bool next() override {
        list_->watch->endRow();
        if (!rows().next()) return false;
        list_->watch->beginRow([this](std::int32_t position) { return rows().value(position); });
        return true;
    }
    Variant value(std::int32_t position) const override {
        list_->watch->reading(position);
        Variant value = rows().value(position);
        list_->watch->seen(position, value);
        return value;
    }

  private:
    RowStream& rows() const { return *list_->rows; }

    std::shared_ptr<WatchedList> list_;
};

class WatchedSource : public ForwardingConnection, public RowSource {
  public:
    WatchedSource(std::shared_ptr<WatchedList> list, ObjectRef<Connection> connection)
        : ForwardingConnection(std::move(connection)), list_(std::move(list)) {}

    std::unique_ptr<RowStream> openRows(std::string_view statement) override {
        auto& source = dynamic_cast<RowSource&>(*connection_.shared());
        if (!statement.starts_with("SELECT *")) return source.openRows(statement);
        if (!list_->rows) {
            list_->connection = connection_;
            list_->rows = source.openRows(statement);
            std::vector<std::string> names;
            for (std::int32_t at = 0; at < list_->rows->columnCount(); ++at) {
                names.push_back(list_->rows->columnName(at));
            }
            list_->watch->columns(std::move(names));
        }
        return std::make_unique<WatchedRows>(list_);
    }

  private:
    std::shared_ptr<WatchedList> list_;
};

}  // namespace

std::function<ObjectRef<Connection>(const portable::DrivePaths&)> watchedSource(
    std::shared_ptr<ListWatch> watch) {
    auto list = std::make_shared<WatchedList>();
    list->watch = std::move(watch);
    return [list = std::move(list)](const portable::DrivePaths& paths) -> ObjectRef<Connection> {
        return makeObject<WatchedSource>(list, portable::accessFileReader(paths));
    };
}

}  // namespace pxtarvo::devhost
