#include "devhost/report/run_report.h"

#include <utility>

#include "platform/values/number_text.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

struct Advice {
    std::string_view reasonBegins;
    std::string_view text;
};

std::string_view described(ErrorNumber number) {
    return errorDescription(static_cast<std::int32_t>(number));
}

/// "las filas 1 a 11", "la fila 1".
std::string rowsUpTo(const RunWords& words, std::int32_t last) {
    if (last == 1) return joined({"la ", words.row, " 1"});
    return joined({"las ", words.rows, " 1 a ", plainNumber(last)});
}

struct Staying {
    std::string text;  ///< empty for nothing
    bool plural = false;
};

/// What stays written of a run that did not end well.
Staying staying(const RunReport& report) {
    if (!report.facts.changed) return {};
    const std::int32_t whole = report.stoppedInRow ? report.lastRow - 1 : report.lastRow;
    Staying stays;
    if (whole > 0) {
        stays.text = rowsUpTo(report.words, whole);
        stays.plural = whole > 1;
    }
    if (!report.facts.retired.empty()) {
        stays.plural = stays.plural || !stays.text.empty();
        stays.text.append(stays.text.empty() ? "" : " y ").append("la baja de la marca");
    }
    if (stays.text.empty()) stays.text = "una parte";
    return stays;
}

}  // namespace

std::string verdict(const RunReport& report) {
    const bool would = report.rehearsal;
    if (report.endedWell) return std::string(would ? report.words.wouldDo : report.words.done);
    std::string text;
    if (report.stoppedInRow) {
        text = joined({would ? "Se detendrá en la " : "Se detuvo en la ", report.words.row, " ",
                       plainNumber(report.lastRow)});
    } else if (report.lastRow > 0) {
        text = joined({would ? "Se detendrá tras la " : "Se detuvo tras la ", report.words.row, " ",
                       plainNumber(report.lastRow)});
    } else {
        text = would ? "No empezará" : "No empezó";
    }
    const Staying stays = staying(report);
    if (stays.text.empty()) return text + (would ? ": no quedará nada" : ": no ha quedado nada");
    const std::string_view verb = would ? (stays.plural ? "quedarán escritas " : "quedará escrita ")
                                        : (stays.plural ? "han quedado escritas " : "ha quedado escrita ");
    return joined({text, ": ", verb, stays.text});
}

std::string_view advice(const ListFault& fault) {
    const Advice advices[] = {
        {described(ErrorNumber::TypeMismatch),
         "Escriba en esa columna un valor del tipo que la tarifa pide."},
        {described(ErrorNumber::InvalidUseOfNull), "La celda está vacía: escriba su valor o quite la fila."},
        {described(ErrorNumber::Overflow), "El número no cabe: corríjalo."},
        {described(ErrorNumber::ItemNotFound), "A la lista le faltan columnas: no es de ese año."},
        {described(ErrorNumber::SubscriptOutOfRange), "A la línea le faltan campos: complétela o quítela."},
    };
    if (fault.column.empty() &&
        std::string_view(fault.reason).starts_with(described(ErrorNumber::InvalidUseOfNull))) {
        return "El artículo no tiene precio en la base de datos: escríbalo allí.";
    }
    if (fault.code.find('\'') != fault.code.npos || fault.value.find('\'') != fault.value.npos) {
        return "Quite el apóstrofo.";
    }
    for (const Advice& one : advices) {
        if (std::string_view(fault.reason).starts_with(one.reasonBegins)) return one.text;
    }
    return "Corrija la fila o quítela de la lista.";
}

std::vector<std::string> lookSentences(const ListFile& list) {
    std::vector<std::string> sentences;
    if (!list.look) return sentences;
    for (const LookFault fault : list.look->faults) {
        switch (fault) {
            case LookFault::TooFewColumns:
                sentences.push_back(joined(
                    {"Tiene ", plainNumber(list.look->columns), " columnas: son menos de las que se leen."}));
                break;
            case LookFault::NoCodes:
                sentences.emplace_back("Donde deben estar los códigos no los hay.");
                break;
            case LookFault::NoPrices:
                sentences.emplace_back("Donde deben estar los precios no hay números.");
                break;
            case LookFault::NoDescriptions:
                sentences.emplace_back("Donde deben estar las descripciones no hay textos.");
                break;
        }
    }
    return sentences;
}

}  // namespace pxtarvo::devhost
