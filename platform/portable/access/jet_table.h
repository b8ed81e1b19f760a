#pragma once

// A table as its definition in an Access file describes it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/portable/access/jet_page_map.h"

namespace pxtarvo::portable {

/// The file's numbers for the kinds of columns that have a value here.
enum class JetType : std::uint8_t {
    Boolean = 1,
    Byte,
    Integer,
    LongInteger,
    Currency,
    Single,
    Double,
    DateTime,
    Text = 10,
    Memo = 12,
    Decimal = 16
};

/// A column, in the terms of the file format.
struct JetColumn {
    std::string name;
    JetType type{};
    bool fixed = false;              ///< at fixedOffset in every row, not in the row's table of offsets
    std::size_t number = 0;          ///< its bit in a row's mask of values that are not null
    std::size_t fixedOffset = 0;     ///< bytes behind the row's count of columns
    std::size_t size = 0;            ///< bytes, of fixed columns
    std::size_t variableNumber = 0;  ///< its place in the row's table of offsets
    std::uint8_t scale = 0;          ///< decimal places, of decimal columns
};

struct JetTable {
    std::uint32_t definitionPage;  ///< the pages of its rows name it
    std::uint32_t rowCount;
    bool hasVariableColumns;
    std::vector<JetColumn> columns;  ///< in the order of their numbers
    JetPageMap pages;
};

/// The table whose definition begins at this page. Raises -2147467259 when there is none or it is damaged.
JetTable readJetTable(const JetFile& file, std::uint32_t definitionPage);

}  // namespace pxtarvo::portable
