#include "platform/portable/access/stream_recordset.h"

#include <gtest/gtest.h>

#include "tests/common/temporary_folder.h"

namespace pxtarvo::portable {
namespace {

/// A list of the numbers 1 to `rows` in column "Línea" and their texts in "Codigo"; it breaks after row
/// `breaksAfter`.
class NumberedRows : public RowStream {
  public:
    NumberedRows(int rows, int breaksAfter, int& passes)
        : rows_(rows), breaksAfter_(breaksAfter), passes_(passes) {}
    std::int32_t columnCount() const override { return 2; }
    const std::string& columnName(std::int32_t position) const override { return names_[position]; }
    bool next() override {
        if (row_ == 0) ++passes_;
        if (row_ == breaksAfter_) throw RuntimeError(ErrorNumber::ProviderFailure, "");
        return ++row_ <= rows_;
    }
    Variant value(std::int32_t position) const override {
        return position == 0 ? Variant(row_) : Variant(std::to_string(row_));
    }
    void rewind() override { row_ = 0; }

  private:
    std::string names_[2] = {"Línea", "Codigo"};
    int rows_;
    int breaksAfter_;
    int& passes_;
    std::int32_t row_ = 0;
};

class UnreadableConnection : public Connection {
  public:
    void ConnectionString(std::string_view) override {}
    void Open(std::string_view, std::string_view, std::int32_t) override {}
    std::int32_t State() const override { return open ? adStateOpen : adStateClosed; }
    ObjectRef<Recordset> Execute(std::string_view, std::int32_t) override { return nullptr; }
    void BeginTrans() override {}
    void CommitTrans() override {}
    void RollbackTrans() override {}

    bool open = true;
};

class ListConnection : public UnreadableConnection, public RowSource {
  public:
    explicit ListConnection(int rows, int breaksAfter = -1) : rows_(rows), breaksAfter_(breaksAfter) {}
    std::unique_ptr<RowStream> openRows(std::string_view) override {
        return std::make_unique<NumberedRows>(rows_, breaksAfter_, passes);
    }
    int passes = 0;

  private:
    int rows_;
    int breaksAfter_;
};

void open(StreamRecordset& rows, const ObjectRef<Connection>& connection) {
    rows.Open("SELECT * FROM List", connection, adOpenDynamic, adLockOptimistic, adCmdText);
}

TEST(StreamRecordset, WalksAListAndStartsOverOnlyWhenRowsWerePassed) {
    auto connection = makeObject<ListConnection>(3);
    const std::weak_ptr<ListConnection> watched = connection.shared();
    StreamRecordset rows;
    for (int opening = 0; opening < 2; ++opening) {
        const int passesBefore = connection->passes;
        open(rows, connection);
        EXPECT_EQ(tests::errorOf([&] { open(rows, connection); }), 3705);
        rows.MoveFirst();
        EXPECT_EQ(connection->passes - passesBefore, 1);
        std::string codes;
        for (; !rows.Eof(); rows.MoveNext()) codes += *rows.Fields("CODIGO").get<std::string>();
        EXPECT_EQ(codes, "123");
        EXPECT_EQ(tests::errorOf([&] { rows.MoveNext(); }), 3021);
        EXPECT_EQ(tests::errorOf([&] { rows.Fields(0); }), 3021);
        EXPECT_EQ(tests::errorOf([&] { rows.Fields("Nada"); }), 3265);
        rows.MoveFirst();
        EXPECT_EQ(rows.Fields(0), Variant(std::int32_t{1}));
        EXPECT_EQ(connection->passes - passesBefore, 2);
        rows.Close();
    }
    open(rows, connection);
    connection.reset();
    rows.MoveNext();
    EXPECT_EQ(rows.Fields("Línea"), Variant(std::int32_t{2}));
    rows.Close();
    EXPECT_TRUE(watched.expired());
}

TEST(StreamRecordset, RaisesTheNumbersOfAdo) {
    StreamRecordset rows;
    const auto closedError = [&] { return tests::errorOf([&] { rows.Eof(); }); };
    EXPECT_EQ(closedError(), 3704);
    EXPECT_EQ(tests::errorOf([&] { rows.Close(); }), 3704);

    const auto closedConnection = makeObject<ListConnection>(1);
    closedConnection->open = false;
    const ObjectRef<Connection> unusable[] = {nullptr, makeObject<UnreadableConnection>(), closedConnection};
    for (const auto& connection : unusable) {
        EXPECT_EQ(tests::errorOf([&] { open(rows, connection); }), adErrInvalidConnection);
    }
    EXPECT_EQ(tests::errorOf([&] { open(rows, makeObject<ListConnection>(3, 0)); }), -2147467259);
    EXPECT_EQ(closedError(), 3704);

    open(rows, makeObject<ListConnection>(0));
    EXPECT_TRUE(rows.Bof() && rows.Eof());
    EXPECT_EQ(tests::errorOf([&] { rows.MoveFirst(); }), 3021);
    EXPECT_EQ(tests::errorOf([&] { rows.Fields(2); }), 3265);
    EXPECT_EQ(tests::errorOf([&] { rows.Fields(-1); }), 3265);
    EXPECT_EQ(tests::errorOf([&] { rows.FieldName(2); }), 3265);
    EXPECT_EQ(tests::errorOf([&] { rows.Clone(); }), adErrFeatureNotAvailable);
    rows.Close();

    open(rows, makeObject<ListConnection>(3, 1));
    EXPECT_EQ(tests::errorOf([&] { rows.MoveNext(); }), -2147467259);
    EXPECT_TRUE(rows.Eof());
}

}  // namespace
}  // namespace pxtarvo::portable
