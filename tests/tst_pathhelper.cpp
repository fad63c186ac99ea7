#include "common/PathHelper.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

// Texts that are hard to handle, none of which any function here gives a meaning to.
struct OddText
{
    const char *name;
    QString text;
};

QVector<OddText> oddTexts()
{
    return {{"NUL", QString::fromUcs4(U"a\0b", 3)},
            {"NUL alone", QString(QChar(0))},
            {"beyond the BMP", QString::fromUcs4(U"\U0001F600", 1)},
            {"high surrogate alone", QString(QChar(0xD83D))},
            {"low surrogate alone", QString(QChar(0xDE00))},
            {"surrogates in the wrong order", QString(QChar(0xDE00)) + QChar(0xD83D)},
            {"not a character", QString(QChar(0xFFFF))},
            {"byte order mark", QString(QChar(0xFEFF))},
            {"blanks and tabs", QStringLiteral(" \t ")},
            {"umlauts", QStringLiteral("äöü")},
            {"other slashes and colons", QStringLiteral("\u2215\u29F8\uFF0F\uFF3C\uFF1A\u2236")},
            {"very long", QString(1 << 20, QLatin1Char('x'))}};
}

} // namespace

class TestPathHelper : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir; // made before the environment is changed

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void backslash() { QCOMPARE(GetBackslash_reverse(), '\x5C'); }

    void slashes_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("corrected");
        QTest::addColumn<QString>("begun");
        QTest::addColumn<QString>("notBegun");
        QTest::addColumn<QString>("ended");
        QTest::addColumn<QString>("notEnded");
        const auto row = [](const char *path, const char *corrected, const char *begun,
                            const char *notBegun, const char *ended, const char *notEnded) {
            QTest::newRow(path) << latin1(path) << latin1(corrected) << latin1(begun)
                                << latin1(notBegun) << latin1(ended) << latin1(notEnded);
        };
        row("", "", "/", "", "/", "");
        row("a", "a", "/a", "a", "a/", "a");
        row("/", "/", "/", "", "/", "");
        row("\\", "/", "/", "", "/", "");
        row("//", "//", "//", "/", "//", "/");
        row("\\\\", "//", "//", "/", "//", "/");
        row("a\\b\\c", "a/b/c", "/a/b/c", "a/b/c", "a/b/c/", "a/b/c");
        row("D:\\dir", "D:/dir", "/D:/dir", "D:/dir", "D:/dir/", "D:/dir");
        row("dir//", "dir//", "/dir//", "dir//", "dir//", "dir/");
        row("//x", "//x", "//x", "/x", "//x/", "//x");
        row("\\x\\", "/x/", "/x/", "x/", "/x/", "/x");
        row("\\\\host\\share", "//host/share", "//host/share", "/host/share", "//host/share/",
            "//host/share");
        row("a//b\\/c", "a//b//c", "/a//b//c", "a//b//c", "a//b//c/", "a//b//c");
        row("./a/../b/.", "./a/../b/.", "/./a/../b/.", "./a/../b/.", "./a/../b/./", "./a/../b/.");
        row(" /a/ ", " /a/ ", "/ /a/ ", " /a/ ", " /a/ /", " /a/ ");
        for (const OddText &odd : oddTexts()) {
            const QString slash = QStringLiteral("/");
            QTest::newRow(odd.name) << odd.text << odd.text << slash + odd.text << odd.text
                                    << odd.text + slash << odd.text;
        }
        const QString many(1 << 20, QLatin1Char('\\'));
        const QString made(1 << 20, QLatin1Char('/'));
        QTest::newRow("very many") << many << made << made << made.mid(1) << made << made.mid(1);
    }
    void slashes()
    {
        QFETCH(QString, path);
        const QString before(path.constData(), path.size());
        QTEST(CorrectPathFormat(path), "corrected");
        QTEST(AddBackslashAtBegin(path), "begun");
        QTEST(RmBackslashAtBegin(path), "notBegun");
        QTEST(AddBackslashAtend(path), "ended");
        QTEST(RmBackslashAtend(path), "notEnded");
        QCOMPARE(path, before);
    }

    void nullPath()
    {
        QVERIFY(CorrectPathFormat(QString()).isEmpty());
        QCOMPARE(AddBackslashAtBegin(QString()), QStringLiteral("/"));
        QVERIFY(RmBackslashAtBegin(QString()).isEmpty());
        QCOMPARE(AddBackslashAtend(QString()), QStringLiteral("/"));
        QVERIFY(RmBackslashAtend(QString()).isEmpty());
        QVERIFY(FileNameIllegalCharDeal(QString()).isEmpty());
        QVERIFY(GetDriveNameFromFile(QString()).isEmpty());
        QVERIFY(IsLocFile(QString()));
    }

    void folders_data()
    {
        QTest::addColumn<QByteArray>("root");
        QTest::newRow("plain") << QByteArray("user");
        QTest::newRow("blanks and umlauts") << QByteArray("a user \xC3\xA4");
        QTest::newRow("backslash: becomes a slash, but not in the home folder")
            << QByteArray("a\\b");
    }
    void folders()
    {
        QFETCH(QByteArray, root);
        const QString home =
            QDir(m_dir.path()).canonicalPath() + QLatin1Char('/') + QFile::decodeName(root);
        const QString slashed = QString(home).replace(QLatin1Char('\\'), QLatin1Char('/'));
        const auto set = [](const char *name, const QString &value) {
            qputenv(name, QFile::encodeName(value));
        };
        set("HOME", home);
        set("TMPDIR", home + QStringLiteral("/tmp"));
        set("XDG_DATA_HOME", home + QStringLiteral("/data"));
        set("XDG_CONFIG_HOME", home + QStringLiteral("/config"));
        QCoreApplication::setOrganizationName(QStringLiteral("Org"));
        QCoreApplication::setApplicationName(QStringLiteral("App 1"));

        // None of the folders exists, and none is made. It is Qt that wants one for temporary
        // files.
        QCOMPARE(GetSysTempPath(), QStringLiteral("/"));
        QCOMPARE(GetSysAppDataPath(), slashed + QStringLiteral("/data/Org/App 1/"));
        QCOMPARE(GetSysDocumentsPath(), slashed + QStringLiteral("/Documents/"));
        QCOMPARE(GetSysDownloadPath(), slashed + QStringLiteral("/Downloads/"));
        QCOMPARE(GetSysHomePath(), home);
        QVERIFY(!QFileInfo::exists(home));
        QVERIFY(QDir().mkpath(home + QStringLiteral("/tmp")));
        QCOMPARE(GetSysTempPath(), slashed + QStringLiteral("/tmp/"));

        // The application's name counts at the time of the call.
        QCoreApplication::setApplicationName(QStringLiteral("App 2"));
        QCOMPARE(GetSysAppDataPath(), slashed + QStringLiteral("/data/Org/App 2/"));

        // The user's own choice of folders.
        QVERIFY(QDir().mkpath(home + QStringLiteral("/config")));
        QFile choice(home + QStringLiteral("/config/user-dirs.dirs"));
        QVERIFY(choice.open(QIODevice::WriteOnly));
        choice.write("XDG_DOCUMENTS_DIR=\"$HOME/papers\"\nXDG_DOWNLOAD_DIR=\"/var/loads/\"\n");
        choice.close();
        QCOMPARE(GetSysDocumentsPath(), slashed + QStringLiteral("/papers/"));
        QCOMPARE(GetSysDownloadPath(), QStringLiteral("/var/loads/"));
    }

    void foldersAtTheRoot()
    {
        qputenv("HOME", "/");
        qputenv("TMPDIR", "/");
        QCOMPARE(GetSysTempPath(), QStringLiteral("/"));
        QCOMPARE(GetSysHomePath(), QStringLiteral("/"));
        qputenv("HOME", "/home/user/");
        qputenv("TMPDIR", "/usr/lib/");
        QCOMPARE(GetSysTempPath(),
                 QFileInfo(QStringLiteral("/usr/lib")).canonicalFilePath() + QLatin1Char('/'));
        QCOMPARE(GetSysHomePath(), QStringLiteral("/home/user"));
    }

    void legalName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("legal");
        const auto row = [](const char *title, const char *name, const char *legal) {
            QTest::newRow(title) << latin1(name) << latin1(legal);
        };
        row("empty", "", "");
        row("legal", "a-b_c (1).txt", "a-b_c (1).txt");
        row("some", "a:b*c?.txt", "a_b_c_.txt");
        row("backslash", "a\\b", "a_b");
        row("slash", "a/b", "a_b");
        row("colon", "a:b", "a_b");
        row("star", "a*b", "a_b");
        row("double quote", "a\"b", "a_b");
        row("single quote", "a'b", "a_b");
        row("less", "a<b", "a_b");
        row("greater", "a>b", "a_b");
        row("bar", "a|b", "a_b");
        row("question mark", "a?b", "a_b");
        row("line feed", "a\nb", "a_b");
        row("carriage return", "a\rb", "ab");
        row("CR LF", "one\r\ntwo", "one_two");
        row("LF CR", "one\n\rtwo", "one_two");
        row("all", "\\/:*\"'<>|?\n\r", "___________");
        row("twice, and at both ends", "??a??", "__a__");
        row("only carriage returns", "\r\r\r", "");
        row("not trimmed", "  a . ", "  a . ");
        row("control characters", "\t\v\f\b\x01\x1F\x7F", "\t\v\f\b\x01\x1F\x7F");
        row("other punctuation", "`~!@#$%^&()-=+[]{};,.", "`~!@#$%^&()-=+[]{};,.");
        for (const OddText &odd : oddTexts())
            QTest::newRow(odd.name) << odd.text << odd.text;
        QTest::newRow("very many")
            << QStringLiteral(":\r").repeated(1 << 19) << QString(1 << 19, QLatin1Char('_'));
    }
    void legalName()
    {
        QFETCH(QString, name);
        QTEST(FileNameIllegalCharDeal(name), "legal");
    }

    void suffix_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("suffix");
        const auto row = [](const char *file, const char *suffix) {
            QTest::newRow(file) << latin1(file) << latin1(suffix);
        };
        row("", "");
        row("a", "");
        row(".", "");
        row("..", "");
        row("a.b", ".b");
        row("archive.tar.gz", ".gz");
        row("README", "");
        row("name.", "");
        row("name..", "");
        row("name..x", ".x");
        row(".hidden", ".hidden");
        row("/folder.d/file", "");
        row("/folder.d/file.PNG", ".PNG");
        row("/folder.d/", "");
        row("file. x", ". x");
        row("D:\\a.b\\c", ".b\\c");
        QTest::newRow("umlauts") << QStringLiteral("ä.ö") << QStringLiteral(".ö");
        QTest::newRow("beyond the BMP")
            << QString::fromUcs4(U"a.\U0001F600", 3) << QString::fromUcs4(U".\U0001F600", 2);
        QTest::newRow("lone surrogate")
            << QStringLiteral("a.") + QChar(0xD83D) << QStringLiteral(".") + QChar(0xD83D);
        QTest::newRow("NUL") << QString::fromUcs4(U"a.b\0c", 5) << QString::fromUcs4(U".b\0c", 4);
        QTest::newRow("very long") << QStringLiteral("a.") + QString(1 << 20, QLatin1Char('x'))
                                   << QStringLiteral(".") + QString(1 << 20, QLatin1Char('x'));
    }
    void suffix()
    {
        QFETCH(QString, file);
        QTEST(GetSuffixWithDot(QFileInfo(file)), "suffix");
    }
    void suffixOfNothing() { QCOMPARE(GetSuffixWithDot(QFileInfo()), QString()); }

    void drive_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("drive");
        const auto row = [](const char *path, const char *drive) {
            QTest::newRow(path) << latin1(path) << latin1(drive);
        };
        row("", "");
        row("a", "");
        row(":", "");
        row("::", "");
        row(":a:b", "");
        row("/a/b", "");
        row("D:", "D:\\");
        row("D:/a/b", "D:\\");
        row("D:\\a\\b", "D:\\");
        row("D::", "D:\\");
        row("d:x:y", "d:\\");
        row("scheme:rest", "scheme:\\");
        row("http://host:80/", "http:\\");
        row("/a/b:c", "/a/b:\\");
        row("\\a:b", "\\a:\\");
        row(" :", " :\\");
        for (const OddText &odd : oddTexts()) {
            QTest::newRow(odd.name) << odd.text << QString();
            const QByteArray title = QByteArray(odd.name) + ", colon";
            QTest::newRow(title.constData())
                << odd.text + QStringLiteral(":a:") << odd.text + QStringLiteral(":\\");
        }
    }
    void drive()
    {
        QFETCH(QString, path);
        QTEST(GetDriveNameFromFile(path), "drive");
    }

    void localFile_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isLocal");
        const auto row = [](const char *path, bool isLocal) {
            QTest::newRow(path) << latin1(path) << isLocal;
        };
        row("", true);
        row("a", true);
        row(".", true);
        row("/", true);
        row("\\", true);
        row("./a", true);
        row("/tmp/a", true);
        row("D:\\a", true);
        row("D:/a", true);
        row("doc.txt", true);
        row("a/b", true);
        row("a:", true);
        row("::", true);
        row("::a:b", true);
        row("a:b:c", true);
        row(".a:b", true);
        row("..:", true);
        row("/a:b", true);
        row("//host:80", true);
        row("\\\\host\\share", true);
        row(":", false);
        row(":a", false);
        row(":a:", false);
        row("ab:", false);
        row("ab:c", false);
        row("http://host/", false);
        row("file:///tmp/a", false);
        row("\\a:b", false);
        row(" ./a:b", false);
        row("doc.txt:stream", false);
        for (const OddText &odd : oddTexts())
            QTest::newRow(odd.name) << odd.text << true;
        QTest::newRow("NUL, colon") << QString(QChar(0)) + QLatin1Char(':') << true;
        QTest::newRow("lone surrogate, colon") << QString(QChar(0xD83D)) + QLatin1Char(':') << true;
        QTest::newRow("a pair of surrogates, colon")
            << QString::fromUcs4(U"\U0001F600:", 2) << false;
        QTest::newRow("very long, colon")
            << QString(1 << 20, QLatin1Char('x')) + QLatin1Char(':') << false;
    }
    void localFile()
    {
        QFETCH(QString, path);
        QTEST(IsLocFile(path), "isLocal");
    }
};

QTEST_GUILESS_MAIN(TestPathHelper)
#include "tst_pathhelper.moc"
