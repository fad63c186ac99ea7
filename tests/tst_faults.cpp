#include "PageFiles.h"
#include "ResourceLimits.h"
#include "TinyPictures.h"
#include "faults/FaultRuns.h"

#include <QDir>
#include <QMap>
#include <QtTest>

#include <memory>

namespace {

// Larger than the buffers that it is read through, so that there are several reads of it.
QByteArray noise()
{
    QImage image(160, 160, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            state = state * 1664525U + 1013904223U;
            image.setPixel(x, y, state >> 8);
        }
    }
    return PageFiles::encoded(image);
}

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

constexpr Fault kFaults[] = {
    {"open", 0, EIO},
    {"read", 0, EIO},
    {"read", 0, EIO, true},
    {"read", 0, EIO, false, true},
    {"write", 0, EIO},
    {"write", 0, ENOSPC, true},
    {"write", 0, EIO, false, true},
    {"rename", 0, EIO},
    {"rename", 0, ENOSPC, true},
    {"unlink", 0, EIO},
    {"mkdir", 0, ENOSPC},
    {"close", 0, EIO},
    {"memory", 0, ENOMEM, false, false, kLeastAllocation},
    {"memory", 0, ENOMEM, false, false, kLargeAllocation},
};

int leastFor(const QStringList &command)
{
    const bool usesOthers = command.constFirst() == text("play") || command.contains(text("doc"));
    return usesOthers ? kLargeAllocation : kLeastAllocation;
}

QByteArray nameOf(const Fault &fault)
{
    return QByteArray(fault.kind) + (fault.isAndAfter ? ", and all after it" : "") +
           (fault.isShort ? ", half of it" : "") +
           (fault.least > 0 ? " from " + QByteArray::number(fault.least) + " bytes" : QByteArray());
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
                   {text("noise.png"), noise()},
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
        QTest::addColumn<const Fault *>("fault");
        for (const char *command :
             {"wrap red.png noise.png -o new", "wrap red.png noise.png -o out --force",
              "encode red.png grey.jpg noise.png -o new", "encode red.png grey.jpg -o out --force",
              "info picture doc/page_0", "unwrap picture -o new", "unwrap picture -o old --force",
              "build deck.json -o new", "build deck.json -o out --force", "model doc/page_0",
              "model doc/page_0 doc/page_1 --json --extract new -o new/deck.json",
              "render picture -o new.png", "render doc/page_0 --step 1 --ms 100 -o new.png",
              "render doc -o new.png", "play doc/page_0 doc/page_1 -o new --fps 4"}) {
            for (const Fault &fault : kFaults) {
                // A sanitizer has an allocator of its own, which is in front of the faults.
                if (fault.least > 0 && (kSanitized || fault.least < leastFor(words(command))))
                    continue;
                QTest::addRow("%s: %s", command, nameOf(fault).constData())
                    << words(command) << &fault;
            }
        }
    }
    void everyCall()
    {
        QFETCH(QStringList, arguments);
        QFETCH(const Fault *, fault);
        Fault now = *fault;
        Workplace undisturbed;
        fill(undisturbed);
        const QStringList before = undisturbed.entries();
        const FaultyRun whole = runWithFault(undisturbed, arguments, now);
        QCOMPARE(whole.outcome.err, QByteArray());
        QCOMPARE(whole.outcome.status, 0);
        QVERIFY(whole.calls >= 0);
        const QStringList done = undisturbed.entries();

        for (now.at = 1; now.at <= whole.calls; ++now.at) {
            Workplace place;
            fill(place);
            const Outcome outcome = runWithFault(place, arguments, now).outcome;
            const QString wrong = harm(outcome, place.entries(), before, done);
            QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("call %1 of %2: %3\n%4")
                                                     .arg(now.at)
                                                     .arg(whole.calls)
                                                     .arg(wrong, QString::fromUtf8(outcome.err))));
            if (outcome.status == 0)
                QCOMPARE(outcome.out, whole.outcome.out);
        }
    }
};

Q_DECLARE_METATYPE(const Fault *)

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_faults.moc"
