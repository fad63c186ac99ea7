// Any text as a configuration file. Its first two lines are the section and the key that are looked
// up in the others.
#include "fuzz/Fuzz.h"

#include <KxCommon/KxIniFile.h>

namespace {

struct Question
{
    QString section;
    QString key;

    QString answer(const QByteArray &text) const
    {
        static const MemoryFile file;
        file.write(text);
        return GetInifileString(section, key, file.path());
    }

    // The lines that give the key this value, if that can be said.
    QByteArray lines(const char *value) const
    {
        return "\n[" + section.toUtf8() + "]\n" + key.toUtf8() + '=' + value + '\n';
    }
};

QByteArray takeLine(QByteArray &text)
{
    const int end = text.indexOf('\n');
    const QByteArray line = text.left(end);
    text = end < 0 ? QByteArray() : text.mid(end + 1);
    return line;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray text = byteArray(data, size);
    Question question;
    question.section = QString::fromUtf8(takeLine(text));
    question.key = QString::fromUtf8(takeLine(text));

    const QString answer = question.answer(text);
    require(answer == answer.trimmed() && !answer.contains(QLatin1Char('\n')));

    // What comes first counts, wherever it is said once more.
    const QByteArray more = question.lines("more");
    if (!answer.isEmpty())
        require(question.answer(text + more) == answer);
    if (!question.answer(more).isEmpty()) {
        require(question.answer(more) == QStringLiteral("more"));
        require(question.answer(more + text) == QStringLiteral("more"));
        require(!question.answer(text + more).isEmpty() || text.contains('='));
    }
    return 0;
}
