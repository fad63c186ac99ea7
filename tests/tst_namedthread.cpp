#include "common/QNamedThread.h"
#include "emfdeal/EmfDeal.h"

#include <QTextCodec>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <functional>
#include <future>
#include <utility>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

// The name of a thread of this process, as the system's thread list shows it.
QByteArray systemName(long tid)
{
    QFile comm(QStringLiteral("/proc/self/task/%1/comm").arg(tid));
    return comm.open(QIODevice::ReadOnly) ? comm.readAll().chopped(1) : QByteArray("(none)");
}

QByteArray systemNameOfThisThread()
{
    return systemName(syscall(SYS_gettid));
}

// Does its work on the thread it lives on, when it receives an event. Qt's event queue hands the
// event over, but ThreadSanitizer cannot see how: what it sees is the counter and the promise.
class Doer : public QObject
{
public:
    explicit Doer(std::function<void()> what)
        : work(std::move(what))
    {
    }

    bool event(QEvent *event) override
    {
        ++handedOver;
        if (event->type() != QEvent::User)
            return QObject::event(event);
        work();
        moveToThread(nullptr);
        done.set_value();
        return true;
    }

    std::promise<void> done;
    static inline std::atomic<int> handedOver{0};

private:
    std::function<void()> work;
};

// A started thread, stopped at the end of the scope.
class Running
{
public:
    explicit Running(QNamedThread &started)
        : thread(started)
    {
        // On the thread itself, as its last act.
        QObject::connect(&thread, &QThread::finished, [this] { ended = true; });
        thread.start();
    }
    ~Running() { stop(); }
    Q_DISABLE_COPY_MOVE(Running)

    void stop()
    {
        thread.quit();
        if (!thread.wait() || !ended)
            qFatal("the thread does not end");
    }

    // Runs `work` on the thread, in its loop.
    void run(std::function<void()> work)
    {
        Doer doer(std::move(work));
        auto *event = new QEvent(QEvent::User);
        doer.moveToThread(&thread);
        ++Doer::handedOver;
        QCoreApplication::postEvent(&doer, event);
        doer.done.get_future().wait();
    }

private:
    QNamedThread &thread;
    std::atomic<bool> ended{false}; // tells ThreadSanitizer too that the thread has ended
};

} // namespace

class TestNamedThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAPlainQThreadButForItsName()
    {
        QObject parent;
        auto *thread = new QNamedThread(&parent);
        QCOMPARE(thread->parent(), &parent);
        QCOMPARE(thread->objectName(), QStringLiteral("QNamedThread"));
        QCOMPARE(QByteArray(thread->metaObject()->className()), QByteArray("QThread"));
        QCOMPARE(thread->metaObject(), &QThread::staticMetaObject);
        QVERIFY(!thread->isRunning());
        QCOMPARE(QNamedThread(nullptr).parent(), nullptr);
        QCOMPARE(sizeof(QNamedThread), sizeof(QThread));
    }

    void startedThreadCarriesItsName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("shown");
        QTest::newRow("default") << QStringLiteral("QNamedThread") << QByteArray("QNamedThread");
        QTest::newRow("own name") << QStringLiteral("EmfDeal") << QByteArray("EmfDeal");
        QTest::newRow("empty: the class name") << QString() << QByteArray("QThread");
        QTest::newRow("15 bytes fit")
            << QStringLiteral("123456789012345") << QByteArray("123456789012345");
        QTest::newRow("16 bytes: Qt's first 15")
            << QStringLiteral("1234567890123456") << QByteArray("123456789012345");
        QTest::newRow("much too long: Qt's first 15")
            << QStringLiteral("a name far beyond what the system keeps")
            << QByteArray("a name far beyo");
        QTest::newRow("bytes count, not letters: 15 in 8")
            << QStringLiteral("äöüäöüäx") << QStringLiteral("äöüäöüäx").toUtf8();
        QTest::newRow("bytes count, not letters: 16 in 8")
            << QStringLiteral("äöüäöüäö") << QStringLiteral("äöüäöüä").toUtf8() + "\xC3";
        QTest::newRow("percent sign") << QStringLiteral("50%s") << QByteArray("50%s");
    }
    void startedThreadCarriesItsName()
    {
        QFETCH(QString, name);
        QNamedThread thread(nullptr);
        thread.setObjectName(name);
        QByteArray shown;
        Running(thread).run([&] { shown = systemNameOfThisThread(); });
        QTEST(shown, "shown");
    }

    // Qt has named the thread before run(); it is run() that names it again.
    void runNamesTheThread()
    {
        struct Renamed : QNamedThread
        {
            using QNamedThread::QNamedThread;

        protected:
            void run() override
            {
                SetThreadName("other");
                QNamedThread::run();
            }
        } thread(nullptr);
        QByteArray shown;
        Running(thread).run([&] { shown = systemNameOfThisThread(); });
        QCOMPARE(shown, QByteArray("QNamedThread"));
    }

    // The loop runs until quit().
    void runsAnEventLoop()
    {
        struct Loop : QNamedThread
        {
            using QNamedThread::QNamedThread;
            std::atomic<bool> returned{false};

        protected:
            void run() override
            {
                QNamedThread::run();
                returned = true;
            }
        } thread(nullptr);
        Running running(thread);
        int calls = 0;
        running.run([&] { ++calls; });
        running.run([&] { ++calls; });
        QCOMPARE(calls, 2);
        QVERIFY(!thread.returned);
        QVERIFY(thread.isRunning());
        running.stop();
        QVERIFY(thread.returned);
    }

    void laterNameNeedsAnUpdate()
    {
        QNamedThread thread(nullptr);
        Running running(thread);
        running.run([] {}); // started for good: the name is no longer read
        thread.setObjectName(QStringLiteral("later"));
        QByteArray before;
        QByteArray after;
        running.run([&] {
            before = systemNameOfThisThread();
            thread.updateThreadName();
            after = systemNameOfThisThread();
        });
        QCOMPARE(before, QByteArray("QNamedThread"));
        QCOMPARE(after, QByteArray("later"));

        // Too long: refused without a word, and not shortened.
        thread.setObjectName(QStringLiteral("1234567890123456"));
        QByteArray refused;
        running.run([&] {
            thread.updateThreadName();
            refused = systemNameOfThisThread();
        });
        QCOMPARE(refused, QByteArray("later"));
    }

    // It is the calling thread that is named.
    void setThreadName()
    {
        const QByteArray original = systemName(getpid());
        QCOMPARE(QNamedThread::SetThreadName("renamed"), 0);
        QCOMPARE(systemName(getpid()), QByteArray("renamed"));
        QCOMPARE(QNamedThread::SetThreadName("123456789012345"), 0);
        QCOMPARE(systemName(getpid()), QByteArray("123456789012345"));
        QCOMPARE(QNamedThread::SetThreadName("1234567890123456"), ERANGE);
        QCOMPARE(systemName(getpid()), QByteArray("123456789012345"));
        QCOMPARE(QNamedThread::SetThreadName(""), 0);
        QCOMPARE(systemName(getpid()), QByteArray());

        QNamedThread other(nullptr);
        Running(other).run([] { QNamedThread::SetThreadName("other"); });
        QCOMPARE(systemName(getpid()), QByteArray());
        QCOMPARE(QNamedThread::SetThreadName(original.constData()), 0);
    }

    void updateNamesTheCallersThread()
    {
        const QByteArray original = systemName(getpid());
        QNamedThread idle(nullptr);
        idle.setObjectName(QStringLiteral("idle"));
        idle.updateThreadName();
        QCOMPARE(systemName(getpid()), QByteArray("idle"));
        idle.setObjectName(QString());
        idle.updateThreadName();
        QCOMPARE(systemName(getpid()), QByteArray("QThread"));
        QNamedThread::SetThreadName("other");
        idle.setObjectName(QStringLiteral(""));
        idle.updateThreadName();
        QCOMPARE(systemName(getpid()), QByteArray("QThread"));

        // The class is that of the object.
        EmfDeal encoder;
        encoder.setObjectName(QString());
        encoder.updateThreadName();
        QCOMPARE(systemName(getpid()), QByteArray("EmfDeal"));

        // The bytes are those of the locale.
        QTextCodec *const codec = QTextCodec::codecForLocale();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        idle.setObjectName(QStringLiteral("ä"));
        idle.updateThreadName();
        QTextCodec::setCodecForLocale(codec);
        QCOMPARE(systemName(getpid()), QByteArray("\xE4"));
        QNamedThread::SetThreadName(original.constData());
    }
};

QTEST_GUILESS_MAIN(TestNamedThread)
#include "tst_namedthread.moc"
