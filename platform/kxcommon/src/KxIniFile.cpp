#include <KxCommon/KxIniFile.h>

#include <QFile>
#include <QFileInfo>
#include <QStringRef>
#include <QTextStream>

namespace {

constexpr qint64 kMaxFileSize = 1048576; // bytes; a long line is held several times over

bool openConfiguration(QFile &file)
{
    // Asked before it is opened: opening a pipe would wait for its writer.
    const QFileInfo info(file);
    return info.isFile() && info.size() <= kMaxFileSize && file.open(QIODevice::ReadOnly);
}

} // namespace

QString GetInifileString(const QString &section, const QString &key, const QString &file)
{
    QFile configuration(file);
    if (!openConfiguration(configuration))
        return {};

    // Ended by a line's end: a decoder waits for the rest of a character that the file's end cuts.
    QTextStream stream(configuration.readAll() + '\n', QIODevice::ReadOnly);
    stream.setCodec("UTF-8");
    stream.setAutoDetectUnicode(false);

    QString text;
    bool inSection = section.isEmpty();
    while (stream.readLineInto(&text)) {
        const QStringRef line = QStringRef(&text).trimmed();
        if (line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1Char('['))) {
            const int end = line.indexOf(QLatin1Char(']'));
            if (end > 0)
                inSection = line.mid(1, end - 1).trimmed() == section;
            continue;
        }
        const int equals = line.indexOf(QLatin1Char('='));
        if (inSection && equals > 0 && line.left(equals).trimmed() == key)
            return line.mid(equals + 1).trimmed().toString();
    }
    return {};
}
