#include "ResourceLimits.h"
#include "ViewerPages.h"
#include "faults/FaultRuns.h"

#include <QDir>
#include <QHash>
#include <QRegularExpression>
#include <QtTest>

namespace {

// Qt's painter and ICU go on with a null pointer when they cannot have smaller ones, and its event
// loop ends the program when it is those that files are read through.
constexpr int kLeastAllocation = 65536;

// By the files that there are. The old picture is replaced, and no file is made but the new one.
int leastCalls(const Fault &fault)
{
    static const QHash<QByteArray, int> calls{{"open", 5},   {"read", 4},  {"write", 1},
                                              {"rename", 1}, {"close", 5}, {"memory", 2}};
    return calls.value(fault.kind);
}

// As docviewer has them, with each picture of its window taken for the same.
QStringList entriesOf(const Workplace &place)
{
    QStringList entries = place.entries();
    if (QImage(place.path(text("out.png"))).size() == QSize(1100, 720))
        entries.replaceInStrings(QRegularExpression(text("^out\\.png .*")), text("out.png window"));
    return entries;
}

// What docviewer has said; the platform plugin may have something to say, too.
Outcome withOwnLines(Outcome outcome)
{
    QByteArray lines;
    for (const QByteArray &line : outcome.err.split('\n')) {
        if (line.startsWith("docviewer: "))
            lines += line + '\n';
    }
    outcome.err = lines;
    return outcome;
}

} // namespace

/// Each call for a file, and each larger allocation, fails once: docviewer shows its window, with
/// what is wrong in it, or says what is wrong, and no file is lost or halfway there.
class TestFaultsViewer : public QObject
{
    Q_OBJECT

private:
    void fill(Workplace &place) const
    {
        place.program = text(DOCVIEWER_PROGRAM);
        place.environment.insert(text("QT_QPA_PLATFORM"), text("offscreen"));
        place.environment.insert(text("QT_FONT_DPI"), text("96")); // the window's size goes by it
        place.environment.insert(text("XDG_CONFIG_HOME"), m_settings.path());
        QDir(place.path({})).mkdir(text("doc"));
        place.write(text("doc/page_0"), ViewerPages::slidePage(0, Qt::red, "click 0.2"));
        place.write(text("doc/page_1"), ViewerPages::picturePage(Qt::blue));
        place.write(text("out.png"), "old");
    }

    const QTemporaryDir m_settings;
    const QStringList m_arguments = words("--screenshot out.png doc");

private Q_SLOTS:
    void everyCall_data()
    {
        QTest::addColumn<Fault>("fault");
        for (const Fault &fault : kFileFaults)
            QTest::newRow(nameOf(fault)) << fault;
        if (!kSanitized) // it has an allocator of its own, which is in front of the faults
            QTest::newRow(nameOf(memoryFault(kLeastAllocation))) << memoryFault(kLeastAllocation);
    }
    void everyCall()
    {
        QFETCH(Fault, fault);
        Workplace undisturbed;
        fill(undisturbed);
        const QStringList before = undisturbed.entries();
        const FaultyRun whole = runWithFault(undisturbed, m_arguments, fault);
        QCOMPARE(withOwnLines(whole.outcome).err, QByteArray());
        QCOMPARE(whole.outcome.status, 0);
        QVERIFY2(whole.calls >= leastCalls(fault), QByteArray::number(whole.calls));
        const QStringList done = entriesOf(undisturbed);
        QVERIFY(done.contains(text("out.png window")));
        for (fault.at = 1; fault.at <= whole.calls; ++fault.at) {
            Workplace place;
            fill(place);
            const Outcome outcome = runWithFault(place, m_arguments, fault).outcome;
            const QString wrong =
                harm(withOwnLines(outcome), entriesOf(place), before, done, text("docviewer"));
            QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("call %1 of %2: %3\n%4")
                                                     .arg(fault.at)
                                                     .arg(whole.calls)
                                                     .arg(wrong, QString::fromUtf8(outcome.err))));
        }
    }
};

QTEST_GUILESS_MAIN(TestFaultsViewer)
#include "tst_faults_viewer.moc"
