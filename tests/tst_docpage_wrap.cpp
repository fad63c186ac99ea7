#include "DocpageTest.h"
#include "Terminal.h"

#include <QDir>
#include <QElapsedTimer>

/// docpage wrap.
class TestDocpageWrap : public DocpagePagesTest
{
    Q_OBJECT

private Q_SLOTS:
    void wrap();
    void wrapGoesByContent();
    void wrapKeepsNumbersOfFailedPicturesFree();
    void wrapRefuses_data();
    void wrapRefuses();
    void wrapRefusesTooLarge();
    void wrapMakesFolders_data();
    void wrapMakesFolders();
    void wrapFolderFails_data();
    void wrapFolderFails();
    void wrapOverItsInputs();
    void progressOnTerminal_data();
    void progressOnTerminal();
    void progressIsRateLimited();
};

void TestDocpageWrap::wrap()
{
    const QStringList before = place->entries();
    verifyDoes(words("wrap red.png grey.jpg red.png -o new"), "3 page result files in new\n");
    QCOMPARE(place->read(text("new/page_0")), pngPage());
    QCOMPARE(place->read(text("new/page_1")), jpgPage());
    QCOMPARE(place->read(text("new/page_2")), pngPage());
    for (const char *made : {"new/page_0", "new/page_1", "new/page_2"})
        QVERIFY(QFile::remove(place->path(text(made))));
    QVERIFY(QDir(place->path({})).rmdir(text("new"))); // nothing else is in it
    QCOMPARE(place->entries(), before);                // and the inputs are as they were
}

void TestDocpageWrap::wrapGoesByContent()
{
    place->write(text("named.jpg"), TinyPictures::png());
    place->write(text("unnamed"), TinyPictures::jpg() + "more");
    verifyDoes(words("wrap named.jpg unnamed -o new"), "2 page result files in new\n");
    QCOMPARE(place->read(text("new/page_0")), pngPage());
    QCOMPARE(place->read(text("new/page_1")), // what follows the picture is kept
             hex("88 88 88 88 01 01 02 00 00 00 a4 00 00 00") + TinyPictures::jpg() + "more");
}

void TestDocpageWrap::wrapKeepsNumbersOfFailedPicturesFree()
{
    const Outcome outcome = place->run(words("wrap missing red.png png_page grey.jpg gone -o new"));
    QCOMPARE(outcome.err, QByteArray("docpage: missing: No such file or directory\n"
                                     "docpage: png_page: neither a JPG nor a PNG picture\n"
                                     "docpage: gone: No such file or directory\n"));
    QCOMPARE(outcome.out, QByteArray("2 page result files in new\n"));
    QCOMPARE(outcome.status, 1);
    QCOMPARE(QDir(place->path(text("new")))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             words("page_1 page_3"));
    QCOMPARE(place->read(text("new/page_1")), pngPage());
    QCOMPARE(place->read(text("new/page_3")), jpgPage());
}

void TestDocpageWrap::wrapRefuses_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("fault");

    QByteArray changed = TinyPictures::png();
    changed[45] = 'c'; // among the pixels
    QTest::newRow("text") << QByteArray("text") << QByteArray("neither a JPG nor a PNG picture");
    QTest::newRow("PNG cut short")
        << TinyPictures::png().chopped(1) << QByteArray("PNG picture is truncated");
    QTest::newRow("JPG cut short")
        << TinyPictures::jpg().chopped(1) << QByteArray("JPG picture is truncated");
    QTest::newRow("PNG with a changed byte")
        << changed << QByteArray("PNG picture is corrupt (checksum of chunk IDAT)");
}

void TestDocpageWrap::wrapRefuses()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, fault);
    place->write(text("bad"), content);
    verifyFails(words("wrap bad -o new"), 1, "docpage: bad: " + fault + '\n',
                "0 page result files in new\n");
}

void TestDocpageWrap::wrapRefusesTooLarge()
{
    place->write(text("large"), TinyPictures::jpg());
    QVERIFY(QFile::resize(place->path(text("large")), Q_INT64_C(2147483648)));
    const Outcome outcome = place->run(words("wrap large red.png -o new"));
    QCOMPARE(outcome.err, QByteArray("docpage: large: too large: 2147483648 bytes\n"));
    QCOMPARE(outcome.out, QByteArray("1 page result file in new\n"));
    QCOMPARE(outcome.status, 1);
    QCOMPARE(place->read(text("new/page_1")), pngPage());
}

void TestDocpageWrap::wrapMakesFolders_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("new") << text("new");
    QTest::newRow("with a slash") << text("new/");
    QTest::newRow("several") << text("new/and/newer");
    QTest::newRow("existing") << text(".");
}

void TestDocpageWrap::wrapMakesFolders()
{
    QFETCH(QString, folder);
    verifyDoes({text("wrap"), text("red.png"), text("-o"), folder},
               "1 page result file in " + folder.toUtf8() + '\n');
    QCOMPARE(place->read(folder + text("/page_0")), pngPage());
}

void TestDocpageWrap::wrapFolderFails_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("file") << text("png_page") << QByteArray("Not a directory");
    QTest::newRow("below a file") << text("png_page/new") << QByteArray("Not a directory");
    QTest::newRow("name of 256 bytes")
        << QString(256, QLatin1Char('n')) << QByteArray("File name too long");
    QTest::newRow("in the kernel's folder")
        << text("/proc/new") << QByteArray("No such file or directory");
    if (!isRoot())
        QTest::newRow("in a folder that cannot be written")
            << text("/new") << QByteArray("Permission denied");
}

void TestDocpageWrap::wrapFolderFails()
{
    QFETCH(QString, folder);
    QFETCH(QByteArray, fault);
    verifyFails({text("wrap"), text("red.png"), text("grey.jpg"), text("-o"), folder}, 1,
                "docpage: " + folder.toUtf8() + ": " + fault + '\n');
}

void TestDocpageWrap::wrapOverItsInputs()
{
    QVERIFY(QDir(place->path({})).mkdir(text("pictures")));
    place->write(text("pictures/page_1"), TinyPictures::png());
    const Outcome outcome =
        place->run(words("wrap pictures/page_1 grey.jpg grey.jpg -o pictures --force"));
    QCOMPARE(outcome.err, QByteArray("docpage: pictures/page_1: would replace an input\n"));
    QCOMPARE(outcome.out, QByteArray("2 page result files in pictures\n"));
    QCOMPARE(outcome.status, 1);
    QCOMPARE(place->read(text("pictures/page_0")), pngPage());
    QCOMPARE(place->read(text("pictures/page_1")), TinyPictures::png());
    QCOMPARE(place->read(text("pictures/page_2")), jpgPage());
}

void TestDocpageWrap::progressOnTerminal_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("done: shown and taken away")
        << words("wrap red.png -o new") << QByteArray("\rpicture 1 of 1\r              \r");
    QTest::newRow("failed: taken away before the line")
        << words("wrap gone -o new")
        << QByteArray("\rpicture 1 of 1\r              \r"
                      "docpage: gone: No such file or directory\r\n");
    QTest::newRow("wrong usage: none") << words("wrap -o new")
                                       << QByteArray("docpage: No PICTURE given.\r\n"
                                                     "Try 'docpage wrap --help'.\r\n");
}

void TestDocpageWrap::progressOnTerminal()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, shown);
    const Terminal terminal;
    place->run(arguments, terminal.attach());
    QCOMPARE(terminal.shown(), shown);
}

void TestDocpageWrap::progressIsRateLimited()
{
    const Terminal terminal;
    QStringList arguments = words("wrap -o new");
    for (int i = 0; i < 200; ++i)
        arguments << text("red.png");
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(place->run(arguments, terminal.attach()).status, 0);
    const QByteArray shown = terminal.shown();
    QVERIFY(shown.startsWith("\rpicture 1 of 200\r"));
    QVERIFY(shown.endsWith(" \r"));
    QVERIFY(shown.count("picture") <= 1 + timer.elapsed() / 100);
}

QTEST_GUILESS_MAIN(TestDocpageWrap)
#include "tst_docpage_wrap.moc"
