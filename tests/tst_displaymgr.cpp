#include "LogSpy.h"
#include "PageFiles.h"
#include "VirtualSlot.h"
#include "docdisplay/DocDisplayMgr.h"

#include <QSignalSpy>
#include <QtTest>

#include <atomic>
#include <climits>
#include <memory>
#include <thread>
#include <type_traits>

using Status = DocDisplayMgr::AnimStatus;

namespace {

struct Destroyer
{
    void operator()(DocDisplayMgr *mgr) const { mgr->Destroy(); }
};
using Manager = std::unique_ptr<DocDisplayMgr, Destroyer>;

Manager manager(int kind, int pages)
{
    Manager mgr(CreateDisplayMgr());
    mgr->Init(static_cast<DocCovRslt::DOCRSLT_TYPE>(kind), pages);
    return mgr;
}

QVector<quint32> position(DocDisplayMgr &mgr)
{
    Status status{77, 77, 77};
    mgr.GetAnimStatus(status);
    return {status.page, status.step, status.passedDuration};
}

QVector<quint32> at(quint32 page, quint32 step, quint32 passed)
{
    return {page, step, passed};
}

} // namespace

class TestDisplayMgr : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir dir;
    QString redPng, blueJpg, greenPngAsJpg, slide, corruptPng, foreign, missing;

private Q_SLOTS:
    void initTestCase()
    {
        using namespace PageFiles;
        const QByteArray red = picture(Qt::red, "PNG");
        redPng = write(dir, QStringLiteral("red"), pageResultFile(4, red));
        blueJpg = write(dir, QStringLiteral("blue"),
                        pageResultFile(2, picture(Qt::blue, "JPG", {16, 8})));
        greenPngAsJpg =
            write(dir, QStringLiteral("green"), pageResultFile(2, picture(Qt::green, "PNG")));
        slide = write(dir, QStringLiteral("slide"), pageResultFile(3, red));
        QByteArray broken = red;
        broken[broken.indexOf("IDAT") + 6] = char(broken.at(broken.indexOf("IDAT") + 6) ^ 0x55);
        corruptPng = write(dir, QStringLiteral("corrupt"), pageResultFile(4, broken));
        foreign = write(dir, QStringLiteral("foreign"), red);
        missing = dir.filePath(QStringLiteral("missing"));
    }

    void interface()
    {
        QCOMPARE(QByteArray(DocDisplayMgr::staticMetaObject.className()),
                 QByteArray("DocDisplayMgr"));
        QCOMPARE(DocDisplayMgr::staticMetaObject.superClass(), &QObject::staticMetaObject);
        const QMetaObject &meta = DocDisplayMgr::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
        const QMetaMethod update = meta.method(meta.methodOffset());
        const QMetaMethod finished = meta.method(meta.methodOffset() + 1);
        QCOMPARE(update.methodSignature(), QByteArray("s_PptAnimUpdate()"));
        QCOMPARE(update.methodType(), QMetaMethod::Signal);
        QCOMPARE(finished.methodSignature(), QByteArray("s_PptAnimFnished()"));
        QCOMPARE(finished.methodType(), QMetaMethod::Signal);
        QCOMPARE(sizeof(DocDisplayMgr), sizeof(QObject));

        QVERIFY((std::is_same_v<decltype(Status::page), quint32>));
        QVERIFY((std::is_same_v<decltype(Status::step), quint32>));
        QVERIFY((std::is_same_v<decltype(Status::passedDuration), quint32>));
        QCOMPARE(sizeof(Status), size_t(12));
        QCOMPARE(offsetof(Status, page), size_t(0));
        QCOMPARE(offsetof(Status, step), size_t(4));
        QCOMPARE(offsetof(Status, passedDuration), size_t(8));
        QVERIFY(std::is_trivial_v<Status>);
    }

    // Hosts are compiled against the table's order.
    void virtualTable()
    {
        using M = DocDisplayMgr;
        const QVector<qptrdiff> slots{slot(&M::Destroy),
                                      slot(&M::Init),
                                      slot(&M::AddDocPage),
                                      slot(&M::IsPageCanDisplay),
                                      slot(&M::GetPageCount),
                                      slot(&M::SetCurPage),
                                      slot(&M::GetCurPage),
                                      slot(&M::IsDocHaveAnimation),
                                      slot(&M::SetAnimStatus),
                                      slot(&M::GetAnimStatus),
                                      slot(&M::GetActionState),
                                      slot(&M::NextAction),
                                      slot(&M::PrevAction),
                                      slot(static_cast<QImage (M::*)()>(&M::GetImg)),
                                      slot(static_cast<QImage (M::*)(const Status &)>(&M::GetImg)),
                                      slot(&M::ClearPicCach)};
        for (int i = 1; i < slots.size(); ++i)
            QCOMPARE(slots[i], slots[0] + i);
        // QObject's: metaObject, qt_metacast, qt_metacall, two destructors, event, eventFilter and
        // the five protected handlers.
        QCOMPARE(slots[0], qptrdiff(12));
    }

    void aNewManagerHasNoDocument()
    {
        const Manager mgr(CreateDisplayMgr());
        QCOMPARE(QByteArray(mgr->metaObject()->className()), QByteArray("DocDisplayMgr"));
        QCOMPARE(mgr->parent(), nullptr);
        QCOMPARE(mgr->GetPageCount(), 0U);
        QCOMPARE(position(*mgr), at(0, 0, 0));
        QCOMPARE(mgr->GetCurPage(), 0U);
        QCOMPARE(mgr->IsDocHaveAnimation(), false);
        QCOMPARE(mgr->GetActionState(), 9);
        QCOMPARE(mgr->AddDocPage(0, redPng), false);
        QCOMPARE(mgr->IsPageCanDisplay(0), false);
        QCOMPARE(mgr->SetCurPage(0), false);
        QCOMPARE(mgr->NextAction(), false);
        QCOMPARE(mgr->PrevAction(), false);
        QVERIFY(mgr->GetImg().isNull());
        QVERIFY(mgr->GetImg({0, 0, 0}).isNull());
        mgr->ClearPicCach();
        QVERIFY(QMetaType::type("DocCovRslt::DOCRSLT_TYPE") != QMetaType::UnknownType);
    }

    void destroyEndsTheObject()
    {
        DocDisplayMgr *mgr = CreateDisplayMgr();
        QPointer<DocDisplayMgr> alive(mgr);
        int destroyed = 0;
        connect(mgr, &QObject::destroyed, this, [&] { ++destroyed; });
        mgr->Destroy();
        QVERIFY(alive.isNull());
        QCOMPARE(destroyed, 1);
    }

    void kinds_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("takesPages");
        QTest::addColumn<bool>("animated");
        QTest::newRow("0: static") << 0 << true << false;
        QTest::newRow("1: animated") << 1 << true << true;
        QTest::newRow("2: static") << 2 << true << false;
        QTest::newRow("3: no document") << 3 << false << false;
        QTest::newRow("4: no document") << 4 << false << false;
        QTest::newRow("largest: no document") << INT_MAX << false << false;
        QTest::newRow("-1: compared signed, so static") << -1 << true << false;
        QTest::newRow("smallest: static") << INT_MIN << true << false;
    }
    void kinds()
    {
        QFETCH(int, kind);
        const Manager mgr = manager(kind, 2);
        QCOMPARE(mgr->GetPageCount(), 2U);
        QTEST(mgr->AddDocPage(0, redPng), "takesPages");
        QTEST(mgr->IsDocHaveAnimation(), "animated");
        QTEST(mgr->IsPageCanDisplay(0), "takesPages");
        // Positions exist in slots, whatever the kind.
        QCOMPARE(mgr->SetCurPage(1), true);
        QCOMPARE(mgr->SetCurPage(2), false);
    }

    void addDocPage()
    {
        const Manager mgr = manager(0, 2);
        QCOMPARE(mgr->AddDocPage(2, redPng), false);
        QCOMPARE(mgr->AddDocPage(0xFFFFFFFF, redPng), false);
        QCOMPARE(mgr->AddDocPage(1, redPng), true);
        QCOMPARE(mgr->IsPageCanDisplay(0), false);
        QCOMPARE(mgr->IsPageCanDisplay(1), true);
        QCOMPARE(mgr->IsPageCanDisplay(2), false);
        QCOMPARE(mgr->IsPageCanDisplay(0xFFFFFFFF), false);

        // A file that does not exist is stored all the same.
        LogSpy log;
        QCOMPARE(mgr->AddDocPage(1, missing), true);
        QCOMPARE(mgr->IsPageCanDisplay(1), false);
        QCOMPARE(log.takeLines(), QStringList());
        QVERIFY(mgr->GetImg({1, 0, 0}).isNull());
        // The format is asked for once; the picture is not, as there is no file.
        QCOMPARE(log.takeLines(),
                 failureLines({QStringLiteral("IsEmfDealRsltFile, open fialed! (err:5, file:%1)"),
                               QStringLiteral("decodeEmf, picFormat(5) not support! (file:%1)")},
                              missing));

        // Replaced by another, by a folder (which exists), and emptied again.
        QCOMPARE(mgr->AddDocPage(1, blueJpg), true);
        QCOMPARE(mgr->GetImg({1, 0, 0}).size(), QSize(16, 8));
        QCOMPARE(mgr->AddDocPage(1, dir.path()), true);
        QCOMPARE(mgr->IsPageCanDisplay(1), true);
        QVERIFY(mgr->GetImg({1, 0, 0}).isNull());
        QCOMPARE(mgr->AddDocPage(1, QString()), true);
        QCOMPARE(mgr->IsPageCanDisplay(1), false);
        log.takeLines();
        QVERIFY(mgr->GetImg({1, 0, 0}).isNull());
        QCOMPARE(log.takeLines(), QStringList());
    }

    void pageCounts_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<unsigned int>("pages");
        QTest::newRow("none") << 0 << 0U;
        QTest::newRow("negative: none") << -1 << 0U;
        QTest::newRow("smallest: none") << INT_MIN << 0U;
        QTest::newRow("many") << 100000 << 100000U;
    }
    void pageCounts()
    {
        QFETCH(int, count);
        const Manager mgr = manager(0, count);
        QTEST(mgr->GetPageCount(), "pages");
        QTEST(mgr->SetCurPage(0) ? 100000U : 0U, "pages");
        QCOMPARE(mgr->GetActionState(), count > 0 ? 1 : 9);
        mgr->Init(DocCovRslt::DOCRSLT_PPT_ANIM, count);
        QVERIFY(mgr->IsDocHaveAnimation());
        mgr->Init(DocCovRslt::DOCRSLT_PICTURE, count);
        QVERIFY(!mgr->IsDocHaveAnimation());
    }

    void initStartsOver()
    {
        const Manager mgr = manager(0, 3);
        for (unsigned int page = 0; page < 3; ++page)
            QVERIFY(mgr->AddDocPage(page, redPng));
        QVERIFY(mgr->SetAnimStatus({2, 5, 6}));

        // Slots that both documents have keep their files.
        mgr->Init(DocCovRslt::DOCRSLT_PICTURE_ALT, 2);
        QCOMPARE(position(*mgr), at(0, 0, 0));
        QCOMPARE(mgr->GetPageCount(), 2U);
        QCOMPARE(mgr->IsPageCanDisplay(1), true);
        mgr->Init(DocCovRslt::DOCRSLT_PICTURE, 4);
        QCOMPARE(mgr->IsPageCanDisplay(0), true);
        QCOMPARE(mgr->IsPageCanDisplay(1), true);
        QCOMPARE(mgr->IsPageCanDisplay(2), false); // dropped before
        QCOMPARE(mgr->IsPageCanDisplay(3), false);
        // Also when the kind takes no pages.
        mgr->Init(DocCovRslt::DOCRSLT_NONE, 1);
        QCOMPARE(mgr->IsPageCanDisplay(0), true);
        QCOMPARE(mgr->AddDocPage(0, blueJpg), false);
        QCOMPARE(mgr->GetImg().size(), QSize(4, 3));
        mgr->Init(DocCovRslt::DOCRSLT_PICTURE, -5);
        QCOMPARE(mgr->GetPageCount(), 0U);
        QCOMPARE(mgr->GetActionState(), 9);
    }

    void positions()
    {
        const Manager mgr = manager(0, 3);
        QSignalSpy update(mgr.get(), &DocDisplayMgr::s_PptAnimUpdate);
        QSignalSpy finished(mgr.get(), &DocDisplayMgr::s_PptAnimFnished);

        QCOMPARE(mgr->SetAnimStatus({1, 7, 9}), true);
        QCOMPARE(position(*mgr), at(1, 7, 9));
        QCOMPARE(mgr->GetCurPage(), 1U);
        QCOMPARE(mgr->SetAnimStatus({2, 0xFFFFFFFF, 0xFFFFFFFF}), true);
        QCOMPARE(position(*mgr), at(2, 0xFFFFFFFF, 0xFFFFFFFF));
        QCOMPARE(mgr->SetCurPage(1), true);
        QCOMPARE(position(*mgr), at(1, 0, 0));

        QCOMPARE(mgr->SetAnimStatus({2, 3, 4}), true);
        QCOMPARE(mgr->SetAnimStatus({3, 0, 0}), false);
        QCOMPARE(mgr->SetAnimStatus({0xFFFFFFFF, 0, 0}), false);
        QCOMPARE(mgr->SetCurPage(3), false);
        QCOMPARE(position(*mgr), at(2, 3, 4));

        QCOMPARE(update.count(), 0);
        QCOMPARE(finished.count(), 0);
    }

    void actionState_data()
    {
        QTest::addColumn<int>("pages");
        QTest::addColumn<unsigned int>("page");
        QTest::addColumn<int>("state");
        QTest::newRow("no page: 9") << 0 << 0U << 9;
        QTest::newRow("the only page: 9") << 1 << 0U << 9;
        QTest::newRow("first of two: 1") << 2 << 0U << 1;
        QTest::newRow("last of two: 8") << 2 << 1U << 8;
        QTest::newRow("first of three: 1") << 3 << 0U << 1;
        QTest::newRow("middle of three: 0") << 3 << 1U << 0;
        QTest::newRow("last of three: 8") << 3 << 2U << 8;
    }
    void actionState()
    {
        QFETCH(int, pages);
        QFETCH(unsigned int, page);
        for (const int kind : {0, 2}) {
            const Manager mgr = manager(kind, pages);
            mgr->SetAnimStatus({page, 5, 6}); // only the page counts
            QTEST(mgr->GetActionState(), "state");
        }
        // A deck without a slide there is at the start and at the end of its animation.
        const Manager deck = manager(1, pages);
        deck->SetCurPage(page);
        QTEST(deck->GetActionState() - 6, "state");
        QCOMPARE(int(DocDisplayMgr::ACTION_FIRST_PAGE), 0x1);
        QCOMPARE(int(DocDisplayMgr::ACTION_AT_HOME), 0x2);
        QCOMPARE(int(DocDisplayMgr::ACTION_AT_END), 0x4);
        QCOMPARE(int(DocDisplayMgr::ACTION_LAST_PAGE), 0x8);
    }

    void stepping_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("kind 0") << 0;
        QTest::newRow("kind 2") << 2;
        QTest::newRow("no document, but slots") << 3;
    }
    void stepping()
    {
        QFETCH(int, kind);
        const Manager mgr = manager(kind, 3);
        QSignalSpy update(mgr.get(), &DocDisplayMgr::s_PptAnimUpdate);
        QSignalSpy finished(mgr.get(), &DocDisplayMgr::s_PptAnimFnished);
        QCOMPARE(mgr->PrevAction(), false);
        QCOMPARE(position(*mgr), at(0, 0, 0));
        QCOMPARE(mgr->NextAction(), true);
        QCOMPARE(position(*mgr), at(1, 0, 1));
        QCOMPARE(mgr->NextAction(), true);
        QCOMPARE(position(*mgr), at(2, 0, 1));
        QVERIFY(mgr->SetAnimStatus({2, 8, 9}));
        QCOMPARE(mgr->NextAction(), false);
        QCOMPARE(position(*mgr), at(2, 8, 9));
        QCOMPARE(mgr->PrevAction(), true);
        QCOMPARE(position(*mgr), at(1, 0, 1));
        QCOMPARE(mgr->PrevAction(), true);
        QCOMPARE(position(*mgr), at(0, 0, 1));
        QCOMPARE(mgr->PrevAction(), false);
        QCOMPARE(position(*mgr), at(0, 0, 1));
        QCOMPARE(update.count(), 0);
        QCOMPARE(finished.count(), 0);
    }

    // A slide deck goes back to the end of the page before, and on to its start, also where there
    // is no slide.
    void steppingThroughThePagesOfADeck()
    {
        const Manager mgr = manager(1, 2);
        QCOMPARE(mgr->NextAction(), true);
        QCOMPARE(position(*mgr), at(1, 0, 1));
        QCOMPARE(mgr->NextAction(), false);
        QCOMPARE(mgr->PrevAction(), true);
        QCOMPARE(position(*mgr), at(0, 0xFFFFFFFF, 0xFFFFFFFF));
        QCOMPARE(mgr->PrevAction(), false);
        QCOMPARE(position(*mgr), at(0, 0xFFFFFFFF, 0xFFFFFFFF));
    }

    void images()
    {
        const Manager mgr = manager(0, 4);
        QVERIFY(mgr->AddDocPage(0, redPng));
        QVERIFY(mgr->AddDocPage(1, blueJpg));
        QVERIFY(mgr->AddDocPage(2, greenPngAsJpg));
        LogSpy log;

        const QImage red = mgr->GetImg();
        QCOMPARE(red.size(), QSize(4, 3));
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 4; ++x)
                QCOMPARE(red.pixel(x, y), qRgb(255, 0, 0));

        const QImage blue = mgr->GetImg({1, 5, 6});
        QCOMPARE(blue.size(), QSize(16, 8));
        const QColor pixel = blue.pixelColor(8, 4);
        QVERIFY2(pixel.blue() >= 253 && pixel.red() <= 2 && pixel.green() <= 2,
                 qPrintable(pixel.name()));
        QCOMPARE(position(*mgr), at(0, 0, 0));

        // A PNG in a page that says JPG: the content decides.
        QVERIFY(mgr->SetCurPage(2));
        QCOMPARE(mgr->GetImg().pixel(3, 2), qRgb(0, 255, 0));

        QVERIFY(mgr->GetImg({3, 0, 0}).isNull());
        QVERIFY(mgr->GetImg({4, 0, 0}).isNull());
        QVERIFY(mgr->GetImg({0xFFFFFFFF, 0, 0}).isNull());
        QCOMPARE(position(*mgr), at(2, 0, 0));
        QCOMPARE(log.takeLines(), QStringList());
    }

    // It takes several blocks to read the page, and more would be there for the last.
    void whatFollowsThePayloadIsIgnored()
    {
        const QByteArray payload = PageFiles::picture(Qt::red, "PNG").leftJustified(100000, 'p');
        const Manager mgr = manager(0, 1);
        QVERIFY(mgr->AddDocPage(
            0, PageFiles::write(dir, QStringLiteral("followed"),
                                PageFiles::pageResultFile(4, payload) + QByteArray(100000, 'f'))));
        LogSpy log;
        QCOMPARE(mgr->GetImg().size(), QSize(4, 3));
        QCOMPARE(log.takeLines(), QStringList());
    }

    void everyRequestReadsTheFileAnew()
    {
        using namespace PageFiles;
        const Manager mgr = manager(0, 1);
        const QString file =
            write(dir, QStringLiteral("changing"), pageResultFile(4, picture(Qt::white, "PNG")));
        QVERIFY(mgr->AddDocPage(0, file));
        QCOMPARE(mgr->GetImg().pixel(0, 0), qRgb(255, 255, 255));
        write(dir, QStringLiteral("changing"), pageResultFile(4, picture(Qt::black, "PNG")));
        QCOMPARE(mgr->GetImg().pixel(0, 0), qRgb(0, 0, 0));
        QVERIFY(QFile::remove(file));
        QVERIFY(mgr->GetImg().isNull());
    }

    void whatCannotBeShown_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("lines"); // of one reading; %1 is the path
        QTest::newRow("corrupt PNG: it passes the gate, but makes no image")
            << corruptPng << QStringList();
        QTest::newRow("not a page result file")
            << foreign
            << QStringList{QStringLiteral("IsEmfDealRsltFile, file format err! (0x474e5089,0xa0d)"),
                           QStringLiteral("decodeEmf, picFormat(5) not support! (file:%1)")};
        const auto page = [this](const char *name, qint32 format, const QByteArray &payload) {
            return PageFiles::write(dir, QString::fromLatin1(name),
                                    PageFiles::pageResultFile(format, payload));
        };
        const QByteArray png = PageFiles::picture(Qt::red, "PNG");
        QTest::newRow("a negative format is no picture, even over a good one")
            << page("negative", -1, png) << QStringList();
        QTest::newRow("format 1 is refused, even over a good picture")
            << page("one", 1, png)
            << QStringList{QStringLiteral("decodeEmf, picFormat(1) not support! (file:%1)")};
        QTest::newRow("empty") << page("empty", 4, {})
                               << QStringList{
                                      QStringLiteral("decodeEmf, rsltDat.size <= 0! (file:%1)")};
        // Whatever the blocks are that it is read by.
        const QByteArray truncated = PageFiles::pageResultFile(4, QByteArray(200000, 'p'));
        const auto cutRow = [&](const char *name, int payload, const char *reader) {
            QTest::newRow(name) << PageFiles::write(dir, QString::fromLatin1(name),
                                                    truncated.left(14 + payload))
                                << QStringList{QString::fromLatin1(reader),
                                               QStringLiteral("decodeEmf, picFormat(5) not "
                                                              "support! (file:%1)")};
        };
        cutRow("no payload", 0, "getPicDataFromFile readSize:0 != headDatSize:200000");
        cutRow("a byte", 1, "getPicDataFromFile readSize:1 != headDatSize:200000");
        cutRow("a byte too few", 199999,
               "getPicDataFromFile readSize:199999 != headDatSize:200000");
        QTest::newRow("text instead of a picture") << page("text", 2, "hello") << QStringList();
    }
    void whatCannotBeShown()
    {
        QFETCH(QString, file);
        QFETCH(QStringList, lines);
        const Manager mgr = manager(0, 1);
        QVERIFY(mgr->AddDocPage(0, file));
        QCOMPARE(mgr->IsPageCanDisplay(0), true);
        LogSpy log;
        QVERIFY(mgr->GetImg().isNull());
        // Once for the format, once for the picture.
        QCOMPARE(log.takeLines(), failureLines(lines + lines, file));
    }

    // A picture in a deck is shown whatever the step.
    void picturesInADeck()
    {
        const Manager mgr = manager(1, 2);
        QVERIFY(mgr->AddDocPage(0, redPng));
        QVERIFY(mgr->AddDocPage(1, greenPngAsJpg));
        QCOMPARE(mgr->GetImg({0, 3, 4}).pixel(0, 0), qRgb(255, 0, 0));
        QCOMPARE(mgr->GetImg().pixel(0, 0), qRgb(255, 0, 0));
        QCOMPARE(mgr->GetImg({1, 0, 0}).pixel(0, 0), qRgb(0, 255, 0));
        QVERIFY(mgr->SetAnimStatus({1, 2, 3}));
        QCOMPARE(mgr->GetImg().pixel(0, 0), qRgb(0, 255, 0));
        QCOMPARE(mgr->GetImg({0, 0, 0}).pixel(0, 0), qRgb(255, 0, 0));
    }

    // The image is what Qt decodes, unconverted.
    void imagesAreAsEncoded_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<int>("pageFormat");
        QImage translucent(3, 2, QImage::Format_ARGB32);
        translucent.fill(QColor(10, 20, 30, 40));
        QImage indexed(3, 2, QImage::Format_Indexed8);
        indexed.setColorTable({qRgb(1, 2, 3), qRgb(4, 5, 6)});
        indexed.fill(1);
        QTest::newRow("translucent PNG") << PageFiles::encoded(translucent, "PNG") << 4;
        QTest::newRow("indexed PNG") << PageFiles::encoded(indexed, "PNG") << 4;
        QTest::newRow("JPG in a page that says PNG") << PageFiles::picture(Qt::blue, "JPG") << 4;
        QTest::newRow("grey JPG") << PageFiles::encoded(
                                         translucent.convertToFormat(QImage::Format_Grayscale8),
                                         "JPG")
                                  << 2;
    }
    void imagesAreAsEncoded()
    {
        QFETCH(QByteArray, payload);
        QFETCH(int, pageFormat);
        const Manager mgr = manager(0, 1);
        QVERIFY(
            mgr->AddDocPage(0, PageFiles::write(dir, QStringLiteral("as encoded"),
                                                PageFiles::pageResultFile(pageFormat, payload))));
        const QImage expected = QImage::fromData(payload);
        QVERIFY(!expected.isNull());
        QCOMPARE(mgr->GetImg().format(), expected.format());
        QCOMPARE(mgr->GetImg(), expected);
    }

    void clearingTheCacheKeepsTheDocument()
    {
        const Manager mgr = manager(0, 2);
        QVERIFY(mgr->AddDocPage(1, redPng));
        QVERIFY(mgr->SetAnimStatus({1, 2, 3}));
        mgr->ClearPicCach();
        QCOMPARE(position(*mgr), at(1, 2, 3));
        QCOMPARE(mgr->GetImg().pixel(0, 0), qRgb(255, 0, 0));
    }

    void aFileThatGoesAway()
    {
        const Manager mgr = manager(0, 1);
        const QString file = PageFiles::write(dir, QStringLiteral("going"), "x");
        QVERIFY(mgr->AddDocPage(0, file));
        QCOMPARE(mgr->IsPageCanDisplay(0), true);
        QVERIFY(QFile::remove(file));
        QCOMPARE(mgr->IsPageCanDisplay(0), false);
    }

    void managersOnTwoThreads()
    {
        std::atomic<int> right{0};
        const auto show = [&](const QString &file, QRgb colour) {
            const Manager mgr = manager(0, 1);
            mgr->AddDocPage(0, file);
            for (int i = 0; i < 50; ++i)
                right += mgr->GetImg().pixel(0, 0) == colour ? 1 : 0;
        };
        std::thread other([&] { show(greenPngAsJpg, qRgb(0, 255, 0)); });
        show(redPng, qRgb(255, 0, 0));
        other.join();
        QCOMPARE(right.load(), 100);
    }

    // Slide animation data is never decoded as a picture, even if it is one.
    void slidesAreNoPictures()
    {
        const Manager mgr = manager(0, 1);
        QVERIFY(mgr->AddDocPage(0, slide));
        QVERIFY(mgr->GetImg().isNull());
    }
};

QTEST_GUILESS_MAIN(TestDisplayMgr)
#include "tst_displaymgr.moc"
