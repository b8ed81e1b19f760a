#pragma once

// The host's tables as this system knows them: each column once, spelled as the writes spell it, with the
// kind in which it is written. Statements spell names in their own ways; the database ignores case in names.

#include <cstdint>
#include <span>
#include <string_view>

namespace pxtarvo {

/// Value kinds of a written column, in the table writer's numbers.
enum class Tipo : std::int32_t {
    Booleano = 0,
    Entero = 1,
    Decimal = 2,
    Texto = 3,
    Fecha = 4,      ///< a date as "DD/MM/YYYY" text
    Expresion = 6,  ///< an SQL expression, put into the statement as it stands
};

/// What the database itself does with a column.
enum class Papel {
    Dato,
    Identidad,  ///< numbered by the database; the table's first column, read by position
    Clave,      ///< identifies the row, given by the writer
};

struct Columna {
    std::string_view sNombre;
    Tipo nTipo = Tipo::Entero;
    Papel papel = Papel::Dato;
};

struct Tabla {
    std::string_view sNombre;
    std::span<const Columna> columnas;

    /// The column of this exact name, which the table must have.
    const Columna& columna(std::string_view sNombre) const;
};

/// The expression for the database server's current date and time.
inline constexpr std::string_view sFechaServidor = "Getdate()";

/// Articles.
namespace Art {
inline constexpr Columna Id{"Art_Id", Tipo::Entero, Papel::Identidad};
inline constexpr Columna Cod{"ART_Cod", Tipo::Texto};
inline constexpr Columna Des{"ART_DES", Tipo::Texto};
inline constexpr Columna PVE{"ART_PVE", Tipo::Decimal};
inline constexpr Columna PCO{"ART_PCO", Tipo::Decimal};
inline constexpr Columna Rod{"ART_Rod"};
inline constexpr Columna Pas{"ART_Pas"};
inline constexpr Columna Mat{"ART_Mat"};
inline constexpr Columna TIPO{"ART_TIPO"};
inline constexpr Columna Alma{"Art_Alma"};
/// Two brand columns: which one a statement names depends on the list.
inline constexpr Columna Marca{"Art_Marca"};
inline constexpr Columna Mar{"Art_Mar"};
/// 0 active, any other value retired.
inline constexpr Columna Estado{"Art_Estado"};
inline constexpr Columna FechaEstado{"Art_FechaEstado", Tipo::Expresion};
/// The same column, written with a date of the list's own.
inline constexpr Columna FechaEstadoDeLista{FechaEstado.sNombre, Tipo::Fecha};
inline constexpr Columna Cal{"Art_Cal"};
inline constexpr Columna barCode{"Art_barCode", Tipo::Texto};
inline constexpr Columna FAm{"Art_FAm"};
inline constexpr Columna columnas[] = {Id,   Cod,   Des, PVE,    PCO,         Rod, Pas,     Mat, TIPO,
                                       Alma, Marca, Mar, Estado, FechaEstado, Cal, barCode, FAm};
inline constexpr Tabla tabla{"Art", columnas};
}  // namespace Art

/// Extra article data, one row per article.
namespace Aat {
inline constexpr Columna Id{"Aat_Id", Tipo::Entero, Papel::Clave};
inline constexpr Columna C01{"Aat_C01", Tipo::Texto};
inline constexpr Columna columnas[] = {Id, C01};
inline constexpr Tabla tabla{"Aat", columnas};
}  // namespace Aat

/// An article as one supplier sells it.
namespace ArtPro {
inline constexpr Columna Id{"ARP_Id", Tipo::Entero, Papel::Identidad};
inline constexpr Columna Ida{"ARP_Ida"};
inline constexpr Columna Idp{"ARP_Idp"};
inline constexpr Columna Cop{"ARP_Cop", Tipo::Texto};
inline constexpr Columna des{"ARP_des", Tipo::Texto};
inline constexpr Columna Precio{"Arp_Precio", Tipo::Decimal};
inline constexpr Columna Descuento{"Arp_Descuento"};
inline constexpr Columna columnas[] = {Id, Ida, Idp, Cop, des, Precio, Descuento};
inline constexpr Tabla tabla{"ArtPro", columnas};
}  // namespace ArtPro

/// Stock records, one or more per article and warehouse.
namespace Exis {
inline constexpr Columna Id{"Exis_Id", Tipo::Entero, Papel::Identidad};
inline constexpr Columna IdArt{"Exis_IdArt"};
inline constexpr Columna CodArt{"Exis_CodArt", Tipo::Texto};
inline constexpr Columna Des{"Exis_Des", Tipo::Texto};
inline constexpr Columna alma{"Exis_alma"};
inline constexpr Columna Cantidad{"Exis_Cantidad", Tipo::Decimal};
inline constexpr Columna Kg{"Exis_Kg", Tipo::Decimal};
inline constexpr Columna Fentrada{"Exis_Fentrada", Tipo::Expresion};
inline constexpr Columna For{"Exis_For"};
inline constexpr Columna Pro{"Exis_Pro"};
inline constexpr Columna Largo{"Exis_Largo"};
inline constexpr Columna Ancho{"Exis_Ancho"};
inline constexpr Columna Espesor{"Exis_Espesor"};
inline constexpr Columna DMext{"Exis_DMext"};
inline constexpr Columna DMint{"Exis_DMint"};
inline constexpr Columna Lpc{"Exis_Lpc"};
inline constexpr Columna Lac{"Exis_Lac"};
inline constexpr Columna KgReal{"Exis_KgReal"};
inline constexpr Columna Kill{"Exis_Kill", Tipo::Booleano};
inline constexpr Columna Lote{"Exis_Lote", Tipo::Texto};
inline constexpr Columna columnas[] = {Id,       IdArt, CodArt, Des,    alma,  Cantidad, Kg,
                                       Fentrada, For,   Pro,    Largo,  Ancho, Espesor,  DMext,
                                       DMint,    Lpc,   Lac,    KgReal, Kill,  Lote};
inline constexpr Tabla tabla{"Exis", columnas};
}  // namespace Exis

/// Stock movement history.
namespace Hexis {
inline constexpr Columna Tipo{"Hexis_Tipo", pxtarvo::Tipo::Texto};
inline constexpr Columna alma{"Hexis_alma"};
inline constexpr Columna idArt{"Hexis_idArt"};
inline constexpr Columna Fecha{"Hexis_Fecha", pxtarvo::Tipo::Expresion};
inline constexpr Columna Cantidad{"Hexis_Cantidad", pxtarvo::Tipo::Decimal};
inline constexpr Columna Unidades{"Hexis_Unidades", pxtarvo::Tipo::Decimal};
inline constexpr Columna Importe{"Hexis_Importe"};
inline constexpr Columna Lac{"Hexis_Lac"};
inline constexpr Columna Lav{"Hexis_Lav"};
inline constexpr Columna Com{"Hexis_Com", pxtarvo::Tipo::Texto};
inline constexpr Columna For{"Hexis_For"};
inline constexpr Columna Fac{"Hexis_Fac"};
inline constexpr Columna Largo{"Hexis_Largo"};
inline constexpr Columna Ancho{"Hexis_Ancho"};
inline constexpr Columna Espesor{"Hexis_Espesor"};
inline constexpr Columna DMext{"Hexis_DMext"};
inline constexpr Columna DMint{"Hexis_DMint"};
inline constexpr Columna Precio{"Hexis_Precio"};
inline constexpr Columna Usu{"Hexis_Usu"};
inline constexpr Columna Exis{"Hexis_Exis"};
inline constexpr Columna Lma{"Hexis_Lma"};
inline constexpr Columna columnas[] = {Tipo,    alma,  idArt, Fecha,  Cantidad, Unidades, Importe,
                                       Lac,     Lav,   Com,   For,    Fac,      Largo,    Ancho,
                                       Espesor, DMext, DMint, Precio, Usu,      Exis,     Lma};
inline constexpr Tabla tabla{"Hexis", columnas};
}  // namespace Hexis

/// Places of articles in the warehouse.
namespace Ubi {
inline constexpr Columna Id{"Ubi_Id", Tipo::Entero, Papel::Identidad};
/// An article identifier, written with the text kind all the same.
inline constexpr Columna IdArt{"Ubi_IdArt", Tipo::Texto};
inline constexpr Columna IdAlm{"Ubi_IdAlm"};
inline constexpr Columna Pasillo{"Ubi_Pasillo", Tipo::Texto};
inline constexpr Columna ExMin{"Ubi_ExMin", Tipo::Decimal};
inline constexpr Columna columnas[] = {Id, IdArt, IdAlm, Pasillo, ExMin};
inline constexpr Tabla tabla{"Ubi", columnas};
}  // namespace Ubi

/// Suppliers; read only.
namespace Pro {
inline constexpr Columna columnas[] = {{"Pro_ID", Tipo::Entero, Papel::Identidad},
                                       {"Pro_COD"},
                                       {"Pro_NOM", Tipo::Texto},
                                       {"Pro_APE1", Tipo::Texto},
                                       {"Pro_APE2", Tipo::Texto},
                                       {"Pro_TIPDOC"},
                                       {"Pro_comer", Tipo::Texto}};
inline constexpr Tabla tabla{"Pro", columnas};
}  // namespace Pro

/// Brands; read only.
namespace Marcas {
inline constexpr Columna columnas[] = {{"Marca_ID", Tipo::Entero, Papel::Identidad},
                                       {"Marca_Des", Tipo::Texto},
                                       {"Marca_CodAbrev", Tipo::Texto}};
inline constexpr Tabla tabla{"Marcas", columnas};
}  // namespace Marcas

/// Families; read only.
namespace Fam {
inline constexpr Columna columnas[] = {{"Fam_Id", Tipo::Entero, Papel::Identidad}, {"FAM_DES", Tipo::Texto}};
inline constexpr Tabla tabla{"Fam", columnas};
}  // namespace Fam

/// Movement tables, of which only the reference to the article is read: quotations, orders, delivery notes,
/// compositions. `lac` refers by code, the others by identifier.
namespace Movimientos {
inline constexpr Columna columnasLapr[] = {{"Lapr_IdArt"}};
inline constexpr Columna columnasPedli[] = {{"PedLi_IdArt"}};
inline constexpr Columna columnasLav[] = {{"lav_idart"}};
inline constexpr Columna columnasLpc[] = {{"Lpc_IdArt"}};
inline constexpr Columna columnasLac[] = {{"lac_codart", Tipo::Texto}};
inline constexpr Tabla Lapr{"Lapr", columnasLapr};
inline constexpr Tabla Pedli{"Pedli", columnasPedli};
inline constexpr Tabla lav{"lav", columnasLav};
inline constexpr Tabla Lpc{"Lpc", columnasLpc};
inline constexpr Tabla lac{"lac", columnasLac};
}  // namespace Movimientos

/// Every table above.
inline constexpr Tabla tablasHost[] = {
    Art::tabla,         Aat::tabla,       ArtPro::tabla,    Exis::tabla,     Hexis::tabla,
    Ubi::tabla,         Pro::tabla,       Marcas::tabla,    Fam::tabla,      Movimientos::Lapr,
    Movimientos::Pedli, Movimientos::lav, Movimientos::Lpc, Movimientos::lac};

}  // namespace pxtarvo
