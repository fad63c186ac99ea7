#include "tools/docimport/InputKind.h"

#include "tools/docimport/ZipEntry.h"
#include "tools/docpage/InputFile.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int kHeadSize = 1 << 16;
constexpr int kPdfHeadSize = 1024;
constexpr int kMostOfEntry = 1 << 25;
constexpr char kSlideTag[] = "<draw:page";
constexpr char kNoSlides[] = "has no slides";

InputKind refused(const char *fault)
{
    return {InputKind::Unknown, {}, QLatin1String(fault)};
}

InputKind deck(const char *suffix)
{
    return {InputKind::Deck, QLatin1String(suffix), {}};
}

InputKind noPresentation()
{
    return refused("neither a PDF document nor a presentation, or damaged");
}

InputKind encrypted()
{
    return refused("encrypted: it opens with a password only");
}

bool contains(QFile &file, const QByteArray &wanted)
{
    constexpr qint64 kBlock = 1 << 20;
    QByteArray window; // a block and the end of the one before
    file.seek(0);
    for (QByteArray block = file.read(kBlock); !block.isEmpty(); block = file.read(kBlock)) {
        window = window.right(wanted.size()) + block;
        if (window.contains(wanted))
            return true;
    }
    return false;
}

// Whether a compound file has a stream of that name, which it holds as UTF-16.
bool hasStream(QFile &file, const char *name)
{
    QByteArray wanted;
    for (const char *at = name; *at != '\0'; ++at)
        wanted.append(*at).append('\0');
    return contains(file, wanted);
}

InputKind compoundFile(QFile &file)
{
    if (hasStream(file, "EncryptedPackage") || hasStream(file, "EncryptedSummary"))
        return encrypted();
    return hasStream(file, "PowerPoint Document") ? deck("ppt") : noPresentation();
}

// Whether something has a tag that begins so, and not just one that begins with it.
template <typename Contains>
bool hasTag(const char *begin, const Contains &contains)
{
    static constexpr char kEnds[] = {' ', '\n', '\r', '\t', '>'};
    return std::any_of(std::begin(kEnds), std::end(kEnds),
                       [&](char end) { return contains(QByteArray(begin) + end); });
}

// The engine makes up a slide when there is none. An entry that cannot be read may have some.
bool isWithoutSlides(const QByteArray &entry, const char *slide)
{
    return !entry.isEmpty() && entry.size() < kMostOfEntry &&
           !hasTag(slide, [&](const QByteArray &tag) { return entry.contains(tag); });
}

InputKind openDocument(QFile &file)
{
    if (zipEntry(file, "META-INF/manifest.xml", kMostOfEntry).contains("encryption-data"))
        return encrypted();
    return isWithoutSlides(zipEntry(file, "content.xml", kMostOfEntry), kSlideTag)
               ? refused(kNoSlides)
               : deck("odp");
}

InputKind openXml(QFile &file)
{
    if (!zipEntry(file, "[Content_Types].xml", kMostOfEntry).contains("presentationml"))
        return noPresentation();
    return isWithoutSlides(zipEntry(file, "ppt/presentation.xml", kMostOfEntry), "sldId")
               ? refused(kNoSlides)
               : deck("pptx");
}

InputKind archive(QFile &file)
{
    const bool isOpenDocument =
        zipEntry(file, "mimetype", kHeadSize).contains("opendocument.presentation");
    return isOpenDocument ? openDocument(file) : openXml(file);
}

InputKind flatXml(QFile &file)
{
    const bool hasSlides =
        hasTag(kSlideTag, [&](const QByteArray &tag) { return contains(file, tag); });
    return hasSlides ? deck("fodp") : refused(kNoSlides);
}

} // namespace

InputKind InputKind::of(const QString &path)
{
    QFile file(path);
    const QString fault = openInput(file);
    if (!fault.isEmpty())
        return {Unknown, {}, fault};
    const QByteArray head = file.read(kHeadSize);
    if (head.startsWith("PK\3\4"))
        return archive(file);
    if (head.startsWith("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"))
        return compoundFile(file);
    if (head.left(kPdfHeadSize).contains("%PDF-")) // after anything else, as readers take it
        return {Pdf, {}, {}};
    if (head.contains("opendocument.presentation")) // all of it is XML
        return flatXml(file);
    return noPresentation();
}
