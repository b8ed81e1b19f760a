// PXTarvoCheck.exe: the check of a host whose context can be created by name, or of the machine alone.


#include "check/host_check.h"
#include "check/registered_class.h"
#include "platform/values/text.h"

namespace {

using namespace pxtarvo;

constexpr std::string_view usage =
    "PXTarvoCheck.exe [IDENTIFICADOR]\r\n"
    "Comprueba todo lo que PXTarvo pide a un programa anfitrión y a este equipo, y dice qué falta.\r\n"
    "IDENTIFICADOR es el nombre (ProgID) de la clase del anfitrión que crea su contexto (HostDatabase);\r\n"
    "sin él se comprueban solo HostFields.FieldHelper, los proveedores y las carpetas.\r\n"
    "Las filas de prueba se escriben en una transacción que se deshace. Debe ser de los mismos bits que el\r\n"
    "anfitrión. Devuelve el número de fallos; 255 cuando el contexto no se puede crear.\r\n";
constexpr int notChecked = 255;

/// To the console in its own characters, to a file in UTF-8.
void write(std::string_view text) {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD written = 0;
    DWORD mode = 0;
    if (GetConsoleMode(output, &mode)) {
        const std::u16string wide = toUtf16(text);
        WriteConsoleW(output, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
    } else {
        WriteFile(output, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    }
}

int run(const std::string& identifier) {
    windows::Dispatch context;
    if (!identifier.empty()) {
        try {
            context = windows::Dispatch::create(identifier);
        } catch (const RuntimeError& error) {
            write(identifier + ": " + check::whyNotCreated(identifier, error) + "\r\n");
            return notChecked;
        }
    }
    const check::Findings findings = check::checkHost(context);
    write(findings.report());
    return findings.faults();
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    const std::string first =
        count > 1 ? toUtf8(reinterpret_cast<const char16_t*>(arguments[1])) : std::string();
    if (count > 2 || first.starts_with("-") || first.starts_with("/")) {
        write(usage);
        return first == "--help" || first == "/?" ? 0 : notChecked;
    }
    CoInitialize(nullptr);
    try {
        return run(first);
    } catch (const std::exception& error) {
        write(std::string(error.what()) + "\r\n");
        return notChecked;
    }
}
