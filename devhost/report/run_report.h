#pragma once

// Everything that a report says of one run, before it has a form. Texts are Spanish: the report is for the
// dealer.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "devhost/report/list_findings.h"
#include "devhost/report/list_look.h"
#include "devhost/report/run_facts.h"

namespace pxtarvo::devhost {

/// What kind of run it is, in words.
struct RunWords {
    std::string_view title;    ///< "Importación de la tarifa"
    std::string_view wouldDo;  ///< the verdict of a rehearsal that ended well: "Se puede importar"
    std::string_view done;     ///< the same of a run
    std::string_view row;      ///< what the list's rows are called: "fila"
    std::string_view rows;
};
inline constexpr RunWords importWords{"Importación de la tarifa", "Se puede importar", "Tarifa importada",
                                      "fila", "filas"};
inline constexpr RunWords locationWords{"Actualización de ubicaciones",
                                        "Se pueden actualizar las ubicaciones", "Ubicaciones actualizadas",
                                        "línea", "líneas"};
inline constexpr RunWords correctionWords{"Corrección de códigos", "Se pueden corregir los códigos",
                                          "Códigos corregidos", "fila", "filas"};
inline constexpr RunWords deletionWords{"Borrado de artículos sin movimientos", "Se pueden borrar",
                                        "Artículos borrados", "fila", "filas"};
inline constexpr RunWords checkWords{"Revisión de la tarifa", "Se puede importar", "Se puede importar",
                                     "fila", "filas"};

/// A row of the list at which a run stops.
struct ListFault {
    std::int32_t row = 0;
    std::string code;
    std::string column;  ///< of the value that stopped the run; empty where none of the list's did
    std::string value;
    std::string reason;               ///< as the run's message gives it
    std::vector<std::string> values;  ///< the whole row, by position
};

struct ListFile {
    std::string path;
    std::uintmax_t bytes = 0;
    std::string modified;  ///< "DD/MM/YYYY HH:MM"
    std::string sha256;
    std::string table;                 ///< empty where it is no Access file
    std::string year;                  ///< empty where it has none
    std::optional<ListLook> look;      ///< of an Access list
    std::vector<std::string> columns;  ///< by position
    std::int32_t rows = 0;
};

struct RunReport {
    RunWords words = importWords;
    std::string when;        ///< "DD/MM/YYYY HH:MM"
    std::string database;    ///< empty for a list that is only looked at
    bool rehearsal = false;  ///< nothing of the run was kept
    bool endedWell = false;
    bool stoppedInRow = false;          ///< the list's last row read is the one that stopped it
    std::int32_t lastRow = 0;           ///< read by the run; 0 before the first
    std::string reason;                 ///< why it did not end well
    std::vector<std::string> messages;  ///< of the window, in their order
    std::size_t refusedWrites = 0;
    std::string firstRefused;
    std::string supplier;  ///< code and name, as the window shows them
    std::string brand;
    std::optional<ListFile> list;
    std::vector<ListFault> faults;
    std::vector<ListWarning> warnings;
    RunFacts facts;
};

/// The report's first line: what the run would do or did, and what stays of it.
std::string verdict(const RunReport& report);
/// What to do about a fault.
std::string_view advice(const ListFault& fault);
/// Why a list does not look like one of its year, a sentence each.
std::vector<std::string> lookSentences(const ListFile& list);

}  // namespace pxtarvo::devhost
