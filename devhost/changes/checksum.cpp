#include "devhost/changes/checksum.h"

#include <glib.h>

#include <memory>

namespace pxtarvo::devhost {

namespace {

struct FreeText {
    void operator()(gchar* text) const noexcept { g_free(text); }
};

}  // namespace

std::string sha256(std::string_view bytes) {
    const std::unique_ptr<gchar, FreeText> digest(g_compute_checksum_for_data(
        G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(bytes.data()), bytes.size()));
    return digest.get();
}

}  // namespace pxtarvo::devhost
