#include "DocpageRun.h"
#include "PageFiles.h"
#include "TinyPictures.h"
#include "emfdeal/EmfDeal.h"

#include <QImage>
#include <QtTest>

#include <fcntl.h>

namespace {

constexpr int kGone = 1000; // of a shape's left edge: it is not on the page

/// The slide of these tests: a red picture of 4 x 2 pixels flies in from the left to 10, 1 on a
/// white page of 20 x 4 pixels and then out to the right.
QByteArray deck(const QByteArray &effects = R"({"shape": 1, "duration": 0.1},
                                         {"shape": 1, "duration": 0.05, "exit": true})")
{
    return QByteArray(R"({"slides": [{"background": "page.png",
                                      "shapes": [{"id": 1, "picture": "red.png", "left": 10, "top": 1}],
                                      "effects": [)") +
           effects + "]}]}";
}

/// The frame of that slide with the picture's left edge at `left`.
QImage frame(int left)
{
    QImage image(20, 4, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int x = qMax(left, 0); x < qMin(left + 4, 20); ++x) {
        image.setPixelColor(x, 1, Qt::red);
        image.setPixelColor(x, 2, Qt::red);
    }
    return image;
}

/// Whether there is text in the middle of the line under picture `index` of a contact sheet of
/// pictures 240 x 48, which has `columns`.
bool hasText(const QImage &sheet, int index, int columns)
{
    const QPoint corner(12 + index % columns * 252, 12 + 48 + index / columns * 82);
    const QImage label = sheet.copy(QRect(corner + QPoint(80, 0), QSize(80, 22)));
    for (int x = 0; x < label.width(); ++x) {
        for (int y = 0; y < label.height(); ++y) {
            if (qGray(label.pixel(x, y)) < 100)
                return true;
        }
    }
    return false;
}

QByteArray animatedPage(const QByteArray &model)
{
    return PageFiles::pageResultFile(3, model);
}

} // namespace

class TestDocpagePlay : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Workplace> work;

    void build(const QByteArray &json, const char *folder = "deck")
    {
        work->write(text("deck.json"), json);
        const Outcome built = work->run(words("build deck.json --force -o") << text(folder));
        QCOMPARE(built.err, QByteArray());
        QCOMPARE(built.status, 0);
    }

    QImage image(const char *name) const
    {
        return QImage(work->path(text(name))).convertToFormat(QImage::Format_RGB32);
    }

    QStringList files(const char *folder) const
    {
        return QDir(work->path(text(folder))).entryList(QDir::Files, QDir::Name);
    }

private Q_SLOTS:
    void init()
    {
        work = std::make_unique<Workplace>();
        work->write(text("page.png"), PageFiles::picture(Qt::white, "PNG", {20, 4}));
        work->write(text("red.png"), PageFiles::picture(Qt::red, "PNG", {4, 2}));
    }

    void cleanup() { work.reset(); }

    void everyFrame()
    {
        build(deck());
        const Outcome played = work->run(words("play deck -o out"));
        QCOMPARE(played.err, QByteArray());
        QCOMPARE(played.out, QByteArray("8 frames in out\n"));
        QCOMPARE(played.status, 0);
        QCOMPARE(files("out"),
                 words("page_0-frame_00000.png page_0-frame_00001.png page_0-frame_00002.png "
                       "page_0-frame_00003.png "
                       "page_0-frame_00004.png page_0-frame_00005.png page_0-frame_00006.png "
                       "page_0-frame_00007.png page_0-sheet.png"));
        QCOMPARE(image("out/page_0-frame_00000.png"), frame(kGone)); // home
        QCOMPARE(image("out/page_0-frame_00001.png"), frame(-4));    // step 1, 0 ms
        QCOMPARE(image("out/page_0-frame_00002.png"), frame(1));     // 40 ms
        QCOMPARE(image("out/page_0-frame_00003.png"), frame(7));     // 80 ms
        QCOMPARE(image("out/page_0-frame_00004.png"), frame(10));    // 100 ms
        QCOMPARE(image("out/page_0-frame_00005.png"), frame(10));    // step 2, 0 ms
        QCOMPARE(image("out/page_0-frame_00006.png"), frame(18));    // 40 ms
        QCOMPARE(image("out/page_0-frame_00007.png"), frame(kGone)); // 50 ms
    }

    void hashes()
    {
        build(deck());
        const Outcome played = work->run(words("play deck -o out --hashes"));
        QCOMPARE(played.err, QByteArray());
        QCOMPARE(played.status, 0);
        const QByteArray empty = "1f34be94c0f6303063808553c7e906fedaf542afe7fc5d52040008ebfbe35038";
        const QByteArray place = "5f1ade5393b7988bfba76010b2b4fed2b279eb388f9f4501703a868260047e00";
        QCOMPARE(played.out, "page 0 step 0 ms 0 size 20x4 sha256 " + empty +
                                 "\npage 0 step 1 ms 0 size 20x4 sha256 " + empty +
                                 "\npage 0 step 1 ms 40 size 20x4 sha256 "
                                 "d558aa7994e93cdeba5eced361ffeaac484eb3b4f5b25ec1d77c98ebf1d71a0c"
                                 "\npage 0 step 1 ms 80 size 20x4 sha256 "
                                 "250b1a181495a7534a9668f6620c94046d9eb611360c7d20d4565b8735e1bf02"
                                 "\npage 0 step 1 ms 100 size 20x4 sha256 " +
                                 place + "\npage 0 step 2 ms 0 size 20x4 sha256 " + place +
                                 "\npage 0 step 2 ms 40 size 20x4 sha256 "
                                 "a5306b2340e54eea4c64e8e470d720c27769e2e783ea4902703c81a5ccb6d02a"
                                 "\npage 0 step 2 ms 50 size 20x4 sha256 " +
                                 empty + "\n");
    }

    void framesPerSecond_data()
    {
        QTest::addColumn<QString>("fps");
        QTest::addColumn<QByteArray>("times"); // of steps 1 and 2
        QTest::newRow("25") << "25" << QByteArray("0 0 40 80 100 0 40 50");
        QTest::newRow("20") << "20" << QByteArray("0 0 50 100 0 50");
        QTest::newRow("30: 33 ms") << "30" << QByteArray("0 0 33 66 99 100 0 33 50");
        QTest::newRow("10") << "10" << QByteArray("0 0 100 0 50");
        QTest::newRow("1") << "1" << QByteArray("0 0 100 0 50");
    }

    void framesPerSecond()
    {
        QFETCH(QString, fps);
        build(deck());
        const Outcome played = work->run(words("play deck -o out --hashes --fps") << fps);
        QCOMPARE(played.status, 0);
        QByteArrayList times;
        for (const QByteArray &line : played.out.split('\n'))
            times += line.split(' ').value(5);
        times.removeLast();
        QTEST(times.join(' '), "times");
    }

    void stepsThatStartByThemselves()
    {
        build(deck(R"({"shape": 1, "trigger": "after", "duration": 0.04},
                      {"shape": 1, "exit": true, "duration": 0})"));
        const Outcome played = work->run(words("play deck -o out"));
        QCOMPARE(played.out, QByteArray("4 frames in out\n"));
        QCOMPARE(image("out/page_0-frame_00000.png"), frame(kGone)); // home
        QCOMPARE(image("out/page_0-frame_00001.png"), frame(-4));    // step 1, 0 ms
        QCOMPARE(image("out/page_0-frame_00002.png"), frame(10));    // 40 ms
        QCOMPARE(image("out/page_0-frame_00003.png"), frame(kGone)); // step 2, which takes no time
    }

    void contactSheet()
    {
        build(deck());
        QCOMPARE(work->run(words("play deck -o out")).status, 0);
        const QImage sheet = image("out/page_0-sheet.png");
        // Three columns and rows of pictures 240 x 48, each with 22 pixels of text and gaps of 12.
        QCOMPARE(sheet.size(), QSize(3 * 252 + 12, 3 * 82 + 12));
        QCOMPARE(sheet.pixelColor(12, 12), QColor(Qt::white));
        QCOMPARE(sheet.pixelColor(11, 11), QColor(0xf2, 0xf3, 0xf5));
        // The third picture: the shape from 12 to 60 of 240 pixels, 12 to 36 of 48.
        QCOMPARE(sheet.pixelColor(12 + 2 * 252 + 36, 12 + 24), QColor(Qt::red));
        QCOMPARE(sheet.pixelColor(12 + 2 * 252 + 36, 12 + 4), QColor(Qt::white));
        QCOMPARE(sheet.pixelColor(12 + 2 * 252 + 100, 12 + 24), QColor(Qt::white));
        // Each of the eight has text in the middle of its line.
        for (int i = 0; i < 9; ++i)
            QCOMPARE(hasText(sheet, i, 3), i < 8);
    }

    void longSheetsAreThinnedOut_data()
    {
        QTest::addColumn<QByteArray>("seconds");
        QTest::addColumn<int>("frames");
        QTest::addColumn<int>("shown");
        QTest::newRow("all") << QByteArray("15.92") << 400 << 400;
        QTest::newRow("every second one") << QByteArray("15.96") << 401 << 201;
        QTest::newRow("every second one, and the last one") << QByteArray("16") << 402 << 202;
    }

    void longSheetsAreThinnedOut()
    {
        QFETCH(QByteArray, seconds);
        QFETCH(int, frames);
        QFETCH(int, shown);
        build(deck("{\"shape\": 1, \"duration\": " + seconds + '}'));
        const Outcome played = work->run(words("play deck -o out"));
        QCOMPARE(played.out, QByteArray::number(frames) + " frames in out\n");
        const QImage sheet = image("out/page_0-sheet.png");
        QCOMPARE(sheet.size(), QSize(10 * 252 + 12, (shown + 9) / 10 * 82 + 12));
        QVERIFY(hasText(sheet, shown - 1, 10));
        if (shown % 10 != 0)
            QVERIFY(!hasText(sheet, shown, 10));
        // The last picture has the shape in its place.
        QCOMPARE(
            sheet.pixelColor(12 + (shown - 1) % 10 * 252 + 144, 12 + (shown - 1) / 10 * 82 + 24),
            QColor(Qt::red));
    }

    void picturesAndSlides()
    {
        build(deck());
        work->write(text("deck/page_1"), PageFiles::pageResultFile(4, TinyPictures::png()));
        work->write(text("deck/page_2"), PageFiles::pageResultFile(2, TinyPictures::jpg()));
        const Outcome played = work->run(words("play deck -o out"));
        QCOMPARE(played.err, QByteArray());
        QCOMPARE(played.out, QByteArray("10 frames in out\n"));
        QImage red(4, 3, QImage::Format_RGB32);
        red.fill(Qt::red);
        QCOMPARE(image("out/page_1-frame_00000.png"), red);
        QCOMPARE(image("out/page_1-sheet.png").size(), QSize(264, 180 + 22 + 12 + 12));
        QCOMPARE(image("out/page_2-frame_00000.png").size(), QSize(2, 2));
        QCOMPARE(files("out").size(), 9 + 2 + 2);

        const Outcome one = work->run(words("play deck -o one --page 2 --hashes"));
        QCOMPARE(one.status, 0);
        // Four pixels c8 c8 c8 ff.
        QCOMPARE(one.out,
                 QByteArray("page 2 step 0 ms 0 size 2x2 sha256 "
                            "00ceca7a2ff9d36dea38a255f622531b9952567fb87dba33100aef27d01d6ec1\n"));
        QCOMPARE(files("one"), words("page_2-frame_00000.png page_2-sheet.png"));
    }

    // A document that is a list keeps its order, and its numbers.
    void fileLists()
    {
        build(deck());
        work->write(text("first"), PageFiles::pageResultFile(4, TinyPictures::png()));
        const Outcome played = work->run(words("play deck/page_0 first -o out"));
        QCOMPARE(played.out, QByteArray("9 frames in out\n"));
        QVERIFY(files("out").contains(text("page_1-frame_00000.png")));
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        const auto row = [](const char *arguments, const char *message) {
            QTest::newRow(arguments) << words(arguments) << QByteArray(message);
        };
        row("play deck -o out --fps 0", "'0' is no number of frames a second from 1 to 1000.");
        row("play deck -o out --fps -1", "'-1' is no number of frames a second from 1 to 1000.");
        row("play deck -o out --fps 1001",
            "'1001' is no number of frames a second from 1 to 1000.");
        row("play deck -o out --fps 2.5", "'2.5' is no number of frames a second from 1 to 1000.");
        row("play deck -o out --page x", "'x' is no page number.");
        row("play deck -o out --page -1", "'-1' is no page number.");
        row("play deck", "No output given, -o DIR is missing.");
        row("play -o out", "No DOCUMENT given.");
        row("render deck -o a.png --step x", "'x' is no step number.");
        row("render deck -o a.png --step 4294967296", "'4294967296' is no step number.");
        row("render deck -o a.png --ms -5", "'-5' is no number of milliseconds.");
    }

    void wrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const Outcome outcome = work->run(arguments);
        QCOMPARE(outcome.status, 2);
        QCOMPARE(outcome.err.split('\n').constFirst(), "docpage: " + message);
        QVERIFY(!QFile::exists(work->path(text("out"))));
    }

    void refusedSlides_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("fault");
        QTest::newRow("too long") << deck(R"({"shape": 1, "duration": 5000})")
                                  << QByteArray("too long: 125002 frames");
        QTest::newRow("no background")
            << QByteArray(R"({"width": 20, "height": 4, "slides": [{}]})")
            << QByteArray("page 0 has no background");
        const auto shape = [](const QByteArray &bytes) {
            return QByteArray(R"({"slides": [{"background": "page.png", "shapes": [
                {"id": 1, "picture": "red.png"},
                {"id": 7, "width": 4, "height": 2, "picture": {"base64": "BYTES"}}]}]})")
                .replace("BYTES", bytes.toBase64());
        };
        const auto background = [](const QByteArray &bytes) {
            return QByteArray(R"({"width": 20, "height": 4,
                                  "slides": [{"background": {"base64": "BYTES"}}]})")
                .replace("BYTES", bytes.toBase64());
        };
        QTest::newRow("no picture as background")
            << background("text") << QByteArray("background: neither a JPG nor a PNG picture");
        QTest::newRow("no picture of a shape")
            << shape("text") << QByteArray("picture of shape 7: neither a JPG nor a PNG picture");
        QTest::newRow("cut picture of a shape")
            << shape(TinyPictures::png().chopped(12))
            << QByteArray("picture of shape 7: PNG picture is truncated");
        QTest::newRow("cut background") << background(TinyPictures::jpg().chopped(4))
                                        << QByteArray("background: JPG picture is truncated");
        QByteArray wrong = TinyPictures::jpg();
        wrong.replace(wrong.size() - 4, 2, hex("ffd0")); // a mark in place of the pixels
        QTest::newRow("background whose pixels are not there")
            << background(wrong) << QByteArray("background: JPG picture is corrupt (picture data)");
        QTest::newRow("another page")
            << QByteArray(R"({"slides": [{"background": "page.png", "pageId": 7}]})")
            << QByteArray("holds no page 0; its pages: 7");
        QTest::newRow("other pages")
            << QByteArray(R"({"files": [{"width": 1, "height": 1, "slides": [
            {"pageId": 11}, {"pageId": 12}, {"pageId": 13}, {"pageId": 14}, {"pageId": 15},
            {"pageId": 16}, {"pageId": 17}, {"pageId": 18}, {"pageId": 19}]}]})")
            << QByteArray("holds no page 0; its pages: 11, 12, 13, 14, "
                          "15, 16, 17, 18, ...");
        QTest::newRow("no pages") << QByteArray(
                                         R"({"files": [{"width": 1, "height": 1, "slides": []}]})")
                                  << QByteArray("holds no page 0; its pages: none");
    }

    void refusedSlides()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, fault);
        build(json);
        Outcome outcome = work->run(words("play deck -o out"));
        QCOMPARE(outcome.err, "docpage: deck/page_0: " + fault + '\n');
        QCOMPARE(outcome.out, QByteArray("0 frames in out\n"));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(files("out"), QStringList());

        if (fault.startsWith("too long"))
            return; // which is nothing to a single frame
        outcome = work->run(words("render deck -o a.png"));
        QCOMPARE(outcome.err, "docpage: deck/page_0: " + fault + '\n');
        QCOMPARE(outcome.status, 1);
        QVERIFY(!QFile::exists(work->path(text("a.png"))));
    }

    // A small file may announce a picture that takes all memory.
    void hugePictures()
    {
        QByteArray huge = TinyPictures::png();
        huge.replace(16, 17, hex("00010000 00010000 0802000000 e3e6a7b4"));
        work->write(text("huge.png"), huge);
        for (const bool isBackground : {false, true}) {
            build(isBackground
                      ? R"({"width": 9, "height": 9, "slides": [{"background": "huge.png"}]})"
                      : R"({"slides": [{"background": "page.png", "shapes": [
                            {"id": 1, "picture": "huge.png", "width": 4, "height": 3}]}]})");
            for (const char *command : {"play deck -o out", "render deck -o a.png"}) {
                const Outcome outcome = work->run(words(command));
                QCOMPARE(outcome.err,
                         "docpage: deck/page_0: " +
                             QByteArray(isBackground ? "background" : "picture of shape 1") +
                             ": picture too large: 65536 x 65536 pixels\n");
                QCOMPARE(outcome.status, 1);
            }
        }
    }

    // Together they take the memory that each of them may take alone.
    void pictureSums()
    {
        build(QByteArray(R"({"slides": [{"background": "page.png", "shapes": [
                             {"id": 1, "width": 1, "height": 1, "picture": {"base64": "HALF"}},
                             {"id": 2, "width": 1, "height": 1, "picture": {"base64": "HALF"}}]}]})")
                  .replace("HALF", QByteArray("P5 8192 16384 255\n").toBase64()));
        for (const char *command : {"play deck -o out", "render deck -o a.png"}) {
            const Outcome outcome = work->run(words(command));
            QCOMPARE(outcome.err, QByteArray("docpage: deck/page_0: pictures too large: 268435536 "
                                             "pixels\n"));
            QCOMPARE(outcome.status, 1);
        }
    }

    void shapesWithoutPicture()
    {
        build(R"({"slides": [{"background": "page.png", "shapes": [
            {"id": 1, "picture": null, "width": 4, "height": 2}]}]})");
        const Outcome played = work->run(words("play deck -o out"));
        QCOMPARE(played.err, QByteArray());
        QCOMPARE(played.out, QByteArray("1 frame in out\n")); // nor has it any effects
        QCOMPARE(image("out/page_0-frame_00000.png"), frame(kGone));
        QCOMPARE(image("out/page_0-sheet.png").size(), QSize(264, 48 + 22 + 12 + 12));
    }

    // They are painted on, and hashed as any other.
    void paletteBackgrounds()
    {
        QImage palette(20, 4, QImage::Format_Indexed8);
        palette.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
        palette.fill(1);
        work->write(text("page.png"), PageFiles::encoded(palette));
        build(deck(R"({"shape": 1, "duration": 0})"));
        const Outcome played = work->run(words("play deck -o out --hashes"));
        QCOMPARE(played.err, QByteArray());
        QCOMPARE(played.out,
                 QByteArray("page 0 step 0 ms 0 size 20x4 sha256 "
                            "1f34be94c0f6303063808553c7e906fedaf542afe7fc5d52040008ebfbe35038\n"
                            "page 0 step 1 ms 0 size 20x4 sha256 "
                            "5f1ade5393b7988bfba76010b2b4fed2b279eb388f9f4501703a868260047e00\n"));
        QCOMPARE(image("out/page_0-frame_00001.png"), frame(10));
    }

    void numbersThatAreNone()
    {
        build(R"({"files": [{"width": "nan", "height": "nan", "slides": [{"background": "page.png",
            "shapes": [{"id": 1, "picture": "red.png", "left": "nan", "top": 1, "width": "nan"}],
            "effects": [{"shape": 1, "duration": "nan"}, {"shape": 1, "duration": "-inf"}]}]}]})");
        const Outcome played = work->run(words("play deck -o out"));
        QCOMPARE(played.err, QByteArray());
        QCOMPARE(played.out, QByteArray("3 frames in out\n"));
        QCOMPARE(image("out/page_0-frame_00000.png"), frame(kGone));
        QCOMPARE(image("out/page_0-frame_00002.png"), frame(0));
    }

    // The thumbnail is a line, but there.
    void flatPages()
    {
        work->write(text("page"),
                    PageFiles::pageResultFile(4, PageFiles::picture(Qt::red, "PNG", {4000, 1})));
        const Outcome played = work->run(words("play page -o out"));
        QCOMPARE(played.err, QByteArray());
        QCOMPARE(image("out/page_0-frame_00000.png").size(), QSize(4000, 1));
        const QImage sheet = image("out/page_0-sheet.png");
        QCOMPARE(sheet.size(), QSize(264, 1 + 22 + 12 + 12));
        QCOMPARE(sheet.pixelColor(12, 12), QColor(Qt::red));
        QCOMPARE(sheet.pixelColor(251, 12), QColor(Qt::red));
    }

    // Each time it is another page, and a deck's file has the slide of one of them.
    void sameFileTwice()
    {
        build(deck());
        work->write(text("red"), PageFiles::pageResultFile(4, TinyPictures::png()));
        Outcome played = work->run(words("play red red -o out"));
        QCOMPARE(played.err, QByteArray());
        QCOMPARE(played.out, QByteArray("2 frames in out\n"));
        QCOMPARE(image("out/page_1-frame_00000.png").size(), QSize(4, 3));
        played = work->run(words("play deck/page_0 deck/page_0 -o deck-out"));
        QCOMPARE(played.err, QByteArray("docpage: deck/page_0: holds no page 1; its pages: 0\n"));
        QCOMPARE(played.out, QByteArray("8 frames in deck-out\n"));
        QCOMPARE(played.status, 1);
    }

    void folderOfTheDocument()
    {
        build(deck());
        QVERIFY(QFile::link(text("deck"), work->path(text("link"))));
        const QStringList before = work->entries();
        for (const char *folder : {"deck", "./deck/", "deck/../deck", "link"}) {
            const Outcome played = work->run(words("play deck --force -o") << text(folder));
            QCOMPARE(played.err,
                     QByteArray("docpage: ") + folder + ": is the folder of the document\n");
            QCOMPARE(played.out, QByteArray());
            QCOMPARE(played.status, 1);
            QCOMPARE(work->entries(), before);
        }
        QCOMPARE(work->run(words("play deck -o deck/frames")).status, 0); // folders are no pages
        QCOMPARE(work->run(words("play deck -o out")).out, QByteArray("8 frames in out\n"));
    }

    void outputIsAFile()
    {
        build(deck());
        work->write(text("out"), "mine");
        const Outcome played = work->run(words("play deck -o out --force"));
        QCOMPARE(played.err, QByteArray("docpage: out: Not a directory\n"));
        QCOMPARE(played.out, QByteArray());
        QCOMPARE(played.status, 1);
        QCOMPARE(work->read(text("out")), QByteArray("mine"));
    }

    void fullDisk()
    {
        build(deck());
        const Outcome played = work->run(words("play deck -o out"), limitFileSize(20));
        QCOMPARE(played.err, QByteArray("docpage: out/page_0-frame_00000.png: File too large\n"));
        QCOMPARE(played.out, QByteArray("0 frames in out\n"));
        QCOMPARE(played.status, 1);
        QCOMPARE(files("out"), QStringList());
    }

    // Nobody would see the hashes of further frames.
    void standardOutputIsFull()
    {
        build(deck());
        work->write(text("deck/page_1"), PageFiles::pageResultFile(4, TinyPictures::png()));
        const Outcome played = work->run(words("play deck -o out --hashes"), [] {
            ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO);
        });
        QCOMPARE(played.err, QByteArray("docpage: standard output: No space left on device\n"));
        QCOMPARE(played.status, 1);
        QCOMPARE(files("out"), words("page_0-frame_00000.png"));
    }

    void otherPagesAreStillPlayed()
    {
        build(deck());
        work->write(text("deck/page_1"), animatedPage("no model"));
        work->write(text("deck/page_2"), PageFiles::pageResultFile(4, TinyPictures::png()));
        const Outcome played = work->run(words("play deck -o out"));
        QCOMPARE(played.err, QByteArray("docpage: deck/page_1: the slide animation data is "
                                        "truncated or corrupt\n"));
        QCOMPARE(played.out, QByteArray("9 frames in out\n"));
        QCOMPARE(played.status, 1);
    }

    void existingFilesAreKept()
    {
        build(deck());
        QVERIFY(QDir(work->path(text("."))).mkdir(text("out")));
        work->write(text("out/page_0-sheet.png"), "mine");
        Outcome outcome = work->run(words("play deck -o out"));
        QCOMPARE(outcome.err, QByteArray("docpage: out/page_0-sheet.png: already exists; use "
                                         "--force to replace it\n"));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(files("out"), QStringList(text("page_0-sheet.png")));
        QCOMPARE(work->read(text("out/page_0-sheet.png")), QByteArray("mine"));

        outcome = work->run(words("play deck -o out --force"));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(files("out").size(), 9);
        QCOMPARE(image("out/page_0-sheet.png").size(), QSize(768, 258));
    }

    void inputsAreKept()
    {
        QVERIFY(QDir(work->path(text("."))).mkdir(text("out")));
        const QByteArray page = PageFiles::pageResultFile(4, TinyPictures::png());
        for (const char *name : {"page_0-frame_00000.png", "page_0-sheet.png"}) {
            const QString file = text("out/") + text(name);
            work->write(file, page);
            const Outcome outcome = work->run(words("play --force -o out") << file);
            QCOMPARE(outcome.err, "docpage: " + file.toUtf8() + ": would replace an input\n");
            QCOMPARE(outcome.status, 1);
            QCOMPARE(files("out"), QStringList(text(name)));
            QCOMPARE(work->read(file), page);
            QVERIFY(QFile::remove(work->path(file)));
        }
    }

    void pagesOutOfRange()
    {
        build(deck());
        for (const char *page : {"1", "4294967295"}) {
            for (const char *command : {"play deck -o out --page", "render deck -o a.png --page"}) {
                const Outcome outcome = work->run(words(command) << text(page));
                QCOMPARE(outcome.err, QByteArray("docpage: deck: page ") + page +
                                          " is out of range, the document has 1 page\n");
                QCOMPARE(outcome.status, 1);
            }
        }
        QVERIFY(!QFile::exists(work->path(text("out"))));
    }

    void renderPositions_data()
    {
        QTest::addColumn<QString>("options");
        QTest::addColumn<int>("left");
        const auto row = [](const char *options, int left) {
            QTest::newRow(options) << text(options) << left;
        };
        row("", kGone);
        row("--step 0", kGone);
        row("--ms 100", kGone); // home has no time
        row("--step 1", -4);
        row("--step 1 --ms 1", -3);
        row("--step 1 --ms 40", 1);
        row("--step 1 --ms 99", 9);
        row("--step 1 --ms 100", 10);
        row("--step 1 --ms 4294967295", 10);
        row("--step 2", 10);
        row("--step 2 --ms 25", 15);
        row("--step 2 --ms 50", kGone);
        row("--step 3 --ms 25", 15); // there are two
        row("--step 4294967295 --ms 4294967295", kGone);
    }

    void renderPositions()
    {
        QFETCH(QString, options);
        QFETCH(int, left);
        build(deck());
        const Outcome outcome = work->run(words("render deck -o a.png") +
                                          options.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(image("a.png"), frame(left));
    }

    // Step and time are nothing to a picture.
    void renderPictures()
    {
        work->write(text("page"), PageFiles::pageResultFile(4, TinyPictures::png()));
        const Outcome outcome = work->run(words("render page -o a.png --step 3 --ms 7"));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(image("a.png").size(), QSize(4, 3));
    }
};

QTEST_GUILESS_MAIN(TestDocpagePlay)
#include "tst_docpage_play.moc"
