#include "tests/wine/two_worlds.h"

#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>

#include "devhost/dealer/host_file.h"
#include "platform/portable/clocks.h"
#include "platform/portable/sqlite/sqlite_connection.h"

namespace pxtarvo::test {

namespace {

namespace fs = std::filesystem;
using Moment = std::chrono::steady_clock;

/// Takes the record's lines and the time that the run took.
class Keeper {
  public:
    explicit Keeper(Outcome& outcome) : outcome_(outcome) {}
    void operator()(std::string_view line) {
        if (outcome_.record.empty() || line.starts_with("{\"call\":\"source.open\"")) start_ = Moment::now();
        if (line.starts_with("{\"call\":\"unload\"")) {
            outcome_.seconds = std::chrono::duration<double>(Moment::now() - start_).count();
        }
        outcome_.record.emplace_back(line);
    }

  private:
    Outcome& outcome_;
    Moment::time_point start_;
};

template <class Host>
void prepare(Host& host, const Scenario& scenario) {
    // The tests' files need not outlive the machine.
    dynamic_cast<portable::SqliteConnection&>(*host.connection()).runNative("PRAGMA synchronous = OFF");
    for (const std::string& statement : scenario.sql) {
        if (statement == "BEGIN") {
            host.connection()->BeginTrans();
        } else {
            host.connection()->Execute(statement, adOptionUnspecified);
        }
    }
    host.state().beforeWrite = scenario.beforeWrite;
}

template <class Host>
void run(Host& host, Outcome& outcome) {
    try {
        host.run();
    } catch (const RuntimeError& error) {
        outcome.error = std::to_string(error.number()) + " " + error.what();
    }
    outcome.violations = host.violations();
}

}  // namespace

TwoWorlds::TwoWorlds() {
    fs::create_directories(driveC() + "/TARVO");
    for (const auto& sample : fs::directory_iterator(PXTARVO_SAMPLES_DIR)) {
        fs::copy(sample.path(), driveC() + "/TARVO", fs::copy_options::skip_existing);
    }
}

const devhost::PlugIn& TwoWorlds::plugIn() {
    static const devhost::PlugIn loaded = [] {
        CoInitialize(nullptr);
        return devhost::PlugIn(PXTARVO_DLL_PATH);
    }();
    return loaded;
}

std::string TwoWorlds::driveC() {
    return std::string(getenv("WINEPREFIX")) + "/drive_c";
}

std::string TwoWorlds::newDealer() {
    const std::string path = folder_.file("dealer" + std::to_string(++dealers_) + ".db");
    devhost::createHostFile(
        path, std::make_shared<portable::FixedClock>(CalendarTime{2012, 7, 25, 10, 30, 0}), true);
    return path;
}

devhost::DevHostOptions TwoWorlds::optionsFor(const Scenario& scenario) {
    if (day_.year == CalendarTime{}.year) day_ = portable::SystemClock().now();
    devhost::DevHostOptions options;
    options.database = newDealer();
    options.driveC = driveC();
    options.clock = std::make_shared<portable::FixedClock>(day_);
    options.rotateContexts = scenario.rotateContexts;
    if (!scenario.hasSpreadsheet) {
        options.makeSpreadsheet = [](const portable::DrivePaths&) -> ObjectRef<SpreadsheetApplication> {
            throw RuntimeError(ErrorNumber::CannotCreateObject);
        };
    }
    return options;
}

Outcome TwoWorlds::inTheDll(const Scenario& scenario, devhost::Hands hands) {
    Outcome outcome;
    devhost::objectBook().violations.clear();
    {
        devhost::DevHostOptions options = optionsFor(scenario);
        options.cursor = scenario.cursor;
        devhost::WineHost host(plugIn(), options, Keeper(outcome),
                               {.script = scenario.script, .hands = hands});
        prepare(host, scenario);
        run(host, outcome);
        for (const std::string& trouble : host.screen().troubles()) outcome.violations.push_back(trouble);
        outcome.seen = host.screen().seen();
    }
    for (const std::string& text : devhost::objectBook().violations) outcome.violations.push_back(text);
    EXPECT_EQ(devhost::ScreenUser::windowsLeft(), 0);
    return outcome;
}

Outcome TwoWorlds::withoutScreen(const Scenario& scenario) {
    Outcome outcome;
    Keeper keeper(outcome);
    devhost::ScreenlessUser* user = nullptr;
    devhost::DevHostOptions options = optionsFor(scenario);
    options.recorder = std::make_shared<devhost::Recorder>([&](std::string_view line) {
        keeper(line);
        if (user) user->lineRecorded(line);
    });
    devhost::DevHost host(options);
    devhost::ScreenlessUser hands(host, scenario.script);
    user = &hands;
    prepare(host, scenario);
    run(host, outcome);
    outcome.seen = hands.seen();
    return outcome;
}

void TwoWorlds::expectTheSame(const Scenario& scenario) {
    const Outcome dll = inTheDll(scenario);
    const Outcome twin = withoutScreen(scenario);
    EXPECT_EQ(dll.violations, std::vector<std::string>());
    EXPECT_EQ(dll.error, twin.error);
    EXPECT_EQ(dll.seen, twin.seen);
    EXPECT_FALSE(linesWith(dll.record, scenario.expected).empty()) << scenario.expected;
    for (std::size_t at = 0; at < std::max(dll.record.size(), twin.record.size()); ++at) {
        const std::string ours = at < dll.record.size() ? dll.record[at] : "(end)";
        const std::string theirs = at < twin.record.size() ? twin.record[at] : "(end)";
        ASSERT_EQ(ours, theirs) << "line " << at + 1;
    }
}

std::vector<std::string> linesWith(const std::vector<std::string>& record, std::string_view text) {
    std::vector<std::string> lines;
    for (const std::string& line : record) {
        if (line.find(text) != std::string::npos) lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> messagesOf(const std::vector<std::string>& record) {
    std::vector<std::string> texts;
    for (const std::string& line : linesWith(record, "{\"call\":\"message\"")) {
        texts.push_back(nlohmann::json::parse(line).at("text"));
    }
    return texts;
}

}  // namespace pxtarvo::test
