#pragma once

// The plug-in's one public class.

#include <functional>
#include <memory>

#include "module/mdo_pxtarvo.h"

namespace pxtarvo {

/// What an instance stands on; chosen once, by the COM server or by a host of our own.
struct Entorno {
    std::shared_ptr<Platform> platform;
    std::function<ObjectRef<HostFieldHelper>()> crearAyuda;
};

class PXTarvor : public Instancia {
  public:
    /// A new instance, which becomes the thread's goInstancia.
    static std::shared_ptr<PXTarvor> crear(Entorno entorno);

    /// Keeps `vData` and releases the context held before; an empty reference is allowed.
    void MyBd(ObjectRef<HostDatabase> vData) { bd_ = std::move(vData); }
    ObjectRef<HostDatabase> MyBd() const override { return bd_; }

    /// Opens the import window modally, with no owner; returns when it has closed. An error of its loading
    /// leaves as it is.
    void jImportacionTarifas();

    Platform& platform() const override { return *entorno_.platform; }
    ObjectRef<HostFieldHelper> crearAyuda() const override { return entorno_.crearAyuda(); }

    explicit PXTarvor(Entorno entorno) : entorno_(std::move(entorno)) {}

  private:
    Entorno entorno_;
    ObjectRef<HostDatabase> bd_;
};

}  // namespace pxtarvo
