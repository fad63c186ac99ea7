#include "DocpageTest.h"
#include "TinyPictures.h"
#include "emfdeal/EmfDeal.h"
#include "tools/docpage/deck/SlideModel.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTextCodec>

#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray pageOf(const QByteArray &model, const QByteArray &behind = {})
{
    return EmfDeal::getHeader(model.size(), DocCovRslt::PAGE_FORMAT_PPT_ANIM) + model + behind;
}

// A model of 640 x 480 without pages.
QByteArray emptyModel()
{
    return hex("50 54 41 4d 00 00 00 02 40 84 00 00 00 00 00 00 40 7e 00 00 00 00 00 00"
               "00 00 00 00");
}

} // namespace

/// The outputs of docpage model, and what is told of models that are not as usual.
class TestDocpageModel : public DocpageTest
{
    Q_OBJECT

private:
    void buildPages();

private Q_SLOTS:
    void initTestCase();
    void init();

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
    void sizesThatAreNoNumbers();
    void zerosOfBothSigns();
    void payloadSize();
    void workedModel();
};

void TestDocpageModel::initTestCase()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

void TestDocpageModel::init()
{
    place = std::make_unique<Workplace>();
}

// page_0 with two pictures, and page_1 with one of them.
void TestDocpageModel::buildPages()
{
    place->write(text("red.png"), TinyPictures::png());
    place->write(text("grey.jpg"), TinyPictures::jpg());
    place->write(text("first.json"), R"({"slides": [
  {"background": "red.png", "shapes": [{"id": 1, "picture": "grey.jpg"}]},
  {"background": "red.png"}
]})");
    verifyDoes(words("build first.json -o ."), "2 page result files in .\n");
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
                 pageOf(emptyModel() + QByteArray(inPayload, 'p'), QByteArray(behind, 'b')));
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
