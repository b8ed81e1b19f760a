#pragma once

// The module mdoPXTarvo: the instance through which every window reaches the host, and the file selection.

#include <memory>
#include <string>
#include <string_view>

#include "host/host_database.h"
#include "host/host_field_helper.h"
#include "platform/platform.h"

namespace pxtarvo {

/// What the newest instance of the public class answers with.
class Instancia {
  public:
    virtual ~Instancia() = default;
    /// The context object last handed in by the host; empty until then.
    virtual ObjectRef<HostDatabase> MyBd() const = 0;
    virtual Platform& platform() const = 0;
    /// A new field helper of the host's library; 429 where the host has none.
    virtual ObjectRef<HostFieldHelper> crearAyuda() const = 0;
};

/// Makes `instancia` the calling thread's goInstancia, releasing the one before. Nothing ever clears it, not
/// the end of the thread either: the instance and the context that it holds stay for the process's lifetime.
void guardarInstancia(std::shared_ptr<Instancia> instancia);

/// The calling thread's instance; 91 before the first one was made.
const Instancia& goInstancia();

/// The host's context, read afresh: call it right before each use and keep nothing. 91 at the first use of an
/// empty one.
ObjectRef<HostDatabase> MyBd();

/// Runs `sSQL` on the host's connection, both read afresh. Whatever cursors the host works with, a result
/// with rows knows its count and can be walked again and cloned.
ObjectRef<Recordset> consultar(std::string_view sSQL);

/// Rolls back the transaction on the host's connection, both read afresh, also when memory runs out
/// meanwhile. A run that could not begin its own (`bComenzada` false) rolls back too, what another one began;
/// there a refusal is none, so that the run can tell why it did not begin.
void deshacer(bool bComenzada = true);

/// Shows the open-file dialog in `sDirectorio`. `sFiltro` goes to the dialog unchanged; empty stands for
/// spreadsheet workbooks. The chosen path without blanks at both ends, or empty when cancelled; raises
/// nothing.
std::string SeleccionarFichero(std::string_view sDirectorio, std::string_view sFiltro,
                               std::string_view sTitulo);

/// What a window's "..." button does: SeleccionarFichero in the plug-in's own folder. The windows put the
/// answer into their path field, which cancelling therefore empties.
std::string ExaminarFichero();

/// A message with an OK button and the default title.
void avisar(std::string_view sTexto);

}  // namespace pxtarvo
