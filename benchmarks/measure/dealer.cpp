#include "benchmarks/measure/dealer.h"

#include <filesystem>

#include "devhost/dealer/schema.h"
#include "platform/portable/clocks.h"

namespace pxtarvo::benchmarks {

void createDealer(const std::string& script) {
    const portable::SystemClock clock;
    const auto connection = portable::SqliteConnection::create(pathOf("template.db"), clock);
    devhost::createSchema(*connection);
    connection->runNative(
        "BEGIN;"
        "INSERT INTO Pro (Pro_ID, Pro_COD, Pro_NOM, Pro_TIPDOC) VALUES (4, 24, 'RECAMBIOS', 0);"
        "INSERT INTO Marcas (Marca_ID, Marca_Des, Marca_CodAbrev) VALUES (1, 'Same', 'SAME');" +
        script + "COMMIT;");
}

std::string freshDealer() {
    const std::string database = pathOf("dealer.db");
    std::filesystem::copy_file(pathOf("template.db"), database,
                               std::filesystem::copy_options::overwrite_existing);
    return database;
}

Comparison overFreshDealer(std::string title, std::function<Run(portable::SqliteConnection& database)> floor,
                           std::function<Run(const std::string& database)> plugIn, std::int64_t items) {
    const auto whole = [items](const Run& run) {
        require(run.items == items, "not every row was met");
        return run;
    };
    const auto onFloor = [=] {
        const portable::SystemClock clock;
        const auto connection = portable::SqliteConnection::open(freshDealer(), clock);
        return whole(floor(*connection));
    };
    return {std::move(title), onFloor, [=] { return whole(plugIn(freshDealer())); }};
}

}  // namespace pxtarvo::benchmarks
