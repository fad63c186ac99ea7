#include "LatinLocale.h"
#include "LogSpy.h"
#include "PageFiles.h"
#include "TestRenderer.h"
#include "emfdeal/EmfDeal.h"

#include <QDir>
#include <QtTest>

#include <memory>
#include <new>

#include <sys/stat.h>

namespace {

constexpr int kFails = TestRenderer::kFails;

const QStringList kPngCall = {QStringLiteral("PNG 95 120 of EMF page")};
const QStringList kBothCalls = kPngCall + QStringList{QStringLiteral("JPG 95 120 of EMF page")};

QByteArray header(const char *hex)
{
    return QByteArray::fromHex("88888888 0101") + QByteArray::fromHex(hex);
}

} // namespace

/// One file becomes one page result file. EMF pages are rendered by the test's renderer.
class TestPageConversion : public QObject
{
    Q_OBJECT

private:
    const LatinLocale locale;
    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<LogSpy> log;
    EmfDeal enc;

    QString file(const char *name) const { return dir->filePath(QString::fromUtf8(name)); }
    QString write(const char *name, const QByteArray &content) const
    {
        return PageFiles::write(*dir, QString::fromUtf8(name), content);
    }
    static QByteArray read(const QString &path)
    {
        QFile in(path);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("(none)");
    }
    QStringList entries() const
    {
        return QDir(dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        log.reset(); // it would take its successor away
        log = std::make_unique<LogSpy>();
        TestRenderer::instance() = TestRenderer();
    }
    void cleanup() { QCOMPARE(log->takeLines(), QStringList()); } // no more than a test expects

    void choiceOfFormat_data()
    {
        QTest::addColumn<int>("png");
        QTest::addColumn<int>("jpg");
        QTest::addColumn<int>("format");
        QTest::addColumn<int>("size");
        QTest::addColumn<QStringList>("calls");

        QTest::newRow("small") << 10 << 5 << 4 << 10 << kPngCall;
        QTest::newRow("empty") << 0 << 5 << 4 << 0 << kPngCall;
        QTest::newRow("the largest of which no JPG is tried")
            << 256000 << 1 << 4 << 256000 << kPngCall;
        QTest::newRow("a byte more") << 256001 << 1 << 2 << 1 << kBothCalls;
        QTest::newRow("JPG a byte smaller") << 256001 << 256000 << 2 << 256000 << kBothCalls;
        QTest::newRow("JPG as large") << 256001 << 256001 << 4 << 256001 << kBothCalls;
        QTest::newRow("JPG a byte larger") << 256001 << 256002 << 4 << 256001 << kBothCalls;
        QTest::newRow("JPG empty") << 256001 << 0 << 2 << 0 << kBothCalls;
        QTest::newRow("JPG fails") << 256001 << kFails << 4 << 256001 << kBothCalls;
        QTest::newRow("JPG clearly smaller") << 300000 << 120000 << 2 << 120000 << kBothCalls;
        QTest::newRow("JPG clearly larger") << 300000 << 310000 << 4 << 300000 << kBothCalls;
    }
    void choiceOfFormat()
    {
        TestRenderer &renderer = TestRenderer::instance();
        QFETCH(int, png);
        QFETCH(int, jpg);
        QFETCH(int, format);
        QFETCH(int, size);
        renderer.pngSize = png;
        renderer.jpgSize = jpg;
        EmfDeal::PageCovrRslt rslt;
        rslt.rsltDat = "before";
        QByteArray emf = "EMF page";
        QVERIFY(enc.CovrEmf(emf, rslt));
        QCOMPARE(int(rslt.picFormat), format);
        QCOMPARE(rslt.rsltDat, QByteArray(size, format == 4 ? 'p' : 'j'));
        QTEST(renderer.calls, "calls");
        QCOMPARE(emf, QByteArray("EMF page"));
    }

    // A fault of the second rendering costs no more than its result.
    void jpgRendererThrows()
    {
        TestRenderer &renderer = TestRenderer::instance();
        renderer.pngSize = 256001;
        renderer.onRender = [](const QString &format) {
            if (format == QStringLiteral("JPG"))
                throw std::bad_alloc();
        };
        EmfDeal::PageCovrRslt rslt;
        QByteArray emf = "EMF page";
        QVERIFY(enc.CovrEmf(emf, rslt));
        QCOMPARE(rslt.picFormat, DocCovRslt::PAGE_FORMAT_PNG);
        QCOMPARE(rslt.rsltDat, QByteArray(256001, 'p'));
        QCOMPARE(renderer.calls, kBothCalls);
    }

    void failedPngLeavesTheResult()
    {
        TestRenderer::instance().pngSize = kFails;
        TestRenderer::instance().jpgSize = 5;
        EmfDeal::PageCovrRslt rslt;
        rslt.rsltDat = "before";
        rslt.picFormat = DocCovRslt::PAGE_FORMAT_PPT_ANIM;
        QByteArray emf = "EMF page";
        QVERIFY(!enc.CovrEmf(emf, rslt));
        QCOMPARE(rslt.rsltDat, QByteArray("before"));
        QCOMPARE(rslt.picFormat, DocCovRslt::PAGE_FORMAT_PPT_ANIM);
        QCOMPARE(TestRenderer::instance().calls, kPngCall);
    }

    void emfPage_data()
    {
        QTest::addColumn<int>("png");
        QTest::addColumn<int>("jpg");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("line");
        QTest::newRow("PNG") << 10 << 5 << header("04000000 0a000000") + QByteArray(10, 'p')
                             << QStringLiteral("1 VPrnt encodeEmf(%1), rslt format:4, len:10");
        QTest::newRow("JPG") << 300000 << 120000
                             << header("02000000 c0d40100") + QByteArray(120000, 'j')
                             << QStringLiteral("1 VPrnt encodeEmf(%1), rslt format:2, len:120000");
        QTest::newRow("empty PNG") << 0 << 5 << header("04000000 00000000")
                                   << QStringLiteral("1 VPrnt encodeEmf(%1), rslt format:4, len:0");
    }
    void emfPage()
    {
        QFETCH(int, png);
        QFETCH(int, jpg);
        QFETCH(QString, line);
        TestRenderer::instance().pngSize = png;
        TestRenderer::instance().jpgSize = jpg;
        const QString src = write("ä 100%s", "EMF page");
        QVERIFY(enc.encodeEmf_inner(src, file("out")));
        QTEST(read(file("out")), "content");
        QCOMPARE(read(src), QByteArray("EMF page"));
        QCOMPARE(log->takeLines(), QStringList(line.replace(QStringLiteral("%1"), src)));
        QCOMPARE(entries().size(), 2);
    }

    // Each step ends it, and the next ones are not reached.
    void emfPageFails()
    {
        const QStringList &calls = TestRenderer::instance().calls;
        int checks = 0;
        TestRenderer::instance().onCheck = [&checks] { ++checks; };
        QVERIFY(!enc.encodeEmf_inner(file("missing"), file("out")));
        QVERIFY(!enc.encodeEmf_inner(dir->path(), file("out")));
        QCOMPARE(checks, 0);

        QVERIFY(!enc.encodeEmf_inner(write("text", "text"), file("out")));
        QVERIFY(!enc.encodeEmf_inner(write("empty", ""), file("out")));
        QCOMPARE(checks, 2);
        QCOMPARE(calls, QStringList());

        TestRenderer::instance().pngSize = kFails;
        const QString page = write("page", "EMF page");
        QVERIFY(!enc.encodeEmf_inner(page, file("out")));
        QCOMPARE(calls, kPngCall);
        QCOMPARE(log->takeLines(), QStringList());

        TestRenderer::instance().pngSize = 10;
        const QString dst = file("gone/out");
        QVERIFY(!enc.encodeEmf_inner(page, dst));
        QCOMPARE(log->takeLines(),
                 failureLines({QStringLiteral("CreateEmfDealRsltFile! (err:5, file:%1)")}, dst));
        TestRenderer::instance().pngSize = 100000;
        const QString full = QStringLiteral("/dev/full");
        QVERIFY(!enc.encodeEmf_inner(page, full));
        QCOMPARE(log->takeLines(),
                 failureLines({QStringLiteral("WrtEmfDealRsltFile! (err:4, file:%1)")}, full));
        QCOMPARE(entries(), QStringList({QStringLiteral("empty"), QStringLiteral("page"),
                                         QStringLiteral("text")}));
    }

    void wrap_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("made");
        const QByteArray ten = "0123456789";
        QTest::newRow("EMF, as it is") << 0 << ten << header("00000000 0a000000") + ten;
        QTest::newRow("reserved") << 1 << ten << header("01000000 0a000000") + ten;
        QTest::newRow("JPG") << 2 << ten << header("02000000 0a000000") + ten;
        QTest::newRow("slide") << 3 << ten << header("03000000 0a000000") + ten;
        QTest::newRow("PNG") << 4 << ten << header("04000000 0a000000") + ten;
        QTest::newRow("unknown") << 6 << ten << header("06000000 0a000000") + ten;
        QTest::newRow("negative") << -2 << ten << header("feffffff 0a000000") + ten;
        QTest::newRow("empty input") << 4 << QByteArray() << header("04000000 00000000");
        const QByteArray nuls = QByteArray("\0\r\n\xff\0", 5);
        QTest::newRow("any bytes") << 2 << nuls << header("02000000 05000000") + nuls;
        const QByteArray large(300000, 'x');
        QTest::newRow("large PNG") << 4 << large << header("04000000 e0930400") + large;
    }
    void wrap()
    {
        QFETCH(int, format);
        QFETCH(QByteArray, content);
        const QString src = write("ä 100%s", content);
        write("out", QByteArray(400000, 'o')); // is replaced
        QVERIFY(enc.encodeOther_inner(src, file("out"),
                                      static_cast<DocCovRslt::PAGE_FORMAT_DEF>(format)));
        QTEST(read(file("out")), "made");
        QCOMPARE(read(src), content);
        QCOMPARE(
            log->takeLines(),
            QStringList(QStringLiteral("1 VPrnt encodeEmf(%1), rslt format:%2, len:%3")
                            .arg(src, QString::number(format), QString::number(content.size()))));
        QCOMPARE(TestRenderer::instance().calls, QStringList());
        QCOMPARE(entries().size(), 2);
    }

    // What is too large to be read as a whole is read as nothing.
    void wrapTooLarge()
    {
        const QString huge = write("huge", QByteArray());
        QVERIFY(QFile::resize(huge, 3000000000));
        QVERIFY(enc.encodeOther_inner(huge, file("out"), DocCovRslt::PAGE_FORMAT_PNG));
        QCOMPARE(read(file("out")), header("04000000 00000000"));
        log->takeLines();
    }

    // It would wait for the other end of the pipe if it were read.
    void noFormatIsRefusedUnread()
    {
        const QString pipe = file("pipe");
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(!enc.encodeOther_inner(pipe, file("out"), DocCovRslt::PAGE_FORMAT_NONE));
        QVERIFY(!QFile::exists(file("out")));
        write("old", "old");
        QVERIFY(!enc.encodeOther_inner(file("old"), file("old"), DocCovRslt::PAGE_FORMAT_NONE));
        QCOMPARE(read(file("old")), QByteArray("old"));
    }

    void wrapFails()
    {
        QVERIFY(!enc.encodeOther_inner(file("missing"), file("out"), DocCovRslt::PAGE_FORMAT_PNG));
        QVERIFY(!enc.encodeOther_inner(dir->path(), file("out"), DocCovRslt::PAGE_FORMAT_PNG));
        QCOMPARE(log->takeLines(), QStringList()); // the worker logs it
        QCOMPARE(entries(), QStringList());

        const QString src = write("src", "content");
        QVERIFY(!enc.encodeOther_inner(src, dir->path(), DocCovRslt::PAGE_FORMAT_PNG));
        QCOMPARE(
            log->takeLines(),
            failureLines({QStringLiteral("CreateEmfDealRsltFile! (err:5, file:%1)")}, dir->path()));
        const QString large = write("large", QByteArray(100000, 'x'));
        const QString full = QStringLiteral("/dev/full");
        QVERIFY(!enc.encodeOther_inner(large, full, DocCovRslt::PAGE_FORMAT_PNG));
        QCOMPARE(log->takeLines(),
                 failureLines({QStringLiteral("WrtEmfDealRsltFile! (err:4, file:%1)")}, full));
    }

    void fileToFile()
    {
        const QString src = write("src", "EMF page");
        const QString dst = write("dst", "old and longer than ten bytes");
        const QString jpg = QStringLiteral("JPG");
        TestRenderer::instance().jpgSize = 10;
        QVERIFY(EmfDeal::CovEmf2Pic(src, dst, jpg, 7, 300));
        QCOMPARE(TestRenderer::instance().calls,
                 QStringList(QStringLiteral("JPG 7 300 of EMF page")));
        QCOMPARE(read(dst), QByteArray(10, 'j'));
        QCOMPARE(read(src), QByteArray("EMF page"));

        TestRenderer::instance().jpgSize = kFails;
        QVERIFY(!EmfDeal::CovEmf2Pic(src, dst, jpg, 7, 300));
        QVERIFY(!EmfDeal::CovEmf2Pic(src, file("new"), jpg, 7, 300));
        QCOMPARE(read(dst), QByteArray(10, 'j')); // as it was
        TestRenderer::instance() = TestRenderer();
        QVERIFY(!EmfDeal::CovEmf2Pic(file("missing"), dst, QStringLiteral("PNG"), 7, 300));
        QCOMPARE(TestRenderer::instance().calls, QStringList());
        QCOMPARE(read(dst), QByteArray(10, 'j'));
        QVERIFY(!EmfDeal::CovEmf2Pic(src, file("gone/dst"), QStringLiteral("PNG"), 7, 300));
        QCOMPARE(entries(), QStringList({QStringLiteral("dst"), QStringLiteral("src")}));
    }
};

QTEST_GUILESS_MAIN(TestPageConversion)
#include "tst_pageconversion.moc"
