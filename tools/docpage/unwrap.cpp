#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/OutputFile.h"
#include "tools/docpage/PageFile.h"

int runUnwrap(const QStringList &arguments)
{
    CommandLine line("docpage unwrap", "FILE -o OUT [--force]",
                     "Saves the payload of a page result file, byte for byte: the picture, or the\n"
                     "animation data of the slide. Whether that is intact is not judged.");
    line.addInput("FILE", CommandLine::Count::One, "A page result file.");
    line.addOutput("OUT", "The file to save as.");
    if (const std::optional<int> status = line.parse(arguments))
        return *status;

    const QString input = line.inputs().constFirst();
    const PageFile page = PageFile::read(input);
    if (!page.fault.isEmpty())
        return reportFault(input, page.fault);
    const OutputRules rules(line.isSet("force"), {input});
    const QString fault = saveFile(line.output(), rules, {page.payload});
    if (!fault.isEmpty())
        return reportFault(line.output(), fault);
    return ExitStatus::Done;
}
