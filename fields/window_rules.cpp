#include "fields/window_rules.h"

#include <algorithm>

namespace pxtarvo {

ReglaCampo ReglasVentana::campo(int Index) const {
    const auto found = std::ranges::find(campos, Index, &ReglaCampo::Index);
    return found == campos.end() ? ReglaCampo{Index} : *found;
}

}  // namespace pxtarvo
