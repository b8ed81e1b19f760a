#pragma once

// pxtarvo-host as a process, in a folder of the test's own.

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "tests/common/temporary_folder.h"

namespace pxtarvo::tests {

class HostProcess {
  public:
    /// Runs a command line in the folder; {S} stands for the folder of samples. `before` is done in the same
    /// shell. Gives back the exit status.
    int run(std::string arguments, const std::string& redirection = "> out", const std::string& before = "") {
        const std::size_t samples = arguments.find("{S}");
        if (samples != std::string::npos) arguments.replace(samples, 3, PXTARVO_SAMPLES_DIR);
        const std::string line = "cd '" + folder.file("") + "' && " + before + "'" PXTARVO_HOST_PATH "' " +
                                 arguments + " < /dev/null 2> err " + redirection;
        const int status = std::system(line.c_str());
        output = bytesOf(folder.file("out"));
        errors = bytesOf(folder.file("err"));
        return WEXITSTATUS(status);
    }

    TemporaryFolder folder;
    std::string output;  ///< of the last run
    std::string errors;
};

}  // namespace pxtarvo::tests
