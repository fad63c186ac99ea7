#include "tools/docpage/InputFile.h"

#include <QFileInfo>

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
