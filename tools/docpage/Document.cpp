#include "tools/docpage/Document.h"

#include "tools/docpage/Console.h"
#include "tools/docpage/NaturalOrder.h"
#include "tools/docpage/PlainName.h"

#include <QDir>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace {

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

} // namespace

Document Document::of(const QStringList &arguments)
{
    const QString &first = arguments.constFirst();
    if (arguments.size() > 1)
        return {first + QStringLiteral(" ... ") + arguments.constLast(), arguments, {}};
    if (QFileInfo(first).isDir())
        return folderDocument(first);
    return {first, arguments, {}};
}

QString Document::pageFault(unsigned int page) const
{
    if (page < static_cast<unsigned int>(pages.size()))
        return {};
    return QStringLiteral("page %1 is out of range, the document has %2")
        .arg(page)
        .arg(counted(pages.size(), "page"));
}
