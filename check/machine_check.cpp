#include "check/asked_object.h"
#include "check/host_check.h"
#include "check/registered_class.h"

namespace pxtarvo::check {

namespace {

using windows::Bstr;
using windows::Dispatch;
using windows::OwnedVariant;

constexpr std::int32_t providerNotFound = 3706;

void checkAccessProvider(Findings& findings) {
    constexpr std::string_view provider = "Microsoft.Jet.OLEDB.4.0";
    const Dispatch connection = created("ADODB.Connection", findings);
    if (!connection) return;
    try {
        // A file that is not there: the provider says so, and without one ADO does.
        connection.put(u"ConnectionString", OwnedVariant(std::string_view(
                                                "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\TARVO\\"
                                                "PXTarvoCheck-no-existe.mdb;Persist Security Info=False")));
        connection.run(u"Open", OwnedVariant(std::string_view()), OwnedVariant(std::string_view()),
                       OwnedVariant(std::string_view()), OwnedVariant(std::int32_t{-1}));
    } catch (const RuntimeError& error) {
        if (error.is(ErrorNumber::ProviderFailure)) return;  // the provider's own answer
        if (error.number() != providerNotFound && !error.is(ErrorNumber::CannotCreateObject)) {
            return findings.fault("ADODB.Connection", "no funciona, " + described(error));
        }
        findings.fault(provider,
                       sizeof(void*) == 8
                           ? "el proveedor de Access solo existe en 32 bits: este programa no puede importar "
                             "listas de Access"
                           : "el proveedor de Access no está instalado");
    }
}

void checkSpreadsheet(Findings& findings) {
    const Bstr name("Excel.Application");
    CLSID type;
    if (FAILED(CLSIDFromProgID(name.get(), &type))) {
        findings.fault("Excel.Application",
                       "no está instalado: la lista de códigos de barras no se puede importar");
    }
}

void checkFolders(Findings& findings) {
    for (const char* folder : {"C:\\TARVO", "C:\\TARVO\\STOCK"}) {
        const Bstr path{std::string_view(folder)};
        const DWORD kind = GetFileAttributesW(path.get());
        if (kind == INVALID_FILE_ATTRIBUTES || !(kind & FILE_ATTRIBUTE_DIRECTORY)) {
            findings.fault(folder, "falta la carpeta");
        }
    }
}

}  // namespace

void checkMachine(Findings& findings) {
    checkAccessProvider(findings);
    checkSpreadsheet(findings);
    checkFolders(findings);
}

}  // namespace pxtarvo::check
