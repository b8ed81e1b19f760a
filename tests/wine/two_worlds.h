#pragma once

// One scenario in two worlds: the real DLL in its windows under Wine, and the same code without a screen.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "devhost/wine/objects/object_kind.h"
#include "devhost/wine/wine_host.h"
#include "tests/common/temporary_folder.h"
#include "tests/wine/actions.h"

namespace pxtarvo::test {

struct Scenario {
    std::string name;
    /// What the user does once the window is open; without it, presses the button.
    devhost::UserScript script = {Action{.deed = Deed::Click, .control = "XPButton1"}};
    /// Done on the host's connection first, in the host's dialect.
    std::vector<std::string> sql{};
    devhost::WriteHook beforeWrite{};
    bool rotateContexts = true;
    /// Of the results that the DLL gets; the twin's are always the client's, as it must make no difference.
    devhost::CursorLocation cursor = devhost::CursorLocation::Client;
    bool hasSpreadsheet = true;  ///< without, the application cannot be created
    /// Must stand in the record, so that a scenario that did not take place is noticed.
    std::string expected{};
};

inline void PrintTo(const Scenario& scenario, std::ostream* out) {
    *out << scenario.name;
}

/// What one run left.
struct Outcome {
    std::vector<std::string> record;
    std::vector<std::string> seen;        ///< by the actions "look"
    std::vector<std::string> violations;  ///< of the host's rules, in the script, of the types of arguments
    double seconds = 0;                   ///< from the first call on the source list to the window's end
    std::string error;                    ///< what jImportacionTarifas failed with
};

class TwoWorlds : public ::testing::Test {
  public:
    static const devhost::PlugIn& plugIn();

  protected:
    TwoWorlds();

    /// The Wine prefix's drive C:, with the sample lists in TARVO.
    static std::string driveC();

    Outcome inTheDll(const Scenario& scenario, devhost::Hands hands = devhost::Hands::Posted);
    Outcome withoutScreen(const Scenario& scenario);
    /// Runs both and expects the same record, line by line.
    void expectTheSame(const Scenario& scenario);

    /// A new sample dealer's database; how the machine's day is known to the twin.
    std::string newDealer();
    devhost::DevHostOptions optionsFor(const Scenario& scenario);

    tests::TemporaryFolder folder_;
    CalendarTime day_{};
    int dealers_ = 0;
};

/// The lines of a record that hold this text.
std::vector<std::string> linesWith(const std::vector<std::string>& record, std::string_view text);
/// The texts of its messages, in order.
std::vector<std::string> messagesOf(const std::vector<std::string>& record);

}  // namespace pxtarvo::test
