#include "SelfRun.h"
#include "common/AppInfo.h"
#include "common/FileHelper.h"
#include "common/PathHelper.h"
#include "common/TimeFormat.h"
#include "common/ValueConvert.h"

#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <cstdio>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

using KxBase::KxByteArray;
using KxBase::KxVariant;
using KxBase::KxVariantMap;

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 2;
constexpr int kProcesses = 50;

std::atomic<int> messages{0};
std::mutex failuresMutex;
std::map<std::string, int> failures; // how often which check failed

void check(bool holds, const char *what)
{
    if (holds)
        return;
    const std::lock_guard<std::mutex> lock(failuresMutex);
    ++failures[what];
}
#define CHECK(condition) check((condition), #condition)

void countMessage(QtMsgType /*level*/, const QMessageLogContext & /*context*/,
                  const QString & /*message*/)
{
    ++messages;
}

QString q(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// Of the time functions, `first` is called before all others.
void checkTimes(int first)
{
    if (first == 1)
        CHECK(CoverTime2LocalTime(q("2020-01-01 00:00:00")) == q("2020-01-01 00:00:00"));
    if (first == 2)
        CHECK(CoverTime2Str(0) == q("00:00:00 (1970-01-01)"));
    CHECK(CoverTime(1577836800).toSecsSinceEpoch() == 1577836800);
    CHECK(CoverTime2LocalTime(q("2020-01-01 00:00:00")) == q("2020-01-01 00:00:00"));
    CHECK(CoverTime2LocalTime(q("2020-01-01")).isEmpty());
    CHECK(CoverTime2Str(0) == q("00:00:00 (1970-01-01)"));
    CHECK(CoverTime2MinStr(0) == q("00:00 (1970-01-01)"));
    CHECK(CoverDuration2Str(3725, false) == q("01:02:05"));
}

void checkPaths()
{
    CHECK(GetBackslash_reverse() == '\\');
    CHECK(CorrectPathFormat(q("a\\b")) == q("a/b"));
    CHECK(AddBackslashAtBegin(q("a")) == q("/a"));
    CHECK(RmBackslashAtBegin(q("/a")) == q("a"));
    CHECK(AddBackslashAtend(q("a")) == q("a/"));
    CHECK(RmBackslashAtend(q("a/")) == q("a"));
    CHECK(GetSysTempPath().endsWith(QLatin1Char('/')));
    CHECK(GetSysAppDataPath().endsWith(QLatin1Char('/')));
    CHECK(GetSysDocumentsPath().endsWith(QLatin1Char('/')));
    CHECK(GetSysDownloadPath().endsWith(QLatin1Char('/')));
    CHECK(!GetSysHomePath().isEmpty());
    CHECK(FileNameIllegalCharDeal(q("a:b")) == q("a_b"));
    CHECK(GetSuffixWithDot(QFileInfo(q("a.b"))) == q(".b"));
    CHECK(GetDriveNameFromFile(q("D:/a")) == q("D:\\"));
    CHECK(IsLocFile(q("D:/a")));
}

void checkFiles(const QString &shared, const QString &own)
{
    const unsigned char zlib[] = {0x78, 0x9C, 0x4B, 0x4C, 0x4A, 0x06, 0x00, 0x02, 0x4D, 0x01, 0x27};
    QByteArray data;
    QString md5;
    CHECK(WriteDataToFile("ab", own, false));
    CHECK(WriteDataToFile2("c", own, true) == 0);
    CHECK(ReadDataFromFile(own, data));
    CHECK(data == "abc");
    CHECK(ReadDataFromFile(shared, data));
    CHECK(data == "shared");
    CHECK(GetFileMd5(shared, md5) == 0);
    CHECK(md5 == MakeMd5("shared"));
    CHECK(makeUUID() != makeUUID());
    CHECK(uncompressRowZlibDat(zlib, sizeof zlib) == "abc");
    CHECK(GetEncodeSize({4000, 3000}, {1920, 1080}) == QSize(1440, 1080));
    CHECK(GetSizeFromString(q("8x6"), q("x")) == QSize(8, 6));
    CHECK(strToIntList(q("1,2"), q(",")) == QList<int>({1, 2}));
}

// `kx` and `qt` belong to all threads; they hold a value that has no counterpart each.
void checkValues(const KxVariantMap &kx, const QVariantMap &qt)
{
    const QMap<QString, QString> texts{{q("a"), q("1")}};
    const std::map<std::string, std::string> utf8{{"a", "1"}};
    std::map<std::string, std::string> converted{{"b", "2"}};
    QStringMap2StdStringMap(texts, converted);
    const QVariantMap toQt = KxVariantToQVariant(kx);
    const KxVariantMap toKx = QVariantToKxVariant(qt);
    CHECK(toQt[q("list")].toList().size() == 3);
    CHECK(toKx.find("list")->second.toList().size() == 3);
    CHECK(KxVariantToQVariant(KxVariant(kx)).toMap() == toQt);
    CHECK(KxByteArrayToQByteArray(QByteArrayToKxByteArray("abc")) == "abc");
    CHECK(StdStringListToQStringList(QStringListToStdStringList({q("a")})) ==
          QStringList({q("a")}));
    CHECK(Varmap2QStringMap(QStringMap2Varmap(texts)) == texts);
    CHECK(StdstringMap2QStringMap(utf8) == texts);
    CHECK(converted == utf8);
    CHECK(QStringMapToString(texts) == q("a=1;"));
    CHECK(getMapValue(texts, q("a")) == q("1"));
    CHECK(getMapValue(utf8, "a") == "1");
    CHECK(getMapValue(qt, q("number")) == 7);
    CHECK(getMapIntValue(qt, q("number"), 0) == 7);
    CHECK(Cover_boolStr_Tobool(q("TRUE"), false));
    CHECK(replaceDomainOfURL(q("s://a/b"), q("c")) == q("s://c/b"));
}

void checkApplication()
{
    unsigned int number = 7;
    QString text;
    CHECK(GetAppPath() + GetAppName() == GetAppPathFileName());
    CHECK(GetAppBaseName() == q("tst_helperthreads"));
    CHECK(GetAppVer().isEmpty());
    CHECK(GetKxPrintDir().isEmpty());
    CHECK(MeetDeviceType() == "pc");
    CHECK(!GetRegKey(text, number));
    CHECK(!GetRegKey(text, text));
    CHECK(!SetRegKey(text, number));
    CHECK(!SetRegKey(text, text));
    CHECK(!DelRegKey(text));
    CHECK(!DealRegistryCfg(text));
}

// All helpers in all threads, the first calls of this process at the same time. Prints what was
// wrong.
int runChild(int first)
{
    const QTemporaryDir dir;
    const QString shared = dir.filePath(q("shared"));
    check(WriteDataToFile("shared", shared, false), "the shared file can be written");

    KxVariantMap kx;
    kx["list"] = std::list<KxVariant>{1, KxVariant::fromTypeCode(6), KxByteArray("x", 1)};
    const QVariantMap qt{{q("list"), QVariantList{1, QSize(), q("x")}}, {q("number"), 7}};

    std::atomic<int> waiting{kThreads};
    const auto work = [&](int thread) {
        const QString own = dir.filePath(QString::number(thread));
        --waiting;
        while (waiting > 0)
            std::this_thread::yield();
        for (int round = 0; round < kRounds; ++round) {
            checkTimes(first); // Qt prepares the most for these, so they come first
            checkPaths();
            checkFiles(shared, own);
            checkValues(kx, qt);
            checkApplication();
        }
    };
    const QtMessageHandler before = qInstallMessageHandler(&countMessage);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back(work, i);
    for (std::thread &thread : threads)
        thread.join();
    qInstallMessageHandler(before);

    CHECK(messages == 3 * kThreads * kRounds);
    for (const auto &failure : failures)
        std::printf("%d times not: %s\n", failure.second, failure.first.c_str());
    return 0;
}

} // namespace

class TestHelperThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // In fresh processes, since it is the first call that may find something half made.
    void everyHelperFromEightThreads()
    {
        for (int i = 0; i < kProcesses; ++i)
            QCOMPARE(runSelf({QStringLiteral("--all"), QString::number(i % 3)}), QByteArray());
    }
};

int main(int argc, char *argv[])
{
    qputenv("TZ", "UTC");
    qunsetenv("QT_LOGGING_RULES");
    qunsetenv("QT_LOGGING_CONF");
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.value(0) == QLatin1String("--all"))
        return runChild(arguments.value(1).toInt());
    TestHelperThreads test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_helperthreads.moc"
