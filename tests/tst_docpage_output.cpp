#include "DocpageTest.h"

#include <QDir>

#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// For the child: a signal as soon as something happens in the folder, as DN_MODIFY for the first
// write into one of its files.
std::function<void()> signalOn(int event, const QByteArray &folder, int signal,
                               bool isIgnored = false)
{
    return [event, folder, signal, isIgnored] {
        std::signal(signal, isIgnored ? SIG_IGN : SIG_DFL);
        const int watched = ::open(folder.constData(), O_RDONLY | O_DIRECTORY);
        if (::fcntl(watched, F_SETSIG, signal) != 0 || ::fcntl(watched, F_NOTIFY, event) != 0)
            ::_exit(99);
    };
}

} // namespace

/// How outputs of docpage come to be, and what they never replace.
class TestDocpageOutput : public DocpagePagesTest
{
    Q_OBJECT

private Q_SLOTS:
    void badOutput_data();
    void badOutput();
    void inputIsNeverReplaced_data();
    void inputIsNeverReplaced();
    void fullDisk_data();
    void fullDisk();
    void fullStandardOutput();
    void outputIsReplacedOnlyWithForce_data();
    void outputIsReplacedOnlyWithForce();
    void linkIsReplacedItself();
    void outputHasOrdinaryPermissions_data();
    void outputHasOrdinaryPermissions();
    void hardLinkIsReplacedItself();
    void oneOfManyAtOnceWins();
    void signalInTheMidst_data();
    void signalInTheMidst();
};

void TestDocpageOutput::badOutput_data()
{
    QTest::addColumn<QString>("out");
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QByteArray>("faultWithForce");

    const auto row = [](const char *name, const QString &out, const char *fault,
                        const char *faultWithForce) {
        QTest::newRow(name) << out << QByteArray(fault) << QByteArray(faultWithForce);
    };
    row("folder", text("folder.png"), "is a directory", "is a directory");
    row("link to a folder", text("link.png"), "is a directory", "is a directory");
    row("pipe", text("pipe.png"), "already exists; use --force to replace it",
        "not a regular file");
    row("missing folder", text("gone/new.png"), "No such file or directory",
        "No such file or directory");
    row("below a file", text("red.png/new.png"), "Not a directory", "Not a directory");
    row("name of 259 bytes", QString(255, QLatin1Char('n')) + text(".png"), "File name too long",
        "File name too long");
    if (!isRoot())
        row("folder that cannot be written", text("closed/new.png"), "Permission denied",
            "Permission denied");
}

void TestDocpageOutput::badOutput()
{
    QFETCH(QString, out);
    QFETCH(QByteArray, fault);
    QFETCH(QByteArray, faultWithForce);
    QVERIFY(QDir(place->path({})).mkdir(text("folder.png")));
    QVERIFY(QFile::link(text("folder.png"), place->path(text("link.png"))));
    QCOMPARE(::mkfifo(QFile::encodeName(place->path(text("pipe.png"))).constData(), 0600), 0);
    QVERIFY(QDir(place->path({})).mkdir(text("closed")));
    QVERIFY(QFile::setPermissions(place->path(text("closed")), QFile::ReadOwner | QFile::ExeOwner));

    const QByteArray begin = "docpage: " + out.toUtf8() + ": ";
    for (const char *command : {"unwrap", "render"}) {
        const QStringList arguments = {text(command), text("png_page"), text("-o"), out};
        verifyFails(arguments, 1, begin + fault + '\n');
        verifyFails(arguments + words("--force"), 1, begin + faultWithForce + '\n');
    }
}

void TestDocpageOutput::inputIsNeverReplaced_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("out"); // as the line names it
    QTest::addColumn<QByteArray>("printed");

    const auto row = [](const char *arguments, const char *out, const char *printed = "") {
        QTest::newRow(arguments) << words(arguments) << QByteArray(out) << QByteArray(printed);
    };
    row("unwrap png_page -o png_page", "png_page");
    row("unwrap png_page -o ./png_page", "./png_page");
    row("unwrap png_page -o doc/../png_page", "doc/../png_page");
    row("unwrap png_page -o link.png", "link.png");
    row("unwrap link.png -o png_page", "png_page");
    row("render link.png -o link.png", "link.png");
    row("render doc -o doc/page_1.png", "doc/page_1.png");
    row("render doc -o samedoc/page_0.png", "samedoc/page_0.png");
    row("render doc/page_1.png doc/page_0.png -o doc/page_0.png", "doc/page_0.png");
    row("wrap pictures/page_0 -o pictures", "pictures/page_0", "0 page result files in pictures\n");
}

void TestDocpageOutput::inputIsNeverReplaced()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, printed);
    QVERIFY(QFile::link(text("png_page"), place->path(text("link.png"))));
    QVERIFY(QDir(place->path({})).mkdir(text("doc")));
    QVERIFY(QFile::link(text("doc"), place->path(text("samedoc"))));
    place->write(text("doc/page_0.png"), pngPage());
    place->write(text("doc/page_1.png"), jpgPage());
    QVERIFY(QDir(place->path({})).mkdir(text("pictures")));
    place->write(text("pictures/page_0"), TinyPictures::png());

    const QByteArray line = "docpage: " + out + ": would replace an input\n";
    verifyFails(arguments, 1, line, printed);
    verifyFails(arguments + words("--force"), 1, line, printed);
}

void TestDocpageOutput::fullDisk_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("err");
    QTest::addColumn<QByteArray>("out");

    const auto row = [](const char *arguments, const char *file, const char *out = "") {
        QTest::newRow(arguments) << words(arguments)
                                 << QByteArray("docpage: ") + file + ": File too large\n"
                                 << QByteArray(out);
    };
    row("wrap red.png -o folder", "folder/page_0", "0 page result files in folder\n");
    row("unwrap png_page -o new", "new");
    row("unwrap png_page -o old --force", "old");
    row("render png_page -o new.png", "new.png");
}

void TestDocpageOutput::fullDisk()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, err);
    QFETCH(QByteArray, out);
    QVERIFY(QDir(place->path({})).mkdir(text("folder")));
    place->write(text("old"), "old content");
    const QStringList before = place->entries();
    const Outcome outcome = place->run(arguments, limitFileSize(40));
    QCOMPARE(outcome.err, err);
    QCOMPARE(outcome.out, out);
    QCOMPARE(outcome.status, 1);
    QCOMPARE(place->entries(), before);
}

void TestDocpageOutput::fullStandardOutput()
{
    const Outcome outcome = place->run(words("info png_page"), [] {
        ::dup2(::open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
    });
    QCOMPARE(outcome.err, QByteArray("docpage: standard output: No space left on device\n"));
    QCOMPARE(outcome.status, 1);
}

void TestDocpageOutput::outputIsReplacedOnlyWithForce_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QByteArray>("printedOnFailure");
    QTest::addColumn<QByteArray>("printed");

    QTest::newRow("wrap") << words("wrap red.png -o folder") << text("folder/page_0")
                          << QByteArray("0 page result files in folder\n")
                          << QByteArray("1 page result file in folder\n");
    QTest::newRow("unwrap") << words("unwrap png_page -o old") << text("old") << QByteArray()
                            << QByteArray();
    QTest::newRow("render") << words("render png_page -o old.png") << text("old.png")
                            << QByteArray() << QByteArray();
    QTest::newRow("unwrap over a link to nowhere")
        << words("unwrap png_page -o nowhere") << text("nowhere") << QByteArray() << QByteArray();
}

void TestDocpageOutput::outputIsReplacedOnlyWithForce()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, out);
    QFETCH(QByteArray, printedOnFailure);
    QFETCH(QByteArray, printed);
    QVERIFY(QDir(place->path({})).mkdir(text("folder")));
    QVERIFY(QFile::link(text("gone"), place->path(text("nowhere"))));
    for (const char *old : {"folder/page_0", "old", "old.png"})
        place->write(text(old), "old content");

    verifyFails(arguments, 1,
                "docpage: " + out.toUtf8() + ": already exists; use --force to replace it\n",
                printedOnFailure);
    const int count = place->entries().size();
    verifyDoes(arguments + words("--force"), printed);
    QVERIFY(place->read(out) != "old content");
    QVERIFY(!QFileInfo(place->path(out)).isSymLink());
    QCOMPARE(place->entries().size(), count);
}

void TestDocpageOutput::linkIsReplacedItself()
{
    place->write(text("target"), "content");
    QVERIFY(QFile::link(text("target"), place->path(text("link"))));
    verifyDoes(words("unwrap png_page -o link --force"));
    QVERIFY(!QFileInfo(place->path(text("link"))).isSymLink());
    QCOMPARE(place->read(text("link")), TinyPictures::png());
    QCOMPARE(place->read(text("target")), QByteArray("content"));
}

void TestDocpageOutput::outputHasOrdinaryPermissions_data()
{
    QTest::addColumn<uint>("mask");
    QTest::addColumn<uint>("permissions");
    QTest::newRow("umask 022") << 022U << 0644U;
    QTest::newRow("umask 077") << 077U << 0600U;
    QTest::newRow("umask 002") << 002U << 0664U;
}

void TestDocpageOutput::outputHasOrdinaryPermissions()
{
    QFETCH(uint, mask);
    QFETCH(uint, permissions);
    const auto setMask = [mask] { ::umask(mask); };
    QCOMPARE(place->run(words("wrap red.png -o ."), setMask).status, 0);
    QCOMPARE(place->run(words("unwrap png_page -o new"), setMask).status, 0);
    QCOMPARE(place->run(words("unwrap png_page -o jpg_page --force"), setMask).status, 0);
    QCOMPARE(place->run(words("render png_page -o new.png"), setMask).status, 0);
    for (const char *name : {"page_0", "new", "jpg_page", "new.png"}) {
        struct stat file = {};
        QCOMPARE(::stat(QFile::encodeName(place->path(text(name))).constData(), &file), 0);
        QCOMPARE(uint(file.st_mode) & 07777U, permissions);
    }
}

// Also one to an input, which is another name of the same file.
void TestDocpageOutput::hardLinkIsReplacedItself()
{
    const QByteArray page = QFile::encodeName(place->path(text("png_page")));
    QCOMPARE(::link(page.constData(), QFile::encodeName(place->path(text("hard"))).constData()), 0);
    verifyFails(words("unwrap png_page -o hard"), 1,
                "docpage: hard: already exists; use --force to replace it\n");
    verifyDoes(words("unwrap png_page -o hard --force"));
    QCOMPARE(place->read(text("hard")), TinyPictures::png());
    QCOMPARE(place->read(text("png_page")), pngPage());
}

void TestDocpageOutput::oneOfManyAtOnceWins()
{
    const int before = place->entries().size();
    std::vector<std::unique_ptr<ForkedProcess>> runs;
    for (int i = 0; i < 8; ++i) {
        auto process = std::make_unique<ForkedProcess>();
        process->setWorkingDirectory(place->path({}));
        process->start(QStringLiteral(DOCPAGE_PROGRAM), words("unwrap png_page -o new"));
        runs.push_back(std::move(process));
    }
    int done = 0;
    for (const auto &process : runs) {
        QVERIFY(process->waitForFinished());
        done += process->exitCode() == 0;
    }
    QCOMPARE(done, 1);
    QCOMPARE(place->read(text("new")), TinyPictures::png());
    QCOMPARE(place->entries().size(), before + 1);
}

void TestDocpageOutput::signalInTheMidst_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

// It comes between the header of the first page and the rest.
void TestDocpageOutput::signalInTheMidst()
{
    QFETCH(int, signal);
    place->write(text("deck.json"), R"({"slides": [{"background": "red.png"}, {}]})");
    QVERIFY(QDir(place->path({})).mkdir(text("new")));
    const QByteArray folder = QFile::encodeName(place->path(text("new")));
    const QStringList before = place->entries();
    const QStringList build = words("build deck.json -o new");

    const Outcome ended = place->run(build, signalOn(DN_MODIFY, folder, signal));
    QCOMPARE(ended.status, -signal);
    QCOMPARE(ended.err, QByteArray());
    QCOMPARE(ended.out, QByteArray());
    QCOMPARE(place->entries(), before);

    // A file that is to replace another has a name of its own for a moment.
    place->write(text("new/page_0"), "old content");
    const Outcome replaced =
        place->run(build + words("--force"), signalOn(DN_CREATE, folder, signal));
    QCOMPARE(replaced.status, -signal);
    QCOMPARE(QDir(place->path(text("new"))).entryList(QDir::Files | QDir::Hidden), words("page_0"));
    QVERIFY(QFile::remove(place->path(text("new/page_0"))));

    const Outcome done = place->run(build, signalOn(DN_MODIFY, folder, signal, true));
    QCOMPARE(done.err, QByteArray());
    QCOMPARE(done.out, QByteArray("2 page result files in new\n"));
    QCOMPARE(done.status, 0);
    QCOMPARE(place->read(text("new/page_0")).size(), 14 + 56 + 73);
    QCOMPARE(place->read(text("new/page_1")).size(), 14 + 56);
    QCOMPARE(place->entries().size(), before.size() + 2);
}

QTEST_GUILESS_MAIN(TestDocpageOutput)
#include "tst_docpage_output.moc"
