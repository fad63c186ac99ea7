#include "PageFiles.h"
#include "faults/FaultRuns.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <csignal>

#include <sys/time.h>

namespace {

// For the child: its end after a time. SIGALRM ends a program that does not expect it as SIGKILL
// does, and its timer goes on when the program is loaded.
std::function<void()> endAfter(qint64 microseconds)
{
    return [microseconds] {
        itimerval time = {};
        time.it_value.tv_sec = microseconds / 1000000;
        time.it_value.tv_usec = std::max<qint64>(microseconds % 1000000, 1);
        ::setitimer(ITIMER_REAL, &time, nullptr);
    };
}

// What a run may leave when it cannot end by itself: what it has not given a name.
QStringList withoutLeftovers(const QStringList &entries)
{
    static const QRegularExpression leftover(text("^new/\\.docpage-[A-Za-z0-9]{6}[/ ]"));
    QStringList others;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(others),
                 [](const QString &entry) { return !leftover.match(entry).hasMatch(); });
    return others;
}

} // namespace

/// The program is killed in the midst: pages are complete or not there, nothing else is touched,
/// and the next run succeeds.
class TestKilled : public QObject
{
    Q_OBJECT

private:
    static constexpr int kPages = 4;

    void fill(const Workplace &place) const
    {
        QString slides;
        for (int i = 0; i < kPages; ++i) {
            place.write(QStringLiteral("picture_%1.png").arg(i), m_pictures.at(i));
            slides += QStringLiteral("%1{\"background\": \"picture_%2.png\"}")
                          .arg(i == 0 ? QString() : text(", "))
                          .arg(i);
        }
        place.write(text("deck.json"), "{\"slides\": [" + slides.toUtf8() + "]}");
    }

    // Looks at what a killed run has left, and runs the command again.
    void verifyRest(const Workplace &place, const QStringList &arguments, const QStringList &before,
                    const QStringList &done)
    {
        const QStringList left = place.entries();
        const QStringList named = withoutLeftovers(left);
        for (const QString &entry : named)
            QVERIFY2(done.contains(entry), qPrintable(entry));
        for (const QString &entry : before)
            QVERIFY2(named.contains(entry), qPrintable(entry));

        const Outcome again = place.run(arguments + words("--force"));
        QCOMPARE(again.err, QByteArray());
        QCOMPARE(again.status, 0);
        QStringList after = place.entries();
        QCOMPARE(withoutLeftovers(after), done);
        for (const QString &entry : qAsConst(left))
            after.removeOne(entry);
        QCOMPARE(withoutLeftovers(after), after); // the second run has left nothing
    }

    QList<QByteArray> m_pictures;

private Q_SLOTS:
    void initTestCase()
    {
        for (int i = 0; i < kPages; ++i)
            m_pictures << PageFiles::picture(QColor(10 * i, 0, 0), "PNG", {320, 240});
    }

    void killed_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QStringList pictures;
        for (int i = 0; i < kPages; ++i)
            pictures << QStringLiteral("picture_%1.png").arg(i);
        for (const char *command : {"wrap", "encode"})
            QTest::newRow(command) << words(command) + pictures + words("-o new");
        QTest::newRow("build") << words("build deck.json -o new");
    }
    void killed()
    {
        constexpr int kRounds = 30;
        QFETCH(QStringList, arguments);
        Workplace undisturbed;
        fill(undisturbed);
        const QStringList before = undisturbed.entries();
        QElapsedTimer time;
        time.start();
        QCOMPARE(undisturbed.run(arguments).status, 0);
        const auto duration = static_cast<double>(time.nsecsElapsed()) / 1000;
        const QStringList done = undisturbed.entries();

        const quint32 seed = QRandomGenerator::system()->generate();
        qInfo("seed %u", seed);
        QRandomGenerator random(seed);
        for (int round = 0; round < kRounds; ++round) {
            Workplace place;
            fill(place);
            const Outcome outcome = place.run(
                arguments, endAfter(static_cast<qint64>(random.generateDouble() * duration)));
            QVERIFY(outcome.status == 0 || outcome.status == -SIGALRM);
            verifyRest(place, arguments, before, done);
            if (QTest::currentTestFailed())
                return;
        }
    }

    void killedAtEveryCall_data() { killed_data(); }
    void killedAtEveryCall()
    {
        QFETCH(QStringList, arguments);
        for (const char *kind : {"write", "rename", "unlink", "mkdir"}) {
            Workplace undisturbed;
            fill(undisturbed);
            const QStringList before = undisturbed.entries();
            Fault fault = {kind};
            fault.kills = true;
            const int calls = runWithFault(undisturbed, arguments, fault).calls;
            QVERIFY(calls >= 0);
            const QStringList done = undisturbed.entries();
            for (fault.at = 1; fault.at <= calls; ++fault.at) {
                Workplace place;
                fill(place);
                QCOMPARE(runWithFault(place, arguments, fault).outcome.status, -SIGKILL);
                verifyRest(place, arguments, before, done);
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestKilled)
#include "tst_killed.moc"
