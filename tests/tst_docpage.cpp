#include "BadInputs.h"
#include "DocpageTest.h"
#include "ResourceLimits.h"
#include "emfdeal/EmfDeal.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PageFile.h"

#include <KxBase/KxLog.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

// For the child: it gets 512 MiB at most.
void limitMemory()
{
    const rlimit limit = {512 << 20, 512 << 20};
    if (limitsMemory())
        ::setrlimit(RLIMIT_AS, &limit);
}

} // namespace

// In the library's place for this program's own calls, not for those of the program under test.
int EmfDeal::decodeEmf(const QString & /*path*/, QByteArray & /*data*/)
{
    for (const char *line : {"a line of the library", "the library's last line"})
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, "VPrnt", "%s", line);
    return DocCovRslt::PAGE_FORMAT_NONE;
}

/// The program, run as a user runs it.
class TestDocpage : public DocpagePagesTest
{
    Q_OBJECT

private Q_SLOTS:
    void help_data();
    void help();
    void version();
    void wrongUsage_data();
    void wrongUsage();
    void manPageHasEverything();

    void namesWithColon();
    void badInput_data();
    void badInput();
    void badPageFile_data();
    void badPageFile();
    void hugeAnnouncementIsCheap();
    void tooLittleMemory();
    void faultAfterTheHeader();

    void renderPixels_data();
    void renderPixels();
    void renderTakesFilesOfFolder();
    void renderCountsWhatCannotBeRead();
    void renderRefusesBrokenPictures();
    void shell_data();
    void shell();
    void renderOutOfRange_data();
    void renderOutOfRange();
    void renderRefuses_data();
    void renderRefuses();

    void namesOfAllKinds_data();
    void namesOfAllKinds();
    void speaksEnglishInEveryLocale();
    void roundTrip();
};

void TestDocpage::help_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QStringList>("mentions");

    const auto row = [](const char *arguments, const char *begin, const char *mentions) {
        QTest::newRow(arguments) << words(arguments) << QByteArray(begin) << words(mentions);
    };
    const char program[] = "Usage: docpage COMMAND ...\n\nMakes, examines and renders";
    const char commands[] =
        "wrap encode info check unwrap build model render play --help --version";
    row("--help", program, commands);
    row("-h", program, commands);
    row("--help wrap", program, commands);
    const char wrap[] =
        "Usage: docpage wrap PICTURE... -o DIR [--force]\n\nMakes page result files";
    row("wrap --help", wrap, "-h --help -o --output <DIR> --force PICTURE");
    row("wrap -h", wrap, "-h --help -o --output <DIR> --force PICTURE");
    row("wrap nothing --bogus --help", wrap, "--help");
    row("encode --help",
        "Usage: docpage encode PICTURE... -o DIR [--force]\n\nMakes page result files",
        "-h --help -o --output <DIR> --force PICTURE");
    row("info --help", "Usage: docpage info [--json] FILE...\n\nTells of each page result file",
        "-h --help --json FILE");
    row("check --help",
        "Usage: docpage check [--max-memory MB] [--json] FILE...\n\nTells of each page result file",
        "-h --help --max-memory <MB> --json FILE");
    row("unwrap --help", "Usage: docpage unwrap FILE -o OUT [--force]\n\nSaves the payload",
        "-h --help -o --output <OUT> --force FILE");
    row("build --help",
        "Usage: docpage build DECK.json -o DIR [--force]\n\nMakes page result files",
        "-h --help -o --output <DIR> --force DECK.json");
    row("model --help",
        "Usage: docpage model FILE... [--json [--extract DIR] [-o OUT.json] [--force]]\n\nTells "
        "all that",
        "-h --help --json --extract <DIR> -o --output <OUT.json> --force FILE");
    row("render --help",
        "Usage: docpage render DOCUMENT... -o OUT.png [--page N] [--step S] [--ms M]\n             "
        "         "
        "[--force]\n\nSaves one page",
        "-h --help -o --output <OUT.png> --force --page <N> --step <S> --ms <M> DOCUMENT");
    row("play --help",
        "Usage: docpage play DOCUMENT... -o DIR [--fps FPS] [--page N]\n                    "
        "[--hashes] "
        "[--force]\n\nSaves every frame",
        "-h --help -o --output <DIR> --force --fps <FPS> --page <N> --hashes DOCUMENT");
}

void TestDocpage::help()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, begin);
    QFETCH(QStringList, mentions);
    const Outcome outcome = place->run(arguments);
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.out.left(begin.size()), begin);
    QVERIFY(outcome.out.endsWith('\n'));
    for (const QByteArray &line : outcome.out.split('\n'))
        QVERIFY2(line.size() < 80, line.constData());
    const QStringList found =
        text(outcome.out.constData()).split(QRegularExpression(text("[\\s,]+")));
    for (const QString &mention : mentions)
        QVERIFY2(found.contains(mention), qPrintable(mention));
}

void TestDocpage::version()
{
    verifyDoes({text("--version")}, "docpage " DOCPAGE_VERSION "\n");
}

void TestDocpage::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("err");

    const auto row = [](const char *arguments, const char *message, const char *help) {
        QTest::newRow(*arguments ? arguments : "(nothing)")
            << words(arguments)
            << QByteArray("docpage: ") + message + "\nTry '" + help + " --help'.\n";
    };
    row("", "No command given.", "docpage");
    row("bogus", "Unknown command 'bogus'.", "docpage");
    row("bogus --json", "Unknown command 'bogus'.", "docpage");
    row("Wrap", "Unknown command 'Wrap'.", "docpage");
    row("--bogus", "Unknown option 'bogus'.", "docpage");
    row("--force wrap red.png -o new", "Unknown option 'force'.", "docpage");
    row("wrap", "No PICTURE given.", "docpage wrap");
    row("wrap -o new", "No PICTURE given.", "docpage wrap");
    row("wrap red.png", "No output given, -o DIR is missing.", "docpage wrap");
    row("wrap red.png -o", "Missing value after '-o'.", "docpage wrap");
    row("wrap red.png --output=", "No output given, -o DIR is missing.", "docpage wrap");
    row("wrap red.png -o new --bogus", "Unknown option 'bogus'.", "docpage wrap");
    row("wrap red.png -o new --json", "Unknown option 'json'.", "docpage wrap");
    row("wrap red.png -o new --force=yes", "Unexpected value after '--force'.", "docpage wrap");
    row("info", "No FILE given.", "docpage info");
    row("info --json", "No FILE given.", "docpage info");
    row("info png_page -o new", "Unknown option 'o'.", "docpage info");
    row("unwrap", "No FILE given.", "docpage unwrap");
    row("unwrap png_page", "No output given, -o OUT is missing.", "docpage unwrap");
    row("unwrap png_page jpg_page -o new", "More than one FILE given.", "docpage unwrap");
    row("build", "No DECK.json given.", "docpage build");
    row("build deck.json", "No output given, -o DIR is missing.", "docpage build");
    row("build deck.json deck.json -o new", "More than one DECK.json given.", "docpage build");
    row("model", "No FILE given.", "docpage model");
    row("model slide_page -o new", "-o is for --json only.", "docpage model");
    row("model slide_page --json --output=", "No output given, -o OUT.json is missing.",
        "docpage model");
    row("model slide_page --extract new", "--extract is for --json only.", "docpage model");
    row("model slide_page --json --extract=", "The folder to extract to has no name.",
        "docpage model");
    row("model slide_page --json --force", "--force is for --extract or -o only.", "docpage model");
    row("render", "No DOCUMENT given.", "docpage render");
    row("render png_page", "No output given, -o OUT.png is missing.", "docpage render");
    row("render png_page -o new", "The output 'new' does not end in .png.", "docpage render");
    row("render png_page -o new.jpg", "The output 'new.jpg' does not end in .png.",
        "docpage render");
    row("render png_page -o new.png --page", "Missing value after '--page'.", "docpage render");
    row("render png_page -o new.png --page x", "'x' is no page number.", "docpage render");
    row("render png_page -o new.png --page=", "'' is no page number.", "docpage render");
    row("render png_page -o new.png --page -1", "'-1' is no page number.", "docpage render");
    row("render png_page -o new.png --page 1.5", "'1.5' is no page number.", "docpage render");
    row("render png_page -o new.png --page 4294967296", "'4294967296' is no page number.",
        "docpage render");
}

void TestDocpage::wrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, err);
    verifyFails(arguments, 2, err);
}

void TestDocpage::manPageHasEverything()
{
    QFile file(QStringLiteral(DOCPAGE_MAN_PAGE));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll()).replace(text("\\-"), text("-"));
    QVERIFY(page.contains(text("\"DocDisplay " DOCPAGE_VERSION "\"")));

    const QRegularExpression option(text("(?<![\\w-])--?[a-z][a-z]*"));
    const auto optionsIn = [&](const QString &where) {
        QSet<QString> options;
        for (auto match = option.globalMatch(where); match.hasNext();)
            options.insert(match.next().captured());
        return options;
    };
    QString help = QString::fromUtf8(place->run({text("--help")}).out);
    const QString list = help.section(text("Commands:\n"), 1).section(text("\n\n"), 0, 0);
    const QStringList lines = list.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 9);
    for (const QString &line : lines) {
        const QString command = line.simplified().section(QLatin1Char(' '), 0, 0);
        const QString its = QString::fromUtf8(place->run({command, text("--help")}).out);
        const QString usage = its.section(text("\n\n"), 0, 0).mid(7).simplified();
        QString heading = page.section(text(".SS docpage ") + command, 1);
        heading.truncate(heading.indexOf(QLatin1Char('\n')));
        heading.remove(QRegularExpression(text("\\\\f[IP]")));
        heading.prepend(text("docpage ") + command);
        QCOMPARE(heading, usage);
        help += its;
    }
    QCOMPARE(optionsIn(page.section(text(".SH OPTIONS"), 1).section(text(".SH JSON"), 0, 0)),
             optionsIn(help));
}

// To Qt such a name is that of a resource.
void TestDocpage::namesWithColon()
{
    place->write(text("./:red.png"), TinyPictures::png());
    verifyDoes(words("wrap :red.png -o :new"), "1 page result file in ./:new\n");
    QCOMPARE(place->read(text("./:new/page_0")), pngPage());
    place->write(text("./:page"), pngPage());
    verifyDoes(words("info :page :new/page_0"),
               "./:page: PNG picture, 73 bytes, 4 x 3 pixels\n"
               "./:new/page_0: PNG picture, 73 bytes, 4 x 3 pixels\n");
    verifyDoes(words("unwrap :page --output=:again.png"));
    QCOMPARE(place->read(text("./:again.png")), TinyPictures::png());
    verifyDoes(words("render :page -o :shown.png"));
    QCOMPARE(QImage(place->path(text("./:shown.png"))).size(), QSize(4, 3));
    QVERIFY(QFile::rename(place->path(text("./:page")), place->path(text("./:new/:page"))));
    verifyDoes(words("render :new --page 1 -o page_0.png"));
    verifyDoes(words("render :new --page 0 -o page_1.png"));
    QCOMPARE(place->read(text("page_0.png")), place->read(text("page_1.png")));

    verifyFails(words("info :gone"), 1, "docpage: ./:gone: No such file or directory\n");
    verifyFails(words("unwrap :new/page_0 -o :red.png"), 1,
                "docpage: ./:red.png: already exists; use --force to replace it\n");
    verifyFails(words("unwrap :new/page_0 -o :new/page_0 --force"), 1,
                "docpage: ./:new/page_0: would replace an input\n");
    verifyFails(words("render :new -o other.png --page :1"), 2,
                "docpage: ':1' is no page number.\nTry 'docpage render --help'.\n");
}

void TestDocpage::badInput_data()
{
    BadInputs::addRows();
}

void TestDocpage::badInput()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, fault);
    BadInputs::make(*place);
    const QByteArray line = "docpage: " + name.toUtf8() + ": " + fault + '\n';
    verifyFails({text("info"), name}, 1, line);
    verifyFails({text("unwrap"), name, text("-o"), text("new")}, 1, line);
    if (fault != "is a directory") // which is a document
        verifyFails({text("render"), name, text("-o"), text("new.png")}, 1, line);
    verifyFails({text("render"), name, text("png_page"), text("-o"), text("new.png")}, 1, line);
    verifyFails({text("wrap"), name, text("-o"), text("new")}, 1, line,
                "0 page result files in new\n");
}

void TestDocpage::badPageFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("fault");

    const auto row = [](const char *name, const QByteArray &content, const char *fault) {
        QTest::newRow(name) << content << QByteArray(fault);
    };
    const QByteArray payload60(60, 'p');
    const char foreign[] = "not a page result file: it does not begin with 88 88 88 88";
    row("picture", TinyPictures::png(), foreign);
    row("text", "This is a text of more than 14 bytes.", foreign);
    row("byte of the magic number changed", hex("88 88 88 89 01 01 04 00 00 00 01 00 00 00 00"),
        foreign);
    row("one byte", "\x88", "not a page result file: too short for its header (1 of 14 bytes)");
    row("13 bytes of a header", hex("88 88 88 88 01 01 04 00 00 00 01 00 00"),
        "not a page result file: too short for its header (13 of 14 bytes)");
    row("version 0x0102", hex("88 88 88 88 02 01 04 00 00 00 01 00 00 00 00"),
        "unknown version 0x0102 of a page result file");
    row("version 0", hex("88 88 88 88 00 00 04 00 00 00 01 00 00 00 00"),
        "unknown version 0x0000 of a page result file");
    row("format 0", hex("88 88 88 88 01 01 00 00 00 00 01 00 00 00 00"), "unsupported format 0");
    row("format 1", hex("88 88 88 88 01 01 01 00 00 00 01 00 00 00 00"), "unsupported format 1");
    row("format 5", hex("88 88 88 88 01 01 05 00 00 00 01 00 00 00 00"), "unsupported format 5");
    row("format 6", hex("88 88 88 88 01 01 06 00 00 00 01 00 00 00 00"), "unsupported format 6");
    row("format -1", hex("88 88 88 88 01 01 ff ff ff ff 01 00 00 00 00"), "unsupported format -1");
    row("format -2147483648", hex("88 88 88 88 01 01 00 00 00 80 01 00 00 00 00"),
        "unsupported format -2147483648");
    row("no payload", hex("88 88 88 88 01 01 04 00 00 00 00 00 00 00"), "empty payload");
    row("payload of 0 bytes, others follow", hex("88 88 88 88 01 01 04 00 00 00 00 00 00 00 00"),
        "empty payload");
    row("payload of -1 bytes", hex("88 88 88 88 01 01 04 00 00 00 ff ff ff ff") + payload60,
        "corrupt: the header announces -1 payload bytes");
    row("60 of 100 bytes", hex("88 88 88 88 01 01 04 00 00 00 64 00 00 00") + payload60,
        "truncated: the header announces 100 payload bytes, 60 are there");
    row("0 of 1 bytes", hex("88 88 88 88 01 01 03 00 00 00 01 00 00 00"),
        "truncated: the header announces 1 payload bytes, 0 are there");
    row("last byte missing", pngPage().chopped(1),
        "truncated: the header announces 73 payload bytes, 72 are there");
    row("60 of 2147483647 bytes", hex("88 88 88 88 01 01 02 00 00 00 ff ff ff 7f") + payload60,
        "truncated: the header announces 2147483647 payload bytes, 60 are there");
}

void TestDocpage::badPageFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, fault);
    place->write(text("bad"), content);

    const QByteArray line = "docpage: bad: " + fault + '\n';
    verifyFails(words("info bad"), 1, line);
    verifyFails(words("info --json bad"), 1, line,
                "[\n"
                "    {\n"
                "        \"error\": \"" +
                    fault +
                    "\",\n"
                    "        \"file\": \"bad\"\n"
                    "    }\n"
                    "]\n");
    verifyFails(words("unwrap bad -o new"), 1, line);
    verifyFails(words("render bad -o new.png"), 1, line);
}

void TestDocpage::hugeAnnouncementIsCheap()
{
    place->write(text("bad"), hex("88 88 88 88 01 01 02 00 00 00 ff ff ff 7f") + "payload");
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(place->run(words("info bad"), limitMemory).status, 1);
    QCOMPARE(place->run(words("unwrap bad -o new"), limitMemory).status, 1);
    QCOMPARE(place->run(words("render bad -o new.png"), limitMemory).status, 1);
    QVERIFY(timer.elapsed() < 3000);
}

void TestDocpage::tooLittleMemory()
{
    if (!limitsMemory())
        return;
    place->write(text("huge"), hex("88 88 88 88 01 01 02 00 00 00 00 00 00 70"));
    QVERIFY(QFile::resize(place->path(text("huge")), Q_INT64_C(0x7000000E)));
    const Outcome outcome = place->run(words("info huge"), limitMemory);
    QCOMPARE(
        outcome.err,
        QByteArray(
            "docpage: huge: cannot be read: a read error, out of memory, or changed meanwhile\n"));
    QCOMPARE(outcome.status, 1);

    // The picture after it is done all the same.
    place->write(text("huge.jpg"), TinyPictures::jpg());
    QVERIFY(QFile::resize(place->path(text("huge.jpg")), Q_INT64_C(0x7000000E)));
    const Outcome wrapped = place->run(words("wrap huge.jpg red.png -o out"), limitMemory);
    QCOMPARE(wrapped.err, QByteArray("docpage: huge.jpg: out of memory\n"));
    QCOMPARE(wrapped.out, QByteArray("1 page result file in out\n"));
    QCOMPARE(wrapped.status, 1);

    // Not told of the page, but of the call.
    QVERIFY(QFile::resize(place->path(text("huge.jpg")), 256 << 20));
    place->write(text("deck.json"), R"({"slides": [{"background": "huge.jpg"}]})");
    const Outcome built = place->run(words("build deck.json -o new"), limitMemory);
    QCOMPARE(built.err, QByteArray("docpage: deck.json: out of memory\n"));
    QCOMPARE(built.status, 1);
}

void TestDocpage::faultAfterTheHeader()
{
    const QtMessageHandler handler = qInstallMessageHandler(nullptr);
    LibraryLog::divert();
    qInstallMessageHandler(handler);
    const PageFile page = PageFile::read(place->path(text("png_page")));
    KxBase::KxSetLogSink(nullptr, nullptr);
    QCOMPARE(page.fault, text("cannot be read: a read error, out of memory, or changed meanwhile"));
}

void TestDocpage::renderPixels_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("PNG") << pngPage() << QSize(4, 3) << QColor(255, 0, 0);
    QTest::newRow("JPG") << jpgPage() << QSize(2, 2) << QColor(200, 200, 200);
    QTest::newRow("PNG announced as JPG: shown by content")
        << hex("88 88 88 88 01 01 02 00 00 00 49 00 00 00") + TinyPictures::png() << QSize(4, 3)
        << QColor(255, 0, 0);
    QTest::newRow("other picture that the display manager shows")
        << jpgPageOf("P6 1 1 255 \x01\x02\x03") << QSize(1, 1) << QColor(1, 2, 3);
}

void TestDocpage::renderPixels()
{
    QFETCH(QByteArray, content);
    QFETCH(QSize, size);
    QFETCH(QColor, colour);
    place->write(text("page"), content);
    verifyDoes(words("render page -o new.PNG"));
    QVERIFY(place->read(text("new.PNG")).startsWith("\x89PNG"));
    const QImage image(place->path(text("new.PNG")));
    QCOMPARE(image.size(), size);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            QCOMPARE(image.pixelColor(x, y), colour);
    }
}

// To pass over it would give all that follow another number.
void TestDocpage::renderCountsWhatCannotBeRead()
{
    QVERIFY(QDir(place->path({})).mkpath(text("doc")));
    place->write(text("doc/page_1"), pngPage());
    QVERIFY(QFile::link(text("gone"), place->path(text("doc/page_2"))));
    place->write(text("doc/page_3"), jpgPage());
    verifyFails(words("render doc -o new.png --page 1"), 1,
                "docpage: doc/page_2: No such file or directory\n");
    verifyDoes(words("render doc -o new.png --page 2"));
    QCOMPARE(QImage(place->path(text("new.png"))).size(), QSize(2, 2));

    QFile odd(place->path(text("doc/page_4"))); // another name than any that QFile can give
    QVERIFY(odd.open(QIODevice::WriteOnly));
    QCOMPARE(std::rename(QFile::encodeName(odd.fileName()).constData(),
                         (QFile::encodeName(place->path(text("doc/"))) + "\xFF").constData()),
             0);
    QCOMPARE(place->run(words("render doc -o other.png")).err,
             QByteArray("docpage: doc: holds a file whose name is not UTF-8\n"));
}

void TestDocpage::renderRefusesBrokenPictures()
{
    // 65280 x 65280 pixels, in the frame header of 2 x 2.
    QByteArray huge = TinyPictures::jpg();
    const int frame = huge.indexOf(hex("ff c0")) + 5;
    QVERIFY(frame > 5);
    huge.replace(frame, 4, hex("ff 00 ff 00"));
    place->write(text("huge"), jpgPageOf(huge));
    verifyFails(words("render huge -o new.png"), 1,
                "docpage: huge: picture too large: 65280 x 65280 pixels\n");

    // The second half of the picture's data is gone, but not its end.
    QImage noise(64, 64, QImage::Format_RGB32);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x)
            noise.setPixel(x, y, qRgb((x * 37 + y * 91) % 256, (x * y * 53) % 256, (x ^ y) * 4));
    }
    QByteArray jpg;
    QBuffer buffer(&jpg);
    QVERIFY(buffer.open(QIODevice::WriteOnly) && noise.save(&buffer, "JPG", 95));
    place->write(text("half"), jpgPageOf(jpg.left(jpg.size() * 3 / 4) + hex("00 ff d9")));
    verifyFails(words("render half -o new.png"), 1,
                "docpage: half: JPG picture is corrupt (picture data)\n");
}

// What only a shell can give to the program.
void TestDocpage::shell_data()
{
    QTest::addColumn<QString>("command"); // "$0" is the program
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("err");
    QTest::newRow("a name that is not UTF-8")
        << text("\"$0\" unwrap png_page -o \"$(printf 'v\\377')\"") << 1
        << QByteArray("docpage: v\xEF\xBF\xBD: the name is not UTF-8\n");
    QTest::newRow("closed standard output")
        << text("\"$0\" info png_page >&-") << 1
        << QByteArray("docpage: standard output: Bad file descriptor\n");
    QTest::newRow("all streams closed")
        << text("\"$0\" info png_page <&- >&- 2>&-") << 1 << QByteArray();
    QTest::newRow("a name like an option")
        << text("\"$0\" info -- -qmljsdebugger=b") << 1
        << QByteArray("docpage: -qmljsdebugger=b: No such file or directory\n");
}

void TestDocpage::shell()
{
    QFETCH(QString, command);
    const QStringList before = place->entries();
    ForkedProcess shell;
    shell.setWorkingDirectory(place->path({}));
    shell.start(text("/bin/sh"), {text("-c"), command, text(DOCPAGE_PROGRAM)});
    QVERIFY(shell.waitForFinished());
    QTEST(shell.readAllStandardError(), "err");
    QTEST(shell.exitCode(), "status");
    QCOMPARE(place->entries(), before);
}

void TestDocpage::renderTakesFilesOfFolder()
{
    // A picture of n x 1 pixels is page n - 1.
    QVERIFY(QDir(place->path({})).mkpath(text("doc/page_0")));
    const char *names[] = {"page_1", "page_2", "page_02", "page_10", "Page_11"};
    int width = 0;
    for (const int index : {0, 2, 1, 3, 4}) {
        const QByteArray picture = "P5 " + QByteArray::number(++width) + " 1 255 12345";
        place->write(text("doc/") + text(names[index]), jpgPageOf(picture));
    }
    place->write(text("doc/.page_3"), "hidden");
    QCOMPARE(::mkfifo(QFile::encodeName(place->path(text("doc/page_4"))).constData(), 0600), 0);
    QVERIFY(QFile::link(text("page_4"), place->path(text("doc/page_5"))));

    for (int page = 0; page < width; ++page) {
        verifyDoes(words("render doc/ --force -o new.png --page") << QString::number(page));
        QCOMPARE(QImage(place->path(text("new.png"))).size(), QSize(page + 1, 1));
    }
    QCOMPARE(place->run(words("render doc -o new.png --page 5")).err,
             QByteArray("docpage: doc: page 5 is out of range, the document has 5 pages\n"));

    verifyDoes(words("render doc/page_10 doc/page_1 -o first.png"));
    QCOMPARE(QImage(place->path(text("first.png"))).size(), QSize(4, 1));
    verifyDoes(words("render doc/page_10 doc/page_1 --page 1 -o second.png"));
    QCOMPARE(QImage(place->path(text("second.png"))).size(), QSize(1, 1));
}

void TestDocpage::renderOutOfRange_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("line");

    const auto row = [](const char *arguments, const char *line) {
        QTest::newRow(arguments) << words(arguments) << "docpage: " + QByteArray(line) + '\n';
    };
    row("render png_page -o new.png --page 1",
        "png_page: page 1 is out of range, the document has 1 page");
    row("render png_page jpg_page red.png -o new.png --page 3",
        "png_page ... red.png: page 3 is out of range, the document has 3 pages");
    row("render png_page -o new.png --page 4294967295",
        "png_page: page 4294967295 is out of range, the document has 1 page");
    row("render empty -o new.png", "empty: page 0 is out of range, the document has 0 pages");
    if (!isRoot())
        row("render closed -o new.png", "closed: the folder cannot be read");
}

void TestDocpage::renderOutOfRange()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, line);
    QVERIFY(QDir(place->path({})).mkdir(text("empty")));
    QVERIFY(QDir(place->path({})).mkdir(text("closed")));
    QVERIFY(QFile::setPermissions(place->path(text("closed")), QFile::WriteOwner));
    verifyFails(arguments, 1, line);
    QVERIFY(QFile::setPermissions(place->path(text("closed")), // so that it can be removed
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void TestDocpage::renderRefuses_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("fault");

    QTest::newRow("JPG cut short, which decodes half grey")
        << jpgPageOf(TinyPictures::jpg().chopped(4)) << QByteArray("JPG picture is truncated");
    QTest::newRow("PNG cut short")
        << jpgPageOf(TinyPictures::png().chopped(12)) << QByteArray("PNG picture is truncated");
    QTest::newRow("PNG whose pixels do not unpack")
        << jpgPageOf(hex("89 50 4e 47 0d 0a 1a 0a "
                         "00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 00 3b 96 39 "
                         "91 00 00 00 06 49 44 41 54 78 9c 00 00 00 00 c3 71 5c 7d "
                         "00 00 00 00 49 45 4e 44 ae 42 60 82"))
        << QByteArray("the picture cannot be decoded");
    QTest::newRow("no picture") << jpgPageOf("text")
                                << QByteArray("neither a JPG nor a PNG picture");
}

void TestDocpage::renderRefuses()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, fault);
    QVERIFY(QDir(place->path({})).mkdir(text("doc")));
    place->write(text("doc/page_0"), content);
    const QByteArray line = "docpage: doc/page_0: " + fault + '\n';
    verifyFails(words("render doc/page_0 -o new.png"), 1, line);
    verifyFails(words("render doc -o new.png"), 1, line);
    verifyFails(words("render png_page doc/page_0 --page 1 -o new.png"), 1, line);
}

void TestDocpage::namesOfAllKinds_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("shown");
    QTest::addColumn<QByteArray>("locale");

    for (const char *locale : {"C", "C.UTF-8", "de_DE.ISO-8859-1", "none"}) {
        const auto row = [&](const char *what, const char *name, const char *shown) {
            QTest::addRow("%s: %s", locale, what)
                << text(name) << QByteArray(shown) << QByteArray(locale);
        };
        row("blanks", " my  page ", " my  page ");
        row("umlauts", "Übergröße", "Übergröße");
        row("Chinese", "第一页", "第一页");
        row("beyond the basic plane", "\xF0\x9F\x93\x84", "\xF0\x9F\x93\x84");
        row("line end", "a\nb", "a\\nb");
        row("other control characters", "\x1b[31m\r\t\x7f", "\\u001b[31m\\u000d\\u0009\\u007f");
        row("line ends of Unicode", "a\u2028b\u2029c\u0085d", "a\\u2028b\\u2029c\\u0085d");
        row("backslash", "a\\nb", "a\\nb");
        row("placeholders", "%1 %2 %s %n", "%1 %2 %s %n");
        row("quotes", "a'b\"c", "a'b\"c");
    }
}

void TestDocpage::namesOfAllKinds()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, shown);
    QFETCH(QByteArray, locale);
    place->environment.insert(text("LC_ALL"), text(locale.constData()));
    const auto run = [&](const QStringList &arguments) { return place->run(arguments); };

    place->write(name, TinyPictures::png());
    const QString folder = name + text(".d");
    const QString page = folder + text("/page_0");
    Outcome outcome = run({text("wrap"), name, text("-o"), folder});
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.out, "1 page result file in " + shown + ".d\n");
    QCOMPARE(place->read(page), pngPage());

    outcome = run({text("info"), page});
    QCOMPARE(outcome.out, shown + ".d/page_0: PNG picture, 73 bytes, 4 x 3 pixels\n");
    outcome = run({text("info"), text("--json"), page});
    QCOMPARE(QJsonDocument::fromJson(outcome.out).array().at(0).toObject()[text("file")].toString(),
             page);

    QCOMPARE(run({text("unwrap"), page, text("-o"), name}).err,
             "docpage: " + shown + ": already exists; use --force to replace it\n");
    QCOMPARE(run({text("unwrap"), page, text("-o"), name + text(".new")}).status, 0);
    QCOMPARE(place->read(name + text(".new")), TinyPictures::png());
    QCOMPARE(run({text("render"), folder, text("-o"), name + text(".png")}).status, 0);
    QVERIFY(place->read(name + text(".png")).startsWith("\x89PNG"));
    QCOMPARE(run({text("info"), name}).err,
             "docpage: " + shown +
                 ": not a page result file: it does not begin with 88 88 88 88\n");
    outcome = run({name});
    QCOMPARE(outcome.err, "docpage: Unknown command '" + shown + "'.\nTry 'docpage --help'.\n");
    QCOMPARE(outcome.status, 2);
}

void TestDocpage::speaksEnglishInEveryLocale()
{
    // Where this fails there is no such locale, and the test no more than one without it.
    QProcess::execute(text("localedef"), {text("-c"), text("-i"), text("de_DE"), text("-f"),
                                          text("UTF-8"), place->path(text("de_DE.UTF-8"))});
    place->environment.insert(text("LOCPATH"), place->path(QString()));
    place->environment.insert(text("LC_ALL"), text("de_DE.UTF-8"));
    place->environment.insert(text("LANGUAGE"), text("de"));
    QCOMPARE(place->run(words("info red.png/page")).err,
             QByteArray("docpage: red.png/page: Not a directory\n"));
}

void TestDocpage::roundTrip()
{
    QImage picture(23, 17, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixelColor(x, y, QColor(11 * x, 15 * y, (x * y) % 256));
    }
    QVERIFY(picture.save(place->path(text("in.png"))));
    QVERIFY(picture.save(place->path(text("in.jpg")), "JPG", 95));

    verifyDoes(words("wrap in.jpg in.png -o doc"), "2 page result files in doc\n");
    const Outcome outcome = place->run(words("info doc/page_0 doc/page_1"));
    QCOMPARE(outcome.out.count("23 x 17 pixels"), 2);
    int page = 0;
    for (const QString &name : {text("in.jpg"), text("in.png")}) {
        const QString number = QString::number(page++);
        verifyDoes({text("unwrap"), text("doc/page_") + number, text("-o"), name + text(".out")});
        QCOMPARE(place->read(name + text(".out")), place->read(name));
        verifyDoes(
            {text("render"), text("doc"), text("--page"), number, text("-o"), name + text(".png")});
        QCOMPARE(QImage(place->path(name + text(".png"))).convertToFormat(QImage::Format_RGB32),
                 QImage(place->path(name)).convertToFormat(QImage::Format_RGB32));
    }
}

QTEST_GUILESS_MAIN(TestDocpage)
#include "tst_docpage.moc"
