#pragma once

#include "Turns.h"

#include <chrono>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// \file
/// Programs that are run to be compared with one another.

struct Usage
{
    double seconds;          // by the clock
    double processorSeconds; // of the program and the system for it
    double peakKiB;
};

/// Runs a command without its output; `peakKiB` is not below what this program occupies itself.
inline Usage run(std::vector<std::string> command)
{
    std::vector<char *> argv;
    for (std::string &argument : command)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
        ::execvp(argv.front(), argv.data());
        ::_exit(EXIT_FAILURE);
    }
    int status = -1;
    rusage used = {};
    require(::wait4(child, &status, 0, &used) == child && status == 0, "a command failed");
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - begin;
    const auto toSeconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return {duration.count(), toSeconds(used.ru_utime) + toSeconds(used.ru_stime),
            static_cast<double>(used.ru_maxrss)};
}
