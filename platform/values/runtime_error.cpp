#include "platform/values/runtime_error.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace pxtarvo {

namespace {

struct Description {
    std::int32_t number;
    std::string_view text;
};

/// Ascending by number. The texts are those of the platform in Spanish.
constexpr auto descriptions = std::to_array<Description>({
    {-2147467259, "Error no especificado"},
    {-2147418113, "Error catastrófico"},
    {-2147217913,
     "Un valor literal del comando no se pudo convertir al tipo correcto por una causa distinta del "
     "desbordamiento de datos."},
    {-2147217900, "El comando contenía uno o más errores."},
    {-2147217873, "Un valor infringió las restricciones de integridad de una columna o tabla."},
    {-2147217865, "La tabla especificada no existe."},
    {-2147168242, "No hay ninguna transacción activa."},
    {-2147168237, "No se pueden iniciar más transacciones en esta sesión."},
    {5, "Argumento o llamada a procedimiento no válidos"},
    {6, "Desbordamiento"},
    {7, "Memoria insuficiente"},
    {9, "El subíndice está fuera del intervalo"},
    {13, "No coinciden los tipos"},
    {52, "Nombre o número de archivo incorrecto"},
    {53, "No se encontró el archivo"},
    {54, "Modo de archivo incorrecto"},
    {55, "El archivo ya está abierto"},
    {57, "Error de E/S de dispositivo"},
    {61, "Disco lleno"},
    {62, "Se ha sobrepasado el final del archivo"},
    {67, "Demasiados archivos"},
    {70, "Permiso denegado"},
    {75, "Error de acceso a la ruta o al archivo"},
    {76, "No se encontró la ruta de acceso"},
    {91, "Variable de objeto o bloque With no establecido"},
    {94, "Uso no válido de Null"},
    {340, "El elemento de la matriz de controles no existe"},
    {380, "Valor de propiedad no válido"},
    {429, "El componente ActiveX no puede crear el objeto"},
    {438, "El objeto no admite esta propiedad o método"},
    {448, "No se encontró el argumento con nombre"},
    {449, "Argumento no opcional"},
    {450, "Número de argumentos incorrecto o asignación de propiedad no válida"},
    {3021,
     "El valor de BOF o EOF es True, o el actual registro se eliminó; la operación solicitada requiere un "
     "registro actual."},
    {3265,
     "No se encontró el elemento en la colección que corresponde con el nombre o el ordinal solicitado."},
    {3704, "La operación solicitada por la aplicación no está permitida si el objeto está cerrado."},
    {3705, "La operación solicitada por la aplicación no está permitida si el objeto está abierto."},
});

static_assert(std::ranges::is_sorted(descriptions, {}, &Description::number));

}  // namespace

std::string_view errorDescription(std::int32_t number) noexcept {
    const auto found = std::ranges::lower_bound(descriptions, number, {}, &Description::number);
    if (found == descriptions.end() || found->number != number) {
        return "Error definido por la aplicación o el objeto";
    }
    return found->text;
}

RuntimeError::RuntimeError(ErrorNumber number) noexcept
    : number_(static_cast<std::int32_t>(number)), common_(errorDescription(number_)) {}

RuntimeError::RuntimeError(std::int32_t number, std::string description)
    : number_(number), own_(std::make_shared<const std::string>(std::move(description))) {}

RuntimeError::RuntimeError(ErrorNumber number, std::string description)
    : RuntimeError(static_cast<std::int32_t>(number), std::move(description)) {}

RuntimeError caughtError() noexcept {
    try {
        throw;
    } catch (const RuntimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return RuntimeError(ErrorNumber::OutOfMemory);
    } catch (const std::exception& error) {
        try {
            return {ErrorNumber::Unexpected, error.what()};
        } catch (const std::bad_alloc&) {
            return RuntimeError(ErrorNumber::Unexpected);
        }
    } catch (...) {
        return RuntimeError(ErrorNumber::Unexpected);
    }
}

}  // namespace pxtarvo
