#pragma once

// What differs from window to window in the handling of its fields and keys: one table of data each.

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

namespace pxtarvo {

/// What happens when a text box gains the focus, before it takes the focus colour.
enum class AlEntrar {
    Nada,
    SoltarProveedor,  ///< the supplier identifier becomes 0
    QuitarBarras,     ///< every "/" leaves the text
};

/// What happens when a text box with a text in it loses the focus.
enum class AlSalir {
    Nada,
    BuscarProveedor,  ///< its text is a supplier code
    BuscarMarca,      ///< its text is a brand code
    Fecha,            ///< shown as a date
    Importe,          ///< shown as an amount
};

/// Which keys the helper lets through.
enum class Filtro { Ninguno, Numero, Fecha };

/// One element of the window's text boxes. An element without a rule has no special treatment.
struct ReglaCampo {
    int Index = 0;
    AlEntrar alEntrar = AlEntrar::Nada;
    AlSalir alSalir = AlSalir::Nada;
    Filtro filtro = Filtro::Ninguno;
};

struct ReglasVentana {
    std::span<const ReglaCampo> campos;
    int nProveedor = 0;             ///< index of the supplier code; its name stands in the next one
    int nMarca = 0;                 ///< index of the brand code; its description stands in the next one
    std::string_view sTeclaTab;     ///< what Enter sends to move the focus on
    bool bEsperarTab = false;       ///< whether it waits until that has been worked off
    bool bPaginasSinEfecto = true;  ///< whether Page Up and Page Down do nothing, unlike any other key

    ReglaCampo campo(int Index) const {
        const auto found = std::ranges::find(campos, Index, &ReglaCampo::Index);
        return found == campos.end() ? ReglaCampo{Index} : *found;
    }
};

/// Indexes 7 to 12 belong to fields that the window does not have; their rules are kept all the same.
inline constexpr ReglaCampo camposImportacion[] = {
    {1, AlEntrar::SoltarProveedor, AlSalir::BuscarProveedor, Filtro::Numero},
    {2, AlEntrar::QuitarBarras, AlSalir::Fecha, Filtro::Fecha},
    {3, AlEntrar::Nada, AlSalir::BuscarMarca, Filtro::Ninguno},
    {8, AlEntrar::QuitarBarras, AlSalir::Fecha, Filtro::Fecha},
    {9, AlEntrar::Nada, AlSalir::Nada, Filtro::Fecha},
    {10, AlEntrar::Nada, AlSalir::Nada, Filtro::Fecha},
    {11, AlEntrar::Nada, AlSalir::Importe, Filtro::Ninguno},
    {12, AlEntrar::Nada, AlSalir::Importe, Filtro::Ninguno},
    {7, AlEntrar::QuitarBarras, AlSalir::Fecha, Filtro::Fecha},
};
inline constexpr ReglasVentana reglasImportacion{camposImportacion, 1, 3, "\t", false};

/// The import window's rules but for the last one: index 7 is a plain text here.
inline constexpr ReglasVentana reglasExistencias{
    std::span(camposImportacion).first<std::size(camposImportacion) - 1>(), 1, 3, "\t", false};

/// Index 0 would be a supplier code, which this window does not have; 1 is a date.
inline constexpr ReglaCampo camposBorrado[] = {
    {0, AlEntrar::Nada, AlSalir::BuscarProveedor, Filtro::Ninguno},
    {1, AlEntrar::QuitarBarras, AlSalir::Fecha, Filtro::Fecha},
    {3, AlEntrar::Nada, AlSalir::BuscarMarca, Filtro::Ninguno},
};
inline constexpr ReglasVentana reglasBorrado{camposBorrado, 0, 3, "{TAB}", true, false};

}  // namespace pxtarvo
