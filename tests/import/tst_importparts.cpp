#include "Hex.h"
#include "TinyZip.h"
#include "tools/docimport/ImportReport.h"
#include "tools/docimport/InputKind.h"
#include "tools/docimport/PageList.h"
#include "tools/docimport/ZipEntry.h"
#include "tools/docimport/pdf/PagePicture.h"
#include "tools/docimport/pdf/Resolution.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// A name in a compound file.
QByteArray compound(const char *name)
{
    const QString stream = text(name);
    return hex("d0 cf 11 e0 a1 b1 1a e1") + QByteArray(600, '\0') +
           QByteArray(reinterpret_cast<const char *>(stream.utf16()), 2 * stream.size()) +
           QByteArray(100, '\0');
}

QByteArray openXml(const QByteArray &types, const QByteArray &presentation)
{
    return TinyZip::archive(
        {{"[Content_Types].xml", types, true}, {"ppt/presentation.xml", presentation, true}});
}

QByteArray openDocument(const QByteArray &type, const QByteArray &manifest,
                        const QByteArray &content)
{
    return TinyZip::archive({{"mimetype", type, false},
                             {"META-INF/manifest.xml", manifest, true},
                             {"content.xml", content, true}});
}

QImage noise(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            state = state * 1664525 + 1013904223;
            image.setPixel(x, y, 0xff000000 | state >> 8);
        }
    }
    return image;
}

} // namespace

/// The parts of docimport, one by one.
class TestImportParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pageLists_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<int>("count");
        QTest::addColumn<QVector<int>>("pages");
        QTest::newRow("one") << text("2") << 3 << QVector<int>{1};
        QTest::newRow("several") << text("1,3-5,8-") << 9 << QVector<int>{0, 2, 3, 4, 7, 8};
        QTest::newRow("order and repetition") << text("3,1-2,2-3") << 3 << QVector<int>{0, 1, 2};
        QTest::newRow("all") << text("1-") << 2 << QVector<int>{0, 1};
        QTest::newRow("the last") << text("2-") << 2 << QVector<int>{1};
        QTest::newRow("a range of one") << text("2-2") << 2 << QVector<int>{1};
    }
    void pageLists()
    {
        QFETCH(QString, list);
        QFETCH(int, count);
        const std::optional<PageList> wanted = PageList::read(list);
        QVERIFY(wanted);
        QVector<int> pages{-1};
        QCOMPARE(wanted->pagesOf(count, pages), QString());
        QTEST(pages, "pages");
    }

    void noPageLists_data()
    {
        QTest::addColumn<QString>("list");
        for (const char *list : {"", ",", "1,", "0", "-1", "-", "2-1", "1-0", "a", "1-2-3", "1 ",
                                 "1.5", "99999999999", "1-99999999999", "٣", "1\n"})
            QTest::newRow(list) << text(list);
    }
    void noPageLists()
    {
        QFETCH(QString, list);
        QVERIFY(!PageList::read(list));
    }

    void pagesThatAreNotThere_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("fault");
        QTest::newRow("page") << text("1,4") << text("has no page 4, but 3");
        QTest::newRow("end of a range") << text("2-5") << text("has no page 5, but 3");
        QTest::newRow("all of a range") << text("7-9") << text("has no page 7, but 3");
        QTest::newRow("open range") << text("4-") << text("has no page 4, but 3");
    }
    void pagesThatAreNotThere()
    {
        QFETCH(QString, list);
        QVector<int> pages;
        QTEST(PageList::read(list)->pagesOf(3, pages), "fault");
    }

    void allPages()
    {
        QVector<int> pages;
        QCOMPARE(PageList().pagesOf(3, pages), QString());
        QCOMPARE(pages, (QVector<int>{0, 1, 2}));
    }

    void resolutions_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("dpi");
        QTest::addColumn<QSizeF>("points");
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<bool>("isReduced");
        QTest::newRow("width") << 1280 << 0 << QSizeF(720, 540) << QSize(1280, 960) << false;
        QTest::newRow("a width that is less")
            << 100 << 0 << QSizeF(595, 842) << QSize(100, 142) << false;
        QTest::newRow("dots") << 1280 << 144 << QSizeF(720, 540) << QSize(1440, 1080) << false;
        QTest::newRow("flat") << 1280 << 0 << QSizeF(10000, 1) << QSize(1280, 1) << false;
        QTest::newRow("tiny") << 1280 << 72 << QSizeF(0.1, 0.1) << QSize(1, 1) << false;
        QTest::newRow("tall") << 1280 << 0 << QSizeF(1, 1000) << QSize(16, 16384) << true;
        QTest::newRow("wide") << 1280 << 2400 << QSizeF(1000, 1) << QSize(16384, 16) << true;
        QTest::newRow("200 inches")
            << 1280 << 300 << QSizeF(14400, 14400) << QSize(6325, 6325) << true;
        QTest::newRow("as many as may be")
            << 8000 << 0 << QSizeF(8000, 5000) << QSize(8000, 5000) << false;
        QTest::newRow("hardly anything")
            << 1280 << 0 << QSizeF(1e-300, 1e-300) << QSize(1280, 1280) << false;
    }
    void resolutions()
    {
        QFETCH(QSizeF, points);
        QFETCH(int, width);
        QFETCH(int, dpi);
        const Resolution resolution{width, dpi};
        bool isReduced = false;
        QTEST(resolution.pixelsOf(points, isReduced), "pixels");
        QTEST(isReduced, "isReduced");
    }

    void zipEntries_data()
    {
        QTest::addColumn<QByteArray>("zip");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("content");
        const QByteArray zip = TinyZip::archive({{"a", "first", false}, {"b/c", "second", true}});
        QTest::newRow("stored") << zip << QByteArray("a") << QByteArray("first");
        QTest::newRow("compressed") << zip << QByteArray("b/c") << QByteArray("second");
        QTest::newRow("none of the name") << zip << QByteArray("b") << QByteArray();
        QTest::newRow("behind a comment")
            << TinyZip::archive({{"a", "first", false}}, QByteArray(300, '#')) << QByteArray("a")
            << QByteArray("first");
        QTest::newRow("only the beginning")
            << TinyZip::archive({{"a", QByteArray(5000, 'x'), true}}) << QByteArray("a")
            << QByteArray(1000, 'x');
        QTest::newRow("only the beginning, stored")
            << TinyZip::archive({{"a", QByteArray(5000, 'x'), false}}) << QByteArray("a")
            << QByteArray(1000, 'x');
        QTest::newRow("no archive")
            << QByteArray("PK\3\4 and more") << QByteArray("a") << QByteArray();
        QTest::newRow("empty") << QByteArray() << QByteArray("a") << QByteArray();
    }
    void zipEntries()
    {
        QFETCH(QByteArray, zip);
        QFETCH(QByteArray, name);
        QBuffer buffer(&zip);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QTEST(zipEntry(buffer, name, 1000), "content");
    }

    // Whatever is broken, nothing else breaks.
    void brokenArchives()
    {
        const QByteArray whole = TinyZip::archive({{"a", "first", false}, {"b", "second", true}});
        for (int at = 0; at < whole.size(); ++at) {
            for (const char value : {'\0', '\1', '\x7f', '\xff'}) {
                QByteArray zip = whole;
                zip[at] = value;
                QBuffer buffer(&zip);
                QVERIFY(buffer.open(QIODevice::ReadOnly));
                QVERIFY(zipEntry(buffer, "b", 1000).size() <= 1000);
            }
            QByteArray cut = whole.left(at);
            QBuffer buffer(&cut);
            QVERIFY(buffer.open(QIODevice::ReadOnly));
            QVERIFY(zipEntry(buffer, "b", 1000).size() <= 1000);
        }
    }

    void inputKinds_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QString>("fault");
        const auto is = [](const char *row, const QByteArray &content, InputKind::Kind kind,
                           const char *suffix, const char *fault) {
            QTest::newRow(row) << content << int(kind) << text(suffix) << text(fault);
        };
        const char *const foreign = "neither a PDF document nor a presentation, or damaged";
        const char *const encrypted = "encrypted: it opens with a password only";
        const QByteArray odp = "application/vnd.oasis.opendocument.presentation";
        const QByteArray pptx = "application/vnd.openxmlformats-officedocument.presentationml";
        is("PDF", "%PDF-1.7\n", InputKind::Pdf, "", "");
        is("PDF behind something", QByteArray(1019, ' ') + "%PDF-1.7\n", InputKind::Pdf, "", "");
        is("PDF too far behind", QByteArray(1020, ' ') + "%PDF-", InputKind::Unknown, "", foreign);
        is("pptx", openXml(pptx, "<p:sldId id"), InputKind::Deck, "pptx", "");
        is("pptx without slides", openXml(pptx, "<p:sldIdLst/>"), InputKind::Unknown, "",
           "has no slides");
        is("pptx with a line for each attribute", openXml(pptx, "<p:sldId\n id"), InputKind::Deck,
           "pptx", "");
        is("pptx of another layout", openXml(pptx, ""), InputKind::Deck, "pptx", "");
        is("docx", openXml("wordprocessingml", ""), InputKind::Unknown, "", foreign);
        is("odp", openDocument(odp, "<manifest/>", "<draw:page draw:name"), InputKind::Deck, "odp",
           "");
        is("odp without slides", openDocument(odp, "<manifest/>", "<office:presentation/>"),
           InputKind::Unknown, "", "has no slides");
        is("encrypted odp", openDocument(odp, "<manifest:encryption-data/>", "x"),
           InputKind::Unknown, "", encrypted);
        is("odt", openDocument("application/vnd.oasis.opendocument.text", "", ""),
           InputKind::Unknown, "", foreign);
        is("ppt", compound("PowerPoint Document"), InputKind::Deck, "ppt", "");
        is("encrypted ppt", compound("PowerPoint Document") + compound("EncryptedSummary"),
           InputKind::Unknown, "", encrypted);
        is("encrypted pptx", compound("EncryptedPackage"), InputKind::Unknown, "", encrypted);
        is("doc", compound("WordDocument"), InputKind::Unknown, "", foreign);
        is("ppt with its name at the end of a block",
           compound("").leftJustified((1 << 20) - 7, '\0') +
               compound("PowerPoint Document").mid(608),
           InputKind::Deck, "ppt", "");
        is("fodp", "<?xml?><x mimetype=\"" + odp + "\"><draw:page ", InputKind::Deck, "fodp", "");
        is("fodp with a line for each attribute",
           "<?xml?><x mimetype=\"" + odp + "\"><draw:page\r\n\tdraw:name", InputKind::Deck, "fodp",
           "");
        is("fodp with a bare slide", "<?xml?><x mimetype=\"" + odp + "\"><draw:page>",
           InputKind::Deck, "fodp", "");
        is("fodp with thumbnails only", "<x mimetype=\"" + odp + "\"><draw:page-thumbnail ",
           InputKind::Unknown, "", "has no slides");
        is("fodp behind a comment",
           "<!--" + QByteArray(60000, 'c') + "--><x mimetype=\"" + odp + "\"><draw:page ",
           InputKind::Deck, "fodp", "");
        is("fodp without slides", "<?xml?><x mimetype=\"" + odp + "\">", InputKind::Unknown, "",
           "has no slides");
        is("text", "hello", InputKind::Unknown, "", foreign);
        is("empty", "", InputKind::Unknown, "", "empty file");
    }
    void inputKinds()
    {
        QFETCH(QByteArray, content);
        const QTemporaryDir folder;
        const QString path = folder.filePath(text("input"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
        file.close();
        const InputKind kind = InputKind::of(path);
        QTEST(int(kind.kind), "kind");
        QTEST(kind.suffix, "suffix");
        QTEST(kind.fault, "fault");
    }

    void pictures()
    {
        QImage plain(40, 40, QImage::Format_RGB32);
        plain.fill(Qt::red);
        const PagePicture png = PagePicture::of(plain, 90);
        QCOMPARE(png.fault, QString());
        QCOMPARE(png.format, DocCovRslt::PAGE_FORMAT_PNG);
        QCOMPARE(QImage::fromData(png.bytes, "PNG").pixel(20, 20), 0xffff0000);

        const QImage many = noise(64, 64);
        const PagePicture jpg = PagePicture::of(many, 90);
        QCOMPARE(jpg.fault, QString());
        QCOMPARE(jpg.format, DocCovRslt::PAGE_FORMAT_JPG);
        QCOMPARE(QImage::fromData(jpg.bytes, "JPG").size(), QSize(64, 64));
        QVERIFY(PagePicture::of(many, 10).bytes.size() < jpg.bytes.size());

        // A JPG would be smaller, but there are no more colours than in a diagram.
        QImage few = noise(256, 256);
        for (int y = 0; y < few.height(); ++y) {
            for (int x = 0; x < few.width(); ++x)
                few.setPixel(x, y, 0xff000000 | (few.pixel(x, y) & 0xff));
        }
        QCOMPARE(PagePicture::of(few, 10).format, DocCovRslt::PAGE_FORMAT_PNG);
        few.setPixel(0, 0, 0xff010203);
        QCOMPARE(PagePicture::of(few, 10).format, DocCovRslt::PAGE_FORMAT_JPG);
    }

    void reports()
    {
        EffectReport effect;
        effect.target = text("Title \"1\"");
        effect.kind = text("entrance");
        effect.trigger = text("click");
        effect.duration = 0.3;
        effect.result = text("dropped");
        effect.reason = text("a reason");
        SlideReport slide;
        slide.number = 3;
        slide.page = text("page_0");
        slide.note = text("a note");
        SlideReport composed = slide;
        composed.isAnimated = true;
        composed.difference = 0.0012345678;
        composed.effects = {effect};
        DocumentReport good;
        good.input = text("a.pptx");
        good.output = text("new/a");
        good.seconds = 1.2341;
        good.slides = {slide, composed};
        DocumentReport bad;
        bad.input = text("b.pptx");
        bad.output = text("new/b");
        bad.fault = text("empty file");
        const QByteArray expected = "{\n"
                                    "    \"documents\": [\n"
                                    "        {\n"
                                    "            \"fault\": \"\",\n"
                                    "            \"input\": \"a.pptx\",\n"
                                    "            \"note\": \"\",\n"
                                    "            \"output\": \"new/a\",\n"
                                    "            \"seconds\": 1.234,\n"
                                    "            \"slides\": [\n"
                                    "                {\n"
                                    "                    \"animated\": false,\n"
                                    "                    \"difference\": null,\n"
                                    "                    \"effects\": [\n"
                                    "                    ],\n"
                                    "                    \"note\": \"a note\",\n"
                                    "                    \"number\": 3,\n"
                                    "                    \"page\": \"page_0\",\n"
                                    "                    \"reason\": \"\"\n"
                                    "                },\n"
                                    "                {\n"
                                    "                    \"animated\": true,\n"
                                    "                    \"difference\": 0.001235,\n"
                                    "                    \"effects\": [\n"
                                    "                        {\n"
                                    "                            \"duration\": 0.3,\n"
                                    "                            \"kind\": \"entrance\",\n"
                                    "                            \"reason\": \"a reason\",\n"
                                    "                            \"result\": \"dropped\",\n"
                                    "                            \"target\": \"Title \\\"1\\\"\",\n"
                                    "                            \"trigger\": \"click\"\n"
                                    "                        }\n"
                                    "                    ],\n"
                                    "                    \"note\": \"a note\",\n"
                                    "                    \"number\": 3,\n"
                                    "                    \"page\": \"page_0\",\n"
                                    "                    \"reason\": \"\"\n"
                                    "                }\n"
                                    "            ]\n"
                                    "        },\n"
                                    "        {\n"
                                    "            \"fault\": \"empty file\",\n"
                                    "            \"input\": \"b.pptx\",\n"
                                    "            \"note\": \"\",\n"
                                    "            \"output\": \"new/b\",\n"
                                    "            \"seconds\": 0,\n"
                                    "            \"slides\": [\n"
                                    "            ]\n"
                                    "        }\n"
                                    "    ]\n"
                                    "}\n";
        QCOMPARE(reportJson({good, bad}), expected);
        QCOMPARE(reportJson({}), QByteArray("{\n    \"documents\": [\n    ]\n}\n"));
    }
};

QTEST_GUILESS_MAIN(TestImportParts)

#include "tst_importparts.moc"
