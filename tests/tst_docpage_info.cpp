#include "DocpageTest.h"

/// docpage info and docpage unwrap.
class TestDocpageInfo : public DocpagePagesTest
{
    Q_OBJECT

private Q_SLOTS:
    void info_data();
    void info();
    void infoOfADeck();
    void infoOfABrokenPicture();
    void infoJson();
    void infoHandlesOthers();
    void unwrap_data();
    void unwrap();
};

void TestDocpageInfo::info_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("PNG") << pngPage() << QByteArray("PNG picture, 73 bytes, 4 x 3 pixels");
    QTest::newRow("JPG") << jpgPage() << QByteArray("JPG picture, 160 bytes, 2 x 2 pixels");
    QTest::newRow("slide animation data")
        << slidePage()
        << QByteArray("slide animation data, 28 bytes, 640 x 480, 0 pages, 0 shapes, 0 effects");
    QTest::newRow("bytes after the picture")
        << pngPage() + "tail"
        << QByteArray("PNG picture, 73 bytes, 4 x 3 pixels, followed by 4 "
                      "bytes that are ignored");
    QTest::newRow("a byte after slide animation data")
        << slidePage() + '\0'
        << QByteArray("slide animation data, 28 bytes, 640 x 480, 0 pages, 0 shapes, 0 effects, "
                      "followed by 1 byte that is ignored");
    QTest::newRow("PNG announced as JPG: the size is told all the same")
        << hex("88 88 88 88 01 01 02 00 00 00 49 00 00 00") + TinyPictures::png()
        << QByteArray("JPG picture, 73 bytes, 4 x 3 pixels");
}

void TestDocpageInfo::info()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, line);
    place->write(text("page"), content);
    const QStringList before = place->entries();
    verifyDoes(words("info page"), "page: " + line + '\n');
    QCOMPARE(place->entries(), before);
}

void TestDocpageInfo::infoOfADeck()
{
    place->write(text("deck.json"), R"({"files": [{"width": 640, "height": 360.5, "slides": [
  {"shapes": [{"id": 1, "picture": "red.png"}],
   "effects": [{"shape": 1, "trigger": "with", "duration": 5000000}, {"shape": 1}]},
  {"pageId": 7, "shapes": [{"id": 1, "picture": "red.png"}]}]}]})");
    verifyDoes(words("build deck.json -o new"), "1 page result file in new\n");
    verifyDoes(words("info new/page_0"),
               "new/page_0: slide animation data, 434 bytes, 640 x 360.5, 2 pages, 2 shapes, "
               "2 effects\n"
               "  page 0, step 1: starts by itself, 4294967295 ms\n"
               "  page 0, step 2: on click, 500 ms\n");
    verifyDoes(words("info --json new/page_0"), R"([
    {
        "bytesAfterModel": 0,
        "file": "new/page_0",
        "format": "slide-animation",
        "formatCode": 3,
        "pageSize": {
            "height": 360.5,
            "width": 640
        },
        "pages": [
            {
                "effects": 2,
                "pageId": 0,
                "shapes": 1,
                "steps": [
                    {
                        "duration": 4294967295,
                        "number": 1,
                        "trigger": "auto"
                    },
                    {
                        "duration": 500,
                        "number": 2,
                        "trigger": "click"
                    }
                ]
            },
            {
                "effects": 0,
                "pageId": 7,
                "shapes": 1,
                "steps": [
                ]
            }
        ],
        "payloadSize": 434,
        "trailingBytes": 0,
        "version": "0x0101"
    }
]
)");
}

// What is known is told all the same, but the call has failed.
void TestDocpageInfo::infoOfABrokenPicture()
{
    place->write(text("cut"), jpgPageOf(TinyPictures::jpg().chopped(4)));
    place->write(text("text"), jpgPageOf("text"));
    const Outcome outcome = place->run(words("info cut text"));
    QCOMPARE(outcome.out, QByteArray("cut: JPG picture, 156 bytes, 2 x 2 pixels\n"
                                     "text: JPG picture, 4 bytes, size in pixels unreadable\n"));
    QCOMPARE(outcome.err, QByteArray("docpage: cut: JPG picture is truncated\n"
                                     "docpage: text: neither a JPG nor a PNG picture\n"));
    QCOMPARE(outcome.status, 1);
}

void TestDocpageInfo::infoJson()
{
    place->write(text("page"), jpgPageOf("text") + "tail");
    const Outcome outcome = place->run(words("info png_page jpg_page gone slide_page page --json"));
    QCOMPARE(outcome.err, QByteArray("docpage: gone: No such file or directory\n"
                                     "docpage: page: neither a JPG nor a PNG picture\n"));
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.out, QByteArray(R"([
    {
        "file": "png_page",
        "format": "png",
        "formatCode": 4,
        "payloadSize": 73,
        "picture": {
            "height": 3,
            "width": 4
        },
        "trailingBytes": 0,
        "version": "0x0101"
    },
    {
        "file": "jpg_page",
        "format": "jpg",
        "formatCode": 2,
        "payloadSize": 160,
        "picture": {
            "height": 2,
            "width": 2
        },
        "trailingBytes": 0,
        "version": "0x0101"
    },
    {
        "error": "No such file or directory",
        "file": "gone"
    },
    {
        "bytesAfterModel": 0,
        "file": "slide_page",
        "format": "slide-animation",
        "formatCode": 3,
        "pageSize": {
            "height": 480,
            "width": 640
        },
        "pages": [
        ],
        "payloadSize": 28,
        "trailingBytes": 0,
        "version": "0x0101"
    },
    {
        "error": "neither a JPG nor a PNG picture",
        "file": "page",
        "format": "jpg",
        "formatCode": 2,
        "payloadSize": 4,
        "picture": null,
        "trailingBytes": 4,
        "version": "0x0101"
    }
]
)"));
}

void TestDocpageInfo::infoHandlesOthers()
{
    const Outcome outcome = place->run(words("info gone png_page red.png slide_page"));
    QCOMPARE(outcome.err,
             QByteArray("docpage: gone: No such file or directory\n"
                        "docpage: red.png: not a page result file: it does not begin with "
                        "88 88 88 88\n"));
    QCOMPARE(outcome.out, QByteArray("png_page: PNG picture, 73 bytes, 4 x 3 pixels\n"
                                     "slide_page: slide animation data, 28 bytes, 640 x 480, "
                                     "0 pages, 0 shapes, 0 effects\n"));
    QCOMPARE(outcome.status, 1);
}

void TestDocpageInfo::unwrap_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("PNG") << pngPage() << TinyPictures::png();
    QTest::newRow("JPG") << jpgPage() << TinyPictures::jpg();
    QTest::newRow("slide animation data") << slidePage() << slideModel();
    QTest::newRow("broken slide animation data")
        << hex("88 88 88 88 01 01 03 00 00 00 01 00 00 00 00") << QByteArray(1, '\0');
    QTest::newRow("broken picture") << jpgPageOf("text") << QByteArray("text");
    QTest::newRow("without the bytes after it") << slidePage() + "tail" << slideModel();
    QTest::newRow("bytes of all kinds")
        << hex("88 88 88 88 01 01 04 00 00 00 05 00 00 00 00 ff 0d 0a 1a") << hex("00 ff 0d 0a 1a");
}

void TestDocpageInfo::unwrap()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, payload);
    place->write(text("page"), content);
    const QStringList before = place->entries();
    verifyDoes(words("unwrap page -o new"));
    QCOMPARE(place->read(text("new")), payload);
    QVERIFY(QFile::remove(place->path(text("new"))));
    QCOMPARE(place->entries(), before);
}

QTEST_GUILESS_MAIN(TestDocpageInfo)
#include "tst_docpage_info.moc"
