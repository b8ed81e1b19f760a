// The whole import of a yearly list through the real DLL's window under Wine beside the same import without a
// screen, turn by turn in one process: from the press of the button to the end of the window, notices
// included.

#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <vector>

#include "devhost/dealer/host_file.h"
#include "devhost/wine/wine_host.h"
#include "platform/portable/clocks.h"

namespace pxtarvo::benchmarks {

namespace {

namespace fs = std::filesystem;
using devhost::Action;
using devhost::Deed;
using Moment = std::chrono::steady_clock;

constexpr int turns = 9;

/// One run, from its press to the end of its window.
class Stopwatch {
  public:
    void began(const Action& action) {
        if (action.control == "XPButton1") pressed_ = Moment::now();
    }
    void recorded(std::string_view line) {
        if (line.starts_with("{\"call\":\"unload\"")) ended_ = Moment::now();
        if (line.starts_with("{\"call\":\"commit\"}")) committed_ = true;
    }
    /// In milliseconds. Raises std::runtime_error for a run that did not come to its commit.
    double taken() const {
        if (!committed_) throw std::runtime_error("the list was not imported");
        return std::chrono::duration<double, std::milli>(ended_ - pressed_).count();
    }

  private:
    Moment::time_point pressed_, ended_;
    bool committed_ = false;
};

struct Course {
    fs::path folder;
    std::string driveC;
    devhost::UserScript script;

    devhost::DevHostOptions options() const {
        devhost::DevHostOptions options;
        options.database = (folder / "dealer.db").string();
        options.driveC = driveC;
        options.clock = std::make_shared<portable::SystemClock>();
        fs::remove(options.database);
        devhost::createHostFile(options.database, options.clock, true);
        return options;
    }
};

double inTheDll(const Course& course, const devhost::PlugIn& plugIn) {
    Stopwatch watch;
    devhost::WineHost host(plugIn, course.options(), [&](std::string_view line) { watch.recorded(line); },
                           {.script = course.script,
                            .hands = devhost::Hands::Posted,
                            .begins = [&](const Action& action) { watch.began(action); }});
    host.run();
    return watch.taken();
}

double withoutScreen(const Course& course) {
    Stopwatch watch;
    devhost::DevHostOptions options = course.options();
    options.recorder =
        std::make_shared<devhost::Recorder>([&](std::string_view line) { watch.recorded(line); });
    devhost::DevHost host(options);
    devhost::ScreenlessUser user(host, course.script);
    user.begins = [&](const Action& action) { watch.began(action); };
    host.run();
    return watch.taken();
}

double median(std::vector<double> numbers) {
    std::ranges::sort(numbers);
    return numbers[numbers.size() / 2];
}

void print(const char* title, const std::vector<double>& times, const char* unit) {
    std::printf("%-22s %8.2f %s (%.2f to %.2f in %zu turns)\n", title, median(times), unit,
                std::ranges::min(times), std::ranges::max(times), times.size());
}

void measure(const std::string& dll, const std::string& list) {
    std::string name = (fs::temp_directory_path() / "pxtarvo-bench-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    Course course{.folder = name, .driveC = std::string(getenv("WINEPREFIX")) + "/drive_c", .script = {}};
    fs::create_directories(course.driveC + "/TARVO");
    fs::copy_file(list, course.driveC + "/TARVO/MEDIDA.MDB", fs::copy_options::overwrite_existing);
    course.script = {{.deed = Deed::Type, .control = "Text1", .index = 0, .text = "C:\\TARVO\\MEDIDA.MDB"},
                     {.deed = Deed::Click, .control = "XPButton1"}};

    const devhost::PlugIn plugIn(dll);
    std::vector<double> shown, screenless, ratios;
    inTheDll(course, plugIn);  // the first windows of a session take their time
    for (int turn = 0; turn < turns; ++turn) {
        screenless.push_back(withoutScreen(course));
        shown.push_back(inTheDll(course, plugIn));
        ratios.push_back(shown.back() / screenless.back());
    }
    print("without a screen", screenless, "ms");
    print("the DLL in its window", shown, "ms");
    print("ratio", ratios, "times");
    fs::remove_all(course.folder);
}

}  // namespace

}  // namespace pxtarvo::benchmarks

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "pxtarvo-dll-bench DLL LIST, inside a session of Wine\n";
        return 2;
    }
    CoInitialize(nullptr);
    try {
        pxtarvo::benchmarks::measure(argv[1], argv[2]);
        return 0;
    } catch (const pxtarvo::RuntimeError& error) {
        std::cerr << error.description() << '\n';
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return 1;
}
