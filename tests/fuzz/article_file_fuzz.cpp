// Any bytes as the article file of the location update, run from its button in the import window.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "devhost/dealer/host_file.h"
#include "devhost/dev_host.h"
#include "import/article_file.h"
#include "import/frm_imp_tarifas.h"
#include "platform/portable/clocks.h"
#include "tests/common/temporary_folder.h"

namespace {

using namespace pxtarvo;

/// The sample dealer's database, once for all inputs.
const std::string& dealer() {
    static const tests::TemporaryFolder folder;
    static const std::string path = [] {
        std::string made = folder.file("dealer.db");
        devhost::createHostFile(made, std::make_shared<portable::SystemClock>(), true);
        return made;
    }();
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const int file = memfd_create("articulo.tdw", 0);
    if (file < 0 || ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size)) {
        std::abort();
    }
    devhost::DevHostOptions options;
    options.database = dealer();
    options.articleFile = "/proc/self/fd/" + std::to_string(file);
    devhost::DevHost host(std::move(options));
    host.user().onWindowShown = [&](Window& window) {
        host.desktop().click(dynamic_cast<frmImpTarifas&>(window).XPButton4);
    };
    host.connection()->BeginTrans();
    host.run();
    host.connection()->RollbackTrans();
    host.platform().textFiles().close(nFicheroArticulos);  // an error leaves it open
    if (host.user().messages().size() != 1 || !host.violations().empty()) std::abort();
    return 0;
}
