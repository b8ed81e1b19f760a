#include "import/discount_codes.h"

#include <algorithm>
#include <span>

namespace pxtarvo {

namespace {

struct Clase {
    std::span<const std::string_view> grupos;
    std::string_view sTexto;
};

constexpr std::string_view gruposC[] = {"C", "A", "11", "74", "84"};
constexpr std::string_view gruposM[] = {"M", "12", "64", "89"};
constexpr Clase clases[] = {
    {gruposC, "TD 15 - UR 24 - UN 32 - ST 37 - CP Neto - WR 35"},
    {gruposM, "TD 15 - UR 35 - UN 40 - ST 50 - CP Neto - WR 35"},
};

}  // namespace

std::optional<std::string_view> textoDescuento(std::string_view sGrupo) {
    for (const Clase& clase : clases) {
        if (std::ranges::find(clase.grupos, sGrupo) != clase.grupos.end()) return clase.sTexto;
    }
    return std::nullopt;
}

}  // namespace pxtarvo
