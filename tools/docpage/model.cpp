#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/deck/DeckOutput.h"
#include "tools/docpage/deck/ModelText.h"

namespace {

// What the description does not say of a model that was read from `payload`.
QStringList notesOn(const QString &file, const QByteArray &payload, const SlideModel &model)
{
    QStringList notes;
    if (model.bytesAfter > 0)
        notes += QStringLiteral("%1: %2 after the model %3 left out")
                     .arg(file, counted(model.bytesAfter, "byte"),
                          model.bytesAfter == 1 ? QStringLiteral("is") : QStringLiteral("are"));
    if (!payload.startsWith(model.payload()))
        notes += file + QStringLiteral(": the description does not give the same bytes");
    return notes;
}

// `notes` are for a model that is to be described.
QString readModel(const QString &file, SlideModel &model, QStringList *notes = nullptr)
{
    const PageFile page = PageFile::read(file);
    if (!page.fault.isEmpty())
        return page.fault;
    if (page.header.picFormat != DocCovRslt::PAGE_FORMAT_PPT_ANIM)
        return QStringLiteral("holds a picture, not slide animation data");
    const QString fault = model.read(page.payload);
    if (fault.isEmpty() && notes)
        *notes += notesOn(file, page.payload, model);
    return fault;
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
            print(escaped(file) + QStringLiteral(": ") + modelSummary(model) + QLatin1Char('\n') +
                  modelText(model.data));
    }
    return status;
}

// All of the files or nothing: without one of them it would be another deck.
int writeJson(const QStringList &files, const DeckOutput &output, const OutputRules &rules)
{
    SlideModels models;
    QStringList notes;
    int status = ExitStatus::Done;
    for (const QString &file : files) {
        const QString fault = readModel(file, models.emplace_back(), &notes);
        if (!fault.isEmpty())
            status = reportFault(file, fault);
    }
    if (status == ExitStatus::Done)
        status = output.write(models, rules);
    if (status == ExitStatus::Done) {
        for (const QString &note : qAsConst(notes))
            printError(note);
    }
    return status;
}

} // namespace

int runModel(const QStringList &arguments)
{
    CommandLine line(
        "docpage model", "FILE... [--json [--extract DIR] [-o OUT.json] [--force]]",
        "Tells all that the slide animation data of page result files holds. With --json\n"
        "that is the description of a deck, of which 'docpage build' makes the same\n"
        "files again, in the order given, if they are as 'docpage build' or the classes\n"
        "of the library write them.");
    line.addInput("FILE", CommandLine::Count::OneOrMore,
                  "A page result file that holds slide animation data.");
    line.addOption("json", "Prints one JSON object for all files.");
    line.addOption("extract",
                   "Saves the pictures as files of this folder, which is created when "
                   "missing. The JSON names them as seen from its own folder, or from the "
                   "current one when it is printed. Without this option it holds the "
                   "pictures.",
                   "DIR");
    line.addOutput("OUT.json", "Saves the JSON as this file instead of printing it.",
                   CommandLine::Need::Optional);
    if (const std::optional<int> status = line.parse(arguments))
        return *status;
    const bool isJson = line.isSet("json");
    const bool extracts = line.isSet("extract");
    if (extracts && !isJson)
        return line.wrongUsage(QStringLiteral("--extract is for --json only."));
    if (extracts && line.path("extract").isEmpty())
        return line.wrongUsage(QStringLiteral("The folder to extract to has no name."));
    if (line.isSet("output") && !isJson)
        return line.wrongUsage(QStringLiteral("-o is for --json only."));
    if (line.isSet("force") && !extracts && !line.isSet("output"))
        return line.wrongUsage(QStringLiteral("--force is for --extract or -o only."));

    if (!isJson)
        return printText(line.inputs());
    const OutputRules rules(line.isSet("force"), line.inputs());
    return writeJson(line.inputs(), {line.output(), line.path("extract")}, rules);
}
