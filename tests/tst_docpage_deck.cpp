#include "DocpageTest.h"
#include "PlainModel.h"
#include "tools/docpage/deck/SlideModel.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <cstring>

namespace {

// Values of all kinds, the odd ones more often than they would be met.
class Dice
{
public:
    explicit Dice(quint32 seed)
        : m_generator(seed)
    {
    }

    int upTo(int most) { return m_generator.bounded(most + 1); }

    template <typename Integer>
    void set(Integer &integer)
    {
        integer = upTo(2) == 0 ? static_cast<Integer>(upTo(2) - 1)
                               : static_cast<Integer>(m_generator.generate());
    }

    void set(float &number) { number = anyNumber(); }
    void set(QByteArray &bytes) { bytes = anyBytes(); }

private:
    float anyNumber()
    {
        static constexpr quint32 kOdd[] = {
            0x00000000, 0x80000000, 0x7F800000, 0xFF800000, 0x7FC00000, 0xFFC00000, 0x7FC12345,
            0x00000001, 0x807FFFFF, 0x00800000, 0x7F7FFFFF, 0xFF7FFFFF, 0x3DCCCCCD, 0x4B7FFFFF};
        switch (upTo(3)) {
        case 0:
            return static_cast<float>(upTo(20000)) / 8;
        case 1:
            return ofBits(kOdd[upTo(int(std::size(kOdd)) - 1)]);
        default:
            return ofBits(m_generator.generate());
        }
    }

    QByteArray anyBytes()
    {
        switch (upTo(4)) {
        case 0:
            return {};
        case 1:
            return "";
        case 2:
            return TinyPictures::png();
        case 3:
            return TinyPictures::jpg();
        default:
            QByteArray bytes(1 + upTo(40), '\0');
            for (char &byte : bytes)
                set(byte);
            return bytes;
        }
    }

    static float ofBits(quint32 bits)
    {
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    QRandomGenerator m_generator;
};

template <typename Object>
void fillFields(Object &object, Dice &dice)
{
    PlainModel::eachField(object, [&dice](const char *, auto &field) { dice.set(field); });
}

void fill(PPT_Page &page, Dice &dice)
{
    dice.set(page.pageImage);
    if (dice.upTo(1) == 0)
        fillFields(page.transition, dice);
    for (int i = dice.upTo(4); i > 0; --i) {
        page.shapes.push_back(new PPT_Shape);
        fillFields(*page.shapes.back(), dice);
    }
    for (int i = dice.upTo(4); i > 0; --i) {
        page.effects.push_back(new PPT_Effect);
        fillFields(*page.effects.back(), dice);
        page.effects.back()->timing.triggerType = static_cast<qint8>(dice.upTo(5) - 1);
    }
}

// One page of the number `number`, or any number of pages.
QByteArray anyModel(Dice &dice, int number, bool isPlain)
{
    SlideModel model;
    PPT_FileHead &head = model.data.head;
    if (isPlain) {
        head.width = 0.1F;
        head.height = 720;
    } else {
        dice.set(head.width);
        dice.set(head.height);
    }
    for (int i = isPlain ? 1 : dice.upTo(3); i > 0; --i) {
        auto id = static_cast<quint16>(number);
        if (!isPlain)
            dice.set(id);
        PPT_Page *&page = model.data.pages[id];
        if (page)
            continue;
        page = new PPT_Page;
        page->pageId = id;
        fill(*page, dice);
    }
    return model.payload();
}

} // namespace

/// Descriptions of animated decks: docpage build, and that it undoes docpage model.
class TestDocpageDeck : public DocpageTest
{
    Q_OBJECT

private Q_SLOTS:
    void golden();
    void defaults();
    void effectNumbers();
    void names();
    void wrongDeck_data();
    void wrongDeck();
    void wrongDeckOfOddSize();
    void lastOfTwoKeysCounts();
    void bitsOfFloats();
    void tooManySlides();
    void tooLarge();
    void keysAreTheSchemas();
    void oneFileOfManySlides();
    void picturesAreRelativeToTheDeck();
    void picturesAreRelativeToALinkToTheDeck();
    void picturesWithColon();
    void existingFilesStay();
    void inputsStay();
    void otherPagesStay();
    void fullDisk();

    void roundTrip_data();
    void roundTrip();
};

void TestDocpageDeck::golden()
{
    place->write(text("deck.json"), R"({
  "width": 640, "height": 480.5,
  "slides": [
    {},
    {
      "background": {"base64": "AQID"},
      "transition": {"advanceOnClick": true, "advanceOnTime": 2, "advanceTime": 1.5,
                     "entryEffect": 258, "hidden": false, "loopSoundUntilNext": -2},
      "shapes": [{"id": 7, "picture": {"base64": "BAU="},
                  "left": 1, "top": 2, "width": 3, "height": 4}],
      "effects": [{"shape": 7, "exit": true, "trigger": "after", "duration": 0.1,
                   "effectNo": -2, "effectParamA": 3, "effectParamB": 4, "accelerate": 1,
                   "autoReverse": 1, "decelerate": 2, "timingF5": 5, "timingB6": 6,
                   "timingF7": 7, "timingB8": 8, "timingB9": 9, "timingB10": 10,
                   "timingB11": 11, "timingF12": 12}]
    }
  ]
})");
    verifyDoes(words("build deck.json -o new"), "2 page result files in new\n");
    const QByteArray head = "50 54 41 4d 00 00 00 02 " // magic, version
                            "40 84 00 00 00 00 00 00 " // width
                            "40 7e 08 00 00 00 00 00 " // height
                            "00 00 00 01 ";            // pages
    QCOMPARE(place->read(text("new/page_0")).toHex(' '),
             hex("88 88 88 88 01 01 03 00 00 00 38 00 00 00 " + head +
                 "00 00 ff ff ff ff "                         // number, no image
                 "00 00 00 00 00 00 00 00 00 00 00 00 00 00 " // transition
                 "00 00 00 00 00 00 00 00")                   // shapes, effects
                 .toHex(' '));
    QCOMPARE(place->read(text("new/page_1")).toHex(' '),
             hex("88 88 88 88 01 01 03 00 00 00 a3 00 00 00 " + head +
                 "00 01 00 00 00 03 01 02 03 "                      // number, image
                 "ff 02 3f f8 00 00 00 00 00 00 01 02 00 fe "       // transition
                 "00 00 00 01 00 07 "                               // shapes, id
                 "3f f0 00 00 00 00 00 00 40 00 00 00 00 00 00 00 " // left, top
                 "40 08 00 00 00 00 00 00 40 10 00 00 00 00 00 00 " // width, height
                 "00 00 00 02 04 05 "                               // picture
                 "00 00 00 01 ff fe 00 07 00 03 00 04 ff " // effects, the fields up to exit
                 "3f f0 00 00 00 00 00 00 01 "             // accelerate, autoReverse
                 "40 00 00 00 00 00 00 00 "                // decelerate
                 "3f b9 99 99 a0 00 00 00 "                // duration
                 "40 14 00 00 00 00 00 00 06 "             // timingF5, timingB6
                 "40 1c 00 00 00 00 00 00 08 09 0a 0b "    // timingF7, timingB8 to B11
                 "40 28 00 00 00 00 00 00 03")             // timingF12, trigger
                 .toHex(' '));
}

void TestDocpageDeck::defaults()
{
    place->write(text("deck.json"), R"({
  "$schema": "anything",
  "slides": [
    {"background": null},
    {"background": "red.png",
     "shapes": [{"id": 1, "picture": "grey.jpg"},
                {"id": 2, "picture": "grey.jpg", "width": 9},
                {"id": 3, "picture": "grey.jpg", "top": -1, "height": 9}],
     "effects": [{"shape": 1}],
     "transition": {}}
  ]
})");
    verifyDoes(words("build deck.json -o new"), "2 page result files in new\n");
    verifyDoes(words("model new/page_0 new/page_1"),
               R"(new/page_0: 4 x 3, 1 page, 0 shapes, 0 effects
  page 0
    background: none
new/page_1: 4 x 3, 1 page, 3 shapes, 1 effect
  page 1
    background: 73 bytes, 4 x 3 pixels
    shape 1: at 0, 0, size 2 x 2; picture: 160 bytes, 2 x 2 pixels
    shape 2: at 0, 0, size 9 x 2; picture: 160 bytes, 2 x 2 pixels
    shape 3: at 0, -1, size 2 x 9; picture: 160 bytes, 2 x 2 pixels
    effect 1 of shape 1: on click, 0.5 s
)");
}

// A shape with several effects waits for the one with the lowest number, which has to be the next.
void TestDocpageDeck::effectNumbers()
{
    place->write(text("deck.json"), R"({"width": 1, "height": 1, "slides": [
        {"effects": [{"shape": 1}, {"shape": 1, "effectNo": 0}, {"shape": 2}]},
        {"effects": [{"shape": 3}]}]})");
    verifyDoes(words("build deck.json -o new"), "2 page result files in new\n");
    verifyDoes(words("model new/page_0 new/page_1"),
               R"(new/page_0: 1 x 1, 1 page, 0 shapes, 3 effects
  page 0
    background: none
    effect 1 of shape 1 (not there): on click, 0.5 s
    effect 0 of shape 1 (not there): on click, 0.5 s
    effect 3 of shape 2 (not there): on click, 0.5 s
new/page_1: 1 x 1, 1 page, 0 shapes, 1 effect
  page 1
    background: none
    effect 1 of shape 3 (not there): on click, 0.5 s
)");

    // Unsigned, and none is higher than 65535, which is -1.
    const QByteArray effects = QByteArray(R"({"shape": 1},)").repeated(65536);
    place->write(text("deck.json"), R"({"width": 1, "height": 1, "slides": [{"effects": [)" +
                                        effects + R"({"shape": 1}]}]})");
    verifyDoes(words("build deck.json -o many"), "1 page result file in many\n");
    const QByteArray page = place->read(text("many/page_0"));
    const auto numberOf = [&page](int number) {
        constexpr int kFirst = 14 + 28 + 28; // after the headers, and the page up to its effects
        return page.mid(kFirst + 64 * (number - 1), 2).toHex();
    };
    QCOMPARE(numberOf(1), QByteArray("0001"));
    QCOMPARE(numberOf(32767), QByteArray("7fff"));
    QCOMPARE(numberOf(32768), QByteArray("8000"));
    QCOMPARE(numberOf(65534), QByteArray("fffe"));
    QCOMPARE(numberOf(65535), QByteArray("ffff"));
    QCOMPARE(numberOf(65536), QByteArray("ffff"));
    QCOMPARE(numberOf(65537), QByteArray("ffff"));
}

void TestDocpageDeck::names()
{
    const QString umlaut = text("Übergröße 第一.png");
    place->write(umlaut, TinyPictures::png());
    place->write(text("deck.json"),
                 "\xEF\xBB\xBF{\"slides\":[{\"background\":\"" + umlaut.toUtf8() + "\"}]}");
    verifyDoes(words("build deck.json -o new"), "1 page result file in new\n");
}

void TestDocpageDeck::wrongDeck_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("fault");

    const auto row = [](const char *json, const QByteArray &fault) {
        QTest::newRow(json) << QByteArray(json) << fault;
    };
    const auto slideRow = [](const char *slide, const QByteArray &fault) {
        QTest::newRow(slide) << QByteArray(R"({"width": 1, "height": 1, "slides": [{}, )") + slide +
                                    "]}"
                             << "slides[1]" + fault;
    };
    const QByteArray noFloat =
        R"(must be a number from -3.4028235e+38 to 3.4028235e+38, "nan", "inf", "-inf", "-0" or )"
        R"(bits as "0xffc00001", not )";
    const QByteArray noUnsigned = "must be a whole number from 0 to 65535, not ";
    const QByteArray noSigned = "must be a whole number from -32768 to 32767, not ";
    const QByteArray noFlag = "must be true, false or a whole number from -128 to 127, not ";
    const QByteArray noTrigger =
        R"(must be "click", "with", "after" or a whole number from -128 to 127, not )";
    const QByteArray noPicture = "must be a file name, an object with the key base64 or null, not ";

    row("{\n \"slides\": [\n  \xC3\xA4", "line 3, column 3: illegal number");
    row("{\"\xC3\xA4\": ?}", "line 1, column 7: illegal number");
    row("{}\n{}", "line 2, column 1: garbage at the end of the document");
    row("[]", "must be an object, not an array");
    row(R"({"": 1})", "\"\": unknown key; the keys here are $schema, width, height, slides");
    row(R"({"slides\u0000": []})",
        "slides\\u0000: unknown key; the keys here are $schema, width, height, slides");
    row(R"({"key of 41 characters, which is one too many": 1})",
        "key of 41 characters, which is one too m...: unknown key; the keys here are $schema, "
        "width, height, slides");
    row(R"({"key of 40 characters, which is not long.": 1})",
        "key of 40 characters, which is not long.: unknown key; the keys here are $schema, "
        "width, height, slides");
    row("{\"key whose 40th character needs two, so \xF0\x9F\x93\x84\": 1}",
        "key whose 40th character needs two, so ...: unknown key; the keys here are $schema, "
        "width, height, slides");
    row("{}", "slides: missing");
    row(R"({"slide": []})", "slide: unknown key; the keys here are $schema, width, height, slides");
    row(R"({"slides": 1})", "slides: must be an array, not 1");
    row(R"({"slides": []})", "slides: must not be empty");
    row(R"({"slides": [{}]})", "width: missing, and there is no background to take it from");
    row(R"({"width": 1, "slides": [{"background": null}]})",
        "height: missing, and there is no background to take it from");
    row(R"({"width": 1, "slides": [{"background": {"base64": "AAAA"}}]})",
        "height: missing, and the size of the background is unreadable");
    row(R"({"width": "1", "height": 1, "slides": [{}]})", "width: " + noFloat + "\"1\"");
    row(R"({"width": 1, "height": 1e39, "slides": [{}]})", "height: " + noFloat + "1e+39");
    row(R"({"width": 3.4028236e38, "height": 1, "slides": [{}]})",
        "width: " + noFloat + "3.4028236e+38");
    row(R"({"width": 3.41e38, "height": 1, "slides": [{}]})", "width: " + noFloat + "3.41e+38");
    row(R"({"width": 1, "height": -3.41e38, "slides": [{}]})", "height: " + noFloat + "-3.41e+38");
    row(R"({"width": 1, "height": "0xffc0000", "slides": [{}]})",
        "height: " + noFloat + "\"0xffc0000\"");
    row(R"({"width": 1, "height": "0xffc00001\n", "slides": [{}]})",
        "height: " + noFloat + R"("0xffc00001\n")");
    row(R"({"files": [], "slides": []})", "slides: unknown key; the keys here are $schema, files");
    row(R"({"files": []})", "files: must not be empty");
    row(R"({"files": [{"slides": []}]})",
        "files[0].width: missing, and there is no background to take it from");
    row(R"({"files": [{"width": 1, "height": 1, "slides": [{"pageId": 1}, {}]}]})",
        "files[0].slides[1].pageId: another slide of the file has the number 1, too");
    row(R"({"files": [{"slides": [{}]}, {"slide": []}]})",
        "files[0].width: missing, and there is no background to take it from");
    row(R"({"files": [{"width": 1, "height": 1, "slides": []}, {"slide": []}]})",
        "files[1].slide: unknown key; the keys here are width, height, slides");
    slideRow("1", ": must be an object, not 1");
    slideRow(R"({"pageId": 65536})", ".pageId: " + noUnsigned + "65536");
    slideRow(R"({"pageId": -1})", ".pageId: " + noUnsigned + "-1");
    slideRow(R"({"background": "gone.png"})",
             R"(.background: cannot read "gone.png": No such file or directory)");
    slideRow(R"({"background": "folder"})", R"(.background: cannot read "folder": is a directory)");
    slideRow(R"({"background": "empty"})", R"(.background: cannot read "empty": empty file)");
    slideRow(R"({"background": ""})", R"(.background: cannot read "": no file name)");
    slideRow(R"({"background": "a\nb"})",
             R"(.background: cannot read "a\nb": No such file or directory)");
    slideRow(R"({"background": ":gone.png"})",
             R"(.background: cannot read ":gone.png": No such file or directory)");
    slideRow(R"({"background": "red.png\u0000"})", ".background: a file name holds no NUL");
    slideRow(R"({"background": "\u0000"})", ".background: a file name holds no NUL");
    slideRow(R"({"background": "red.png\ud800"})",
             ".background: a file name holds no lone surrogate");
    slideRow(R"({"background": "\udc00red.png"})",
             ".background: a file name holds no lone surrogate");
    slideRow(R"({"background": 5})", ".background: " + noPicture + "5");
    slideRow(R"({"background": {}})", ".background.base64: missing");
    slideRow(R"({"background": {"base64": true}})",
             ".background.base64: must be a string, not true");
    slideRow(R"({"background": {"base64": "A A="}})",
             R"(.background.base64: must be base64, not "A A=")");
    slideRow(R"({"background": {"base64": "AAA"}})",
             R"(.background.base64: must be base64, not "AAA")");
    slideRow(R"({"background": {"file": "a"}})",
             ".background.file: unknown key; the keys here are base64");
    slideRow(R"({"transition": {"": 1}})",
             ".transition.\"\": unknown key; the keys here are advanceOnClick, advanceOnTime, "
             "advanceTime, entryEffect, hidden, loopSoundUntilNext");
    slideRow(R"({"transition": null})", ".transition: must be an object, not null");
    slideRow(R"({"transition": {"advanceTime": true}})",
             ".transition.advanceTime: " + noFloat + "true");
    slideRow(R"({"transition": {"entryEffect": 32768}})",
             ".transition.entryEffect: " + noSigned + "32768");
    slideRow(R"({"shapes": {}})", ".shapes: must be an array, not an object");
    slideRow(R"({"shapes": [[]]})", ".shapes[0]: must be an object, not an array");
    slideRow(R"({"shapes": [{"id": 1}]})", ".shapes[0].picture: missing");
    slideRow(R"({"shapes": [{"picture": "red.png"}]})", ".shapes[0].id: missing");
    slideRow(R"({"shapes": [{"id": 1, "picture": "red.png"}, {"id": 2, "picture": "gone.png"}]})",
             R"(.shapes[1].picture: cannot read "gone.png": No such file or directory)");
    slideRow(R"({"shapes": [{"id": 1.5, "picture": "red.png"}]})",
             ".shapes[0].id: " + noUnsigned + "1.5");
    slideRow(R"({"shapes": [{"id": 1, "picture": null, "width": 1}]})",
             ".shapes[0].height: missing, and there is no picture to take it from");
    slideRow(R"({"shapes": [{"id": 1, "picture": "text", "height": 1}]})",
             ".shapes[0].width: missing, and the size of the picture is unreadable");
    slideRow(R"({"effects": [{}]})", ".effects[0].shape: missing");
    slideRow(R"({"effects": [{"shape": "1"}]})", ".effects[0].shape: " + noUnsigned + "\"1\"");
    slideRow(R"({"effects": [{"shape": 1, "exit": 128}]})", ".effects[0].exit: " + noFlag + "128");
    slideRow(R"({"effects": [{"shape": 1, "exit": "yes"}]})",
             ".effects[0].exit: " + noFlag + "\"yes\"");
    slideRow(R"({"effects": [{"shape": 1, "trigger": "Click"}]})",
             ".effects[0].trigger: " + noTrigger + "\"Click\"");
    slideRow(R"({"effects": [{"shape": 1, "trigger": 128}]})",
             ".effects[0].trigger: " + noTrigger + "128");
    slideRow(R"({"effects": [{"shape": 1}, {"shap": 1}]})",
             ".effects[1].shap: unknown key; the keys here are shape, exit, trigger, duration, "
             "effectNo, effectParamA, effectParamB, accelerate, decelerate, autoReverse, timingF5, "
             "timingB6, timingF7, timingB8, timingB9, timingB10, timingB11, timingF12");
    slideRow(R"({"effects": [{"shape": 1, "duration": "Forty characters, with its two quotes."}]})",
             ".effects[0].duration: " + noFloat + "\"Forty characters, with its two quotes.\"");
    slideRow(
        R"({"effects": [{"shape": 1, "duration": "A text of more than forty characters, cut."}]})",
        ".effects[0].duration: " + noFloat + "\"A text of more than forty characters, c...");
}

void TestDocpageDeck::wrongDeck()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, fault);
    QVERIFY(QDir(place->path({})).mkdir(text("folder")));
    place->write(text("empty"), {});
    place->write(text("text"), "no picture");
    place->write(text("deck.json"), json);
    verifyFails(words("build deck.json -o new"), "docpage: deck.json: " + fault + '\n');
}

// A fault is one line of a length that can be read.
void TestDocpageDeck::wrongDeckOfOddSize()
{
    place->write(text("deck.json"), QByteArray(10000, '[') + QByteArray(10000, ']'));
    verifyFails(words("build deck.json -o new"),
                "docpage: deck.json: line 1, column 1026: too deeply nested document\n");

    const QByteArray name = QByteArray(250, 'n');
    for (const auto &[end, shown] :
         {std::pair("5.png", "5.png"), std::pair("6..png", "6..pn...")}) {
        place->write(text("deck.json"), R"({"slides": [{"background": ")" + name + end + "\"}]}");
        verifyFails(words("build deck.json -o new"),
                    "docpage: deck.json: slides[0].background: cannot read \"" + name + shown +
                        (shown == QByteArray(end) ? "\": No such file or directory\n"
                                                  : "\": File name too long\n"));
    }

    place->write(text("huge.json"), {});
    QVERIFY(QFile::resize(place->path(text("huge.json")), Q_INT64_C(2147483648)));
    QCOMPARE(place->run(words("build huge.json -o new")).err,
             QByteArray("docpage: huge.json: too large: 2147483648 bytes\n"));
}

void TestDocpageDeck::lastOfTwoKeysCounts()
{
    place->write(text("deck.json"), R"({"width": 1, "height": 2, "slides": 5, "width": 3,
  "slides": [{"pageId": 7, "pageId": 8}]})");
    verifyDoes(words("build deck.json -o new"), "1 page result file in new\n");
    verifyDoes(words("model new/page_0"), "new/page_0: 3 x 2, 1 page, 0 shapes, 0 effects\n"
                                          "  page 8\n    background: none\n");
}

// In a file a signalling NaN becomes the quiet one, on every processor.
void TestDocpageDeck::bitsOfFloats()
{
    place->write(text("deck.json"), R"({"files": [
  {"width": "0x7f800001", "height": "0xFF812345", "slides": []},
  {"width": "0x3f800000", "height": "0x80000000", "slides": []}
]})");
    verifyDoes(words("build deck.json -o new"), "2 page result files in new\n");
    QCOMPARE(place->read(text("new/page_0")).mid(14 + 8, 16).toHex(' '),
             QByteArray("7f f8 00 00 20 00 00 00 ff f8 24 68 a0 00 00 00"));
    QCOMPARE(place->read(text("new/page_1")).mid(14 + 8, 16).toHex(' '),
             QByteArray("3f f0 00 00 00 00 00 00 80 00 00 00 00 00 00 00"));
    verifyDoes(words("model new/page_0 new/page_1"),
               "new/page_0: 0x7fc00001 x 0xffc12345, 0 pages, 0 shapes, 0 effects\n"
               "new/page_1: 1 x -0, 0 pages, 0 shapes, 0 effects\n");
}

void TestDocpageDeck::tooManySlides()
{
    const QByteArray begin = R"({"width": 1, "height": 1, "slides": [)";
    const QByteArray slides = QByteArray("{},").repeated(65536);
    place->write(text("deck.json"), begin + slides + "{}]}");
    verifyFails(
        words("build deck.json -o new"),
        "docpage: deck.json: slides[65536].pageId: missing, and its default is too large\n");
    place->write(text("deck.json"), R"({"files": [)" + begin + slides + R"({"pageId": 0}]}]})");
    verifyFails(words("build deck.json -o new"),
                "docpage: deck.json: files[0].slides[65536].pageId: another slide of the file has "
                "the number 0, too\n");
}

void TestDocpageDeck::tooLarge()
{
    QFile picture(place->path(text("large")));
    QVERIFY(picture.open(QIODevice::WriteOnly) && picture.resize(16 << 20));
    const QByteArray shape = R"({"id": 1, "picture": "large", "width": 1, "height": 1},)";
    const QByteArray slide = R"({"shapes": [)" + shape.repeated(127);
    const QByteArray last =
        R"({"id": 1, "picture": {"base64": "AQID"}, "width": 1, "height": 1}]})";
    place->write(text("deck.json"), R"({"width": 1, "height": 1, "slides": [{}, )" + slide + shape +
                                        last + "," + slide + shape + shape + last + ", {}]}");
    const QByteArray tooLarge =
        "docpage: new/page_1: too large for a page result file: 2147488609 bytes\n"
        "docpage: new/page_2: too large for a page result file: 2164265863 bytes\n";
    verifyFails(words("build deck.json -o new"), tooLarge);
    QVERIFY(QDir(place->path({})).mkpath(text("new/page_0")));
    verifyFails(words("build deck.json -o new --force"),
                "docpage: new/page_0: is a directory\n" + tooLarge);

    // Just not, and just.
    for (const auto &[file, size] : {std::pair("most", 16772231), std::pair("more", 16772232)}) {
        place->write(text(file), {});
        QVERIFY(QFile::resize(place->path(text(file)), size));
    }
    const auto slideWith = [&slide](const char *file) {
        return slide + R"({"id": 1, "picture": ")" + file + R"(", "width": 1, "height": 1}]})";
    };
    place->write(text("deck.json"), R"({"width": 1, "height": 1, "slides": [)" + slideWith("most") +
                                        "," + slideWith("more") + "]}");
    verifyFails(words("build deck.json -o other"),
                "docpage: other/page_1: too large for a page result file: 2147483584 bytes\n");
}

// The program tells all keys of an object when it finds another one.
void TestDocpageDeck::keysAreTheSchemas()
{
    QFile file(QStringLiteral(DOCPAGE_DECK_SCHEMA));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject schema = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonObject definitions = schema[text("$defs")].toObject();

    const QHash<QString, QByteArray> decks{
        {text("deck"), R"({"x": 1})"},
        {text("deckOfFiles"), R"({"files": [], "x": 1})"},
        {text("file"), R"({"files": [{"x": 1}]})"},
        {text("slide"), R"({"slides": [{"x": 1}]})"},
        {text("shape"), R"({"width": 1, "height": 1, "slides": [{"shapes": [{"x": 1}]}]})"},
        {text("effect"), R"({"width": 1, "height": 1, "slides": [{"effects": [{"x": 1}]}]})"},
        {text("transition"), R"({"width": 1, "height": 1, "slides": [{"transition": {"x": 1}}]})"},
    };
    int objects = 0;
    for (auto at = definitions.begin(); at != definitions.end(); ++at) {
        const QJsonObject properties = at.value().toObject()[text("properties")].toObject();
        if (properties.isEmpty())
            continue;
        ++objects;
        QVERIFY2(decks.contains(at.key()), qPrintable(at.key()));
        place->write(text("deck.json"), decks[at.key()]);
        const QString err = text(place->run(words("build deck.json -o new")).err);
        QStringList keys = err.trimmed().section(text("the keys here are "), 1).split(text(", "));
        keys.sort();
        QCOMPARE(keys, properties.keys());
    }
    QCOMPARE(objects, decks.size());
}

void TestDocpageDeck::oneFileOfManySlides()
{
    place->write(text("deck.json"), R"({"files": [
  {"width": 1, "height": 2, "slides": [{"pageId": 9}, {"pageId": 4}, {}]},
  {"width": 3, "height": 4, "slides": []},
  {"width": 5, "height": 6, "slides": [{}, {}]}
]})");
    verifyDoes(words("build deck.json -o new"), "3 page result files in new\n");
    verifyDoes(words("model new/page_0 new/page_1 new/page_2"),
               "new/page_0: 1 x 2, 3 pages, 0 shapes, 0 effects\n"
               "  page 2\n    background: none\n"
               "  page 4\n    background: none\n"
               "  page 9\n    background: none\n"
               "new/page_1: 3 x 4, 0 pages, 0 shapes, 0 effects\n"
               "new/page_2: 5 x 6, 2 pages, 0 shapes, 0 effects\n"
               "  page 2\n    background: none\n"
               "  page 3\n    background: none\n");
}

void TestDocpageDeck::picturesAreRelativeToTheDeck()
{
    QVERIFY(QDir(place->path({})).mkpath(text("deep/er")));
    place->write(text("deep/er/a.png"), TinyPictures::png());
    const QString absolute = place->path(text("grey.jpg"));
    place->write(text("deep/deck.json"), R"({"slides": [{"background": "er/a.png"},
        {"background": "../red.png"}, {"background": ")" +
                                             absolute.toUtf8() + "\"}]}");
    verifyDoes(words("build deep/deck.json -o new"), "3 page result files in new\n");
    QVERIFY(place->read(text("new/page_2")).contains(TinyPictures::jpg()));
}

// As the link's own folder is the one that the caller sees.
void TestDocpageDeck::picturesAreRelativeToALinkToTheDeck()
{
    QVERIFY(QDir(place->path({})).mkdir(text("deep")));
    place->write(text("deep/deck.json"), R"({"slides": [{"background": "red.png"}]})");
    place->write(text("deep/red.png"), TinyPictures::jpg());
    QVERIFY(QFile::link(text("deep/deck.json"), place->path(text("link.json"))));
    verifyDoes(words("build link.json -o new"), "1 page result file in new\n");
    QVERIFY(place->read(text("new/page_0")).contains(TinyPictures::png()));
    QVERIFY(QFile::remove(place->path(text("red.png"))));
    verifyFails(
        words("build link.json -o other"),
        "docpage: link.json: slides[0].background: cannot read \"red.png\": No such file or "
        "directory\n");
}

void TestDocpageDeck::picturesWithColon()
{
    QVERIFY(QDir(place->path({})).mkdir(text("./:deep")));
    place->write(text("./:red.png"), TinyPictures::png());
    place->write(text("./:deep/:grey.jpg"), TinyPictures::jpg());
    place->write(text("./:deck.json"), R"({"slides": [
  {"background": ":red.png"}, {"background": ":deep/:grey.jpg"}]})");
    place->write(text("./:deep/deck.json"), R"({"slides": [
  {"background": "../:red.png"}, {"background": ":grey.jpg"}]})");
    verifyDoes(words("build :deck.json -o new"), "2 page result files in new\n");
    QVERIFY(place->read(text("new/page_0")).contains(TinyPictures::png()));
    QVERIFY(place->read(text("new/page_1")).contains(TinyPictures::jpg()));
    verifyDoes(words("build :deep/deck.json -o :new"), "2 page result files in ./:new\n");
    for (const char *page : {"page_0", "page_1"})
        QCOMPARE(place->read(text("./:new/") + text(page)), place->read(text("new/") + text(page)));
    verifyFails(words("build :red.png -o other"),
                "docpage: ./:red.png: line 1, column 2: illegal value\n");
    place->write(text("./page_0"), R"({"slides": [{}, {"background": ":red.png"}]})");
    QVERIFY(QFile::rename(place->path(text("./:red.png")), place->path(text("page_1"))));
    QVERIFY(QFile::link(text("page_1"), place->path(text("./:red.png"))));
    verifyFails(words("build page_0 -o . --force"), "docpage: ./page_0: would replace an input\n"
                                                    "docpage: ./page_1: would replace an input\n");
}

void TestDocpageDeck::existingFilesStay()
{
    place->write(text("deck.json"), R"({"slides": [{"background": "red.png"}, {}, {}]})");
    QVERIFY(QDir(place->path({})).mkpath(text("new/page_2")));
    place->write(text("new/page_1"), "mine");
    verifyFails(words("build deck.json -o new"),
                "docpage: new/page_1: already exists; use --force to replace it\n"
                "docpage: new/page_2: is a directory\n");
    verifyFails(words("build deck.json -o new --force"), "docpage: new/page_2: is a directory\n");
    verifyFails(words("build deck.json -o red.png"), "docpage: red.png: Not a directory\n");

    QVERIFY(QDir(place->path(text("new"))).rmdir(text("page_2")));
    verifyDoes(words("build deck.json -o new --force"), "3 page result files in new\n");
    QVERIFY(place->read(text("new/page_1")).startsWith("\x88\x88\x88\x88"));
}

void TestDocpageDeck::inputsStay()
{
    place->write(text("page_0"), R"({"slides": [{"background": "page_1"}, {}]})");
    place->write(text("page_1"), TinyPictures::png());
    verifyFails(words("build page_0 -o . --force"), "docpage: ./page_0: would replace an input\n"
                                                    "docpage: ./page_1: would replace an input\n");
    verifyFails(words("build page_0 -o page_0 --force"), "docpage: page_0: Not a directory\n");
    QVERIFY(QFile::link(text("page_0"), place->path(text("link.json"))));
    verifyFails(words("build link.json -o . --force"),
                "docpage: ./page_0: would replace an input\n"
                "docpage: ./page_1: would replace an input\n");
}

void TestDocpageDeck::otherPagesStay()
{
    QVERIFY(QDir(place->path({})).mkdir(text("new")));
    place->write(text("new/page_1"), "other");
    place->write(text("deck.json"), R"({"slides": [{"background": "red.png"}]})");
    verifyDoes(words("build deck.json -o new"), "1 page result file in new\n");
    QCOMPARE(place->read(text("new/page_1")), QByteArray("other"));
}

// The rest of the deck is not made without a page.
void TestDocpageDeck::fullDisk()
{
    place->write(text("deck.json"), R"({"slides": [{}, {"background": "red.png"}, {}]})");
    const Outcome outcome = place->run(words("build deck.json -o new"), limitFileSize(100));
    QCOMPARE(outcome.err, QByteArray("docpage: new/page_1: File too large\n"));
    QCOMPARE(outcome.out, QByteArray());
    QCOMPARE(outcome.status, 1);
    QCOMPARE(QDir(place->path(text("new")))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             words("page_0"));
}

void TestDocpageDeck::roundTrip_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 60; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TestDocpageDeck::roundTrip()
{
    QFETCH(quint32, seed);
    Dice dice(seed);
    const bool isPlain = dice.upTo(2) == 0;
    QStringList pages;
    QVERIFY(QDir(place->path({})).mkdir(text("old")));
    for (int i = 0, last = dice.upTo(3); i <= last; ++i) {
        pages += QStringLiteral("page_%1").arg(i);
        place->write(text("old/") + pages.last(), pageOf(anyModel(dice, i, isPlain)));
    }
    QStringList model = words("model --json");
    for (const QString &page : qAsConst(pages))
        model += text("old/") + page;

    for (const QStringList &extract : {QStringList(), words("--extract pictures")}) {
        const Outcome outcome = place->run(model + extract);
        QCOMPARE(outcome.err, QByteArray());
        if (isPlain)
            QVERIFY(outcome.out.startsWith("{\n  \"width\": 0.1,"));
        place->write(text("deck.json"), outcome.out);
        QCOMPARE(place->run(words("build deck.json -o new --force")).err, QByteArray());
        for (const QString &page : qAsConst(pages))
            QCOMPARE(place->read(text("new/") + page).toHex(' '),
                     place->read(text("old/") + page).toHex(' '));
    }
}

QTEST_GUILESS_MAIN(TestDocpageDeck)
#include "tst_docpage_deck.moc"
