#include "tools/docpage/Program.h"

#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/LibraryLog.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>

#include <fcntl.h>

namespace {

// A closed standard stream would become the first file that is opened, or a handle of Qt's own.
void occupyStandardStreams()
{
    for (int stream = 0; stream <= 2; ++stream) {
        if (::fcntl(stream, F_GETFD) < 0)
            ::open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY); // fails with EBADF when used
    }
}

// The bytes as they are, which have to be UTF-8.
std::optional<QStringList> argumentsOf(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromUtf8(argv[i]);
        if (argument.toUtf8() != argv[i]) {
            printError(argument + QStringLiteral(": the name is not UTF-8"));
            return std::nullopt;
        }
        arguments.append(argument);
    }
    return arguments;
}

void reportOutOfMemory(const char *name)
{
    try {
        const QString input = CommandLine::firstInputOfProcess();
        printError((input.isEmpty() ? QString() : input + QStringLiteral(": ")) +
                   QStringLiteral("out of memory"));
    } catch (const std::bad_alloc &) { // not even that much is left
        std::fprintf(stderr, "%s: out of memory\n", name);
    }
}

int runWithArguments(int argc, char *argv[], const Program &program)
{
    const std::optional<QStringList> arguments = argumentsOf(argc, argv);
    if (!arguments)
        return ExitStatus::Failed;
    // Names are UTF-8 and the program speaks English, whatever the locale.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    LibraryLog::divert();
    static int nameCount = 1;
    static char *nameOnly[] = {argv[0], nullptr};
    const auto app = program.makeApplication(nameCount, nameOnly, *arguments);
    std::setlocale(LC_ALL, "C");

    int status = ExitStatus::Failed;
    try {
        status = program.run(*arguments);
    } catch (const std::bad_alloc &) {
        reportOutOfMemory(program.name);
    }
    if (!printFault().isEmpty())
        return reportFault(QStringLiteral("standard output"), printFault());
    return status;
}

} // namespace

int runProgram(int argc, char *argv[], const Program &program)
{
    occupyStandardStreams();
    for (const int signal : {SIGXFSZ, SIGPIPE})
        std::signal(signal, SIG_IGN); // a write fails instead, and is told
    ::setenv("QT_NO_GLIB", "1", 1);   // its event loop aborts when memory is short
    setProgramName(program.name);
    try {
        return runWithArguments(argc, argv, program);
    } catch (const std::bad_alloc &) {
        reportOutOfMemory(program.name);
        return ExitStatus::Failed;
    }
}
