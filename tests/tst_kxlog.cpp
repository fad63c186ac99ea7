#include <KxBase/KxLog.h>

#include <QTemporaryFile>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

using KxBase::KxSDKCommonLog;
using KxBase::KxSetLogSink;
using Kxlogger::E_LOG_LEVEL_DEF;
using Kxlogger::LOG_LEVEL_ERROR;
using Kxlogger::LOG_LEVEL_INFO;

namespace {

constexpr int kThreads = 8;

/// Collects lines as "level module|message" while it lives. It has no lock of its own: the log
/// calls a sink by one thread at a time.
class UnlockedSpy
{
public:
    UnlockedSpy() { KxSetLogSink(add, this); }
    ~UnlockedSpy() { KxSetLogSink(nullptr, nullptr); }
    UnlockedSpy(const UnlockedSpy &) = delete;
    UnlockedSpy &operator=(const UnlockedSpy &) = delete;

    QList<QByteArray> lines;

private:
    static void add(void *context, E_LOG_LEVEL_DEF level, const char *module, const char *message)
    {
        static_cast<UnlockedSpy *>(context)->lines.append(QByteArray::number(int(level)) + ' ' +
                                                          module + '|' + message);
    }
};

/// Puts another file in the place of standard error while it lives.
class StandardErrorTo
{
public:
    explicit StandardErrorTo(int file)
        : m_saved(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3))
    {
        ::dup2(file, STDERR_FILENO);
    }
    ~StandardErrorTo() { restore(); }
    StandardErrorTo(const StandardErrorTo &) = delete;
    StandardErrorTo &operator=(const StandardErrorTo &) = delete;

    void restore()
    {
        if (m_saved < 0)
            return;
        ::dup2(m_saved, STDERR_FILENO);
        ::close(m_saved);
        m_saved = -1;
    }

private:
    int m_saved;
};

/// What `action` writes to standard error.
template <typename Action>
QByteArray standardErrorOf(Action action)
{
    QTemporaryFile file;
    if (!file.open())
        return "no temporary file";
    {
        const StandardErrorTo redirected(file.handle());
        action();
    }
    file.seek(0);
    return file.readAll();
}

/// A pipe as standard error, drained by a thread of its own.
class StandardErrorPipe
{
public:
    explicit StandardErrorPipe(int flags)
    {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        ::fcntl(ends[1], F_SETFL, flags);
        m_redirected = std::make_unique<StandardErrorTo>(ends[1]);
        ::close(ends[1]);
        m_reader = std::thread([this, end = ends[0]] {
            char buffer[4096];
            for (ssize_t n; (n = ::read(end, buffer, sizeof buffer)) > 0;)
                m_text.append(buffer, int(n));
            ::close(end);
        });
    }
    ~StandardErrorPipe() { text(); }
    StandardErrorPipe(const StandardErrorPipe &) = delete;
    StandardErrorPipe &operator=(const StandardErrorPipe &) = delete;

    /// All that was written; ends the redirection.
    QByteArray text()
    {
        m_redirected.reset();
        if (m_reader.joinable())
            m_reader.join();
        return m_text;
    }

private:
    std::unique_ptr<StandardErrorTo> m_redirected;
    std::thread m_reader;
    QByteArray m_text; // the reader's until it is joined
};

/// Runs `action` with 0 … kThreads - 1 on a thread each and waits for all.
template <typename Action>
void onThreads(Action action)
{
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back(action, i);
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace

class tst_KxLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void levelAndModule_data();
    void levelAndModule();
    void lineEnds_data();
    void lineEnds();
    void formatsArguments();
    void messageEndsAtNul();
    void longMessage_data();
    void longMessage();
    void messageThatCannotBeMade();
    void nullTexts();
    void oneWritePerLine();
    void closedStandardError();
    void pipeThatNobodyReads();

    void errnoIsKept();
    void errnoReachesTheFormat();

    void lastSinkSetReceives();
    void nullSinkRestoresStandardError();
    void nestedLine();
    void nestedSetSink();
    void exceptionOfSink();

    void threadsToSink();
    void threadsToStandardError_data();
    void threadsToStandardError();
    void sinkIsLetGo();
    void sinkIsChangedByAll();
};

void tst_KxLog::initTestCase()
{
    std::setlocale(LC_ALL, "C");
}

void tst_KxLog::cleanup()
{
    KxSetLogSink(nullptr, nullptr);
}

void tst_KxLog::levelAndModule_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QByteArray>("module");
    QTest::addColumn<QByteArray>("toSink");
    QTest::addColumn<QByteArray>("toStandardError");

    QTest::newRow("0: debug") << 0 << QByteArray("VPrnt") << QByteArray("0 VPrnt|message")
                              << QByteArray("[debug] VPrnt: message\n");
    QTest::newRow("1: info") << 1 << QByteArray("VPrnt") << QByteArray("1 VPrnt|message")
                             << QByteArray("[info] VPrnt: message\n");
    QTest::newRow("2: error") << 2 << QByteArray("VPrnt") << QByteArray("2 VPrnt|message")
                              << QByteArray("[error] VPrnt: message\n");
    QTest::newRow("3: the number") << 3 << QByteArray("VPrnt") << QByteArray("3 VPrnt|message")
                                   << QByteArray("[3] VPrnt: message\n");
    QTest::newRow("-1: the number") << -1 << QByteArray("VPrnt") << QByteArray("-1 VPrnt|message")
                                    << QByteArray("[-1] VPrnt: message\n");
    QTest::newRow("2147483647: the number")
        << 2147483647 << QByteArray("VPrnt") << QByteArray("2147483647 VPrnt|message")
        << QByteArray("[2147483647] VPrnt: message\n");
    QTest::newRow("empty module: nothing before the colon")
        << 2 << QByteArray("") << QByteArray("2 |message") << QByteArray("[error] : message\n");
    QTest::newRow("line ends in the module: escaped on standard error")
        << 2 << QByteArray("V\r\nP") << QByteArray("2 V\r\nP|message")
        << QByteArray("[error] V\\r\\nP: message\n");
    QTest::newRow("% in the module: no format")
        << 2 << QByteArray("%s%n") << QByteArray("2 %s%n|message")
        << QByteArray("[error] %s%n: message\n");
}

void tst_KxLog::levelAndModule()
{
    QFETCH(int, level);
    QFETCH(QByteArray, module);
    const auto log = [&] {
        KxSDKCommonLog(E_LOG_LEVEL_DEF(level), module.constData(), "%s", "message");
    };

    QTEST(standardErrorOf(log), "toStandardError");

    QFETCH(QByteArray, toSink);
    UnlockedSpy spy;
    log();
    QCOMPARE(spy.lines, QList<QByteArray>{toSink});
}

void tst_KxLog::lineEnds_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("toSink");
    QTest::addColumn<QByteArray>("toStandardError");

    QTest::newRow("none: as it is")
        << QByteArray("text") << QByteArray("2 M|text") << QByteArray("[error] M: text\n");
    QTest::newRow("LF at the end: cut")
        << QByteArray("text\n") << QByteArray("2 M|text") << QByteArray("[error] M: text\n");
    QTest::newRow("CR LF at the end: cut")
        << QByteArray("text\r\n") << QByteArray("2 M|text") << QByteArray("[error] M: text\n");
    QTest::newRow("several at the end: cut")
        << QByteArray("text\n\n\r\r\n") << QByteArray("2 M|text")
        << QByteArray("[error] M: text\n");
    QTest::newRow("blank behind the line end: both kept")
        << QByteArray("text\n ") << QByteArray("2 M|text\n ")
        << QByteArray("[error] M: text\\n \n");
    QTest::newRow("LF and CR within: kept for the sink, escaped on standard error")
        << QByteArray("a\nb\rc\r\nd") << QByteArray("2 M|a\nb\rc\r\nd")
        << QByteArray("[error] M: a\\nb\\rc\\r\\nd\n");
    QTest::newRow("LF at the begin: kept for the sink, escaped on standard error")
        << QByteArray("\ntext") << QByteArray("2 M|\ntext") << QByteArray("[error] M: \\ntext\n");
    QTest::newRow("nothing but line ends: empty")
        << QByteArray("\r\n\n") << QByteArray("2 M|") << QByteArray("[error] M: \n");
    QTest::newRow("empty: empty") << QByteArray("") << QByteArray("2 M|")
                                  << QByteArray("[error] M: \n");
    QTest::newRow("backslash: as it is")
        << QByteArray("a\\nb") << QByteArray("2 M|a\\nb") << QByteArray("[error] M: a\\nb\n");
    QTest::newRow("UTF-8: as it is") << QByteArray("\xE7\x89\x88") << QByteArray("2 M|\xE7\x89\x88")
                                     << QByteArray("[error] M: \xE7\x89\x88\n");
}

void tst_KxLog::lineEnds()
{
    QFETCH(QByteArray, message);
    const auto log = [&] { KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "%s", message.constData()); };

    QTEST(standardErrorOf(log), "toStandardError");

    QFETCH(QByteArray, toSink);
    UnlockedSpy spy;
    log();
    QCOMPARE(spy.lines, QList<QByteArray>{toSink});
}

void tst_KxLog::formatsArguments()
{
    UnlockedSpy spy;
    KxSDKCommonLog(LOG_LEVEL_INFO, "M", "%d of %d, %s, %.2f, %zu, %%", 1, 2, "text", 0.5,
                   std::size_t(3));
    QCOMPARE(spy.lines, QList<QByteArray>{"1 M|1 of 2, text, 0.50, 3, %"});
}

void tst_KxLog::messageEndsAtNul()
{
    const auto log = [] { KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "a\n%cb", 0); };
    QCOMPARE(standardErrorOf(log), QByteArray("[error] M: a\n"));
    UnlockedSpy spy;
    log();
    QCOMPARE(spy.lines, QList<QByteArray>{"2 M|a"});
}

void tst_KxLog::longMessage_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {255, 256, 511, 512, 1023, 1024, 4095, 4096, 65536, 8 << 20})
        QTest::addRow("%d bytes: in full", length) << length;
}

void tst_KxLog::longMessage()
{
    QFETCH(int, length);
    const QByteArray message = QByteArray(length - 1, 'x') + 'y';
    const auto log = [&] { KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "%s", message.constData()); };
    // Not QCOMPARE, which would print megabytes.
    QVERIFY(standardErrorOf(log) == "[error] M: " + message + '\n');
    UnlockedSpy spy;
    log();
    QCOMPARE(spy.lines.size(), 1);
    QVERIFY(spy.lines.constFirst() == "2 M|" + message);
}

void tst_KxLog::messageThatCannotBeMade()
{
    // No character of the C locale.
    const wchar_t text[] = {wchar_t(0x7248), 0};
    UnlockedSpy spy;
    KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "file %ls of %d\n", text, 3);
    QCOMPARE(spy.lines, QList<QByteArray>{"2 M|file %ls of %d"});
}

void tst_KxLog::nullTexts()
{
    // Kept from the compiler, which would warn.
    const char *volatile none = nullptr;
    const auto log = [&] {
        KxSDKCommonLog(LOG_LEVEL_ERROR, none, "%s", "message");
        KxSDKCommonLog(LOG_LEVEL_ERROR, "M", none, 1);
        KxSDKCommonLog(LOG_LEVEL_ERROR, none, none, 1);
    };
    QCOMPARE(standardErrorOf(log), QByteArray("[error] : message\n[error] M: \n[error] : \n"));
    UnlockedSpy spy;
    log();
    QCOMPARE(spy.lines, (QList<QByteArray>{"2 |message", "2 M|", "2 |"}));
}

void tst_KxLog::oneWritePerLine()
{
    int ends[2]; // keeps the bounds of each write
    QCOMPARE(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
    {
        const StandardErrorTo redirected(ends[1]);
        KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "a\nb");
        KxSDKCommonLog(LOG_LEVEL_INFO, "M", "%s", QByteArray(5000, 'x').constData());
    }
    ::close(ends[1]);
    char buffer[8192];
    QCOMPARE(QByteArray(buffer, int(::read(ends[0], buffer, sizeof buffer))),
             QByteArray("[error] M: a\\nb\n"));
    QCOMPARE(QByteArray(buffer, int(::read(ends[0], buffer, sizeof buffer))),
             "[info] M: " + QByteArray(5000, 'x') + '\n');
    QCOMPARE(::read(ends[0], buffer, sizeof buffer), ssize_t(0));
    ::close(ends[0]);
}

void tst_KxLog::pipeThatNobodyReads()
{
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    ::close(ends[0]);
    {
        const StandardErrorTo broken(ends[1]);
        KxSDKCommonLog(LOG_LEVEL_ERROR, "VPrnt", "lost"); // would end the process by SIGPIPE
    }
    ::close(ends[1]);
    sigset_t pending;
    ::sigpending(&pending);
    QCOMPARE(sigismember(&pending, SIGPIPE), 0);
    sigset_t blocked;
    ::pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    QCOMPARE(sigismember(&blocked, SIGPIPE), 0);
}

void tst_KxLog::closedStandardError()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    StandardErrorTo redirected(file.handle());
    ::close(STDERR_FILENO);
    errno = 7;
    KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "lost");
    const int after = errno;
    redirected.restore();
    QCOMPARE(after, 7);
    QCOMPARE(standardErrorOf([] { KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "next"); }),
             QByteArray("[error] M: next\n"));
}

void tst_KxLog::errnoIsKept()
{
    const auto spoil = [](void *, E_LOG_LEVEL_DEF, const char *, const char *) { errno = 99; };
    KxSetLogSink(spoil, nullptr);
    errno = 7;
    KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "message");
    QCOMPARE(errno, 7);

    const auto fail = [](void *, E_LOG_LEVEL_DEF, const char *, const char *) {
        errno = 99;
        throw std::runtime_error("sink");
    };
    KxSetLogSink(fail, nullptr);
    errno = 7;
    try {
        KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "message");
    } catch (const std::runtime_error &) {
    }
    QCOMPARE(errno, 7);

    KxSetLogSink(nullptr, nullptr);
    const wchar_t text[] = {wchar_t(0x7248), 0};
    int after = 0;
    standardErrorOf([&] {
        errno = 7;
        KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "%ls", text);
        after = errno;
    });
    QCOMPARE(after, 7);
}

void tst_KxLog::errnoReachesTheFormat()
{
    UnlockedSpy spy;
    errno = ENOENT;
    KxSDKCommonLog(LOG_LEVEL_ERROR, "M", "%m");
    QCOMPARE(spy.lines, QList<QByteArray>{"2 M|No such file or directory"});
}

void tst_KxLog::lastSinkSetReceives()
{
    UnlockedSpy first;
    KxSDKCommonLog(LOG_LEVEL_INFO, "M", "one");
    UnlockedSpy second;
    KxSDKCommonLog(LOG_LEVEL_INFO, "M", "two");
    QCOMPARE(first.lines, QList<QByteArray>{"1 M|one"});
    QCOMPARE(second.lines, QList<QByteArray>{"1 M|two"});
}

void tst_KxLog::nullSinkRestoresStandardError()
{
    UnlockedSpy spy;
    QCOMPARE(standardErrorOf([] { KxSDKCommonLog(LOG_LEVEL_INFO, "M", "one"); }), QByteArray());
    KxSetLogSink(nullptr, &spy);
    QCOMPARE(standardErrorOf([] { KxSDKCommonLog(LOG_LEVEL_INFO, "M", "two"); }),
             QByteArray("[info] M: two\n"));
    QCOMPARE(spy.lines, QList<QByteArray>{"1 M|one"});
}

void tst_KxLog::nestedLine()
{
    const auto sink = [](void *context, E_LOG_LEVEL_DEF, const char *, const char *message) {
        static_cast<QList<QByteArray> *>(context)->append(message);
        KxSDKCommonLog(LOG_LEVEL_ERROR, "sink", "saw %s", message);
    };
    QList<QByteArray> lines;
    KxSetLogSink(sink, &lines);
    const QByteArray written = standardErrorOf([] {
        KxSDKCommonLog(LOG_LEVEL_INFO, "M", "one");
        KxSDKCommonLog(LOG_LEVEL_INFO, "M", "two");
    });
    QCOMPARE(lines, (QList<QByteArray>{"one", "two"}));
    QCOMPARE(written, QByteArray("[error] sink: saw one\n[error] sink: saw two\n"));
}

void tst_KxLog::nestedSetSink()
{
    struct Recorder
    {
        static void next(void *context, E_LOG_LEVEL_DEF, const char *, const char *message)
        {
            static_cast<Recorder *>(context)->lines.append(QByteArray("next ") + message);
        }
        static void first(void *context, E_LOG_LEVEL_DEF, const char *, const char *message)
        {
            KxSetLogSink(next, context);
            KxSDKCommonLog(LOG_LEVEL_ERROR, "sink", "still nested");
            static_cast<Recorder *>(context)->lines.append(QByteArray("first ") + message);
        }
        QList<QByteArray> lines;
    };
    Recorder recorder;
    KxSetLogSink(Recorder::first, &recorder);
    const QByteArray written = standardErrorOf([] {
        KxSDKCommonLog(LOG_LEVEL_INFO, "M", "one");
        KxSDKCommonLog(LOG_LEVEL_INFO, "M", "two");
        // Another thread finds the log free.
        std::thread([] { KxSDKCommonLog(LOG_LEVEL_INFO, "M", "three"); }).join();
    });
    QCOMPARE(recorder.lines, (QList<QByteArray>{"first one", "next two", "next three"}));
    QCOMPARE(written, QByteArray("[error] sink: still nested\n"));
}

void tst_KxLog::exceptionOfSink()
{
    const auto sink = [](void *, E_LOG_LEVEL_DEF, const char *, const char *message) {
        throw std::runtime_error(message);
    };
    KxSetLogSink(sink, nullptr);
    QVERIFY_EXCEPTION_THROWN(KxSDKCommonLog(LOG_LEVEL_INFO, "M", "one"), std::runtime_error);
    QVERIFY_EXCEPTION_THROWN(KxSDKCommonLog(LOG_LEVEL_INFO, "M", "two"), std::runtime_error);

    UnlockedSpy spy;
    std::thread([] { KxSDKCommonLog(LOG_LEVEL_INFO, "M", "three"); }).join();
    QCOMPARE(spy.lines, QList<QByteArray>{"1 M|three"});
}

void tst_KxLog::threadsToSink()
{
    constexpr int kLines = 500;
    UnlockedSpy spy;
    onThreads([](int thread) {
        for (int n = 0; n < kLines; ++n)
            KxSDKCommonLog(LOG_LEVEL_INFO, "M", "%d %d", thread, n);
    });

    QCOMPARE(spy.lines.size(), kThreads * kLines);
    std::vector<int> next(kThreads, 0);
    for (const QByteArray &line : qAsConst(spy.lines)) {
        int thread = -1;
        int n = -1;
        QCOMPARE(std::sscanf(line.constData(), "1 M|%d %d", &thread, &n), 2);
        QVERIFY(thread >= 0 && thread < kThreads);
        QCOMPARE(n, next[std::size_t(thread)]++); // in the order of its thread
    }
}

void tst_KxLog::threadsToStandardError_data()
{
    QTest::addColumn<int>("flags");
    QTest::newRow("blocking pipe: whole lines") << 0;
    QTest::newRow("non-blocking pipe: whole lines") << O_NONBLOCK;
}

void tst_KxLog::threadsToStandardError()
{
    QFETCH(int, flags);
    constexpr int kLines = 50;
    constexpr int kFill = 9000; // more than a pipe takes in one piece
    StandardErrorPipe pipe(flags);
    onThreads([](int thread) {
        const QByteArray fill(kFill, char('a' + thread));
        for (int n = 0; n < kLines; ++n)
            KxSDKCommonLog(LOG_LEVEL_INFO, "M", "%d %s\n", n, fill.constData());
    });

    QList<QByteArray> lines = pipe.text().split('\n');
    QCOMPARE(lines.takeLast(), QByteArray());
    QCOMPARE(lines.size(), kThreads * kLines);
    std::vector<int> next(kThreads, 0);
    for (const QByteArray &line : qAsConst(lines)) {
        const int thread = line.back() - 'a';
        QVERIFY(thread >= 0 && thread < kThreads);
        const QByteArray fill(kFill, line.back());
        QVERIFY(line ==
                "[info] M: " + QByteArray::number(next[std::size_t(thread)]++) + ' ' + fill);
    }
}

void tst_KxLog::sinkIsLetGo()
{
    constexpr int kLines = 500;
    struct Context
    {
        static void add(void *context, E_LOG_LEVEL_DEF, const char *, const char *message)
        {
            auto *self = static_cast<Context *>(context);
            self->busy = true;
            self->lines.insert(message);
            std::this_thread::yield();
            self->busy = false;
        }
        std::set<std::string> lines;
        bool busy = false;
    };

    std::atomic<bool> done{false};
    std::size_t received = 0;
    bool wasBusy = false;
    auto first = std::make_unique<Context>();
    KxSetLogSink(Context::add, first.get());
    std::thread changer([&, current = std::move(first)]() mutable {
        for (bool last = false; !last;) {
            last = done;
            auto next = std::make_unique<Context>();
            KxSetLogSink(last ? nullptr : Context::add, next.get());
            // From here on only this thread has the former context, and destroys it.
            wasBusy = wasBusy || current->busy;
            received += current->lines.size();
            current = std::move(next);
        }
    });
    onThreads([](int thread) {
        for (int n = 0; n < kLines; ++n)
            KxSDKCommonLog(LOG_LEVEL_INFO, "M", "%d %d", thread, n);
    });
    done = true;
    changer.join();

    QVERIFY(!wasBusy);
    QCOMPARE(received, std::size_t(kThreads * kLines));
}

void tst_KxLog::sinkIsChangedByAll()
{
    constexpr int kRounds = 200;
    std::atomic<int> received{0};
    const auto count = [](void *context, E_LOG_LEVEL_DEF, const char *, const char *) {
        ++*static_cast<std::atomic<int> *>(context);
    };
    const QByteArray written = standardErrorOf([&] {
        onThreads([&](int thread) {
            for (int n = 0; n < kRounds; ++n) {
                KxSetLogSink(n % 2 == 0 ? static_cast<KxBase::KxLogSink>(count) : nullptr,
                             &received);
                KxSDKCommonLog(LOG_LEVEL_INFO, "M", "%d", thread);
            }
        });
    });
    QCOMPARE(received + written.count("[info] M: "), kThreads * kRounds);
    QCOMPARE(written.count('\n'), written.count("[info] M: "));
}

QTEST_APPLESS_MAIN(tst_KxLog)
#include "tst_kxlog.moc"
