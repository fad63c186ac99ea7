#include "ResourceLimits.h"
#include "tools/docpage/check/ChildRun.h"

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <cstdlib>
#include <new>
#include <stdexcept>

#include <poll.h>
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

QByteArray loop()
{
    for (;;)
        ::getppid();
}

// Longer than anybody should, but not for ever when nobody puts an end to it.
constexpr int kLongWait = 60000; // ms

QByteArray wait()
{
    std::signal(SIGALRM, SIG_DFL);
    ::alarm(kLongWait / 1000);
    for (;;)
        ::pause();
}

// Has a function throw that must not.
template <typename Exception>
QByteArray terminate()
{
    const Work work = []() -> QByteArray { throw Exception(); };
    [&]() noexcept { work(); }();
    return {};
}

struct Word : std::runtime_error
{
    Word()
        : runtime_error("word")
    {
    }
};

/// Blocks a signal, until the end of the scope.
class SignalBlock
{
public:
    explicit SignalBlock(int signal)
    {
        sigset_t blocked = {};
        sigemptyset(&blocked);
        sigaddset(&blocked, signal);
        ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    }
    ~SignalBlock() { ::pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    Q_DISABLE_COPY_MOVE(SignalBlock)

private:
    sigset_t before = {};
};

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
    void endsAreToldWhereTheyWereIgnored();
    void longAnswer();
    void leavesTheProcessAsItWas();
    void workCannotExceedItsProcessorTime_data();
    void workCannotExceedItsProcessorTime();
    void workIsGivenUpInTheEnd_data();
    void workIsGivenUpInTheEnd();
    void workEndsWithItsProcess();
    void leavesNoCore();
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
        "exception", []() -> QByteArray { throw Word(); }, Ending::Crashed, "", "exit status 1");
    row("exception that must not leave", terminate<Word>, Ending::Crashed, "", "Aborted");
    row(
        "out of memory", []() -> QByteArray { throw std::bad_alloc(); }, Ending::OutOfMemory, "",
        "needs more memory");
    row("out of memory where that must not leave", terminate<std::bad_alloc>, Ending::OutOfMemory,
        "", "needs more memory");
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

// As its starter may have left it.
void TestChildRun::endsAreToldWhereTheyWereIgnored()
{
    std::signal(SIGCHLD, SIG_IGN);
    const ChildResult result = runInChild([]() -> QByteArray { ::_exit(3); }, {64 * kMegabyte});
    QCOMPARE(result.fault, QStringLiteral("exit status 3"));
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

void TestChildRun::workCannotExceedItsProcessorTime_data()
{
    QTest::addColumn<Work>("work");
    QTest::addColumn<qint64>("cpuTime");

    const auto row = [](const char *name, Work work, qint64 cpuTime) {
        QTest::newRow(name) << work << cpuTime;
    };
    row("told", loop, 1000);
    row(
        "does not listen",
        [] {
            std::signal(SIGXCPU, SIG_IGN);
            return loop();
        },
        2000);
}

void TestChildRun::workCannotExceedItsProcessorTime()
{
    QFETCH(Work, work);
    QFETCH(qint64, cpuTime);
    const SignalBlock block(SIGXCPU); // is no concern of the child
    const ChildResult result = runInChild(work, {64 * kMegabyte, 1, 100});
    QVERIFY(result.ending == Ending::TimedOut);
    QCOMPARE(result.fault, QStringLiteral("takes too long"));
    // The system counts towards limits by ticks, and more coarsely than it tells.
    QVERIFY2(result.cpuTime > cpuTime - 500, QByteArray::number(result.cpuTime));
    QVERIFY2(result.cpuTime < cpuTime + 800, QByteArray::number(result.cpuTime));
    QVERIFY(result.wallTime < 100000);
}

void TestChildRun::workIsGivenUpInTheEnd_data()
{
    QTest::addColumn<Work>("work");

    QTest::newRow("waits") << Work(wait);
    QTest::newRow("closes all files and waits") << Work([] {
        for (int descriptor = STDERR_FILENO + 1; descriptor < 1024; ++descriptor)
            ::close(descriptor);
        return wait();
    });
}

void TestChildRun::workIsGivenUpInTheEnd()
{
    QFETCH(Work, work);
    const ChildResult result = runInChild(work, {64 * kMegabyte, 60, 1});
    QVERIFY(result.ending == Ending::TimedOut);
    QCOMPARE(result.fault, QStringLiteral("takes too long"));
    QVERIFY(result.wallTime >= 1000);
    QVERIFY2(result.wallTime < kLongWait - 10000, QByteArray::number(result.wallTime));
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
}

void TestChildRun::workEndsWithItsProcess()
{
    int ends[2] = {};
    QCOMPARE(::pipe(ends), 0);
    const pid_t process = ::fork();
    if (process == 0) {
        runInChild(
            [&] {
                const bool isTold = ::write(ends[1], "x", 1) == 1;
                return isTold ? wait() : QByteArray();
            },
            {64 * kMegabyte});
        ::_exit(0);
    }
    ::close(ends[1]);
    char byte = 0;
    QCOMPARE(::read(ends[0], &byte, 1), ssize_t(1)); // it works
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    pollfd closed = {ends[0], POLLIN, 0};
    QCOMPARE(::poll(&closed, 1, kLongWait / 2), 1);
    QCOMPARE(::read(ends[0], &byte, 1), ssize_t(0)); // nobody is left to write
    ::close(ends[0]);
}

void TestChildRun::leavesNoCore()
{
    const ResourceLimit limit(RLIMIT_CORE, 1);
    const ChildResult result = runInChild(
        [] {
            rlimit inside = {1, 1};
            ::getrlimit(RLIMIT_CORE, &inside);
            return QByteArray::number(static_cast<qulonglong>(inside.rlim_cur));
        },
        {64 * kMegabyte});
    QCOMPARE(result.answer, QByteArray("0"));
}

void TestChildRun::workCannotExceedItsMemory()
{
    if (!limitsMemory())
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
