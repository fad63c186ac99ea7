#include "PageFiles.h"
#include "ResourceLimits.h"
#include "TinyPictures.h"
#include "faults/FaultRuns.h"

#include <QDir>
#include <QMap>
#include <QtTest>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr char kDeck[] = R"({"slides": [
  {"background": "noise.png",
   "shapes": [{"id": 1, "picture": "red.png"}],
   "effects": [{"shape": 1, "trigger": "click"}]},
  {"background": "red.png"}
]})";

// Small allocations fail on no machine that has the space for the others, and Qt 5 dies of it where
// it makes threads, connections, locales and logging categories: it goes on with a null pointer or
// waits for its own lock.
constexpr int kLeastAllocation = 4096;

// Of smaller ones fontconfig leaves out fonts without a word, and ICU, which puts the files of a
// folder in order, goes on with a null pointer.
constexpr int kLargeAllocation = 65536;

constexpr std::array<const char *, 8> kKinds = {"open",   "read",  "write", "rename",
                                                "unlink", "mkdir", "close", "memory"};

struct Command
{
    const char *line;
    std::array<int, kKinds.size()> leastCalls; // of each kind, by the files that there are
};

constexpr Command kCommands[] = {
    {"wrap red.png noise.png -o new", {4, 2, 2, 2, 0, 1, 4, 1}},
    {"wrap red.png noise.png -o out --force", {4, 2, 2, 3, 0, 0, 4, 1}},
    {"encode red.png grey.jpg noise.png -o new", {6, 3, 3, 3, 1, 1, 6, 1}},
    {"encode red.png grey.jpg noise.png -o out --force", {6, 3, 3, 4, 1, 0, 6, 1}},
    {"info picture doc/page_0", {2, 2, 0, 0, 0, 0, 2, 1}},
    {"check picture doc/page_0", {2, 2, 0, 0, 0, 0, 2, 1}},
    {"unwrap picture -o new", {2, 1, 1, 1, 0, 0, 2, 1}},
    {"unwrap picture -o old --force", {2, 1, 1, 2, 0, 0, 2, 1}},
    {"build deck.json -o new", {5, 3, 2, 2, 0, 1, 5, 1}},
    {"build deck.json -o out --force", {5, 3, 2, 3, 0, 0, 5, 1}},
    {"model doc/page_0", {1, 1, 0, 0, 0, 0, 1, 1}},
    {"model doc/page_0 doc/page_1 --json --extract new -o new/deck.json", {5, 2, 3, 3, 0, 1, 5, 1}},
    {"render picture -o new.png", {2, 1, 1, 1, 0, 0, 2, 1}},
    {"render doc/page_0 --step 1 --ms 100 -o new.png", {2, 1, 1, 1, 0, 0, 2, 1}},
    {"render doc -o new.png", {4, 2, 1, 1, 0, 0, 3, 1}},
    {"play doc/page_0 doc/page_1 -o new --fps 4", {7, 2, 5, 5, 0, 1, 7, 1}},
};

int leastCalls(const Command &command, const Fault &fault)
{
    const auto *const kind = std::find_if(kKinds.begin(), kKinds.end(), [&](const char *one) {
        return std::strcmp(one, fault.kind) == 0;
    });
    return command.leastCalls.at(static_cast<size_t>(kind - kKinds.begin()));
}

QVector<Fault> faultsFor(const QStringList &command)
{
    QVector<Fault> faults(std::begin(kFileFaults), std::end(kFileFaults));
    if (kSanitized) // it has an allocator of its own, which is in front of the faults
        return faults;
    const bool usesOthers = command.constFirst() == text("play") || command.contains(text("doc"));
    if (!usesOthers)
        faults.append(memoryFault(kLeastAllocation));
    faults.append(memoryFault(kLargeAllocation));
    return faults;
}

// What "check" finds wrong is its output. Of what a file holds, a fault tells nothing.
Outcome withFindingsAsErrors(Outcome outcome)
{
    for (const QByteArray &line : outcome.out.split('\n')) {
        if (line.contains(": error: unreadable: "))
            outcome.err += "docpage: " + line + '\n';
        else if (!line.isEmpty() && !line.contains(": ok, "))
            outcome.err += line + '\n';
    }
    return outcome;
}

} // namespace

/// Each call for a file, and each allocation, fails once: docpage does all of its work or says what
/// is wrong, and no file is lost or halfway there.
class TestFaults : public QObject
{
    Q_OBJECT

private:
    void fill(const Workplace &place) const
    {
        QDir dir(place.path({}));
        for (const char *folder : {"doc", "out"})
            dir.mkdir(text(folder));
        for (auto file = m_files.cbegin(); file != m_files.cend(); ++file)
            place.write(file.key(), file.value());
    }

    QMap<QString, QByteArray> m_files;

private Q_SLOTS:
    void initTestCase()
    {
        m_files = {{text("red.png"), TinyPictures::png()},
                   {text("grey.jpg"), TinyPictures::jpg()},
                   {text("noise.png"), PageFiles::noise()},
                   {text("deck.json"), kDeck},
                   {text("out/page_0"), "old"},
                   {text("old"), "old"}};
        m_files[text("picture")] = PageFiles::pageResultFile(4, m_files.value(text("noise.png")));
        const Workplace place;
        fill(place);
        QCOMPARE(place.run(words("build deck.json -o doc")).status, 0);
        for (const QString &page : words("doc/page_0 doc/page_1"))
            m_files[page] = place.read(page);
    }

    void everyCall_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<int>("leastCalls");
        for (const Command &command : kCommands) {
            const QStringList arguments = words(command.line);
            for (const Fault &fault : faultsFor(arguments))
                QTest::addRow("%s: %s", command.line, nameOf(fault).constData())
                    << arguments << fault << leastCalls(command, fault);
        }
    }
    void everyCall()
    {
        QFETCH(QStringList, arguments);
        QFETCH(Fault, fault);
        QFETCH(int, leastCalls);
        Workplace undisturbed;
        fill(undisturbed);
        const QStringList before = undisturbed.entries();
        const FaultyRun whole = runWithFault(undisturbed, arguments, fault);
        QCOMPARE(whole.outcome.err, QByteArray());
        QCOMPARE(whole.outcome.status, 0);
        QVERIFY2(whole.calls >= leastCalls, qPrintable(QString::number(whole.calls)));
        const QStringList done = undisturbed.entries();

        for (fault.at = 1; fault.at <= whole.calls; ++fault.at) {
            Workplace place;
            fill(place);
            Outcome outcome = runWithFault(place, arguments, fault).outcome;
            if (arguments.constFirst() == text("check"))
                outcome = withFindingsAsErrors(outcome);
            const QString wrong = harm(outcome, place.entries(), before, done);
            QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("call %1 of %2: %3\n%4")
                                                     .arg(fault.at)
                                                     .arg(whole.calls)
                                                     .arg(wrong, QString::fromUtf8(outcome.err))));
            if (outcome.status == 0)
                QCOMPARE(outcome.out, whole.outcome.out);
        }
    }

    // Calls whose failing cannot go unnoticed, and some whose failing has to.
    void neededCalls_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<QByteArray>("message"); // empty: all is done
        QStringList arguments = words("wrap red.png noise.png -o new");
        const auto row = [&](const char *name, const Fault &fault, const char *message) {
            QTest::newRow(name) << arguments << fault << QByteArray(message);
        };
        row("the first input", {"open", 1, EIO}, "docpage: red.png: Input/output error\n");
        row("the first page itself", {"open", 2, EACCES},
            "docpage: new/page_0: Permission denied\n");
        row("what the first input holds", {"read", 1, EIO},
            "docpage: red.png: Input/output error\n");
        row("the folder", {"mkdir", 1, ENOSPC}, "docpage: new: No space left on device\n");
        row("what the first page holds", {"write", 1, ENOSPC},
            "docpage: new/page_0: No space left on device\n");
        row("the name of the first page", {"rename", 1, EIO},
            "docpage: new/page_0: Input/output error\n");
        row("the name of the other page", {"rename", 2, EIO},
            "docpage: new/page_1: Input/output error\n");
        if (!kSanitized)
            row("room for noise.png", memoryFault(kLargeAllocation, 1),
                "docpage: noise.png: out of memory\n");

        // By then docpage has read the file itself, and the display manager has loaded the slide.
        arguments = words("render doc/page_0 -o new.png");
        row("the slide, to learn its format", {"open", 4, EIO},
            "docpage: doc/page_0: the background cannot be decoded\n");
        row("what it holds", {"read", 6, EIO},
            "docpage: doc/page_0: the background cannot be decoded\n");
        row("the rest of it", {"read", 7, EIO, true},
            "docpage: doc/page_0: the background cannot be decoded\n");
        // Whatever is no slide is taken for a picture, and read once more.
        arguments = words("render picture -o new.png");
        row("the picture, to learn its format", {"open", 3, EIO}, "");
        row("what the picture holds, to learn its format", {"read", 4, EIO}, "");
        row("the picture, to decode it", {"open", 4, EIO},
            "docpage: picture: the picture cannot be decoded\n");
    }
    void neededCalls()
    {
        QFETCH(QStringList, arguments);
        QFETCH(Fault, fault);
        QFETCH(QByteArray, message);
        Workplace place;
        fill(place);
        const FaultyRun run = runWithFault(place, arguments, fault);
        QCOMPARE(run.outcome.err, message);
        QCOMPARE(run.outcome.status, message.isEmpty() ? 0 : 1);
        QVERIFY(run.calls >= fault.at);
    }
};

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_faults.moc"
