#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/deck/DeckWriter.h"
#include "tools/docpage/deck/ModelText.h"
#include "tools/docpage/deck/PictureExtractor.h"

namespace {

QString readModel(const QString &file, SlideModel &model)
{
    const PageFile page = PageFile::read(file);
    if (!page.fault.isEmpty())
        return page.fault;
    if (page.header.picFormat != DocCovRslt::PAGE_FORMAT_PPT_ANIM)
        return QStringLiteral("holds a picture, not slide animation data");
    return model.read(page.payload);
}

int printText(const QStringList &files)
{
    int status = ExitStatus::Done;
    for (const QString &file : files) {
        SlideModel model;
        const QString fault = readModel(file, model);
        if (!fault.isEmpty())
            status = reportFault(file, fault);
        else
            print(escaped(file) + QStringLiteral(": ") + modelSummary(model.data) +
                  QLatin1Char('\n') + modelText(model.data));
    }
    return status;
}

// All of the files or nothing: without one of them it would be another deck.
int printJson(const QStringList &files, PictureExtractor *extractor)
{
    SlideModels models;
    int status = ExitStatus::Done;
    for (const QString &file : files) {
        const QString fault = readModel(file, models.emplace_back());
        if (!fault.isEmpty())
            status = reportFault(file, fault);
    }
    if (status != ExitStatus::Done)
        return status;
    const QString json = deckJson(models, extractor);
    if (extractor && !extractor->fault().isEmpty())
        return reportFault(extractor->failedFile(), extractor->fault());
    print(json);
    return ExitStatus::Done;
}

} // namespace

int runModel(const QStringList &arguments)
{
    CommandLine line(
        "docpage model", "FILE... [--json [--extract DIR [--force]]]",
        "Tells all that the slide animation data of page result files holds. With --json\n"
        "that is the description of a deck, of which 'docpage build' makes the same\n"
        "files again, in the order given.");
    line.addInput("FILE", CommandLine::Count::OneOrMore,
                  "A page result file that holds slide animation data.");
    line.addOption("json", "Prints one JSON object for all files.");
    line.addOption("extract",
                   "Saves the pictures as files of this folder, which is created when "
                   "missing. The JSON names them as seen from the current folder. "
                   "Without it the JSON holds the pictures.",
                   "DIR");
    line.addForce();
    if (const std::optional<int> status = line.parse(arguments))
        return *status;
    const bool extracts = line.isSet("extract");
    if (extracts && !line.isSet("json"))
        return line.wrongUsage(QStringLiteral("--extract is for --json only."));
    if (extracts && line.value("extract").isEmpty())
        return line.wrongUsage(QStringLiteral("The folder to extract to has no name."));
    if (line.isSet("force") && !extracts)
        return line.wrongUsage(QStringLiteral("--force is for --extract only."));

    if (!line.isSet("json"))
        return printText(line.inputs());
    const OutputRules rules(line.isSet("force"), line.inputs());
    PictureExtractor extractor(line.value("extract"), rules);
    return printJson(line.inputs(), extracts ? &extractor : nullptr);
}
