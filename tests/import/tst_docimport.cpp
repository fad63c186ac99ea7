#include "DocimportTest.h"
#include "Terminal.h"
#include "tools/docpage/PageFile.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <csignal>

namespace {

constexpr char kTaken[] = "already exists; use --force to replace it\n";

QByteArray twoPages()
{
    return TinyPdf::document({TinyPdf::page(100, 50, "1 0 0"), TinyPdf::page(50, 100, "0 0 1")});
}

// `count` pages of one form.
QByteArray pages(int count)
{
    QList<TinyPdf::Page> all;
    for (int i = 0; i < count; ++i)
        all << TinyPdf::page(10, 10, "0 1 0");
    return TinyPdf::document(all);
}

// Takes minutes at 1440 dots per inch.
TinyPdf::Page slowPage()
{
    TinyPdf::Page page = TinyPdf::page(200, 200, "0 1 0");
    page.content = page.content.repeated(20000);
    return page;
}

} // namespace

/// docimport, with PDF documents: its command line, its folders, its pages and its report.
class TestDocimport : public DocimportTest
{
    Q_OBJECT

private:
    QJsonArray reported(const char *name) const
    {
        return QJsonDocument::fromJson(place->read(text(name)))
            .object()
            .value(text("documents"))
            .toArray();
    }

private Q_SLOTS:
    void versionAndHelp()
    {
        verifyDoes(words("--version"), "docimport " DOCIMPORT_VERSION "\n");
        const Outcome help = place->run(words("--help"));
        QCOMPARE(help.status, 0);
        QCOMPARE(help.err, QByteArray());
        QVERIFY(help.out.startsWith("Usage: docimport INPUT... -o DIR [OPTION...]\n\n"));
    }

    void manPageHasEverything()
    {
        QFile file(QStringLiteral(DOCIMPORT_MAN_PAGE));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString page = QString::fromUtf8(file.readAll()).replace(text("\\-"), text("-"));
        QVERIFY(page.contains(text("\"DocDisplay " DOCIMPORT_VERSION "\"")));
        const QRegularExpression option(text("(?<![\\w-])--?[a-z][a-z-]*"));
        const auto optionsIn = [&](const QString &where) {
            QSet<QString> options;
            for (auto match = option.globalMatch(where); match.hasNext();)
                options.insert(match.next().captured());
            return options;
        };
        const QString help = QString::fromUtf8(place->run(words("--help")).out);
        QCOMPARE(optionsIn(page.section(text(".SH OPTIONS"), 1).section(text(".SH REPORT"), 0, 0)),
                 optionsIn(help));
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QByteArray>("message");
        const auto is = [](const char *line, const char *message) {
            QTest::newRow(line) << text(line) << QByteArray(message);
        };
        is("", "No INPUT given.");
        is("a.pdf", "No output given, -o DIR is missing.");
        is("-o new", "No INPUT given.");
        is("a.pdf -o new --bogus", "Unknown option 'bogus'.");
        is("a.pdf -o new --width 100 --dpi 100", "Either --width or --dpi, not both.");
        is("a.pdf -o new --width 0", "'0' is no number of pixels from 1 to 16384.");
        is("a.pdf -o new --width 16385", "'16385' is no number of pixels from 1 to 16384.");
        is("a.pdf -o new --dpi 2401", "'2401' is no number of pixels per inch from 1 to 2400.");
        is("a.pdf -o new --dpi -1", "'-1' is no number of pixels per inch from 1 to 2400.");
        is("a.pdf -o new --jpeg-quality 101", "'101' is no quality from 1 to 100.");
        is("a.pdf -o new --jpeg-quality 0", "'0' is no quality from 1 to 100.");
        is("a.pdf -o new --timeout 0", "'0' is no number of seconds from 1 to 86400.");
        is("a.pdf -o new --timeout 86401", "'86401' is no number of seconds from 1 to 86400.");
        is("a.pdf -o new --pages 3-1", "'3-1' is no list of pages such as 1,3-5,8-.");
        is("a.pdf -o new --report=", "No file given for --report.");
        is("a.pdf -o new --engine=", "No file given for --engine.");
    }
    void wrongUsage()
    {
        QFETCH(QString, line);
        QFETCH(QByteArray, message);
        verifyFails(line.split(QLatin1Char(' '), Qt::SkipEmptyParts), 2,
                    "docimport: " + message + "\nTry 'docimport --help'.\n");
    }

    void pagesOfADocument()
    {
        place->write(text("a.pdf"), twoPages());
        verifyDoes(words("a.pdf -o new"), "2 page result files in new\n");
        QCOMPARE(picture("new/page_0").size(), QSize(1280, 640));
        QCOMPARE(picture("new/page_1").size(), QSize(1280, 2560));
        QCOMPARE(picture("new/page_0").pixel(640, 320), 0xffff0000);
        QCOMPARE(picture("new/page_1").pixel(640, 320), 0xff0000ff);
        QCOMPARE(PageFile::read(place->path(text("new/page_0"))).header.picFormat, 4);
        QCOMPARE(QDir(place->path(text("new")))
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 (QStringList{text("page_0"), text("page_1")}));
    }

    void sizes_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QSize>("size");
        QTest::newRow("width") << text("--width 200") << QSize(200, 100);
        QTest::newRow("dots") << text("--dpi 144") << QSize(200, 100);
        QTest::newRow("few dots") << text("--dpi 1") << QSize(1, 1);
    }
    void sizes()
    {
        QFETCH(QString, option);
        place->write(text("a.pdf"), twoPages());
        verifyDoes(words("a.pdf -o new") + words(qPrintable(option)),
                   "2 page result files in new\n");
        QTEST(picture("new/page_0").size(), "size");
    }

    // The red quarter is where a reader shows it.
    void boxesAndRotation_data()
    {
        QTest::addColumn<QByteArray>("entries");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("red");
        QTest::newRow("plain") << QByteArray() << QSize(200, 100) << QPoint(50, 75);
        QTest::newRow("quarter turn")
            << QByteArray("/Rotate 90") << QSize(100, 200) << QPoint(25, 50);
        QTest::newRow("half turn")
            << QByteArray("/Rotate 180") << QSize(200, 100) << QPoint(150, 25);
        QTest::newRow("crop box") << QByteArray("/CropBox [0 0 100 100]") << QSize(100, 100)
                                  << QPoint(50, 75);
        QTest::newRow("crop box, turned") << QByteArray("/CropBox [0 0 150 100] /Rotate 270")
                                          << QSize(100, 150) << QPoint(75, 100);
    }
    void boxesAndRotation()
    {
        QFETCH(QByteArray, entries);
        QFETCH(QPoint, red);
        const TinyPdf::Page page{"/MediaBox [0 0 200 100] " + entries,
                                 TinyPdf::rectangle("1 0 0", "0 0 100 50")};
        place->write(text("a.pdf"), TinyPdf::document({page}));
        verifyDoes(words("a.pdf -o new --dpi 72"), "1 page result file in new\n");
        const QImage image = picture("new/page_0");
        QTEST(image.size(), "size");
        QCOMPARE(image.pixel(red), 0xffff0000);
        QCOMPARE(image.pixel(image.width() - 1 - red.x(), image.height() - 1 - red.y()),
                 0xffffffff);
    }

    // Paths and text are smooth.
    void edgesAreSmooth()
    {
        const TinyPdf::Page page{"/MediaBox [0 0 20 20] /Resources << /Font << /F << /Type /Font "
                                 "/Subtype /Type1 /BaseFont /Helvetica >> >> >>",
                                 "0 0 m 20 7 l 0 7 l f\nBT /F 10 Tf 1 9 Td (O) Tj ET"};
        place->write(text("a.pdf"), TinyPdf::document({page}));
        verifyDoes(words("a.pdf -o new --dpi 72"), "1 page result file in new\n");
        const QImage image = picture("new/page_0");
        int greys[2] = {};
        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 20; ++x) {
                const int level = qGray(image.pixel(x, y));
                greys[y / 12] += level > 20 && level < 235 ? 1 : 0;
            }
        }
        QVERIFY(greys[0] > 5);
        QVERIFY(greys[1] > 5);
    }

    // In their order, and numbered from 0 all the same.
    void chosenPages()
    {
        place->write(text("a.pdf"), TinyPdf::document({TinyPdf::page(10, 10, "1 0 0"),
                                                       TinyPdf::page(10, 10, "0 1 0"),
                                                       TinyPdf::page(10, 10, "0 0 1")}));
        verifyDoes(words("a.pdf -o new --pages 3,2 --report report.json"),
                   "2 page result files in new\n");
        QCOMPARE(picture("new/page_0").pixel(5, 5), 0xff00ff00);
        QCOMPARE(picture("new/page_1").pixel(5, 5), 0xff0000ff);
        const QJsonArray slides =
            reported("report.json").at(0).toObject().value(text("slides")).toArray();
        QCOMPARE(slides.size(), 2);
        QCOMPARE(slides.at(0).toObject().value(text("number")).toInt(), 2);
        QCOMPARE(slides.at(0).toObject().value(text("page")).toString(), text("page_0"));
        QCOMPARE(slides.at(1).toObject().value(text("number")).toInt(), 3);
        QCOMPARE(slides.at(1).toObject().value(text("page")).toString(), text("page_1"));
        verifyFails(words("a.pdf -o other --pages 2-4"),
                    "docimport: a.pdf: has no page 4, but 3\n");
    }

    void jpegQuality()
    {
        QByteArray content;
        quint32 state = 1;
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 40; ++x) {
                state = state * 1664525 + 1013904223;
                content += TinyPdf::rectangle(
                    QByteArray::number((state >> 8) % 256 / 255.0) + ' ' +
                        QByteArray::number((state >> 16) % 256 / 255.0) + " 0.5",
                    QByteArray::number(x) + ' ' + QByteArray::number(y) + " 1 1");
            }
        }
        place->write(text("a.pdf"), TinyPdf::document({{"/MediaBox [0 0 40 40]", content}}));
        verifyDoes(words("a.pdf -o high --dpi 72"), "1 page result file in high\n");
        verifyDoes(words("a.pdf -o low --dpi 72 --jpeg-quality 5"), "1 page result file in low\n");
        const PageFile high = PageFile::read(place->path(text("high/page_0")));
        const PageFile low = PageFile::read(place->path(text("low/page_0")));
        QCOMPARE(high.header.picFormat, 2);
        QCOMPARE(low.header.picFormat, 2);
        QVERIFY(low.payload.size() < high.payload.size());
    }

    void hugeAndTinyPages()
    {
        place->write(text("a.pdf"), TinyPdf::document({TinyPdf::page(14400, 14400, "1 0 0"),
                                                       TinyPdf::page(1, 1000, "0 1 0"),
                                                       {"/MediaBox [0 0 0.01 0.01]", ""}}));
        verifyDoes(words("a.pdf -o new --dpi 300 --report report.json"),
                   "3 page result files in new\n");
        QCOMPARE(picture("new/page_0").size(), QSize(6325, 6325));
        QCOMPARE(picture("new/page_1").size(), QSize(4, 4167));
        QCOMPARE(picture("new/page_2").size(), QSize(1, 1));
        const QJsonArray slides =
            reported("report.json").at(0).toObject().value(text("slides")).toArray();
        QCOMPARE(slides.at(0).toObject().value(text("note")).toString(),
                 text("drawn smaller, with 6325 x 6325 pixels: it would be too large"));
        QCOMPARE(slides.at(1).toObject().value(text("note")).toString(), QString());
        verifyDoes(words("a.pdf -o wide --pages 2"), "1 page result file in wide\n");
        QCOMPARE(picture("wide/page_0").size(), QSize(16, 16384));
    }

    void badInputs_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("fault");
        QTest::newRow("empty") << QByteArray() << QByteArray("empty file");
        QTest::newRow("foreign") << QByteArray("hello")
                                 << QByteArray(
                                        "neither a PDF document nor a presentation, or damaged");
        QTest::newRow("encrypted") << TinyPdf::encryptedDocument()
                                   << QByteArray("encrypted: it opens with a password only");
        QTest::newRow("only a beginning")
            << QByteArray("%PDF-1.4\n") << QByteArray("damaged, or no PDF document");
        QTest::newRow("without pages") << TinyPdf::document({}) << QByteArray("has no pages");
    }
    void badInputs()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, fault);
        place->write(text("a.pdf"), content);
        verifyFails(words("a.pdf -o new"), "docimport: a.pdf: " + fault + '\n');
    }

    // A page that is drawn over and over. The first one is made in vain.
    void timeLimit()
    {
        place->write(text("a.pdf"), TinyPdf::document({TinyPdf::page(1, 1, "1 0 0"), slowPage()}));
        const Outcome outcome =
            place->run(words("a.pdf -o new --dpi 1440 --timeout 1 --report report.json"));
        QCOMPARE(outcome.err, QByteArray("docimport: a.pdf: page 2 takes too long to draw; "
                                         "--timeout allows it more\n"));
        QCOMPARE(outcome.status, 1);
        QVERIFY(!QFile::exists(place->path(text("new"))));
        const QJsonObject document = reported("report.json").at(0).toObject();
        QCOMPARE(document.value(text("fault")).toString(),
                 text("page 2 takes too long to draw; --timeout allows it more"));
        QCOMPARE(document.value(text("slides")).toArray(), QJsonArray());
    }

    void endsBySignal()
    {
        place->write(text("a.pdf"), TinyPdf::document({TinyPdf::page(1, 1, "1 0 0"), slowPage()}));
        const QStringList before = place->entries();
        ForkedProcess process;
        process.setWorkingDirectory(place->path({}));
        process.setProcessEnvironment(place->environment);
        process.start(place->program, words("a.pdf -o new --dpi 1440"));
        QVERIFY(process.waitForStarted());
        QTRY_COMPARE(place->entries().filter(QRegularExpression(text("/0 [0-9a-f]+$"))).size(), 1);
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
        QVERIFY(process.waitForFinished());
        QCOMPARE(withoutEmulator(process.readAllStandardError()),
                 QByteArray("docimport: new: cancelled, no page is made\n"));
        QCOMPARE(process.exitCode(), SIGINT);
        QCOMPARE(place->entries(), before);
    }

    // Each byte of the document in turn is another: there are pages, or a line that tells why not.
    void brokenDocuments()
    {
        QByteArray pdf = twoPages();
        for (int at = 0; at < pdf.size(); at += 7) {
            QByteArray broken = pdf;
            broken[at] = '\x11';
            place->write(text("a.pdf"), broken);
            const Outcome outcome = place->run(words("a.pdf -o new --force --width 10"));
            QVERIFY2(outcome.status == 0 || outcome.status == 1, qPrintable(QString::number(at)));
            QCOMPARE(outcome.err.count('\n'), outcome.status);
            QVERIFY(QDir(place->path(text("new"))).removeRecursively());
        }
    }

    // They would be pages of others.
    void inputsWithoutAName()
    {
        for (const char *name : {"...pdf", "..pdf", ".pdf"})
            place->write(text(name), pages(1));
        verifyDoes(words("...pdf ..pdf .pdf -o new"), "1 page result file in new/...pdf\n"
                                                      "1 page result file in new/..pdf\n"
                                                      "1 page result file in new/.pdf\n");
        QVERIFY(!QFile::exists(place->path(text("page_0"))));
        QVERIFY(!QFile::exists(place->path(text("new/page_0"))));
    }

    // Before any work is done.
    void reportThatCannotBe()
    {
        place->write(text("a.pdf"), pages(1));
        place->write(text("old.json"), "old");
        verifyFails(words("a.pdf -o new --force --report new/page_0"),
                    "docimport: new/page_0: is the name of a page result file\n");
        verifyFails(words("a.pdf -o new --force --report page_0"),
                    "docimport: page_0: is the name of a page result file\n");
        verifyFails(words("a.pdf -o new --report none/r.json"),
                    "docimport: none/r.json: there is no such folder\n");
        verifyFails(words("a.pdf -o new --report old.json"),
                    "docimport: old.json: already exists; use --force to replace it\n");
        verifyDoes(words("a.pdf -o new/ --report new/r.json"), "1 page result file in new/\n");
        // What has failed is told there as well.
        const Outcome failed =
            place->run(words("missing.pdf -o not_made --report not_made/r.json"));
        QVERIFY2(failed.err.startsWith("docimport: missing.pdf: "), failed.err.constData());
        QCOMPARE(failed.err.count('\n'), 1);
        QCOMPARE(reported("not_made/r.json").size(), 1);
        QVERIFY(QFile::exists(place->path(text("new/r.json"))));
    }

    // The others are done.
    void severalInputs()
    {
        QVERIFY(QDir(place->path({})).mkdir(text("sub")));
        place->write(text("a.b.pdf"), twoPages());
        place->write(text("empty"), {});
        place->write(text("sub/a.b"), twoPages());
        place->write(text("sub/a.b.pdf"), twoPages());
        place->write(text("last.pdf"), pages(1));
        const Outcome outcome = place->run(
            words("a.b.pdf empty missing . sub/a.b sub/a.b.pdf last.pdf -o new --report r.json"));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.out, QByteArray("2 page result files in new/a.b\n"
                                         "2 page result files in new/a\n"
                                         "1 page result file in new/last\n"));
        QCOMPARE(outcome.err,
                 QByteArray("docimport: empty: empty file\n"
                            "docimport: missing: No such file or directory\n"
                            "docimport: .: is a directory\n"
                            "docimport: sub/a.b.pdf: an input before it has the same name, and "
                            "takes the folder new/a.b\n"));
        const QJsonArray documents = reported("r.json");
        QCOMPARE(documents.size(), 7);
        QCOMPARE(documents.at(0).toObject().value(text("fault")).toString(), QString());
        QCOMPARE(documents.at(1).toObject().value(text("fault")).toString(), text("empty file"));
        QCOMPARE(documents.at(1).toObject().value(text("slides")).toArray().size(), 0);
        QCOMPARE(QDir(place->path(text("new")))
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 (QStringList{text("a"), text("a.b"), text("last")}));
    }

    void takenNames()
    {
        place->write(text("a.pdf"), pages(2));
        QVERIFY(QDir(place->path({})).mkdir(text("new")));
        place->write(text("new/page_7"), "old");
        place->write(text("new/page_10"), "old");
        verifyFails(words("a.pdf -o new"), QByteArray("docimport: new/page_7: ") + kTaken);
        verifyFails(words("a.pdf -o new --force"),
                    "docimport: new/page_7: would stay behind the 2 pages of this document; remove "
                    "it, or choose another folder\n");
        QVERIFY(QFile::remove(place->path(text("new/page_7"))));
        QVERIFY(QFile::rename(place->path(text("new/page_10")), place->path(text("new/page_1"))));
        place->write(text("new/page_02"), "somebody's own");
        verifyDoes(words("a.pdf -o new --force"), "2 page result files in new\n");
        QCOMPARE(picture("new/page_1").pixel(5, 5), 0xff00ff00);
        QCOMPARE(place->read(text("new/page_02")), QByteArray("somebody's own"));
    }

    void inputsAreKept()
    {
        QVERIFY(QDir(place->path({})).mkdir(text("new")));
        place->write(text("new/page_0"), pages(1));
        verifyFails(words("new/page_0 -o new --force"),
                    "docimport: new/page_0: would replace an input\n");
        verifyFails(words("new/page_0 -o other --force --report new/page_0"),
                    "docimport: new/page_0: would replace an input\n");
    }

    void badFolders()
    {
        place->write(text("a.pdf"), pages(1));
        place->write(text("file"), "text");
        verifyFails(words("a.pdf -o file/new"), "docimport: file/new: Not a directory\n");
        verifyFails(words("a.pdf -o file"), "docimport: file: Not a directory\n");
    }

    void badReports()
    {
        place->write(text("a.pdf"), pages(1));
        place->write(text("taken"), "text");
        verifyFails(words("a.pdf -o new --report taken"),
                    QByteArray("docimport: taken: ") + kTaken);
        const Outcome outcome = place->run(words("a.pdf -o new --report missing/report"));
        QCOMPARE(outcome.status, 1);
        QVERIFY2(outcome.err.startsWith("docimport: missing/report: "), outcome.err.constData());
        QCOMPARE(outcome.err.count('\n'), 1);
        verifyDoes(words("a.pdf -o other --report taken --force"), "1 page result file in other\n");
        QVERIFY(place->read(text("taken")).startsWith("{\n    \"documents\": ["));
    }

    void fullDisk()
    {
        place->write(text("a.pdf"), pages(3));
        const QStringList before = place->entries();
        const Outcome outcome = place->run(words("a.pdf -o new"), limitFileSize(20));
        QCOMPARE(outcome.err, QByteArray("docimport: a.pdf: File too large\n"));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(place->entries(), before);
    }

    void progress()
    {
        place->write(text("a.pdf"), pages(3));
        const Terminal terminal;
        QCOMPARE(place->run(words("a.pdf -o new"), terminal.attach()).status, 0);
        const QByteArray shown = terminal.shown();
        QVERIFY2(shown.startsWith("\ra.pdf: slide 1 of 3"), shown.constData());
        QVERIFY(shown.endsWith("\r"));
    }

    void names_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("folder");
        QTest::newRow("blanks") << text("a b.pdf") << text("new folder");
        QTest::newRow("other letters") << text("日本語.pdf") << text("äöü/ß");
        QTest::newRow("percent signs") << text("100%1%2.pdf") << text("a%2b%1");
        QTest::newRow("colon") << text(":a") << text(":b");
    }
    void names()
    {
        QFETCH(QString, input);
        QFETCH(QString, folder);
        place->write(text("./") + input, pages(1));
        const Outcome outcome = place->run({input, text("-o"), folder});
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.status, 0);
        QVERIFY(QFile::exists(place->path(text("./") + folder + text("/page_0"))));
    }
};

QTEST_GUILESS_MAIN(TestDocimport)

#include "tst_docimport.moc"
