#include "Hex.h"
#include "LargestBlock.h"
#include "LogSpy.h"
#include "PlainModel.h"
#include "VirtualSlot.h"
#include "pptdata/PPT_fileDat.h"

#include <QElapsedTimer>
#include <QtTest>

#include <climits>
#include <optional>
#include <type_traits>
#include <vector>

// The model's classes have no virtual destructor, nor have those derived from them here.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace {

// Five different values from `first` on.
void setHead(PPT_FileHead &head, int first)
{
    head.magic = first + 1;
    head.version = first + 2;
    head.dpi = static_cast<float>(first + 3);
    head.width = static_cast<float>(first + 4);
    head.height = static_cast<float>(first + 5);
}

// A container that ends with the scope.
template <typename T>
class Owned : public T
{
public:
    Owned() = default;
    ~Owned() { T::release(); }
    Q_DISABLE_COPY_MOVE(Owned)
};
using Page = Owned<PPT_Page>;
using Model = Owned<PPT_fileDat>;

// What arrived through the virtual tables of the objects below, in order.
QStringList calls;

QStringList takeCalls()
{
    return std::exchange(calls, QStringList());
}

void called(const char *what, int id)
{
    calls << QString::fromLatin1(what) + QLatin1Char(' ') + QString::number(id);
}

// They say that writing failed, which nobody asks. Without data of their own, as the containers
// delete them as what they are derived from.
class SpiedShape : public PPT_Shape
{
public:
    explicit SpiedShape(quint16 id = 0) { shapeId = id; }
    bool streamTo(CStdDataStream &stream) const override
    {
        called("write shape", shapeId);
        PPT_Shape::streamTo(stream);
        return false;
    }
    void release() override
    {
        called("release shape", shapeId);
        PPT_Shape::release();
    }
};

class SpiedEffect : public PPT_Effect
{
public:
    explicit SpiedEffect(qint16 no = 0) { effectNo = no; }
    bool streamTo(CStdDataStream &stream) const override
    {
        called("write effect", effectNo);
        PPT_Effect::streamTo(stream);
        return false;
    }
    void release() override
    {
        called("release effect", effectNo);
        PPT_Effect::release();
    }
};

class SpiedPage : public PPT_Page
{
public:
    explicit SpiedPage(quint16 id = 0) { pageId = id; }
    bool streamTo(CStdDataStream &stream) const override
    {
        called("write page", pageId);
        PPT_Page::streamTo(stream);
        return false;
    }
    bool streamFrom(CStdDataStream &stream) override
    {
        called("read page", pageId);
        return PPT_Page::streamFrom(stream);
    }
    void release() override
    {
        called("release page", pageId);
        PPT_Page::release();
    }
};
static_assert(sizeof(SpiedShape) == sizeof(PPT_Shape));
static_assert(sizeof(SpiedEffect) == sizeof(PPT_Effect));
static_assert(sizeof(SpiedPage) == sizeof(PPT_Page));

class SpiedModel : public PPT_fileDat
{
public:
    void release() override
    {
        calls << QStringLiteral("release model");
        PPT_fileDat::release();
    }
};

QStringList words(const char *commaSeparated)
{
    return QString::fromLatin1(commaSeparated).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

#define HEAD "5054414D 00000002 4086800000000000 4080E00000000000 "
#define TRANSITION "FF 02 401C000000000000 8102 81 7F "
#define ZERO_8 "0000000000000000 "
#define SHAPE_7 \
    "0007 3FF0000000000000 4000000000000000 4008000000000000 4010000000000000 00000003 FF00D8 "
#define SHAPE_8 "0008 4014000000000000 4018000000000000 401C000000000000 4020000000000000 00000000 "
#define EFFECT_1 \
    "0001 0007 0A0B 0C0D FF " \
    "3FF0000000000000 01 4000000000000000 3FE0000000000000 " ZERO_8 "00 " ZERO_8 \
    "00000000 " ZERO_8 "01 "
#define EFFECT_2 \
    "0002 0008 0E0F 1011 00 " ZERO_8 "00 " ZERO_8 "4008000000000000 " ZERO_8 "00 " ZERO_8 \
    "00000000 4010000000000000 03 "
#define PAGE_33026 \
    "8102 00000002 8950 " TRANSITION "00000002 " SHAPE_7 SHAPE_8 "00000002 " EFFECT_1 EFFECT_2
#define BARE_TRANSITION "00 00 " ZERO_8 "0000 00 00 "
#define BARE_PAGE(id) id " FFFFFFFF " BARE_TRANSITION "00000000 00000000 "
#define PAGE_3 "0003 00000000 " BARE_TRANSITION "00000001 " SHAPE_8 "00000000 "

PPT_Shape *shape(quint16 id, float left, const QByteArray &picture)
{
    auto *s = new PPT_Shape;
    s->shapeId = id;
    s->left = left;
    s->top = left + 1;
    s->width = left + 2;
    s->height = left + 3;
    s->picDat = picture;
    return s;
}

void fillPage33026(PPT_Page &page)
{
    page.pageId = 33026;
    page.pageImage = hex("8950");
    page.transition.advanceOnClick = -1;
    page.transition.advanceOnTime = 2;
    page.transition.advanceTime = 7;
    page.transition.entryEffect = -32510;
    page.transition.hidden = -127;
    page.transition.loopSoundUntilNext = 127;
    page.shapes = {shape(7, 1, hex("FF00D8")), shape(8, 5, "")};

    auto *first = new PPT_Effect;
    first->effectNo = 1;
    first->shapeId = 7;
    first->effectParamA = 0x0A0B;
    first->effectParamB = 0x0C0D;
    first->exit = -1;
    first->timing.accelerate = 1;
    first->timing.autoReverse = 1;
    first->timing.decelerate = 2;
    first->timing.duration = 0.5F;
    first->timing.triggerType = 1;
    auto *second = new PPT_Effect;
    second->effectNo = 2;
    second->shapeId = 8;
    second->effectParamA = 0x0E0F;
    second->effectParamB = 0x1011;
    second->timing.duration = 3;
    second->timing.timingF12 = 4;
    second->timing.triggerType = 3;
    page.effects = {first, second};
}

void fillModel(PPT_fileDat &model)
{
    model.head.width = 720;
    model.head.height = 540;
    auto *later = new PPT_Page;
    fillPage33026(*later);
    model.pages[33026] = later;
    auto *bare = new PPT_Page;
    bare->pageId = 3;
    bare->pageImage = "";
    bare->shapes = {shape(8, 5, "")};
    model.pages[3] = bare;
}
#define MODEL HEAD "00000002 " PAGE_3 PAGE_33026

QByteArray written(const PPT_OBJ &object)
{
    QByteArray bytes;
    CStdDataStream stream(&bytes, QIODevice::WriteOnly);
    return object.streamTo(stream) ? bytes : QByteArray("(failed)");
}

PPT_Page *spiedPage(quint16 id, const QByteArray &image = QByteArray())
{
    auto *page = new SpiedPage(id);
    page->pageImage = image;
    return page;
}

QVector<int> keys(const PPT_fileDat &model)
{
    QVector<int> list;
    for (const auto &entry : model.pages)
        list << entry.first;
    return list;
}

const std::vector<quint32> kSeeds{1, 20, 300, 4000};

} // namespace

class TestPptFileDat : public QObject
{
    Q_OBJECT

private:
    std::optional<LogSpy> log;

private Q_SLOTS:
    void init()
    {
        log.emplace();
        calls.clear();
    }
    void cleanup()
    {
        QCOMPARE(log->takeLines(), QStringList());
        log.reset();
    }

    void classes()
    {
        QVERIFY((std::is_base_of_v<PPT_OBJ, PPT_Page>));
        QVERIFY((std::is_base_of_v<PPT_OBJ, PPT_fileDat>));
        QVERIFY(!std::has_virtual_destructor_v<PPT_Page>);
        QVERIFY(!std::has_virtual_destructor_v<PPT_fileDat>);
        QVERIFY((std::is_same_v<decltype(PPT_Page::pageId), quint16>));
        QVERIFY((std::is_same_v<decltype(PPT_Page::pageImage), QByteArray>));
        QVERIFY((std::is_same_v<decltype(PPT_Page::transition), PPT_SlideShowTransition>));
        QVERIFY((std::is_same_v<decltype(PPT_Page::shapes), std::list<PPT_Shape *>>));
        QVERIFY((std::is_same_v<decltype(PPT_Page::effects), std::list<PPT_Effect *>>));
        QVERIFY((std::is_same_v<decltype(PPT_fileDat::head), PPT_FileHead>));
        QVERIFY(
            (std::is_same_v<decltype(PPT_fileDat::pages), std::map<unsigned short, PPT_Page *>>));

        QVERIFY((std::is_same_v<decltype(&PPT_Page::release), void (PPT_Page::*)()>));
        QVERIFY((std::is_same_v<decltype(&PPT_fileDat::release), void (PPT_fileDat::*)()>));
        class NextOfPage : public PPT_Page
        {
        public:
            virtual void next() {}
        };
        class NextOfModel : public PPT_fileDat
        {
        public:
            virtual void next() {}
        };
        QCOMPARE(slot(&PPT_Page::streamTo), qptrdiff(0));
        QCOMPARE(slot(&PPT_Page::streamFrom), qptrdiff(1));
        QCOMPARE(slot(&PPT_Page::release), qptrdiff(2));
        QCOMPARE(slot(&NextOfPage::next), qptrdiff(3));
        QCOMPARE(slot(&PPT_fileDat::streamTo), qptrdiff(0));
        QCOMPARE(slot(&PPT_fileDat::streamFrom), qptrdiff(1));
        QCOMPARE(slot(&PPT_fileDat::release), qptrdiff(2));
        QCOMPARE(slot(&NextOfModel::next), qptrdiff(3));
    }

    void freshObjects()
    {
        const PPT_Page page;
        QCOMPARE(page.pageId, quint16(0));
        QVERIFY(page.pageImage.isNull());
        QVERIFY(page.shapes.empty());
        QVERIFY(page.effects.empty());
        QCOMPARE(written(page), hex(BARE_PAGE("0000")));
        const PPT_fileDat model;
        QVERIFY(model.pages.empty());
        QCOMPARE(model.head.dpi, 72.0F);
        QCOMPARE(written(model), hex("5054414D 00000002" ZERO_8 ZERO_8 "00000000"));
    }

    void goldenPage()
    {
        Page page;
        fillPage33026(page);
        QCOMPARE(written(page).toHex(), hex(PAGE_33026).toHex());

        Page again;
        CStdDataStream stream(hex(PAGE_33026 "A5A5"));
        QVERIFY(again.streamFrom(stream));
        QCOMPARE(stream.device()->pos(), qint64(hex(PAGE_33026).size()));
        QCOMPARE(PlainModel::fields(again), PlainModel::fields(page));
        QVERIFY(!again.shapes.back()->picDat.isNull());
        QVERIFY(again.pageImage.isDetached());
    }

    void goldenModel()
    {
        Model model;
        fillModel(model);
        model.head.dpi = 300;
        QCOMPARE(written(model).toHex(), hex(MODEL).toHex());

        Model again;
        CStdDataStream stream(hex(MODEL "A5A5"));
        QVERIFY(again.streamFrom(stream));
        QCOMPARE(stream.device()->pos(), qint64(hex(MODEL).size()));
        QCOMPARE(PlainModel::fields(again), PlainModel::fields(model));
        QCOMPARE(again.head.dpi, 72.0F);
        QCOMPARE(written(again).toHex(), hex(MODEL).toHex());
    }

    // What was read of the page itself stays, the lists are empty.
    void everyPrefixOfAPage()
    {
        const QByteArray bytes = hex(PAGE_33026);
        for (int cut = 0; cut < bytes.size(); ++cut) {
            const QStringList where{QStringLiteral("of %1 bytes").arg(cut)};
            SpiedPage page(4);
            page.pageImage = "before";
            page.transition.hidden = 9;
            page.shapes = {new SpiedShape(1), nullptr};
            page.effects = {new SpiedEffect(2)};
            CStdDataStream stream(bytes.left(cut));
            QCOMPARE(page.PPT_Page::streamFrom(stream), false);
            QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
            QVERIFY(stream.atEnd());
            QCOMPARE(where + takeCalls(),
                     where + words(cut < 2 ? "release page 0, release shape 1, release effect 2"
                                           : "release page 33026, release shape 1, "
                                             "release effect 2"));
            QVERIFY(page.shapes.empty());
            QVERIFY(page.effects.empty());

            Page expected;
            fillPage33026(expected);
            expected.release();
            if (cut < 2)
                expected.pageId = 0;
            if (cut < 8)
                expected.pageImage = cut < 6 ? QByteArray("") : QByteArray();
            PlainModel::cutAfter(cut - 8, expected.transition);
            QCOMPARE(where + PlainModel::fields(page), where + PlainModel::fields(expected));

            Page plainly;
            QDataStream plain(bytes.left(cut));
            QCOMPARE(PlainModel::read(plain, plainly), false);
            QCOMPARE(where + PlainModel::fields(page), where + PlainModel::fields(plainly));
        }
    }

    // Without its head a model is left as it was; after that it loses all pages.
    void everyPrefixOfAModel()
    {
        const QByteArray bytes = hex(MODEL);
        for (int cut = 0; cut < bytes.size(); ++cut) {
            const QStringList where{QStringLiteral("of %1 bytes").arg(cut)};
            const QByteArray image(5, 'i');
            Owned<SpiedModel> model;
            calls.clear();
            model.head.dpi = 96;
            model.pages[9] = spiedPage(9, image);
            model.pages[4] = spiedPage(4, image);
            CStdDataStream stream(bytes.left(cut));
            QCOMPARE(model.PPT_fileDat::streamFrom(stream), false);
            QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
            QVERIFY(stream.atEnd());
            if (cut < 24) {
                QCOMPARE(where + takeCalls(), where);
                QCOMPARE(keys(model), (QVector<int>{4, 9}));
            } else {
                QCOMPARE(where + takeCalls(),
                         where + words("release model, release page 4, release page 9"));
                QCOMPARE(keys(model), QVector<int>());
                QVERIFY(image.isDetached());
            }
            PPT_FileHead head;
            head.width = 720;
            head.height = 540;
            PlainModel::cutAfter(cut, head);
            QCOMPARE(where + PlainModel::fields(model.head), where + PlainModel::fields(head));
            QCOMPARE(model.head.dpi, 96.0F);
        }
    }

    void aSecondPageIsAppended()
    {
        Page page;
        CStdDataStream first(hex(PAGE_33026));
        QVERIFY(page.streamFrom(first));
        page.shapes.push_back(nullptr);
        PPT_Shape *front = page.shapes.front();
        CStdDataStream second(hex(PAGE_3));
        QVERIFY(page.streamFrom(second));
        QCOMPARE(page.pageId, quint16(3));
        QVERIFY(!page.pageImage.isNull());
        QVERIFY(page.pageImage.isEmpty());
        QCOMPARE(page.transition.hidden, qint8(0));
        QCOMPARE(page.shapes.size(), size_t(4));
        QCOMPARE(page.shapes.front(), front);
        QCOMPARE(page.shapes.back()->shapeId, quint16(8));
        QCOMPARE(page.effects.size(), size_t(2));

        CStdDataStream third(hex(PAGE_3).chopped(1));
        QVERIFY(!page.streamFrom(third));
        QVERIFY(page.shapes.empty());
        QVERIFY(page.effects.empty());
    }

    void pageImages_data()
    {
        QTest::addColumn<QByteArray>("image");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("null: length 0xFFFFFFFF") << QByteArray() << hex("FFFFFFFF");
        QTest::newRow("empty: length 0") << QByteArray("") << hex("00000000");
        QTest::newRow("a NUL") << QByteArray("\0", 1) << hex("00000001 00");
        const QByteArray megabytes(3 * 1024 * 1024 + 1, 'm');
        QTest::newRow("megabytes") << megabytes << hex("00300001") + megabytes;
    }
    void pageImages()
    {
        QFETCH(QByteArray, image);
        QFETCH(QByteArray, bytes);
        PPT_Page page;
        page.pageId = 5;
        page.pageImage = image;
        bytes = hex("0005") + bytes + hex(BARE_TRANSITION "00000000 00000000");
        QVERIFY(written(page) == bytes);

        PPT_Page again;
        again.pageImage = "before";
        CStdDataStream stream(bytes);
        QVERIFY(again.streamFrom(stream));
        QVERIFY(again.pageImage == image);
        QCOMPARE(again.pageImage.isNull(), image.isNull());
    }

    void anAnnouncedImageIsNotAllocated()
    {
        for (const char *length : {"00100000", "7FFFFFFF", "80000000", "FFFFFFFE"}) {
            CStdDataStream stream(hex("0005") + hex(length) + QByteArray(3000, 'p'));
            PPT_Page page;
            largestBlock = 0;
            const bool complete = page.streamFrom(stream);
            const size_t largest = largestBlock;
            QVERIFY(!complete);
            QVERIFY(page.pageImage.isNull());
            QVERIFY(stream.atEnd());
            QVERIFY2(largest <= 3100, qPrintable(QString::number(largest)));
        }
    }

    void counts_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("complete");
        QTest::addColumn<QVector<int>>("found"); // pages, and shapes and effects of the last
        const auto row = [](const char *where, const char *count, const char *bytes,
                            const char *following, bool complete, const QVector<int> &found) {
            QTest::addRow("%s, count %s: %s", where, count,
                          complete ? "none is read" : "fails without any")
                << hex(bytes) + hex(count) + hex(following) << complete << found;
        };
        for (const char *count : {"00000000", "FFFFFFFF", "FFFFFFFB", "80000000"}) {
            row("pages", count, HEAD, "", true, {0});
            row("shapes", count, HEAD "00000001 0003 FFFFFFFF" BARE_TRANSITION, "00000001" EFFECT_1,
                true, {1, 0, 1});
            row("effects", count, HEAD "00000001 0003 FFFFFFFF" BARE_TRANSITION "00000001" SHAPE_7,
                "", true, {1, 1, 0});
        }
        for (const char *count : {"00000003", "7FFFFFFF"}) {
            row("pages", count, HEAD, PAGE_3 PAGE_33026, false, {0});
            row("shapes", count, HEAD "00000001 0003 FFFFFFFF" BARE_TRANSITION, SHAPE_7 SHAPE_8,
                false, {0});
            row("effects", count, HEAD "00000001 0003 FFFFFFFF" BARE_TRANSITION "00000000",
                EFFECT_1 EFFECT_2, false, {0});
        }
    }
    void counts()
    {
        QFETCH(QByteArray, bytes);
        // A count is only a claim: a short stream is refused at once, with little memory.
        const ResourceLimit limit(RLIMIT_AS, addressSpaceFor(64 * 1024 * 1024));
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 20; ++i) {
            Model model;
            CStdDataStream stream(bytes);
            QTEST(model.streamFrom(stream), "complete");
            QVERIFY(stream.atEnd());
            QVector<int> found{int(model.pages.size())};
            if (!model.pages.empty()) {
                const PPT_Page *page = model.pages.rbegin()->second;
                found << int(page->shapes.size()) << int(page->effects.size());
            }
            QTEST(found, "found");
        }
        QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    }

    void moreThanTheLastPageIsThere()
    {
        Model model;
        CStdDataStream stream(hex(HEAD "00000001" PAGE_3 HEAD "00000001" PAGE_33026));
        QVERIFY(model.streamFrom(stream));
        QCOMPARE(keys(model), QVector<int>{3});
        QVERIFY(model.streamFrom(stream));
        QCOMPARE(keys(model), (QVector<int>{3, 33026}));
        QVERIFY(stream.atEnd());
    }

    void foreignHeads_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("magic");
        QTest::addColumn<int>("version");
        QTest::newRow("version 1") << hex("5054414D 00000001") << 0x5054414D << 1;
        QTest::newRow("version 3") << hex("5054414D 00000003") << 0x5054414D << 3;
        QTest::newRow("version 2, bytes swapped")
            << hex("5054414D 02000000") << 0x5054414D << 0x02000000;
        QTest::newRow("version 0x80000002")
            << hex("5054414D 80000002") << 0x5054414D << INT_MIN + 2;
        QTest::newRow("magic's last byte") << hex("5054414E 00000002") << 0x5054414E << 2;
        QTest::newRow("magic's first byte") << hex("5154414D 00000002") << 0x5154414D << 2;
        QTest::newRow("magic 0") << hex("00000000 00000002") << 0 << 2;
        QTest::newRow("magic -1") << hex("FFFFFFFF 00000002") << -1 << 2;
    }
    void foreignHeads()
    {
        QFETCH(QByteArray, bytes);
        for (const QByteArray &following : {hex("00000001" PAGE_3), QByteArray()}) {
            Owned<SpiedModel> model;
            calls.clear();
            model.pages[4] = spiedPage(4);
            CStdDataStream stream(bytes + hex(HEAD).mid(8) + following);
            QCOMPARE(model.PPT_fileDat::streamFrom(stream), false);
            QCOMPARE(stream.device()->pos(), qint64(24));
            QTEST(model.head.magic, "magic");
            QTEST(model.head.version, "version");
            QCOMPARE(model.head.width, 720.0F);
            QCOMPARE(keys(model), QVector<int>{4});
            QCOMPARE(takeCalls(), QStringList());
        }
    }

    void aRepeatedIdentifierInOneStream()
    {
        Model model;
        CStdDataStream stream(hex(HEAD "00000003" PAGE_3 "0003 00000001 99" BARE_TRANSITION
                                       "00000000 00000001" EFFECT_1 PAGE_33026));
        QVERIFY(model.streamFrom(stream));
        QCOMPARE(keys(model), (QVector<int>{3, 33026}));
        QCOMPARE(model.getPage(3)->pageImage, hex("99"));
        QCOMPARE(model.getPage(3)->effects.size(), size_t(1));
        QVERIFY(model.getPage(3)->shapes.empty());
    }

    // The page that makes room is gone before the call returns.
    void aSecondModelIsMerged()
    {
        const QByteArray image(5, 'i');
        const QByteArray kept(6, 'k');
        Owned<SpiedModel> model;
        model.pages[3] = spiedPage(3, image);
        model.pages[3]->shapes = {new SpiedShape(30)};
        model.pages[4] = spiedPage(4, kept);
        model.pages[33026] = nullptr;
        CStdDataStream stream(hex(MODEL));
        QVERIFY(model.PPT_fileDat::streamFrom(stream));
        QCOMPARE(takeCalls(), words("release page 3, release shape 30"));
        QVERIFY(image.isDetached());
        QVERIFY(!kept.isDetached());
        QCOMPARE(keys(model), (QVector<int>{3, 4, 33026}));
        QCOMPARE(model.getPage(3)->shapes.size(), size_t(1));
        QCOMPARE(model.getPage(33026)->effects.size(), size_t(2));

        // Each of them once, also when the data ends in the page that takes a place.
        CStdDataStream cut(hex(HEAD "00000002" BARE_PAGE("0009") BARE_PAGE("0004")).chopped(1));
        QVERIFY(!model.PPT_fileDat::streamFrom(cut));
        QCOMPARE(takeCalls(), words("release page 4, release model"));
        QVERIFY(kept.isDetached());
        QCOMPARE(keys(model), QVector<int>());
    }

    void pagesAreFiledUnderTheirIdentifier()
    {
        Model model;
        CStdDataStream stream(hex(HEAD "00000004" BARE_PAGE("FFFF") BARE_PAGE("0000")
                                      BARE_PAGE("8000") BARE_PAGE("7FFF")));
        QVERIFY(model.streamFrom(stream));
        QCOMPARE(keys(model), (QVector<int>{0, 0x7FFF, 0x8000, 0xFFFF}));
        for (const int id : {0, 0x7FFF, 0x8000, 0xFFFF})
            QCOMPARE(int(model.getPage(static_cast<quint16>(id))->pageId), id);
        QCOMPARE(written(model).mid(24).toHex(), hex("00000004" BARE_PAGE("0000") BARE_PAGE("7FFF")
                                                         BARE_PAGE("8000") BARE_PAGE("FFFF"))
                                                     .toHex());

        // Which is written, not the key.
        Model other;
        other.pages[1] = spiedPage(0x0A0B);
        QCOMPARE(written(other).mid(28, 2), hex("0A0B"));
    }

    void writingAPage()
    {
        Page page;
        page.pageId = 5;
        page.shapes = {nullptr, new SpiedShape(7), nullptr, new SpiedShape(6)};
        page.effects = {new SpiedEffect(2), new SpiedEffect(1), nullptr};
        const QByteArray bytes = written(page);
        QCOMPARE(takeCalls(),
                 words("write shape 7, write shape 6, write effect 2, write effect 1"));
        QCOMPARE(bytes.size(), 2 + 4 + 14 + 4 + 2 * 38 + 4 + 2 * 64);
        QCOMPARE(bytes.mid(20, 6), hex("00000004 0007"));
        QCOMPARE(bytes.mid(20 + 4 + 38, 2), hex("0006"));
        QCOMPARE(bytes.mid(20 + 4 + 2 * 38, 6), hex("00000003 0002"));
        page.release();
        QCOMPARE(takeCalls(), words("release shape 7, release shape 6, release effect 2, "
                                    "release effect 1"));
    }

    void writingAModel()
    {
        Model model;
        model.pages[9] = spiedPage(9);
        model.pages[2] = nullptr;
        model.pages[1] = spiedPage(1);
        const QByteArray bytes = written(model);
        QCOMPARE(takeCalls(), words("write page 1, write page 9"));
        QCOMPARE(bytes.mid(24).toHex(),
                 hex("00000003" BARE_PAGE("0001") BARE_PAGE("0009")).toHex());
        model.release();
        QCOMPARE(takeCalls(), words("release page 1, release page 9"));
    }

    void writingThatFails()
    {
        Model model;
        fillModel(model);
        for (const PPT_OBJ *object : {static_cast<const PPT_OBJ *>(&model),
                                      static_cast<const PPT_OBJ *>(model.getPage(3))}) {
            CStdDataStream readOnly((QByteArray()));
            QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): ReadOnly device");
            QCOMPARE(object->streamTo(readOnly), false);
            QByteArray bytes;
            CStdDataStream failed(&bytes, QIODevice::WriteOnly);
            failed.setStatus(QDataStream::WriteFailed);
            QCOMPARE(object->streamTo(failed), false);
            QCOMPARE(bytes, QByteArray());
        }
        QCOMPARE(keys(model), (QVector<int>{3, 33026}));
    }

    void readingFromAFailedStream()
    {
        Owned<SpiedModel> model;
        model.pages[4] = spiedPage(4);
        CStdDataStream stream(hex(MODEL));
        stream.setStatus(QDataStream::ReadCorruptData);
        QVERIFY(!model.PPT_fileDat::streamFrom(stream));
        QCOMPARE(stream.device()->pos(), qint64(24));
        QCOMPARE(keys(model), QVector<int>{4});
        QCOMPARE(takeCalls(), QStringList());

        Page page;
        page.shapes = {nullptr};
        CStdDataStream other(hex(PAGE_33026));
        other.setStatus(QDataStream::ReadCorruptData);
        QVERIFY(!page.streamFrom(other));
        QCOMPARE(other.status(), QDataStream::ReadCorruptData);
        QVERIFY(page.shapes.empty());
        QCOMPARE(page.pageId, quint16(33026));
        QVERIFY(other.device()->atEnd()); // as far as an unfailed stream
    }

    // It delivers zeros and does not fail.
    void readingWithoutADevice()
    {
        CStdDataStream stream(hex(MODEL));
        stream.setDevice(nullptr);
        Page page;
        page.pageId = 7;
        QCOMPARE(page.streamFrom(stream), true);
        QCOMPARE(page.pageId, quint16(0));
        QVERIFY(page.shapes.empty());
        PPT_Shape shape;
        shape.shapeId = 7;
        shape.picDat = "before";
        QCOMPARE(shape.streamFrom(stream), true);
        QCOMPARE(shape.shapeId, quint16(0));
        QCOMPARE(shape.picDat, QByteArray(""));
    }

    // Whatever a page owned, also nothing, it is released when it cannot be read.
    void aPageThatFailsIsReleased_data()
    {
        QTest::addColumn<bool>("hasShape");
        QTest::addColumn<bool>("hasEffect");
        QTest::addColumn<QString>("released");
        QTest::newRow("nothing") << false << false << "release page 0";
        QTest::newRow("a shape") << true << false << "release page 0, release shape 1";
        QTest::newRow("an effect") << false << true << "release page 0, release effect 2";
    }
    void aPageThatFailsIsReleased()
    {
        QFETCH(bool, hasShape);
        QFETCH(bool, hasEffect);
        QFETCH(QString, released);
        SpiedPage page(4);
        if (hasShape)
            page.shapes = {new SpiedShape(1)};
        if (hasEffect)
            page.effects = {new SpiedEffect(2)};
        CStdDataStream stream(QByteArray(1, '\1'));
        QCOMPARE(page.PPT_Page::streamFrom(stream), false);
        QCOMPARE(takeCalls().join(QStringLiteral(", ")), released);
        QVERIFY(page.shapes.empty());
        QVERIFY(page.effects.empty());
    }

    void aPageFindsItsShapes()
    {
        Page page;
        QVERIFY(!page.getPage(0));
        page.shapes = {nullptr,         shape(7, 1, ""), shape(8, 2, ""),
                       shape(7, 3, ""), nullptr,         shape(0xFFFF, 4, "")};
        QCOMPARE(page.getPage(7)->left, 1.0F);
        QCOMPARE(page.getPage(8)->left, 2.0F);
        QCOMPARE(page.getPage(0xFFFF)->left, 4.0F);
        QVERIFY(!page.getPage(0));
        QVERIFY(!page.getPage(0x7FFF));
        QCOMPARE(page.shapes.size(), size_t(6));

        page.shapes.push_front(shape(7, 5, ""));
        QCOMPARE(page.getPage(7), page.shapes.front());
    }

    void aModelFindsItsPages()
    {
        Model model;
        QVERIFY(!model.getPage(0));
        model.pages[1] = spiedPage(1);
        model.pages[2] = nullptr;
        model.pages[5] = spiedPage(6);
        QCOMPARE(model.getPage(1), model.pages[1]);
        QVERIFY(!model.getPage(2));
        QCOMPARE(model.getPage(5), model.pages[5]);
        QVERIFY(!model.getPage(6));
        QVERIFY(!model.getPage(0));
        QCOMPARE(keys(model), (QVector<int>{1, 2, 5}));
    }

    void releaseLeavesTheFields()
    {
        SpiedModel model;
        fillModel(model);
        model.head.dpi = 300;
        model.release();
        QCOMPARE(keys(model), QVector<int>());
        QCOMPARE(model.head.width, 720.0F);
        QCOMPARE(model.head.height, 540.0F);
        QCOMPARE(model.head.dpi, 300.0F);
        QCOMPARE(model.head.magic, 0x5054414D);
        model.release();

        PPT_Page page;
        fillPage33026(page);
        page.release();
        page.release();
        QCOMPARE(written(page).toHex(),
                 hex("8102 00000002 8950" TRANSITION "00000000 00000000").toHex());
    }

    // Any list or map, not only the container's own.
    void clearDat()
    {
        Page page;
        page.shapes = {new SpiedShape(1)};
        page.effects = {new SpiedEffect(2)};
        const QByteArray picture(5, 'p');
        std::list<PPT_Shape *> shapes{new SpiedShape(9), nullptr, new SpiedShape(3)};
        shapes.front()->picDat = picture;
        page.ClearDat(shapes);
        QCOMPARE(takeCalls(), words("release shape 9, release shape 3"));
        QVERIFY(shapes.empty());
        QVERIFY(picture.isDetached());
        std::list<PPT_Effect *> effects{nullptr, new SpiedEffect(8), new SpiedEffect(4)};
        page.ClearDat(effects);
        QCOMPARE(takeCalls(), words("release effect 8, release effect 4"));
        QVERIFY(effects.empty());
        QCOMPARE(page.shapes.size(), size_t(1));
        QCOMPARE(page.effects.size(), size_t(1));

        Model model;
        model.pages[1] = spiedPage(1);
        const QByteArray image(5, 'i');
        std::map<unsigned short, PPT_Page *> pages{
            {9, spiedPage(90, image)}, {5, nullptr}, {3, spiedPage(30, image)}};
        model.ClearDat(pages);
        QCOMPARE(takeCalls(), words("release page 30, release page 90"));
        QVERIFY(pages.empty());
        QVERIFY(image.isDetached());
        QCOMPARE(keys(model), QVector<int>{1});
    }

    void cutOutAPage()
    {
        Owned<SpiedModel> model;
        fillModel(model);
        model.head.magic = 11;
        model.head.version = 12;
        model.head.dpi = 13;
        const QByteArray image(5, 'i');
        Owned<SpiedModel> one;
        one.pages[3] = spiedPage(3, image);
        one.pages[1] = spiedPage(1, image);
        PPT_Page *page = model.getPage(3);

        QCOMPARE(model.makePageFileDat(3, one), true);
        QCOMPARE(takeCalls(), words("release model, release page 1, release page 3"));
        QVERIFY(image.isDetached());
        QCOMPARE(keys(one), QVector<int>{3});
        QCOMPARE(one.getPage(3), page);
        QCOMPARE(model.getPage(3), page);
        QCOMPARE(keys(model), (QVector<int>{3, 33026}));
        QCOMPARE(one.head.magic, 11);
        QCOMPARE(one.head.version, 12);
        QCOMPARE(one.head.dpi, 13.0F);
        QCOMPARE(one.head.width, 720.0F);
        QCOMPARE(one.head.height, 540.0F);
        QCOMPARE(written(one).mid(24).toHex(), hex("00000001" PAGE_3).toHex());
        one.pages.clear();
    }

    void cutOutAPageUnderAnotherKey()
    {
        Model model;
        model.pages[5] = spiedPage(6);
        PPT_fileDat one;
        QVERIFY(model.makePageFileDat(5, one));
        QCOMPARE(keys(one), QVector<int>{6});
        QCOMPARE(one.pages[6], model.pages[5]);
    }

    void cutOutWhatIsAbsent_data()
    {
        QTest::addColumn<int>("id");
        QTest::newRow("no such page") << 4;
        QTest::newRow("a null page") << 5;
        QTest::newRow("only in the other model") << 9;
    }
    void cutOutWhatIsAbsent()
    {
        QFETCH(int, id);
        Model model;
        fillModel(model);
        model.pages[5] = nullptr;
        Owned<SpiedModel> one;
        one.pages[9] = spiedPage(9);
        QCOMPARE(model.makePageFileDat(static_cast<quint16>(id), one), false);
        QCOMPARE(takeCalls(), QStringList());
        QCOMPARE(keys(one), QVector<int>{9});
        QCOMPARE(one.head.width, 0.0F);
        QCOMPARE(keys(model), (QVector<int>{3, 5, 33026}));
    }

    void merge()
    {
        const QByteArray own(5, 'o');
        const QByteArray moved(6, 'm');
        const QByteArray duplicate(7, 'd');
        Owned<SpiedModel> model;
        setHead(model.head, 10);
        model.pages[2] = spiedPage(2, own);
        Owned<SpiedModel> src;
        setHead(src.head, 20);
        src.pages = {
            {1, spiedPage(1, moved)}, {2, spiedPage(22, duplicate)}, {3, spiedPage(33, moved)}};
        PPT_Page *const first = src.pages[1];
        PPT_Page *const second = model.pages[2];
        PPT_Page *const third = src.pages[3];

        model.appendPageFileDat(src);
        QCOMPARE(takeCalls(), words("release model, release page 22"));
        QCOMPARE(keys(model), (QVector<int>{1, 2, 3}));
        QCOMPARE(model.pages[1], first);
        QCOMPARE(model.pages[2], second);
        QCOMPARE(model.pages[3], third); // under the key it had
        QVERIFY(src.pages.empty());
        QVERIFY(!own.isDetached());
        QVERIFY(!moved.isDetached());
        QVERIFY(duplicate.isDetached());
        PPT_FileHead tens;
        setHead(tens, 10);
        PPT_FileHead twenties;
        setHead(twenties, 20);
        QCOMPARE(PlainModel::fields(model.head), PlainModel::fields(tens));
        QCOMPARE(PlainModel::fields(src.head), PlainModel::fields(twenties));
        QCOMPARE(model.head.dpi, 13.0F);
        QCOMPARE(src.head.dpi, 23.0F);

        model.appendPageFileDat(src);
        QCOMPARE(takeCalls(), words("release model"));
        QCOMPARE(keys(model), (QVector<int>{1, 2, 3}));
    }

    void mergeWithNullPages()
    {
        Owned<SpiedModel> model;
        model.pages = {{1, nullptr}, {2, spiedPage(2)}, {3, nullptr}};
        Owned<SpiedModel> src;
        src.pages = {{1, spiedPage(1)}, {2, nullptr}, {3, nullptr}, {4, nullptr}};
        PPT_Page *const first = src.pages[1];
        PPT_Page *const second = model.pages[2];
        model.appendPageFileDat(src);
        QCOMPARE(takeCalls(), words("release model"));
        QVERIFY(src.pages.empty());
        QCOMPARE(keys(model), (QVector<int>{1, 2, 3, 4}));
        QCOMPARE(model.pages[1], first);
        QCOMPARE(model.pages[2], second);
        QCOMPARE(model.pages[3], nullptr);
        QCOMPARE(model.pages[4], nullptr);
    }

    void roundTrips()
    {
        for (const quint32 seed : kSeeds) {
            qInfo("seed %u", seed);
            QRandomGenerator random(seed);
            for (int i = 0; i < 100; ++i) {
                Model model;
                PlainModel::setRandom(random, model);
                const QByteArray bytes = written(model);
                QByteArray plainBytes;
                QDataStream plain(&plainBytes, QIODevice::WriteOnly);
                PlainModel::write(plain, model);
                QCOMPARE(bytes.toHex(), plainBytes.toHex());

                Model again;
                CStdDataStream stream(bytes);
                QVERIFY(again.streamFrom(stream));
                QVERIFY(stream.atEnd());
                QCOMPARE(PlainModel::fields(again), PlainModel::fields(model));
                QCOMPARE(written(again).toHex(), bytes.toHex());
            }
        }
    }

    // Streams of any kind come to the same, read by records or field by field.
    void brokenStreams()
    {
        for (const quint32 seed : kSeeds) {
            qInfo("seed %u", seed);
            QRandomGenerator random(seed);
            for (int i = 0; i < 150; ++i) {
                Model whole;
                PlainModel::setRandom(random, whole);
                QByteArray bytes = written(whole);
                if (random.bounded(2) == 0)
                    bytes.truncate(random.bounded(bytes.size()));
                for (int n = random.bounded(3); n > 0 && bytes.size() > 24; --n)
                    bytes[random.bounded(8, bytes.size())] = char(random.bounded(256));

                Model model;
                Model reference;
                for (PPT_fileDat *before : {&model, &reference}) {
                    CStdDataStream stream(hex(MODEL));
                    QVERIFY(before->streamFrom(stream));
                }
                CStdDataStream stream(bytes);
                QDataStream plain(bytes);
                const bool complete = model.streamFrom(stream);
                QCOMPARE(complete, PlainModel::read(plain, reference));
                QCOMPARE(stream.status(), plain.status());
                QCOMPARE(stream.device()->pos(), plain.device()->pos());
                QCOMPARE(PlainModel::fields(model), PlainModel::fields(reference));
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestPptFileDat)
#include "tst_pptfiledat.moc"
