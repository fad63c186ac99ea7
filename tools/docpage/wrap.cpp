#include "emfdeal/EmfDeal.h"
#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/InputFile.h"
#include "tools/docpage/OutputFile.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/PictureCheck.h"
#include "tools/docpage/Progress.h"

#include <QDir>

namespace {

struct Picture
{
    QByteArray bytes;
    PictureCheck check;
};

// Reads a picture into `picture`. Returns why it cannot be used.
QString readPicture(const QString &path, Picture &picture)
{
    const QString fault = readInput(path, picture.bytes);
    if (!fault.isEmpty())
        return fault;
    picture.check = PictureCheck::of(picture.bytes);
    return picture.check.fault;
}

} // namespace

int runWrap(const QStringList &arguments)
{
    CommandLine line(
        "docpage wrap", "PICTURE... -o DIR [--force]",
        "Makes page result files from JPG and PNG pictures: page_0 from the first one\n"
        "given, page_1 from the second, and so on. A picture that cannot be used leaves\n"
        "its number free. The pictures are kept as they are.");
    line.addInput("PICTURE", CommandLine::Count::OneOrMore,
                  "A complete JPG or PNG picture, as told from its content.");
    line.addOutput("DIR", "The folder of the page result files. It is created when missing.");
    if (const std::optional<int> status = line.parse(arguments))
        return *status;

    const QStringList pictures = line.inputs();
    const OutputRules rules(line.isSet("force"), pictures);
    Progress progress;
    int made = 0;
    const auto fail = [&](const QString &file, const QString &fault) {
        progress.clear();
        reportFault(file, fault);
    };
    for (int i = 0; i < pictures.size(); ++i) {
        progress.show(QStringLiteral("picture %1 of %2").arg(i + 1).arg(pictures.size()));
        Picture picture;
        QString fault = readPicture(pictures.at(i), picture);
        if (!fault.isEmpty()) {
            fail(pictures.at(i), fault);
            continue;
        }
        // Not before there is something to put into it.
        fault = createFolder(line.output());
        if (!fault.isEmpty()) {
            fail(line.output(), fault);
            return ExitStatus::Failed;
        }
        const QString page = QDir(line.output()).filePath(pageFileName(i));
        fault = saveFile(
            page, rules,
            {EmfDeal::getHeader(picture.bytes.size(), picture.check.format), picture.bytes});
        if (!fault.isEmpty()) {
            fail(page, fault);
            continue;
        }
        ++made;
    }
    progress.clear();
    print(QStringLiteral("%1 in %2\n")
              .arg(counted(made, "page result file"), escaped(line.output())));
    return made == pictures.size() ? ExitStatus::Done : ExitStatus::Failed;
}
