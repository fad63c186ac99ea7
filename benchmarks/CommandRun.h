#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <cerrno>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// \file
/// Programs that are run to be compared with one another.

/// Ends the benchmark unless `condition` holds.
inline void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, what);
    std::exit(EXIT_FAILURE);
}

struct Usage
{
    double seconds;
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
    return {duration.count(), static_cast<double>(used.ru_maxrss)};
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}
