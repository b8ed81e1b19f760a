#include "platform/portable/access/stream_recordset.h"

#include <gtest/gtest.h>

#include "tests/common/memory_list.h"
#include "tests/common/temporary_folder.h"

namespace pxtarvo::portable {
namespace {

using test::ListRow;
using tests::errorOf;

ObjectRef<Connection> listOf(const std::vector<ListRow>& rows, bool open = true) {
    const auto connection = test::memorySource(rows)(DrivePaths());
    if (open) connection->Open("", "", adOptionUnspecified);
    return connection;
}

void open(StreamRecordset& rows, const ObjectRef<Connection>& connection) {
    rows.Open("SELECT * FROM List", connection, adOpenDynamic, adLockOptimistic, adCmdText);
}

TEST(StreamRecordset, WalksAListAsOftenAsItIsAsked) {
    auto connection = listOf({{"a"}, {"b"}, {"c"}});
    const std::weak_ptr<Connection> watched = connection.shared();
    StreamRecordset rows;
    open(rows, connection);
    EXPECT_EQ(errorOf([&] { open(rows, connection); }), 3705);
    connection.reset();
    for (int pass = 0; pass < 2; ++pass) {
        std::string codes;
        for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext())
            codes += *rows.Fields("COLUMNA").get<std::string>();
        EXPECT_EQ(codes, "abc");
    }
    EXPECT_EQ(errorOf([&] { rows.MoveNext(); }), 3021);
    EXPECT_EQ(errorOf([&] { rows.Fields(0); }), 3021);
    rows.Close();
    EXPECT_TRUE(watched.expired());
}

TEST(StreamRecordset, RaisesTheNumbersOfAdo) {
    StreamRecordset rows;
    EXPECT_EQ(errorOf([&] { rows.Eof(); }), 3704);
    EXPECT_EQ(errorOf([&] { rows.Close(); }), 3704);
    for (const auto& unusable : {ObjectRef<Connection>(), listOf({{"a"}}, false)}) {
        EXPECT_EQ(errorOf([&] { open(rows, unusable); }), adErrInvalidConnection);
    }
    EXPECT_EQ(errorOf([&] { open(rows, listOf({{}, {"a"}})); }), -2147467259);
    EXPECT_EQ(errorOf([&] { rows.Eof(); }), 3704);
    open(rows, listOf({{"a"}, {}, {"b"}}));
    EXPECT_EQ(errorOf([&] { rows.MoveNext(); }), -2147467259);
    EXPECT_TRUE(rows.Eof());
    rows.Close();
    open(rows, listOf({}));
    EXPECT_TRUE(rows.Bof() && rows.Eof());
    EXPECT_EQ(errorOf([&] { rows.MoveFirst(); }), 3021);
    rows.Close();
    open(rows, listOf({{"a"}}));
    EXPECT_EQ(rows.RecordCount(), -1);
    EXPECT_EQ(errorOf([&] { rows.Fields("Nada"); }), 3265);
    for (const std::int32_t outside : {-1, 1}) {
        EXPECT_EQ(errorOf([&] { rows.Fields(outside); }), 3265);
        EXPECT_EQ(errorOf([&] { rows.FieldName(outside); }), 3265);
    }
    EXPECT_EQ(errorOf([&] { rows.AbsolutePosition(1); }), adErrFeatureNotAvailable);
    EXPECT_EQ(errorOf([&] { rows.Clone(); }), adErrFeatureNotAvailable);
}

}  // namespace
}  // namespace pxtarvo::portable
