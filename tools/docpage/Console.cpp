#include "tools/docpage/Console.h"

#include <cerrno>
#include <cstdio>

namespace {

int printErrno = 0; // of the first failure
const char *nameOfProgram = "docpage";

} // namespace

void print(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    const auto size = static_cast<size_t>(bytes.size());
    const bool isPrinted =
        std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
    if (!isPrinted && printErrno == 0)
        printErrno = errno;
}

QString printFault()
{
    return printErrno == 0 ? QString() : qt_error_string(printErrno);
}

void setProgramName(const char *name)
{
    nameOfProgram = name;
}

const char *programName()
{
    return nameOfProgram;
}

void printError(const QString &message)
{
    std::fprintf(stderr, "%s: %s\n", nameOfProgram, escaped(message).toUtf8().constData());
}

int reportFault(const QString &file, const QString &fault)
{
    printError(file + QStringLiteral(": ") + fault);
    return ExitStatus::Failed;
}

QString escaped(const QString &text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar c : text) {
        switch (c.category()) {
        case QChar::Other_Control:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            line += c == QLatin1Char('\n')
                        ? QStringLiteral("\\n")
                        : QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            break;
        default:
            line += c;
        }
    }
    return line;
}

QString counted(qint64 count, const char *noun)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), QLatin1String(noun),
                                         count == 1 ? QString() : QStringLiteral("s"));
}

QString followedByIgnored(qint64 bytes)
{
    return QStringLiteral("followed by %1 that %2 ignored")
        .arg(counted(bytes, "byte"), bytes == 1 ? QStringLiteral("is") : QStringLiteral("are"));
}
