#include "AnimModel.h"
#include "LogSpy.h"
#include "PlainModel.h"
#include "TinyPictures.h"
#include "VirtualSlot.h"

#include <QtTest>

#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <type_traits>

using namespace AnimModel;

namespace {

/// The bytes of a model of the pages 1, with two steps, two shapes and pictures, and 2, without.
QByteArray richModel()
{
    const QByteArray png = TinyPictures::png();
    return modelBytes({newPage({newShape(7, 1, 2, 3, 4, png), newShape(9, 1, 2, 3, 4, png)},
                               {newEffect(kClick, 1, 7), newEffect(kClick, 2, 9)}, png, 1),
                       newPage({}, {}, png, 2)},
                      720, 540);
}

/// Everything that a player holds but the timer's interval and its last tick.
QStringList state(OpenPlayer &player)
{
    QStringList list;
    list
        << QStringLiteral("page %1, %2").arg(player.curPageId).arg(player.GetPageID())
        << (player.curPage ? QStringLiteral("plays %1").arg(player.curPage->pageId)
                           : QStringLiteral("plays nothing"))
        << QStringLiteral("%1 x %2").arg(player.pageWidth).arg(player.pageHeight)
        << QStringLiteral("at ") + position(player.animStep, player.passedDuration)
        << QStringLiteral("steps %1, %2").arg(player.effectSteps.size()).arg(player.GetStepCount());
    for (const auto &entry : player.effectSteps)
        list << QStringLiteral("step %1: %2 ms").arg(entry.first).arg(entry.second.stepDuration);
    for (const auto &entry : player.shapeAnimDats)
        list << QStringLiteral("shape %1").arg(entry.first);
    list << (player.animTimer.isActive() ? QStringLiteral("runs") : QStringLiteral("stopped"))
         << (player.cachPic ? QStringLiteral("caches %1") : QStringLiteral("holds %1 pictures"))
                .arg(player.picCachs.size());
    return list;
}

QStringList clearedState()
{
    return {QStringLiteral("page -1, -1"),     QStringLiteral("plays nothing"),
            QStringLiteral("1 x 1"),           QStringLiteral("at 0:0"),
            QStringLiteral("steps 0, 0"),      QStringLiteral("stopped"),
            QStringLiteral("holds 0 pictures")};
}

/// A player in the midst of the rich model's page 1.
void loadAndRun(OpenPlayer &player)
{
    QVERIFY(player.Init(1, richModel(), 25));
    player.SetCachPic(true);
    player.SetAnimStep(2);
    player.StartRun();
    QCOMPARE(state(player),
             (QStringList{QStringLiteral("page 1, 1"), QStringLiteral("plays 1"),
                          QStringLiteral("720 x 540"), QStringLiteral("at 2:1"),
                          QStringLiteral("steps 2, 2"), QStringLiteral("step 1: 1000 ms"),
                          QStringLiteral("step 2: 2000 ms"), QStringLiteral("shape 7"),
                          QStringLiteral("shape 9"), QStringLiteral("runs"),
                          QStringLiteral("caches 3")}));
}

/// Notes the operations that arrive and where the player is by then. The one called `silent` has
/// no further effect. Step counts and durations are not noted, but replaced if they are set here.
class SpiedPlayer : public OpenPlayer
{
public:
    QStringList log;
    QString silent;
    int stepCount = -1;
    int stepDuration = -1;

    bool Init(int pageId, const QByteArray &data, int fps) override
    {
        return calls("Init") && PPTAnimDisplay::Init(pageId, data, fps);
    }
    int GetPageID() override { return calls("GetPageID") ? PPTAnimDisplay::GetPageID() : -2; }
    void Clear() override
    {
        if (calls("Clear"))
            PPTAnimDisplay::Clear();
    }
    unsigned int GetStepCount() override
    {
        return stepCount < 0 ? PPTAnimDisplay::GetStepCount()
                             : static_cast<unsigned int>(stepCount);
    }
    void SetCachPic(bool on) override
    {
        if (calls("SetCachPic"))
            PPTAnimDisplay::SetCachPic(on);
    }
    bool IsCachPic() override { return calls("IsCachPic") && PPTAnimDisplay::IsCachPic(); }
    void ClearPicCachs() override
    {
        if (calls(cachPic ? "ClearPicCachs, caching" : "ClearPicCachs"))
            PPTAnimDisplay::ClearPicCachs();
    }
    bool IsAtHome() override { return calls("IsAtHome") && PPTAnimDisplay::IsAtHome(); }
    bool IsAtEnd() override { return calls("IsAtEnd") && PPTAnimDisplay::IsAtEnd(); }
    void GotoHome() override
    {
        if (calls("GotoHome"))
            PPTAnimDisplay::GotoHome();
    }
    void GotoEnd() override
    {
        if (calls("GotoEnd"))
            PPTAnimDisplay::GotoEnd();
    }
    void SetAnimStep(unsigned int step) override
    {
        if (calls("SetAnimStep", step))
            PPTAnimDisplay::SetAnimStep(step);
    }
    void SetAnimPassedDuration(unsigned int ms) override
    {
        if (calls("SetAnimPassedDuration", ms))
            PPTAnimDisplay::SetAnimPassedDuration(ms);
    }
    unsigned int GetStepDuration(unsigned int step) override
    {
        return stepDuration < 0 ? PPTAnimDisplay::GetStepDuration(step)
                                : static_cast<unsigned int>(stepDuration);
    }
    unsigned int GetAnimStep() override { return calls("GetAnimStep") ? animStep : 99; }
    unsigned int GetAnimPassedDuration() override
    {
        return calls("GetAnimPassedDuration") ? passedDuration : 99;
    }
    bool nextStep() override { return calls("nextStep") && PPTAnimDisplay::nextStep(); }
    bool prevStep() override { return calls("prevStep") && PPTAnimDisplay::prevStep(); }
    bool nextFrame(unsigned int ms) override
    {
        return calls("nextFrame") && PPTAnimDisplay::nextFrame(ms);
    }
    bool prevFrame(unsigned int ms) override
    {
        return calls("prevFrame") && PPTAnimDisplay::prevFrame(ms);
    }
    void StartRun() override
    {
        if (calls("StartRun"))
            PPTAnimDisplay::StartRun();
    }
    void StopRun() override
    {
        if (calls("StopRun"))
            PPTAnimDisplay::StopRun();
    }
    bool IsRunning() override { return calls("IsRunning") && PPTAnimDisplay::IsRunning(); }
    QImage GetImg() override { return calls("GetImg") ? PPTAnimDisplay::GetImg() : QImage(); }

    QString place() const { return position(animStep, passedDuration); }

private:
    bool calls(const char *name)
    {
        log << QString::fromLatin1(name) + QStringLiteral(" at ") + place();
        return silent != QLatin1String(name);
    }
    bool calls(const char *name, unsigned int argument)
    {
        log << QStringLiteral("%1(%2) at %3").arg(QLatin1String(name)).arg(argument).arg(place());
        return silent != QLatin1String(name);
    }
};

using P = PPTAnimDisplay;
using Call = void (*)(P &);

} // namespace

Q_DECLARE_METATYPE(Call)

class AnimPlayerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObjects()
    {
        const QMetaObject &base = PPTAnimDisplayBase::staticMetaObject;
        QCOMPARE(QByteArray(base.className()), QByteArray("PPTAnimDisplayBase"));
        QCOMPARE(base.superClass(), &QObject::staticMetaObject);
        QCOMPARE(base.methodCount() - base.methodOffset(), 2);
        const QMetaMethod update = base.method(base.methodOffset());
        const QMetaMethod finished = base.method(base.methodOffset() + 1);
        QCOMPARE(update.methodSignature(), QByteArray("s_AnimUpdate()"));
        QCOMPARE(update.methodType(), QMetaMethod::Signal);
        QCOMPARE(finished.methodSignature(), QByteArray("s_AnimFnished()"));
        QCOMPARE(finished.methodType(), QMetaMethod::Signal);

        const QMetaObject &meta = PPTAnimDisplay::staticMetaObject;
        QCOMPARE(QByteArray(meta.className()), QByteArray("PPTAnimDisplay"));
        QCOMPARE(meta.superClass(), &base);
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        const QMetaMethod tick = meta.method(meta.methodOffset());
        QCOMPARE(tick.methodSignature(), QByteArray("slot_AnimTimeout()"));
        QCOMPARE(tick.methodType(), QMetaMethod::Slot);
        QCOMPARE(tick.access(), QMetaMethod::Private);

        QVERIFY(std::is_abstract_v<PPTAnimDisplayBase>);
        QVERIFY(std::has_virtual_destructor_v<PPTAnimDisplayBase>);
        QCOMPARE(sizeof(PPTAnimDisplayBase), sizeof(QObject));
        QVERIFY(std::is_default_constructible_v<PPTAnimDisplay>);
        QVERIFY((!std::is_constructible_v<PPTAnimDisplay, QObject *>));
    }

    // Hosts are compiled against the table's order, and the types of what stands in it.
    void virtualTable()
    {
        using B = PPTAnimDisplayBase;
        const QVector<qptrdiff> slots{slot<bool (B::*)(int, const QByteArray &, int)>(&B::Init),
                                      slot<int (B::*)()>(&B::GetPageID),
                                      slot<void (B::*)()>(&B::Clear),
                                      slot<unsigned int (B::*)()>(&B::GetStepCount),
                                      slot<void (B::*)(bool)>(&B::SetCachPic),
                                      slot<bool (B::*)()>(&B::IsCachPic),
                                      slot<void (B::*)()>(&B::ClearPicCachs),
                                      slot<bool (B::*)()>(&B::IsAtHome),
                                      slot<bool (B::*)()>(&B::IsAtEnd),
                                      slot<void (B::*)()>(&B::GotoHome),
                                      slot<void (B::*)()>(&B::GotoEnd),
                                      slot<void (B::*)(unsigned int)>(&B::SetAnimStep),
                                      slot<void (B::*)(unsigned int)>(&B::SetAnimPassedDuration),
                                      slot<unsigned int (B::*)(unsigned int)>(&B::GetStepDuration),
                                      slot<unsigned int (B::*)()>(&B::GetAnimStep),
                                      slot<unsigned int (B::*)()>(&B::GetAnimPassedDuration),
                                      slot<bool (B::*)()>(&B::nextStep),
                                      slot<bool (B::*)()>(&B::prevStep),
                                      slot<bool (B::*)(unsigned int)>(&B::nextFrame),
                                      slot<bool (B::*)(unsigned int)>(&B::prevFrame),
                                      slot<void (B::*)()>(&B::StartRun),
                                      slot<void (B::*)()>(&B::StopRun),
                                      slot<bool (B::*)()>(&B::IsRunning),
                                      slot<QImage (B::*)()>(&B::GetImg)};
        QCOMPARE(slots.size(), 24);
        // QObject's: metaObject, qt_metacast, qt_metacall, two destructors, event, eventFilter and
        // the five protected handlers.
        for (int i = 0; i < slots.size(); ++i)
            QCOMPARE(slots[i], qptrdiff(12 + i));
        struct Extended : PPTAnimDisplayBase
        {
            virtual void oneMore() = 0;
        };
        QCOMPARE(slot(&Extended::oneMore), qptrdiff(36)); // there are no others
    }

    void fields()
    {
        using O = OpenPlayer;
        QVERIFY((std::is_same_v<decltype(O::curPageId), int>));
        QVERIFY((std::is_same_v<decltype(O::fileDat), PPT_fileDat>));
        QVERIFY((std::is_same_v<decltype(O::curPage), PPT_Page *>));
        QVERIFY((std::is_same_v<decltype(O::pageWidth), int>));
        QVERIFY((std::is_same_v<decltype(O::pageHeight), int>));
        QVERIFY((std::is_same_v<decltype(O::animStep), unsigned int>));
        QVERIFY((std::is_same_v<decltype(O::passedDuration), unsigned int>));
        QVERIFY((std::is_same_v<decltype(O::effectSteps), std::map<unsigned, O::EffectStep>>));
        QVERIFY((std::is_same_v<decltype(O::shapeAnimDats), std::map<int, O::ShapeAnimDat>>));
        QVERIFY((std::is_same_v<decltype(O::animTimer), QTimer>));
        QVERIFY((std::is_same_v<decltype(O::lastTickMSecs), qint64>));
        QVERIFY((std::is_same_v<decltype(O::cachPic), bool>));
        QVERIFY((std::is_same_v<decltype(O::picCachs), std::map<const QByteArray *, QImage>>));

        OpenPlayer p;
        QVERIFY(AnimModel::areInOrder(&p.curPageId, &p.fileDat, &p.curPage, &p.pageWidth,
                                      &p.pageHeight, &p.animStep, &p.passedDuration, &p.effectSteps,
                                      &p.shapeAnimDats, &p.animTimer, &p.lastTickMSecs, &p.cachPic,
                                      &p.picCachs));
    }

    void factory()
    {
        std::unique_ptr<PPTAnimDisplayBase> player(CreatePPTAnimDisplayer());
        QCOMPARE(QByteArray(player->metaObject()->className()), QByteArray("PPTAnimDisplay"));
        QVERIFY(typeid(*player) == typeid(PPTAnimDisplay));
        QCOMPARE(player->parent(), nullptr);
        QVERIFY(player->Init(1, richModel(), 25));
        player->SetCachPic(true);
        player->StartRun();
        // Through the interface's destructor: what leaks then is found by the leak check.
        const QPointer<QObject> alive(player.get());
        player.reset();
        QVERIFY(alive.isNull());
    }

    void afterConstruction()
    {
        OpenPlayer player;
        QCOMPARE(state(player), clearedState());
        QCOMPARE(PlainModel::fields(player.fileDat),
                 (QStringList{QStringLiteral("magic=1347699021"), QStringLiteral("version=2"),
                              QStringLiteral("width=0 (00000000)"),
                              QStringLiteral("height=0 (00000000)")}));
        QCOMPARE(player.fileDat.head.dpi, 72.0F);
        QCOMPARE(player.parent(), nullptr);
        QCOMPARE(player.animTimer.parent(), nullptr);
        QCOMPARE(player.children(), QObjectList());
        QCOMPARE(player.animTimer.interval(), 0);
        QCOMPARE(player.animTimer.isSingleShot(), false);
        QVERIFY(player.GetImg().isNull());
    }

    void destructionFreesThePages()
    {
        QByteArray picture(100, 'x');
        {
            OpenPlayer player;
            player.take(newPage({newShape(1, 0, 0, 1, 1, picture)}, {}, picture));
            QVERIFY(!picture.isDetached()); // the page and its shape share the bytes
        }
        QVERIFY(picture.isDetached());
    }

    void clearForgetsAllButTheHead()
    {
        OpenPlayer player;
        loadAndRun(player);
        player.fileDat.head.dpi = 300;
        player.Clear();
        QCOMPARE(state(player), clearedState());
        QCOMPARE(PlainModel::fields(player.fileDat),
                 (QStringList{QStringLiteral("magic=1347699021"), QStringLiteral("version=2"),
                              QStringLiteral("width=720 (44340000)"),
                              QStringLiteral("height=540 (44070000)")}));
        QCOMPARE(player.fileDat.head.dpi, 300.0F);
        QCOMPARE(player.animTimer.interval(), 40);
        player.Clear();
        QCOMPARE(state(player), clearedState());
    }

    void initFails_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<int>("pageId");
        QTest::addColumn<int>("pagesLeft");
        const QByteArray good = richModel();
        QByteArray magic = good, magicCase = good, version1 = good, version3 = good;
        magic[0] = 'p';
        magicCase[3] = 'N';
        version1[7] = 1;
        version3[7] = 3;
        QTest::newRow("null") << QByteArray() << 1 << 0;
        QTest::newRow("empty") << QByteArray("") << 1 << 0;
        QTest::newRow("no model") << TinyPictures::png() << 1 << 0;
        QTest::newRow("another magic") << magic << 1 << 0;
        QTest::newRow("another end of the magic") << magicCase << 1 << 0;
        QTest::newRow("version 1") << version1 << 1 << 0;
        QTest::newRow("version 3") << version3 << 1 << 0;
        QTest::newRow("no pages") << modelBytes({}) << 1 << 0;
        QTest::newRow("page not there") << good << 3 << 2;
        QTest::newRow("page -1") << good << -1 << 2;
        QTest::newRow("page 0") << good << 0 << 2;
        QTest::newRow("page 65536") << good << 65536 << 2;
        QTest::newRow("last byte missing") << good.left(good.size() - 1) << 1 << 0;
    }
    void initFails()
    {
        QFETCH(QByteArray, data);
        QFETCH(int, pageId);
        LogSpy log;
        OpenPlayer player;
        loadAndRun(player);
        QCOMPARE(player.Init(pageId, data, 10), false);
        QCOMPARE(state(player), clearedState());
        QTEST(static_cast<int>(player.fileDat.pages.size()), "pagesLeft");
        QVERIFY(player.GetImg().isNull());
        QCOMPARE(player.Init(2, richModel(), 10), true);
        QCOMPARE(player.Init(pageId, data, 10), false);
        QCOMPARE(state(player), clearedState());
        player.Clear();
        QVERIFY(player.fileDat.pages.empty());
        QCOMPARE(log.takeLines(), QStringList());
    }

    void initOfEveryPrefixFails()
    {
        const QByteArray bytes =
            modelBytes({newPage({newShape(7, 1, 2, 3, 4, "abc")}, newEffects("click 1"), "def")});
        LogSpy log;
        OpenPlayer player;
        for (int size = 0; size < bytes.size(); ++size) {
            QVERIFY2(!player.Init(1, bytes.left(size), 25), QByteArray::number(size));
            QCOMPARE(state(player), clearedState());
            QVERIFY2(player.fileDat.pages.empty(), QByteArray::number(size));
        }
        QVERIFY(player.Init(1, bytes, 25));
        QVERIFY(player.Init(1, bytes + "more", 25)); // what follows a model is not looked at
        QCOMPARE(log.takeLines(), QStringList());
    }

    void initLeavesNothingOfThePageBefore()
    {
        const QByteArray other = modelBytes(
            {newPage({newShape(8)}, newEffects("after 0.5"), TinyPictures::png(), 5)}, 30, 20.6F);
        const QStringList otherState{
            QStringLiteral("page 5, 5"),       QStringLiteral("plays 5"),
            QStringLiteral("30 x 21"),         QStringLiteral("at 0:0"),
            QStringLiteral("steps 1, 1"),      QStringLiteral("step 1: 500 ms"),
            QStringLiteral("shape 8"),         QStringLiteral("stopped"),
            QStringLiteral("holds 0 pictures")};
        OpenPlayer player;
        loadAndRun(player);
        QVERIFY(player.Init(5, other, 50));
        QCOMPARE(state(player), otherState);
        QCOMPARE(player.animTimer.interval(), 20);
        QCOMPARE(player.curPage, player.fileDat.getPage(5));

        OpenPlayer fresh;
        QVERIFY(fresh.Init(5, other, 50));
        QCOMPARE(PlainModel::fields(player.fileDat), PlainModel::fields(fresh.fileDat));

        // Another page of the same model.
        loadAndRun(player);
        QVERIFY(player.Init(2, richModel(), 0));
        QCOMPARE(state(player),
                 (QStringList{QStringLiteral("page 2, 2"), QStringLiteral("plays 2"),
                              QStringLiteral("720 x 540"), QStringLiteral("at 0:0"),
                              QStringLiteral("steps 0, 0"), QStringLiteral("stopped"),
                              QStringLiteral("holds 0 pictures")}));
        QCOMPARE(player.animTimer.interval(), 1000);
        QCOMPARE(static_cast<int>(player.fileDat.pages.size()), 2);
    }

    void pageIdentifiers_data()
    {
        QTest::addColumn<int>("given");
        QTest::addColumn<int>("played"); // its identifier; -1: none
        QTest::newRow("0") << 0 << 0;
        QTest::newRow("3") << 3 << 3;
        QTest::newRow("4, not there") << 4 << -1;
        QTest::newRow("40000") << 40000 << 40000;
        QTest::newRow("65535") << 65535 << 65535;
        QTest::newRow("-1 is 65535") << -1 << 65535;
        QTest::newRow("-65533 is 3") << -65533 << 3;
        QTest::newRow("-3, not there") << -3 << -1;
        QTest::newRow("65536 is 0") << 65536 << 0;
        QTest::newRow("65539 is 3") << 65539 << 3;
        QTest::newRow("65540, not there") << 65540 << -1;
        QTest::newRow("INT_MAX is 65535") << INT_MAX << 65535;
        QTest::newRow("INT_MIN is 0") << INT_MIN << 0;
    }
    void pageIdentifiers()
    {
        QFETCH(int, given);
        QFETCH(int, played);
        const QByteArray bytes =
            modelBytes({newPage({}, {}, {}, 0), newPage({}, {}, {}, 3), newPage({}, {}, {}, 40000),
                        newPage({}, {}, {}, 65535)});
        OpenPlayer player;
        QCOMPARE(player.Init(given, bytes, 25), played != -1);
        QCOMPARE(player.GetPageID(), played == -1 ? -1 : given);
        QCOMPARE(player.curPage ? player.curPage->pageId : -1, played);
    }

    void pageSizes_data()
    {
        QTest::addColumn<float>("units");
        QTest::addColumn<int>("pixels");
        const float infinity = std::numeric_limits<float>::infinity();
        QTest::newRow("0") << 0.0F << 1;
        QTest::newRow("0.5") << 0.5F << 1;
        QTest::newRow("0.99") << 0.99F << 1;
        QTest::newRow("1") << 1.0F << 1;
        QTest::newRow("1.49") << 1.49F << 1;
        QTest::newRow("1.5") << 1.5F << 2;
        QTest::newRow("719.5") << 719.5F << 720;
        QTest::newRow("-0") << -0.0F << 1;
        QTest::newRow("-5") << -5.0F << 1;
        // Their sum with 0.5 is no float.
        QTest::newRow("float before 1.5") << std::nextafter(1.5F, 0.0F) << 1;
        QTest::newRow("8388609") << 8388609.0F << 8388609;
        QTest::newRow("1e12") << 1e12F << INT_MAX;
        QTest::newRow("-1e12") << -1e12F << 1;
        QTest::newRow("2147483648") << 2147483648.0F << INT_MAX;
        QTest::newRow("infinity") << infinity << INT_MAX;
        QTest::newRow("-infinity") << -infinity << 1;
        QTest::newRow("no number, which is not below 1") << std::nanf("") << 0;
    }
    void pageSizes()
    {
        QFETCH(float, units);
        QFETCH(int, pixels);
        OpenPlayer player;
        QVERIFY(player.Init(1, modelBytes({newPage({}, {})}, units, 500), 25));
        QCOMPARE(player.pageWidth, pixels);
        QCOMPARE(player.pageHeight, 500);
        QVERIFY(player.Init(1, modelBytes({newPage({}, {})}, 1000, units), 25));
        QCOMPARE(player.pageWidth, 1000);
        QCOMPARE(player.pageHeight, pixels);
    }

    void intervals_data()
    {
        QTest::addColumn<int>("fps");
        QTest::addColumn<int>("interval");
        QTest::newRow("25") << 25 << 40;
        QTest::newRow("0") << 0 << 1000;
        QTest::newRow("-1") << -1 << 1000;
        QTest::newRow("INT_MIN") << INT_MIN << 1000;
        QTest::newRow("1") << 1 << 1000;
        QTest::newRow("2") << 2 << 500;
        QTest::newRow("3") << 3 << 333;
        QTest::newRow("999") << 999 << 1;
        QTest::newRow("1000") << 1000 << 1;
        QTest::newRow("1001") << 1001 << 0;
        QTest::newRow("2000") << 2000 << 0;
        QTest::newRow("INT_MAX") << INT_MAX << 0;
    }
    void intervals()
    {
        QFETCH(int, fps);
        OpenPlayer player;
        QVERIFY(player.Init(1, effectsBytes("click 1"), fps));
        QTEST(player.animTimer.interval(), "interval");
        QCOMPARE(player.IsRunning(), false);
        player.StartRun();
        QTEST(player.animTimer.interval(), "interval");
        QCOMPARE(player.IsRunning(), true);
    }

    // Step counts and durations, which anyone may ask for, are not among the calls.
    void callsAmongOperations_data()
    {
        QTest::addColumn<quint32>("step");
        QTest::addColumn<quint32>("passed");
        QTest::addColumn<Call>("operation");
        QTest::addColumn<QStringList>("calls");
        const auto row = [](const char *from, const char *name, Call operation,
                            const QByteArrayList &calls) {
            QStringList texts;
            for (const QByteArray &call : calls)
                texts << QString::fromLatin1(call);
            const QByteArrayList numbers = QByteArray(from).split(':');
            QTest::addRow("%s %s", from, name)
                << numbers[0].toUInt() << numbers[1].toUInt() << operation << texts;
        };
        row("2:30", "IsAtHome()", [](P &p) { p.P::IsAtHome(); }, {});
        row("3:250", "IsAtEnd()", [](P &p) { p.P::IsAtEnd(); }, {});
        row("2:30", "IsRunning()", [](P &p) { p.P::IsRunning(); }, {});
        row("2:30", "GetStepCount()", [](P &p) { p.P::GetStepCount(); }, {});
        row("2:30", "GetStepDuration(2)", [](P &p) { p.P::GetStepDuration(2); }, {});
        row("2:30", "GotoHome()", [](P &p) { p.P::GotoHome(); },
            {"SetAnimStep(0) at 2:30", "StopRun at 0:0"});
        row("2:30", "GotoEnd()", [](P &p) { p.P::GotoEnd(); },
            {"SetAnimStep(3) at 2:30", "StopRun at 3:0",
             "SetAnimPassedDuration(4294967295) at 3:0"});
        row("2:30", "SetAnimStep(9)", [](P &p) { p.P::SetAnimStep(9); }, {"StopRun at 3:0"});
        row("2:30", "SetAnimPassedDuration(9)", [](P &p) { p.P::SetAnimPassedDuration(9); }, {});
        row("2:30", "nextStep()", [](P &p) { p.P::nextStep(); }, {});
        row("2:500", "nextStep()", [](P &p) { p.P::nextStep(); },
            {"SetAnimStep(3) at 2:500", "StopRun at 3:0"});
        row("3:250", "nextStep()", [](P &p) { p.P::nextStep(); }, {});
        row("2:30", "prevStep()", [](P &p) { p.P::prevStep(); }, {"StopRun at 1:1000"});
        row("0:0", "prevStep()", [](P &p) { p.P::prevStep(); }, {});
        row("2:30", "nextFrame(9)", [](P &p) { p.P::nextFrame(9); }, {});
        row("2:500", "nextFrame(9)", [](P &p) { p.P::nextFrame(9); }, {});
        row("2:30", "prevFrame(9)", [](P &p) { p.P::prevFrame(9); }, {});
        row("2:0", "StartRun()", [](P &p) { p.P::StartRun(); }, {});
        row("2:30", "StopRun()", [](P &p) { p.P::StopRun(); }, {});
        row("2:30", "GetImg()", [](P &p) { p.P::GetImg(); }, {});
    }
    void callsAmongOperations()
    {
        QFETCH(quint32, step);
        QFETCH(quint32, passed);
        QFETCH(Call, operation);
        SpiedPlayer player;
        QVERIFY(player.Init(1, effectsBytes(kThreeSteps), 25));
        player.animStep = step;
        player.passedDuration = passed;
        player.log.clear();
        operation(player);
        QTEST(player.log, "calls");
    }

    void callsOfInitAndClear()
    {
        SpiedPlayer player;
        const QStringList cleared{QStringLiteral("Clear at 0:0"), QStringLiteral("StopRun at 0:0"),
                                  QStringLiteral("ClearPicCachs at 0:0")};
        const QStringList home{QStringLiteral("SetAnimStep(0) at 0:0"),
                               QStringLiteral("StopRun at 0:0")};
        const QStringList init{QStringLiteral("Init at 0:0")};
        QVERIFY(player.Init(1, richModel(), 25));
        QCOMPARE(std::exchange(player.log, {}), init + cleared + home);
        QVERIFY(!player.Init(9, richModel(), 25));
        QCOMPARE(std::exchange(player.log, {}), init + cleared);
        QVERIFY(!player.Init(1, {}, 25));
        QCOMPARE(std::exchange(player.log, {}), init + cleared);

        QVERIFY(player.Init(1, richModel(), 25));
        player.log.clear();
        player.SetCachPic(true);
        QCOMPARE(std::exchange(player.log, {}), QStringList(QStringLiteral("SetCachPic at 0:0")));
        player.SetCachPic(false);
        QCOMPARE(std::exchange(player.log, {}),
                 (QStringList{QStringLiteral("SetCachPic at 0:0"),
                              QStringLiteral("ClearPicCachs at 0:0")}));
        player.SetCachPic(true);
        player.animStep = 2;
        player.log.clear();
        player.Clear();
        QStringList fromStepTwo = cleared;
        fromStepTwo[0] = QStringLiteral("Clear at 2:0");
        QCOMPARE(player.log, fromStepTwo);
    }

    void anotherStepCountHoldsForAll()
    {
        SpiedPlayer player;
        QVERIFY(player.Init(1, effectsBytes("click 1"), 25));
        player.stepCount = 7;
        player.SetAnimStep(9);
        QCOMPARE(player.place(), QStringLiteral("7:0"));
        QCOMPARE(player.IsAtEnd(), true);
        player.SetAnimStep(6);
        QCOMPARE(player.IsAtEnd(), false);
        QCOMPARE(player.nextStep(), true);
        QCOMPARE(player.place(), QStringLiteral("7:0"));
        QCOMPARE(player.nextStep(), false);
        player.GotoHome();
        player.GotoEnd();
        QCOMPARE(player.place(), QStringLiteral("7:0"));
        player.SetAnimStep(1);
        player.stepCount = 0;
        player.SetAnimPassedDuration(1000);
        QCOMPARE(player.nextStep(), false);
    }

    void otherStepDurationsHoldForAll()
    {
        SpiedPlayer player;
        QVERIFY(player.Init(1, effectsBytes("click 1, click 2"), 25));
        player.stepDuration = 300;
        QCOMPARE(player.IsAtEnd(), false);
        player.SetAnimPassedDuration(1000);
        QCOMPARE(player.place(), QStringLiteral("0:300"));
        player.SetAnimStep(1);
        QCOMPARE(player.nextStep(), true);
        QCOMPARE(player.place(), QStringLiteral("1:300"));
        QCOMPARE(player.nextFrame(1), false);
        QCOMPARE(player.nextStep(), true);
        QCOMPARE(player.place(), QStringLiteral("2:0"));
        QCOMPARE(player.IsAtEnd(), false);
        player.GotoEnd();
        QCOMPARE(player.place(), QStringLiteral("2:300"));
        QCOMPARE(player.IsAtEnd(), true);
        QCOMPARE(player.prevStep(), true);
        QCOMPARE(player.prevStep(), true);
        QCOMPARE(player.place(), QStringLiteral("0:300"));
        player.GotoHome();
        QCOMPARE(player.nextFrame(40), true); // also home, which lasts now
        QCOMPARE(player.place(), QStringLiteral("0:40"));
    }

    void aStopThatDoesNotStop()
    {
        SpiedPlayer player;
        QVERIFY(player.Init(1, effectsBytes(kThreeSteps), 25));
        player.silent = QStringLiteral("StopRun");
        player.StartRun();
        player.SetAnimStep(2);
        player.GotoHome();
        player.GotoEnd();
        QCOMPARE(player.prevStep(), true);
        QCOMPARE(player.nextStep(), true);
        player.Clear();
        QCOMPARE(player.Init(1, effectsBytes(kThreeSteps), 25), true);
        QCOMPARE(player.animTimer.isActive(), true);
    }

    void aPositioningThatDoesNotMove()
    {
        SpiedPlayer player;
        QVERIFY(player.Init(1, effectsBytes(kThreeSteps), 25));
        player.SetAnimStep(2);
        player.silent = QStringLiteral("SetAnimStep");
        player.GotoHome();
        QCOMPARE(player.place(), QStringLiteral("2:0"));
        player.GotoEnd();
        QCOMPARE(player.place(), QStringLiteral("2:500"));
        QCOMPARE(player.nextStep(), true);
        QCOMPARE(player.place(), QStringLiteral("2:500"));
        player.StartRun();
        QCOMPARE(player.prevStep(), true); // by itself
        QCOMPARE(player.place(), QStringLiteral("1:1000"));
        QCOMPARE(player.animTimer.isActive(), false);

        player.silent = QStringLiteral("SetAnimPassedDuration");
        player.GotoEnd();
        QCOMPARE(player.place(), QStringLiteral("3:0"));
        QCOMPARE(player.nextStep(), true);
        QCOMPARE(player.place(), QStringLiteral("3:250"));
    }

    void aClearThatKeepsThePages()
    {
        SpiedPlayer player;
        QVERIFY(player.Init(1, richModel(), 25));
        player.silent = QStringLiteral("Clear");
        QVERIFY(player.Init(5, modelBytes({newPage({}, {}, {}, 5)}), 25));
        QCOMPARE(static_cast<int>(player.fileDat.pages.size()), 3);
        QCOMPARE(player.Init(6, richModel(), 25), false);
        QCOMPARE(player.GetPageID(), 5);
    }

    void aCacheThatIsNotCleared()
    {
        SpiedPlayer player;
        QVERIFY(player.Init(1, richModel(), 25));
        player.SetCachPic(true);
        player.silent = QStringLiteral("ClearPicCachs");
        player.SetCachPic(false);
        QCOMPARE(player.cachPic, false);
        QCOMPARE(static_cast<int>(player.picCachs.size()), 3);
        player.Clear();
        QCOMPARE(static_cast<int>(player.picCachs.size()), 3);
        player.silent.clear();
        player.Clear();
        QCOMPARE(static_cast<int>(player.picCachs.size()), 0);
    }
};

QTEST_GUILESS_MAIN(AnimPlayerTest)
#include "tst_animplayer.moc"
