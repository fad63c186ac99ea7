#include "tests/faults/FaultRuns.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

namespace {

// An entry as Workplace tells it, without what is told of it.
QString nameOf(const QString &entry)
{
    const int end = entry.indexOf(QLatin1Char(' '));
    const QString name = entry.left(end);
    return name.endsWith(QLatin1Char('/')) ? name.chopped(1) : name;
}

QSet<QString> namesOf(const QStringList &entries)
{
    QSet<QString> names;
    for (const QString &entry : entries)
        names.insert(nameOf(entry));
    return names;
}

// "docpage: FILE: what is wrong", with a file that is known.
bool isClear(const QString &line, const QString &program, const QSet<QString> &names)
{
    const QStringList parts = line.split(text(": "));
    return parts.size() >= 3 && parts.at(0) == program && names.contains(parts.at(1));
}

} // namespace

QByteArray nameOf(const Fault &fault)
{
    return QByteArray(fault.kind) + (fault.isAndAfter ? ", and all after it" : "") +
           (fault.isShort ? ", half of it" : "") +
           (fault.least > 0 ? " from " + QByteArray::number(fault.least) + " bytes" : QByteArray());
}

FaultyRun runWithFault(Workplace &place, const QStringList &arguments, const Fault &fault)
{
    const QTemporaryDir reports;
    const QString report = reports.filePath(text("calls"));
    const QProcessEnvironment before = place.environment;
    place.preload(text(FAULTS_LIBRARIES));
    const auto set = [&](const char *name, const QString &value) {
        place.environment.insert(text(name), value);
    };
    set("FAULT_KIND", text(fault.kind));
    set("FAULT_AT", QString::number(fault.at));
    set("FAULT_ERRNO", QString::number(fault.error));
    set("FAULT_LEAST", QString::number(fault.least));
    set("FAULT_BELOW", QFileInfo(place.path({})).canonicalFilePath());
    set("FAULT_REPORT", report);
    if (fault.isAndAfter)
        set("FAULT_AND_AFTER", text("1"));
    if (fault.isShort)
        set("FAULT_SHORT", text("1"));
    if (fault.kills)
        set("FAULT_KILL", text("1"));
    const Outcome outcome = place.run(arguments);
    place.environment = before;
    QFile calls(report);
    return {outcome, calls.open(QIODevice::ReadOnly) ? calls.readAll().toInt() : -1};
}

QString harm(const Outcome &outcome, const QStringList &after, const QStringList &before,
             const QStringList &done, const QString &program)
{
    if (outcome.status != 0 && outcome.status != 1)
        return QStringLiteral("ends with %1").arg(outcome.status);
    if (outcome.status == 0 && after != done)
        return QStringLiteral("says that it is done, but it is not");
    if (outcome.status == 0 && !outcome.err.isEmpty())
        return QStringLiteral("is done, but complains");
    if (outcome.status == 1 && !outcome.err.endsWith('\n'))
        return QStringLiteral("says nothing");
    const QSet<QString> known = namesOf(before + done);
    const QStringList lines = QString::fromUtf8(outcome.err).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (!line.isEmpty() && !isClear(line, program, known))
            return QStringLiteral("says what is not clear: ") + line;
    }
    for (const QString &entry : after) {
        if (!before.contains(entry) && !done.contains(entry))
            return QStringLiteral("leaves ") + entry;
    }
    const QSet<QString> left = namesOf(after);
    for (const QString &entry : before) {
        if (!left.contains(nameOf(entry)))
            return QStringLiteral("loses ") + entry;
    }
    return {};
}
