#include "tests/faults/FaultPlan.h"

#include <array>
#include <atomic>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using FaultPlan::Kind;

constexpr std::array<const char *, 9> kKindNames = {"none",   "open",  "read",  "write", "rename",
                                                    "unlink", "mkdir", "close", "memory"};

struct Plan
{
    Kind kind = Kind::None;
    long at = 0;
    long leastSize = 0;
    int error = EIO;
    bool isAndAfter = false;
    bool isShort = false;
    bool kills = false;
    const char *below = nullptr;
    const char *report = nullptr;
};

Plan plan;
std::atomic<bool> isAtWork{false};        // while main() runs
std::atomic<bool> hasReachedFiles{false}; // those below the folder
std::atomic<long> calls{0};

long numberOf(const char *variable, long fallback)
{
    const char *text = std::getenv(variable);
    return text ? std::strtol(text, nullptr, 10) : fallback;
}

Kind kindOf(const char *name)
{
    for (size_t i = 1; name && i < kKindNames.size(); ++i) {
        if (std::strcmp(name, kKindNames[i]) == 0)
            return static_cast<Kind>(i);
    }
    return Kind::None;
}

void readPlan()
{
    plan.kind = kindOf(std::getenv("FAULT_KIND"));
    plan.at = numberOf("FAULT_AT", 0);
    plan.leastSize = numberOf("FAULT_LEAST", 0);
    plan.error =
        static_cast<int>(numberOf("FAULT_ERRNO", plan.kind == Kind::Memory ? ENOMEM : EIO));
    plan.isAndAfter = std::getenv("FAULT_AND_AFTER") != nullptr;
    plan.isShort = std::getenv("FAULT_SHORT") != nullptr;
    plan.kills = std::getenv("FAULT_KILL") != nullptr;
    plan.below = std::getenv("FAULT_BELOW");
    plan.report = std::getenv("FAULT_REPORT");
}

// By the system itself, so that it does not come back here.
void report()
{
    std::array<char, 32> text = {};
    const int size = std::snprintf(text.data(), text.size(), "%ld", calls.load());
    const long file =
        ::syscall(SYS_openat, AT_FDCWD, plan.report, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::syscall(SYS_write, file, text.data(), static_cast<size_t>(size));
    ::syscall(SYS_close, file);
}

bool isPathBelow(const char *path)
{
    const size_t length = std::strlen(plan.below);
    return std::strncmp(path, plan.below, length) == 0 &&
           (path[length] == '/' || path[length] == '\0');
}

bool isFileBelow(int file)
{
    const int before = errno;
    std::array<char, 32> link = {};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", file);
    std::array<char, PATH_MAX> path = {};
    const ssize_t size = ::readlink(link.data(), path.data(), path.size() - 1);
    errno = before;
    return size > 0 && isPathBelow(path.data());
}

// A relative path is taken for one below the folder that it starts from.
bool isBelow(const char *path, int folder)
{
    if (path[0] == '/')
        return isPathBelow(path);
    if (folder != AT_FDCWD)
        return isFileBelow(folder);
    std::array<char, PATH_MAX> current = {};
    return ::getcwd(current.data(), current.size()) && isPathBelow(current.data());
}

// Whether files count at all: for allocations they tell the beginning.
bool areFilesCounted(Kind kind)
{
    return isAtWork && (plan.kind == kind || (plan.kind == Kind::Memory && !hasReachedFiles));
}

bool isChosen()
{
    const long call = ++calls;
    const bool isIt = plan.at > 0 && (call == plan.at || (plan.isAndAfter && call > plan.at));
    if (isIt && plan.kills)
        ::kill(::getpid(), SIGKILL);
    return isIt;
}

// Of a call for a file that counts.
bool isFault(Kind kind)
{
    hasReachedFiles = true;
    return plan.kind == kind && isChosen();
}

using Main = int(int, char **, char **);
Main *programMain = nullptr;

int countedMain(int argc, char **argv, char **environment)
{
    readPlan();
    ::pthread_atfork(nullptr, nullptr, [] { isAtWork = false; });
    hasReachedFiles = !plan.below;
    isAtWork = true;
    const int status = programMain(argc, argv, environment);
    isAtWork = false;
    if (plan.report)
        report();
    return status;
}

} // namespace

bool FaultPlan::fails(Kind kind, const char *path, int folder)
{
    return areFilesCounted(kind) && (!plan.below || isBelow(path, folder)) && isFault(kind);
}

bool FaultPlan::fails(Kind kind, int file)
{
    return areFilesCounted(kind) && (!plan.below || isFileBelow(file)) && isFault(kind);
}

bool FaultPlan::failsToAllocate(size_t size)
{
    return isAtWork && plan.kind == Kind::Memory && hasReachedFiles &&
           size >= static_cast<size_t>(plan.leastSize) && isChosen();
}

bool FaultPlan::isShort()
{
    return plan.isShort;
}

int FaultPlan::error()
{
    return plan.error;
}

// What calls main(), in the system's place.
extern "C" __attribute__((visibility("default"))) int
startProgram(Main *main, int argc, char **argv, void (*init)(), void (*fini)(), void (*rtldFini)(),
             void *stackEnd) __asm__("__libc_start_main");

int startProgram(Main *main, int argc, char **argv, void (*init)(), void (*fini)(),
                 void (*rtldFini)(), void *stackEnd)
{
    const auto start =
        reinterpret_cast<decltype(&startProgram)>(::dlsym(RTLD_NEXT, "__libc_start_main"));
    programMain = main;
    return start(countedMain, argc, argv, init, fini, rtldFini, stackEnd);
}
