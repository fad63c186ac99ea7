#include "docdisplay/DocDisplayMgr.h"
#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/NaturalOrder.h"
#include "tools/docpage/OutputFile.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/PictureCheck.h"
#include "tools/docpage/PictureSize.h"
#include "tools/docpage/PlainName.h"

#include <QBuffer>
#include <QDir>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>

#include <unistd.h>

namespace {

struct Document
{
    QString name;
    QStringList pages; // their files
    QString fault;     // why there are no pages to be had
};

Document folderDocument(const QString &folder)
{
    if (::access(QFile::encodeName(folder).constData(), R_OK | X_OK) != 0)
        return {folder, {}, qt_error_string(errno)};
    QStringList names;
    std::error_code error;
    std::filesystem::directory_iterator entry(QFile::encodeName(folder).constData(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string bytes = entry->path().filename().string();
        const QString name = QString::fromStdString(bytes);
        // To pass over a page would give all that follow another number.
        if (name.toStdString() != bytes)
            return {folder, {}, QStringLiteral("holds a file whose name is not UTF-8")};
        if (!name.startsWith(QLatin1Char('.')))
            names.append(name);
    }
    if (error)
        return {folder, {}, qt_error_string(error.value())};
    sortNaturally(names);
    Document document{folder, {}, {}};
    for (const QString &name : qAsConst(names)) {
        const QFileInfo file(QDir(folder), plainName(name));
        if (file.isFile() || (file.isSymLink() && !file.exists()))
            document.pages.append(file.filePath());
    }
    return document;
}

Document documentOf(const QStringList &arguments)
{
    const QString &first = arguments.constFirst();
    if (arguments.size() > 1)
        return {first + QStringLiteral(" ... ") + arguments.constLast(), arguments, {}};
    if (QFileInfo(first).isDir())
        return folderDocument(first);
    return {first, arguments, {}};
}

QImage imageOf(const Document &document, unsigned int page)
{
    const std::unique_ptr<DocDisplayMgr, void (*)(DocDisplayMgr *)> manager(
        CreateDisplayMgr(), [](DocDisplayMgr *mgr) { mgr->Destroy(); });
    manager->Init(DocCovRslt::DOCRSLT_PICTURE, document.pages.size());
    for (int i = 0; i < document.pages.size(); ++i)
        manager->AddDocPage(static_cast<unsigned int>(i), document.pages.at(i));
    manager->SetCurPage(page);
    return manager->GetImg();
}

// A small file may announce a picture that takes all the memory there is.
constexpr qint64 kMaxPixels = 1 << 28; // 1 GiB as an image

// What the display manager returns for a page, or why it is not worth having.
QString decode(const Document &document, unsigned int page, QImage &image)
{
    const LibraryLog::DecoderSilence silence;
    LibraryLog::takeMessages(); // about other pictures
    try {
        image = imageOf(document, page);
    } catch (const std::bad_alloc &) {
        return QStringLiteral("out of memory");
    }
    // The JPG decoder makes an image of anything, but tells when it had to invent a part of it.
    const QString messages = LibraryLog::takeMessages();
    if (messages.contains(QStringLiteral("Corrupt JPEG data")) ||
        messages.contains(QStringLiteral("Premature end")))
        return QStringLiteral("JPG picture is corrupt (picture data)");
    return {};
}

// Renders a page into `png`. Returns what is wrong with it.
QString render(const Document &document, unsigned int page, QByteArray &png)
{
    const PageFile file = PageFile::read(document.pages.at(static_cast<int>(page)));
    if (!file.fault.isEmpty())
        return file.fault;
    if (file.header.picFormat == DocCovRslt::PAGE_FORMAT_PPT_ANIM)
        return QStringLiteral("slide animation data cannot be rendered by this version");
    // Of an incomplete picture the decoder may make an image with the missing part in grey.
    const PictureCheck check = PictureCheck::of(file.payload);
    if (check.format != DocCovRslt::PAGE_FORMAT_NONE && !check.fault.isEmpty())
        return check.fault;
    const QSize size = pictureSize(file.payload);
    if (qint64(size.width()) * size.height() > kMaxPixels)
        return QStringLiteral("picture too large: %1 x %2 pixels")
            .arg(size.width())
            .arg(size.height());
    QImage image;
    const QString fault = decode(document, page, image);
    if (!fault.isEmpty())
        return fault;
    if (image.isNull())
        return check.fault.isEmpty() ? QStringLiteral("the picture cannot be decoded")
                                     : check.fault;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return QStringLiteral("the image cannot be encoded");
    return {};
}

} // namespace

int runRender(const QStringList &arguments)
{
    CommandLine line(
        "docpage render", "DOCUMENT... -o OUT.png [--page N] [--force]",
        "Saves one page of a document as a PNG picture, as the display manager shows it.");
    line.addInput("DOCUMENT", CommandLine::Count::OneOrMore,
                  "A folder of page result files, taken in natural order of their names (page_2 "
                  "before page_10), or the files themselves in their order.");
    line.addOutput("OUT.png", "The picture to save.");
    line.addOption("page", "The page, counted from 0. Without it, page 0.", "N");
    if (const std::optional<int> status = line.parse(arguments))
        return *status;
    if (!line.output().endsWith(QStringLiteral(".png"), Qt::CaseInsensitive))
        return line.wrongUsage(
            QStringLiteral("The output '%1' does not end in .png.").arg(line.output()));
    const QString number = line.isSet("page") ? line.value("page") : QStringLiteral("0");
    bool isNumber = false;
    const unsigned int page = number.toUInt(&isNumber);
    if (!isNumber)
        return line.wrongUsage(QStringLiteral("'%1' is no page number.").arg(number));

    const Document document = documentOf(line.inputs());
    if (!document.fault.isEmpty())
        return reportFault(document.name, document.fault);
    if (page >= static_cast<unsigned int>(document.pages.size()))
        return reportFault(document.name,
                           QStringLiteral("page %1 is out of range, the document has %2")
                               .arg(page)
                               .arg(counted(document.pages.size(), "page")));
    QByteArray png;
    QString fault = render(document, page, png);
    if (!fault.isEmpty())
        return reportFault(document.pages.at(static_cast<int>(page)), fault);
    const OutputRules rules(line.isSet("force"), document.pages);
    fault = saveFile(line.output(), rules, {png});
    if (!fault.isEmpty())
        return reportFault(line.output(), fault);
    return ExitStatus::Done;
}
