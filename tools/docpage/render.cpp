#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/OutputFile.h"
#include "tools/docpage/PageImage.h"
#include "tools/docpage/PngEncoder.h"
#include "tools/docpage/PositionOptions.h"

namespace {

// Renders a page into `image`. Returns what is wrong with it.
QString render(const Document &document, const DocDisplayMgr::AnimStatus &position, QImage &image)
{
    const PageFile file = PageFile::read(document.pages.at(static_cast<int>(position.page)));
    if (!file.fault.isEmpty())
        return file.fault;
    return pageImage(document, position, file, image);
}

} // namespace

int runRender(const QStringList &arguments)
{
    CommandLine line(
        "docpage render",
        "DOCUMENT... -o OUT.png [--page N] [--step S] [--ms M]\n"
        "                      [--force]",
        "Saves one page of a document as a PNG picture, as the display manager shows it.");
    line.addDocument();
    line.addOutput("OUT.png", "The picture to save.");
    line.addOption("page", "The page, counted from 0. Without it, page 0.", "N");
    line.addOption("step",
                   "The step of an animated page: 0 is before the first one, and any number above "
                   "the last one is the last one. Without it, 0.",
                   "S");
    line.addOption("ms",
                   "How much of the step has been played, in milliseconds; at most all of it. "
                   "Without it, 0: the step's start.",
                   "M");
    if (const std::optional<int> status = line.parse(arguments))
        return *status;
    if (!line.output().endsWith(QStringLiteral(".png"), Qt::CaseInsensitive))
        return line.wrongUsage(
            QStringLiteral("The output '%1' does not end in .png.").arg(line.output()));
    DocDisplayMgr::AnimStatus position{0, 0, 0};
    QString fault = readPosition(line, position);
    if (!fault.isEmpty())
        return line.wrongUsage(fault);

    const Document document = Document::of(line.inputs());
    if (!document.fault.isEmpty())
        return reportFault(document.name, document.fault);
    fault = document.pageFault(position.page);
    if (!fault.isEmpty())
        return reportFault(document.name, fault);
    QImage image;
    QByteArray png;
    fault = render(document, position, image);
    if (fault.isEmpty())
        fault = encodePng(image, png);
    if (!fault.isEmpty())
        return reportFault(document.pages.at(static_cast<int>(position.page)), fault);
    const OutputRules rules(line.isSet("force"), document.pages);
    fault = saveFile(line.output(), rules, {png});
    if (!fault.isEmpty())
        return reportFault(line.output(), fault);
    return ExitStatus::Done;
}
