#include "emfdeal/EmfDeal.h"
#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/OutputFile.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/deck/DeckReader.h"

#include <QDir>

namespace {

QString refusalOf(const QString &page, const OutputRules &rules, const SlideModel &model)
{
    const QString refusal = rules.refusal(page);
    if (!refusal.isEmpty() || model.payloadSize() <= kMaxPayloadSize)
        return refusal;
    return QStringLiteral("too large for a page result file: %1 bytes").arg(model.payloadSize());
}

// Why not all of the pages can be written, as far as it can be told beforehand: a deck is not left
// half replaced.
int reportRefusals(const QDir &folder, const OutputRules &rules, const SlideModels &models)
{
    int status = ExitStatus::Done;
    int number = 0;
    for (const SlideModel &model : models) {
        const QString page = folder.filePath(pageFileName(number++));
        const QString refusal = refusalOf(page, rules, model);
        if (!refusal.isEmpty())
            status = reportFault(page, refusal);
    }
    return status;
}

QString savePage(const QString &path, const OutputRules &rules, const SlideModel &model)
{
    const QByteArray payload = model.payload();
    return saveFile(
        path, rules,
        {EmfDeal::getHeader(payload.size(), DocCovRslt::PAGE_FORMAT_PPT_ANIM), payload});
}

} // namespace

int runBuild(const QStringList &arguments)
{
    CommandLine line(
        "docpage build", "DECK.json -o DIR [--force]",
        "Makes page result files from the description of an animated deck: page_0 from\n"
        "its first slide, page_1 from the second, and so on. 'man docpage' tells what\n"
        "a description holds. It and the pictures it names are kept as they are.");
    line.addInput("DECK.json", CommandLine::Count::One,
                  "The description. Pictures are named relative to its folder; when it is a "
                  "symbolic link, to the folder of the link.");
    line.addOutput("DIR", "The folder of the page result files. It is created when missing.");
    if (const std::optional<int> status = line.parse(arguments))
        return *status;

    const QString input = line.inputs().constFirst();
    Deck deck;
    deck.read(input);
    if (!deck.fault.isEmpty())
        return reportFault(input, deck.fault);

    const OutputRules rules(line.isSet("force"), deck.inputs);
    const QDir folder(line.output());
    if (reportRefusals(folder, rules, deck.models) != ExitStatus::Done)
        return ExitStatus::Failed;
    const QString fault = createFolder(line.output());
    if (!fault.isEmpty())
        return reportFault(line.output(), fault);
    int made = 0;
    for (const SlideModel &model : deck.models) {
        const QString page = folder.filePath(pageFileName(made));
        const QString pageFault = savePage(page, rules, model);
        if (!pageFault.isEmpty())
            return reportFault(page, pageFault);
        ++made;
    }
    print(QStringLiteral("%1 in %2\n")
              .arg(counted(made, "page result file"), escaped(line.output())));
    return ExitStatus::Done;
}
