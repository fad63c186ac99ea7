#include "LatinLocale.h"
#include "LogSpy.h"
#include "PageFiles.h"
#include "ResourceLimits.h"
#include "TestRenderer.h"
#include "emfdeal/EmfDeal.h"

#include <QDir>
#include <QMetaMethod>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <csignal>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr auto kPng = DocCovRslt::PAGE_FORMAT_PNG;
constexpr auto kEmf = DocCovRslt::PAGE_FORMAT_EMF;

// A signal as its receiver got it.
struct Told
{
    QString what; // "a: process 3 1 3", "a: finished", "a: failed 9"
    QStringList files;
    Qt::HANDLE thread;
    QStringList left = {}; // the files of the watched folder at the time
    int made = 0;          // how many are in its folder for outputs

    bool isEnd() const { return !what.contains(QStringLiteral("process")); }
};

/// Calls TerminateDeal() on a thread of its own.
class Canceller
{
public:
    explicit Canceller(EmfDeal &encoder)
        : deal(encoder)
        , worker([this] { run(); })
    {
    }
    ~Canceller()
    {
        tell([this] { isLast = true; });
        worker.join();
    }
    Q_DISABLE_COPY_MOVE(Canceller)

    void cancel()
    {
        tell([this] { ++wanted; });
    }

private:
    void tell(const std::function<void()> &change)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        change();
        changed.notify_one();
    }
    void run()
    {
        std::unique_lock<std::mutex> lock(mutex);
        while (!isLast) {
            changed.wait(lock, [this] { return wanted > 0 || isLast; });
            wanted = 0;
            lock.unlock();
            deal.TerminateDeal();
            lock.lock();
        }
    }

    EmfDeal &deal;
    std::mutex mutex;
    std::condition_variable changed;
    int wanted = 0;
    bool isLast = false;
    std::thread worker; // the last, as it needs the others
};

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QString idOf(const std::string &taskId)
{
    return QString::fromStdString(taskId) + QStringLiteral(": ");
}

/// A started encoder and the signals that it has sent, as heard on its own thread.
class Encoder
{
public:
    explicit Encoder(const QString &watched = {})
        : folder(watched)
    {
        QObject::connect(&deal, &EmfDeal::s_EmfEncodeProcess, &deal,
                         [this](const std::string &id, const CovProgressInfo &info) {
                             add({idOf(id) + QStringLiteral("process %1 %2 %3")
                                                 .arg(info.stage)
                                                 .arg(info.finished)
                                                 .arg(info.total),
                                  {},
                                  QThread::currentThreadId()});
                         });
        QObject::connect(
            &deal, &EmfDeal::s_EmfEncodeFinished, &deal,
            [this](const std::string &id, const QStringList &files) {
                add({idOf(id) + QStringLiteral("finished"), files, QThread::currentThreadId()});
            });
        QObject::connect(&deal, &EmfDeal::s_EmfEncodeFailed, &deal,
                         [this](const std::string &id, DocCovRslt::COVER_ERR_DEF err) {
                             add({idOf(id) + QStringLiteral("failed %1").arg(err),
                                  {},
                                  QThread::currentThreadId()});
                         });
        // On the thread itself, as its last act.
        QObject::connect(
            &deal, &QThread::finished, &deal, [this] { ended = true; }, Qt::DirectConnection);
    }
    ~Encoder() { stop(); }
    Q_DISABLE_COPY_MOVE(Encoder)

    void start() { deal.start(); }
    void stop()
    {
        if (!deal.isRunning())
            return;
        deal.TerminateDeal();
        deal.quit();
        if (!deal.wait() || !ended)
            qFatal("the encoder does not end");
    }

    /// The signals, once `jobs` jobs have ended.
    std::vector<Told> wait(int jobs)
    {
        std::unique_lock<std::mutex> lock(mutex);
        const bool areEnded = changed.wait_for(lock, std::chrono::seconds(120), [&] {
            return std::count_if(told.begin(), told.end(),
                                 [](const Told &one) { return one.isEnd(); }) >= jobs;
        });
        if (!areEnded)
            qFatal("the jobs do not end");
        return told;
    }

    /// One job from begin to end.
    std::vector<Told> encode(const QStringList &files, const QString &prefix,
                             DocCovRslt::PAGE_FORMAT_DEF format = kPng)
    {
        start();
        deal.startEmfEncode("a", format, files, prefix);
        const std::vector<Told> all = wait(1);
        stop();
        return all;
    }

    EmfDeal deal;
    std::function<void(const Told &)> onTold; ///< on the encoder's thread

private:
    void add(Told one)
    {
        if (!folder.isEmpty()) {
            one.left = QDir(folder).entryList(QDir::Files);
            one.made = QDir(folder + QStringLiteral("/out")).entryList(QDir::Files).size();
        }
        if (onTold)
            onTold(one);
        const std::lock_guard<std::mutex> lock(mutex);
        told.push_back(one);
        changed.notify_all();
    }

    const QString folder;
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Told> told;
    std::atomic<bool> ended{false}; // tells ThreadSanitizer too that the thread has ended
};

QStringList whats(const std::vector<Told> &told)
{
    QStringList all;
    for (const Told &one : told)
        all << one.what;
    return all;
}

QByteArray read(const QString &path)
{
    QFile in(path);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("(none)");
}

/// The files that are deleted in a folder, as the system tells of them.
class DeletedFiles
{
public:
    explicit DeletedFiles(const QString &folder)
        : m_events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        ::inotify_add_watch(m_events, QFile::encodeName(folder).constData(), IN_DELETE);
    }
    ~DeletedFiles() { ::close(m_events); }
    Q_DISABLE_COPY_MOVE(DeletedFiles)

    /// Their names up to now, in order.
    QStringList names() const
    {
        QStringList all;
        alignas(inotify_event) std::array<char, 65536> block;
        const ssize_t size = ::read(m_events, block.data(), block.size());
        for (ssize_t at = 0; at < size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(block.data() + at);
            all << QFile::decodeName(event->name);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
        return all;
    }

private:
    const int m_events;
};

const QRegularExpression
    kBraced(text("^\\{[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}\\}$"));

} // namespace

/// The encoder on its thread.
class TestEmfEncoder : public QObject
{
    Q_OBJECT

private:
    const LatinLocale locale;
    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<LogSpy> log;

    QString file(const QString &name) const { return dir->filePath(name); }
    // Inputs of these names and a content that tells their place.
    QStringList write(const QStringList &names) const
    {
        QStringList paths;
        for (const QString &name : names)
            paths << PageFiles::write(*dir, name, "page " + QByteArray::number(paths.size()));
        return paths;
    }
    QString prefix() const { return file(text("out/")); }
    QStringList outputs() const { return QDir(prefix()).entryList(QDir::Files); }
    QStringList inputs() const { return QDir(dir->path()).entryList(QDir::Files); }
    // The lines of level 2.
    QStringList failures() const
    {
        QStringList lines = log->takeLines();
        lines.erase(
            std::remove_if(lines.begin(), lines.end(),
                           [](const QString &line) { return !line.startsWith(text("2 ")); }),
            lines.end());
        return lines;
    }

private Q_SLOTS:
    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        log.reset(); // it would take its successor away
        log = std::make_unique<LogSpy>();
        QVERIFY(QDir(dir->path()).mkdir(text("out")));
        TestRenderer::instance() = TestRenderer();
    }

    // The first of the tests: those after it have constructed encoders before.
    void typesAreRegistered()
    {
        const EmfDeal encoder;
        for (const char *name : {"DocCovRslt::DOCRSLT_TYPE", "DocCovRslt::PAGE_FORMAT_DEF",
                                 "CovProgressInfo", "DocCovRslt::COVER_ERR_DEF", "std::string"})
            QVERIFY2(QMetaType::type(name) != QMetaType::UnknownType, name);
    }

    void metaObject()
    {
        const QMetaObject &meta = EmfDeal::staticMetaObject;
        QCOMPARE(meta.className(), "EmfDeal");
        QCOMPARE(meta.superClass(), &QThread::staticMetaObject);
        QCOMPARE(EmfDeal().metaObject(), &meta);
        QStringList methods;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            methods << QStringLiteral("%1 %2").arg(
                method.methodType() == QMetaMethod::Signal ? text("signal")
                : method.methodType() == QMetaMethod::Slot ? text("slot")
                                                           : text("other"),
                QString::fromUtf8(method.methodSignature()));
            QCOMPARE(method.typeName(), "void");
        }
        QCOMPARE(methods.join(QLatin1Char('\n')),
                 text("signal s_EmfEncodeProcess(std::string,CovProgressInfo)\n"
                      "signal s_EmfEncodeFinished(std::string,QStringList)\n"
                      "signal s_EmfEncodeFailed(std::string,DocCovRslt::COVER_ERR_DEF)\n"
                      "signal s_startEmfEncode(std::string,DocCovRslt::PAGE_FORMAT_DEF,"
                      "QStringList,QString)\n"
                      "slot slot_startEmfEncode(std::string,DocCovRslt::PAGE_FORMAT_DEF,"
                      "QStringList,QString)"));
        QCOMPARE(meta.propertyCount(), QThread::staticMetaObject.propertyCount());
        QCOMPARE(meta.enumeratorCount(), QThread::staticMetaObject.enumeratorCount());
    }

    void isConstructedOnItsOwnThread()
    {
        EmfDeal encoder;
        QCOMPARE(encoder.objectName(), text("EmfDeal"));
        QCOMPARE(encoder.thread(), &encoder);
        QCOMPARE(encoder.parent(), nullptr);
        QVERIFY(!encoder.isRunning());
        QVERIFY(!encoder.isFinished());
    }

    void threadIsNamed()
    {
        TestRenderer::instance().onCheck = [] {
            QFile comm(text("/proc/self/task/%1/comm").arg(::syscall(SYS_gettid)));
            if (!comm.open(QIODevice::ReadOnly) || comm.readAll() != "EmfDeal\n")
                throw std::runtime_error("another name");
        };
        Encoder encoder;
        const QString in = PageFiles::write(*dir, text("a"), "EMF page");
        QCOMPARE(whats(encoder.encode({in}, prefix(), kEmf)).last(), text("a: finished"));
    }

    void jobSucceeds()
    {
        Encoder encoder(dir->path());
        const auto told = encoder.encode(write({text("a"), text("b"), text("c")}), prefix());
        QCOMPARE(whats(told), QStringList({text("a: process 3 1 3"), text("a: process 3 2 3"),
                                           text("a: process 3 3 3"), text("a: finished")}));
        // Each input is deleted before it is told.
        QCOMPARE(told[0].left, QStringList({text("b"), text("c")}));
        QCOMPARE(told[1].left, QStringList({text("c")}));
        QCOMPARE(told[2].left, QStringList());
        QCOMPARE(told[0].made, 1);
        QCOMPARE(told[3].made, 3);
        for (const Told &one : told) {
            QCOMPARE(one.thread, told[0].thread);
            QVERIFY(one.thread != QThread::currentThreadId());
        }
        // One identifier for the job.
        const QStringList files = told[3].files;
        QCOMPARE(files.size(), 3);
        const QString id = files[0].mid(prefix().size()).chopped(2);
        QVERIFY2(kBraced.match(id).hasMatch(), qPrintable(id));
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(files[i], prefix() + id + QStringLiteral("_%1").arg(i));
            QCOMPARE(read(files[i]), QByteArray::fromHex("8888888801010400000006000000") + "page " +
                                         QByteArray::number(i));
        }
        QCOMPARE(outputs().size(), 3);
        QStringList lines;
        for (const char *name : {"a", "b", "c"})
            lines << QStringLiteral("1 VPrnt encodeEmf(%1), rslt format:4, len:6")
                         .arg(file(text(name)));
        QCOMPARE(log->takeLines(), lines);
    }

    // Another job has another identifier, and an index of two digits is not padded.
    void namesOfManyFiles()
    {
        Encoder encoder;
        QStringList names;
        for (int i = 0; i < 11; ++i)
            names << QStringLiteral("in%1").arg(i);
        encoder.start();
        encoder.deal.startEmfEncode("a", kPng, write(names), prefix());
        encoder.wait(1);
        encoder.deal.startEmfEncode("b", kPng, write(names), prefix());
        const auto told = encoder.wait(2);
        const QStringList first = told[11].files;
        const QStringList second = told[23].files;
        QVERIFY(first[10].endsWith(text("}_10")));
        QVERIFY(first[9].endsWith(text("}_9")));
        QVERIFY(first[0].chopped(2) != second[0].chopped(2));
    }

    void names_data()
    {
        QTest::addColumn<QString>("out"); // the prefix
        QTest::addColumn<QString>("in");
        const auto row = [](const char *out, const char *in) {
            QTest::newRow(out) << text(out) << text(in);
        };
        row("out/", "a b");
        row("out/page", "100%1%2%3");
        row("a b/", "%s%n");
        row("a%2b/", "%2b");
        row("a%1b/%3_%2", "ä");
        row("100%/%%", "日本語");
        row("äöü/ß {0}", "a{b}");
        row("quote'\"/", "new\nline");
    }
    void names()
    {
        QFETCH(QString, out);
        QFETCH(QString, in);
        QVERIFY(QDir(dir->path()).mkpath(out.left(out.lastIndexOf(QLatin1Char('/')))));
        Encoder encoder;
        const auto told = encoder.encode(write({in}), file(out));
        QCOMPARE(told.size(), size_t(2));
        const QString made = told[1].files.value(0);
        QVERIFY(made.startsWith(file(out)));
        QVERIFY(kBraced.match(made.mid(file(out).size()).chopped(2)).hasMatch());
        QVERIFY(made.endsWith(text("_0")));
        QVERIFY(QFile::exists(made));
        QCOMPARE(inputs(), QStringList());
    }

    void prefixMayBeEmpty()
    {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(dir->path()));
        Encoder encoder;
        const auto told = encoder.encode(write({text("a")}), {});
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(told.back().files.size(), 1);
        QCOMPARE(inputs(), told.back().files);
        QVERIFY(inputs().value(0).startsWith(QLatin1Char('{')));
    }

    void emptyList()
    {
        Encoder encoder;
        const auto told = encoder.encode({}, prefix());
        QCOMPARE(whats(told), QStringList(text("a: finished")));
        QCOMPARE(told[0].files, QStringList());
        QCOMPARE(log->takeLines(), QStringList());
    }

    void formats_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QString>("end");
        for (const int format : {1, 2, 3, 4, 6, -1})
            QTest::newRow(QByteArray::number(format).constData()) << format << text("a: finished");
        QTest::newRow("5") << 5 << text("a: failed 9");
        QTest::newRow("0, and no EMF") << 0 << text("a: failed 9");
    }
    void formats()
    {
        QFETCH(int, format);
        Encoder encoder;
        const QStringList in = write({text("a")});
        const auto told =
            encoder.encode(in, prefix(), static_cast<DocCovRslt::PAGE_FORMAT_DEF>(format));
        QTEST(told.back().what, "end");
        QCOMPARE(inputs(), QStringList());
        QCOMPARE(outputs().size(), told.back().files.size());
        if (!told.back().files.isEmpty())
            QCOMPARE(int(qint8(read(told.back().files[0])[6])), format);
        else
            QCOMPARE(log->takeLines(),
                     QStringList(QStringLiteral("2 VPrnt encode Emf failed! (format:%1, file:%2)")
                                     .arg(format)
                                     .arg(in[0])));
    }

    void emfPages()
    {
        TestRenderer::instance().pngSize = 256001;
        TestRenderer::instance().jpgSize = 7;
        const QString in = PageFiles::write(*dir, text("a"), "EMF page");
        Encoder encoder;
        const auto told = encoder.encode({in}, prefix(), kEmf);
        QCOMPARE(told.back().what, text("a: finished"));
        QCOMPARE(read(told.back().files[0]),
                 QByteArray::fromHex("8888888801010200000007000000") + "jjjjjjj");
        QCOMPARE(inputs(), QStringList());
    }

    // The second of the files.
    void fileFails_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::newRow("missing") << text("missing");
        QTest::newRow("folder") << text("folder");
        QTest::newRow("duplicate") << text("a");
        QTest::newRow("below a file") << text("a/b");
        if (::geteuid() != 0)
            QTest::newRow("not to be read") << text("closed");
    }
    void fileFails()
    {
        QFETCH(QString, fault);
        QStringList in = write({text("a"), text("c"), text("closed"), text("other")});
        QVERIFY(QFile::setPermissions(in[2], {}));
        QVERIFY(QDir(dir->path()).mkdir(text("folder")));
        Encoder encoder(dir->path());
        const auto told = encoder.encode({in[0], file(fault), in[1], in[2]}, prefix());
        QCOMPARE(whats(told), QStringList({text("a: process 3 1 4"), text("a: failed 9")}));
        QCOMPARE(told[1].left, QStringList(text("other"))); // all was deleted before
        QCOMPARE(told[1].made, 0);
        QCOMPARE(outputs(), QStringList());
        QCOMPARE(
            failures(),
            QStringList(
                QStringLiteral("2 VPrnt encode Emf failed! (format:4, file:%1)").arg(file(fault))));
        QVERIFY(QDir(file(text("folder"))).exists());
    }

    void emptyInput()
    {
        Encoder encoder;
        const auto told =
            encoder.encode({PageFiles::write(*dir, text("empty"), QByteArray())}, prefix());
        QCOMPARE(told.back().what, text("a: finished"));
        QCOMPARE(read(told.back().files[0]), QByteArray::fromHex("8888888801010400000000000000"));
        QCOMPARE(inputs(), QStringList());
    }

    void outputFails_data()
    {
        QTest::addColumn<QString>("out");
        QTest::newRow("missing folder") << text("gone/");
        QTest::newRow("a file for a folder") << text("file/");
        QTest::newRow("name too long") << text("out/") + QString(255, QLatin1Char('n'));
        QTest::newRow("system's folder") << text("../../../../../../../../proc/");
        if (::geteuid() != 0)
            QTest::newRow("read-only folder") << text("closed/");
    }
    void outputFails()
    {
        QFETCH(QString, out);
        QVERIFY(QDir(dir->path()).mkdir(text("closed")));
        QVERIFY(QFile::setPermissions(file(text("closed")), QFile::ReadOwner | QFile::ExeOwner));
        PageFiles::write(*dir, text("file"), "stays");
        Encoder encoder;
        const QStringList in = write({text("a"), text("b")});
        const auto told = encoder.encode(in, file(out));
        QCOMPARE(whats(told), QStringList(text("a: failed 9")));
        const QStringList lines = failures();
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines[0].startsWith(text("2 VPrnt CreateEmfDealRsltFile! (err:5, file:") +
                                    file(out) + QLatin1Char('{')));
        QCOMPARE(lines[1],
                 QStringLiteral("2 VPrnt encode Emf failed! (format:4, file:%1)").arg(in[0]));
        QCOMPARE(inputs(), QStringList(text("file")));
        QCOMPARE(outputs(), QStringList());
    }

    // The first page fits, the second does not. A file may not become larger than the limit, which
    // fails like a full disk.
    void diskIsFull()
    {
        std::signal(SIGXFSZ, SIG_IGN);
        const QString small = PageFiles::write(*dir, text("a"), QByteArray(100, 'a'));
        const QString large = PageFiles::write(*dir, text("b"), QByteArray(100000, 'b'));
        std::vector<Told> told;
        {
            const ResourceLimit limit(RLIMIT_FSIZE, 50000);
            Encoder encoder;
            told = encoder.encode({small, large}, prefix());
        }
        QCOMPARE(whats(told), QStringList({text("a: process 3 1 2"), text("a: failed 9")}));
        QCOMPARE(inputs(), QStringList());
        QCOMPARE(outputs(), QStringList()); // the partly written one, too
        const QStringList lines = failures();
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines[0].startsWith(text("2 VPrnt WrtEmfDealRsltFile! (err:")));
        QVERIFY(lines[0].endsWith(text("_1)")));
    }

    void inputIsLargerThanTheMemory()
    {
        if (!limitsMemory())
            return;
        const QString huge = PageFiles::write(*dir, text("huge"), QByteArray());
        QVERIFY(QFile::resize(huge, 1 << 30));
        std::vector<Told> told;
        {
            Encoder encoder;
            encoder.start();
            const ResourceLimit limit(RLIMIT_AS, addressSpaceFor(512 << 20));
            encoder.deal.startEmfEncode("a", kPng, {huge}, prefix());
            told = encoder.wait(1);
        }
        QCOMPARE(whats(told), QStringList(text("a: failed 9")));
        QCOMPARE(inputs(), QStringList());
        QCOMPARE(failures(),
                 QStringList(
                     QStringLiteral("2 VPrnt encode Emf failed! (format:4, file:%1)").arg(huge)));
    }

    // It fails before the first file, and is not taken for cancelled.
    void namesAreLargerThanTheMemory()
    {
        if (!limitsMemory())
            return;
        const QStringList in = write({text("a"), text("b")});
        const QString huge(64 << 20, QLatin1Char('n')); // 128 MiB, and as much again for a name
        std::vector<Told> told;
        {
            Encoder encoder;
            encoder.start();
            const ResourceLimit limit(RLIMIT_AS, addressSpaceFor(64 << 20));
            encoder.deal.startEmfEncode("a", kPng, in, huge);
            told = encoder.wait(1);
        }
        QCOMPARE(whats(told), QStringList(text("a: failed 9")));
        QCOMPARE(inputs(), QStringList());
        QCOMPARE(failures(),
                 QStringList(
                     QStringLiteral("2 VPrnt encode Emf failed! (format:4, file:%1)").arg(in[0])));
    }

    void rendererThrows_data()
    {
        QTest::addColumn<bool>("isStandard");
        QTest::newRow("std::exception") << true;
        QTest::newRow("other") << false;
    }
    void rendererThrows()
    {
        QFETCH(bool, isStandard);
        TestRenderer::instance().onCheck = [isStandard] {
            if (isStandard)
                throw std::runtime_error("fault");
            throw 1;
        };
        Encoder encoder;
        QCOMPARE(whats(encoder.encode(write({text("a"), text("b")}), prefix(), kEmf)),
                 QStringList(text("a: failed 9")));
        QCOMPARE(inputs(), QStringList());
    }

    // Wherever it is thrown, the job ends as it should.
    void logThrows_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::addColumn<bool>("isCancelled");
        QTest::addColumn<QString>("end");
        QTest::newRow("when a page is done") << QString() << false << text("a: failed 9");
        QTest::newRow("when a file fails") << text("missing") << false << text("a: failed 9");
        QTest::newRow("when it is cancelled") << QString() << true << text("a: failed 1");
    }
    void logThrows()
    {
        QFETCH(QString, missing);
        QFETCH(bool, isCancelled);
        QFETCH(QString, end);
        KxBase::KxSetLogSink([](void *, Kxlogger::E_LOG_LEVEL_DEF, const char *,
                                const char *) { throw std::runtime_error("fault"); },
                             nullptr);
        QStringList in = write({text("a"), text("b")});
        if (!missing.isEmpty())
            in.prepend(file(missing));
        Encoder encoder;
        encoder.deal.startEmfEncode("a", kPng, in, prefix());
        if (isCancelled)
            encoder.deal.TerminateDeal();
        encoder.start();
        QCOMPARE(whats(encoder.wait(1)), QStringList(end));
        QCOMPARE(inputs(), QStringList());
        QCOMPARE(outputs(), QStringList());
    }

    void receiverThrows()
    {
        Encoder encoder;
        connect(&encoder.deal, &EmfDeal::s_EmfEncodeFinished, &encoder.deal,
                [] { throw std::runtime_error("fault"); });
        connect(&encoder.deal, &EmfDeal::s_EmfEncodeFailed, &encoder.deal, [] { throw 1; });
        encoder.deal.startEmfEncode("a", kPng, {}, prefix());
        encoder.deal.startEmfEncode("b", kPng, {file(text("missing"))}, prefix());
        encoder.deal.startEmfEncode("c", kPng, {}, prefix());
        encoder.start();
        QCOMPARE(whats(encoder.wait(3)),
                 QStringList({text("a: finished"), text("b: failed 9"), text("c: finished")}));
        encoder.stop();
        QCOMPARE(failures(),
                 QStringList({text("2 VPrnt encode Emf, tell end failed! (task:a)"),
                              QStringLiteral("2 VPrnt encode Emf failed! (format:4, file:%1)")
                                  .arg(file(text("missing"))),
                              text("2 VPrnt encode Emf, tell end failed! (task:b)"),
                              text("2 VPrnt encode Emf, tell end failed! (task:c)")}));
    }

    // In the caller's thread, without a registration of the caller's.
    void queuedDelivery()
    {
        Encoder encoder;
        QStringList told;
        QEventLoop loop;
        const auto add = [&](const QString &what) {
            QCOMPARE(QThread::currentThread(), thread());
            told << what;
        };
        connect(&encoder.deal, &EmfDeal::s_EmfEncodeProcess, &loop,
                [&](const std::string &id, const CovProgressInfo &info) {
                    add(QStringLiteral("%1 %2").arg(QString::fromStdString(id)).arg(info.finished));
                });
        connect(&encoder.deal, &EmfDeal::s_EmfEncodeFinished, &loop,
                [&](const std::string &id, const QStringList &files) {
                    add(QStringLiteral("%1 %2 files")
                            .arg(QString::fromStdString(id))
                            .arg(files.size()));
                });
        connect(&encoder.deal, &EmfDeal::s_EmfEncodeFailed, &loop,
                [&](const std::string &id, DocCovRslt::COVER_ERR_DEF err) {
                    add(QStringLiteral("%1 error %2").arg(QString::fromStdString(id)).arg(err));
                    loop.quit();
                });
        encoder.start();
        encoder.deal.startEmfEncode("ä \"1\"", kPng, write({text("a")}), prefix());
        encoder.deal.startEmfEncode("", kPng, {file(text("missing"))}, prefix());
        encoder.wait(2); // ThreadSanitizer sees by this how the signals are handed over
        loop.exec();
        QCOMPARE(told, QStringList({text("ä \"1\" 1"), text("ä \"1\" 1 files"), text(" error 9")}));
    }

    void jobsWaitForTheStart()
    {
        Encoder encoder;
        encoder.deal.startEmfEncode("a", kPng, write({text("a")}), prefix());
        encoder.deal.startEmfEncode("b", kPng, write({text("b")}), prefix());
        QCOMPARE(inputs().size(), 2);
        encoder.start();
        QCOMPARE(whats(encoder.wait(2)),
                 QStringList({text("a: process 3 1 1"), text("a: finished"),
                              text("b: process 3 1 1"), text("b: finished")}));
    }

    void cancelBeforeTheFirstFile()
    {
        Encoder encoder(dir->path());
        const QStringList in = write({text("a"), text("b")});
        encoder.deal.startEmfEncode("a", kPng, in, prefix());
        encoder.deal.startEmfEncode("b", kPng, {}, prefix()); // has no file to stop at
        encoder.deal.startEmfEncode("c", kPng, write({text("c")}), prefix());
        encoder.deal.TerminateDeal();
        encoder.start();
        const auto told = encoder.wait(3);
        QCOMPARE(whats(told),
                 QStringList({text("a: failed 1"), text("b: finished"), text("c: failed 1")}));
        QCOMPARE(told[0].left, QStringList(text("c")));
        QCOMPARE(told[2].left, QStringList());
        QCOMPARE(outputs(), QStringList());
        QCOMPARE(log->takeLines(),
                 QStringList(
                     {QStringLiteral("2 VPrnt cancel encode Emf!(file:%1)").arg(in[0]),
                      QStringLiteral("2 VPrnt cancel encode Emf!(file:%1)").arg(file(text("c")))}));
    }

    void cancelBetweenFiles_data()
    {
        QTest::addColumn<int>("after");
        QTest::newRow("the first") << 1;
        QTest::newRow("the second") << 2;
    }
    void cancelBetweenFiles()
    {
        QFETCH(int, after);
        Encoder encoder(dir->path());
        const QString last = QStringLiteral("a: process 3 %1 3").arg(after);
        encoder.onTold = [&](const Told &one) {
            if (one.what == last)
                encoder.deal.TerminateDeal();
        };
        const QStringList in = write({text("a"), text("b"), text("ä %s")});
        const auto told = encoder.encode(in, prefix());
        QCOMPARE(told.size(), size_t(after) + 1);
        QCOMPARE(told[size_t(after) - 1].what, last);
        QCOMPARE(told[size_t(after) - 1].left.size(), 3 - after);
        QCOMPARE(told.back().what, text("a: failed 1"));
        QCOMPARE(told.back().left, QStringList());
        QCOMPARE(told.back().made, 0);
        QCOMPARE(outputs(), QStringList());
        QCOMPARE(failures(),
                 QStringList(QStringLiteral("2 VPrnt cancel encode Emf!(file:%1)").arg(in[after])));
    }

    // The line that tells of it comes first, then the inputs go, then the outputs.
    void orderOfTheEnd_data()
    {
        QTest::addColumn<bool>("isCancelled");
        QTest::addColumn<QString>("line");
        QTest::newRow("cancelled") << true << text("cancel encode Emf!");
        QTest::newRow("failed") << false << text("encode Emf failed!");
    }
    void orderOfTheEnd()
    {
        QFETCH(bool, isCancelled);
        QFETCH(QString, line);
        struct Watched
        {
            QString folder;
            QString line;
            QStringList left; // when it was logged
        } watched{dir->path(), line, {}};
        KxBase::KxSetLogSink(
            [](void *context, Kxlogger::E_LOG_LEVEL_DEF, const char *, const char *message) {
                auto *of = static_cast<Watched *>(context);
                if (QString::fromUtf8(message).startsWith(of->line))
                    of->left = QDir(of->folder).entryList(QDir::Files);
            },
            &watched);
        QStringList in = write({text("a"), text("b"), text("c"), text("d")});
        if (!isCancelled)
            in.insert(2, file(text("missing")));
        DeletedFiles deleted(dir->path());
        {
            Encoder encoder;
            encoder.onTold = [&](const Told &one) {
                if (isCancelled && one.what == text("a: process 3 2 4"))
                    encoder.deal.TerminateDeal();
            };
            encoder.encode(in, file(text("z")));
        }
        log.reset(); // the sink's data goes
        QCOMPARE(watched.left.mid(0, 2), QStringList({text("c"), text("d")}));
        QCOMPARE(watched.left.size(), 4);
        const QStringList names = deleted.names();
        QCOMPARE(names.mid(0, 4), QStringList({text("a"), text("b"), text("c"), text("d")}));
        QCOMPARE(names.mid(4), watched.left.mid(2));
    }

    // A file that took the name of an input that was done is none of the job's.
    void cancelLeavesWhatCameLater()
    {
        Encoder encoder;
        encoder.onTold = [&](const Told &one) {
            if (one.what == text("a: process 3 1 2")) {
                write({text("a")});
                encoder.deal.TerminateDeal();
            }
        };
        encoder.encode(write({text("a"), text("b")}), prefix());
        QCOMPARE(inputs(), QStringList(text("a")));
        QCOMPARE(outputs(), QStringList());
    }

    void cancelAfterTheLastFile()
    {
        Encoder encoder;
        encoder.onTold = [&](const Told &one) {
            if (one.what == text("a: process 3 2 2"))
                encoder.deal.TerminateDeal();
        };
        const auto told = encoder.encode(write({text("a"), text("b")}), prefix());
        QCOMPARE(told.back().what, text("a: finished"));
        QCOMPARE(outputs().size(), 2);
    }

    // It is not cancelled before anybody has said so.
    void firstJobWithoutTheCall()
    {
        Encoder encoder;
        encoder.start();
        Q_EMIT encoder.deal.s_startEmfEncode("a", kPng, write({text("a")}), prefix());
        QCOMPARE(whats(encoder.wait(1)),
                 QStringList({text("a: process 3 1 1"), text("a: finished")}));
    }

    // startEmfEncode() clears the flag when it is called, for jobs that wait as well.
    void jobsAroundACancel()
    {
        Encoder encoder;
        encoder.deal.TerminateDeal();
        encoder.deal.startEmfEncode("a", kPng, write({text("a")}), prefix());
        encoder.deal.TerminateDeal();
        encoder.deal.startEmfEncode("b", kPng, write({text("b")}), prefix());
        encoder.start();
        QCOMPARE(whats(encoder.wait(2)),
                 QStringList({text("a: process 3 1 1"), text("a: finished"),
                              text("b: process 3 1 1"), text("b: finished")}));
        encoder.deal.startEmfEncode("c", kPng, {}, prefix());
        encoder.wait(3);
        // The flag stays set until the next call.
        encoder.deal.TerminateDeal();
        QMetaObject::invokeMethod(&encoder.deal, "slot_startEmfEncode",
                                  Q_ARG(std::string, std::string("d")),
                                  Q_ARG(DocCovRslt::PAGE_FORMAT_DEF, kPng),
                                  Q_ARG(QStringList, write({text("d")})), Q_ARG(QString, prefix()));
        QCOMPARE(encoder.wait(4).back().what, text("d: failed 1"));
        encoder.deal.startEmfEncode("e", kPng, write({text("e")}), prefix());
        QCOMPARE(encoder.wait(5).back().what, text("e: finished"));
    }

    // From the encoder's own thread a job is done within the call, and not cancelled by what was
    // cancelled before.
    void jobFromTheEncodersThread()
    {
        Encoder encoder;
        encoder.onTold = [&](const Told &one) {
            if (one.what == text("a: finished")) {
                encoder.deal.TerminateDeal();
                encoder.deal.startEmfEncode("b", kPng, write({text("b")}), prefix());
            }
        };
        encoder.deal.startEmfEncode("a", kPng, write({text("a")}), prefix());
        encoder.start();
        QCOMPARE(whats(encoder.wait(2)),
                 QStringList({text("a: process 3 1 1"), text("b: process 3 1 1"),
                              text("b: finished"), text("a: finished")}));
    }

    void jobAfterAFailure()
    {
        Encoder encoder;
        encoder.start();
        encoder.deal.startEmfEncode("a", kPng, {file(text("missing"))}, prefix());
        encoder.deal.startEmfEncode("b", kPng, write({text("b")}), prefix());
        QCOMPARE(whats(encoder.wait(2)),
                 QStringList({text("a: failed 9"), text("b: process 3 1 1"), text("b: finished")}));
        QCOMPARE(outputs().size(), 1);
    }

    void twoAtOnce()
    {
        Encoder one;
        Encoder other;
        one.start();
        other.start();
        QStringList names;
        for (int i = 0; i < 50; ++i)
            names << QStringLiteral("one%1").arg(i);
        one.deal.startEmfEncode("one", kPng, write(names), prefix());
        names.replaceInStrings(text("one"), text("other"));
        other.deal.startEmfEncode("other", kPng, write(names), prefix());
        const auto toldByOne = one.wait(1);
        const auto toldByOther = other.wait(1);
        QCOMPARE(toldByOne.size(), size_t(51));
        QCOMPARE(toldByOther.size(), size_t(51));
        QVERIFY(toldByOne[0].thread != toldByOther[0].thread);
        QCOMPARE(outputs().size(), 100);
        QCOMPARE(inputs(), QStringList());
        one.deal.TerminateDeal(); // which is not the other's business
        other.deal.startEmfEncode("again", kPng, write({text("a")}), prefix());
        QCOMPARE(other.wait(2).back().what, text("again: finished"));
    }

    // A job that the thread has not reached when it ends stays as it is.
    void isDeletedAfterItsEnd()
    {
        const QStringList in = write({text("a")});
        auto *encoder = new EmfDeal;
        encoder->start();
        encoder->TerminateDeal();
        encoder->quit();
        QVERIFY(encoder->wait());
        encoder->startEmfEncode("a", kPng, in, prefix());
        delete encoder;
        QCOMPARE(inputs(), QStringList(text("a")));
        QCOMPARE(outputs(), QStringList());
        delete new EmfDeal; // never started
    }

    // Nothing is left beyond what the signals say.
    void manyJobsWithRandomCancels()
    {
        constexpr int kJobs = 1000;
        QRandomGenerator random(7);
        Encoder encoder;
        Canceller other(encoder.deal);
        encoder.deal.startEmfEncode("0", kPng, write({text("in")}), prefix());
        encoder.deal.TerminateDeal(); // one at the least finds it
        encoder.start();
        encoder.wait(1);
        int files = 0;
        for (int i = 1; i < kJobs; ++i) {
            QStringList names;
            for (quint32 n = random.bounded(4U); n > 0; --n)
                names << QStringLiteral("in%1").arg(files++);
            QStringList in = write(names);
            if (random.bounded(10) == 0)
                in << file(text("missing"));
            encoder.deal.startEmfEncode(std::to_string(i), kPng, in, prefix());
            if (random.bounded(3) == 0)
                encoder.deal.TerminateDeal();
            if (random.bounded(3) == 0)
                other.cancel();
            if (random.bounded(8) == 0)
                encoder.wait(i);
        }
        const auto told = encoder.wait(kJobs);
        encoder.stop();

        QStringList made;
        int ends = 0;
        int cancelled = 0;
        int pages = 0; // of the job that is being told
        for (const Told &one : told) {
            QVERIFY(one.what.startsWith(QStringLiteral("%1: ").arg(ends)));
            if (!one.isEnd()) {
                QVERIFY(one.what.contains(QStringLiteral(": process 3 %1 ").arg(++pages)));
                continue;
            }
            if (one.what.endsWith(text("finished")))
                QCOMPARE(one.files.size(), pages);
            cancelled += one.what.endsWith(text("failed 1"));
            for (const QString &path : one.files)
                made << QFileInfo(path).fileName();
            pages = 0;
            ++ends;
        }
        QCOMPARE(ends, kJobs);
        QVERIFY(cancelled > 0);
        QVERIFY(!made.isEmpty());
        made.sort();
        QStringList there = outputs();
        there.sort();
        QCOMPARE(there, made);
        QCOMPARE(inputs(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestEmfEncoder)
#include "tst_emfencoder.moc"
