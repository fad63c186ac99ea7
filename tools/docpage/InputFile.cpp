#include "tools/docpage/InputFile.h"

#include "tools/docpage/PageFile.h"

#include <QFileInfo>

#include <new>

QString openInput(QFile &file)
{
    // Before it is opened: a pipe would wait for its other end.
    const QFileInfo info(file.fileName());
    if (info.isDir())
        return QStringLiteral("is a directory");
    if (info.exists() && !info.isFile())
        return QStringLiteral("not a regular file");
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return file.errorString();
    if (file.size() > 0)
        return {};
    // The kernel's own files have no size either, but something to read or a reason not to be read.
    char byte = 0;
    return file.read(&byte, 1) == 0 ? QStringLiteral("empty file")
                                    : QStringLiteral("not a regular file");
}

QString readInput(const QString &path, QByteArray &bytes)
{
    QFile file(path);
    const QString fault = openInput(file);
    if (!fault.isEmpty())
        return fault;
    if (file.size() > kMaxPayloadSize)
        return QStringLiteral("too large: %1 bytes").arg(file.size());
    try {
        bytes = file.read(file.size());
    } catch (const std::bad_alloc &) {
        return QStringLiteral("out of memory");
    }
    return bytes.isEmpty() ? file.errorString() : QString();
}
