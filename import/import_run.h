#pragma once

// What the imports of lists share: what they keep from row to row, and their steps.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "host/row_write.h"
#include "import/import_view.h"
#include "platform/values/conversion.h"

namespace pxtarvo {

/// One import of a list. None of the steps traps an error where nothing else is said.
class Corrida {
  public:
    explicit Corrida(VistaImportacion ventana);

  protected:
    ~Corrida() = default;

    /// A supplier's row of the article.
    struct FilaProveedor {
        Variant vCodigo;
        Variant vDescripcion;
        Variant vPrecio;
        Variant vDescuento;
    };

    /// The columns by which articles are looked up, as the statements spell them.
    static constexpr std::string_view sCodigoArticulo = "Art_Cod";
    static constexpr std::string_view sCodigoBarrasArticulo = "Art_barCode";
    static constexpr std::int16_t nCero = 0;
    static constexpr std::int16_t nUno = 1;

    /// Opens the source connection. False, after the message, where it does not open.
    bool abrirOrigen();
    void consultarOrigen(Recordset& rsOrigen, const std::string& sSQL);
    /// Whose transaction a run ends: its own, which it begins, or the host's.
    enum class Transaccion { Propia, DelAnfitrion };

    /// Runs `filas` under the trap, ends the transaction as it ended, tells the user and closes the window.
    void correr(Transaccion transaccion, const std::function<void()>& filas);
    /// What the user reads of an error that stopped the run.
    std::string textoError(const RuntimeError& error) const;
    void retirarArticulos(std::string_view sCampoMarca, std::int32_t IdMarca);
    void mostrarProgreso(std::string_view sCodigo);
    ObjectRef<Recordset> buscarArticulo(std::string_view sColumna, std::string_view sValor);
    /// The columns that every new article has.
    static void agregarConstantes(EscrituraFila& escritura);
    /// The article just inserted.
    std::int32_t ultimoArticulo();
    /// The supplier's row of the article, 0 where there is none.
    std::int32_t buscarArtPro();
    /// Adds what a supplier's row is written with, and inserts it with the rest or updates `IdArtPro` (not
    /// 0). False where the host refuses the insertion.
    bool escribirProveedor(const ObjectRef<HostDatabase>& bd, const FilaProveedor& fila,
                           std::int32_t IdArtPro);

    const Locale& locale() const { return ventana_.platform.locale(); }
    std::string texto(const Variant& valor) const { return joinedText(valor, locale()); }

    VistaImportacion ventana_;
    double nFila_ = 0;        ///< 1-based; 0 before the first row
    std::int32_t IdArt_ = 0;  ///< the row's article, 0 while it is not known to exist
    std::string sMensaje_;    ///< what the host left at the last insertion; the next one hands it over
};

}  // namespace pxtarvo
