#include "tools/docpage/CommandLine.h"

#include "tools/docpage/Console.h"
#include "tools/docpage/PlainName.h"

#include <algorithm>
#include <cstdio>

namespace {

QString &knownFirstInput()
{
    static QString input;
    return input;
}

} // namespace

CommandLine::CommandLine(const char *name, const char *synopsis, const char *description)
    : m_name(QString::fromUtf8(name))
    , m_synopsis(QString::fromUtf8(synopsis))
{
    m_parser.setApplicationDescription(QString::fromUtf8(description));
    m_parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Shows this help.")});
}

void CommandLine::addInput(const char *name, Count count, const char *description)
{
    m_input = QString::fromUtf8(name);
    m_count = count;
    m_parser.addPositionalArgument(m_input, QString::fromUtf8(description));
}

void CommandLine::addDocument()
{
    addInput("DOCUMENT", Count::OneOrMore,
             "A folder of page result files, taken in natural order of their names (page_2 before "
             "page_10), or the files themselves in their order.");
}

void CommandLine::addOption(const char *name, const char *description, const char *value)
{
    m_parser.addOption(
        {QString::fromUtf8(name), QString::fromUtf8(description), QString::fromUtf8(value)});
}

void CommandLine::addOutput(const char *value, const char *description, Need need)
{
    m_output = QString::fromUtf8(value);
    m_outputNeed = need;
    m_parser.addOption({{QStringLiteral("o"), QStringLiteral("output")},
                        QString::fromUtf8(description),
                        m_output});
    addOption("force", "Replaces files that exist already, but never an input.");
}

std::optional<int> CommandLine::parse(const QStringList &arguments)
{
    const bool isUnderstood = m_parser.parse(QStringList{m_name} + arguments);
    if (isSet("help")) {
        print(help());
        return ExitStatus::Done;
    }
    if (!isUnderstood)
        return wrongUsage(m_parser.errorText());
    if (!m_input.isEmpty() && m_count != Count::NoneOrOne && inputs().isEmpty())
        return wrongUsage(QStringLiteral("No %1 given.").arg(m_input));
    if (m_count != Count::OneOrMore && inputs().size() > 1)
        return wrongUsage(QStringLiteral("More than one %1 given.").arg(m_input));
    const bool isOutputNeeded =
        !m_output.isEmpty() && (m_outputNeed == Need::Required || isSet("output"));
    if (isOutputNeeded && output().isEmpty())
        return wrongUsage(QStringLiteral("No output given, -o %1 is missing.").arg(m_output));
    knownFirstInput() = inputs().value(0);
    return std::nullopt;
}

QString CommandLine::firstInputOfProcess()
{
    return knownFirstInput();
}

QStringList CommandLine::inputs() const
{
    QStringList names = m_parser.positionalArguments();
    std::transform(names.begin(), names.end(), names.begin(), plainName);
    return names;
}

QString CommandLine::path(const char *option) const
{
    return plainName(value(option));
}

QString CommandLine::readNumber(const char *option, const char *what, unsigned int &number,
                                unsigned int least, unsigned int most) const
{
    if (!isSet(option))
        return {};
    bool isNumber = false;
    number = value(option).toUInt(&isNumber);
    if (isNumber && number >= least && number <= most)
        return {};
    return QStringLiteral("'%1' is no %2.").arg(value(option), QLatin1String(what));
}

int CommandLine::wrongUsage(const QString &message) const
{
    printError(message);
    std::fprintf(stderr, "Try '%s --help'.\n", m_name.toUtf8().constData());
    return ExitStatus::WrongUsage;
}

QString CommandLine::help() const
{
    // The parser's own usage line has the program's path, and does not say what has to be given.
    const QString text = m_parser.helpText();
    return QStringLiteral("Usage: ") + m_name + QLatin1Char(' ') + m_synopsis +
           QStringLiteral("\n\n") + text.mid(text.indexOf(m_parser.applicationDescription()));
}
