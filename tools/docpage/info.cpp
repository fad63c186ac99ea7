#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/PageFormatName.h"
#include "tools/docpage/PictureCheck.h"
#include "tools/docpage/PictureSize.h"
#include "tools/docpage/SlideSteps.h"
#include "tools/docpage/deck/ModelText.h"
#include "tools/docpage/deck/SlideModel.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <new>

namespace {

bool isPicture(const PageFile &page)
{
    return page.header.picFormat != DocCovRslt::PAGE_FORMAT_PPT_ANIM;
}

// Of the file, or of the picture in it.
QString faultOf(const PageFile &page)
{
    if (!page.fault.isEmpty() || !isPicture(page))
        return page.fault;
    const PictureCheck check = PictureCheck::of(page.payload);
    const bool isOther = check.format == DocCovRslt::PAGE_FORMAT_NONE; // but Qt may know it
    return isOther && pictureSize(page.payload).isValid() ? QString() : check.fault;
}

/// What is told of one file. `model` is that of slide animation data.
struct Info
{
    PageFile page;
    SlideModel model;
    QString fault;

    explicit Info(const QString &file)
        : page(PageFile::read(file))
        , fault(faultOf(page))
    {
        if (fault.isEmpty() && !isPicture(page))
            fault = model.read(page.payload);
    }
    QString text();
    QJsonObject json();
};

// A line for each step of each page.
QString stepsText(PPT_fileDat &model)
{
    QString text;
    for (const auto &entry : model.pages) {
        int number = 0;
        for (const SlideStep &step : slideSteps(model, entry.first))
            text += QStringLiteral("\n  page %1, step %2: %3, %4 ms")
                        .arg(entry.first)
                        .arg(++number)
                        .arg(step.startsByItself ? QStringLiteral("starts by itself")
                                                 : QStringLiteral("on click"))
                        .arg(step.duration);
    }
    return text;
}

QString Info::text()
{
    QString text = QLatin1String(pageFormatName(page.header.picFormat).inWords) +
                   QStringLiteral(", ") + counted(page.payload.size(), "byte") +
                   QStringLiteral(", ");
    if (isPicture(page)) {
        const QSize size = pictureSize(page.payload);
        text += size.isValid()
                    ? QStringLiteral("%1 x %2 pixels").arg(size.width()).arg(size.height())
                    : QStringLiteral("size in pixels unreadable");
    } else {
        text += modelSummary(model);
    }
    if (page.trailingBytes > 0)
        text += QStringLiteral(", ") + followedByIgnored(page.trailingBytes);
    return isPicture(page) ? text : text + stepsText(model.data);
}

QJsonObject sizeJson(double width, double height)
{
    return {{QStringLiteral("width"), width}, {QStringLiteral("height"), height}};
}

QJsonArray stepsJson(PPT_fileDat &model, quint16 pageId)
{
    QJsonArray steps;
    for (const SlideStep &step : slideSteps(model, pageId))
        steps.append(
            QJsonObject{{QStringLiteral("number"), steps.size() + 1},
                        {QStringLiteral("trigger"),
                         step.startsByItself ? QStringLiteral("auto") : QStringLiteral("click")},
                        {QStringLiteral("duration"), static_cast<qint64>(step.duration)}});
    return steps;
}

QJsonArray pagesJson(PPT_fileDat &model)
{
    QJsonArray pages;
    for (const auto &entry : model.pages)
        pages.append(QJsonObject{
            {QStringLiteral("pageId"), entry.first},
            {QStringLiteral("shapes"), static_cast<qint64>(entry.second->shapes.size())},
            {QStringLiteral("effects"), static_cast<qint64>(entry.second->effects.size())},
            {QStringLiteral("steps"), stepsJson(model, entry.first)}});
    return pages;
}

QJsonObject Info::json()
{
    QJsonObject info{
        {QStringLiteral("version"),
         QStringLiteral("0x%1").arg(page.header.version, 4, 16, QLatin1Char('0'))},
        {QStringLiteral("format"), QLatin1String(pageFormatName(page.header.picFormat).key)},
        {QStringLiteral("formatCode"), page.header.picFormat},
        {QStringLiteral("payloadSize"), page.payload.size()},
        {QStringLiteral("trailingBytes"), page.trailingBytes}};
    if (isPicture(page)) {
        const QSize size = pictureSize(page.payload);
        info[QStringLiteral("picture")] =
            size.isValid() ? sizeJson(size.width(), size.height()) : QJsonValue(QJsonValue::Null);
    } else {
        const PPT_FileHead &head = model.data.head;
        info[QStringLiteral("pageSize")] =
            sizeJson(static_cast<double>(head.width), static_cast<double>(head.height));
        info[QStringLiteral("pages")] = pagesJson(model.data);
        info[QStringLiteral("bytesAfterModel")] = model.bytesAfter;
    }
    return info;
}

// Prints what is told of one file, or puts it into `info`. Returns what is wrong with the file.
QString tell(const QString &file, bool isJson, QJsonObject &info)
{
    try {
        Info known(file);
        if (known.page.fault.isEmpty() && (isPicture(known.page) || known.fault.isEmpty())) {
            if (isJson)
                info = known.json();
            else
                print(escaped(file) + QStringLiteral(": ") + known.text() + QLatin1Char('\n'));
        }
        return known.fault;
    } catch (const std::bad_alloc &) { // the next file may be smaller
        return QStringLiteral("out of memory");
    }
}

} // namespace

int runInfo(const QStringList &arguments)
{
    CommandLine line(
        "docpage info", "[--json] FILE...",
        "Tells of each page result file the format and size of its payload; of a picture\n"
        "the size in pixels, of slide animation data the page size, how many pages,\n"
        "shapes and effects it holds, and its steps; also how many bytes after the\n"
        "payload, or after the animation data in it, are ignored.");
    line.addInput("FILE", CommandLine::Count::OneOrMore, "A page result file.");
    line.addOption("json", "Prints one JSON array with an object for each file.");
    if (const std::optional<int> status = line.parse(arguments))
        return *status;

    const QStringList files = line.inputs();
    const bool isJson = line.isSet("json");
    int status = ExitStatus::Done;
    QJsonArray infos;
    for (const QString &file : files) {
        QJsonObject info;
        const QString fault = tell(file, isJson, info);
        if (!fault.isEmpty()) {
            status = reportFault(file, fault);
            info[QStringLiteral("error")] = fault;
        }
        info[QStringLiteral("file")] = file;
        infos.append(info);
    }
    if (isJson)
        print(QString::fromUtf8(QJsonDocument(infos).toJson()));
    return status;
}
