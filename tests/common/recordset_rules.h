#pragma once

// What ADO does of every result that knows its rows, whoever made it.

#include <gtest/gtest.h>

#include <functional>

#include "platform/database.h"
#include "platform/values/text.h"
#include "tests/common/temporary_folder.h"

namespace pxtarvo::tests {

/// `rows` are those of fourArticles, not walked yet; they are closed then.
inline void expectRulesOfAdo(const ObjectRef<Recordset>& rows) {
    constexpr std::int32_t noRecord = 3021, noItem = 3265, closed = 3704;
    EXPECT_EQ(rows->RecordCount(), 4);
    EXPECT_FALSE(rows->Bof());
    rows->MoveNext();
    const auto clone = rows->Clone();
    EXPECT_EQ(clone->AbsolutePosition(), 1);
    clone->AbsolutePosition(4);
    EXPECT_EQ(clone->Fields("art_cod"), Variant("A.B"));
    EXPECT_EQ(rows->Fields(0), Variant(std::int32_t{8}));
    EXPECT_TRUE(equalIgnoringAsciiCase(rows->FieldName(1), "art_cod"));
    EXPECT_EQ(errorOf([&] { rows->AbsolutePosition(0); }), noRecord);
    EXPECT_EQ(errorOf([&] { rows->AbsolutePosition(5); }), noRecord);
    EXPECT_EQ(errorOf([&] { rows->Fields(2); }), noItem);
    EXPECT_EQ(errorOf([&] { rows->FieldName(2); }), noItem);
    EXPECT_EQ(errorOf([&] { rows->Fields("Art_Co"); }), noItem);
    for (int move = 0; move < 3; ++move) rows->MoveNext();
    EXPECT_TRUE(rows->Eof());
    EXPECT_EQ(rows->AbsolutePosition(), -1);
    EXPECT_EQ(errorOf([&] { rows->MoveNext(); }), noRecord);
    EXPECT_EQ(errorOf([&] { rows->Fields(0); }), noRecord);
    rows->MoveFirst();
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    rows->Close();
    EXPECT_EQ(clone->Fields(0), Variant(std::int32_t{10})) << "closed alone";
    EXPECT_EQ(rows->State(), adStateClosed);
    for (const auto& use : std::initializer_list<std::function<void()>>{
             [&] { rows->Close(); }, [&] { rows->Eof(); }, [&] { rows->RecordCount(); },
             [&] { rows->FieldCount(); }, [&] { rows->Fields("Art_Id"); }, [&] { rows->Clone(); }}) {
        EXPECT_EQ(errorOf(use), closed);
    }
}
inline constexpr const char* fourArticles = "SELECT Art_Id, Art_Cod FROM Art ORDER BY Art_Id";

/// The same of a result without rows.
inline void expectRulesWithoutRows(const ObjectRef<Recordset>& none) {
    EXPECT_TRUE(none->Bof() && none->Eof());
    EXPECT_EQ(none->RecordCount(), 0);
    EXPECT_EQ(errorOf([&] { none->MoveFirst(); }), 3021);
    EXPECT_EQ(errorOf([&] { none->Fields(0); }), 3021);
}

}  // namespace pxtarvo::tests
