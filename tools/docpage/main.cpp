#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/LibraryLog.h"

#include <QGuiApplication>
#include <QTextCodec>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

#include <fcntl.h>

namespace {

struct Command
{
    const char *name;
    const char *summary;
    int (*run)(const QStringList &arguments);
    bool drawsText = false;
};

constexpr Command kCommands[] = {
    {"wrap", "Makes page result files from JPG and PNG pictures.", runWrap},
    {"encode", "Makes the same files on the encoder's thread, all of them or none.", runEncode},
    {"info", "Tells what page result files hold.", runInfo},
    {"check", "Tells what of page result files would not show.", runCheck},
    {"unwrap", "Takes the payload out of a page result file.", runUnwrap},
    {"build", "Makes page result files from the description of an animated deck.", runBuild},
    {"model", "Tells all that slide animation data holds.", runModel},
    {"render", "Saves one page of a document as a PNG picture.", runRender},
    {"play", "Saves every frame of a document as a PNG picture.", runPlay, true},
};

QByteArray description()
{
    QByteArray text =
        "Makes, examines and renders page result files: one page of a document each.\n"
        "\n"
        "Commands:\n";
    for (const Command &command : kCommands)
        text += "  " + QByteArray(command.name).leftJustified(8) + command.summary + '\n';
    return text + "\n"
                  "'docpage COMMAND --help' tells more of a command.\n"
                  "Exit status: 0 done, 1 the work failed, 2 wrong usage.";
}

const Command *commandOf(const QStringList &arguments)
{
    const auto *found =
        std::find_if(std::begin(kCommands), std::end(kCommands), [&](const Command &command) {
            return arguments.value(0) == QLatin1String(command.name);
        });
    return found == std::end(kCommands) ? nullptr : found;
}

int run(const QStringList &arguments)
{
    if (const Command *command = commandOf(arguments))
        return command->run(arguments.mid(1));

    CommandLine line("docpage", "COMMAND ...", description().constData());
    line.addOption("version", "Shows the version.");
    if (const std::optional<int> status = line.parse(arguments.mid(0, 1)))
        return *status;
    if (line.isSet("version")) {
        print(QStringLiteral("docpage " DOCPAGE_VERSION "\n"));
        return ExitStatus::Done;
    }
    if (arguments.isEmpty())
        return line.wrongUsage(QStringLiteral("No command given."));
    return line.wrongUsage(QStringLiteral("Unknown command '%1'.").arg(arguments.constFirst()));
}

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

// Fonts are had from a platform only, but one without a screen will do. Neither kind of application
// is given the arguments: each takes out some for itself.
std::unique_ptr<QCoreApplication> makeApplication(char *program, bool drawsText)
{
    static int argc = 1;
    static char *argv[] = {program, nullptr};
    if (!drawsText)
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}

void reportOutOfMemory()
{
    try {
        const QString input = CommandLine::firstInputOfProcess();
        printError((input.isEmpty() ? QString() : input + QStringLiteral(": ")) +
                   QStringLiteral("out of memory"));
    } catch (const std::bad_alloc &) { // not even that much is left
        std::fputs("docpage: out of memory\n", stderr);
    }
}

int runProgram(int argc, char *argv[])
{
    const std::optional<QStringList> arguments = argumentsOf(argc, argv);
    if (!arguments)
        return ExitStatus::Failed;
    // Names are UTF-8 and the program speaks English, whatever the locale.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    LibraryLog::divert();
    const Command *command = commandOf(*arguments);
    const auto app = makeApplication(argv[0], command && command->drawsText);
    std::setlocale(LC_ALL, "C");

    int status = ExitStatus::Failed;
    try {
        status = run(*arguments);
    } catch (const std::bad_alloc &) {
        reportOutOfMemory();
    }
    if (!printFault().isEmpty())
        return reportFault(QStringLiteral("standard output"), printFault());
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    occupyStandardStreams();
    for (const int signal : {SIGXFSZ, SIGPIPE})
        std::signal(signal, SIG_IGN); // a write fails instead, and is told
    ::setenv("QT_NO_GLIB", "1", 1);   // its event loop aborts when memory is short
    try {
        return runProgram(argc, argv);
    } catch (const std::bad_alloc &) {
        reportOutOfMemory();
        return ExitStatus::Failed;
    }
}
