#include "ResourceLimits.h"
#include "tools/docpage/check/ChildRun.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using Ending = ChildResult::Ending;
using Work = QByteArray (*)();

constexpr qint64 kMegabyte = 1 << 20;

QByteArray work()
{
    return "done";
}

} // namespace

Q_DECLARE_METATYPE(Work)
Q_DECLARE_METATYPE(ChildResult::Ending)

/// Work in a child process, and what it may do there.
class TestChildRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endings_data();
    void endings();
    void longAnswer();
    void leavesTheProcessAsItWas();
    void workCannotExceedItsProcessorTime();
    void workIsGivenUpInTheEnd();
    void workCannotExceedItsMemory();
    void noProcess();
    void closesWhatItOpened();
};

void TestChildRun::endings_data()
{
    QTest::addColumn<Work>("work");
    QTest::addColumn<ChildResult::Ending>("ending");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("fault");

    const auto row = [](const char *name, Work work, Ending ending, const char *answer,
                        const char *fault) {
        QTest::newRow(name) << work << ending << QByteArray(answer) << QString::fromLatin1(fault);
    };
    row("answer", work, Ending::Finished, "done", "");
    row(
        "empty answer", [] { return QByteArray(); }, Ending::Finished, "", "");
    row(
        "abort", []() -> QByteArray { std::abort(); }, Ending::Crashed, "", "Aborted");
    row(
        "killed", [] { return QByteArray(::raise(SIGKILL), 'x'); }, Ending::Crashed, "", "Killed");
    row(
        "exit", []() -> QByteArray { ::_exit(3); }, Ending::Crashed, "", "exit status 3");
    row(
        "exception", []() -> QByteArray { throw std::runtime_error("word"); }, Ending::Crashed, "",
        "exit status 1");
}

void TestChildRun::endings()
{
    QFETCH(Work, work);
    QFETCH(QByteArray, answer);
    QFETCH(QString, fault);
    const ChildResult result = runInChild(work, {64 * kMegabyte});
    QTEST(result.ending, "ending");
    QCOMPARE(result.answer, answer);
    QCOMPARE(result.fault, fault);
}

void TestChildRun::longAnswer()
{
    const ChildResult result =
        runInChild([] { return QByteArray(1000000, 'a') + "z"; }, {64 * kMegabyte});
    QVERIFY(result.ending == Ending::Finished);
    QVERIFY(result.answer == QByteArray(1000000, 'a') + "z");
}

void TestChildRun::leavesTheProcessAsItWas()
{
    int value = 1;
    const ChildResult result = runInChild(
        [&] {
            value = 2;
            return QByteArray::number(value);
        },
        {64 * kMegabyte});
    QCOMPARE(result.answer, QByteArray("2"));
    QCOMPARE(value, 1);
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1); // no child is left
}

void TestChildRun::workCannotExceedItsProcessorTime()
{
    QElapsedTimer timer;
    timer.start();
    const ChildResult result = runInChild(
        []() -> QByteArray {
            for (;;)
                ::getppid();
        },
        {64 * kMegabyte, 1, 250});
    QVERIFY(result.ending == Ending::TimedOut);
    QCOMPARE(result.fault, QStringLiteral("takes too long"));
    QVERIFY(timer.elapsed() < 200000);
}

void TestChildRun::workIsGivenUpInTheEnd()
{
    const ChildResult result = runInChild(
        []() -> QByteArray {
            for (;;)
                ::pause();
        },
        {64 * kMegabyte, 60, 1});
    QVERIFY(result.ending == Ending::TimedOut);
    QCOMPARE(result.fault, QStringLiteral("takes too long"));
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
}

void TestChildRun::workCannotExceedItsMemory()
{
    if (!isAddressSpaceLimited())
        return; // a sanitizer or an emulator reserves its own and takes no limit
    const auto allocate = [](qint64 bytes) {
        return runInChild(
            [bytes] {
                void *volatile memory = std::malloc(static_cast<size_t>(bytes));
                const QByteArray answer = memory ? "there" : "none";
                std::free(memory);
                return answer;
            },
            {64 * kMegabyte});
    };
    QCOMPARE(allocate(48 * kMegabyte).answer, QByteArray("there"));
    QCOMPARE(allocate(80 * kMegabyte).answer, QByteArray("none"));
}

void TestChildRun::noProcess()
{
    const ResourceLimit limit(RLIMIT_NOFILE, 0);
    const ChildResult result = runInChild(work, {64 * kMegabyte});
    QVERIFY(result.ending == Ending::NotStarted);
    QCOMPARE(result.fault, QStringLiteral("Too many open files"));
}

void TestChildRun::closesWhatItOpened()
{
    const int before = ::dup(STDERR_FILENO);
    ::close(before);
    for (int i = 0; i < 3; ++i)
        runInChild(work, {64 * kMegabyte});
    const int after = ::dup(STDERR_FILENO);
    ::close(after);
    QCOMPARE(after, before);
}

QTEST_GUILESS_MAIN(TestChildRun)
#include "tst_childrun.moc"
