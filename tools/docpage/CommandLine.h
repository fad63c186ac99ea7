#pragma once

#include <QCommandLineParser>

#include <limits>
#include <optional>

/// The command line of the program or of one of its commands: reads it, and answers --help and
/// wrong usage.
class CommandLine
{
public:
    /// \param name what is typed, as "docpage wrap"
    /// \param synopsis what follows the name in the usage, lines of at most 79 characters
    /// \param description lines of at most 79 characters
    CommandLine(const char *name, const char *synopsis, const char *description);

    /// What has to be given besides options, once or any number of times; or what may be.
    enum class Count { One, OneOrMore, NoneOrOne };
    void addInput(const char *name, Count count, const char *description);

    /// The pages of a document, any number of times.
    void addDocument();

    /// An option of the name `name`, followed by a value when `value` is the name of one.
    void addOption(const char *name, const char *description, const char *value = "");

    /// The options -o and --force.
    enum class Need { Required, Optional };
    void addOutput(const char *value, const char *description, Need need = Need::Required);

    /// Reads what follows the name.
    /// \return the exit status when that was all: help was printed, or the usage is wrong
    std::optional<int> parse(const QStringList &arguments);

    /// Says what is wrong with the command line, a sentence, and where help is.
    /// \return the exit status
    int wrongUsage(const QString &message) const;

    /// The names of files that were given.
    QStringList inputs() const;

    /// The first of them that the process was given, for a fault of no certain file; empty when
    /// there is none.
    static QString firstInputOfProcess();

    QString output() const { return path("output"); }
    QString path(const char *option) const;

    bool isSet(const char *option) const { return m_parser.isSet(QLatin1String(option)); }
    /// Reads the value of an option into `number`, which stays when the option is not given.
    /// \param what the value is, in words
    /// \return what is wrong with it, a sentence; empty when nothing is
    QString readNumber(const char *option, const char *what, unsigned int &number,
                       unsigned int least = 0,
                       unsigned int most = std::numeric_limits<unsigned int>::max()) const;

    QString value(const char *option) const { return m_parser.value(QLatin1String(option)); }

private:
    QString help() const;

    QCommandLineParser m_parser;
    QString m_name;
    QString m_synopsis;
    QString m_input;  // what inputs are called; empty when there are none
    QString m_output; // what the output is called; empty when there is none
    Count m_count = Count::OneOrMore;
    Need m_outputNeed = Need::Required;
};
