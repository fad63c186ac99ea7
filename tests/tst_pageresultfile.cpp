#include "Hex.h"
#include "LatinLocale.h"
#include "LogSpy.h"
#include "ResourceLimits.h"
#include "emfdeal/EmfDeal.h"

#include <QTemporaryDir>
#include <QtTest>

#include <climits>
#include <csignal>
#include <functional>
#include <thread>
#include <vector>

#include <sys/stat.h>

class TestPageResultFile : public QObject
{
    Q_OBJECT

private:
    const LatinLocale locale;
    QTemporaryDir dir;

    QString path(const char *name) const { return dir.filePath(QString::fromUtf8(name)); }

    QString write(const QByteArray &content, const char *name = "page")
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write the test's file");
        return file.fileName();
    }

    static QByteArray contentOf(const QString &file)
    {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("(cannot be read)");
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(dir.isValid());
        std::signal(SIGPIPE, SIG_IGN); // of the writers whose reader has seen enough
    }

    void header_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("format");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("3 bytes of JPG") << 3 << 2 << hex("88888888 0101 02000000 03000000");
        QTest::newRow("empty PNG") << 0 << 4 << hex("88888888 0101 04000000 00000000");
        QTest::newRow("every size byte has its place")
            << 0x12345678 << 3 << hex("88888888 0101 03000000 78563412");
        QTest::newRow("every format byte has its place")
            << 1 << 0x0A0B0C0D << hex("88888888 0101 0D0C0B0A 01000000");
        QTest::newRow("negative values as they are")
            << -1 << -2 << hex("88888888 0101 FEFFFFFF FFFFFFFF");
        QTest::newRow("largest and smallest")
            << INT_MAX << INT_MIN << hex("88888888 0101 00000080 FFFFFF7F");
    }
    void header()
    {
        QFETCH(int, size);
        QFETCH(int, format);
        QTEST(EmfDeal::getHeader(size, static_cast<DocCovRslt::PAGE_FORMAT_DEF>(format)), "bytes");
    }

    void addHeader()
    {
        QCOMPARE(DocDisplayAddHeader(QByteArray("\xFF\x00\xD8", 3)),
                 hex("88888888 0101 02000000 03000000 FF00D8"));
        QCOMPARE(DocDisplayAddHeader(QByteArray()), hex("88888888 0101 02000000 00000000"));
        QCOMPARE(DocDisplayAddHeader(QByteArray(300, 'x')),
                 hex("88888888 0101 02000000 2C010000") + QByteArray(300, 'x'));
    }

    void aNewResultIsEmptyAndEmf()
    {
        const EmfDeal::PageCovrRslt rslt;
        QCOMPARE(rslt.rsltDat, QByteArray());
        QCOMPARE(int(rslt.picFormat), 0);
    }

    void write_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<int>("format");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("PNG") << QByteArray("\x89P") << 4
                             << hex("88888888 0101 04000000 02000000 8950");
        QTest::newRow("a NUL inside")
            << QByteArray("a\0b", 3) << 2 << hex("88888888 0101 02000000 03000000 610062");
        QTest::newRow("empty: 14 bytes")
            << QByteArray() << 3 << hex("88888888 0101 03000000 00000000");
        QTest::newRow("a format without name")
            << QByteArray("x") << -7 << hex("88888888 0101 F9FFFFFF 01000000 78");
        QTest::newRow("more than the file's buffer")
            << QByteArray(100000, 'y') << 2
            << hex("88888888 0101 02000000 A0860100") + QByteArray(100000, 'y');
    }
    void write()
    {
        QFETCH(QByteArray, payload);
        QFETCH(int, format);
        QFETCH(QByteArray, bytes);
        LogSpy log;
        EmfDeal enc;
        EmfDeal::PageCovrRslt rslt{payload, static_cast<DocCovRslt::PAGE_FORMAT_DEF>(format)};
        const QString created = path("written");
        QFile::remove(created);
        QVERIFY(enc.WriteEmfDealRsltFile(created, rslt));
        QCOMPARE(contentOf(created), bytes);

        const QString emptied = write(QByteArray(200000, 'z'), "longer before");
        QVERIFY(enc.WriteEmfDealRsltFile(emptied, rslt));
        QCOMPARE(contentOf(emptied), bytes);

        QCOMPARE(rslt.rsltDat, payload);
        QCOMPARE(int(rslt.picFormat), format);
        QCOMPARE(log.takeLines(), QStringList());
    }

    void writeToWhatCannotBeOpened_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("folder missing") << path("no such folder/page");
        QTest::newRow("a folder") << dir.path();
        QTest::newRow("percent signs and letters") << path("no/100%d %s ä/page");
    }
    void writeToWhatCannotBeOpened()
    {
        QFETCH(QString, file);
        LogSpy log;
        EmfDeal enc;
        EmfDeal::PageCovrRslt rslt{"x", DocCovRslt::PAGE_FORMAT_PNG};
        QVERIFY(!enc.WriteEmfDealRsltFile(file, rslt));
        QCOMPARE(log.takeLines(),
                 failureLines({QStringLiteral("CreateEmfDealRsltFile! (err:5, file:%1)")}, file));
    }

    void noDescriptorLeft()
    {
        const QString file = write("x", "one more");
        LogSpy log;
        EmfDeal enc;
        EmfDeal::PageCovrRslt rslt{"x", DocCovRslt::PAGE_FORMAT_PNG};
        QByteArray data;
        bool written = true;
        int format = 0;
        {
            const ResourceLimit limit(RLIMIT_NOFILE, 0);
            written = enc.WriteEmfDealRsltFile(file, rslt);
            format = EmfDeal::getPicDataFromFile(file, data);
        }
        QVERIFY(!written);
        QCOMPARE(format, 5);
        QCOMPARE(log.takeLines(),
                 failureLines({QStringLiteral("CreateEmfDealRsltFile! (err:4, file:%1)"),
                               QStringLiteral("IsEmfDealRsltFile, open fialed! (err:4, file:%1)")},
                              file));
    }

    void writeThatFallsShort()
    {
        // The header fits, the payload does not; what was written stays.
        std::signal(SIGXFSZ, SIG_IGN);
        const QString file = path("cut short ä");
        LogSpy log;
        EmfDeal enc;
        EmfDeal::PageCovrRslt rslt{QByteArray(100000, 'p'), DocCovRslt::PAGE_FORMAT_PNG};
        bool written = true;
        {
            const ResourceLimit limit(RLIMIT_FSIZE, 20000);
            written = enc.WriteEmfDealRsltFile(file, rslt);
        }
        QVERIFY(!written);
        QCOMPARE(contentOf(file),
                 hex("88888888 0101 04000000 A0860100") + QByteArray(20000 - 14, 'p'));
        // The system took a part and reported no error.
        QCOMPARE(log.takeLines(),
                 failureLines({QStringLiteral("WrtEmfDealRsltFile! (err:0, file:%1)")}, file));
    }

    // Without a payload whose writing would fail as well.
    void headerThatFallsShort()
    {
        std::signal(SIGXFSZ, SIG_IGN);
        const QString file = path("cut short");
        LogSpy log;
        EmfDeal enc;
        EmfDeal::PageCovrRslt rslt{{}, DocCovRslt::PAGE_FORMAT_PNG};
        bool written = true;
        {
            const ResourceLimit limit(RLIMIT_FSIZE, 10);
            written = enc.WriteEmfDealRsltFile(file, rslt);
        }
        QVERIFY(!written);
        QCOMPARE(contentOf(file), hex("88888888 0101 04000000"));
        QCOMPARE(log.takeLines(),
                 failureLines({QStringLiteral("WrtEmfDealRsltFile! (err:0, file:%1)")}, file));
    }

    void writeToAFullDevice()
    {
        const QString full = QStringLiteral("/dev/full");
        LogSpy log;
        EmfDeal enc;
        for (const int size : {100000, 100, 0}) {
            EmfDeal::PageCovrRslt rslt{QByteArray(size, 'p'), DocCovRslt::PAGE_FORMAT_PNG};
            QVERIFY(!enc.WriteEmfDealRsltFile(full, rslt));
            QCOMPARE(log.takeLines(),
                     failureLines({QStringLiteral("WrtEmfDealRsltFile! (err:4, file:%1)")}, full));
        }
    }

    // The reader and the gate over the same files. `data` holds "before" at the call.
    void read_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("readerFormat");
        QTest::addColumn<QStringList>("readerLines");
        QTest::addColumn<int>("gateFormat");
        QTest::addColumn<QStringList>("gateLines"); // those of the reader precede them
        QTest::addColumn<QByteArray>("data");

        const QStringList none;
        const auto unsupported = [](int format) {
            return QStringList{QStringLiteral("decodeEmf, picFormat(") + QString::number(format) +
                               QStringLiteral(") not support! (file:%1)")};
        };
        const QStringList refused = unsupported(5);
        const QStringList empty{QStringLiteral("decodeEmf, rsltDat.size <= 0! (file:%1)")};
        const auto accepted = [&](const char *name, int format, const char *content,
                                  const QByteArray &data) {
            QTest::newRow(name) << hex(content) << format << none << format << none << data;
        };
        const auto onlyRead = [&](const char *name, int format, const char *content) {
            QTest::newRow(name) << hex(content) << format << none << 5 << unsupported(format)
                                << QByteArray("x");
        };
        const auto broken = [&](const char *name, const QByteArray &content, const char *line,
                                const QByteArray &data) {
            QTest::newRow(name) << content << 5 << QStringList{QString::fromLatin1(line)} << 5
                                << refused << data;
        };

        accepted("JPG", 2, "88888888 0101 02000000 03000000 FFD8FF", hex("FFD8FF"));
        accepted("slide animation data", 3, "88888888 0101 03000000 01000000 00", hex("00"));
        accepted("PNG", 4, "88888888 0101 04000000 02000000 8950", hex("8950"));
        accepted("20 bytes where 10 are announced: the rest is ignored", 4,
                 "88888888 0101 04000000 0A000000 00010203040506070809 AAAAAAAAAAAAAAAAAAAA",
                 hex("00010203040506070809"));
        accepted("format -1 passes the gate", -1, "88888888 0101 FFFFFFFF 01000000 78", "x");
        accepted("smallest format passes the gate", INT_MIN, "88888888 0101 00000080 01000000 78",
                 "x");
        onlyRead("format 0 is read and refused", 0, "88888888 0101 00000000 01000000 78");
        onlyRead("format 1 is read and refused", 1, "88888888 0101 01000000 01000000 78");
        onlyRead("format 5 is read and refused", 5, "88888888 0101 05000000 01000000 78");
        onlyRead("format 6 is read and refused", 6, "88888888 0101 06000000 01000000 78");
        onlyRead("largest format is read and refused", INT_MAX,
                 "88888888 0101 FFFFFF7F 01000000 78");

        QTest::newRow("14 bytes: read as empty, refused by the gate")
            << hex("88888888 0101 02000000 00000000") << 2 << none << 5 << empty << QByteArray();
        QTest::newRow("nothing announced: what follows is ignored")
            << hex("88888888 0101 04000000 00000000 78") << 4 << none << 5 << empty << QByteArray();
        QTest::newRow("empty, of a negative format")
            << hex("88888888 0101 FFFFFFFF 00000000") << -1 << none << 5 << empty << QByteArray();
        QTest::newRow("empty, of a refused format: only the format is named")
            << hex("88888888 0101 06000000 00000000") << 6 << none << 5 << unsupported(6)
            << QByteArray();

        broken("60 bytes where 100 are announced",
               hex("88888888 0101 02000000 64000000") + QByteArray(60, 'j'),
               "getPicDataFromFile readSize:60 != headDatSize:100", QByteArray(60, 'j'));
        broken("one byte missing", hex("88888888 0101 04000000 02000000 89"),
               "getPicDataFromFile readSize:1 != headDatSize:2", "\x89");
        broken("1 announced, none there", hex("88888888 0101 04000000 01000000"),
               "getPicDataFromFile readSize:0 != headDatSize:1", "");
        broken("0x7FFFFFFF announced", hex("88888888 0101 04000000 FFFFFF7F 616263"),
               "getPicDataFromFile readSize:3 != headDatSize:2147483647", "abc");
        broken("0xFFFFFFFF announced", hex("88888888 0101 04000000 FFFFFFFF 616263"),
               "getPicDataFromFile readSize:3 != headDatSize:-1", "abc");
        broken("0x80000000 announced",
               hex("88888888 0101 04000000 00000080") + QByteArray(200000, 'q'),
               "getPicDataFromFile readSize:200000 != headDatSize:-2147483648",
               QByteArray(200000, 'q'));

        broken("version 0x0102", hex("88888888 0201 04000000 01000000 78"),
               "IsEmfDealRsltFile, file format err! (0x88888888,0x102)", "before");
        broken("version 0x0201", hex("88888888 0102 04000000 01000000 78"),
               "IsEmfDealRsltFile, file format err! (0x88888888,0x201)", "before");
        broken("version 0xFFFF is not -1", hex("88888888 FFFF 04000000 01000000 78"),
               "IsEmfDealRsltFile, file format err! (0x88888888,0xffff)", "before");
        broken("magic's first byte", hex("89888888 0101 04000000 01000000 78"),
               "IsEmfDealRsltFile, file format err! (0x88888889,0x101)", "before");
        broken("magic's last byte", hex("88888809 0101 04000000 01000000 78"),
               "IsEmfDealRsltFile, file format err! (0x9888888,0x101)", "before");
        broken("zeros", QByteArray(14, '\0'), "IsEmfDealRsltFile, file format err! (0x0,0x0)",
               "before");
        for (int size = 0; size < 14; ++size) {
            broken(QByteArray("first " + QByteArray::number(size) + " bytes"),
                   hex("88888888 0101 04000000 01000000").left(size),
                   QByteArray("IsEmfDealRsltFile, file too small! (file:%1, size:" +
                              QByteArray::number(size) + ")"),
                   "before");
        }
    }
    void read()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, readerLines);
        QFETCH(QStringList, gateLines);
        const QString file = write(content, "page ä");
        LogSpy log;

        QByteArray data("before");
        QTEST(EmfDeal::getPicDataFromFile(file, data), "readerFormat");
        QTEST(data, "data");
        QCOMPARE(log.takeLines(), failureLines(readerLines, file));

        data = "before";
        QTEST(EmfDeal::decodeEmf(file, data), "gateFormat");
        QTEST(data, "data");
        QCOMPARE(log.takeLines(), failureLines(readerLines + gateLines, file));
    }

    void readWhatIsNoFile_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("line");
        const QString open = QStringLiteral("IsEmfDealRsltFile, open fialed! (err:5, file:%1)");
        QTest::newRow("missing") << path("missing") << open;
        QTest::newRow("no name") << QString() << open;
        QTest::newRow("a folder") << dir.path() << open;
        QVERIFY(QFile::link(path("missing"), path("dangling link")));
        QTest::newRow("a link to nothing") << path("dangling link") << open;
        QTest::newRow("below a file") << write("x", "file") + QStringLiteral("/page") << open;
        QTest::newRow("percent signs and letters") << path("100%d%n%s ä€😀") << open;
        // A failed read is not taken for a short one.
        QTest::newRow("the first read fails")
            << QStringLiteral("/proc/self/mem")
            << QStringLiteral("IsEmfDealRsltFile, file format err! (0x0,0x0)");
        QTest::newRow("no end") << QStringLiteral("/dev/zero")
                                << QStringLiteral("IsEmfDealRsltFile, file format err! (0x0,0x0)");
        QTest::newRow("nothing in it")
            << QStringLiteral("/dev/null")
            << QStringLiteral("IsEmfDealRsltFile, file too small! (file:%1, size:0)");
        QTest::newRow("a size that the system does not tell")
            << QStringLiteral("/proc/self/oom_score_adj")
            << QStringLiteral("IsEmfDealRsltFile, file too small! (file:%1, size:0)");
    }
    void readWhatIsNoFile()
    {
        QFETCH(QString, file);
        QFETCH(QString, line);
        LogSpy log;
        QByteArray data("before");
        QCOMPARE(EmfDeal::getPicDataFromFile(file, data), 5);
        QCOMPARE(log.takeLines(), failureLines({line}, file));
        QCOMPARE(EmfDeal::decodeEmf(file, data), 5);
        QCOMPARE(
            log.takeLines(),
            failureLines({line, QStringLiteral("decodeEmf, picFormat(5) not support! (file:%1)")},
                         file));
        QCOMPARE(data, QByteArray("before"));
    }

    void dataIsReplacedAlsoByNothing()
    {
        QByteArray data("before");
        QCOMPARE(EmfDeal::getPicDataFromFile(write(hex("88888888 0101 04000000 00000000")), data),
                 4);
        QCOMPARE(data, QByteArray());
    }

    // What arrives in pieces and has no size is read to its announced end.
    void readFromAPipe()
    {
        const QString fifo = path("fifo");
        QCOMPARE(mkfifo(fifo.toUtf8().constData(), 0600), 0);
        const QByteArray payload(300000, 'f');
        for (const int missing : {0, 1}) {
            std::thread writer([&] {
                QFile file(fifo);
                if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
                    file.write(hex("88888888 0101 04000000 E0930400"));
                    for (int at = 0; at < payload.size() - missing; at += 1000)
                        file.write(payload.mid(at, qMin(1000, payload.size() - missing - at)));
                    if (missing == 0)
                        file.write("behind the payload");
                }
            });
            LogSpy log;
            QByteArray data;
            const int format = EmfDeal::getPicDataFromFile(fifo, data);
            writer.join();
            QCOMPARE(format, missing == 0 ? 4 : 5);
            QCOMPARE(data.size(), 300000 - missing);
            QVERIFY(data == payload.left(300000 - missing));
            QCOMPARE(log.takeLines(),
                     missing == 0
                         ? QStringList()
                         : failureLines({QStringLiteral("getPicDataFromFile readSize:299999 "
                                                        "!= headDatSize:300000")},
                                        fifo));
        }
    }

    void pipeThatEndsInTheHeader()
    {
        const QString fifo = path("short fifo");
        QCOMPARE(mkfifo(fifo.toUtf8().constData(), 0600), 0);
        std::thread writer([&] {
            QFile file(fifo);
            if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
                file.write(hex("88888888 0101"));
        });
        LogSpy log;
        QByteArray data("before");
        QCOMPARE(EmfDeal::getPicDataFromFile(fifo, data), 5);
        writer.join();
        QCOMPARE(data, QByteArray("before"));
        QCOMPARE(
            log.takeLines(),
            failureLines({QStringLiteral("IsEmfDealRsltFile, file too small! (file:%1, size:0)")},
                         fifo));
    }

    void manyMegabytes()
    {
        QByteArray payload(3'000'000, '\0');
        for (int i = 0; i < payload.size(); ++i)
            payload[i] = static_cast<char>(i % 251);
        const QString file = write(hex("88888888 0101 02000000 C0C62D00") + payload, "large");
        QByteArray data;
        QCOMPARE(EmfDeal::decodeEmf(file, data), 2);
        QVERIFY(data == payload);
    }

    // A payload that really is there, but finds no memory, is one that falls short.
    void noMemoryForThePayload()
    {
        if (!limitsMemory())
            return;
        const QString name = write(hex("88888888 0101 04000000 00002040"), "sparse");
        QVERIFY(QFile::resize(name, 14 + 0x40200000LL));
        LogSpy log;
        QByteArray data;
        int format = 0;
        {
            const ResourceLimit limit(RLIMIT_AS, addressSpaceFor(256 * 1024 * 1024));
            format = EmfDeal::decodeEmf(name, data);
        }
        QCOMPARE(format, 5);
        QCOMPARE(data.size(), 0);
        QCOMPARE(log.takeLines().constFirst(),
                 QStringLiteral("2 VPrnt getPicDataFromFile readSize:0 != headDatSize:1075838976"));
    }

    // What was read before the memory ran out is handed over.
    void noMemoryForMorePayload()
    {
        if (!limitsMemory())
            return;
        const QString name = write(hex("88888888 0101 04000000 FFFFFF7F"), "sparse, too");
        QVERIFY(QFile::resize(name, 14 + 33554332)); // fits 32 MiB; the next step asks for 64 MiB
        LogSpy log;
        QByteArray data;
        int format = 0;
        {
            const ResourceLimit limit(RLIMIT_AS, addressSpaceFor(48 * 1024 * 1024));
            format = EmfDeal::decodeEmf(name, data);
        }
        QCOMPARE(format, 5);
        QCOMPARE(data.size(), 33554332);
        QCOMPARE(log.takeLines().constFirst(),
                 QStringLiteral(
                     "2 VPrnt getPicDataFromFile readSize:33554332 != headDatSize:2147483647"));
    }

    // A length is only a claim: a short file is refused at once, without room for what it claims.
    void announcedSizeIsNotAllocated()
    {
        const QString file = write(hex("88888888 0101 02000000 FFFFFF7F") + QByteArray(1000, 'j'));
        const QString negative = write(hex("88888888 0101 02000000 FFFFFFFF") + "j", "negative");
        const ResourceLimit limit(RLIMIT_AS, addressSpaceFor(256 * 1024 * 1024));
        LogSpy log;
        QByteArray data;
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(EmfDeal::decodeEmf(file, data), 5);
            QCOMPARE(data.size(), 1000);
            QVERIFY(data.capacity() < 1024 * 1024);
            QCOMPARE(EmfDeal::decodeEmf(negative, data), 5);
            QCOMPARE(data.size(), 1);
            QVERIFY(data.capacity() < 1024 * 1024);
        }
        QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    }

    void fileThatChangesWhileItIsRead()
    {
        const QByteArray whole = hex("88888888 0101 04000000 400D0300") + QByteArray(200000, 'c');
        const QString file = write(whole, "changing");
        LogSpy log;
        std::atomic<bool> done{false};
        std::thread changer([&] {
            QFile f(file);
            if (!f.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
                return;
            while (!done) {
                f.resize(20);
                f.seek(0);
                f.write(whole);
            }
        });
        int whole4 = 0;
        int other = 0;
        for (int i = 0; i < 300 || (whole4 == 0 && i < 100000); ++i) {
            QByteArray data;
            const int format = EmfDeal::getPicDataFromFile(file, data);
            if (format == 4)
                ++whole4;
            if (!(format == 4 && data.size() == 200000) && format != 5)
                ++other;
        }
        done = true;
        changer.join();
        QVERIFY(whole4 > 0);
        QCOMPARE(other, 0);
    }

    void readersOnSeveralThreads()
    {
        const QString good = write(hex("88888888 0101 04000000 02000000 8950"), "good");
        const QString bad = write(hex("88888888 0101 04000000 03000000 8950"), "bad");
        LogSpy log;
        std::atomic<int> right{0};
        std::vector<std::thread> readers;
        for (int t = 0; t < 8; ++t) {
            readers.emplace_back([&] {
                for (int i = 0; i < 50; ++i) {
                    QByteArray data;
                    right += EmfDeal::decodeEmf(good, data) == 4 && data == hex("8950");
                    right += EmfDeal::decodeEmf(bad, data) == 5 && data == hex("8950");
                }
            });
        }
        for (std::thread &reader : readers)
            reader.join();
        QCOMPARE(right.load(), 800);
        QCOMPARE(log.takeLines().size(), 800);
    }

    void noEmfOnThisPlatform()
    {
        EmfDeal enc;
        QVERIFY(!enc.checkEmfFile(QByteArray()));
        QVERIFY(!enc.checkEmfFile(hex("01000000 6C000000")));
        QVERIFY(!enc.checkEmfFile("EMF page"));
    }

    void codes()
    {
        using namespace DocCovRslt;
        QCOMPARE(int(PAGE_FORMAT_EMF), 0);
        QCOMPARE(int(PAGE_FORMAT_RESERVED), 1);
        QCOMPARE(int(PAGE_FORMAT_JPG), 2);
        QCOMPARE(int(PAGE_FORMAT_PPT_ANIM), 3);
        QCOMPARE(int(PAGE_FORMAT_PNG), 4);
        QCOMPARE(int(PAGE_FORMAT_NONE), 5);
        QVERIFY((std::is_same_v<std::underlying_type_t<PAGE_FORMAT_DEF>, int>));
        QCOMPARE(int(DOCRSLT_PICTURE), 0);
        QCOMPARE(int(DOCRSLT_PPT_ANIM), 1);
        QCOMPARE(int(DOCRSLT_PICTURE_ALT), 2);
        QCOMPARE(int(DOCRSLT_NONE), 3);
        QVERIFY((std::is_same_v<std::underlying_type_t<DOCRSLT_TYPE>, int>));
    }

    void typesAreRegistered()
    {
        const EmfDeal enc;
        // By name only: to ask for the identifier of the type would register it.
        QVERIFY(QMetaType::type("DocCovRslt::PAGE_FORMAT_DEF") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("DocCovRslt::DOCRSLT_TYPE") != QMetaType::UnknownType);
    }

    void theEncoderIsANamedThreadNotYetStarted()
    {
        const EmfDeal enc;
        QVERIFY(dynamic_cast<const QNamedThread *>(&enc) != nullptr);
        QCOMPARE(QByteArray(enc.metaObject()->className()), QByteArray("EmfDeal"));
        QCOMPARE(enc.objectName(), QStringLiteral("EmfDeal"));
        QVERIFY(!enc.isRunning());
        QCOMPARE(enc.parent(), nullptr);
        QObject parent;
        QCOMPARE((new EmfDeal(&parent))->parent(), &parent);
    }
};

QTEST_APPLESS_MAIN(TestPageResultFile)
#include "tst_pageresultfile.moc"
