#include <optional>

#include "check/asked_object.h"
#include "check/host_check.h"

#include "host/tables.h"
#include "platform/database.h"
#include "platform/values/conversion.h"
#include "platform/values/locale.h"
#include "platform/values/text.h"

namespace pxtarvo::check {

namespace {

using windows::Bstr;
using windows::Dispatch;
using windows::OwnedVariant;

constexpr std::string_view databaseName = "HostDatabase";
constexpr std::string_view trialCode = "PXTARVO-PRUEBA";
constexpr std::string_view trialText = "PRUEBA D'ALTA";
constexpr std::string_view textByReference = "sMensaje (texto por referencia)";
constexpr double trialPrice = 12.5;
constexpr double changedPrice = 7.25;
constexpr std::string_view untouched = "(sin tocar)";

struct Cell {
    std::string_view column;
    Tipo kind;
    Variant value;
};
using Cells = std::vector<Cell>;

Cell cell(const Columna& column, Variant value) {
    return {column.sNombre, column.nTipo, std::move(value)};
}

/// Runs a statement on the host's connection as the plug-in does.
AskedObject execute(const AskedObject& connection, std::string_view statement) {
    return connection.child(u"Execute", "Recordset", "texto, omitido, Long -1", OwnedVariant(statement),
                            OwnedVariant::missing(), OwnedVariant(adOptionUnspecified));
}

AskedObject firstField(const AskedObject& fields) {
    return fields.child(u"Item", "Field", "Long 0", OwnedVariant(std::int32_t{0}));
}

/// The first row's columns of these names; none where there is no row.
std::optional<std::vector<Variant>> rowOf(const AskedObject& connection, std::string_view statement,
                                          std::initializer_list<std::string_view> columns) {
    const AskedObject rows = execute(connection, statement);
    std::optional<std::vector<Variant>> found;
    if (!rows.read(u"EOF", &Dispatch::truth)) {
        found.emplace();
        const AskedObject fields = rows.child(u"Fields", "Fields", "");
        for (const std::string_view column : columns) {
            const AskedObject field = fields.child(u"Item", "Field", "texto", OwnedVariant(column));
            found->push_back(field.read(u"Value", &Dispatch::value));
        }
    }
    rows.run(u"Close");
    return found;
}

/// What the trial article's row holds.
struct TrialRow {
    std::int32_t identifier;
    std::string text;
    double price;
    Variant date;
};

class ContextCheck {
  public:
    ContextCheck(AskedObject context, AskedObject connection)
        : context_(std::move(context)), connection_(std::move(connection)) {}

    void run() {
        attempt([&] { askQuestions(); });
        // Nothing is written that could not be undone.
        if (!connection_.object().has(u"RollbackTrans")) return;
        try {
            connection_.run(u"BeginTrans");
        } catch (const NotAnswered&) {
            return;
        }
        attempt([&] { write(); });
        attempt([&] {
            connection_.run(u"RollbackTrans");
            expectRolledBack();
        });
    }

  private:
    void fault(std::u16string_view member, std::string_view text) const { context_.fault(member, text); }
    void faultOf(std::string_view what, std::string_view text) const {
        context_.findings().fault(what, text);
    }

    void askQuestions() {
        const AskedObject rows = execute(connection_, "SELECT MAX(Art_Id) FROM Art");
        rows.expectMembers({u"Fields", u"EOF", u"BOF", u"RecordCount", u"AbsolutePosition", u"State",
                            u"MoveFirst", u"MoveNext", u"Close", u"Clone"});
        if (rows.read(u"RecordCount", &Dispatch::number) < 0) {
            context_.findings().advice(
                "Connection.CursorLocation",
                "los cursores son del servidor; con adUseClient las búsquedas ocupan la mitad");
        }
        const AskedObject fields = rows.child(u"Fields", "Fields", "");
        fields.expectMembers({u"Item", u"Count"});
        firstField(fields).expectMembers({u"Name", u"Value"});
        rows.run(u"Close");
    }

    // --- Writing, as the plug-in writes

    enum class First { Tabla, Limpiar };
    void begin(const Tabla& table, First first) const {
        const auto setTable = [&] {
            context_.ask(u"Tabla", "texto",
                         [&](const Dispatch& object) { object.put(u"Tabla", OwnedVariant(table.sNombre)); });
        };
        if (first == First::Tabla) setTable();
        context_.ask(u"Limpiar", "Long 0",
                     [](const Dispatch& object) { object.run(u"Limpiar", OwnedVariant(std::int32_t{0})); });
        if (first == First::Limpiar) setTable();
    }
    void add(const Cells& cells) const {
        constexpr std::string_view arguments =
            "sNombre (texto por referencia), nTipo (Long por referencia), vValor (Variant por referencia), nModo (Long "
            "por referencia)";
        for (const Cell& cell : cells) {
            const AskedObject fields = context_.child(u"Campos", "HostFieldList", "");
            fields.expectMembers({u"Agregar"});
            fields.ask(u"Agregar", arguments, [&](const Dispatch& object) {
                Bstr name(cell.column);
                auto kind = static_cast<std::int32_t>(cell.kind);
                OwnedVariant value(cell.value);
                std::int32_t mode = 2;
                object.call(u"Agregar", OwnedVariant::reference(name), OwnedVariant::reference(kind),
                            OwnedVariant::reference(value), OwnedVariant::reference(mode));
            });
        }
    }
    /// The last call of a write: what it answers, and what it leaves in the message.
    std::pair<OwnedVariant, std::string> end(std::u16string_view member, std::string_view condition) const {
        context_.ask(u"Condicion", "texto",
                     [&](const Dispatch& object) { object.put(u"Condicion", OwnedVariant(condition)); });
        Bstr message(untouched);
        OwnedVariant answer = context_.ask(member, textByReference, [&](const Dispatch& object) {
            return object.call(member, OwnedVariant::reference(message));
        });
        return {std::move(answer), message.utf8()};
    }
    /// False, told, where the host answers otherwise than with True.
    bool accepted(std::u16string_view member, std::string_view condition, std::string_view what) const {
        const auto [answer, message] = end(member, condition);
        const VARTYPE type = V_VT(&answer.raw());
        if (type != VT_BOOL && type != VT_I2 && type != VT_I4) {
            fault(member, "no devuelve un valor Boolean");
            return false;
        }
        if (toBoolean(windows::toVariant(answer.raw()), spanishLocale())) return true;
        fault(member, joined({"rechaza ", what, ": ", message}));
        return false;
    }

    std::string trialCondition(std::int32_t identifier) const {
        return " WHERE Art_Id = " + std::to_string(identifier);
    }
    bool insertTrial() const {
        begin(Art::tabla, First::Tabla);
        add({cell(Art::PVE, trialPrice), cell(Art::Estado, std::int16_t{1}),
             cell(Art::FechaEstadoDeLista, "03/04/2001"), cell(Art::Cal, std::int16_t{11}),
             cell(Art::Marca, std::int32_t{1}), cell(Art::Cod, trialCode), cell(Art::Des, trialText),
             cell(Art::PCO, std::int16_t{0}), cell(Art::Rod, std::int16_t{0}),
             cell(Art::Pas, std::int16_t{0}), cell(Art::Mat, std::int16_t{0}),
             cell(Art::TIPO, std::int16_t{1}), cell(Art::Alma, std::int16_t{1})});
        return accepted(u"Insertar", "", "un artículo nuevo");
    }
    std::optional<TrialRow> trialRow() const {
        const auto row = rowOf(connection_, joined({"SELECT * FROM Art WHERE Art_Cod = '", trialCode, "'"}),
                               {"Art_Id", "Art_Des", "art_Pve", "Art_FechaEstado"});
        if (!row) return {};
        const Locale& locale = spanishLocale();
        return TrialRow{toLong(row->at(0), locale), joinedText(row->at(1), locale),
                        toDouble(row->at(2), locale), row->at(3)};
    }
    bool isFound(std::string_view condition) const {
        return rowOf(connection_,
                     joined({"SELECT Art_Id FROM ART WHERE ART_COD = '", trialCode, "' AND ", condition}),
                     {"Art_Id"})
            .has_value();
    }

    void write() {
        if (!insertTrial()) return;
        const auto trial = trialRow();
        if (!trial) {
            fault(u"Insertar",
                  "la fila insertada no se ve por Conexion: debe escribir en esa misma conexión");
            return;
        }
        attempt([&] { examine(*trial); });
        attempt([&] { change(*trial); });
        attempt([&] { writeStock(trial->identifier); });
        attempt([&] { refuse(); });
        begin(Art::tabla, First::Tabla);
        if (!accepted(u"Borrar", trialCondition(trial->identifier), "borrar un artículo")) return;
        if (trialRow()) {
            fault(u"Borrar", "devuelve True y la fila sigue ahí");
            return;
        }
        insertTrial();  // for the roll back
    }

    void examine(const TrialRow& trial) const {
        const auto newest = rowOf(connection_, "SELECT MAX(Art_Id) AS Ultimo FROM Art", {"Ultimo"});
        if (!newest || toLong(newest->at(0), spanishLocale()) != trial.identifier) {
            fault(u"Insertar", "Art_Id del artículo nuevo no es el mayor de la tabla");
        }
        const AskedObject rows = execute(connection_, "SELECT * FROM Art WHERE Art_Cod = ''");
        const std::string name =
            firstField(rows.child(u"Fields", "Fields", "")).read(u"Name", &Dispatch::text);
        rows.run(u"Close");
        if (!equalIgnoringAsciiCase(name, "Art_Id")) {
            faultOf("Art", "la primera columna debe ser Art_Id y es " + name);
        }
        if (trial.text != trialText) {
            faultOf("HostFieldList.Agregar", "el tipo 3 (texto) no guarda el texto tal cual: " + trial.text);
        }
        if (trial.price != trialPrice) {
            faultOf("HostFieldList.Agregar", "el tipo 2 (decimal) guarda otro número que 12,5");
        }
        const bool date =
            isDate(trial.date, spanishLocale()) && dayMonthYear(trial.date, spanishLocale()) == "03/04/2001";
        if (!date) {
            faultOf("HostFieldList.Agregar",
                    "el tipo 4 (fecha DD/MM/YYYY) no guarda 03/04/2001 como 3 de abril: " +
                        joinedText(trial.date, spanishLocale()));
        } else if (!isFound("Art_FechaEstado<='03/04/2001 23:59:59'") ||
                   isFound("Art_FechaEstado<='04/03/2001 23:59:59'")) {
            faultOf("HostDatabase.Conexion", "no lee las fechas con el día primero (SET DATEFORMAT dmy)");
        }
        if (!rowOf(connection_, "SELECT Art_Id FROM Art WHERE Art_Cod = 'pxtarvo-prueba'", {"Art_Id"})) {
            faultOf("HostDatabase.Conexion",
                    "distingue mayúsculas al comparar textos (la intercalación debe ser _CI_)");
        }
    }

    void change(const TrialRow& trial) const {
        const std::string condition = trialCondition(trial.identifier);
        // A write that is begun again takes nothing along.
        begin(Art::tabla, First::Tabla);
        add({cell(Art::Des, "SOBRANTE")});
        begin(Art::tabla, First::Limpiar);
        add({cell(Art::PVE, changedPrice)});
        const auto [answer, message] = end(u"Ejecutar", condition);
        const auto changed = trialRow();
        if (!changed || changed->price != changedPrice) {
            const std::string why = message == untouched ? "" : ": " + message;
            fault(u"Ejecutar", "no cambia la fila" + why);
            return;
        }
        if (changed->text != trial.text) {
            fault(u"Limpiar", "quedan columnas de la escritura anterior");
        }
        begin(Art::tabla, First::Tabla);
        add({cell(Art::FechaEstado, sFechaServidor)});
        end(u"Ejecutar", condition);
        const auto dated = trialRow();
        if (!dated || dated->date == trial.date || !isDate(dated->date, spanishLocale())) {
            faultOf("HostFieldList.Agregar",
                    "el tipo 6 (expresión) no pone Getdate() en la sentencia tal cual");
        }
    }

    void writeStock(std::int32_t identifier) const {
        begin(Exis::tabla, First::Limpiar);
        Cells cells{cell(Exis::IdArt, identifier),       cell(Exis::CodArt, trialCode),
                    cell(Exis::Des, trialText),          cell(Exis::alma, std::int16_t{1}),
                    cell(Exis::Cantidad, 1.5),           cell(Exis::Kg, 1.5),
                    cell(Exis::Fentrada, sFechaServidor)};
        for (const Columna& column :
             {Exis::For, Exis::Pro, Exis::Largo, Exis::Ancho, Exis::Espesor, Exis::DMext, Exis::DMint,
              Exis::Lpc, Exis::Lac, Exis::KgReal, Exis::Kill}) {
            cells.push_back(cell(column, std::int16_t{0}));
        }
        cells.push_back(cell(Exis::Lote, ""));
        add(cells);
        if (!accepted(u"Insertar", "", "una fila de existencias")) return;
        begin(Exis::tabla, First::Tabla);
        accepted(u"Borrar",
                 joined({" WHERE Exis_IdArt = ", std::to_string(identifier), " OR Exis_Codart = '", trialCode,
                         "'"}),
                 "borrar existencias");
    }

    /// What no database can insert must come back as a refusal, with its reason.
    void refuse() const {
        begin(Art::tabla, First::Tabla);
        add({{"PXTARVO_NO_EXISTE", Tipo::Entero, std::int16_t{0}}});
        const auto [answer, message] = end(u"Insertar", "");
        if (toBoolean(windows::toVariant(answer.raw()), spanishLocale())) {
            fault(u"Insertar", "devuelve True cuando la base de datos rechaza la fila");
        } else if (message == untouched || message.empty()) {
            fault(u"Insertar", "no deja el motivo del rechazo en sMensaje (texto por referencia)");
        }
    }

    void expectRolledBack() const {
        const auto left = trialRow();
        if (!left) return;
        fault(u"Insertar", "escribe fuera de la transacción de Conexion");
        begin(Art::tabla, First::Tabla);
        end(u"Borrar", trialCondition(left->identifier));
    }

    AskedObject context_;
    AskedObject connection_;
};

void askParameters(const AskedObject& context) {
    const Dispatch parameters = context.read(u"Parametros", &Dispatch::object<>);
    if (!parameters) {
        context.findings().advice("HostDatabase.Parametros", "devuelve Nothing");
    } else {
        AskedObject(parameters, "HostParameters", context.findings()).expectMembers({u"Item"});
    }
}

}  // namespace

Dispatch checkContext(const Dispatch& object, Findings& findings) {
    const AskedObject context(object, std::string(databaseName), findings);
    Dispatch connection;
    try {
        context.expectMembers({u"Parametros", u"Usuario", u"Limpiar", u"Condicion", u"Campos", u"Tabla",
                               u"Conexion", u"Borrar", u"Ejecutar", u"Insertar"});
        attempt([&] { askParameters(context); });
        attempt([&] {
            try {
                object.number(u"Usuario");
            } catch (const RuntimeError& error) {
                if (error.is(ErrorNumber::MemberNotSupported)) throw NotAnswered{};
                context.fault(u"Usuario", "no es un número entero");
            }
        });
        attempt([&] {
            AskedObject asked = context.child(u"Conexion", "Connection", "");
            connection = asked.object();
            asked.expectMembers({u"Execute", u"BeginTrans", u"CommitTrans", u"RollbackTrans", u"State"});
            if (asked.read(u"State", &Dispatch::number) == adStateClosed) {
                context.fault(u"Conexion", "la conexión está cerrada");
            } else {
                ContextCheck(context, asked).run();
            }
        });
    } catch (const RuntimeError& error) {
        findings.fault(databaseName, described(error));
    }
    return connection;
}

}  // namespace pxtarvo::check
