#include "DocpageTest.h"
#include "tools/docpage/deck/SlideModel.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <sys/stat.h>
#include <unistd.h>

/// docpage model: its outputs, and what is told of models that are not as usual.
class TestDocpageModel : public DocpageTest
{
    Q_OBJECT

private:
    void buildPages();

private Q_SLOTS:
    void printsText();
    void refuses_data();
    void refuses();
    void handlesOthers();
    void printsJson();
    void extract();
    void extractFails();
    void extractToAFullDisk();
    void extractWithoutPictures();

    void savesJson();
    void picturesAreNamedFromTheJson_data();
    void picturesAreNamedFromTheJson();
    void picturesAreNamedInUtf8();
    void picturesHaveNamesOfTheirOwn();
    void allOrNothing_data();
    void allOrNothing();
    void outputIsNoInput();

    void bytesAfterModel_data();
    void bytesAfterModel();
    void bytesAfterModelAreLeftOut();
    void otherBytes_data();
    void otherBytes();
    void defaultNumbersAreLeftOut();
    void heightsThatDiffer();
    void sizesThatAreNoNumbers();
    void zerosOfBothSigns();
    void payloadSize();
    void workedModel();
};

// page_0 with two pictures, and page_1 with one of them.
void TestDocpageModel::buildPages()
{
    place->write(text("first.json"), R"({"slides": [
  {"background": "red.png", "shapes": [{"id": 1, "picture": "grey.jpg"}]},
  {"background": "red.png"}
]})");
    verifyDoes(words("build first.json -o ."), "2 page result files in .\n");
}

void TestDocpageModel::printsText()
{
    place->write(text("deck.json"), R"({
  "width": 0.1, "height": "inf",
  "slides": [{
    "pageId": 3,
    "background": {"base64": ""},
    "transition": {"advanceOnClick": true, "advanceTime": 2.5, "entryEffect": -3},
    "shapes": [{"id": 1, "picture": "red.png", "left": 1.5, "top": "-0"},
               {"id": 2, "picture": null, "width": 1, "height": 1},
               {"id": 3, "picture": {"base64": "AAAA"}, "width": 1, "height": 1}],
    "effects": [{"shape": 1, "trigger": "click"},
                {"shape": 2, "trigger": "with", "exit": true},
                {"shape": 4, "trigger": "after", "exit": 5, "duration": "nan"},
                {"shape": 1, "trigger": 0, "effectNo": -5, "timingB11": true, "timingF12": 0.1}]
  }]
})");
    verifyDoes(words("build deck.json -o new"), "1 page result file in new\n");
    verifyDoes(words("model new/page_0"), R"(new/page_0: 0.1 x inf, 1 page, 3 shapes, 4 effects
  page 3
    background: empty
    transition: advanceOnClick true, advanceTime 2.5, entryEffect -3
    shape 1: at 1.5, -0, size 4 x 3; picture: 73 bytes, 4 x 3 pixels
    shape 2: at 0, 0, size 1 x 1; picture: empty
    shape 3: at 0, 0, size 1 x 1; picture: 3 bytes, size in pixels unreadable
    effect 1 of shape 1: on click, 0.5 s
    effect 2 of shape 2: with the previous effect, exit, 0.5 s
    effect 3 of shape 4 (not there): after the previous effect, exit 5, nan s
    effect -5 of shape 1: trigger 0, 0.5 s; timingB11 true, timingF12 0.1
)");
}

void TestDocpageModel::refuses_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<bool>("isKnownToInfo");

    const QByteArray corrupt = "the slide animation data is truncated or corrupt";
    QTest::newRow("picture") << EmfDeal::getHeader(73, DocCovRslt::PAGE_FORMAT_PNG) +
                                    TinyPictures::png()
                             << QByteArray("holds a picture, not slide animation data") << true;
    QTest::newRow("one byte") << pageOf(QByteArray(1, '\0')) << corrupt << false;
    QTest::newRow("other magic") << pageOf(hex("50 54 41 4e 00 00 00 02") + QByteArray(20, '\0'))
                                 << QByteArray("no slide animation data: it does not begin with "
                                               "\"PTAM\"")
                                 << false;
    QTest::newRow("other version")
        << pageOf(hex("50 54 41 4d 00 00 00 01") + QByteArray(20, '\0'))
        << QByteArray("unknown version 1 of slide animation data") << false;
    QTest::newRow("cut in its head")
        << pageOf(hex("50 54 41 4d 00 00 00 01") + QByteArray(15, '\0')) << corrupt << false;
    QTest::newRow("2147483647 pages announced")
        << pageOf(hex("50 54 41 4d 00 00 00 02") + QByteArray(16, '\0') + hex("7f ff ff ff"))
        << corrupt << false;
    QTest::newRow("no page result file")
        << TinyPictures::png()
        << QByteArray("not a page result file: it does not begin with 88 88 88 88") << false;
}

void TestDocpageModel::refuses()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, fault);
    QFETCH(bool, isKnownToInfo);
    place->write(text("bad"), content);
    const QByteArray line = "docpage: bad: " + fault + '\n';
    verifyFails(words("model bad"), line);
    verifyFails(words("model bad --json"), line);
    verifyFails(words("model bad --json --extract new"), line);
    if (!isKnownToInfo)
        verifyFails(words("info bad"), line);
}

void TestDocpageModel::handlesOthers()
{
    place->write(text("deck.json"), R"({"width": 1, "height": 1, "slides": [{}]})");
    verifyDoes(words("build deck.json -o new"), "1 page result file in new\n");
    const Outcome outcome = place->run(words("model gone new/page_0"));
    QCOMPARE(outcome.err, QByteArray("docpage: gone: No such file or directory\n"));
    QCOMPARE(outcome.out, QByteArray("new/page_0: 1 x 1, 1 page, 0 shapes, 0 effects\n"
                                     "  page 0\n    background: none\n"));
    QCOMPARE(outcome.status, 1);
    // Without a file it would be another deck.
    verifyFails(words("model --json gone new/page_0"),
                "docpage: gone: No such file or directory\n");
}

void TestDocpageModel::printsJson()
{
    place->write(text("deck.json"), R"({"slides": [
  {"background": "red.png", "shapes": [{"id": 1, "picture": {"base64": "AAAA"}, "width": 0.1, "height": "nan"}],
   "effects": [{"shape": 1, "exit": true, "trigger": 0, "timingF5": 1e-45}], "transition": {"hidden": 5}},
  {"background": {"base64": ""}}
]})");
    verifyDoes(words("build deck.json -o new"), "2 page result files in new\n");
    const QByteArray begin = R"({
  "width": 4,
  "height": 3,
  "slides": [
    {
)";
    const QByteArray end = R"(      "transition": {"hidden": 5},
      "shapes": [
        {"id": 1, "left": 0, "top": 0, "width": 0.1, "height": "nan", "picture": {"base64": "AAAA"}}
      ],
      "effects": [
        {"shape": 1, "exit": true, "trigger": 0, "duration": 0.5, "effectNo": 1, "timingF5": 1.4013e-45}
      ]
    },
    {
      "background": {"base64": ""},
      "shapes": [],
      "effects": []
    }
  ]
}
)";
    const QByteArray red = R"(      "background": {"base64": ")" + TinyPictures::png().toBase64();
    verifyDoes(words("model --json new/page_0 new/page_1"), begin + red + "\"},\n" + end);

    verifyDoes(words("model --json new/page_1"),
               R"({
  "width": 4,
  "height": 3,
  "slides": [
    {
      "pageId": 1,
      "background": {"base64": ""},
      "shapes": [],
      "effects": []
    }
  ]
}
)");
}

void TestDocpageModel::extract()
{
    place->write(text("deck.json"), R"({"slides": [
  {"background": "red.png", "shapes": [
     {"id": 1, "picture": "grey.jpg"},
     {"id": 1, "picture": "red.png"},
     {"id": 2, "picture": {"base64": "AAAA"}, "width": 1, "height": 1},
     {"id": 2, "picture": {"base64": ""}, "width": 1, "height": 1}]},
  {"background": "grey.jpg"}
]})");
    verifyDoes(words("build deck.json -o new"), "2 page result files in new\n");
    const QStringList model = words("model --json --extract pictures/all new/page_0 new/page_1");
    const Outcome outcome = place->run(model);
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(QDir(place->path(text("pictures/all"))).entryList(QDir::Files | QDir::Hidden),
             words("slide_0-background.png slide_0-shape_0.jpg slide_0-shape_2.bin"));
    QCOMPARE(place->read(text("pictures/all/slide_0-background.png")), TinyPictures::png());
    QCOMPARE(place->read(text("pictures/all/slide_0-shape_0.jpg")), TinyPictures::jpg());
    QCOMPARE(place->read(text("pictures/all/slide_0-shape_2.bin")), QByteArray(3, '\0'));
    QCOMPARE(outcome.out.count("\"pictures/all/slide_0-background.png\""), 2);
    QCOMPARE(outcome.out.count("\"picture\": null"), 1);
    QVERIFY(!outcome.out.contains("base64"));

    place->write(text("again.json"), outcome.out);
    verifyDoes(words("build again.json -o again"), "2 page result files in again\n");
    for (const QString &page : words("page_0 page_1"))
        QCOMPARE(place->read(text("again/") + page), place->read(text("new/") + page));

    const QByteArray exists = ": already exists; use --force to replace it\n";
    verifyFails(model, "docpage: pictures/all/slide_0-background.png" + exists +
                           "docpage: pictures/all/slide_0-shape_0.jpg" + exists +
                           "docpage: pictures/all/slide_0-shape_2.bin" + exists);
    verifyDoes(model + words("--force"), outcome.out);
}

void TestDocpageModel::extractFails()
{
    place->write(text("deck.json"), R"({"slides": [{"background": "red.png"}]})");
    verifyDoes(words("build deck.json -o new"), "1 page result file in new\n");
    verifyFails(words("model --json --extract red.png new/page_0"),
                "docpage: red.png: Not a directory\n");
}

// There is no JSON without a picture that it names.
void TestDocpageModel::extractToAFullDisk()
{
    place->write(text("first.json"), R"({"slides": [{"background": {"base64": "AAAA"}, "shapes": [
  {"id": 1, "picture": "red.png"},
  {"id": 2, "picture": {"base64": "AQID"}, "width": 1, "height": 1}]}],
  "width": 1, "height": 1})");
    verifyDoes(words("build first.json -o ."), "1 page result file in .\n");
    for (const char *output : {"", " -o deck.json"}) {
        const Outcome outcome =
            place->run(words(QByteArray("model --json page_0 --force --extract new") + output),
                       limitFileSize(40));
        QCOMPARE(outcome.err, QByteArray("docpage: new/slide_0-shape_0.png: File too large\n"));
        QCOMPARE(outcome.out, QByteArray());
        QCOMPARE(outcome.status, 1);
        QCOMPARE(QDir(place->path(text("new"))).entryList(QDir::Files | QDir::Hidden),
                 words("slide_0-background.bin"));
        QVERIFY(!QFileInfo::exists(place->path(text("deck.json"))));
    }
}

// The folder is there all the same, as the JSON may go into it.
void TestDocpageModel::extractWithoutPictures()
{
    place->write(text("page"), pageOf(slideModel()));
    const QByteArray json = place->run(words("model --json page")).out;
    verifyDoes(words("model --json page --extract new/er -o new/deck.json"));
    QCOMPARE(place->read(text("new/deck.json")), json);
    QVERIFY(QFileInfo(place->path(text("new/er"))).isDir());
    verifyDoes(words("model --json page --extract newer"), json);
    QVERIFY(QFileInfo(place->path(text("newer"))).isDir());
    verifyFails(words("model --json page --extract other -o gone/deck.json"),
                "docpage: gone/deck.json: No such file or directory\n");
    verifyFails(words("model --json page --extract other -o other"),
                "docpage: other: is to be a folder of the pictures\n");
    verifyFails(words("model --json page --extract page"), "docpage: page: Not a directory\n");
}

void TestDocpageModel::savesJson()
{
    buildPages();
    const QByteArray printed = place->run(words("model --json page_0 page_1")).out;
    QVERIFY(printed.contains("base64"));
    verifyDoes(words("model --json page_0 page_1 -o deck.json"), "");
    QCOMPARE(place->read(text("deck.json")), printed);
    verifyFails(words("model --json page_0 -o deck.json"),
                "docpage: deck.json: already exists; use --force to replace it\n");
    verifyDoes(words("model --json page_0 --output=deck.json --force"), "");
    QVERIFY(place->read(text("deck.json")).size() < printed.size());
    verifyFails(words("model --json page_0 gone -o deck.json --force"),
                "docpage: gone: No such file or directory\n");
    verifyFails(words("model --json page_0 -o gone/deck.json"),
                "docpage: gone/deck.json: No such file or directory\n");
}

void TestDocpageModel::picturesAreNamedFromTheJson_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");

    const auto row = [](const char *json, const char *folder, const char *name) {
        QTest::addRow("%s, %s", json, folder) << text(json) << text(folder) << text(name);
    };
    row("deck.json", "new", "new/");
    row("deck.json", "new/er/", "new/er/");
    row("deck.json", ".", "");
    row("deck.json", "./there/..", "");
    row("there/deck.json", "new", "../new/");
    row("there/deck.json", ".", "../");
    row("there/deck.json", "there/new", "new/");
    row("new/deck.json", "new", "");
    row("new/deck.json", "new/er", "er/");
    row("new/er/deck.json", "new/er", "");
    // link leads to there/deep
    row("link/deck.json", "new", "../../new/");
    row("deck.json", "link/new", "there/deep/new/");
    row("link/deck.json", "link", "");
    row("link/deck.json", "there/deep/new", "new/");
    row("there/deck.json", "link/../new", "new/");
    row("link/../deck.json", "new", "../new/");
    row("deck.json", "Übergröße 第一", "Übergröße 第一/");
    row("deck.json", "..x", "..x/");
    row("new/deck.json", "new/..x", "..x/");
    row("deck.json", R"(a"b\c)", R"(a\"b\\c/)");
    row("deck.json", ":new", ":new/");
    row(":deck.json", "new", "new/");
    row(":there/deck.json", ":there/:new", ":new/");
}

void TestDocpageModel::picturesAreNamedFromTheJson()
{
    QFETCH(QString, json);
    QFETCH(QString, folder);
    QFETCH(QString, name);
    buildPages();
    const QDir here(place->path({}));
    QVERIFY(here.mkpath(text("there/deep")) && here.mkdir(text("./:there")));
    QVERIFY(QFile::link(text("there/deep"), place->path(text("link"))));

    verifyDoes(
        words("model --json page_0 page_1 -o") + QStringList{json, text("--extract"), folder}, "");
    const QString path = place->path(text("./") + json);
    const QByteArray saved = place->read(text("./") + json);
    QCOMPARE(saved.count('"' + name.toUtf8() + "slide_0-background.png\""), 2);
    QCOMPARE(saved.count('"' + name.toUtf8() + "slide_0-shape_0.jpg\""), 1);
    QCOMPARE(place->read(text("./") + folder + text("/slide_0-background.png")),
             TinyPictures::png());

    const Workplace elsewhere;
    const Outcome outcome = elsewhere.run({text("build"), path, text("-o"), text("again")});
    QCOMPARE(outcome.err, QByteArray());
    for (const char *page : {"page_0", "page_1"})
        QCOMPARE(elsewhere.read(text("again/") + text(page)), place->read(text(page)));
}

// What JSON cannot say is refused, even where the name as given could be said.
void TestDocpageModel::picturesAreNamedInUtf8()
{
    buildPages();
    QVERIFY(QDir(place->path({})).mkdir(text("there")));
    QCOMPARE(::symlink("\xFF", QFile::encodeName(place->path(text("link"))).constData()), 0);
    const QByteArray folder = QFile::encodeName(place->path({})) + "/\xFF";
    QCOMPARE(::mkdir(folder.constData(), 0700), 0);
    verifyFails(words("model --json page_0 --extract link -o deck.json"),
                "docpage: link: the name as seen from the JSON is not UTF-8\n");
    QCOMPARE(::rmdir(folder.constData()), 0);
}

// Also those of the same slide number in different files.
void TestDocpageModel::picturesHaveNamesOfTheirOwn()
{
    place->write(text("first.json"), R"({"files": [
  {"width": 1, "height": 1, "slides": [
    {"pageId": 1, "background": {"base64": "AQ=="},
     "shapes": [{"id": 1, "picture": {"base64": "Ag=="}, "width": 1, "height": 1},
                {"id": 1, "picture": {"base64": "Aw=="}, "width": 1, "height": 1}]},
    {"pageId": 5, "background": {"base64": "BA=="},
     "shapes": [{"id": 1, "picture": {"base64": "BQ=="}, "width": 1, "height": 1}]}]},
  {"width": 1, "height": 1, "slides": [
    {"pageId": 1, "background": {"base64": "Bg=="},
     "shapes": [{"id": 1, "picture": {"base64": "Bw=="}, "width": 1, "height": 1}]}]}
]})");
    verifyDoes(words("build first.json -o ."), "2 page result files in .\n");
    verifyDoes(words("model --json page_0 page_1 --extract new -o deck.json"), "");
    const QStringList names = words("slide_0-background.bin slide_0-shape_0.bin "
                                    "slide_0-shape_1.bin slide_1-background.bin "
                                    "slide_1-shape_0.bin slide_2-background.bin "
                                    "slide_2-shape_0.bin");
    QCOMPARE(QDir(place->path(text("new"))).entryList(QDir::Files, QDir::Name), names);
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(place->read(text("new/") + names.at(i)), QByteArray(1, char(1 + i)));
}

void TestDocpageModel::allOrNothing_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("err");

    const auto row = [](const char *arguments, const QByteArray &err) {
        QTest::newRow(arguments) << words(arguments) << err;
    };
    const QByteArray exists = ": already exists; use --force to replace it\n";
    row("--extract taken", "docpage: taken/slide_0-background.png" + exists +
                               "docpage: taken/slide_0-shape_0.jpg: "
                               "is a directory\n");
    row("--extract taken --force", "docpage: taken/slide_0-shape_0.jpg: is a directory\n");
    row("--extract taken -o taken.json", "docpage: taken/slide_0-background.png" + exists +
                                             "docpage: taken/slide_0-shape_0.jpg: is a directory\n"
                                             "docpage: taken.json" +
                                             exists);
    row("--extract new -o taken.json", "docpage: taken.json" + exists);
    row("--extract new -o taken", "docpage: taken: is a directory\n");
    row("--extract new -o gone/deck.json", "docpage: gone/deck.json: No such file or directory\n");
    row("--extract new -o new/er/deck.json",
        "docpage: new/er/deck.json: No such file or directory\n");
    row("--extract new -o taken.json/deck.json",
        "docpage: taken.json/deck.json: Not a directory\n");
    row("--extract taken.json -o deck.json", "docpage: taken.json: Not a directory\n");
    row("--extract loop -o deck.json", "docpage: loop: Too many levels of symbolic links\n");
    row("--extract new -o loop/deck.json",
        "docpage: loop/deck.json: Too many levels of symbolic links\n");
    row("--extract new -o new", "docpage: new: is to be a folder of the pictures\n");
    row("--extract new/er -o link/../new",
        "docpage: link/../new: is to be a folder of the pictures\n");
    row("--extract new -o new/slide_0-background.png",
        "docpage: new/slide_0-background.png: is to be the file of a picture\n");
    row("--extract link -o taken/slide_1-shape_0.jpg --force",
        "docpage: link/slide_0-shape_0.jpg: is a directory\n");
    row("--extract empty -o link2/slide_0-shape_0.jpg --force",
        "docpage: link2/slide_0-shape_0.jpg: is to be the file of a picture\n");
}

void TestDocpageModel::allOrNothing()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, err);
    buildPages();
    const QDir here(place->path({}));
    QVERIFY(here.mkpath(text("taken/slide_0-shape_0.jpg")) && here.mkdir(text("empty")));
    place->write(text("taken/slide_0-background.png"), "mine");
    place->write(text("taken.json"), "mine");
    QVERIFY(QFile::link(text("loop"), place->path(text("loop"))));
    QVERIFY(QFile::link(text("taken"), place->path(text("link"))));
    QVERIFY(QFile::link(text("empty"), place->path(text("link2"))));
    verifyFails(words("model --json page_0 page_1") + arguments, err);
}

void TestDocpageModel::outputIsNoInput()
{
    buildPages();
    QVERIFY(QFile::link(text("."), place->path(text("here"))));
    verifyFails(words("model --json page_0 -o here/page_0 --force"),
                "docpage: here/page_0: would replace an input\n");
    QVERIFY(
        QFile::rename(place->path(text("page_0")), place->path(text("slide_0-background.png"))));
    verifyFails(words("model --json slide_0-background.png --extract . -o deck.json --force"),
                "docpage: ./slide_0-background.png: would replace an input\n");
}

void TestDocpageModel::bytesAfterModel_data()
{
    QTest::addColumn<int>("inPayload");
    QTest::addColumn<int>("behind");
    QTest::addColumn<QByteArray>("inModelText");
    QTest::addColumn<QByteArray>("inInfoText");
    QTest::addColumn<QByteArray>("err");

    QTest::newRow("none") << 0 << 0 << QByteArray() << QByteArray() << QByteArray();
    QTest::newRow("one in the payload")
        << 1 << 0 << QByteArray(", the model followed by 1 byte that is ignored")
        << QByteArray(", the model followed by 1 byte that is ignored")
        << QByteArray("docpage: page: 1 byte after the model is left out\n");
    QTest::newRow("two behind the payload")
        << 0 << 2 << QByteArray() << QByteArray(", followed by 2 bytes that are ignored")
        << QByteArray();
    QTest::newRow("both") << 300 << 1
                          << QByteArray(", the model followed by 300 bytes that are ignored")
                          << QByteArray(", the model followed by 300 bytes that are ignored, "
                                        "followed by 1 byte that is ignored")
                          << QByteArray("docpage: page: 300 bytes after the model are left out\n");
}

void TestDocpageModel::bytesAfterModel()
{
    QFETCH(int, inPayload);
    QFETCH(int, behind);
    QFETCH(QByteArray, inModelText);
    QFETCH(QByteArray, inInfoText);
    QFETCH(QByteArray, err);
    place->write(text("page"),
                 pageOf(slideModel() + QByteArray(inPayload, 'p'), QByteArray(behind, 'b')));
    const QByteArray summary = "640 x 480, 0 pages, 0 shapes, 0 effects";
    verifyDoes(words("model page"), "page: " + summary + inModelText + '\n');
    verifyDoes(words("info page"), "page: slide animation data, " +
                                       QByteArray::number(28 + inPayload) + " bytes, " + summary +
                                       inInfoText + '\n');
    const QJsonObject info =
        QJsonDocument::fromJson(place->run(words("info --json page")).out).array().at(0).toObject();
    QCOMPARE(info[text("bytesAfterModel")], QJsonValue(inPayload));
    QCOMPARE(info[text("trailingBytes")], QJsonValue(behind));

    const Outcome outcome = place->run(words("model --json page"));
    QCOMPARE(outcome.err, err);
    QCOMPARE(outcome.status, 0);
    QVERIFY(outcome.out.startsWith("{\n  \"files\": ["));
}

// Told of each file, and not when there is no JSON.
void TestDocpageModel::bytesAfterModelAreLeftOut()
{
    buildPages();
    const QByteArray page = place->read(text("page_0"));
    place->write(text("longer"), pageOf(page.mid(14) + "left out"));
    const Outcome outcome =
        place->run(words("model --json longer page_0 longer -o deck.json --extract new"));
    QCOMPARE(outcome.err, QByteArray("docpage: longer: 8 bytes after the model are left out\n"
                                     "docpage: longer: 8 bytes after the model are left out\n"));
    QCOMPARE(outcome.out, QByteArray());
    QCOMPARE(outcome.status, 0);
    verifyFails(words("model --json longer -o deck.json"),
                "docpage: deck.json: already exists; use --force to replace it\n");

    verifyDoes(words("build deck.json -o again"), "3 page result files in again\n");
    QCOMPARE(place->read(text("again/page_0")), page);

    place->write(text("picture"),
                 EmfDeal::getHeader(73, DocCovRslt::PAGE_FORMAT_PNG) + TinyPictures::png());
    QVERIFY(!place->run(words("info --json picture")).out.contains("bytesAfterModel"));
}

void TestDocpageModel::otherBytes_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<QByteArray>("err");

    const QByteArray other = "docpage: page: the description does not give the same bytes\n";
    const auto row = [](const char *name, const QByteArray &model, const QByteArray &err) {
        QTest::newRow(name) << hex("50 54 41 4d 00 00 00 02" + model) << err;
    };
    const QByteArray size = "40 84 00 00 00 00 00 00 40 7e 00 00 00 00 00 00";
    const QByteArray noImage = "ff ff ff ff 00 00 00 00 00 00 00 00 00 00 00 00 00 00";
    const QByteArray nothing = noImage + "00 00 00 00 00 00 00 00";
    const QByteArray shape = noImage + "00 00 00 01 00 07" + QByteArray("00").repeated(32);
    row("pages in order", size + "00 00 00 02 00 01" + nothing + "00 02" + nothing, {});
    row("pages out of order", size + "00 00 00 02 00 02" + nothing + "00 01" + nothing, other);
    row("page twice", size + "00 00 00 02 00 01" + nothing + "00 01" + nothing, other);
    row("negative number of pages", size + "ff ff ff ff", other);
    row("negative number of shapes",
        size + "00 00 00 01 00 01" + noImage + "ff ff ff ff 00 00 00 00", other);
    row("empty picture", size + "00 00 00 01 00 01" + shape + "00 00 00 00 00 00 00 00", {});
    row("null picture", size + "00 00 00 01 00 01" + shape + "ff ff ff ff 00 00 00 00", other);
    row("size that is no float", "3f b9 99 99 99 99 99 9a 40 7e 00 00 00 00 00 00 00 00 00 00",
        other);
    row("with a byte after the model", size + "ff ff ff ff 00",
        "docpage: page: 1 byte after the model is left out\n" + other);
}

// They are no failure: what the library reads is described.
void TestDocpageModel::otherBytes()
{
    QFETCH(QByteArray, model);
    QFETCH(QByteArray, err);
    place->write(text("page"), pageOf(model));
    const Outcome outcome = place->run(words("model --json page -o deck.json"));
    QCOMPARE(outcome.err, err);
    QCOMPARE(outcome.status, 0);
    verifyDoes(words("build deck.json -o new"), "1 page result file in new\n");
    QCOMPARE(place->read(text("new/page_0")) == place->read(text("page")), err.isEmpty());
    QByteArray shown = place->run(words("model page")).out;
    shown.replace("picture: none", "picture: empty");
    const QByteArray again = place->run(words("model new/page_0")).out;
    QCOMPARE(again.mid(again.indexOf('\n')), shown.mid(shown.indexOf('\n')));
}

// The default is the place of the file, and goes on from there.
void TestDocpageModel::defaultNumbersAreLeftOut()
{
    const QByteArray deck = R"({
  "files": [
    {
      "width": 1,
      "height": 1,
      "slides": [
        {
          "background": null,
          "shapes": [],
          "effects": []
        },
        {
          "background": null,
          "shapes": [],
          "effects": []
        }
      ]
    },
    {
      "width": 1,
      "height": 1,
      "slides": [
        {
          "background": null,
          "shapes": [],
          "effects": []
        },
        {
          "pageId": 3,
          "background": null,
          "shapes": [],
          "effects": []
        }
      ]
    }
  ]
}
)";
    place->write(text("deck.json"), deck);
    verifyDoes(words("build deck.json -o ."), "2 page result files in .\n");
    verifyDoes(words("model page_0 page_1"), "page_0: 1 x 1, 2 pages, 0 shapes, 0 effects\n"
                                             "  page 0\n    background: none\n"
                                             "  page 1\n    background: none\n"
                                             "page_1: 1 x 1, 2 pages, 0 shapes, 0 effects\n"
                                             "  page 1\n    background: none\n"
                                             "  page 3\n    background: none\n");
    verifyDoes(words("model --json page_0 page_1"), deck);
}

void TestDocpageModel::heightsThatDiffer()
{
    place->write(text("deck.json"), R"({"files": [
  {"width": 1, "height": 2, "slides": [{}]}, {"width": 1, "height": 3, "slides": [{}]}]})");
    verifyDoes(words("build deck.json -o ."), "2 page result files in .\n");
    QVERIFY(place->run(words("model --json page_0 page_1")).out.startsWith("{\n  \"files\": ["));
    QVERIFY(place->run(words("model --json page_0 page_0")).out.startsWith("{\n  \"width\": 1,"));
}

void TestDocpageModel::sizesThatAreNoNumbers()
{
    place->write(text("deck.json"), R"({"files": [{"width": "nan", "height": "-inf", "slides": []},
                                               {"width": "-0", "height": "inf", "slides": []}]})");
    verifyDoes(words("build deck.json -o ."), "2 page result files in .\n");
    const QByteArray out = place->run(words("info --json page_0 page_1")).out;
    const QJsonArray infos = QJsonDocument::fromJson(out).array();
    const QJsonObject nan = infos.at(0)[text("pageSize")].toObject();
    QCOMPARE(nan[text("width")], QJsonValue(QJsonValue::Null));
    QCOMPARE(nan[text("height")], QJsonValue(QJsonValue::Null));
    const QJsonObject inf = infos.at(1)[text("pageSize")].toObject();
    QCOMPARE(inf[text("width")], QJsonValue(0));
    QCOMPARE(inf[text("height")], QJsonValue(QJsonValue::Null));
}

// They are equal, and yet not the same size for a deck of one.
void TestDocpageModel::zerosOfBothSigns()
{
    place->write(text("deck.json"), R"({"files": [
  {"width": 0, "height": 1, "slides": [{}]}, {"width": "-0", "height": 1, "slides": [{}]}]})");
    verifyDoes(words("build deck.json -o ."), "2 page result files in .\n");
    verifyDoes(words("model --json page_0 page_1"), R"({
  "files": [
    {
      "width": 0,
      "height": 1,
      "slides": [
        {
          "background": null,
          "shapes": [],
          "effects": []
        }
      ]
    },
    {
      "width": "-0",
      "height": 1,
      "slides": [
        {
          "background": null,
          "shapes": [],
          "effects": []
        }
      ]
    }
  ]
}
)");
}

void TestDocpageModel::payloadSize()
{
    SlideModel model;
    QCOMPARE(model.payloadSize(), qint64(28));
    QCOMPARE(model.payload().size(), 28);

    for (const quint16 id : {quint16(0), quint16(65535), quint16(7)}) {
        model.data.pages[id] = new PPT_Page;
        model.data.pages[id]->pageId = id;
    }
    QCOMPARE(model.payloadSize(), qint64(28 + 3 * 28));
    QCOMPARE(model.payload().size(), 28 + 3 * 28);

    model.data.pages[0]->pageImage = "";
    PPT_Page &page = *model.data.pages[7];
    page.pageImage = "image";
    for (const QByteArray &picture : {QByteArray(), QByteArray(""), QByteArray("picture")}) {
        page.shapes.push_back(new PPT_Shape);
        page.shapes.back()->picDat = picture;
    }
    for (int i = 0; i < 100; ++i)
        page.effects.push_back(new PPT_Effect);
    model.data.pages[65535]->shapes.push_back(new PPT_Shape);
    constexpr int kSize = 28 + 3 * 28 + 5 + 4 * 38 + 7 + 100 * 64;
    QCOMPARE(model.payloadSize(), qint64(kSize));
    QCOMPARE(model.payload().size(), kSize);
}

// The bytes of the document, which says of each line where it begins.
void TestDocpageModel::workedModel()
{
    QFile file(QStringLiteral(DOCPAGE_MODEL_DOCUMENT));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString block = QString::fromUtf8(file.readAll())
                              .section(text("## A worked model\n"), 1)
                              .section(text("```\n"), 1, 1);
    const QRegularExpression parts(text("\\A([0-9a-f]{2}) ((?: {1,2}[0-9a-f]{2}\\b)+)"));
    QByteArray model;
    for (const QString &line : block.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = parts.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        QCOMPARE(match.captured(1),
                 QStringLiteral("%1").arg(model.size(), 2, 16, QLatin1Char('0')));
        model += QByteArray::fromHex(match.captured(2).toLatin1());
    }
    QCOMPARE(model.size(), 161);

    place->write(text("worked"), pageOf(model));
    verifyDoes(words("model --json worked -o deck.json"), "");
    QCOMPARE(place->read(text("deck.json")), QByteArray(R"({
  "width": 720,
  "height": 540,
  "slides": [
    {
      "background": null,
      "transition": {"advanceOnClick": true},
      "shapes": [
        {"id": 1, "left": 10, "top": 20, "width": 100, "height": 50, "picture": {"base64": "cGlj"}}
      ],
      "effects": [
        {"shape": 1, "exit": false, "trigger": "click", "duration": 0.5, "effectNo": 1}
      ]
    }
  ]
}
)"));
    verifyDoes(words("build deck.json -o new"), "1 page result file in new\n");
    QCOMPARE(place->read(text("new/page_0")).mid(14).toHex(' '), model.toHex(' '));

    SlideModel read;
    QCOMPARE(read.read(model), QString());
    QCOMPARE(read.bytesAfter, qint64(0));
    QCOMPARE(read.payload().toHex(' '), model.toHex(' '));
}

QTEST_GUILESS_MAIN(TestDocpageModel)
#include "tst_docpage_model.moc"
