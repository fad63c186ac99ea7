#include "AnimModel.h"
#include "BadInputs.h"
#include "DocpageTest.h"
#include "LogSpy.h"
#include "PageFiles.h"
#include "ResourceLimits.h"
#include "tools/docpage/DisplayManager.h"
#include "tools/docpage/LibraryLog.h"

#include <QImageWriter>
#include <QRandomGenerator>

using AnimModel::kAfter;
using AnimModel::kClick;
using AnimModel::kLeave;
using AnimModel::kWith;
using AnimModel::modelBytes;
using AnimModel::newEffect;
using AnimModel::newEffects;
using AnimModel::newPage;
using AnimModel::newShape;

namespace {

using Shapes = std::list<PPT_Shape *>;
using Effects = std::list<PPT_Effect *>;

PPT_Shape *shapeAt(int id, float left, float top)
{
    return newShape(id, left, top, 4, 3, TinyPictures::png());
}

PPT_Page *pageWith(const Shapes &shapes, const Effects &effects = {}, int id = 0)
{
    return newPage(shapes, effects, TinyPictures::png(), id);
}

// Pages as large as their background, which is 4 x 3.
QByteArray slideWith(const Shapes &shapes, const Effects &effects = {})
{
    return pageOf(modelBytes({pageWith(shapes, effects)}, 4, 3));
}

// A page and one that replaces it.
QByteArray twins(PPT_Page *first)
{
    QByteArray model = modelBytes({first}, 4, 3) + modelBytes({pageWith({})}, 4, 3).mid(28);
    model[27] = 2;
    return pageOf(model);
}

// With another byte somewhere.
QByteArray changed(QByteArray bytes, int at, char byte)
{
    bytes[at] = byte;
    return bytes;
}

QByteArray pngPageOf(const QByteArray &picture)
{
    return PageFiles::pageResultFile(DocCovRslt::PAGE_FORMAT_PNG, picture);
}

// Its decoder keeps all of it in a form that takes more than the image.
QByteArray progressiveJpg(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpg");
    writer.setProgressiveScanWrite(true);
    if (!writer.write(image))
        qFatal("cannot encode the test's picture");
    return bytes;
}

// Of 30000 x 30000 pixels, by its own account.
QByteArray hugePng()
{
    return hex("89 50 4e 47 0d 0a 1a 0a "
               "00 00 00 0d 49 48 44 52 00 00 75 30 00 00 75 30 08 02 00 00 00 e9 45 6f ed "
               "00 00 00 10 49 44 41 54 78 9c 63 f8 cf c0 00 47 0c 38 39 00 f5 31 0b f5 "
               "35 7b fb 82 00 00 00 00 49 45 4e 44 ae 42 60 82");
}

} // namespace

/// docpage check.
class TestDocpageCheck : public DocpagePagesTest
{
    Q_OBJECT

    // Of each file whether there is no error.
    QHash<QString, bool> areShown(const QStringList &files)
    {
        QHash<QString, bool> shown;
        const Outcome outcome = place->run(QStringList{text("check")} + files);
        for (const QByteArray &line : outcome.out.split('\n')) {
            const int colon = line.indexOf(": ");
            if (colon > 0)
                shown[QString::fromUtf8(line.left(colon))] = line.mid(colon + 2).startsWith("ok, ");
        }
        return shown;
    }

private Q_SLOTS:
    void clean_data();
    void clean();
    void findings_data();
    void findings();
    void names_data();
    void names();
    void numberByChance();
    void brokenDecoders_data();
    void brokenDecoders();
    void json();
    void handlesAll();
    void countsWhatItDoesNotTell();
    void tellsErrorsFirst();
    void unreadable_data();
    void unreadable();
    void memory_data();
    void memory();
    void sampleDeck();
    void everyPrefixHasAnError();
    void agreesWithTheDisplayManager();
    void wrongUsage_data();
    void wrongUsage();
};

void TestDocpageCheck::clean_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("ok");

    const auto row = [](const char *name, const QByteArray &content, const char *ok) {
        QTest::newRow(name) << content << QByteArray(ok);
    };
    row("PNG", pngPage(), "1 picture, 48 bytes decoded");
    row("JPG", jpgPage(), "1 picture, 8 bytes decoded");
    row("slide",
        slideWith({shapeAt(1, 0, 0)},
                  {newEffect(kClick, 1, 1), newEffect(kWith, 0, 1), newEffect(kAfter, 0, 1)}),
        "2 pictures, 96 bytes decoded");
    row("shapes at the edges", slideWith({shapeAt(1, -0.6F, 0.4F), shapeAt(2, 0, -1.4F)}),
        "3 pictures, 144 bytes decoded");
}

void TestDocpageCheck::clean()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, ok);
    place->write(text("page"), content);
    const QStringList before = place->entries();
    const Outcome outcome = place->run(words("check page"));
    QCOMPARE(outcome.out, "page: ok, " + ok + '\n');
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(place->entries(), before);
}

void TestDocpageCheck::findings_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArrayList>("findings");

    const auto row = [](const char *name, const QByteArray &content,
                        const QByteArrayList &findings) {
        QTest::newRow(name) << content << findings;
    };
    const QByteArray ok = "ok, 1 picture, 48 bytes decoded";
    const QByteArray ok2 = "ok, 2 pictures, 96 bytes decoded";

    row("short header", hex("88 88 88 88 01 01 04 00 00 00 01 00 00"),
        {"offset 0: error: short-header: not a page result file: too short for its header (13 of "
         "14 bytes)"});
    row("magic", changed(pngPage(), 3, '\0'),
        {"offset 0: error: bad-magic: not a page result file: it does not begin with 88 88 88 88"});
    row("version", changed(pngPage(), 4, 2),
        {"offset 4: error: bad-version: unknown version 0x0102 of a page result file"});
    row("format", changed(pngPage(), 6, 5), {"offset 6: error: bad-format: unsupported format 5"});
    row("length", changed(pngPage(), 13, '\xFF'),
        {"offset 10: error: bad-length: corrupt: the header announces -16777143 payload bytes"});
    row("no payload", hex("88 88 88 88 01 01 04 00 00 00 00 00 00 00"),
        {"offset 10: error: empty-payload: empty payload"});
    row("short payload", pngPage().chopped(1),
        {"offset 10: error: short-payload: truncated: the header announces 73 payload bytes, 72 "
         "are there"});
    row("trailing bytes", pngPage() + "xy",
        {"offset 87: warning: trailing-bytes: the payload is followed by 2 bytes that are ignored",
         ok});

    row("PNG announced as JPG", changed(pngPage(), 6, 2),
        {"offset 6: warning: format-mismatch: announced as JPG, the picture is PNG", ok});
    row("JPG announced as PNG", changed(jpgPage(), 6, 4),
        {"offset 6: warning: format-mismatch: announced as PNG, the picture is JPEG",
         "ok, 1 picture, 8 bytes decoded"});
    row("text", pngPageOf("text"),
        {"offset 14: error: picture-undecodable: neither a JPG nor a PNG picture"});
    row("truncated PNG", pngPageOf(TinyPictures::png().chopped(30)),
        {"offset 14: error: picture-undecodable: PNG picture is truncated"});
    row("PNG with damaged pixels", changed(pngPage(), 60, '\0'),
        {"offset 14: error: picture-undecodable: PNG picture is corrupt (checksum of chunk IDAT)"});
    row("truncated JPG: the decoder makes up the rest", jpgPageOf(TinyPictures::jpg().chopped(3)),
        {"offset 14: warning: picture-damaged: JPG picture is truncated",
         "ok, 1 picture, 8 bytes decoded"});
    row("JPG with damaged pixels", jpgPageOf(TinyPictures::jpg().chopped(4) + hex("ff d9")),
        {"offset 14: warning: picture-damaged: JPG picture is corrupt (picture data)",
         "ok, 1 picture, 8 bytes decoded"});
    row("huge PNG", pngPageOf(hugePng()),
        {"offset 14: error: picture-too-large: picture of 30000 x 30000 pixels, 3600000000 bytes: "
         "decoding takes more than 1073741824 bytes"});

    row("magic of the model", changed(slidePage(), 14, 'p'),
        {"offset 14: error: bad-model-magic: no slide animation data: it does not begin with "
         "\"PTAM\""});
    row("version of the model", changed(slidePage(), 21, 1),
        {"offset 18: error: bad-model-version: unknown version 1 of slide animation data"});
    const QByteArray cut = "error: short-model: the slide animation data is truncated or corrupt: "
                           "it ends within ";
    const QByteArray model = modelBytes(
        {pageWith({shapeAt(1, 0, 0), shapeAt(2, 0, 0)}, newEffects("click 1, with 1"))}, 4, 3);
    row("head cut off", pageOf(model.left(23)), {"offset 14: " + cut + "its head"});
    row("number of pages cut off", pageOf(model.left(27)),
        {"offset 38: " + cut + "the number of pages"});
    row("page cut off", pageOf(model.left(60)), {"offset 42: " + cut + "page 0"});
    row("number of shapes cut off", pageOf(model.left(123)),
        {"offset 135: " + cut + "the number of shapes of page 0"});
    row("shape cut off", pageOf(model.left(237)),
        {"offset 250: " + cut + "shape 2 of 2 of page 0"});
    row("number of effects cut off", pageOf(model.left(347)),
        {"offset 361: " + cut + "the number of effects of page 0"});
    row("effect cut off", pageOf(model.left(415)),
        {"offset 429: " + cut + "effect 2 of 2 of page 0"});
    row("picture that claims 4 GiB", changed(pageOf(model), 173, '\x7F'),
        {"offset 139: " + cut + "shape 1 of 2 of page 0"});
    row("bytes after the model", pageOf(modelBytes({pageWith({})}, 4, 3) + "x"),
        {"offset 143: warning: bytes-after-model: the slide animation data is followed by 1 byte "
         "that is ignored",
         ok});

    row("no page", slidePage(),
        {"offset 38: error: no-page: the slide animation data has no pages"});
    row("several pages", pageOf(modelBytes({pageWith({}), pageWith({}, {}, 7)}, 4, 3)),
        {"offset 38: note: several-pages: of 2 pages only the one is shown whose number is that of "
         "the file in its document",
         ok2});
    const QByteArrayList twice{
        "offset 38: note: several-pages: of 2 pages only the one is shown whose number is that of "
        "the file in its document",
        "offset 42: error: repeated-page-id: page 0 is not shown: a later one has the same number"};
    row("page twice", twins(pageWith({})), twice);
    row("broken page that another one replaces", twins(newPage({}, {}, "text", 0)), twice);
    row("no background", pageOf(modelBytes({newPage({}, {}, {}, 5)}, 4, 3)),
        {"offset 48: error: no-background: page 5 is not shown: it has no background"});
    row("broken background", pageOf(modelBytes({newPage({}, {}, "text", 5)}, 4, 3)),
        {"offset 48: error: picture-undecodable: background of page 5: neither a JPG nor a PNG "
         "picture"});
    row("background of another size", pageOf(modelBytes({pageWith({})}, 4, 3.5F)),
        {"offset 48: warning: page-size-mismatch: background of page 0: 4 x 3 pixels, but pages of "
         "4 x 4",
         ok});
    row("page without a size", pageOf(modelBytes({pageWith({})}, 0.9F, AnimModel::kNaN)),
        {"offset 48: warning: page-size-mismatch: background of page 0: 4 x 3 pixels, but pages of "
         "1 x 0",
         ok});

    row("shape without a picture", slideWith({newShape(3)}),
        {"offset 139: warning: shape-without-picture: shape 3 of page 0 has no picture", ok});
    row("shape with a broken picture", slideWith({newShape(3, 0, 0, 4, 3, "text")}),
        {"offset 177: error: picture-undecodable: shape 3 of page 0: neither a JPG nor a PNG "
         "picture"});
    row("an error, then a warning",
        slideWith({newShape(3, 0, 0, 4, 3, "text")}, {newEffect(kClick, 1, 9)}),
        {"offset 177: error: picture-undecodable: shape 3 of page 0: neither a JPG nor a PNG "
         "picture",
         "offset 185: warning: effect-without-shape: effect 1 of page 0 shows nothing: there is no "
         "shape 9"});
    row("shape twice", slideWith({shapeAt(3, 0, 0), shapeAt(4, 0, 0), shapeAt(3, 0, 0)}),
        {"offset 139: error: repeated-shape-id: shape 3 of page 0 is not shown: a later one has "
         "the "
         "same id"});
    row("broken shape that another one replaces",
        slideWith({newShape(3, 0, 0, 4, 3, "text"), shapeAt(3, 0, 0)}),
        {"offset 139: error: repeated-shape-id: shape 3 of page 0 is not shown: a later one has "
         "the same id"});
    row("shape partly off the page", slideWith({shapeAt(3, -2, 1)}),
        {"offset 139: note: shape-partly-off-page: shape 3 of page 0, 4 x 3 pixels at -1, 1, is "
         "partly off the page",
         ok2});
    const QByteArray off = "shape-off-page: shape 3 of page 0, 4 x 3 pixels at ";
    row("shape to the right of the page", slideWith({shapeAt(3, 4, 0)}),
        {"offset 139: error: " + off + "4, 0, is off the page"});
    row("shape to the left of the page", slideWith({shapeAt(3, -4.5F, 0)}),
        {"offset 139: error: " + off + "-4, 0, is off the page"});
    row("shape above the page", slideWith({shapeAt(3, 0, -3.5F)}),
        {"offset 139: error: " + off + "0, -3, is off the page"});
    row("shape below the page", slideWith({shapeAt(3, 9, 3)}, {newEffect(kClick, 1, 3)}),
        {"offset 139: error: " + off + "9, 3, is off the page"});
    row("shape far away", slideWith({shapeAt(3, 1e30F, -1e30F)}),
        {"offset 139: error: " + off + "2147483647, -2147483648, is off the page"});
    row("shape that crosses the page as it enters",
        slideWith({shapeAt(3, 4, 0)}, {newEffect(kClick, 1, 3)}),
        {"offset 139: warning: " + off + "4, 0, is off the page but while it moves", ok2});
    row("shape that crosses the page as it leaves",
        slideWith({shapeAt(3, -4.5F, 0)}, {newEffect(kClick, 1, 3, kLeave)}),
        {"offset 139: warning: " + off + "-4, 0, is off the page but while it moves", ok2});
    row("shape that enters beside the page",
        slideWith({shapeAt(3, -4.5F, 0)}, {newEffect(kClick, 1, 3)}),
        {"offset 139: error: " + off + "-4, 0, is off the page"});
    row("shape that leaves beside the page",
        slideWith({shapeAt(3, 4, 0)}, {newEffect(kClick, 1, 3, kLeave)}),
        {"offset 139: error: " + off + "4, 0, is off the page"});
    row("shape that enters from beside the page at once",
        slideWith({shapeAt(3, 4, 0)}, {newEffect(kClick, 0, 3)}),
        {"offset 139: error: " + off + "4, 0, is off the page",
         "offset 254: warning: zero-length-step: step 1 of page 0 has no duration"});
    row("shape that leaves for the edge of a page smaller than its background",
        pageOf(modelBytes({pageWith({shapeAt(3, 4, 0)}, {newEffect(kClick, 1, 3, kLeave)})}, 1, 3)),
        {"offset 48: warning: page-size-mismatch: background of page 0: 4 x 3 pixels, but pages of "
         "1 x 3",
         "offset 139: warning: " + off + "4, 0, is off the page but while it moves", ok2});
    row("shape narrower than its picture that enters beside the page",
        slideWith({newShape(3, -4.5F, 0, 1, 3, TinyPictures::png())}, {newEffect(kClick, 1, 3)}),
        {"offset 139: warning: " + off + "-4, 0, is off the page but while it moves", ok2});

    row("effect without a shape", slideWith({}, {newEffect(kClick, 1, 9)}),
        {"offset 143: warning: effect-without-shape: effect 1 of page 0 shows nothing: there is no "
         "shape 9",
         ok});
    row("unknown triggers",
        slideWith({shapeAt(3, 0, 0)},
                  {newEffect(0, 1, 3), newEffect(kAfter, 1, 3), newEffect(4, 1, 3)}),
        {"offset 317: warning: unknown-trigger: effect 1 of page 0 has the unknown trigger 0 and "
         "starts with the previous one",
         "offset 445: warning: unknown-trigger: effect 3 of page 0 has the unknown trigger 4 and "
         "starts with the previous one",
         ok2});
    row("steps without a duration",
        slideWith({shapeAt(3, 0, 0)},
                  {newEffect(kAfter, -1, 3), newEffect(kClick, 1, 3), newEffect(kAfter, 0, 3),
                   newEffect(kClick, 0.0009F, 3), newEffect(kAfter, AnimModel::kNaN, 3)}),
        {"offset 254: warning: zero-length-step: step 1 of page 0 has no duration",
         "offset 446: warning: zero-length-step: step 3 of page 0 has no duration", ok2});
}

void TestDocpageCheck::findings()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArrayList, findings);
    place->write(text("page"), content);
    const Outcome outcome = place->run(words("check page"));
    QCOMPARE(outcome.out, "page: " + findings.join("\npage: ") + '\n');
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.status, findings.last().startsWith("ok") ? 0 : 1);
}

// The end of a file's name tells which page is asked for. The others decide nothing.
void TestDocpageCheck::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArrayList>("findings");

    const auto row = [](const char *name, const QByteArrayList &findings) {
        QTest::newRow(name) << text(name) << findings;
    };
    const auto unused = [](const char *page, const char *number) {
        return QByteArray("warning: page-unused: page ") + page +
               " is not shown: the file's name ends in " + number;
    };
    const auto missing = [](const char *number) {
        return QByteArray("page-missing: there is no page ") + number +
               ", the number that the file's name ends in";
    };
    const QByteArray ok = "ok, 1 picture, 48 bytes decoded";
    const QByteArray broken = "offset 149: error: picture-undecodable: background of page 7: "
                              "neither a JPG nor a PNG picture";
    row("page_3", {"offset 143: " + unused("7", "3"), ok});
    row("page_65539", {"offset 143: " + unused("7", "3"), ok});
    row("{id}_007", {"offset 42: " + unused("3", "7"), broken});
    row("page_4", {"offset 38: error: " + missing("4"), "offset 42: " + unused("3", "4"),
                   "offset 143: " + unused("7", "4")});
    row("page_3_0", {"offset 38: warning: " + missing("0"), broken});
    row("scan_2024", {"offset 38: warning: " + missing("2024"), broken});
    const QByteArrayList unknown{"offset 38: note: several-pages: of 2 pages only the one is shown "
                                 "whose number is that of the file in its document",
                                 broken};
    row("page_99999999999", unknown);
    row("page_3.bin", unknown);
    row("page4", unknown);
}

void TestDocpageCheck::names()
{
    QFETCH(QString, name);
    QFETCH(QByteArrayList, findings);
    place->write(name, pageOf(modelBytes({pageWith({}, {}, 3), newPage({}, {}, "text", 7)}, 4, 3)));
    const Outcome outcome = place->run({text("check"), name});
    const QByteArray begin = name.toUtf8() + ": ";
    QCOMPARE(outcome.out, begin + findings.join('\n' + begin) + '\n');
    QCOMPARE(outcome.status, findings.last().startsWith("ok") ? 0 : 1);
}

// A number that a file's name happens to end in is no reason to refuse the file.
void TestDocpageCheck::numberByChance()
{
    place->write(text("scan_2024"), slideWith({}));
    const Outcome outcome = place->run(words("check scan_2024"));
    QCOMPARE(outcome.out,
             QByteArray("scan_2024: offset 38: warning: page-missing: there is no page 2024, the "
                        "number that the file's name ends in\n"
                        "scan_2024: ok, 1 picture, 48 bytes decoded\n"));
    QCOMPARE(outcome.status, 0);
}

// What a decoder does to itself is told, and the pictures after it are checked all the same while
// there is time for the file.
void TestDocpageCheck::brokenDecoders_data()
{
    QTest::addColumn<QByteArray>("picture");
    QTest::addColumn<QByteArray>("finding");

    const auto row = [](const char *picture, const char *finding) {
        QTest::newRow(picture) << QByteArray(picture) << QByteArray(finding);
    };
    row("broken sound", "");
    row("broken otherwise", "picture-undecodable: shape 1 of page 0: neither a JPG nor a PNG "
                            "picture");
    row("broken abort", "decoder-crashed: shape 1 of page 0: the decoder crashes: Aborted");
    row("broken exit", "decoder-crashed: shape 1 of page 0: the decoder crashes: no answer");
    row("broken verdict 0", ""); // a right answer, whoever sends it
    for (const char *picture : {"broken verdict -1", "broken verdict 7"})
        row(picture, "decoder-crashed: shape 1 of page 0: the decoder crashes: no answer");
    row("broken loop",
        "decoder-timed-out: shape 1 of page 0: the decoder takes too long\n"
        "page: offset 226: error: picture-unchecked: shape 2 of page 0: not decoded: "
        "the pictures before it took all the time there is for a file");
    if (!limitsMemory()) // a sanitizer or an emulator reserves its own and takes no limit
        return;
    for (const char *picture : {"broken greedy", "broken pieces"})
        row(picture, "picture-too-large: shape 1 of page 0: picture: decoding takes more than "
                     "104857600 bytes");
}

void TestDocpageCheck::brokenDecoders()
{
    QFETCH(QByteArray, picture);
    QFETCH(QByteArray, finding);
    place->write(text("page"), slideWith({newShape(1, 0, 0, 4, 3, picture), shapeAt(2, 0, 0)}));
    place->environment.insert(text("QT_PLUGIN_PATH"), text(TEST_PLUGINS));
    const auto limitProcessorTime = [] {
        const rlimit limit = {2, RLIM_INFINITY}; // seconds, of each process
        ::setrlimit(RLIMIT_CPU, &limit);
    };
    const Outcome outcome =
        place->run(words("check --max-memory 100 page png_page"), limitProcessorTime);
    const QByteArray first = finding.isEmpty() ? QByteArray("ok, 3 pictures, 144 bytes decoded")
                                               : "offset 177: error: " + finding;
    QCOMPARE(outcome.out, "page: " + first + "\npng_page: ok, 1 picture, 48 bytes decoded\n");
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.status, finding.isEmpty() ? 0 : 1);
}

void TestDocpageCheck::json()
{
    const QString name = text("a \"page\"\n\xC3\xA4");
    place->write(name, slideWith({shapeAt(3, -2, 1)}, {newEffect(kClick, 1, 9)}) + "x");
    const Outcome outcome =
        place->run({text("check"), text("--json"), text("png_page"), text("gone"), name});
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.out, QByteArray(R"([
    {
        "decodedBytes": 48,
        "file": "png_page",
        "findings": [
        ],
        "findingsLeftOut": 0,
        "format": "png",
        "formatCode": 4,
        "images": [
            {
                "bytes": 48,
                "height": 3,
                "offset": 14,
                "width": 4
            }
        ],
        "ok": true,
        "pictures": 1
    },
    {
        "decodedBytes": 0,
        "file": "gone",
        "findings": [
            {
                "code": "unreadable",
                "message": "No such file or directory",
                "offset": 0,
                "severity": "error"
            }
        ],
        "findingsLeftOut": 0,
        "images": [
        ],
        "ok": false,
        "pictures": 0
    },
    {
        "decodedBytes": 96,
        "file": "a \"page\"\n{a}",
        "findings": [
            {
                "code": "shape-partly-off-page",
                "message": "shape 3 of page 0, 4 x 3 pixels at -1, 1, is partly off the page",
                "offset": 139,
                "severity": "note"
            },
            {
                "code": "effect-without-shape",
                "message": "effect 1 of page 0 shows nothing: there is no shape 9",
                "offset": 254,
                "severity": "warning"
            },
            {
                "code": "trailing-bytes",
                "message": "the payload is followed by 1 byte that is ignored",
                "offset": 318,
                "severity": "warning"
            }
        ],
        "findingsLeftOut": 0,
        "format": "slide-animation",
        "formatCode": 3,
        "images": [
            {
                "bytes": 48,
                "height": 3,
                "offset": 48,
                "width": 4
            },
            {
                "bytes": 48,
                "height": 3,
                "offset": 177,
                "width": 4
            }
        ],
        "ok": true,
        "pictures": 2
    }
]
)")
                              .replace("{a}", "\xC3\xA4"));
}

void TestDocpageCheck::handlesAll()
{
    place->write(text("a\nb"), "text");
    const Outcome outcome = place->run({text("check"), text("gone"), text("a\nb"), text("png_page"),
                                        text("slide_page"), text("jpg_page")});
    QCOMPARE(outcome.out,
             QByteArray("gone: offset 0: error: unreadable: No such file or directory\n"
                        "a\\nb: offset 0: error: short-header: not a page result file: too short "
                        "for its header (4 of 14 bytes)\n"
                        "png_page: ok, 1 picture, 48 bytes decoded\n"
                        "slide_page: offset 38: error: no-page: the slide animation data has no "
                        "pages\n"
                        "jpg_page: ok, 1 picture, 8 bytes decoded\n"));
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.status, 1);
}

void TestDocpageCheck::countsWhatItDoesNotTell()
{
    Effects effects;
    for (int i = 0; i < 1001; ++i)
        effects.push_back(newEffect(kClick, 1, 9));
    place->write(text("page"), slideWith({}, effects));
    Outcome outcome = place->run(words("check page"));
    QCOMPARE(outcome.out.count('\n'), 1002);
    QVERIFY(outcome.out.endsWith("\npage: and 1 finding more\n"
                                 "page: ok, 1 picture, 48 bytes decoded\n"));
    outcome = place->run(words("check --json page"));
    QVERIFY(outcome.out.contains("\"findingsLeftOut\": 1,"));
}

// Of more than it tells, it leaves out the others.
void TestDocpageCheck::tellsErrorsFirst()
{
    Effects effects;
    for (int i = 0; i < 1001; ++i)
        effects.push_back(newEffect(kClick, 1, 9));
    place->write(text("page"),
                 pageOf(modelBytes({pageWith({}, effects), newPage({}, {}, {}, 5)}, 4, 3)));
    const Outcome outcome = place->run(words("check page"));
    QCOMPARE(outcome.out.count(": warning: effect-without-shape: "), 999);
    QCOMPARE(outcome.out.count(": note: "), 0);
    QVERIFY(outcome.out.endsWith("error: no-background: page 5 is not shown: it has no background\n"
                                 "page: and 3 findings more\n"));
    QCOMPARE(outcome.status, 1);
}

void TestDocpageCheck::unreadable_data()
{
    BadInputs::addRows();
}

void TestDocpageCheck::unreadable()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, fault);
    BadInputs::make(*place);
    verifyFails({text("check"), name}, 1, {},
                name.toUtf8() + ": offset 0: error: unreadable: " + fault + '\n');
}

// What is told when the image, the decoder or the slide takes more than is allowed.
void TestDocpageCheck::memory_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("megabytes");
    QTest::addColumn<QByteArray>("line");

    const auto row = [](const char *name, const QByteArray &content, const char *megabytes,
                        const char *line) {
        QTest::newRow(name) << content << text(megabytes) << QByteArray(line);
    };
    const QByteArray wide = PageFiles::picture(Qt::red, "PNG", {1024, 1280}); // 5 MiB
    row("enough", pngPageOf(wide), "64", "ok, 1 picture, 5242880 bytes decoded");
    row("too little for the image", pngPageOf(wide), "4",
        "offset 14: error: picture-too-large: picture of 1024 x 1280 pixels, 5242880 bytes: "
        "decoding takes more than 4194304 bytes");
    const auto slide = [](const QByteArray &picture) {
        return pageOf(
            modelBytes({newPage({newShape(1, 0, 0, 4, 3, picture)}, {}, picture, 0)}, 1024, 1280));
    };
    const QByteArray grey =
        PageFiles::encoded(QImage(1024, 1280, QImage::Format_Grayscale8)); // 1.25 MiB
    row("enough for a grey image", pngPageOf(grey), "4", "ok, 1 picture, 1310720 bytes decoded");
    const QByteArray deep = PageFiles::encoded(QImage(1024, 1280, QImage::Format_RGBA64)); // 10 MiB
    row("too little for a deep image", pngPageOf(deep), "9",
        "offset 14: error: picture-too-large: picture of 1024 x 1280 pixels, 10485760 bytes: "
        "decoding takes more than 9437184 bytes");
    row("enough for a slide", slide(wide), "10", "ok, 2 pictures, 10485760 bytes decoded");
    row("too little for a slide", slide(wide), "9",
        "offset 42: error: slide-too-large: page 0: its pictures take 10485760 bytes, more than "
        "9437184");
    row("grey images of a slide, which the player makes deeper", slide(grey), "9",
        "offset 42: error: slide-too-large: page 0: its pictures take 10485760 bytes, more than "
        "9437184");
    row("enough for each of two slides",
        pageOf(modelBytes({newPage({}, {}, wide, 0), newPage({}, {}, wide, 1)}, 1024, 1280)), "9",
        "offset 38: note: several-pages: of 2 pages only the one is shown whose number is that of "
        "the file in its document\n"
        "page: ok, 2 pictures, 10485760 bytes decoded");
    if (!limitsMemory()) // a sanitizer or an emulator reserves its own and takes no limit
        return;
    row("too little for the decoder of PNG", pngPageOf(wide), "5",
        "offset 14: error: picture-too-large: picture of 1024 x 1280 pixels, 5242880 bytes: "
        "decoding takes more than 5242880 bytes");
    const QByteArray jpg = PageFiles::pageResultFile(2, progressiveJpg({2048, 2048}));
    row("enough for the decoder of JPG", jpg, "64", "ok, 1 picture, 16777216 bytes decoded");
    row("too little for the decoder of JPG", jpg, "24",
        "offset 14: error: picture-too-large: picture of 2048 x 2048 pixels, 16777216 bytes: "
        "decoding takes more than 25165824 bytes");
}

void TestDocpageCheck::memory()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, megabytes);
    QFETCH(QByteArray, line);
    place->write(text("page"), content);
    const Outcome outcome =
        place->run({text("check"), text("--max-memory"), megabytes, text("page")});
    QCOMPARE(outcome.out, "page: " + line + '\n');
    QCOMPARE(outcome.status, line.contains(": error: ") ? 1 : 0);
}

void TestDocpageCheck::sampleDeck()
{
    verifyDoes({text("build"), text(SAMPLE_DECK), text("-o"), text("deck")},
               "4 page result files in deck\n");
    const Outcome outcome =
        place->run(words("check deck/page_3 deck/page_2 deck/page_1 deck/page_0"));
    QCOMPARE(outcome.err, QByteArray());
    const QByteArrayList lines = outcome.out.split('\n');
    QCOMPARE(lines.size(), 5);
    QVERIFY2(lines.at(0).startsWith("deck/page_3: ok, 3 pictures, "), lines.at(0));
    QVERIFY2(lines.at(1).startsWith("deck/page_2: ok, 3 pictures, "), lines.at(1));
    QVERIFY2(lines.at(2).startsWith("deck/page_1: ok, 5 pictures, "), lines.at(2));
    QVERIFY2(lines.at(3).startsWith("deck/page_0: ok, 3 pictures, "), lines.at(3));
    QCOMPARE(outcome.status, 0);
}

// Also when the header announces the shorter length.
void TestDocpageCheck::everyPrefixHasAnError()
{
    const QByteArray page = slideWith({shapeAt(1, 0, 0)}, {newEffect(kClick, 1, 1)});
    QStringList files;
    const auto add = [&](const QByteArray &content) {
        files += QString::number(files.size());
        place->write(files.last(), content);
    };
    for (int size = 0; size < page.size(); ++size) {
        add(page.left(size));
        if (size >= 14)
            add(pageOf(page.mid(14, size - 14)));
    }
    const QHash<QString, bool> shown = areShown(files);
    QCOMPARE(shown.size(), files.size());
    for (const QString &file : files)
        QVERIFY2(!shown.value(file), qPrintable(file));
}

// Of pictures, and of slides without shapes, there is an error when there is no image.
void TestDocpageCheck::agreesWithTheDisplayManager()
{
    constexpr quint32 kSeed = 20260101;
    QRandomGenerator random(kSeed);
    const QByteArray pages[] = {pngPage(), jpgPage(), slideWith({})};
    QStringList files;
    for (int round = 0; round < 400; ++round) {
        QByteArray page = pages[random.bounded(3)];
        for (int i = random.bounded(1, 4); i > 0; --i)
            page[random.bounded(page.size())] = static_cast<char>(random.bounded(256));
        if (random.bounded(4) == 0)
            page.truncate(random.bounded(1, page.size()));
        QVERIFY(QDir(place->path({})).mkdir(QString::number(round)));
        files += text("%1/page_0").arg(round);
        place->write(files.last(), page);
    }
    const QHash<QString, bool> shown = areShown(files);
    const LogSpy log;
    int images = 0;
    for (const QString &file : files) {
        const ManagerPointer manager(CreateDisplayMgr());
        startDocument(*manager, DocCovRslt::DOCRSLT_PICTURE, {place->path(file)});
        const LibraryLog::DecoderSilence silence;
        const bool hasImage = !manager->GetImg().isNull();
        QVERIFY2(hasImage == shown.value(file), place->read(file).toHex());
        images += hasImage ? 1 : 0;
    }
    QVERIFY(images > 20);
    QVERIFY(files.size() - images > 20);
}

void TestDocpageCheck::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");

    const auto row = [](const char *arguments, const char *message) {
        QTest::newRow(arguments) << words(arguments) << QByteArray(message);
    };
    row("check", "No FILE given.");
    row("check --json", "No FILE given.");
    row("check png_page --force", "Unknown option 'force'.");
    row("check png_page --max-memory", "Missing value after '--max-memory'.");
    row("check png_page --max-memory 0", "'0' is no number of megabytes.");
    row("check png_page --max-memory -1", "'-1' is no number of megabytes.");
    row("check png_page --max-memory 1GB", "'1GB' is no number of megabytes.");
    row("check png_page --max-memory 1048577", "'1048577' is no number of megabytes.");
}

void TestDocpageCheck::wrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    verifyFails(arguments, 2, "docpage: " + message + "\nTry 'docpage check --help'.\n");
}

QTEST_GUILESS_MAIN(TestDocpageCheck)
#include "tst_docpage_check.moc"
