#include "SampleDeck.h"
#include "docdisplay/DocDisplayMgr.h"
#include "tools/docpage/FrameHash.h"

#include <QSignalSpy>
#include <QtTest>

#include <initializer_list>
#include <memory>

namespace {

/// The frames of the stops, by what has come to be seen.
const QHash<QByteArray, QString> &frames()
{
    static const QHash<QByteArray, QString> kFrames{
        {"8e442343a7d0a70c6d8cc8615f813995d7bb5f98c87856840a0fa30e1ae99d6c", text("sea")},
        {"d5d1855773415e5394baa53de5874a1c0bf26843eae19029fcb5368faacd0e86", text("title enters")},
        {"382cd7269b4b124259ffb599d5b8e34e928ba1deac04f67d0586d9004b326d83", text("title")},
        {"ef4832838efe596b68bfcf3b91311182944f11a2afa59dbd44bf117d1c305ed6", text("cause")},
        {"f69ab0b957fc45a18b3817576be359fc62afc762d9569c58755cc17d97c645c3", text("moon")},
        {"2fca6cb925f047fba54ff547d69be850d95ddd5423a972dcdd5e9f2f6b16e084", text("words")},
        {"73ee6d0511a19272b7c3f8706d8b7dbc16003dabf2ee5b4d5b74c63994ec3f21", text("phases")},
        {"48d82d7f7d31955db8060a802197cdb7d523277defcf5fd406ffd3d4c6310144", text("springs")},
        {"4f7664ede7b3075979160f36fe1579eb64a4cb8646e7cd6e95c0c65be8ce4e1b", text("springs leave")},
        {"69ecde366cbab55242efc0aab319654f66639972939eed10d7b9ff5b1ebfd602", text("neaps")},
        {"3333c6f716552573b46c274ff7232d76c002065f262a6eb681f2df92e63d14b7", text("harbour")},
        {"9173a651ed78573578ca7cb0180583b7c0fdf7c7a3c39d35e83c3c5f57e92e67", text("high enters")},
        {"9415160a71f52976bed822f5fbca9e5c1a7864841fe1389e3607e937a8c64c88", text("high")},
        {"5f25eb1bcdc906ee32a124b3c9635ff1411cbe4fb23d99595cbe249e3b7ae0ab", text("rise enters")},
        {"026fceb81f6ced4b63ba307640b590a217b1e54e53c5c75ae0cda108280ff4a0", text("rise")},
    };
    return kFrames;
}

QStringList lines(std::initializer_list<const char *> all)
{
    QStringList list;
    for (const char *line : all)
        list << text(line);
    return list;
}

} // namespace

/// The sample deck, built by docpage and clicked through in the display manager. Its frames are the
/// same everywhere, but for those with JPG pictures that is up to the machine's decoder: all
/// versions of libjpeg-turbo agree by default; another one need not.
class TestDisplayDeckSample : public QObject
{
    Q_OBJECT

private:
    /// Whether a run is waited for before the next click.
    enum class Host { Hurried, Patient };
    using Manager = std::unique_ptr<DocDisplayMgr, void (*)(DocDisplayMgr *)>;
    using Action = bool (DocDisplayMgr::*)();

    Workplace place;

    Manager sampleDeck() const
    {
        Manager mgr(CreateDisplayMgr(), [](DocDisplayMgr *ended) { ended->Destroy(); });
        mgr->Init(DocCovRslt::DOCRSLT_PPT_ANIM, 4);
        for (unsigned int page = 0; page < 4; ++page)
            mgr->AddDocPage(page, place.path(QStringLiteral("pages/page_%1").arg(page)));
        return mgr;
    }

    static QString number(quint32 value)
    {
        return value == 0xFFFFFFFF ? QStringLiteral("end") : QString::number(value);
    }

    /// "0 1 750: 5 title": the position, the action state and the frame.
    static QString stop(DocDisplayMgr &mgr)
    {
        DocDisplayMgr::AnimStatus at{};
        mgr.GetAnimStatus(at);
        const QByteArray hash = frameHash(mgr.GetImg());
        return QStringLiteral("%1 %2 %3: %4 %5")
            .arg(number(at.page), number(at.step), number(at.passedDuration))
            .arg(mgr.GetActionState())
            .arg(frames().value(hash, QString::fromLatin1(hash)));
    }

    /// The stops of an action, as often as it can be done.
    static QStringList stops(DocDisplayMgr &mgr, Action action, Host host)
    {
        QSignalSpy finished(&mgr, &DocDisplayMgr::s_PptAnimFnished);
        QSignalSpy updated(&mgr, &DocDisplayMgr::s_PptAnimUpdate);
        QStringList stops;
        for (unsigned int page = mgr.GetCurPage(); stops.size() < 100 && (mgr.*action)();
             page = mgr.GetCurPage()) {
            // At once only what comes with a new page.
            const int updates = updated.count();
            QString flaw;
            if (updates != (mgr.GetCurPage() == page ? 0 : 1) || finished.count() != 0)
                flaw += QStringLiteral(" after wrong signals");
            const bool isStarted = action == &DocDisplayMgr::NextAction || updates != 0;
            if (host == Host::Patient && isStarted &&
                (!finished.wait(20000) || finished.count() != 1 || updated.count() <= updates))
                flaw += QStringLiteral(" and not finished");
            stops << stop(mgr) + flaw;
            finished.clear();
            updated.clear();
        }
        return stops;
    }

private Q_SLOTS:
    void initTestCase()
    {
        writeOpaqueSample(place);
        const Outcome outcome = place.run(words("build deck.json -o pages"));
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.status, 0);
    }

    void clickedThrough_data()
    {
        QTest::addColumn<bool>("isHurried");
        QTest::addColumn<QStringList>("forward");
        QTest::newRow("in a hurry: the next click ends a run")
            << true
            << lines({"0 1 1: 1 title enters", "0 1 750: 5 title", "1 0 1: 0 cause",
                      "1 1 1: 0 cause", "1 1 1000: 0 moon", "1 2 1: 0 moon", "1 2 1000: 4 words",
                      "2 0 1: 0 phases", "2 1 1: 0 phases", "2 1 750: 0 springs",
                      "2 2 1: 0 springs leave", "2 2 750: 4 neaps", "3 0 1: 8 harbour",
                      "3 1 1: 8 high enters", "3 1 2000: 8 high", "3 2 1: 8 rise enters",
                      "3 2 500: 8 rise", "3 3 1: 8 rise", "3 3 2000: 12 harbour"});
        QTest::newRow("patiently: the timer ends a run")
            << false
            << lines({"0 1 1: 5 title", "1 0 1: 0 cause", "1 1 1: 0 moon", "1 2 1: 4 words",
                      "2 0 1: 0 springs", "2 2 1: 4 neaps", "3 0 1: 8 harbour", "3 1 1: 8 high",
                      "3 2 1: 8 rise", "3 3 1: 12 harbour"});
    }
    void clickedThrough()
    {
        QFETCH(bool, isHurried);
        QFETCH(QStringList, forward);
        const Host host = isHurried ? Host::Hurried : Host::Patient;
        const Manager mgr = sampleDeck();
        QVERIFY(mgr->SetCurPage(0));
        QCOMPARE(stop(*mgr), text("0 0 0: 3 sea"));
        QCOMPARE(stops(*mgr, &DocDisplayMgr::NextAction, host), forward);
        // On the way back nothing plays, but for the instant that a slide starts at its end.
        QCOMPARE(
            stops(*mgr, &DocDisplayMgr::PrevAction, host),
            lines({"3 2 500: 8 rise", "3 1 2000: 8 high", "3 0 0: 10 harbour", "2 end end: 4 neaps",
                   "2 1 750: 0 springs", "2 0 0: 2 phases", "1 end end: 4 words",
                   "1 1 1000: 0 moon", "1 0 0: 2 cause", "0 end end: 5 title", "0 0 0: 3 sea"}));
    }
};

QTEST_GUILESS_MAIN(TestDisplayDeckSample)
#include "tst_displaydeck_sample.moc"
