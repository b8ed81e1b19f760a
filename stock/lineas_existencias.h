#pragma once

// The lines of the stock file as the supplier wants them: fixed columns, counted in characters. Every line
// has 52 of them as long as its values fit; a longer value is written whole and widens its line.
//
//   1-10   client code
//   11-25  article code, or what frames the file: "BEGFILE", "ENDFILE"
//   26-33  date as DDMMYYYY, blank in the frame
//   34-40  quantity, blank in the frame
//   41-43  sales organisation
//   44-52  shipping address

#include <string>
#include <string_view>

#include "platform/values/clock.h"

namespace pxtarvo {

class LineasExistencias {
  public:
    /// What all lines share; each is written as it is given.
    LineasExistencias(std::string_view sCliente, std::string_view sOrganizacion, std::string_view sDireccion);

    /// The line that opens the file.
    std::string inicio() const { return linea("BEGFILE", "", ""); }
    /// One article's line. Of the code, without blanks around it, at most 15 characters are written. The
    /// quantity loses its sign and is rounded to a whole number, halves away from zero; 6 for an infinity or
    /// NaN.
    std::string articulo(std::string_view sCodigo, const CalendarTime& fecha, double nCantidad) const;
    /// The line that closes the file.
    std::string fin() const { return linea("ENDFILE", "", ""); }

  private:
    std::string linea(std::string_view sCodigo, std::string_view sFecha, std::string_view sCantidad) const;

    std::string sCliente_;  ///< as it stands in its columns, so below
    std::string sOrganizacion_;
    std::string sDireccion_;
};

}  // namespace pxtarvo
