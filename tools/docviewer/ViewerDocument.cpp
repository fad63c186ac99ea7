#include "tools/docviewer/ViewerDocument.h"

#include "emfdeal/PageResultHeader.h"
#include "tools/docpage/Document.h"
#include "tools/docpage/PlainName.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

namespace {

QString documentText(const char *english)
{
    return QCoreApplication::translate("ViewerDocument", english);
}

bool isSlide(const QString &path)
{
    QFile file(path);
    // Only what is a file: to open a pipe would wait for somebody to write to it.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    const QByteArray bytes = file.read(PageResultHeader::kSize);
    if (bytes.size() < PageResultHeader::kSize)
        return false;
    const PageResultHeader header = PageResultHeader::parse(bytes.constData());
    return header.isPageResultFile() && header.picFormat == DocCovRslt::PAGE_FORMAT_PPT_ANIM;
}

QString pathFault(const QFileInfo &path)
{
    if (!path.exists())
        return qt_error_string(ENOENT);
    if (!path.isDir() && !path.isFile())
        return documentText("is neither a folder nor a file");
    return {};
}

} // namespace

ViewerDocument ViewerDocument::open(const QString &path)
{
    // However it was given, a document has one name, with a last part to be shown.
    const QString plain = QDir::cleanPath(QFileInfo(plainName(path)).absoluteFilePath());
    ViewerDocument document;
    document.name = plain;
    document.fault = pathFault(QFileInfo(plain));
    if (!document.fault.isEmpty())
        return document;
    const Document found = Document::of({plain});
    document.fault = found.fault;
    document.files = found.pages;
    if (document.fault.isEmpty() && document.files.isEmpty())
        document.fault = documentText("the folder holds no pages");
    document.isAnimated = std::any_of(document.files.cbegin(), document.files.cend(), isSlide);
    return document;
}

QString ViewerDocument::savingFault(const QString &path) const
{
    const QFileInfo target(plainName(path));
    const QString existing = target.canonicalFilePath(); // a link is a name of the page, too
    const bool isPage =
        !existing.isEmpty() && std::any_of(files.cbegin(), files.cend(), [&](const QString &file) {
            return QFileInfo(file).canonicalFilePath() == existing;
        });
    if (isPage)
        return documentText("is a page of the document");
    const QFileInfo document(name);
    const QFileInfo made(target.isSymLink() ? target.symLinkTarget() : target.filePath());
    if (document.isDir() && made.dir().canonicalPath() == document.canonicalFilePath())
        return documentText("is in the document's folder, whose files are its pages");
    return {};
}
