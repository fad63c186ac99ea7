#include "ResourceLimits.h"
#include "SelfRun.h"
#include "common/FileHelper.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr qint64 kMiB = 1 << 20;
const char kMd5OfNothing[] = "d41d8cd98f00b204e9800998ecf8427e";

// What a read of the size given is answered with, instead of the system's answer.
std::function<ssize_t(int file, void *data, size_t size)> readHook;

ssize_t systemRead(int file, void *data, size_t size)
{
    return ::syscall(SYS_read, file, data, size);
}

} // namespace

// In the C library's place, for Qt's files too.
extern "C" Q_DECL_EXPORT ssize_t read(int file, void *data, size_t size)
{
    return readHook ? readHook(file, data, size) : systemRead(file, data, size);
}

namespace {

// Sets the hook until the end of the scope.
class ReadHook
{
public:
    explicit ReadHook(std::function<ssize_t(int, void *, size_t)> hook)
    {
        readHook = std::move(hook);
    }
    ~ReadHook() { readHook = nullptr; }
    Q_DISABLE_COPY_MOVE(ReadHook)
};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
}

// Numbers that repeat after 251, so that no two chunks of a file are alike.
QByteArray pattern(qint64 size)
{
    QByteArray bytes(static_cast<int>(size), Qt::Uninitialized);
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i % 251);
    return bytes;
}

// The most memory that this process has had so far, in KiB.
long peakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const auto match = QRegularExpression(QStringLiteral("VmHWM:\\s+(\\d+) kB"))
                           .match(QString::fromLatin1(status.readAll()));
    return match.hasMatch() ? match.captured(1).toLong() : -1;
}

// The zlib stream of `data`, which level 0 leaves as they are; Qt has their size in front of it.
QByteArray deflated(const QByteArray &data, int level)
{
    return qCompress(data, level).mid(4);
}

// A zlib stream of exactly `size` bytes, and what it inflates to.
QByteArray storedData(int size)
{
    return pattern(size - 11); // 2 of zlib, 5 of the one block, 4 of the check sum
}
QByteArray storedStream(int size)
{
    return deflated(storedData(size), 0);
}

QByteArray inflate(const QByteArray &stream)
{
    return uncompressRowZlibDat(reinterpret_cast<const unsigned char *>(stream.constData()),
                                stream.size());
}

// Whether there is the memory that inflating a stream of so many bytes asks for: as many as they
// are with the bytes of the number in reverse; not of 2 GiB and more, which is refused anyhow.
bool isMemoryThereFor(int size)
{
    const quint32 asked = qbswap(static_cast<quint32>(size));
    if (asked > quint32(kMax))
        return true;
    void *volatile memory = std::malloc(asked);
    const bool isThere = memory != nullptr;
    std::free(memory);
    return isThere;
}

// The test fails unless Qt warns as often.
void expectWarnings(int count, const char *text)
{
    for (int i = 0; i < count; ++i)
        QTest::ignoreMessage(QtWarningMsg, text);
}
const char kNoName[] = "QFSFileEngine::open: No file name specified";

// As the rule has it, in the unsigned arithmetic that wraps by itself.
QSize expectedEncodeSize(const QSize &src, const QSize &max)
{
    const auto u = [](int number) { return static_cast<quint32>(number); };
    const auto s = [](quint32 number) {
        return number <= quint32(kMax) ? int(number) : -1 - int(~number);
    };
    const int w = src.width();
    const int h = src.height();
    if (w < 1 || h < 1 || (w <= max.width() && h <= max.height()))
        return src;
    const int rw = s(u(max.width()) * 10000U) / w;
    const int rh = s(u(max.height()) * 10000U) / h;
    if (rw >= rh)
        return {s(u(w) * u(max.height()) + u(h) - 1U) / h, max.height()};
    return {max.width(), s(u(h) * u(max.width()) + u(w) - 1U) / w};
}

// This program as the child of a test.
int runChild(const QStringList &arguments)
{
    if (arguments.first() == QLatin1String("--digest")) {
        QString md5;
        GetFileMd5(arguments.last() + QStringLiteral(".none"), md5); // what is needed once
        const long before = peakMemory();
        const ResourceLimit limit(RLIMIT_AS, addressSpaceFor(16 * kMiB));
        const int error = GetFileMd5(arguments.last(), md5);
        std::printf("%d %s %s\n", error, qPrintable(md5),
                    before > 0 && peakMemory() - before < 16 * 1024 ? "small" : "large");
        return 0;
    }
    if (arguments.first() == QLatin1String("--wait")) {
        std::puts("running");
        std::fflush(stdout);
        std::getchar(); // until the parent has ended
        return 0;
    }
    const int size = arguments.last().toInt();
    if (inflate(storedStream(size)) == storedData(size))
        std::puts("inflated");
    else
        std::puts(isMemoryThereFor(size) ? "not inflated" : "no memory");
    return 0;
}

} // namespace

class TestFileHelper : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString path(const char *name) const { return m_dir.filePath(QString::fromUtf8(name)); }
    QString made(const char *name, const QByteArray &content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write a file");
        return file.fileName();
    }
    QString sparse(const char *name, qint64 size) const
    {
        const QString file = made(name, {});
        return QFile::resize(file, size) ? file : QString();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        QVERIFY(QDir(m_dir.path()).mkdir(QStringLiteral("folder")));
        std::signal(SIGXFSZ, SIG_IGN);
    }

    void readFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("one byte") << QByteArray("x");
        QTest::newRow("NUL") << QByteArray("\0", 1);
        QTest::newRow("line ends stay") << QByteArray("a\r\nb\nc\r\x1A");
        QTest::newRow("byte order mark stays") << QByteArray("\xEF\xBB\xBFx");
        QTest::newRow("large") << pattern(3 * kMiB + 1);
    }
    void readFile()
    {
        QFETCH(QByteArray, content);
        const QString file = made("read ä", content);
        QByteArray data("before");
        QVERIFY(ReadDataFromFile(file, data));
        QVERIFY(data == content);
    }

    void readWhatHasNoSize()
    {
        QByteArray data;
        QVERIFY(ReadDataFromFile(QStringLiteral("/proc/version"), data));
        QVERIFY(data.startsWith("Linux"));
        QVERIFY(ReadDataFromFile(QStringLiteral("/dev/null"), data));
        QCOMPARE(data, QByteArray());
    }

    // More than a QByteArray holds: nothing is delivered, as a read that fails.
    void readTooLarge_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::newRow("2 GiB") << 2048 * kMiB;
        QTest::newRow("4 GiB and a byte") << 4096 * kMiB + 1;
    }
    void readTooLarge()
    {
        QFETCH(qint64, size);
        const QString file = sparse("too large", size);
        QVERIFY(!file.isEmpty());
        QByteArray data("before");
        QVERIFY(ReadDataFromFile(file, data));
        QCOMPARE(data, QByteArray());
        QVERIFY(QFile::remove(file));
    }

    void readFailsMidway()
    {
        const QString file = made("bad", pattern(100000));
        QByteArray data("before");
        qint64 left = 40000;
        const ReadHook hook([&](int fd, void *to, size_t size) -> ssize_t {
            if (left == 0) {
                errno = EIO;
                return -1;
            }
            const ssize_t got = systemRead(fd, to, qMin(size, static_cast<size_t>(left)));
            left -= got;
            return got;
        });
        QVERIFY(ReadDataFromFile(file, data)); // it was opened
        QCOMPARE(data.size(), 40000);
        QVERIFY(pattern(100000).startsWith(data));
    }

    void unreadable_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("no name") << QString();
        QTest::newRow("missing file") << path("none");
        QTest::newRow("missing folder") << path("none/file");
        QTest::newRow("folder") << path("folder");
        QTest::newRow("file as a folder") << made("plain", "x") + QStringLiteral("/file");
        QTest::newRow("name too long") << path(QByteArray(300, 'x').constData());
        QTest::newRow("path too long") << path(QByteArray("x/").repeated(5000).constData());
    }
    void unreadable()
    {
        QFETCH(QString, file);
        QByteArray data("before");
        QString md5 = QStringLiteral("before");
        expectWarnings(file.isEmpty() ? 2 : 0, kNoName);
        QVERIFY(!ReadDataFromFile(file, data));
        QCOMPARE(data, QByteArray("before"));
        QCOMPARE(GetFileMd5(file, md5), int(QFileDevice::OpenError));
        QCOMPARE(md5, QStringLiteral("before"));
    }

    void write_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("null") << QByteArray("before") << QByteArray();
        QTest::newRow("empty") << QByteArray("before") << QByteArray("");
        QTest::newRow("nothing to nothing") << QByteArray() << QByteArray();
        QTest::newRow("shorter") << QByteArray("before") << QByteArray("x");
        QTest::newRow("longer") << QByteArray("x") << QByteArray("longer");
        QTest::newRow("any bytes") << QByteArray("\0", 1) << QByteArray("\r\n\0\xFF\x1A", 5);
        QTest::newRow("large") << pattern(100) << pattern(3 * kMiB);
    }
    void write()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, data);
        const QString file = made("write ä", before);
        QCOMPARE(WriteDataToFile2(data, file, true), 0);
        QVERIFY(contentOf(file) == before + data);
        QVERIFY(WriteDataToFile(data, file, true));
        QVERIFY(contentOf(file) == before + data + data);
        QCOMPARE(WriteDataToFile2(data, file, false), 0);
        QVERIFY(contentOf(file) == data);
        made("write ä", before);
        QVERIFY(WriteDataToFile(data, file, false));
        QVERIFY(contentOf(file) == data);

        // Both make a file where there is none.
        for (const bool append : {false, true}) {
            QVERIFY(QFile::remove(file));
            QCOMPARE(WriteDataToFile2(data, file, append), 0);
            QVERIFY(contentOf(file) == data);
        }
    }

    void unwritable_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("no name") << QString();
        QTest::newRow("missing folder") << path("none/file");
        QTest::newRow("folder") << path("folder");
        QTest::newRow("file as a folder") << made("plain", "x") + QStringLiteral("/file");
        QTest::newRow("name too long") << path(QByteArray(300, 'x').constData());
    }
    void unwritable()
    {
        QFETCH(QString, file);
        const QStringList before = QDir(m_dir.path()).entryList();
        expectWarnings(file.isEmpty() ? 6 : 0, kNoName);
        for (const bool append : {false, true}) {
            QCOMPARE(WriteDataToFile2("data", file, append), int(QFileDevice::OpenError));
            QVERIFY(!WriteDataToFile("data", file, append));
            QCOMPARE(WriteDataToFile2({}, file, append), int(QFileDevice::OpenError));
        }
        QCOMPARE(QDir(m_dir.path()).entryList(), before);
    }

    // A file that is there and may be read: a program that runs. It is beside this one, as programs
    // may be forbidden to run from the folder for temporary files.
    void runningProgram()
    {
        if (!emulator().isEmpty())
            return; // which reads the program: it is not the system that runs it
        const QTemporaryDir dir(QCoreApplication::applicationDirPath() +
                                QStringLiteral("/tst_filehelper-XXXXXX"));
        const QString file = dir.filePath(QStringLiteral("program"));
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), file));
        const QByteArray content = contentOf(file);
        ForkedProcess program;
        program.start(file, {QStringLiteral("--wait")});
        QVERIFY(program.waitForReadyRead(60000));
        for (const bool append : {false, true}) {
            QCOMPARE(WriteDataToFile2("data", file, append), int(QFileDevice::OpenError));
            QVERIFY(!WriteDataToFile("data", file, append));
        }
        QVERIFY(contentOf(file) == content);
        program.closeWriteChannel();
        QVERIFY(program.waitForFinished(60000));
        QVERIFY(WriteDataToFile("data", file, false));
        QCOMPARE(contentOf(file), QByteArray("data"));
    }

    // Qt hands the name to the system, for which it ends there.
    void nameEndsAtNul()
    {
        const QString file = made("nul", "x");
        const QString longer = file + QChar(0) + QStringLiteral("/none");
        QByteArray data;
        QVERIFY(ReadDataFromFile(longer, data));
        QCOMPARE(data, QByteArray("x"));
        QVERIFY(WriteDataToFile("y", longer, false));
        QCOMPARE(contentOf(file), QByteArray("y"));
    }

    void noDescriptorLeft()
    {
        int error = 0;
        int digestError = 0;
        QString md5;
        {
            const ResourceLimit limit(RLIMIT_NOFILE, 0);
            error = WriteDataToFile2("x", path("one more"), false);
            digestError = GetFileMd5(QStringLiteral("/dev/null"), md5);
        }
        QCOMPARE(error, int(QFileDevice::ResourceError));
        QCOMPARE(digestError, int(QFileDevice::ResourceError));
    }

    void shortWrite_data()
    {
        QTest::addColumn<bool>("append");
        QTest::addColumn<qint64>("limit");
        QTest::addColumn<int>("error");
        // Of a part that the system took Qt knows no error, and 0 is the answer to that.
        QTest::newRow("a part, anew") << false << qint64(20000) << 0;
        QTest::newRow("a part, at the end") << true << qint64(20100) << 0;
        QTest::newRow("nothing at all, anew") << false << qint64(0) << int(QFileDevice::WriteError);
        QTest::newRow("nothing at all, at the end")
            << true << qint64(100) << int(QFileDevice::WriteError);
    }
    void shortWrite()
    {
        QFETCH(bool, append);
        QFETCH(qint64, limit);
        QFETCH(int, error);
        const QByteArray old(100, 'o');
        const QByteArray data = pattern(100000);
        const QString file = made("short", old);
        int result = -1;
        bool isWritten = false;
        {
            const ResourceLimit size(RLIMIT_FSIZE, static_cast<rlim_t>(limit));
            result = WriteDataToFile2(data, file, append);
        }
        QCOMPARE(result, error);
        const QByteArray whole = append ? old + data : data;
        QVERIFY(contentOf(file) == whole.left(static_cast<int>(limit)));
        made("short", old);
        {
            const ResourceLimit size(RLIMIT_FSIZE, static_cast<rlim_t>(limit));
            isWritten = WriteDataToFile(data, file, append);
        }
        QCOMPARE(isWritten, error == 0);
    }

    void fullDevice()
    {
        const QString full = QStringLiteral("/dev/full");
        QCOMPARE(WriteDataToFile2(pattern(100000), full, false), int(QFileDevice::ResourceError));
        QVERIFY(!WriteDataToFile(pattern(100000), full, false));
        // A small write ends in Qt's buffer, and succeeds there.
        QCOMPARE(WriteDataToFile2("x", full, false), 0);
    }

    void md5_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("digest");
        const auto row = [](const char *name, const QByteArray &data, const char *digest) {
            QTest::newRow(name) << data << QString::fromLatin1(digest);
        };
        row("null", QByteArray(), kMd5OfNothing);
        row("empty", "", kMd5OfNothing);
        row("a", "a", "0cc175b9c0f1b6a831c399e269772661");
        row("abc", "abc", "900150983cd24fb0d6963f7d28e17f72");
        row("message digest", "message digest", "f96b697d7cb7938d525a2f31aaf161d0");
        row("80 digits", QByteArray("1234567890").repeated(8), "57edf4a22be3c955ac49da2e2107b67a");
        row("NUL", QByteArray("\0", 1), "93b885adfe0da089cdf634904fd59f71");
        row("0xFF", "\xFF", "00594fd4f42ba43fc1ca0427a0576295");
        row("1 MiB of NULs", QByteArray(kMiB, '\0'), "b6d81b360a5672d80c27430f39153e2c");
        row("1 MiB less a byte", pattern(kMiB - 1), "6631289da608f194e12b97caf2b5d9ca");
        row("1 MiB", pattern(kMiB), "8f293a2f6c19b345152f7a49bb4c643c");
        row("1 MiB and a byte", pattern(kMiB + 1), "79b67c7fbf43b76e5b7f182328bdc4b6");
        row("3 MiB and some", pattern(3 * kMiB + 12345), "9afda3619c6d95cf1736926b6416862c");
    }
    void md5()
    {
        QFETCH(QByteArray, data);
        QTEST(MakeMd5(data), "digest");
        QString ofFile = QStringLiteral("before");
        QCOMPARE(GetFileMd5(made("md5 ä", data), ofFile), 0);
        QTEST(ofFile, "digest");
    }

    void md5ReadsChunks_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<int>("reads");
        QTest::newRow("empty") << qint64(0) << 0;
        QTest::newRow("1 MiB less a byte") << kMiB - 1 << 1;
        QTest::newRow("1 MiB") << kMiB << 1;
        QTest::newRow("1 MiB and a byte") << kMiB + 1 << 2;
        QTest::newRow("5 MiB") << 5 * kMiB << 5;
    }
    void md5ReadsChunks()
    {
        QFETCH(qint64, size);
        const QString file = sparse("chunks", size);
        std::vector<ssize_t> got;
        const ReadHook hook([&](int fd, void *to, size_t asked) {
            got.push_back(systemRead(fd, to, asked));
            return got.back();
        });
        QString md5;
        QCOMPARE(GetFileMd5(file, md5), 0);
        // The last, smaller part of a file may be asked for in two.
        got.erase(std::remove(got.begin(), got.end(), 0), got.end());
        QTEST(static_cast<int>(got.size()), "reads");
        for (size_t i = 0; i + 1 < got.size(); ++i)
            QCOMPARE(qint64(got[i]), kMiB);
    }

    void md5OfWhatHasNoSize_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("text of the system") << QStringLiteral("/proc/version");
        QTest::newRow("memory, which cannot be read from 0") << QStringLiteral("/proc/self/mem");
        QTest::newRow("null device") << QStringLiteral("/dev/null");
    }
    void md5OfWhatHasNoSize()
    {
        QFETCH(QString, file);
        QString md5;
        QCOMPARE(GetFileMd5(file, md5), 0);
        QCOMPARE(md5, QString::fromLatin1(kMd5OfNothing));
    }

    void md5ReadFails_data()
    {
        QTest::addColumn<qint64>("readable");
        QTest::newRow("at once") << qint64(0);
        QTest::newRow("within the first chunk") << qint64(1000);
        QTest::newRow("between two chunks") << kMiB;
        QTest::newRow("within the second chunk") << kMiB + 1000;
        QTest::newRow("one byte before the end") << 3 * kMiB - 1;
    }
    void md5ReadFails()
    {
        QFETCH(qint64, readable);
        const QString file = sparse("failing", 3 * kMiB);
        QString md5 = QStringLiteral("before");
        int calls = 0;
        const ReadHook hook([&](int fd, void *to, size_t size) -> ssize_t {
            if (++calls > 100)
                qFatal("reading does not end");
            if (readable == 0) {
                errno = EIO;
                return -1;
            }
            const ssize_t got = systemRead(fd, to, qMin(size, static_cast<size_t>(readable)));
            readable -= got;
            return got;
        });
        QCOMPARE(GetFileMd5(file, md5), int(QFileDevice::ReadError));
        QCOMPARE(md5, QStringLiteral("before"));
    }

    // The size is known when reading begins; what is there is digested.
    void md5OfShrinkingFile_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::newRow("to nothing") << qint64(0);
        QTest::newRow("to less than was read") << qint64(1000);
        QTest::newRow("to what was read") << kMiB;
        QTest::newRow("to a part of the next chunk") << kMiB + 1000;
    }
    void md5OfShrinkingFile()
    {
        QFETCH(qint64, size);
        const QByteArray content = pattern(3 * kMiB);
        const QString file = made("shrinking", content);
        int calls = 0;
        const ReadHook hook([&](int fd, void *to, size_t asked) {
            if (++calls > 100)
                qFatal("reading does not end");
            const ssize_t got = systemRead(fd, to, asked);
            if (calls == 1 && ::truncate(QFile::encodeName(file).constData(), size) != 0)
                qFatal("cannot truncate the file");
            return got;
        });
        QString md5;
        QCOMPARE(GetFileMd5(file, md5), 0);
        QCOMPARE(md5, MakeMd5(content.left(static_cast<int>(qMax(size, kMiB)))));
    }

    // The size of a file of the system may be more than there is to read.
    void md5OfLessThanTheSize_data()
    {
        QTest::addColumn<qint64>("readable");
        QTest::newRow("nothing") << qint64(0);
        QTest::newRow("a part of a chunk") << qint64(1000);
        QTest::newRow("a chunk") << kMiB;
        QTest::newRow("a chunk and a part of one") << kMiB + 1000;
    }
    void md5OfLessThanTheSize()
    {
        QFETCH(qint64, readable);
        const QByteArray content = pattern(3 * kMiB);
        const QString file = made("less", content);
        int calls = 0;
        qint64 left = readable;
        const ReadHook hook([&](int fd, void *to, size_t asked) {
            if (++calls > 100)
                qFatal("reading does not end");
            const ssize_t got = systemRead(fd, to, qMin(asked, static_cast<size_t>(left)));
            left -= got;
            return got;
        });
        QString md5;
        QCOMPARE(GetFileMd5(file, md5), 0);
        QCOMPARE(md5, MakeMd5(content.left(static_cast<int>(readable))));
    }

    void md5InBoundedMemory()
    {
        const QString file = sparse("1 GiB", 1024 * kMiB);
        QVERIFY(!file.isEmpty());
        QCOMPARE(runSelf({QStringLiteral("--digest"), file}),
                 QByteArray("0 cd573cfaace07e7949bc0c46028904ff small\n"));
        QVERIFY(QFile::remove(file));
    }

    void uuid()
    {
        const QRegularExpression form(QStringLiteral(
            "\\A[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}\\z"));
        QSet<QString> all;
        for (int i = 0; i < 1000; ++i) {
            const QString id = makeUUID();
            QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
            all.insert(id);
        }
        QCOMPARE(all.size(), 1000);
    }

    void inflates_data()
    {
        QTest::addColumn<QByteArray>("stream");
        QTest::addColumn<QByteArray>("data");
        const auto row = [](const char *name, const char *stream, const QByteArray &data) {
            QTest::newRow(name) << QByteArray::fromHex(stream) << data;
        };
        // Typed by hand: header, one stored or fixed block, Adler-32.
        row("nothing, 8 bytes", "78 9c 03 00 00000001", "");
        row("nothing, stored, 11 bytes", "78 01 01 0000 ffff 00000001", "");
        row("a, stored, 12 bytes", "78 01 01 0100 feff 61 00620062", "a");
        row("abc, stored, 14 bytes", "78 01 01 0300 fcff 616263 024d0127", "abc");
        row("abc, fixed codes, 11 bytes", "78 9c 4b 4c 4a 06 00 024d0127", "abc");
        row("two blocks, 19 bytes", "78 01 00 0100 feff 61 01 0200 fdff 6263 024d0127", "abc");
        row("NUL, stored, 12 bytes", "78 01 01 0100 feff 00 00010001", QByteArray("\0", 1));
        row("bytes behind the stream", "78 9c 4b 4c 4a 06 00 024d0127 ffff", "abc");
        // 1 MiB in a stream whose size has a low byte below 0x20, so that little is asked for.
        const QByteArray many(kMiB, 'x');
        const QByteArray stream = deflated(many, 9);
        const int size = (stream.size() / 256 + 1) * 256 + 1;
        QTest::newRow("a thousand times its size") << stream.leftJustified(size, '\0') << many;
        QTest::newRow("the low byte is 0x1F") << storedStream(0x11F) << storedData(0x11F);
    }
    void inflates()
    {
        QFETCH(QByteArray, stream);
        QTEST(inflate(stream), "data");
    }

    // The size is taken for that of the result, its bytes in the wrong order: in a process that is
    // allowed to ask for as much.
    void inflatesBySize_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<QByteArray>("result");
        QTest::newRow("0x10") << 0x10 << QByteArray("inflated\n");
        QTest::newRow("0x2C, 0x01: 300 bytes") << 300 << QByteArray("inflated\n");
        QTest::newRow("0x7F") << 0x7F << QByteArray("inflated\n");
        QTest::newRow("0x80") << 0x80 << QByteArray("not inflated\n");
        QTest::newRow("0x81") << 0x81 << QByteArray("not inflated\n");
        QTest::newRow("0xFF") << 0xFF << QByteArray("not inflated\n");
        QTest::newRow("0x00, 0x01") << 0x100 << QByteArray("inflated\n");
        QTest::newRow("0x00, 0x80") << 0x8000 << QByteArray("inflated\n");
        QTest::newRow("0x80, 0x01") << 0x180 << QByteArray("not inflated\n");
    }
    void inflatesBySize()
    {
        QFETCH(int, size);
        const QString sanitizer = QStringLiteral("=max_allocation_size_mb=4096");
        QTEST(runSelf({QStringLiteral("--inflate"), QString::number(size)},
                      {QStringLiteral("ASAN_OPTIONS") + sanitizer,
                       QStringLiteral("TSAN_OPTIONS") + sanitizer}),
              "result");
    }

    void doesNotInflate_data()
    {
        QTest::addColumn<QByteArray>("stream");
        QTest::addColumn<QByteArray>("warning");
        const auto row = [](const char *name, const char *stream) {
            QTest::newRow(name) << QByteArray::fromHex(stream)
                                << QByteArray("qUncompress: Z_DATA_ERROR: Input data is corrupted");
        };
        row("one byte", "78");
        row("header only", "78 9c");
        row("no check sum", "78 9c 4b 4c 4a 06 00");
        row("part of the check sum", "78 9c 4b 4c 4a 06 00 024d01");
        row("wrong check sum", "78 9c 4b 4c 4a 06 00 024d0128");
        row("wrong header", "78 9d 4b 4c 4a 06 00 024d0127");
        row("preset dictionary", "78 bb 024d0127 4b 4c 4a 06 00 024d0127");
        row("wrong kind of block", "78 01 07 00000001");
        row("wrong length of a block", "78 01 01 0300 fdff 616263 024d0127");
        row("block cut off", "78 01 01 0300 fcff 6162");
        row("no header", "4b 4c 4a 06 00");
        row("NULs", "0000000000000000");
        row("with a size in front, as Qt has it", "00000003 78 9c 4b 4c 4a 06 00 024d0127");
        QTest::newRow("128 bytes")
            << QByteArray::fromHex("78 9c 4b 4c 4a 06 00 024d0127") + QByteArray(117, '\0')
            << QByteArray("qUncompress: Input data is corrupted");
    }
    void doesNotInflate()
    {
        QFETCH(QByteArray, stream);
        QFETCH(QByteArray, warning);
        expectWarnings(1, warning.constData());
        QVERIFY(inflate(stream).isEmpty());
    }

    void inflatesNothing()
    {
        const unsigned char stream[] = {0x78, 0x9C, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01};
        for (const int len : {0, -1, -300, kMin})
            QVERIFY(uncompressRowZlibDat(stream, len).isEmpty());
        // Even where the bytes of the length, and a stream that ends at a NUL, would make sense.
        const QByteArray noNul =
            QByteArray::fromHex("78 da 4b ce 4c 29 c8 2f c8 4d 4f 29 48 4c 86 31 01 56 91 08 40");
        QVERIFY(!noNul.contains('\0'));
        QVERIFY(
            uncompressRowZlibDat(reinterpret_cast<const unsigned char *>(noNul.constData()), -256)
                .isEmpty());
        for (const int len : {0, -1, kMin})
            QVERIFY(uncompressRowZlibDat(nullptr, len).isEmpty());
        // Too long for what goes in front of it: refused before anything is read.
        QVERIFY(uncompressRowZlibDat(stream, kMax).isEmpty());
    }

    void encodeSize_data()
    {
        QTest::addColumn<QSize>("src");
        QTest::addColumn<QSize>("max");
        QTest::addColumn<QSize>("size");
        const auto row = [](QSize src, QSize max, QSize size) {
            QTest::addRow("%dx%d into %dx%d", src.width(), src.height(), max.width(), max.height())
                << src << max << size;
        };
        const QSize hd(1920, 1080);
        row({4000, 3000}, hd, {1440, 1080});
        row({4000, 1000}, hd, {1920, 480});
        row({3, 3}, {2, 2}, {2, 2});
        row({0, 100}, hd, {0, 100});
        row({100, 0}, hd, {100, 0});
        row({0, 5000}, hd, {0, 5000});
        row({5000, 0}, hd, {5000, 0});
        row({-1, 5000}, hd, {-1, 5000});
        row({5000, -1}, hd, {5000, -1});
        row({kMin, kMin}, hd, {kMin, kMin});
        row({1, 1}, hd, {1, 1});
        row({1920, 1080}, hd, {1920, 1080});
        row({1921, 1080}, hd, {1920, 1080}); // 1079.4
        row({1920, 1081}, hd, {1919, 1080}); // 1918.2
        row({1921, 1}, hd, {1920, 1});
        row({1, 1081}, hd, {1, 1080});
        row({3840, 2160}, hd, {1920, 1080});
        row({3, 2}, {2, 2}, {2, 2}); // 1.33
        row({2, 3}, {2, 2}, {2, 2}); // 1.33
        row({7, 3}, {5, 5}, {5, 3}); // 2.14
        row({3, 7}, {5, 5}, {3, 5});
        row({1000, 10}, {100, 100}, {100, 1});
        // Scales of 1/10000: truncated ones, and with equal ones the height binds.
        row({20001, 20000}, {10000, 10000}, {10000, 10000}); // 4999 and 5000
        row({20000, 20001}, {10000, 10000}, {10000, 10000}); // 5000 and 4999
        row({300001, 300000}, {10, 10}, {11, 10});           // 0 and 0
        row({300000, 300001}, {10, 10}, {10, 10});
        // No size to fit into.
        row({10, 10}, {0, 0}, {0, 0});
        row({10, 20}, {0, 10}, {0, 0});
        row({10, 20}, {10, 0}, {0, 0});
        row({10, 10}, {-1, -1}, {0, -1});  // (10 * -1 + 9) / 10
        row({10, 10}, {-5, 20}, {-5, -4}); // (10 * -5 + 9) / 10 = -4.1
        row({10, 10}, {20, -5}, {-4, -5});
        row({10, 10}, {kMin, kMin}, {0, kMin}); // -2147483648 * 10 wraps to 0
        // Products of 2^32 and more: what is left of them counts.
        row({65536, 65536}, {65535, 65535}, {0, 65535}); // (-65536 + 65535) / 65536
        row({kMax, kMax}, hd, {0, 1080});                // (-1080 + 2147483646) / 2147483647
        row({kMax, 1}, hd, {1920, 0});                   // 1920 + 2147483646 wraps
        row({1, kMax}, hd, {0, 1080});
        row({kMax, kMax}, {kMax, kMax}, {kMax, kMax});
    }
    void encodeSize()
    {
        QFETCH(QSize, src);
        QFETCH(QSize, max);
        QTEST(GetEncodeSize(src, max), "size");
        QCOMPARE(expectedEncodeSize(src, max), GetEncodeSize(src, max));
    }

    void encodeSizeOfAnything()
    {
        QRandomGenerator random(7);
        const auto side = [&random] { // of any magnitude
            const quint32 bits = random.generate() >> random.bounded(32);
            return static_cast<int>(random.bounded(8) == 0 ? 0U - bits : bits);
        };
        for (int i = 0; i < 300000; ++i) {
            const QSize src(side(), side());
            const QSize max(side(), side());
            const QSize size = GetEncodeSize(src, max);
            if (size != expectedEncodeSize(src, max))
                QCOMPARE(size, expectedEncodeSize(src, max));
        }
    }

    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("sep");
        QTest::addColumn<QList<int>>("numbers");
        QTest::addColumn<QSize>("size");
        const auto row = [](const char *name, const QString &text, const QString &sep,
                            const QList<int> &numbers, QSize size = {-1, -1}) {
            QTest::newRow(name) << text << sep << numbers << size;
        };
        const QString x = QStringLiteral("x");
        const QString comma = QStringLiteral(",");
        row("null", QString(), x, {});
        row("empty", QStringLiteral(""), comma, {});
        row("a separator", x, x, {});
        row("separators", QStringLiteral(",,,,"), comma, {});
        row("one number", QStringLiteral("800"), x, {800});
        row("two", QStringLiteral("1920x1080"), x, {1920, 1080}, {1920, 1080});
        row("separator in front", QStringLiteral("x800x600"), x, {800, 600}, {800, 600});
        row("separator behind", QStringLiteral("800x600x"), x, {800, 600}, {800, 600});
        row("separator behind one", QStringLiteral("800x"), x, {800});
        row("three", QStringLiteral("1x2x3"), x, {1, 2, 3}, {1, 2});
        row("empty part, no number", QStringLiteral("1,,2,a"), comma, {1, 2, 0}, {1, 2});
        row("other case", QStringLiteral("1X2"), x, {0});
        row("other separator", QStringLiteral("1,2"), x, {0});
        row("longer separator", QStringLiteral("1, 2,3"), QStringLiteral(", "), {1, 0}, {1, 0});
        row("separator twice in a row", QStringLiteral("1abab2"), QStringLiteral("ab"), {1, 2},
            {1, 2});
        row("empty separator: each character", QStringLiteral("1a2"), QString(), {1, 0, 2}, {1, 0});
        row("signs", QStringLiteral("-5,+7"), comma, {-5, 7}, {-5, 7});
        row("blanks around", QStringLiteral(" 5 ,\t7\n"), comma, {5, 7}, {5, 7});
        row("blanks only", QStringLiteral(" , "), comma, {0, 0}, {0, 0});
        row("zeros in front are not octal", QStringLiteral("010,0x10"), comma, {10, 0}, {10, 0});
        row("fraction, exponent", QStringLiteral("1.5,1e3"), comma, {0, 0}, {0, 0});
        row("number and more", QStringLiteral("12px,px12"), comma, {0, 0}, {0, 0});
        row("extremes", QStringLiteral("-2147483648,2147483647"), comma, {kMin, kMax},
            {kMin, kMax});
        row("beyond them", QStringLiteral("2147483648,-2147483649,99999999999999999999"), comma,
            {0, 0, 0}, {0, 0});
        row("other digits", QStringLiteral("\u0661,\uFF11"), comma, {0, 0}, {0, 0});
        row("NUL", QString::fromUcs4(U"1\0002,3", 5), comma, {0, 3}, {0, 3});
        row("beyond the BMP", QString::fromUcs4(U"1\U0001F6002", 3),
            QString::fromUcs4(U"\U0001F600", 1), {1, 2}, {1, 2});
        row("lone surrogate", QStringLiteral("1,") + QChar(0xD83D), comma, {1, 0}, {1, 0});
        row("separator is a regular expression", QStringLiteral("1.*2"), QStringLiteral(".*"),
            {1, 2}, {1, 2});
        row("very long number", QString(1 << 20, QLatin1Char('9')) + QStringLiteral(",1"), comma,
            {0, 1}, {0, 1});
    }
    void numbers()
    {
        QFETCH(QString, text);
        QFETCH(QString, sep);
        QTEST(strToIntList(text, sep), "numbers");
        QTEST(GetSizeFromString(text, sep), "size");
    }
    void manyNumbers()
    {
        const QList<int> numbers =
            strToIntList(QStringLiteral("7,").repeated(100000), QStringLiteral(","));
        QCOMPARE(numbers.size(), 100000);
        QCOMPARE(numbers.count(7), 100000);
    }
};

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const QStringList forChild{QStringLiteral("--digest"), QStringLiteral("--inflate"),
                               QStringLiteral("--wait")};
    if (forChild.contains(arguments.value(0)))
        return runChild(arguments);
    TestFileHelper test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_filehelper.moc"
