#include "benchmarks/measure/peak_memory.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

namespace pxtarvo::benchmarks {

double peakMemory(const std::function<void()>& run) {
    const pid_t child = fork();
    if (child == 0) {
        run();
        std::_Exit(0);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        std::cerr << "The run in a process of its own failed.\n";
        std::exit(1);
    }
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

}  // namespace pxtarvo::benchmarks
