#include "plugin/com/windows_bodies.h"

#include <list>
#include <memory>
#include <mutex>

#include "host/windows/automation_field_helper.h"
#include "platform/windows/windows_platform.h"

namespace pxtarvo::com {

namespace {

/// Every thread's platform. Like the instances that use them, platforms are never given up: not at the end of
/// the thread, and not with the process's statics, when windows and files are gone already.
struct Platforms {
    std::mutex lock;
    std::list<std::shared_ptr<Platform>> list;
};

Platforms& platforms() {
    static Platforms& all = *std::make_unique<Platforms>().release();
    return all;
}

const std::shared_ptr<Platform>& threadPlatform() {
    thread_local const std::shared_ptr<Platform>* mine = nullptr;
    if (!mine) {
        auto made = std::make_shared<windows::WindowsPlatform>();
        const std::lock_guard guard(platforms().lock);
        mine = &platforms().list.emplace_back(std::move(made));
    }
    return *mine;
}

}  // namespace

Entorno windowsBodies() {
    return {.platform = threadPlatform(), .crearAyuda = &windows::AutomationFieldHelper::create};
}

}  // namespace pxtarvo::com
