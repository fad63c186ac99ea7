#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/PageFormatName.h"
#include "tools/docpage/check/PageReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr qint64 kMegabyte = 1 << 20;
constexpr unsigned int kDefaultMegabytes = 1024; // what all pictures of a slide may take elsewhere
constexpr unsigned int kMostMegabytes = 1 << 20;

qint64 pictureCount(const PageReport &report)
{
    return static_cast<qint64>(report.images.size());
}

QString text(const QString &file, const PageReport &report)
{
    const QString begin = escaped(file) + QStringLiteral(": ");
    QString text;
    for (const Finding &finding : report.findings.inOrder())
        text += begin + QStringLiteral("offset %1: %2: %3: %4\n")
                            .arg(QString::number(finding.offset),
                                 QLatin1String(severityName(finding.severity)),
                                 QLatin1String(finding.code), finding.words);
    if (report.findings.leftOut() > 0)
        text += begin +
                QStringLiteral("and %1 more\n").arg(counted(report.findings.leftOut(), "finding"));
    if (!report.findings.hasError())
        text += begin + QStringLiteral("ok, %1, %2 decoded\n")
                            .arg(counted(pictureCount(report), "picture"),
                                 counted(report.decodedBytes, "byte"));
    return text;
}

QJsonArray json(const std::vector<DecodedImage> &images)
{
    QJsonArray array;
    for (const DecodedImage &image : images)
        array.append(QJsonObject{{QStringLiteral("bytes"), image.bytes},
                                 {QStringLiteral("height"), image.size.height()},
                                 {QStringLiteral("offset"), image.offset},
                                 {QStringLiteral("width"), image.size.width()}});
    return array;
}

QJsonObject json(const QString &file, const PageReport &report)
{
    QJsonArray findings;
    for (const Finding &finding : report.findings.inOrder())
        findings.append(QJsonObject{
            {QStringLiteral("code"), QLatin1String(finding.code)},
            {QStringLiteral("message"), finding.words},
            {QStringLiteral("offset"), finding.offset},
            {QStringLiteral("severity"), QLatin1String(severityName(finding.severity))}});
    QJsonObject object{{QStringLiteral("decodedBytes"), report.decodedBytes},
                       {QStringLiteral("file"), file},
                       {QStringLiteral("findings"), findings},
                       {QStringLiteral("findingsLeftOut"), report.findings.leftOut()},
                       {QStringLiteral("images"), json(report.images)},
                       {QStringLiteral("ok"), !report.findings.hasError()},
                       {QStringLiteral("pictures"), pictureCount(report)}};
    if (report.format != DocCovRslt::PAGE_FORMAT_NONE) {
        object[QStringLiteral("format")] = QLatin1String(pageFormatName(report.format).key);
        object[QStringLiteral("formatCode")] = report.format;
    }
    return object;
}

} // namespace

int runCheck(const QStringList &arguments)
{
    CommandLine line("docpage check", "[--max-memory MB] [--json] FILE...",
                     "Tells of each page result file what would not show, or not as it was meant,\n"
                     "and where in the file that stands. All pictures are decoded, each in a\n"
                     "process of its own, which a broken one cannot take the others with.");
    line.addInput("FILE", CommandLine::Count::OneOrMore, "A page result file.");
    line.addOption("max-memory",
                   "The megabytes that the decoding of a picture, and all pictures of a slide, may "
                   "take; 1024 unless given.",
                   "MB");
    line.addOption("json", "Prints one JSON array with an object for each file.");
    if (const std::optional<int> status = line.parse(arguments))
        return *status;
    unsigned int megabytes = kDefaultMegabytes;
    const QString wrong =
        line.readNumber("max-memory", "number of megabytes", megabytes, 1, kMostMegabytes);
    if (!wrong.isEmpty())
        return line.wrongUsage(wrong);

    int status = ExitStatus::Done;
    QJsonArray reports;
    for (const QString &file : line.inputs()) {
        const PageReport report = PageReport::of(file, megabytes * kMegabyte);
        if (report.findings.hasError())
            status = ExitStatus::Failed;
        if (line.isSet("json"))
            reports.append(json(file, report));
        else
            print(text(file, report));
    }
    if (line.isSet("json"))
        print(QString::fromUtf8(QJsonDocument(reports).toJson()));
    return status;
}
