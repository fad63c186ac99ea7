#include "DeckHost.h"

#include <QtTest>

using namespace DeckHost;

namespace {

QStringList list(const char *lines)
{
    const QString all = QString::fromLatin1(lines);
    return all.isEmpty() ? QStringList() : all.split(QStringLiteral(", "));
}

/// What a slide of threeSlides() shows, where its shape is at `x`.
QImage threeFrames(quint32 page, int x)
{
    static const QVector<QPair<QRgb, QRgb>> kColours{
        {kGrey, kRed}, {kGreen, kBlue}, {kYellow, kRed}};
    const auto colours = kColours.at(static_cast<int>(page));
    return frame(colours.first, colours.second, x);
}

} // namespace

/// Positions and images of animated decks. What is sent while a slide runs is the concern of
/// tst_displaydeck_signals.cpp.
class TestDisplayDeck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void positions_data()
    {
        QTest::addColumn<quint32>("page");
        QTest::addColumn<quint32>("step");
        QTest::addColumn<quint32>("passed");
        QTest::addColumn<QString>("shown");  // by the player, when the signal comes
        QTest::addColumn<QString>("played"); // by the player, afterwards
        QTest::addColumn<int>("state");
        QTest::addColumn<int>("x"); // of the shape
        const auto row = [](const char *name, Status s, const char *shown, const char *played,
                            int state, int x) {
            QTest::newRow(name) << s.page << s.step << s.passedDuration
                                << QString::fromLatin1(shown) << QString::fromLatin1(played)
                                << state << x;
        };
        row("home", {0, 0, 0}, "0:0", "0:0", 3, kUnseen);
        row("home, started", {0, 0, 1}, "0:0", "0:1 runs", 1, kUnseen);
        row("end of home", {0, 0, kEnd}, "0:0", "0:1 runs", 1, kUnseen);
        row("start of a step", {0, 1, 0}, "1:0", "1:0", 1, -10);
        row("1 ms of a step", {0, 1, 1}, "1:1", "1:1 runs", 1, -9);
        row("half of a step", {0, 1, 250}, "1:250", "1:250 runs", 1, 5);
        row("end of a step", {0, 1, 500}, "1:500", "1:500 runs", 1, 20);
        row("beyond the end of a step", {0, 1, 501}, "1:500", "1:500 runs", 1, 20);
        row("the end of a step", {0, 1, kEnd}, "1:500", "1:500 runs", 1, 20);
        row("start of the last step", {0, 2, 0}, "2:0", "2:0", 1, 20);
        row("half of the last step", {0, 2, 125}, "2:125", "2:125 runs", 1, 40);
        row("end of the last step", {0, 2, 250}, "2:250", "2:250 runs", 5, kUnseen);
        row("beyond the last step", {0, 3, 0}, "2:0", "2:0", 1, 20);
        row("start of the last one", {0, kEnd, 0}, "2:0", "2:0", 1, 20);
        row("the end", {0, kEnd, kEnd}, "2:250", "2:250 runs", 5, kUnseen);
        row("a page between", {1, 0, 0}, "0:0", "0:0", 2, kUnseen);
        row("a step on it", {1, 1, 100}, "1:100", "1:100 runs", 0, 5);
        row("its end", {1, kEnd, kEnd}, "1:200", "1:200 runs", 4, 20);
        row("no steps", {2, 0, 0}, "0:0", "0:0", 14, 20);
        row("no steps, started", {2, 0, 1}, "0:0", "0:1 runs", 12, 20);
        row("no steps, the end", {2, kEnd, kEnd}, "0:0", "0:1 runs", 12, 20);
    }
    void positions()
    {
        QFETCH(quint32, page);
        QFETCH(quint32, step);
        QFETCH(quint32, passed);
        QFETCH(QString, shown);
        QFETCH(int, x);
        Host host;
        for (int times = 0; times < 2; ++times) { // loaded by it, loaded already
            QCOMPARE(host.mgr->SetAnimStatus({page, step, passed}), true);
            // Sent once, before the start.
            QCOMPARE(host.takeLog(), QStringList{QStringLiteral("update ") + shown});
            QTEST(host.played(), "played");
            QTEST(host.mgr->GetActionState(), "state");
            // As it was given, not as the player has it.
            Status status{7, 7, 7};
            host.mgr->GetAnimStatus(status);
            QCOMPARE(status.page, page);
            QCOMPARE(status.step, step);
            QCOMPARE(status.passedDuration, passed);
            QCOMPARE(host.mgr->GetCurPage(), page);
            QCOMPARE(host.mgr->GetImg(), threeFrames(page, x));
            QCOMPARE(host.log, QStringList());
        }
        QCOMPARE(host.player().GetPageID(), static_cast<int>(page));
        QCOMPARE(host.player().IsCachPic(), true);
        QCOMPARE(host.cache().size(), size_t(2));
        QCOMPARE(host.timer().interval(), 40);
        QCOMPARE(host.mgr->animDisplayer->parent(), nullptr);
    }

    void setCurPage()
    {
        Host host;
        QCOMPARE(host.mgr->SetCurPage(1), true);
        QCOMPARE(host.position(), QStringLiteral("1 0 0"));
        QCOMPARE(host.takeLog(), list("update 0:0"));
        QVERIFY(host.mgr->SetAnimStatus({1, 1, 100}));
        QCOMPARE(host.mgr->SetCurPage(1), true); // back to its start, and stopped
        QCOMPARE(host.played(), QStringLiteral("0:0"));
        QCOMPARE(host.takeLog(), list("update 1:100, update 0:0"));
    }

    void refusedPages()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({1, 1, 100}));
        host.takeLog();
        for (const quint32 page : {3U, 4U, 0x10000U, 0x7FFFFFFFU, kEnd}) {
            QCOMPARE(host.mgr->SetAnimStatus({page, 0, 0}), false);
            QCOMPARE(host.mgr->SetCurPage(page), false);
            QVERIFY(host.mgr->GetImg({page, 0, 0}).isNull());
        }
        QCOMPARE(host.position(), QStringLiteral("1 1 100"));
        QCOMPARE(host.played(), QStringLiteral("1:100 runs"));
        QCOMPARE(host.log, QStringList());
    }

    // Before it is given a position the deck is on page 0, but no slide is loaded.
    void aNewDeck()
    {
        Host host;
        QCOMPARE(host.position(), QStringLiteral("0 0 0"));
        QCOMPARE(host.player().GetPageID(), -1);
        QCOMPARE(host.mgr->GetActionState(), 7);
        QCOMPARE(host.mgr->GetImg(), threeFrames(0, kUnseen));
        QCOMPARE(host.mgr->GetImg({0, 1, 250}), threeFrames(0, 5));
        QCOMPARE(host.player().GetPageID(), -1);
        QCOMPARE(host.mgr->PrevAction(), false);
        QCOMPARE(host.log, QStringList());
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 0 1"));
        QCOMPARE(host.takeLog(), list("update 0:0"));
    }

    void theSamePageIsNotLoadedAgain()
    {
        Host host;
        QVERIFY(host.mgr->SetCurPage(0));
        host.writeSlide(0, comesAndGoes(0, kGreen, kBlue));
        QVERIFY(host.mgr->SetAnimStatus({0, 1, 250}));
        QCOMPARE(host.mgr->GetImg(), threeFrames(0, 5));
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.mgr->GetImg(), threeFrames(0, 20));
        QVERIFY(host.mgr->SetCurPage(1));
        QVERIFY(host.mgr->SetCurPage(0)); // again, after another page
        QVERIFY(host.mgr->SetAnimStatus({0, 1, 250}));
        QCOMPARE(host.mgr->GetImg(), frame(kGreen, kBlue, 5));
    }

    // What kind of page it is, its file says for every image.
    void theFileOfTheLivePageChanges()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({0, 1, 250}));
        host.writePage(0, 4, png(4, 3, kBlue));
        QCOMPARE(host.mgr->GetImg(), flat(4, 3, kBlue));
        host.writeSlide(0, "no model");
        QCOMPARE(host.mgr->GetImg(), threeFrames(0, 5));
        host.removePage(0);
        QVERIFY(host.mgr->GetImg().isNull());
        QCOMPARE(host.player().GetPageID(), 0);
        host.takeLog();
        QVERIFY(host.mgr->SetAnimStatus({0, 2, 0}));
        QCOMPARE(host.takeLog(), list("update 2:0"));
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("0 2 250"));
    }

    void otherSlidesAreReadAnew()
    {
        Host host;
        QVERIFY(host.mgr->SetCurPage(0));
        QCOMPARE(host.mgr->GetImg({2, 0, 0}), threeFrames(2, 20));
        host.writeSlide(2, still(2, kBlue));
        QCOMPARE(host.mgr->GetImg({2, 0, 0}), frame(kBlue, kRed, 20));
    }

    void pagesThatAreNoSlides_data()
    {
        QTest::addColumn<QByteArray>("content"); // of the file; null when there is none
        QTest::addColumn<bool>("isPicture");
        QTest::addColumn<bool>("isListed");
        using PageFiles::pageResultFile;
        const QByteArray model = comesByItself();
        QTest::newRow("missing file") << QByteArray() << false << true;
        QTest::newRow("slot without a name") << QByteArray() << false << false;
        QTest::newRow("picture") << pageResultFile(4, png(60, 40, kBlue)) << true << true;
        QTest::newRow("model that says PNG") << pageResultFile(4, model) << false << true;
        QTest::newRow("wrong page identifier") << pageResultFile(3, still(2)) << false << true;
        QTest::newRow("picture that says slide")
            << pageResultFile(3, png(60, 40, kBlue)) << false << true;
        QTest::newRow("truncated model")
            << pageResultFile(3, model.left(model.size() - 1)) << false << true;
        QTest::newRow("no payload") << pageResultFile(3, {}) << false << true;
        QTest::newRow("not a page result file") << model << false << true;
        QTest::newRow("empty file") << QByteArray("") << false << true;
    }
    void pagesThatAreNoSlides()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, isPicture);
        QFETCH(bool, isListed);
        const QImage shown = isPicture ? flat(60, 40, kBlue) : QImage();
        Host host;
        if (content.isNull())
            host.removePage(1);
        else
            PageFiles::write(host.dir, QStringLiteral("1"), content);
        if (!isListed)
            QVERIFY(host.mgr->AddDocPage(1, QString()));
        const LogSpy log;

        for (const bool isAgain : {false, true}) {
            // From a slide that runs, and from the page itself.
            QVERIFY(isAgain || host.mgr->SetAnimStatus({0, 1, 250}));
            QCOMPARE(host.takeLog().size(), isAgain ? 0 : 1);
            QCOMPARE(host.mgr->SetAnimStatus({1, 3, 4}), true);
            QCOMPARE(host.position(), QStringLiteral("1 3 4"));
            QCOMPARE(host.player().GetPageID(), -1);
            QCOMPARE(host.player().IsCachPic(), false);
            QCOMPARE(host.cache().size(), size_t(0));
            QCOMPARE(host.played(), QStringLiteral("0:0"));
            QCOMPARE(host.mgr->GetActionState(), 6);
            QCOMPARE(host.mgr->GetImg(), shown);
            QCOMPARE(host.mgr->GetImg({1, 0, 0}), shown);
        }
        // On from there, and back to it.
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("2 0 1"));
        QCOMPARE(host.takeLog(), list("update 0:0"));
        QCOMPARE(host.mgr->PrevAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 end end"));
        QCOMPARE(host.played(), QStringLiteral("0:0"));
        QCOMPARE(host.mgr->PrevAction(), true);
        QCOMPARE(host.position(), QStringLiteral("0 end end"));
        QCOMPARE(host.takeLog(), list("update 2:250"));

        // Until there is a slide.
        QVERIFY(host.mgr->SetCurPage(1));
        host.writeSlide(1, comesByItself());
        QVERIFY(host.mgr->AddDocPage(1, host.file(1)));
        QCOMPARE(host.mgr->GetImg(), threeFrames(1, kUnseen));
        QCOMPARE(host.log, QStringList());
        QCOMPARE(host.mgr->SetAnimStatus({1, 1, 100}), true);
        QCOMPARE(host.takeLog(), list("update 1:100"));
        QCOMPARE(host.mgr->GetImg(), threeFrames(1, 5));
    }

    // Other slides are shown by the rules of the current page: none while its file is missing.
    void otherSlidesThatCannotBeShown()
    {
        Host host({comesAndGoes(), still(5), "no model", comesAndGoes(3)});
        QVERIFY(host.mgr->SetCurPage(0));
        QVERIFY(host.mgr->GetImg({1, 0, 0}).isNull());
        QVERIFY(host.mgr->GetImg({2, 0, 0}).isNull());
        QCOMPARE(host.mgr->GetImg({3, 0, 0}), frame(kGrey, kRed, kUnseen));
        host.removePage(0);
        QVERIFY(host.mgr->GetImg({3, 0, 0}).isNull());
        host.writePage(0, 4, "what it holds does not matter");
        QCOMPARE(host.mgr->GetImg({3, 0, 0}), frame(kGrey, kRed, kUnseen));
    }

    void dataOfAPage()
    {
        Host host;
        const QByteArray picture = png(4, 3, kBlue);
        host.writePage(2, 4, picture);
        QVERIFY(host.mgr->SetCurPage(1));
        QByteArray data("before");
        QCOMPARE(host.mgr->GetPPTAnimPageDat(0, data), true);
        QCOMPARE(data, comesAndGoes());
        QCOMPARE(host.mgr->GetPPTAnimPageDat(1, data), true);
        QCOMPARE(data, comesByItself());
        QCOMPARE(host.mgr->GetPPTAnimPageDat(2, data), false); // no slide, but read
        QCOMPARE(data, picture);

        host.removePage(1);
        data = "before";
        for (unsigned int page = 0; page < 3; ++page) {
            LogSpy log;
            QCOMPARE(host.mgr->GetPPTAnimPageDat(page, data), false);
            QCOMPARE(data, QByteArray("before"));
            QCOMPARE(log.takeLines(), QStringList()); // not even opened
        }
        // Of other kinds, too.
        host.mgr->Init(DocCovRslt::DOCRSLT_PICTURE, 3);
        QVERIFY(host.mgr->SetCurPage(1));
        QCOMPARE(host.mgr->GetPPTAnimPageDat(0, data), false);
        QVERIFY(host.mgr->GetImg({0, 0, 0}).isNull());
        QVERIFY(host.mgr->SetCurPage(2));
        QCOMPARE(host.mgr->GetPPTAnimPageDat(0, data), true);
        QCOMPARE(host.mgr->GetImg({0, 0, 0}), threeFrames(0, kUnseen));
    }

    void dataOfAnEmptyDocument()
    {
        Host host(QByteArrayList{});
        QByteArray data("before");
        QCOMPARE(host.mgr->GetPPTAnimPageDat(0, data), false);
        QCOMPARE(data, QByteArray("before"));
        QCOMPARE(host.mgr->GetActionState(), 15);
        QCOMPARE(host.mgr->NextAction(), false);
        QCOMPARE(host.mgr->PrevAction(), false);
    }

    void theLiveSlideIgnoresStepAndTime()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({0, 1, 250}));
        host.takeLog();
        for (const Status status : {Status{0, 0, 0}, {0, 1, 500}, {0, 2, 125}, {0, kEnd, kEnd}}) {
            QCOMPARE(host.mgr->GetImg(status), threeFrames(0, 5));
            QCOMPARE(host.mgr->GetPPTAnimPageImage(status), threeFrames(0, 5));
        }
        // Nor does its own image go by the manager's position.
        host.player().SetAnimPassedDuration(500);
        QCOMPARE(host.mgr->GetImg(), threeFrames(0, 20));
        QCOMPARE(host.position(), QStringLiteral("0 1 250"));
        QCOMPARE(host.played(), QStringLiteral("1:500 runs"));
        QCOMPARE(host.log, QStringList());
    }

    void otherSlides_data()
    {
        QTest::addColumn<quint32>("step");
        QTest::addColumn<quint32>("passed");
        QTest::addColumn<int>("x");
        QTest::newRow("home") << 0U << 0U << kUnseen;
        QTest::newRow("home with time") << 0U << 1U << kUnseen;
        QTest::newRow("end of home") << 0U << kEnd << kUnseen;
        QTest::newRow("start of a step") << 1U << 0U << -10;
        QTest::newRow("within a step") << 1U << 250U << 5;
        QTest::newRow("beyond its end") << 1U << 501U << 20;
        QTest::newRow("its end") << 1U << kEnd << 20;
        QTest::newRow("within the last step") << 2U << 125U << 40;
        QTest::newRow("start of the step beyond the last one") << 3U << 0U << 20;
        QTest::newRow("within the last one") << kEnd << 125U << 40;
        QTest::newRow("the end") << kEnd << kEnd << kUnseen;
    }
    void otherSlides()
    {
        QFETCH(quint32, step);
        QFETCH(quint32, passed);
        QFETCH(int, x);
        Host host({comesByItself(0), comesAndGoes(1)});
        for (const quint32 livePassed : {0U, 100U}) { // stopped, running
            QVERIFY(host.mgr->SetAnimStatus({0, 1, livePassed}));
            const QString played = host.played();
            QCOMPARE(played.endsWith(QStringLiteral(" runs")), livePassed != 0);
            const int timer = host.timer().timerId();
            const qint64 lastTick = host.lastTick();
            QVector<qint64> pictures;
            for (const auto &entry : host.cache())
                pictures << entry.second.cacheKey();
            QCOMPARE(pictures.size(), 2);
            host.takeLog();

            QCOMPARE(host.mgr->GetImg({1, step, passed}), frame(kGrey, kRed, x));
            QCOMPARE(host.mgr->GetPPTAnimPageImage({1, step, passed}), frame(kGrey, kRed, x));

            QCOMPARE(host.mgr->GetCurPage(), 0U);
            QCOMPARE(host.position(), QStringLiteral("0 1 %1").arg(livePassed));
            QCOMPARE(host.player().GetPageID(), 0);
            QCOMPARE(host.played(), played);
            QCOMPARE(host.timer().timerId(), timer);
            QCOMPARE(host.lastTick(), lastTick);
            QVector<qint64> picturesAfter;
            for (const auto &entry : host.cache())
                picturesAfter << entry.second.cacheKey();
            QCOMPARE(picturesAfter, pictures);
            QCOMPARE(host.log, QStringList());
            QCOMPARE(host.mgr->GetImg(), frame(kGreen, kBlue, livePassed ? 5 : -10));
        }
    }

    // Only what is cached is in a format that can be painted on.
    void backgroundsOfIndexedColours()
    {
        const auto model = [](int id) {
            return modelBytes({newPage({newShape(1, 20, 10, 10, 10, png(10, 10, kRed))}, {},
                                       encoded(indexed(60, 40, {kGrey})), id)},
                              60, 40);
        };
        Host host({model(0), model(1)});
        QVERIFY(host.mgr->SetCurPage(0));
        const QImage expected = frame(kGrey, kRed, 20).convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(host.mgr->GetImg(), expected);
        QCOMPARE(host.mgr->GetImg({1, 0, 0}), expected);
    }

    void clearPicCach()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({0, 1, 250}));
        host.takeLog();
        QCOMPARE(host.cache().size(), size_t(2));
        host.mgr->ClearPicCach();
        QCOMPARE(host.cache().size(), size_t(0));
        QCOMPARE(host.player().IsCachPic(), true);
        QCOMPARE(host.position(), QStringLiteral("0 1 250"));
        QCOMPARE(host.played(), QStringLiteral("1:250 runs"));
        QCOMPARE(host.mgr->GetImg(), threeFrames(0, 5));
        QCOMPARE(host.cache().size(), size_t(2)); // as needed
        host.mgr->ClearPicCach();
        host.player().SetAnimPassedDuration(500);
        QCOMPARE(host.mgr->GetImg(), threeFrames(0, 20));
        QCOMPARE(host.log, QStringList());
    }

    void initAgain_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("pages");
        QTest::newRow("the same deck") << 1 << 3;
        QTest::newRow("another deck") << 1 << 5;
        QTest::newRow("empty deck") << 1 << 0;
        QTest::newRow("pictures") << 0 << 3;
        QTest::newRow("pictures, the other kind") << 2 << 3;
        QTest::newRow("no document") << 3 << 0;
    }
    void initAgain()
    {
        QFETCH(int, kind);
        QFETCH(int, pages);
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({1, 1, 100}));
        QCOMPARE(host.played(), QStringLiteral("1:100 runs"));
        const PPTAnimDisplayBase *const player = &host.player();
        host.takeLog();
        host.mgr->Init(static_cast<DocCovRslt::DOCRSLT_TYPE>(kind), pages);
        QCOMPARE(&host.player(), player);
        QCOMPARE(host.position(), QStringLiteral("0 0 0"));
        QCOMPARE(host.player().GetPageID(), -1);
        QCOMPARE(host.player().GetStepCount(), 0U);
        QCOMPARE(host.player().IsCachPic(), false);
        QCOMPARE(host.played(), QStringLiteral("0:0"));
        QCOMPARE(host.cache().size(), size_t(0));
        QTest::qWait(100); // more than two ticks
        QCOMPARE(host.log, QStringList());

        // Also where both documents have the same slide.
        host.writeSlide(1, slide(1, kGrey, kYellow, {newEffect(kClick, 1, 1)}));
        host.mgr->Init(DocCovRslt::DOCRSLT_PPT_ANIM, 3);
        QVERIFY(host.mgr->AddDocPage(1, host.file(1)));
        QVERIFY(host.mgr->SetAnimStatus({1, 1, 500}));
        QCOMPARE(host.mgr->GetImg(), frame(kGrey, kYellow, 5));
        QCOMPARE(host.takeLog(), list("update 1:500"));
    }

    void staticDocumentsShowFinalStates_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("0") << 0;
        QTest::newRow("2") << 2;
        QTest::newRow("-1: compared signed, so static") << -1;
        QTest::newRow("3: no document, but slots that were filled before") << 3;
    }
    void staticDocumentsShowFinalStates()
    {
        QFETCH(int, kind);
        Host host(
            {slide(0, kGrey, kRed, {newEffect(kClick, 1, 1)}), comesByItself(), comesAndGoes(2)});
        host.mgr->Init(static_cast<DocCovRslt::DOCRSLT_TYPE>(kind), 3);
        const QImageVector expected{frame(kGrey, kRed, 20), frame(kGreen, kBlue, 20),
                                    frame(kGrey, kRed, kUnseen)};
        const QVector<int> states{1, 0, 8};
        for (quint32 page = 0; page < 3; ++page) {
            for (const Status status :
                 {Status{page, 0, 0}, {page, 0, 1}, {page, 1, 100}, {page, kEnd, kEnd}}) {
                QCOMPARE(host.mgr->SetAnimStatus(status), true);
                QCOMPARE(host.mgr->GetImg(), expected[page]);
                QCOMPARE(host.mgr->GetActionState(), states[static_cast<int>(page)]);
            }
            for (quint32 other = 0; other < 3; ++other)
                QCOMPARE(host.mgr->GetImg({other, 1, 0}), expected[other]);
        }
        QCOMPARE(host.mgr->NextAction(), false);
        QCOMPARE(host.mgr->PrevAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 0 1"));
        QCOMPARE(host.mgr->PrevAction(), true);
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 0 1"));
        QCOMPARE(host.player().GetPageID(), -1);
        QCOMPARE(host.played(), QStringLiteral("0:0"));
        QTest::qWait(100);
        QCOMPARE(host.log, QStringList());
    }

    void picturesBetweenSlides()
    {
        Host host;
        host.writePage(1, 4, png(4, 3, kBlue));
        host.writePage(2, 2, png(5, 4, kRed)); // the content decides
        QVERIFY(host.mgr->SetAnimStatus({0, kEnd, kEnd}));
        host.takeLog();
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 0 1"));
        QCOMPARE(host.mgr->GetActionState(), 6);
        QCOMPARE(host.mgr->GetImg(), flat(4, 3, kBlue));
        QCOMPARE(host.mgr->GetImg({0, 1, 250}), threeFrames(0, 5));
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("2 0 1"));
        QCOMPARE(host.mgr->GetActionState(), 14);
        QCOMPARE(host.mgr->GetImg(), flat(5, 4, kRed));
        QCOMPARE(host.mgr->NextAction(), false);
        QCOMPARE(host.position(), QStringLiteral("2 0 1"));
        QCOMPARE(host.mgr->PrevAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 end end"));
        QTest::qWait(100); // the player was stopped when its slide was left
        QCOMPARE(host.log, QStringList());
    }

    // Models name their pages by 16 bits.
    void pageNumbersOfMoreThan16Bits()
    {
        Host host;
        host.mgr->Init(DocCovRslt::DOCRSLT_PPT_ANIM, 0x10003);
        QVERIFY(host.mgr->AddDocPage(0x10000, host.file(0)));
        QVERIFY(host.mgr->AddDocPage(0x10001, host.file(1)));
        QVERIFY(host.mgr->SetAnimStatus({0x10000, 1, 250}));
        QCOMPARE(host.player().GetPageID(), 0x10000);
        QCOMPARE(host.mgr->GetImg(), threeFrames(0, 5));
        QCOMPARE(host.mgr->GetImg({0x10001, 1, 100}), threeFrames(1, 5));
        QVERIFY(host.mgr->SetAnimStatus({0, 0, 0})); // another page, of the same low bits
        QCOMPARE(host.player().GetPageID(), 0);
    }

    void nextAction_data()
    {
        addActionColumns();
        actionRow("home", {0, 0, 0}, true, "0 1 1", "1:1 runs", "", 1, -9);
        actionRow("home, started", {0, 0, 1}, true, "0 1 1", "1:1 runs", "", 1, -9);
        actionRow("start of a step: its end", {0, 1, 0}, true, "0 1 500", "1:500 runs", "", 1, 20);
        actionRow("within a step: its end", {0, 1, 250}, true, "0 1 500", "1:500 runs", "", 1, 20);
        actionRow("end of a step: the next", {0, 1, 500}, true, "0 2 1", "2:1 runs", "", 1, 20);
        actionRow("within the last step", {0, 2, 125}, true, "0 2 250", "2:250 runs", "", 5,
                  kUnseen);
        actionRow("end of the slide", {0, 2, 250}, true, "1 0 1", "0:1 runs", "update 0:0", 0,
                  kUnseen);
        actionRow("the end", {0, kEnd, kEnd}, true, "1 0 1", "0:1 runs", "update 0:0", 0, kUnseen);
        actionRow("first step that starts by itself", {1, 0, 0}, true, "1 1 1", "1:1 runs", "", 0,
                  -9);
        actionRow("the same, started", {1, 0, 1}, true, "1 1 1", "1:1 runs", "", 0, -9);
        actionRow("within it", {1, 1, 100}, true, "1 1 200", "1:200 runs", "", 4, 20);
        actionRow("its end", {1, 1, 200}, true, "2 0 1", "0:1 runs", "update 0:0", 12, 20);
        actionRow("last slide, no steps", {2, 0, 0}, false, "2 0 0", "0:0", "", 14, 20);
        actionRow("the same, started", {2, 0, 1}, false, "2 0 1", "0:1 runs", "", 12, 20);
        actionRow("the same, its end", {2, kEnd, kEnd}, false, "2 end end", "0:1 runs", "", 12, 20);
    }
    void nextAction() { act(&DocDisplayMgr::NextAction); }

    void prevAction_data()
    {
        addActionColumns();
        actionRow("first slide, home", {0, 0, 0}, false, "0 0 0", "0:0", "", 3, kUnseen);
        actionRow("the same, started", {0, 0, 1}, false, "0 0 1", "0:1 runs", "", 1, kUnseen);
        actionRow("start of the first step", {0, 1, 0}, true, "0 0 0", "0:0", "", 3, kUnseen);
        actionRow("within the first step", {0, 1, 250}, true, "0 0 0", "0:0", "", 3, kUnseen);
        actionRow("start of the next step", {0, 2, 0}, true, "0 1 500", "1:500", "", 1, 20);
        actionRow("end of the slide", {0, 2, 250}, true, "0 1 500", "1:500", "", 1, 20);
        actionRow("the end", {0, kEnd, kEnd}, true, "0 1 500", "1:500", "", 1, 20);
        actionRow("home", {1, 0, 0}, true, "0 end end", "2:250 runs", "update 2:250", 5, kUnseen);
        actionRow("home, started", {1, 0, 1}, true, "0 end end", "2:250 runs", "update 2:250", 5,
                  kUnseen);
        actionRow("step that starts by itself", {1, 1, 100}, true, "1 0 0", "0:0", "", 2, kUnseen);
        actionRow("no steps", {2, 0, 0}, true, "1 end end", "1:200 runs", "update 1:200", 4, 20);
        actionRow("no steps, the end", {2, kEnd, kEnd}, true, "1 end end", "1:200 runs",
                  "update 1:200", 4, 20);
    }
    void prevAction() { act(&DocDisplayMgr::PrevAction); }

    // A tick may lead beyond the end; then the next step is next, though the player still runs.
    void nextActionBeyondTheEndOfAStep()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({0, 1, 1}));
        host.tick(1000);
        QVERIFY(host.player().GetAnimPassedDuration() > 1000);
        QVERIFY(host.player().IsRunning());
        QCOMPARE(host.position(), QStringLiteral("0 1 1"));
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("0 2 1"));
        QCOMPARE(host.played(), QStringLiteral("2:1 runs"));
        host.tick(1000);
        QCOMPARE(host.mgr->GetActionState(), 5);
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 0 1"));
    }

    // The player's first tick enters a step that starts by itself, which the position does not
    // tell.
    void actionsInAStepThatStartedByItself()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({1, 0, 1}));
        host.tick(50);
        QCOMPARE(host.player().GetAnimStep(), 1U);
        QCOMPARE(host.position(), QStringLiteral("1 0 1"));
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 1 200"));
        QVERIFY(host.mgr->SetAnimStatus({1, 0, 1}));
        host.tick(50);
        QCOMPARE(host.mgr->PrevAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 0 0"));
        QCOMPARE(host.played(), QStringLiteral("0:0"));
    }

    // A click effect and one after it are one step, which starts by itself.
    void aClickFollowedByAnother()
    {
        const auto model = [](int id) {
            return slide(id, kGrey, kRed,
                         {newEffect(kClick, 0.25F, 2), newEffect(kAfter, 0.5F, 1)});
        };
        Host host({still(0), model(1)});
        QVERIFY(host.mgr->SetCurPage(0));
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.played(), QStringLiteral("0:1 runs"));
        host.tick(300);
        QCOMPARE(host.player().GetAnimStep(), 1U);
        QCOMPARE(host.mgr->NextAction(), true);
        QCOMPARE(host.position(), QStringLiteral("1 1 750"));
        QCOMPARE(host.mgr->GetImg(), frame(kGrey, kRed, 20));
        QCOMPARE(host.mgr->GetImg({0, 0, 0}), frame(kYellow, kRed, 20));
        QVERIFY(host.mgr->SetAnimStatus({1, 1, 500}));
        QCOMPARE(host.mgr->GetImg(), frame(kGrey, kRed, 5));
    }

private:
    using QImageVector = QVector<QImage>;
    using Action = bool (DocDisplayMgr::*)();

    static void addActionColumns()
    {
        QTest::addColumn<quint32>("page");
        QTest::addColumn<quint32>("step");
        QTest::addColumn<quint32>("passed");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("position");
        QTest::addColumn<QString>("played");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<int>("state");
        QTest::addColumn<int>("x");
    }

    static void actionRow(const char *name, Status from, bool result, const char *position,
                          const char *played, const char *log, int state, int x)
    {
        QTest::newRow(
            qPrintable(QStringLiteral("page %1: %2").arg(from.page).arg(QLatin1String(name))))
            << from.page << from.step << from.passedDuration << result
            << QString::fromLatin1(position) << QString::fromLatin1(played) << list(log) << state
            << x;
    }

    static void act(Action action)
    {
        QFETCH(quint32, page);
        QFETCH(quint32, step);
        QFETCH(quint32, passed);
        QFETCH(int, x);
        for (const bool isStopped : {false, true}) { // whether it runs makes no difference ...
            Host host;
            QVERIFY(host.mgr->SetAnimStatus({page, step, passed}));
            QFETCH(QString, played);
            QFETCH(bool, result);
            if (isStopped) {
                host.player().StopRun();
                if (!result) // ... but for what stays as it is
                    played.remove(QStringLiteral(" runs"));
            }
            host.takeLog();
            QCOMPARE((host.mgr->*action)(), result);
            QTEST(host.position(), "position");
            QCOMPARE(host.played(), played);
            QTEST(host.log, "log");
            QTEST(host.mgr->GetActionState(), "state");
            QCOMPARE(host.mgr->GetImg(), threeFrames(host.mgr->GetCurPage(), x));
        }
    }
};

QTEST_GUILESS_MAIN(TestDisplayDeck)
#include "tst_displaydeck.moc"
