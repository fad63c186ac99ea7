#include "tools/docviewer/ViewerArguments.h"

#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/PositionOptions.h"

namespace {

constexpr char kDescription[] =
    "Shows a document of page result files in a window: a folder of them, one for\n"
    "each page in the natural order of their names, or a single file.\n"
    "\n"
    "Exit status: 0 done, 1 the work failed, 2 wrong usage.";

} // namespace

std::optional<int> ViewerArguments::parse(const QStringList &arguments)
{
    CommandLine line(
        "docviewer",
        "[FOLDER|FILE] [--page N] [--step S] [--ms M]\n                 [--screenshot OUT.png]",
        kDescription);
    line.addOption("page", "The page to begin with, counted from 0.", "N");
    line.addOption("step", "The step of a slide, shown still; 0 is before the first one.", "S");
    line.addOption("ms", "How many milliseconds of the step have been played.", "M");
    line.addOption("screenshot", "Saves a picture of the window as a PNG file, and ends.",
                   "OUT.png");
    line.addOption("version", "Shows the version.");
    line.addInput("FOLDER|FILE", CommandLine::Count::NoneOrOne, "The document.");
    if (const std::optional<int> status = line.parse(arguments))
        return status;
    if (line.isSet("version")) {
        print(QStringLiteral("docviewer " DOCVIEWER_VERSION "\n"));
        return ExitStatus::Done;
    }

    document = line.inputs().value(0);
    screenshot = line.path("screenshot");
    const bool isPlaced = line.isSet("page") || line.isSet("step") || line.isSet("ms");
    if (line.isSet("screenshot") && screenshot.isEmpty())
        return line.wrongUsage(QStringLiteral("The picture has no name."));
    if (document.isEmpty() && (isPlaced || line.isSet("screenshot")))
        return line.wrongUsage(QStringLiteral("No document given."));
    if (line.isSet("ms") && !line.isSet("step"))
        return line.wrongUsage(QStringLiteral("--ms is a time within a --step, which is missing."));
    if (!isPlaced)
        return std::nullopt;
    position = DocDisplayMgr::AnimStatus{0, 0, 0};
    const QString fault = readPosition(line, *position);
    if (!fault.isEmpty())
        return line.wrongUsage(fault);
    return std::nullopt;
}
