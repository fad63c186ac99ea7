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
    QStringList m_wrap;
    QStringList m_encode;
    QStringList m_build = words("build deck.json -o new");

private Q_SLOTS:
    void initTestCase()
    {
        QStringList names;
        for (int i = 0; i < kPages; ++i) {
            m_pictures << PageFiles::picture(QColor(10 * i, 0, 0), "PNG", {320, 240});
            names << QStringLiteral("picture_%1.png").arg(i);
        }
        m_wrap = words("wrap") + names + words("-o new");
        m_encode = words("encode") + names + words("-o new");
    }

    void killed_data()
    {
        QTest::addColumn<QStringList>("arguments");
        for (const QStringList &arguments : {m_wrap, m_encode, m_build})
            QTest::newRow(qPrintable(arguments.constFirst())) << arguments;
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
        qint64 duration = time.nsecsElapsed() / 1000;
        const QStringList done = undisturbed.entries();

        const quint32 seed = QRandomGenerator::system()->generate();
        qInfo("seed %u", seed);
        QRandomGenerator random(seed);
        int kills = 0;
        for (int round = 0; round < kRounds; ++round) {
            Workplace place;
            fill(place);
            const auto end =
                static_cast<qint64>(random.generateDouble() * static_cast<double>(duration));
            time.start();
            const Outcome outcome = place.run(arguments, endAfter(end));
            QVERIFY(outcome.status == 0 || outcome.status == -SIGALRM);
            if (outcome.status == 0) // the first run may have been a slow one
                duration = std::min(duration, time.nsecsElapsed() / 1000);
            else
                ++kills;
            verifyRest(place, arguments, before, done);
            if (QTest::currentTestFailed())
                return;
        }
        QVERIFY(kills > 0);
    }

    void killedAtEveryCall_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<int>("leastCalls");
        const auto row = [this](const QStringList &arguments, const char *kind, int leastCalls) {
            Fault fault = {kind};
            fault.kills = true;
            QTest::addRow("%s: %s", qPrintable(arguments.constFirst()), kind)
                << arguments << fault << leastCalls;
        };
        for (const QStringList &arguments : {m_wrap, m_encode, m_build}) {
            row(arguments, "write", kPages);
            row(arguments, "rename", kPages);
            row(arguments, "mkdir", 1);
        }
        row(m_encode, "unlink", kPages);
    }
    void killedAtEveryCall()
    {
        QFETCH(QStringList, arguments);
        QFETCH(Fault, fault);
        QFETCH(int, leastCalls);
        Workplace undisturbed;
        fill(undisturbed);
        const QStringList before = undisturbed.entries();
        const int calls = runWithFault(undisturbed, arguments, fault).calls;
        QVERIFY2(calls >= leastCalls, qPrintable(QString::number(calls)));
        const QStringList done = undisturbed.entries();
        for (fault.at = 1; fault.at <= calls; ++fault.at) {
            Workplace place;
            fill(place);
            QCOMPARE(runWithFault(place, arguments, fault).outcome.status, -SIGKILL);
            if (fault.at <= leastCalls) // there is work behind each of them
                QVERIFY2(withoutLeftovers(place.entries()) != done,
                         qPrintable(QString::number(fault.at)));
            verifyRest(place, arguments, before, done);
            if (QTest::currentTestFailed())
                return;
        }
    }
};

QTEST_GUILESS_MAIN(TestKilled)
#include "tst_killed.moc"
