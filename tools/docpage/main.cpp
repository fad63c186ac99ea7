#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/Program.h"

#include <QGuiApplication>

#include <algorithm>
#include <memory>

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

// Fonts are had from a platform only, but one without a screen will do. Neither kind of application
// is given the arguments: each takes out some for itself.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char *argv[],
                                                  const QStringList &arguments)
{
    const Command *command = commandOf(arguments);
    if (!command || !command->drawsText)
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}

} // namespace

int main(int argc, char *argv[])
{
    return runProgram(argc, argv, {"docpage", makeApplication, run});
}
