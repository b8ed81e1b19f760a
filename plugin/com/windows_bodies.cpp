#include "plugin/com/windows_bodies.h"

#include <memory>

#include "host/windows/automation_field_helper.h"
#include "platform/thread_slots.h"
#include "platform/windows/windows_platform.h"

namespace pxtarvo::com {

namespace {

/// A platform serves its thread as long as the instances that use it: for ever.
struct ThreadPlatform {
    std::shared_ptr<Platform> platform = std::make_shared<windows::WindowsPlatform>();
};

}  // namespace

Entorno windowsBodies() {
    return {.platform = ThreadSlots<ThreadPlatform>::get().platform,
            .crearAyuda = &windows::AutomationFieldHelper::create};
}

}  // namespace pxtarvo::com
