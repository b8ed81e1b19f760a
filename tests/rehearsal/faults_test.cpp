// All the faults of a list, what stays of a run that they stop, and the list checked without a database.

#include <filesystem>
#include <regex>

#include "platform/values/text.h"
#include "tests/rehearsal/rehearsal.h"

namespace pxtarvo::tests {

namespace {

using ::testing::HasSubstr;

/// The characters as an Access file keeps them.
std::string wide(std::string_view text) {
    std::string bytes;
    for (const char character : text) bytes.append({character, '\0'});
    return bytes;
}

constexpr const char* quoteNotClosed = "Comilla no cerrada antes de la cadena de caracteres ''.";
constexpr const char* withoutApostrophe = "Quite el apóstrofo.";

class Faults : public Rehearsal {
  protected:
    void SetUp() override {
        makeDealer();
        std::string prices = bytesOf(sample("list-bad-price-row-12.mdb"));
        prices = replaced(prices, wide("B19"), wide("B'9"));
        folder.write("list.mdb", replaced(prices, wide("B30"), wide("'30")));
        std::string sheet = bytesOf(sample("barcodes-apostrophe-row-12.xls"));
        sheet = replaced(sheet, "AMA-1017", "AMA'1017");
        folder.write("list.xls", replaced(sheet, "AMA-1031", "AMA'1031"));
        std::string lines;
        for (const char* line : {"01000079|A1", "short", "O'RING|A2", "", "01000080|A3", "9'9|A4"}) {
            const std::vector<std::string_view> fields = split(line, '|');
            std::string whole;
            if (fields.size() == 2) {
                whole = joined({std::string(17, '\x01'), fields[0], "\x01", fields[1], "\x01\x01" "0"});
            } else {
                whole = line;
            }
            lines += whole + "\r\n";
        }
        folder.write("articulo.tdw", lines);
    }
};

TEST_F(Faults, AreAllNamedOnceWithWhatStays) {
    struct Case {
        const char* command;
        const char* would;
        const char* did;
        Rows faults;
    };
    const Case cases[] = {
        {"import --file list.mdb", "Se detendrá en la fila 12: no quedará nada",
         "Se detuvo en la fila 12: no ha quedado nada",
         {{"12", "B11", "Precio", "consultar", "No coinciden los tipos",
           "Escriba en esa columna un valor del tipo que la tarifa pide."},
          {"20", "B'9", "Codigo", "B'9", quoteNotClosed, withoutApostrophe},
          {"31", "'30", "Codigo", "'30", quoteNotClosed, withoutApostrophe}}},
        {"import --year 2008 --list ama --file list.xls",
         "Se detendrá en la fila 12: quedarán escritas las filas 1 a 11 y la baja de la marca",
         "Se detuvo en la fila 12: han quedado escritas las filas 1 a 11 y la baja de la marca",
         {{"12", "AMA'12", "A", "AMA'12", quoteNotClosed, withoutApostrophe},
          {"18", "AMA'1017", "A", " AMA'1017 ", quoteNotClosed, withoutApostrophe},
          {"32", "AMA'1031", "A", " AMA'1031 ", quoteNotClosed, withoutApostrophe}}},
        {"locations --file articulo.tdw", "Se detendrá en la línea 2: quedará escrita la línea 1",
         "Se detuvo en la línea 2: ha quedado escrita la línea 1",
         {}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.command);
        makeDealer();
        EXPECT_EQ(holds(one.command), 1);
        EXPECT_EQ(ReportPage(path("dry.html")).verdict(), one.would);
        const ReportPage page(path("real.html"));
        EXPECT_EQ(page.verdict(), one.did);
        EXPECT_EQ(page.table("Faltas de la lista"), one.faults);
    }
}

}  // namespace

}  // namespace pxtarvo::tests
