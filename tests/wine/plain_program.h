#pragma once

// Programs that know nothing of the development host, run over its stand-ins for ADO: started as any program
// is, and used from outside as a person uses their windows.

#include <functional>
#include <string>
#include <vector>

#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::test {

/// Has the stand-ins serve ADO's and the spreadsheet application's names in the whole prefix; puts back what
/// was there.
class StandInClasses {
  public:
    /// `server` is the stand-in's file in this machine's own file system.
    explicit StandInClasses(const std::string& server);
    StandInClasses(const StandInClasses&) = delete;
    StandInClasses& operator=(const StandInClasses&) = delete;
    ~StandInClasses();

  private:
    struct Written {
        std::string key;
        std::string before;
        bool wasThere;
    };
    void write(const std::string& key, const std::string& value);

    std::vector<Written> written_;
};

/// A visible window of a program, at its top or inside another one.
struct SeenWindow {
    HWND handle;
    std::string type;  ///< the window class's name
    std::string text;
};

/// What a program left.
struct ProgramEnd {
    DWORD status = 0;
    std::string output;  ///< both of its outputs
};

/// Runs a program with these arguments to its end, which must come within a minute. `use` is called again and
/// again meanwhile with the windows that can be seen, the outer ones before those in them.
ProgramEnd runProgram(const std::string& file, const std::vector<std::string>& arguments,
                      const std::function<void(const std::vector<SeenWindow>&)>& use = {});

}  // namespace pxtarvo::test
