#include "DocpageTest.h"
#include "Terminal.h"
#include "TinyPictures.h"
#include "tools/docpage/EncodeJobs.h"
#include "tools/docpage/EndRequest.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/StagingFolder.h"
#include "tools/docpage/WorkRate.h"

#include <QDir>
#include <QRegularExpression>
#include <QTextCodec>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <utility>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// What the file system can do.
enum class FileSystem {
    Full,
    WithoutFlags, // of renames
    WithoutLinks, // and without those
};

FileSystem fileSystem = FileSystem::Full;
std::function<void()> beforeRename; // what others do at this very moment

} // namespace

// In the system's place for all that is linked to this test.
extern "C" int renameat2(int fromFolder, const char *from, int toFolder, const char *to,
                         unsigned int flags) noexcept
{
    if (const auto act = std::exchange(beforeRename, nullptr))
        act();
    if (fileSystem != FileSystem::Full && flags != 0) {
        errno = EINVAL;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

extern "C" int link(const char *from, const char *to) noexcept
{
    if (fileSystem == FileSystem::WithoutLinks) {
        errno = EPERM;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}

namespace {

QByteArray redPage()
{
    return hex("88 88 88 88 01 01 04 00 00 00 49 00 00 00") + TinyPictures::png();
}

QByteArray greyPage()
{
    return hex("88 88 88 88 01 01 02 00 00 00 a0 00 00 00") + TinyPictures::jpg();
}

// Runs `work` in a child process. Returns its exit status; that of a signal is negative.
int inChild(const std::function<int()> &work)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

// For the child: no file may have more bytes.
std::function<void()> fileSizeAtMost(rlim_t bytes)
{
    return [bytes] {
        const rlimit limit = {bytes, bytes};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    };
}

} // namespace

/// docpage encode.
class TestDocpageEncode : public DocpageTest
{
    Q_OBJECT

private:
    // Runs a job that takes a while and returns when the first page is in the making.
    void startLongRun(QProcess &process, int pages)
    {
        QStringList arguments = words("encode -o new");
        for (int i = 0; i < pages; ++i)
            arguments << text(i % 2 ? "red.png" : "grey.jpg");
        process.setWorkingDirectory(place->path({}));
        process.setProcessEnvironment(place->environment);
        process.start(QStringLiteral(DOCPAGE_PROGRAM), arguments);
        QVERIFY(process.waitForStarted());
        const QDir folder(place->path(text("new")));
        while (process.state() == QProcess::Running) {
            for (const QString &staging : folder.entryList(QDir::Dirs | QDir::Hidden)) {
                if (!QDir(folder.filePath(staging)).entryList({text("{*")}).isEmpty())
                    return;
            }
            process.waitForFinished(0);
        }
    }

private Q_SLOTS:
    void initTestCase()
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
        ::umask(022);
    }

    void init()
    {
        fileSystem = FileSystem::Full;
        place = std::make_unique<Workplace>();
        place->write(text("red.png"), TinyPictures::png());
        place->write(text("grey.jpg"), TinyPictures::jpg());
    }

    // Both formats keep their places.
    void encodes()
    {
        const QStringList before = place->entries();
        verifyDoes(words("encode red.png grey.jpg grey.jpg red.png red.png grey.jpg -o new"),
                   "6 page result files in new\n");
        for (const char *red : {"new/page_0", "new/page_3", "new/page_4"})
            QCOMPARE(place->read(text(red)), redPage());
        for (const char *grey : {"new/page_1", "new/page_2", "new/page_5"})
            QCOMPARE(place->read(text(grey)), greyPage());
        struct stat page = {};
        QCOMPARE(::stat(QFile::encodeName(place->path(text("new/page_0"))).constData(), &page), 0);
        QCOMPARE(uint(page.st_mode) & 07777U, 0644U);
        for (int i = 0; i < 6; ++i)
            QVERIFY(QFile::remove(place->path(QStringLiteral("new/page_%1").arg(i))));
        QVERIFY(QDir(place->path({})).rmdir(text("new"))); // nothing else is in it
        QCOMPARE(place->entries(), before);                // and the inputs are as they were
    }

    void orderOfManyPages()
    {
        QStringList arguments = words("encode -o new");
        for (int i = 0; i < 25; ++i) {
            arguments << QStringLiteral("in%1").arg(i);
            const QByteArray number = QByteArray::number(i);
            place->write(arguments.last(),
                         (i % 3 ? TinyPictures::png() : TinyPictures::jpg()) + number);
        }
        verifyDoes(arguments, "25 page result files in new\n");
        for (int i = 0; i < 25; ++i) {
            const QByteArray page = place->read(QStringLiteral("new/page_%1").arg(i));
            QCOMPARE(int(page[6]), i % 3 ? 4 : 2);
            QCOMPARE(page.mid(14),
                     (i % 3 ? TinyPictures::png() : TinyPictures::jpg()) + QByteArray::number(i));
        }
    }

    void names_data()
    {
        QTest::addColumn<QString>("picture");
        QTest::addColumn<QString>("folder");
        QTest::newRow("blanks") << text("a picture") << text("new folder");
        QTest::newRow("percent signs and digits") << text("100%1%2.png") << text("a%2b%1");
        QTest::newRow("other letters") << text("日本語") << text("äöü/ß/");
        QTest::newRow("this folder") << text("a") << text(".");
        QTest::newRow("colon") << text(":a") << text(":/b");
        QTest::newRow("behind a link") << text("a") << text("link/../new");
    }
    void names()
    {
        QFETCH(QString, picture);
        QFETCH(QString, folder);
        QVERIFY(QDir(place->path({})).mkpath(text("one/two")));
        QVERIFY(QFile::link(text("one/two"), place->path(text("link"))));
        place->write(text("./") + picture, TinyPictures::png());
        const Outcome outcome =
            place->run({text("encode"), text("./") + picture, text("-o"), folder});
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.status, 0);
        if (folder.startsWith(text("link")))
            folder = text("one/new");
        QCOMPARE(place->read(text("./") + folder + text("/page_0")), redPage());
        QVERIFY(QFile::remove(place->path(text("./") + folder + text("/page_0"))));
        QCOMPARE(place->entries().filter(text("docpage-")), QStringList());
    }

    // All that is wrong is told, and nothing is made.
    void badPictures()
    {
        place->write(text("text"), "text");
        place->write(text("empty"), {});
        place->write(text("cut"), TinyPictures::png().chopped(1));
        verifyFails(words("encode red.png missing text grey.jpg empty cut . -o new/deep"),
                    "docpage: missing: No such file or directory\n"
                    "docpage: text: neither a JPG nor a PNG picture\n"
                    "docpage: empty: empty file\n"
                    "docpage: cut: PNG picture is truncated\n"
                    "docpage: .: is a directory\n");
        QVERIFY(QDir(place->path({})).mkpath(text("new/deep"))); // stays when it is there
        verifyFails(words("encode text -o new/deep"),
                    "docpage: text: neither a JPG nor a PNG picture\n");
    }

    void takenNames()
    {
        QVERIFY(QDir(place->path({})).mkpath(text("new/page_2")));
        place->write(text("new/page_0"), "old");
        verifyFails(words("encode red.png grey.jpg red.png -o new"),
                    "docpage: new/page_0: already exists; use --force to replace it\n"
                    "docpage: new/page_2: is a directory\n");
        verifyFails(words("encode red.png grey.jpg red.png -o new --force"),
                    "docpage: new/page_2: is a directory\n");
        verifyDoes(words("encode grey.jpg red.png -o new --force"), "2 page result files in new\n");
        QCOMPARE(place->read(text("new/page_0")), greyPage());
        QCOMPARE(place->read(text("new/page_1")), redPage());
        QCOMPARE(place->entries().filter(text("docpage-")), QStringList());
    }

    void inputIsNeverReplaced()
    {
        QVERIFY(QDir(place->path({})).mkdir(text("new")));
        place->write(text("new/page_1"), TinyPictures::png());
        for (const char *force : {"", "--force"})
            verifyFails(words("encode red.png new/page_1 -o new") + words(force),
                        "docpage: new/page_1: would replace an input\n");
    }

    void badFolder()
    {
        verifyFails(words("encode red.png -o grey.jpg/new"),
                    "docpage: grey.jpg/new: Not a directory\n");
        verifyFails(words("encode red.png -o grey.jpg"), "docpage: grey.jpg: Not a directory\n");
        if (::geteuid() == 0) // whom permissions do not stop
            return;
        QVERIFY(QDir(place->path({})).mkdir(text("closed")));
        QVERIFY(
            QFile::setPermissions(place->path(text("closed")), QFile::ReadOwner | QFile::ExeOwner));
        verifyFails(words("encode red.png -o closed"), "docpage: closed: Permission denied\n");
    }

    // A small picture, and nothing behind it that a disk would hold.
    void notEnoughSpace()
    {
        QVERIFY(QFile::resize(place->path(text("red.png")), 2000000000));
        QStringList arguments = words("encode -o new");
        for (int i = 0; i < 20000; ++i)
            arguments << text("red.png");
        const Outcome outcome = place->run(arguments);
        const QRegularExpression line(text(
            "^docpage: new: not enough space: 4000\\d{10} bytes are needed, \\d+ are free\n$"));
        QVERIFY2(line.match(QString::fromUtf8(outcome.err)).hasMatch(), outcome.err.constData());
        QCOMPARE(outcome.status, 1);
        QVERIFY(!QFile::exists(place->path(text("new"))));
    }

    // No sum of their sizes has room in a number.
    void hugePictures()
    {
        const QString huge = place->path(text("huge"));
        QVERIFY(QFile(huge).open(QIODevice::WriteOnly));
        qint64 size = 8000000000000000000;
        while (::truncate(QFile::encodeName(huge).constData(), size) != 0) // the most of this disk
            size /= 2;
        const QString line = QStringLiteral("docpage: huge: too large: %1 bytes\n").arg(size);
        const Outcome outcome = place->run(words("encode huge huge -o new"));
        QCOMPARE(QString::fromUtf8(outcome.err), line + line);
        QCOMPARE(outcome.status, 1);
        QVERIFY(!QFile::exists(place->path(text("new"))));
    }

    // The reader of what is printed has ended: the pages are there, and nothing else.
    void standardOutputIsABrokenPipe()
    {
        const Outcome outcome = place->run(words("encode red.png -o new"), [] {
            int ends[2];
            if (::pipe(ends) != 0 || ::dup2(ends[1], STDOUT_FILENO) < 0)
                ::_exit(99);
            ::close(ends[0]);
            std::signal(SIGPIPE, SIG_DFL);
        });
        QCOMPARE(outcome.err, QByteArray("docpage: standard output: Broken pipe\n"));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(place->read(text("new/page_0")), redPage());
        QCOMPARE(place->entries().filter(text("docpage-")), QStringList());
    }

    void faults_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("picture");
        QTest::addColumn<QString>("fault");
        QTest::newRow("no copy") << qint64(73) << text("") << text("missing")
                                 << text("its copy cannot be read, or out of memory");
        QTest::newRow("no folder") << qint64(73) << text("missing/") << text("red.png")
                                   << text("its page cannot be written");
        QTest::newRow("more than the disk has room for")
            << qint64(4000000000000000000) << text("red.png/") << text("grey.jpg")
            << text("its page cannot be written: no space left");
    }
    void faults()
    {
        QFETCH(qint64, size);
        QFETCH(QString, prefix);
        QFETCH(QString, picture);
        LibraryLog::divert();
        const EndRequest request;
        const EncodeResult result =
            encodePictures({{place->path(picture), size, DocCovRslt::PAGE_FORMAT_PNG}},
                           place->path(prefix), request, [](const EncodeInput &) {});
        QCOMPARE(result.failed, 0);
        QTEST(result.fault, "fault");
    }

    void fullDisk_data()
    {
        QTest::addColumn<uint>("largest");
        QTest::addColumn<QByteArray>("err");
        QTest::newRow("no room for a copy")
            << 72U << QByteArray("docpage: red.png: cannot be copied to new: File too large\n");
        QTest::newRow("no room for its header, too")
            << 86U << QByteArray("docpage: red.png: its page cannot be written\n");
    }
    void fullDisk()
    {
        QFETCH(uint, largest);
        const QStringList before = place->entries();
        const Outcome outcome =
            place->run(words("encode red.png red.png -o new"), fileSizeAtMost(largest));
        QTEST(outcome.err, "err");
        QCOMPARE(outcome.out, QByteArray());
        QCOMPARE(outcome.status, 1);
        QCOMPARE(place->entries(), before);
    }

    // The second job's picture is the one that fails.
    void failingFileIsNamed()
    {
        place->write(text("large.jpg"), TinyPictures::jpg() + QByteArray(300, ' '));
        const QStringList before = place->entries();
        const Outcome outcome =
            place->run(words("encode grey.jpg red.png large.jpg grey.jpg red.png -o new"),
                       fileSizeAtMost(461));
        QCOMPARE(outcome.err, QByteArray("docpage: large.jpg: its page cannot be written\n"));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(place->entries(), before);
    }

    void endsBySignal_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGHUP") << SIGHUP;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGQUIT") << SIGQUIT;
        QTest::newRow("SIGTERM") << SIGTERM;
    }
    void endsBySignal()
    {
        QFETCH(int, signal);
        const QStringList before = place->entries();
        ForkedProcess process;
        startLongRun(process, 3000);
        QCOMPARE(process.state(), QProcess::Running);
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), signal), 0);
        QVERIFY(process.waitForFinished());
        QCOMPARE(withoutEmulator(process.readAllStandardError()),
                 QByteArray("docpage: new: cancelled, no page is made\n"));
        QCOMPARE(process.readAllStandardOutput(), QByteArray());
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), signal);
        QCOMPARE(place->entries(), before);
    }

    // The jobs do not run to their end first.
    void cancelIsPrompt()
    {
        QVector<EncodeInput> pictures;
        for (int i = 0; i < 3000; ++i) {
            pictures.append({place->path(QString::number(i)), 4, DocCovRslt::PAGE_FORMAT_PNG});
            place->write(QString::number(i), "page");
        }
        const EndRequest request;
        ::raise(SIGTERM);
        int pages = 0;
        const EncodeResult result = encodePictures(pictures, place->path(text("out_")), request,
                                                   [&pages](const EncodeInput &) { ++pages; });
        QVERIFY2(pages < 3000, QByteArray::number(pages).constData());
        QCOMPARE(result.failed, -1);
        QCOMPARE(result.fault, QString());
        QCOMPARE(place->entries().size(), 2);
    }

    // At the very first, before anything is copied.
    void endsBySignalWhileCopying()
    {
        QVERIFY(QDir(place->path({})).mkdir(text("new")));
        const QStringList before = place->entries();
        const QByteArray folder = QFile::encodeName(place->path(text("new")));
        const Outcome outcome = place->run(words("encode red.png grey.jpg -o new"), [folder] {
            const int watched = ::open(folder.constData(), O_RDONLY | O_DIRECTORY);
            if (::fcntl(watched, F_SETSIG, SIGTERM) != 0 ||
                ::fcntl(watched, F_NOTIFY, DN_CREATE) != 0)
                ::_exit(99);
        });
        QVERIFY(outcome.status < 0);
        QCOMPARE(outcome.err, QByteArray("docpage: new: cancelled, no page is made\n"));
        QCOMPARE(place->entries(), before);
    }

    void ignoredSignalStaysIgnored()
    {
        ForkedProcess process;
        std::signal(SIGHUP, SIG_IGN); // the child inherits it
        startLongRun(process, 1000);
        std::signal(SIGHUP, SIG_DFL);
        QCOMPARE(process.state(), QProcess::Running);
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGHUP), 0);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardError(), QByteArray());
        QCOMPARE(process.readAllStandardOutput(), QByteArray("1000 page result files in new\n"));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
    }

    void endRequest()
    {
        // The first signal is a request, the second one is an end.
        QCOMPARE(inChild([] {
                     const EndRequest request;
                     if (request.isMade())
                         return 1;
                     ::raise(SIGTERM);
                     if (!request.isMade())
                         return 2;
                     ::raise(SIGINT);
                     return 3;
                 }),
                 -SIGINT);
        QCOMPARE(inChild([] {
                     const EndRequest request;
                     ::raise(SIGTERM);
                     request.grant();
                     return 1;
                 }),
                 -SIGTERM);
        QCOMPARE(inChild([] {
                     std::signal(SIGINT, SIG_IGN);
                     {
                         const EndRequest request;
                         ::raise(SIGINT);
                         if (request.isMade())
                             return 1;
                         ::raise(SIGTERM);
                         ::raise(SIGINT);
                         if (!request.isMade())
                             return 2;
                     }
                     return std::signal(SIGINT, SIG_DFL) == SIG_IGN ? 0 : 3;
                 }),
                 0);
        QCOMPARE(inChild([] {
                     {
                         const EndRequest request;
                     }
                     ::raise(SIGHUP);
                     return 1;
                 }),
                 -SIGHUP);
    }

    // When one page must not have its name, those before it lose theirs again.
    void publishIsAllOrNothing_data()
    {
        QTest::addColumn<int>("can");
        QTest::newRow("this file system") << int(FileSystem::Full);
        QTest::newRow("one that can do less") << int(FileSystem::WithoutFlags);
        QTest::newRow("one that can do no more than rename") << int(FileSystem::WithoutLinks);
    }
    void publishIsAllOrNothing()
    {
        QFETCH(int, can);
        fileSystem = static_cast<FileSystem>(can);
        QVERIFY(QDir(place->path({})).mkpath(text("out/page_2")));
        place->write(text("out/page_0"), "old");
        const QStringList before = place->entries();
        {
            StagingFolder staging(place->path(text("out")));
            QCOMPARE(staging.create(), QString());
            QStringList staged;
            for (const char *name : {"a", "b", "c"}) {
                staged << staging.filePath(text(name));
                QCOMPARE(saveFile(staged.last(), OutputRules(false, {}), {name}), QString());
            }
            QString file;
            QCOMPARE(staging.publish(staged, OutputRules(true, {}), file), text("is a directory"));
            QCOMPARE(file, place->path(text("out/page_2")));
            QCOMPARE(place->read(text("out/page_0")), QByteArray("old"));
            QVERIFY(!QFile::exists(place->path(text("out/page_1"))));
            QVERIFY(staging.publish(staged, OutputRules(false, {}), file)
                        .startsWith(text("already exists")));

            staged.removeLast();
            QCOMPARE(staging.publish(staged, OutputRules(true, {}), file), QString());
            QCOMPARE(place->read(text("out/page_0")), QByteArray("a"));
            QCOMPARE(place->read(text("out/page_1")), QByteArray("b"));
        }
        QCOMPARE(place->entries().size(), before.size() + 1);
        QCOMPARE(place->entries().filter(text("docpage-")), QStringList());
    }

    // What others make at the very moment stays theirs.
    void nameTakenMeanwhile_data()
    {
        QTest::addColumn<bool>("force");
        QTest::addColumn<int>("can");
        QTest::addColumn<bool>("isFolder");
        QTest::addColumn<QString>("fault");
        for (const FileSystem can :
             {FileSystem::Full, FileSystem::WithoutFlags, FileSystem::WithoutLinks}) {
            const auto row = [can](const char *name, bool force, bool isFolder, const char *fault) {
                QTest::addRow("%s, file system %d", name, int(can))
                    << force << int(can) << isFolder << text(fault);
            };
            row("file", false, false, "already exists; use --force to replace it");
            row("folder", false, true, "is a directory");
            row("file, with force", true, false, "");
            row("folder, with force", true, true, "is a directory");
        }
    }
    void nameTakenMeanwhile()
    {
        QFETCH(bool, force);
        QFETCH(int, can);
        QFETCH(bool, isFolder);
        QFETCH(QString, fault);
        fileSystem = static_cast<FileSystem>(can);
        StagingFolder staging(place->path(text("out")));
        QCOMPARE(staging.create(), QString());
        const QString staged = staging.filePath(text("a"));
        QCOMPARE(saveFile(staged, OutputRules(false, {}), {"new"}), QString());
        beforeRename = [&] {
            if (isFolder)
                QDir(place->path({})).mkpath(text("out/page_0/theirs"));
            else
                place->write(text("out/page_0"), "old");
        };
        QString file;
        QCOMPARE(staging.publish({staged}, OutputRules(force, {}), file), fault);
        if (isFolder)
            QVERIFY(QDir(place->path(text("out/page_0/theirs"))).exists());
        else
            QCOMPARE(place->read(text("out/page_0")), QByteArray(force ? "new" : "old"));
        QCOMPARE(QFile::exists(staged), !fault.isEmpty());
    }

    // Two signals between two pages, of which the second one would end the program at once.
    void publishIsNotEndedHalfway_data()
    {
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("all") << false;
        QTest::newRow("none") << true;
    }
    void publishIsNotEndedHalfway()
    {
        QFETCH(bool, isTaken);
        QVERIFY(QDir(place->path({})).mkpath(text("out")));
        if (isTaken)
            QVERIFY(QDir(place->path(text("out"))).mkdir(text("page_1")));
        StagingFolder staging(place->path(text("out")));
        QCOMPARE(staging.create(), QString());
        QStringList staged;
        for (const char *name : {"a", "b"}) {
            staged << staging.filePath(text(name));
            QCOMPARE(saveFile(staged.last(), OutputRules(false, {}), {name}), QString());
        }
        QCOMPARE(inChild([&] {
                     const EndRequest request;
                     beforeRename = [] {
                         ::raise(SIGINT);
                         ::raise(SIGTERM);
                     };
                     QString file;
                     staging.publish(staged, OutputRules(false, {}), file);
                     return 1;
                 }),
                 -SIGTERM);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(QFile::exists(staged.at(i)), isTaken);
            QCOMPARE(QFileInfo(place->path(QStringLiteral("out/page_%1").arg(i))).isFile(),
                     !isTaken);
        }
    }

    void progressOnTerminal()
    {
        const Terminal terminal;
        const Outcome outcome =
            place->run(words("encode red.png grey.jpg -o new"), terminal.attach());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.out, QByteArray("2 page result files in new\n"));
        const QString shown = QString::fromUtf8(terminal.shown());
        const QRegularExpression begin(
            text("^\rchecking picture 1 of 2(, \\d+\\.\\d MB/s, \\d+:\\d\\d left)?"));
        QVERIFY2(begin.match(shown).hasMatch(), qPrintable(shown));
        QVERIFY(shown.endsWith(QLatin1Char('\r'))); // taken away at the end
    }

    void workRate_data()
    {
        QTest::addColumn<qint64>("done");
        QTest::addColumn<qint64>("inAll");
        QTest::addColumn<qint64>("ms");
        QTest::addColumn<QString>("shown");
        const auto row = [](qint64 done, qint64 inAll, qint64 ms, const char *shown) {
            QTest::addRow("%lld of %lld in %lld", done, inAll, ms)
                << done << inAll << ms << text(shown);
        };
        row(0, 100, 100, "");
        row(100, 200, 0, "");
        row(1000000, 2000000, 1000, "1.0 MB/s, 0:01 left");
        row(1000000, 2000001, 1000, "1.0 MB/s, 0:02 left");
        row(50000, 100000, 1000, "0.1 MB/s, 0:01 left");
        row(10000000, 610000000, 1000, "10.0 MB/s, 1:00 left");
        row(123456789, 100000000000, 1000, "123.5 MB/s, 13:30 left");
        row(2000000, 2000000, 1000, "2.0 MB/s, 0:00 left");
        row(2000000, 1000000, 10000, "0.2 MB/s, 0:00 left");
        row(1, 4000000000, 1000, "0.0 MB/s, 66666666:39 left");
    }
    void workRate()
    {
        QFETCH(qint64, done);
        QFETCH(qint64, inAll);
        QFETCH(qint64, ms);
        QTEST(::workRate(done, inAll, ms), "shown");
    }

    void usage()
    {
        Outcome outcome = place->run(words("encode"));
        QCOMPARE(outcome.err, QByteArray("docpage: No PICTURE given.\n"
                                         "Try 'docpage encode --help'.\n"));
        QCOMPARE(outcome.status, 2);
        outcome = place->run(words("encode red.png"));
        QCOMPARE(outcome.err, QByteArray("docpage: No output given, -o DIR is missing.\n"
                                         "Try 'docpage encode --help'.\n"));
        QCOMPARE(outcome.status, 2);
        outcome = place->run(words("encode --help"));
        QVERIFY(outcome.out.startsWith("Usage: docpage encode PICTURE... -o DIR [--force]\n"));
        QCOMPARE(outcome.status, 0);
        QVERIFY(place->run(words("--help")).out.contains("\n  encode  Makes the same files "));
    }
};

QTEST_GUILESS_MAIN(TestDocpageEncode)
#include "tst_docpage_encode.moc"
