#include "PageFiles.h"
#include "ResourceLimits.h"
#include "TinyPictures.h"
#include "faults/FaultRuns.h"

#include <QDir>
#include <QMap>
#include <QRegularExpression>
#include <QtTest>

#include <memory>

namespace {

// Qt makes and delivers events with smaller ones, and dies when it cannot.
constexpr int kLeastAllocation = 4096;

// What a job comes to. Whether a failed allocation is one that the job cannot do without depends.
enum class Ending { Finished, Failed, Either };

struct Row
{
    Fault fault;
    int leastCalls; // by the files that there are
    Ending ending;
};

constexpr Row kRows[] = {
    {{"open", 0, EIO}, 4, Ending::Failed},
    {{"read", 0, EIO}, 2, Ending::Finished}, // of what was read a page is made
    {{"read", 0, EIO, true}, 2, Ending::Finished},
    {{"read", 0, EIO, false, true}, 2, Ending::Finished},
    {{"write", 0, EIO}, 4, Ending::Failed},
    {{"write", 0, ENOSPC, true}, 4, Ending::Failed},
    {{"write", 0, EIO, false, true}, 4, Ending::Finished},
    {{"unlink", 0, EIO}, 2, Ending::Finished},
    {{"unlink", 0, EIO, true}, 2, Ending::Finished},
    {{"close", 0, EIO}, 4, Ending::Finished},
    {memoryFault(kLeastAllocation), 1, Ending::Either},
};

bool isOf(const Fault &fault, const char *kind)
{
    return qstrcmp(fault.kind, kind) == 0;
}

QStringList filesOf(const Workplace &place)
{
    QStringList files;
    for (const QString &entry : place.entries()) {
        if (!entry.endsWith(QLatin1Char('/')))
            files += entry.section(QLatin1Char(' '), 0, 0);
    }
    return files;
}

} // namespace

Q_DECLARE_METATYPE(Row)

/// Each call for a file, and each allocation, of a host that encodes fails once: the job ends as
/// docs/encoding.md tells, and leaves nothing else than it tells.
class TestFaultsEncoder : public QObject
{
    Q_OBJECT

private:
    Workplace *newPlace()
    {
        m_place = std::make_unique<Workplace>();
        m_place->program = text(ENCODING_HOST);
        QDir dir(m_place->path({}));
        for (const char *folder : {"in", "out"})
            dir.mkdir(text(folder));
        for (auto file = m_inputs.cbegin(); file != m_inputs.cend(); ++file)
            m_place->write(file.key(), file.value());
        for (const QString &file : m_others)
            m_place->write(file, "other");
        return m_place.get();
    }

    // Why the page is not the one that is to be made of the input; empty when it is.
    QString pageFault(const QString &page, const QString &input, const Fault &fault) const
    {
        const QByteArray content = m_place->read(page);
        const QByteArray &picture = m_inputs[input];
        const bool isWhole = content == PageFiles::pageResultFile(4, picture);
        const bool isPart =
            content == PageFiles::pageResultFile(4, picture.left(content.size() - 14));
        const bool mayBePart = isOf(fault, "read") && !fault.isShort;
        return isWhole || (mayBePart && isPart) ? QString()
                                                : page + text(" is no page of ") + input;
    }

    QString finishedFault(const Outcome &outcome, const Fault &fault, const QStringList &left) const
    {
        static const QRegularExpression told(text("^page-job: 1 of 2\npage-job: 2 of 2\n"
                                                  "(out/\\{[0-9a-f-]{36}\\}_)0\n\\g{1}1\n$"));
        const QRegularExpressionMatch match = told.match(QString::fromUtf8(outcome.out));
        if (!match.hasMatch())
            return text("says something else than that it is done");
        const QStringList pages{match.captured(1) + QLatin1Char('0'),
                                match.captured(1) + QLatin1Char('1')};
        for (const QString &file : left) {
            const bool stays = isOf(fault, "unlink") && m_inputs.contains(file) &&
                               m_place->read(file) == m_inputs[file];
            if (!pages.contains(file) && !stays)
                return text("leaves ") + file;
        }
        const QString fault0 = pageFault(pages.at(0), text("in/1.png"), fault);
        return fault0.isEmpty() ? pageFault(pages.at(1), text("in/2.png"), fault) : fault0;
    }

    static QString failedFault(const Outcome &outcome, const QStringList &left)
    {
        static const QRegularExpression told(
            text("^(page-job: [12] of 2\n)*page-job: failed, error 9\n$"));
        if (!told.match(QString::fromUtf8(outcome.out)).hasMatch())
            return text("says something else than that it failed");
        if (outcome.err.count("VPrnt: encode Emf failed! (format:4, file:in/") != 1)
            return text("logs something else than the file that failed");
        return left.isEmpty() ? QString() : text("leaves ") + left.join(QLatin1Char(' '));
    }

    // Why what came of a run is not what it should; empty when it is.
    QString harm(const Outcome &outcome, const Row &row) const
    {
        const bool isExpected = outcome.status == 0   ? row.ending != Ending::Failed
                                : outcome.status == 1 ? row.ending != Ending::Finished
                                                      : false;
        if (!isExpected)
            return text("ends with %1").arg(outcome.status);
        QStringList left = filesOf(*m_place);
        for (const QString &file : m_others) {
            if (!left.removeOne(file) || m_place->read(file) != "other")
                return text("touches ") + file;
        }
        return outcome.status == 0 ? finishedFault(outcome, row.fault, left)
                                   : failedFault(outcome, left);
    }

    const QMap<QString, QByteArray> m_inputs{{text("in/1.png"), PageFiles::noise()},
                                             {text("in/2.png"), TinyPictures::png()}};
    const QStringList m_others = words("in/3.png out/page_0");
    const QStringList m_arguments = words("out/ in/1.png in/2.png");
    std::unique_ptr<Workplace> m_place;

private Q_SLOTS:
    void everyCall_data()
    {
        QTest::addColumn<Row>("row");
        for (const Row &row : kRows) {
            // A sanitizer has an allocator of its own, which is in front of the faults.
            if (!kSanitized || row.fault.least == 0)
                QTest::newRow(nameOf(row.fault)) << row;
        }
    }
    void everyCall()
    {
        QFETCH(Row, row);
        const FaultyRun whole = runWithFault(*newPlace(), m_arguments, row.fault);
        QCOMPARE(harm(whole.outcome, {{"none"}, 0, Ending::Finished}), QString());
        QVERIFY2(whole.calls >= row.leastCalls, QByteArray::number(whole.calls));
        for (row.fault.at = 1; row.fault.at <= whole.calls; ++row.fault.at) {
            const FaultyRun run = runWithFault(*newPlace(), m_arguments, row.fault);
            const QString wrong = harm(run.outcome, row);
            QVERIFY2(wrong.isEmpty(),
                     qPrintable(text("call %1 of %2: %3\n%4")
                                    .arg(row.fault.at)
                                    .arg(whole.calls)
                                    .arg(wrong, QString::fromUtf8(run.outcome.err))));
        }
    }
};

QTEST_GUILESS_MAIN(TestFaultsEncoder)
#include "tst_faults_encoder.moc"
