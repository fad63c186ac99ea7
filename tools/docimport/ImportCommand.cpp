#include "tools/docimport/ImportCommand.h"

#include "tools/docimport/ImportOptions.h"
#include "tools/docimport/Importer.h"
#include "tools/docimport/pdf/PdfFile.h"
#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/EndRequest.h"

namespace {

constexpr unsigned int kMostPixels = 16384;
constexpr unsigned int kMostDpi = 2400;
constexpr unsigned int kMostSeconds = 86400;

void addOptions(CommandLine &line)
{
    line.addInput("INPUT", CommandLine::Count::OneOrMore,
                  "A PDF document or a presentation (pptx, ppt, odp), as told from its content.");
    line.addOutput("DIR", "The folder of the page result files; of several inputs that of their "
                          "folders, which are named after them. It is created when missing.");
    line.addOption("width", "The width of a page in pixels, 1280 unless given.", "N");
    line.addOption("dpi", "In its place, the pixels for each inch of a page.", "N");
    line.addOption("jpeg-quality", "The quality of JPG pictures, 1 to 100; 90 unless given.", "N");
    line.addOption("pages", "The pages wanted, counted from 1, as in 1,3-5,8-.", "LIST");
    line.addOption("static", "Makes a picture of each slide, without animations.");
    line.addOption("timeout",
                   "The seconds that LibreOffice may take for a document, and a page to be drawn; "
                   "120 unless given.",
                   "SECONDS");
    line.addOption("keep-work",
                   "Leaves what was made of presentations on the way, and tells where.");
    line.addOption("report", "Saves what became of each slide and effect, as JSON.", "FILE");
    line.addOption("engine", "LibreOffice's soffice.bin, when it is in no usual place.", "FILE");
    line.addOption("version", "Shows the version.");
}

// Reads a number into `number`, which stays when the option is not given.
QString readInto(const CommandLine &line, const char *option, const char *what, unsigned int most,
                 int &number)
{
    auto value = static_cast<unsigned int>(number);
    const QString fault = line.readNumber(option, what, value, 1, most);
    if (fault.isEmpty())
        number = static_cast<int>(value);
    return fault;
}

// Returns what is wrong, a sentence.
QString readNumbers(const CommandLine &line, ImportOptions &options)
{
    QString fault = readInto(line, "width", "number of pixels from 1 to 16384", kMostPixels,
                             options.resolution.width);
    if (fault.isEmpty())
        fault = readInto(line, "dpi", "number of pixels per inch from 1 to 2400", kMostDpi,
                         options.resolution.dpi);
    if (fault.isEmpty())
        fault = readInto(line, "jpeg-quality", "quality from 1 to 100", 100, options.jpegQuality);
    if (fault.isEmpty())
        fault = readInto(line, "timeout", "number of seconds from 1 to 86400", kMostSeconds,
                         options.timeout);
    return fault;
}

QString readOptions(const CommandLine &line, ImportOptions &options)
{
    if (line.isSet("width") && line.isSet("dpi"))
        return QStringLiteral("Either --width or --dpi, not both.");
    const QString fault = readNumbers(line, options);
    if (!fault.isEmpty())
        return fault;
    if (line.isSet("pages")) {
        const std::optional<PageList> pages = PageList::read(line.value("pages"));
        if (!pages)
            return QStringLiteral("'%1' is no list of pages such as 1,3-5,8-.")
                .arg(line.value("pages"));
        options.pages = *pages;
    }
    for (const char *file : {"report", "engine"}) {
        if (line.isSet(file) && line.value(file).isEmpty())
            return QStringLiteral("No file given for --%1.").arg(QLatin1String(file));
    }
    options.inputs = line.inputs();
    options.output = line.output();
    options.isForced = line.isSet("force");
    options.isStatic = line.isSet("static");
    options.keepsWork = line.isSet("keep-work");
    options.report = line.path("report");
    options.engine = line.path("engine");
    return {};
}

} // namespace

int runImport(const QStringList &arguments)
{
    CommandLine line(
        "docimport", "INPUT... -o DIR [OPTION...]",
        "Makes folders of page result files from PDF documents and presentations, whose\n"
        "entrances and exits stay animations: page_0 from the first page, page_1 from\n"
        "the second, and so on. All pages of an input are made, or none. Presentations\n"
        "need LibreOffice (Debian: libreoffice-impress).\n"
        "\n"
        "Exit status: 0 done, 1 the work failed, 2 wrong usage.");
    addOptions(line);
    if (arguments == QStringList{QStringLiteral("--version")}) {
        print(QStringLiteral("docimport " DOCIMPORT_VERSION "\n"));
        return ExitStatus::Done;
    }
    if (const std::optional<int> status = line.parse(arguments))
        return *status;
    ImportOptions options;
    const QString fault = readOptions(line, options);
    if (!fault.isEmpty())
        return line.wrongUsage(fault);

    PdfFile::silence();
    const EndRequest request;
    const int status = importDocuments(options, request);
    if (request.isMade())
        request.grant();
    return status;
}
