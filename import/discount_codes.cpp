#include "import/discount_codes.h"

#include <algorithm>
#include <span>

namespace pxtarvo {

namespace {

template <class Valor>
struct Clase {
    std::span<const std::string_view> grupos;
    Valor valor;
};

constexpr std::string_view gruposC[] = {"C", "A", "11", "74", "84"};
constexpr std::string_view gruposM[] = {"M", "12", "64", "89"};
constexpr std::string_view gruposM2006[] = {"M", "12", "64", "65", "89"};

constexpr Clase<std::string_view> textos[] = {
    {gruposC, "TD 15 - UR 24 - UN 32 - ST 37 - CP Neto - WR 35"},
    {gruposM, "TD 15 - UR 35 - UN 40 - ST 50 - CP Neto - WR 35"},
};
constexpr Clase<std::int16_t> porcentajes[] = {{gruposC, 37}, {gruposM2006, 50}};

template <class Valor>
std::optional<Valor> buscar(std::span<const Clase<Valor>> clases, std::string_view sGrupo) {
    for (const Clase<Valor>& clase : clases) {
        if (std::ranges::find(clase.grupos, sGrupo) != clase.grupos.end()) return clase.valor;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string_view> textoDescuento(std::string_view sGrupo) {
    return buscar<std::string_view>(textos, sGrupo);
}

std::int16_t porcentajeDescuento(std::string_view sGrupo) {
    return buscar<std::int16_t>(porcentajes, sGrupo).value_or(0);
}

}  // namespace pxtarvo
