// Any bytes as the article file of the location update, run from its button in the import window.

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
#include "tests/fuzz/memory_file.h"

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
    devhost::DevHostOptions options;
    options.database = dealer();
    options.articleFile = tests::memoryFile(data, size);
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
