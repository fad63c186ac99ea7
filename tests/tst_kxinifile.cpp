#include "LatinLocale.h"

#include <KxCommon/KxIniFile.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

#include <sys/stat.h>

namespace {

constexpr int kMaxFileSize = 1048576; // bytes

// A QByteArray of a whole literal, NULs included.
template <int N>
QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

} // namespace

class tst_KxIniFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void value_data();
    void value();
    void key_data();
    void key();
    void section_data();
    void section();
    void unusualBytes_data();
    void unusualBytes();
    void unreadableFile_data();
    void unreadableFile();
    void largestFile_data();
    void largestFile();
    void pipeIsNotWaitedFor();
    void fileIsReadAnew();
    void severalThreads();

private:
    QString write(const QByteArray &content);

    QTemporaryDir m_folder;
    const LatinLocale m_locale;
};

void tst_KxIniFile::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

QString tst_KxIniFile::write(const QByteArray &content)
{
    QFile file(m_folder.filePath(QStringLiteral("app.ini")));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    return file.fileName();
}

void tst_KxIniFile::value_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain line: its value") << bytes("[VER]\nVer=1.2\n") << QStringLiteral("1.2");
    QTest::newRow("no final newline: its value")
        << bytes("[VER]\nVer=1.2") << QStringLiteral("1.2");
    QTest::newRow("CR LF: no CR in the value")
        << bytes("[VER]\r\nVer=1.2\r\n") << QStringLiteral("1.2");
    QTest::newRow("CR LF and no final newline: no CR in the value")
        << bytes("[VER]\r\nVer=1.2\r") << QStringLiteral("1.2");
    QTest::newRow("byte order mark before the section: skipped")
        << bytes("\xEF\xBB\xBF[VER]\nVer=1.2\n") << QStringLiteral("1.2");
    QTest::newRow("byte order mark and CR LF: as without them")
        << bytes("\xEF\xBB\xBF[VER]\r\n\r\n;Ver=0\r\nVer=1.2\r\nVer=3\r\n")
        << QStringLiteral("1.2");
    QTest::newRow("byte order mark only: empty") << bytes("\xEF\xBB\xBF") << QString();
    QTest::newRow("byte order mark further down: part of its line")
        << bytes("[VER]\n\xEF\xBB\xBFVer=0\nVer=1.2\n") << QStringLiteral("1.2");
    QTest::newRow("lone CRs end no lines")
        << bytes("[VER]\nX=1\rVer=0\r\nVer=1.2\n") << QStringLiteral("1.2");
    QTest::newRow("duplicate key in a repeated section: the first")
        << bytes("[VER]\nVer=1.2\n[A]\n[VER]\nVer=3\n") << QStringLiteral("1.2");
    QTest::newRow("blank lines: ignored")
        << bytes("\n\n[VER]\n\n \t\n\r\nVer=1.2\n\n") << QStringLiteral("1.2");

    QTest::newRow("comment with ; before the line: ignored")
        << bytes("[VER]\n;Ver=old\nVer=1.2\n") << QStringLiteral("1.2");
    QTest::newRow("comment with # before the line: ignored")
        << bytes("[VER]\n#Ver=old\nVer=1.2\n") << QStringLiteral("1.2");
    QTest::newRow("indented comments: ignored")
        << bytes("[VER]\n \t; Ver=old\n  # Ver=old\nVer=1.2\n") << QStringLiteral("1.2");
    QTest::newRow("section in a comment: ignored")
        << bytes("[VER]\n;[OTHER]\n#[OTHER]\nVer=1.2\n") << QStringLiteral("1.2");
    QTest::newRow("; and # within the value: kept")
        << bytes("[VER]\nVer=1;2 # three\n") << QStringLiteral("1;2 # three");

    QTest::newRow("blanks around all names and the value: trimmed")
        << bytes("  [ \tVER ]  \n \tVer \t=\t 1.2 \t \n") << QStringLiteral("1.2");
    QTest::newRow("blanks within the value: kept")
        << bytes("[VER]\nVer=1.2  beta 3\n") << QStringLiteral("1.2  beta 3");
    QTest::newRow("= within the value: kept")
        << bytes("[VER]\nVer=a=b==c=\n") << QStringLiteral("a=b==c=");
    QTest::newRow("quotes: kept") << bytes("[VER]\nVer=\"1.2\"\n") << QStringLiteral("\"1.2\"");
    QTest::newRow("backslashes: kept")
        << bytes("[VER]\nVer=C:\\new\\table\n") << QStringLiteral("C:\\new\\table");
    QTest::newRow("[ in the value: kept") << bytes("[VER]\nVer=[1.2]\n") << QStringLiteral("[1.2]");
    QTest::newRow("UTF-8 of two, three and four bytes: decoded")
        << bytes("[VER]\nVer=\xC3\xA9 \xE7\x89\x88 \xF0\x9F\x98\x80\n")
        << QString::fromUcs4(U"\u00E9 \u7248 \U0001F600", 5);

    QTest::newRow("no value: empty") << bytes("[VER]\nVer=\n") << QString();
    QTest::newRow("blank value: empty") << bytes("[VER]\nVer= \t\r\n") << QString();
    QTest::newRow("no such key: empty") << bytes("[VER]\nVersion=1.2\n") << QString();
    QTest::newRow("key in other case: empty") << bytes("[VER]\nver=1.2\nVER=1.2\n") << QString();
    QTest::newRow("key without =: empty") << bytes("[VER]\nVer\nVer 1.2\nVer: 1.2\n") << QString();
    QTest::newRow("key within a longer one: empty")
        << bytes("[VER]\nMyVer=1\nVer2=2\n") << QString();
    QTest::newRow("key in the value only: empty") << bytes("[VER]\nName=Ver=1.2\n") << QString();
    QTest::newRow("junk lines: ignored")
        << bytes("[VER]\n???\nVer\n=\n= Ver=2\n<Ver>\nVer=1.2\n") << QStringLiteral("1.2");

    QTest::newRow("a bracket after the section's: not part of its name")
        << bytes("[VER] ; see [1]\nVer=1.2\n") << QStringLiteral("1.2");
    QTest::newRow("section without a name: another one")
        << bytes("[]\nVer=1\n[VER]\nVer=2\n") << QStringLiteral("2");
    QTest::newRow("section without a name ends the one before")
        << bytes("[VER]\n[]\nVer=1\n") << QString();
    QTest::newRow("duplicate key: the first")
        << bytes("[VER]\nVer=1\nOther=x\nVer=2\n") << QStringLiteral("1");
    QTest::newRow("duplicate key, the first without value: empty")
        << bytes("[VER]\nVer=\nVer=2\n") << QString();
}

void tst_KxIniFile::value()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);

    const QString file = write(content);
    QVERIFY(!file.isEmpty());
    QCOMPARE(GetInifileString(QStringLiteral("VER"), QStringLiteral("Ver"), file), expected);
}

void tst_KxIniFile::key_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain: found") << QStringLiteral("plain") << QStringLiteral("1");
    QTest::newRow("blanks within: found") << QStringLiteral("two words") << QStringLiteral("2");
    QTest::newRow("UTF-8: found") << QString::fromUcs4(U"\u7248", 1) << QStringLiteral("3");
    QTest::newRow("; within: found") << QStringLiteral("a;b") << QStringLiteral("4");
    QTest::newRow("asked for with blanks: empty") << QStringLiteral(" plain ") << QString();
    QTest::newRow("begins with ;: a comment, empty") << QStringLiteral(";c") << QString();
    QTest::newRow("begins with #: a comment, empty") << QStringLiteral("#d") << QString();
    QTest::newRow("begins with [: a section, empty") << QStringLiteral("[VER]") << QString();
    QTest::newRow("none before the =: junk, empty") << QString() << QString();
    QTest::newRow("a whole line: empty") << QStringLiteral("plain=1") << QString();
}

void tst_KxIniFile::key()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);

    const QString file = write(bytes("[VER]\nplain=1\ntwo words=2\n\xE7\x89\x88=3\na;b=4\n"
                                     ";c=5\n#d=6\n[VER]=7\n=8\n"));
    QVERIFY(!file.isEmpty());
    QCOMPARE(GetInifileString(QStringLiteral("VER"), name, file), expected);
}

void tst_KxIniFile::section_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    const QString ver = QStringLiteral("VER");
    QTest::newRow("empty file: empty") << ver << QByteArray() << QString();
    QTest::newRow("no such section: empty") << ver << bytes("[OTHER]\nVer=1\n") << QString();
    QTest::newRow("section in other case: empty") << ver << bytes("[Ver]\nVer=1\n") << QString();
    QTest::newRow("section within a longer name: empty")
        << ver << bytes("[MYVER]\nVer=1\n[VER2]\nVer=2\n") << QString();
    QTest::newRow("key before the section only: empty")
        << ver << bytes("Ver=1\n[VER]\n") << QString();
    QTest::newRow("key in the section before only: empty")
        << ver << bytes("[A]\nVer=1\n[VER]\nX=2\n") << QString();
    QTest::newRow("key in the section after only: empty")
        << ver << bytes("[VER]\nX=1\n[A]\nVer=2\n") << QString();
    QTest::newRow("key in several sections: that of the section asked for")
        << ver << bytes("Ver=0\n[A]\nVer=1\n[VER]\nVer=2\n[B]\nVer=3\n") << QStringLiteral("2");
    QTest::newRow("repeated section: the first with the key")
        << ver << bytes("[VER]\nX=0\n[A]\nVer=1\n[VER]\nVer=2\n[VER]\nVer=3\n")
        << QStringLiteral("2");
    QTest::newRow("comment behind the section: ignored")
        << ver << bytes("[VER] ; the version\nVer=1\n") << QStringLiteral("1");
    QTest::newRow("section without ]: a junk line, the section before goes on")
        << ver << bytes("[VER]\n[OTHER\nVer=1\n") << QStringLiteral("1");
    QTest::newRow("section without ] and with =: a junk line")
        << ver << bytes("[VER\nVer=1\n") << QString();
    QTest::newRow("blanks within the name: kept")
        << QStringLiteral("VER  2") << bytes("[VER 2]\nVer=1\n[VER  2]\nVer=2\n")
        << QStringLiteral("2");
    QTest::newRow("name in UTF-8: found")
        << QString::fromUcs4(U"\u7248", 1) << bytes("[\xE7\x89\x88]\nVer=1\n")
        << QStringLiteral("1");
    QTest::newRow("name asked for with blanks: empty")
        << QStringLiteral(" VER ") << bytes("[ VER ]\nVer=1\n") << QString();

    QTest::newRow("no name: the lines before the first section")
        << QString() << bytes("Ver=1\n[VER]\nVer=2\n") << QStringLiteral("1");
    QTest::newRow("no name, byte order mark: the lines before the first section")
        << QString() << bytes("\xEF\xBB\xBFVer=1\n[VER]\nVer=2\n") << QStringLiteral("1");
    QTest::newRow("no name, no lines before the first section: empty")
        << QString() << bytes("[VER]\nVer=2\n") << QString();
    QTest::newRow("no name: the section [] too")
        << QString() << bytes("[VER]\nVer=1\n[ ]\nVer=2\n") << QStringLiteral("2");
}

void tst_KxIniFile::section()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);

    const QString file = write(content);
    QVERIFY(!file.isEmpty());
    QCOMPARE(GetInifileString(name, QStringLiteral("Ver"), file), expected);
}

void tst_KxIniFile::unusualBytes_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    QTest::newRow("invalid UTF-8 in the value: U+FFFD")
        << bytes("[VER]\nVer=a\xFFz\n") << QString::fromUcs4(U"a\uFFFDz", 3);
    QTest::newRow("UTF-8 cut off by the line's end: U+FFFD, the next line is intact")
        << bytes("[VER]\nX=\xE7\nVer=1\n") << QStringLiteral("1");
    QTest::newRow("UTF-8 cut off by the file's end: U+FFFD")
        << bytes("[VER]\nVer=1\xC3") << QString::fromUcs4(U"1\uFFFD", 2);
    QTest::newRow("invalid UTF-8 in a line before: ignored")
        << bytes("\x80\xFE\xC0\xAF\n[VER]\n\xED\xA0\x80=1\nVer=1\n") << QStringLiteral("1");
    QTest::newRow("NULs in lines before: ignored")
        << bytes("\0\0\n[VER]\n\0Ver=0\nVer=1\n") << QStringLiteral("1");
    QTest::newRow("NUL in the value: kept")
        << bytes("[VER]\nVer=a\0b\n") << QString::fromUcs4(U"a\0b", 3);
    QTest::newRow("byte order mark of UTF-16: read as UTF-8 all the same")
        << bytes("\xFF\xFE\n[VER]\nVer=1\n") << QStringLiteral("1");
    QTest::newRow("UTF-16: no section, empty")
        << bytes("\xFF\xFE[\0V\0E\0R\0]\0\n\0V\0e\0r\0=\0001\0\n\0") << QString();
    QTest::newRow("all bytes: ignored") << [] {
        QByteArray all;
        for (int i = 0; i < 65536; ++i)
            all.append(static_cast<char>(i * 31 + i / 256));
        return all + bytes("\n[VER]\nVer=1\n");
    }() << QStringLiteral("1");
    QTest::newRow("1 MB line of junk: ignored")
        << bytes("[VER]\n") + QByteArray(1'000'000, 'x') + bytes("\nVer=1\n")
        << QStringLiteral("1");
    QTest::newRow("1 MB value: in full")
        << bytes("[VER]\nVer=") + QByteArray(1'000'000, 'x') + bytes("\n")
        << QString(1'000'000, QLatin1Char('x'));
    QTest::newRow("1 MB of line ends: ignored")
        << QByteArray(1'000'000, '\n') + bytes("[VER]\nVer=1\n") << QStringLiteral("1");
    QTest::newRow("1 MB of [: ignored")
        << bytes("[VER]\n") + QByteArray(1'000'000, '[') + bytes("\nVer=1\n")
        << QStringLiteral("1");
}

void tst_KxIniFile::unusualBytes()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);

    const QString file = write(content);
    QVERIFY(!file.isEmpty());
    // Not QCOMPARE, which would print megabytes.
    QVERIFY(GetInifileString(QStringLiteral("VER"), QStringLiteral("Ver"), file) == expected);
}

void tst_KxIniFile::unreadableFile_data()
{
    QTest::addColumn<QString>("file");

    QTest::newRow("no name: empty") << QString();
    QTest::newRow("missing file: empty") << m_folder.filePath(QStringLiteral("none.ini"));
    QTest::newRow("missing folder: empty") << m_folder.filePath(QStringLiteral("none/app.ini"));
    QTest::newRow("directory: empty") << m_folder.path();
    QTest::newRow("endless device: empty") << QStringLiteral("/dev/zero");
}

void tst_KxIniFile::unreadableFile()
{
    QFETCH(QString, file);
    QCOMPARE(GetInifileString(QString(), QStringLiteral("Ver"), file), QString());
    QCOMPARE(GetInifileString(QStringLiteral("VER"), QStringLiteral("Ver"), file), QString());
}

void tst_KxIniFile::largestFile_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("expected");

    QTest::newRow("1 MiB: read") << qint64(kMaxFileSize) << QStringLiteral("1");
    QTest::newRow("1 MiB and a byte: empty") << qint64(kMaxFileSize) + 1 << QString();
    QTest::newRow("8 GiB: empty") << (qint64(8) << 30) << QString();
}

void tst_KxIniFile::largestFile()
{
    QFETCH(qint64, size);
    QFETCH(QString, expected);

    const QString name = write(bytes("[VER]\nVer=1\n"));
    QVERIFY(!name.isEmpty());
    QVERIFY(QFile::resize(name, size)); // a hole, which takes no room
    QCOMPARE(GetInifileString(QStringLiteral("VER"), QStringLiteral("Ver"), name), expected);
}

void tst_KxIniFile::pipeIsNotWaitedFor()
{
    const QString name = m_folder.filePath(QStringLiteral("pipe.ini"));
    QCOMPARE(::mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    QCOMPARE(GetInifileString(QStringLiteral("VER"), QStringLiteral("Ver"), name), QString());
}

void tst_KxIniFile::fileIsReadAnew()
{
    const QString name = write(bytes("[VER]\nVer=1\n"));
    QCOMPARE(GetInifileString(QStringLiteral("VER"), QStringLiteral("Ver"), name),
             QStringLiteral("1"));
    QCOMPARE(write(bytes("[VER]\nVer=2\n")), name);
    QCOMPARE(GetInifileString(QStringLiteral("VER"), QStringLiteral("Ver"), name),
             QStringLiteral("2"));
}

void tst_KxIniFile::severalThreads()
{
    const QString name = write(bytes("[VER]\nVer=1\n"));
    std::atomic<int> found{0};
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 100; ++n) {
                if (GetInifileString(QStringLiteral("VER"), QStringLiteral("Ver"), name) ==
                    QStringLiteral("1"))
                    ++found;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(found.load(), 400);
}

QTEST_GUILESS_MAIN(tst_KxIniFile)
#include "tst_kxinifile.moc"
