#include "devhost/record/recorder.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <type_traits>

#include "platform/values/conversion.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::string_view transactionNames[] = {"begin", "commit", "rollback"};
constexpr std::string_view iconNames[] = {"none", "information", "warning", "critical", "question"};

template <class Enum, std::size_t count>
std::string_view name(const std::string_view (&names)[count], Enum value) {
    return names[static_cast<std::size_t>(value)];
}

template <class Number>
void appendNumber(std::string& line, Number number) {
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    line.append(digits, end);
}

}  // namespace

std::shared_ptr<Recorder> Recorder::toFile(const std::string& path) {
    const auto* utf8 = reinterpret_cast<const char8_t*>(path.data());
    auto file = std::make_shared<std::ofstream>(std::filesystem::path(utf8, utf8 + path.size()),
                                                std::ios::binary | std::ios::trunc);
    const auto check = [file, path] {
        if (!*file) throw RuntimeError(ErrorNumber::PathFileAccess, "'" + path + "' cannot be written");
    };
    check();
    auto recorder =
        std::make_shared<Recorder>([file](std::string_view line) { *file << line << '\n'
                                                                         << std::flush; });
    recorder->checkWritten_ = check;
    return recorder;
}

void Recorder::start(std::string_view call) {
    line_ = "{\"call\":";
    text(call);
}

void Recorder::key(std::string_view name) {
    line_.append(",\"").append(name).append("\":");
}

void Recorder::text(std::string_view value) {
    line_ +=
        nlohmann::ordered_json(value).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void Recorder::field(std::string_view name, std::string_view value) {
    key(name);
    text(value);
}

void Recorder::value(const Variant& value) {
    value.visit([&](const auto& stored) {
        using Stored = std::decay_t<decltype(stored)>;
        if constexpr (std::is_same_v<Stored, Null>) {
            line_ += "null";
        } else if constexpr (std::is_same_v<Stored, bool>) {
            line_ += stored ? "true" : "false";
        } else if constexpr (std::is_arithmetic_v<Stored>) {
            appendNumber(line_, stored);
        } else if constexpr (std::is_same_v<Stored, Currency> || std::is_same_v<Stored, Decimal>) {
            appendNumber(line_, toDouble(value, spanishLocale()));
        } else {
            text(toText(value, spanishLocale()));
        }
    });
}

void Recorder::end(const RuntimeError* error) {
    if (error) {
        key("error");
        line_ += "{\"number\":";
        appendNumber(line_, error->number());
        field("description", error->description());
        line_ += '}';
    }
    line_ += '}';
    sink_(line_);
}

void Recorder::call(std::string_view name, std::string_view key, std::string_view value,
                    const RuntimeError* error) {
    start(name);
    field(key, value);
    end(error);
}

void Recorder::transaction(TransactionCall call, const RuntimeError* error) {
    start(name(transactionNames, call));
    end(error);
}

void Recorder::write(const HostWrite& write, bool ok, const RuntimeError* error) {
    start(name(writeNames, write.kind));
    field("table", write.table);
    if (write.kind != WriteKind::Insert) field("where", write.condition);
    if (write.kind != WriteKind::Delete) {
        key("columns");
        char separator = '[';
        for (const WrittenColumn& column : write.columns) {
            line_ += std::exchange(separator, ',');
            line_ += '[';
            text(column.name);
            line_ += ',';
            appendNumber(line_, column.nTipo);
            line_ += ',';
            value(column.value);
            line_ += ']';
        }
        line_ += separator == '[' ? "[]" : "]";
    }
    if (write.kind != WriteKind::Update && !error) {
        key("ok");
        line_ += ok ? "true" : "false";
    }
    end(error);
}

void Recorder::message(const Message& message, MessageAnswer answer) {
    const bool question = message.buttons == MessageButtons::YesNo;
    start("message");
    field("text", message.text);
    field("title", message.title);
    field("buttons", question ? "yesno" : "ok");
    field("icon", name(iconNames, message.icon));
    if (question && message.defaultsToNo) field("default", "no");
    if (question) field("answer", answer == MessageAnswer::Yes ? "yes" : "no");
    end();
}

void Recorder::search(const Busqueda& busqueda, std::string_view answer, const RuntimeError* error) {
    start("search");
    field("sql", busqueda.sSQL);
    field("column", busqueda.sCampo);
    field("title", busqueda.sTituloVentana);
    if (!error) field("answer", answer);
    end(error);
}

}  // namespace pxtarvo::devhost
