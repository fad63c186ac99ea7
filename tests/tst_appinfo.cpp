#include "Emulator.h"
#include "LatinLocale.h"
#include "common/AppInfo.h"

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

Q_DECLARE_METATYPE(std::string)

namespace {

// What a link's text is answered with, instead of the system's answer.
std::function<ssize_t(char *text, size_t size)> readlinkHook;

} // namespace

// In the C library's place.
extern "C" Q_DECL_EXPORT ssize_t readlink(const char *path, char *text, size_t size)
{
    return readlinkHook ? readlinkHook(text, size)
                        : ::syscall(SYS_readlinkat, AT_FDCWD, path, text, size);
}

namespace {

// What a program tells of itself, see appinfo_program.cpp; empty when it fails. Not by QProcess, as
// it cannot name every program: paths may be no UTF-8.
QList<QByteArray> told(const std::string &program, std::vector<std::string> arguments = {})
{
    arguments.insert(arguments.begin(), program);
    if (!emulator().isEmpty())
        arguments.insert(arguments.begin(), emulator().toStdString());
    std::vector<char *> argv;
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    std::array<int, 2> ends{};
    posix_spawn_file_actions_t actions;
    if (::pipe2(ends.data(), O_CLOEXEC) != 0 || ::posix_spawn_file_actions_init(&actions) != 0)
        return {};
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    pid_t child = -1;
    const int error = ::posix_spawn(&child, argv.front(), &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);

    QByteArray out;
    std::array<char, 65536> part{};
    for (ssize_t size = 1; error == 0 && size > 0;) {
        size = ::read(ends[0], part.data(), part.size());
        if (size > 0)
            out.append(part.data(), static_cast<int>(size));
    }
    ::close(ends[0]);
    int status = -1;
    if (error != 0 || ::waitpid(child, &status, 0) != child || status != 0)
        return {};
    return out.chopped(1).split('\0');
}

void write(const fs::path &path, const std::string &content)
{
    std::ofstream(path, std::ios::binary) << content;
}

template <size_t N>
std::string bytes(const char (&literal)[N])
{
    return {literal, N - 1};
}

// The working folder, to which the program returns at the end of the scope.
class WorkingFolder
{
public:
    WorkingFolder()
        : before(::open(".", O_PATH | O_CLOEXEC))
    {
    }
    ~WorkingFolder()
    {
        if (::fchdir(before) != 0)
            qFatal("cannot return to the working folder");
        ::close(before);
    }
    Q_DISABLE_COPY_MOVE(WorkingFolder)

private:
    int before;
};

} // namespace

class TestAppInfo : public QObject
{
    Q_OBJECT

private:
    // Beside this program: programs may be forbidden to run from the folder for temporary files.
    QTemporaryDir m_dir{QCoreApplication::applicationDirPath() +
                        QStringLiteral("/tst_appinfo-XXXXXX")};
    int m_count = 0;

    fs::path root() const { return fs::canonical(QFile::encodeName(m_dir.path()).toStdString()); }

    // A copy of the program in a folder of its own, by the names given.
    fs::path copied(const std::string &folder, const std::string &name)
    {
        const fs::path place = root() / std::to_string(++m_count) / folder;
        fs::create_directories(place);
        fs::copy_file(APPINFO_PROGRAM, place / name);
        return place / name;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void cleanupTestCase() { fs::remove_all(root()); } // paths that Qt cannot name

    void names_data()
    {
        QTest::addColumn<std::string>("folder");
        QTest::addColumn<std::string>("name");
        QTest::addColumn<QByteArray>("base");
        const auto row = [](const char *folder, const char *name, const char *base) {
            QTest::addRow("%s/%s", folder, name)
                << std::string(folder) << std::string(name) << QByteArray(base);
        };
        row("x/bin", "tool.bin", "tool");
        row("x", "tool", "tool");
        row("x", "a.b.c", "a");
        row("x", ".tool", "");
        row("x", "..tool", "");
        row("x", "tool.", "tool");
        row("x", "t", "t");
        row("x.d/y.d", "tool", "tool");
        row("a folder ", " my tool .exe", " my tool ");
        row("\xC3\xA4\xC3\xB6", "\xC3\xBC.bin", "\xC3\xBC");
        row("\xF0\x9F\x98\x80", "\xE7\x89\x88.\xE7\x89\x88", "\xE7\x89\x88");
        row("back\\slash", "a\\b.c", "a\\b");
        row("x\ny", "a\tb", "a\tb");
        row("D:", "c:d", "c:d");
        row("50%s", "%1%n.bin", "%1%n");
        row("x", "name (deleted)", "name (deleted)");
    }
    void names()
    {
        QFETCH(std::string, folder);
        QFETCH(std::string, name);
        QFETCH(QByteArray, base);
        const fs::path program = copied(folder, name);
        write(program.parent_path() / "UpdateInfo.ini", "[VER]\nVer=1.2.3\n");
        const QByteArray path = QByteArray::fromStdString(program.string());
        const QList<QByteArray> expected{path, path.left(path.lastIndexOf('/') + 1),
                                         QByteArray::fromStdString(name), base, "1.2.3"};
        QCOMPARE(told(program), expected);
    }

    // The bytes of the path that are no UTF-8 are lost, and the folder is not found by that name.
    void folderThatIsNoUtf8()
    {
        const fs::path program = copied("a\xFFz", "to\xE4l.bin");
        write(program.parent_path() / "UpdateInfo.ini", "[VER]\nVer=1.2.3\n");
        const QByteArray folder = QByteArray::fromStdString(
            program.parent_path().parent_path().string() + "/a\xEF\xBF\xBDz/");
        const QByteArray name("to\xEF\xBF\xBDl.bin");
        QCOMPARE(told(program),
                 QList<QByteArray>({folder + name, folder, name, "to\xEF\xBF\xBDl", ""}));
    }

    void startedThroughALink()
    {
        const fs::path program = copied("x", "tool.bin");
        const fs::path link = root() / "link.bin";
        fs::create_symlink(program, link);
        write(root() / "UpdateInfo.ini", "[VER]\nVer=of the link\n");
        write(program.parent_path() / "UpdateInfo.ini", "[VER]\nVer=of the program\n");
        const QList<QByteArray> texts = told(link);
        QCOMPARE(texts.value(0), QByteArray::fromStdString(program.string()));
        QCOMPARE(texts.value(2), QByteArray("tool.bin"));
        QCOMPARE(texts.value(4), QByteArray("of the program"));
        fs::remove(root() / "UpdateInfo.ini");
    }

    // The system says so in the link's text, which is taken as it is.
    void removedProgram()
    {
        if (!emulator().isEmpty())
            return; // which tells a program's path itself, and none of what is removed
        const fs::path program = copied("x", "tool.bin");
        const QByteArray folder = QByteArray::fromStdString(program.parent_path().string()) + '/';
        QCOMPARE(told(program, {"--remove-itself"}),
                 QList<QByteArray>(
                     {folder + "tool.bin (deleted)", folder, "tool.bin (deleted)", "tool", ""}));
    }

    // The system does not tell a path of more than 4095 bytes.
    void unknownProgram()
    {
        const WorkingFolder before;
        const std::string part(250, 'x');
        QCOMPARE(::chdir(root().c_str()), 0);
        for (int i = 0; i < 17; ++i) {
            QVERIFY(fs::create_directory(part));
            QCOMPARE(::chdir(part.c_str()), 0);
        }
        fs::copy_file(APPINFO_PROGRAM, "tool.bin");
        QCOMPARE(told("./tool.bin"), QList<QByteArray>({"", "", "", "", ""}));
        // The file of the version is that of the working folder then.
        write("UpdateInfo.ini", "[VER]\nVer=1.2.3\n");
        QCOMPARE(told("./tool.bin"), QList<QByteArray>({"", "", "", "", "1.2.3"}));
    }

    void longestKnownPath()
    {
        const WorkingFolder before;
        std::string folder = root().string();
        QCOMPARE(::chdir(folder.c_str()), 0);
        while (folder.size() < 4085) {
            const std::string part(std::min<size_t>(200, 4085 - folder.size()), 'y');
            QVERIFY(fs::create_directory(part));
            QCOMPARE(::chdir(part.c_str()), 0);
            folder += '/' + part;
        }
        const std::string name(4095 - folder.size() - 1, 'z');
        fs::copy_file(APPINFO_PROGRAM, name);
        write("UpdateInfo.ini", "[VER]\nVer=1.2.3\n");
        const QList<QByteArray> texts = told("./" + name);
        QCOMPARE(texts.value(0), QByteArray::fromStdString(folder + '/' + name));
        QCOMPARE(texts.value(0).size(), 4095);
        QCOMPARE(texts.value(3), QByteArray::fromStdString(name));
    }

    // Up to 4096 bytes are asked for. The system closes the text with no NUL, and leaves anything
    // behind where it fails.
    void answersOfTheSystem_data()
    {
        QTest::addColumn<bool>("isKnown");
        QTest::addColumn<QString>("path");
        QTest::newRow("all that is asked for") << true << QString(4096, QLatin1Char('x'));
        QTest::newRow("failure") << false << QString();
    }
    void answersOfTheSystem()
    {
        QFETCH(bool, isKnown);
        readlinkHook = [isKnown](char *text, size_t size) {
            std::fill_n(text, size, 'x');
            return isKnown ? static_cast<ssize_t>(size) : -1;
        };
        const QString path = GetAppPathFileName();
        readlinkHook = nullptr;
        QTEST(path, "path");
    }

    // Whatever the locale's are.
    void bytesOfTheSystemAreUtf8()
    {
        const LatinLocale locale;
        readlinkHook = [](char *text, size_t) {
            constexpr char kPath[] = "/\xC3\xA4/\xF0\x9F\x98\x80";
            std::copy_n(kPath, sizeof kPath - 1, text);
            return static_cast<ssize_t>(sizeof kPath - 1);
        };
        const QString path = GetAppPathFileName();
        readlinkHook = nullptr;
        QCOMPARE(path, QString::fromUtf8("/ä/\xF0\x9F\x98\x80"));
    }

    void version_data()
    {
        QTest::addColumn<std::string>("content");
        QTest::addColumn<QByteArray>("version");
        const auto row = [](const char *name, const std::string &content, const char *version) {
            QTest::newRow(name) << content << QByteArray(version);
        };
        row("plain", "[VER]\nVer=1.2.3\n", "1.2.3");
        row("no final newline", "[VER]\nVer=1.2.3", "1.2.3");
        row("CR LF", "[VER]\r\nVer=1.2.3\r\n", "1.2.3");
        row("byte order mark", "\xEF\xBB\xBF[VER]\r\nVer=1.2.3\r\n", "1.2.3");
        row("comments and blanks", "; old\n\n [VER] \n#Ver=0\n;Ver=0\n Ver = 1.2 beta \n",
            "1.2 beta");
        row("other sections", "Ver=0\n[A]\nVer=1\n[VER]\nA=2\nVer=3\n[B]\nVer=4\n", "3");
        row("twice: the first", "[VER]\nVer=1\nVer=2\n[VER]\nVer=3\n", "1");
        row("UTF-8", "[VER]\nVer=\xC3\xA4\xF0\x9F\x98\x80\n", "\xC3\xA4\xF0\x9F\x98\x80");
        row("no UTF-8", "[VER]\nVer=a\xFFz\n", "a\xEF\xBF\xBDz");
        row("empty file", "", "");
        row("no section", "Ver=1\n", "");
        row("section in other case", "[Ver]\nVer=1\n", "");
        row("no key", "[VER]\nVersion=1\n", "");
        row("key in other case", "[VER]\nVER=1\nver=2\n", "");
        row("no value", "[VER]\nVer=\n", "");
        row("NULs", bytes("\0\0[VER]\nVer=1\n"), "");
        row("very long", "[VER]\nVer=" + std::string(100000, '1'),
            std::string(100000, '1').c_str());
    }
    void version()
    {
        QFETCH(std::string, content);
        QFETCH(QByteArray, version);
        static const fs::path program = copied("version", "tool.bin");
        write(program.parent_path() / "UpdateInfo.ini", content);
        QCOMPARE(told(program).value(4), version);
    }

    void noVersionFile()
    {
        const fs::path program = copied("x", "tool.bin");
        const fs::path folder = program.parent_path();
        QCOMPARE(told(program).value(4), QByteArray());
        QCOMPARE(told(program).size(), 5);
        // Nor one of another name, of another place, or one that is a folder.
        const std::string content = "[VER]\nVer=1\n";
        write(folder / "updateinfo.ini", content);
        write(folder / "UpdateInfo", content);
        write(folder.parent_path() / "UpdateInfo.ini", content);
        QCOMPARE(told(program).value(4), QByteArray());
        const WorkingFolder before;
        QCOMPARE(::chdir(folder.parent_path().c_str()), 0);
        QCOMPARE(told(program).value(4), QByteArray());
        fs::create_directory(folder / "UpdateInfo.ini");
        QCOMPARE(told(program).value(4), QByteArray());
    }

    // Each call looks afresh; QCoreApplication is not asked.
    void thisProgram()
    {
        QCOMPARE(GetAppPathFileName(), QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget());
        QCOMPARE(GetAppName(), QStringLiteral("tst_appinfo"));
        QCOMPARE(GetAppBaseName(), QStringLiteral("tst_appinfo"));
        QVERIFY(GetAppPath().endsWith(QLatin1Char('/')));
        QCOMPARE(GetAppPath() + GetAppName(), GetAppPathFileName());
        QCoreApplication::setApplicationName(QStringLiteral("other"));
        QCOMPARE(GetAppName(), QStringLiteral("tst_appinfo"));
    }

    void fixedResults()
    {
        QCOMPARE(GetKxPrintDir(), QStringLiteral(""));
        QVERIFY(!GetKxPrintDir().isNull());
        QCOMPARE(MeetDeviceType(), std::string("pc"));
        const QStringList keys{
            QString(),         QStringLiteral("a"),    QStringLiteral("A\\B\\C"),
            QString(QChar(0)), QString(QChar(0xD83D)), QString(1 << 20, QLatin1Char('x'))};
        for (const QString &key : keys) {
            unsigned int number = 7;
            QString text = QStringLiteral("before");
            QVERIFY(!GetRegKey(key, number));
            QCOMPARE(number, 7U);
            QVERIFY(!GetRegKey(key, text));
            QCOMPARE(text, QStringLiteral("before"));
            QVERIFY(!SetRegKey(key, 8U));
            QVERIFY(!SetRegKey(key, QStringLiteral("after")));
            QVERIFY(!GetRegKey(key, number));
            QCOMPARE(number, 7U);
            QVERIFY(!DelRegKey(key));
            QVERIFY(!DealRegistryCfg(key));
        }
    }
};

QTEST_GUILESS_MAIN(TestAppInfo)
#include "tst_appinfo.moc"
