#include "AnimModel.h"
#include "FloatBits.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace AnimModel;
using ShapeAnimDat = PPTAnimDisplay::ShapeAnimDat;

namespace {

QRect rectOf(int left, int top, int right, int bottom)
{
    QRect rect;
    rect.setCoords(left, top, right, bottom);
    return rect;
}

QList<int> coordinates(const QRect &rect)
{
    return {rect.left(), rect.top(), rect.right(), rect.bottom()};
}

} // namespace

/// Where a shape is, at rest and in motion.
class AnimShapePlaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixels_data()
    {
        QTest::addColumn<float>("units");
        QTest::addColumn<int>("expected");
        const auto row = [](const char *name, float units, int expected) {
            QTest::newRow(name) << units << expected;
        };
        row("-0.7", -0.7F, 0);
        row("-1.4", -1.4F, 0);
        row("-1.6", -1.6F, -1);
        row("1e12", 1e12F, kMost);
        row("-1e12", -1e12F, kLeast);
        row("NaN", kNaN, 0);
        row("just below a half", fromBits<float>(0x3EFFFFFFU), 0);
        row("8388609", 8388609.0F, 8388609);
        row("0", 0.0F, 0);
        row("-0", -0.0F, 0);
        row("0.5", 0.5F, 1);
        row("-0.5", -0.5F, 0);
        row("-1.5", -1.5F, -1);
        row("-2.5", -2.5F, -2);
        row("-2.6", -2.6F, -2);
        row("1.4", 1.4F, 1);
        row("1.5", 1.5F, 2);
        row("99.5", 99.5F, 100);
        row("8388607.5", 8388607.5F, 8388608);
        row("16777215", 16777215.0F, 16777215);
        row("-8388609", -8388609.0F, -8388608);
        row("last float below 2^31", 2147483520.0F, 2147483520);
        row("2^31", 2147483648.0F, kMost);
        row("-2^31", -2147483648.0F, kLeast + 1);
        row("first float below -2^31", -2147483904.0F, kLeast);
        row("infinity", kInfinity, kMost);
        row("minus infinity", -kInfinity, kLeast);
        row("least denormal", std::numeric_limits<float>::denorm_min(), 0);
    }

    void pixels()
    {
        QFETCH(float, units);
        QFETCH(int, expected);
        OpenPlayer player;
        PPT_Shape shape;
        shape.left = units;
        shape.top = 3;
        shape.width = 1; // so that right and bottom are left and top
        shape.height = 1;
        QCOMPARE(coordinates(player.GetShapeOrgRect(&shape)),
                 (QList<int>{expected, 3, expected, 3}));
        shape.left = 2;
        shape.top = units;
        QCOMPARE(coordinates(player.GetShapeOrgRect(&shape)),
                 (QList<int>{2, expected, 2, expected}));
        if (expected == kLeast)
            return;     // as a length: among the ends
        shape.left = 1; // so that right and bottom are width and height
        shape.top = 1;
        shape.width = units;
        QCOMPARE(coordinates(player.GetShapeOrgRect(&shape)), (QList<int>{1, 1, expected, 1}));
        shape.width = 1;
        shape.height = units;
        QCOMPARE(coordinates(player.GetShapeOrgRect(&shape)), (QList<int>{1, 1, 1, expected}));
    }

    void orgRect_data()
    {
        QTest::addColumn<QVector<float>>("units"); // left, top, width, height
        QTest::addColumn<QList<int>>("expected");  // left, top, right, bottom
        const auto row = [](const char *name, const QVector<float> &units,
                            const QList<int> &expected) {
            QTest::newRow(name) << units << expected;
        };
        row("whole", {100, 20, 50, 30}, {100, 20, 149, 49});
        row("each is rounded for itself", {0.5F, 1.4F, 10.5F, 10.4F}, {1, 1, 11, 10});
        row("no length", {100, 20, 0, 0}, {100, 20, 99, 19});
        row("length below a half", {100, 20, 0.4F, 0.49F}, {100, 20, 99, 19});
        row("negative length", {100, 20, -10, -1.4F}, {100, 20, 90, 19});
        row("negative place", {-0.7F, -1.6F, 2, 2}, {0, -1, 1, 0});
        row("no numbers", {kNaN, kNaN, kNaN, kNaN}, {0, 0, -1, -1});
        row("at the upper end", {1e12F, 1e12F, 1, 1}, {kMost, kMost, kMost, kMost});
        row("beyond the upper end", {1e12F, 1e12F, 50, 2}, {kMost, kMost, -2147483600, kLeast});
        row("at the lower end", {-1e12F, -1e12F, 1, 50}, {kLeast, kLeast, kLeast, -2147483599});
        row("beyond the lower end", {-1e12F, -1e12F, 0, -1.6F}, {kLeast, kLeast, kMost, kMost - 1});
        row("longest at the upper end", {1e12F, 1e12F, 1e12F, kInfinity}, {kMost, kMost, -3, -3});
        row("longest at the lower end", {-1e12F, -1e12F, 1e12F, 1e12F}, {kLeast, kLeast, -2, -2});
        row("least length", {0, 1, -1e12F, -kInfinity}, {0, 1, kMost, kLeast});
        row("least length at the lower end", {-1e12F, -1e12F, -1e12F, -1e12F},
            {kLeast, kLeast, -1, -1});
    }

    void orgRect()
    {
        QFETCH(QVector<float>, units);
        PPT_Shape shape;
        shape.left = units[0];
        shape.top = units[1];
        shape.width = units[2];
        shape.height = units[3];
        OpenPlayer player;
        QTEST(coordinates(player.GetShapeOrgRect(&shape)), "expected");
    }

    void motion_data()
    {
        QTest::addColumn<bool>("leaves");
        QTest::addColumn<int>("pageWidth");
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("right"); // of the place at rest
        QTest::addColumn<unsigned int>("duration");
        QTest::addColumn<unsigned int>("passed");
        QTest::addColumn<int>("expectedLeft");
        QTest::addColumn<int>("expectedRight");

        const auto row = [](bool leaves, int pageWidth, int x, int right, unsigned int duration,
                            unsigned int passed, int left, int expectedRight) {
            QTest::addRow("%s, page %d: %d to %d, %u of %u ms", leaves ? "exit" : "entrance",
                          pageWidth, x, right, passed, duration)
                << leaves << pageWidth << x << right << duration << passed << left << expectedRight;
        };
        const auto enters = [&](int x, int width, unsigned int duration, unsigned int passed,
                                int left) {
            row(false, 1000, x, x + width - 1, duration, passed, left, left + width - 1);
        };
        const auto leaves = [&](int pageWidth, int x, int width, unsigned int duration,
                                unsigned int passed, int left) {
            row(true, pageWidth, x, x + width - 1, duration, passed, left, left + width - 1);
        };
        enters(100, 50, 500, 0, -50);
        enters(100, 50, 500, 1, -49);
        enters(100, 50, 500, 250, 25);
        enters(100, 50, 500, 499, 99);
        enters(100, 50, 500, 500, 100);
        enters(100, 50, 500, 501, 100);
        enters(100, 50, 500, 4294967295U, 100);
        leaves(1000, 100, 50, 500, 0, 100);
        leaves(1000, 100, 50, 500, 1, 101);
        leaves(1000, 100, 50, 500, 250, 550);
        leaves(1000, 100, 50, 500, 499, 998);
        leaves(1000, 100, 50, 500, 500, 1000);
        leaves(1000, 100, 50, 500, 501, 1000);

        enters(20, 50, 2000, 1800, 12);
        enters(20, 100, 2000, 1800, 7);
        enters(30, 50, 2000, 1400, 5);
        enters(0, 50, 500, 400, -9);
        enters(50, 50, 500, 440, 38);
        enters(50, 100, 1000, 840, 25);
        leaves(720, -180, 50, 500, 120, 35);
        leaves(720, 0, 50, 2000, 1400, 504);
        // One more or less if the product was rounded before the sum.
        enters(250, 100, 750, 480, 123);
        enters(40, 50, 2000, 1800, 30);
        enters(740, 300, 2000, 700, 63);
        enters(1000, 300, 2000, 460, 0);
        enters(630, 300, 3000, 900, -20);
        enters(800, 50, 1000, 60, 0);
        leaves(720, -200, 30, 300, 60, -15);
        leaves(720, -80, 30, 2000, 480, 111);
        leaves(960, -40, 300, 1000, 260, 219);
        leaves(720, -180, 30, 2000, 1180, 350);

        // Without a duration: at the start while nothing has passed, else at the end.
        enters(100, 50, 0, 0, -50);
        enters(100, 50, 0, 1, 100);
        leaves(1000, 100, 50, 0, 0, 100);
        leaves(1000, 100, 50, 0, 1, 1000);

        enters(100, 0, 500, 250, 50);
        enters(100, 1, 500, 250, 49);
        enters(100, -20, 500, 0, 20);
        enters(100, -20, 500, 250, 60);
        enters(-50, 50, 500, 250, -50);
        enters(-500, 50, 500, 250, -275);
        leaves(1000, 100, 0, 500, 500, 1000);
        leaves(1000, 1000, 50, 500, 250, 1000);
        leaves(1000, 3000, 50, 500, 250, 2000);

        leaves(0, 100, 50, 500, 250, 50);
        leaves(0, 100, 50, 500, 499, 0);
        leaves(0, 100, 50, 500, 500, 0);
        leaves(1, 100, 50, 500, 250, 50);
        leaves(1, 100, 50, 500, 500, 1);
        leaves(-1, 100, 50, 500, 500, -1);

        // Times beyond what a float tells apart.
        enters(100, 50, 4294967295U, 1, -50);
        enters(100, 50, 4294967295U, 2147483648U, 25);
        enters(100, 50, 4294967295U, 4294967294U, 100);
        enters(100, 50, 4294967295U, 4294967295U, 100);
        enters(1000000, 50, 33554434, 16777217, 499975);
        enters(6000000, 50, 115741603, 40597879, 2104546);
        enters(7000000, 50, 79678824, 58168651, 5110260);
        // Places, too.
        row(true, 16777219, 16777217, 16777217, 4, 0, 16777217, 16777217);
        row(true, 16777219, 16777217, 16777217, 4, 1, 16777216, 16777216);
        row(true, 16777219, 16777217, 16777266, 4, 2, 16777216, 16777265);

        // Ends of the range: sums of places wrap, but the left edge in motion stops there.
        constexpr int kFarRight = kLeast + 48;  // 50 pixels from the most
        constexpr int kNearLeast = kLeast + 49; // 50 pixels from the least
        row(false, 1000, kMost, kFarRight, 500, 0, -50, -1);
        row(false, 1000, kMost, kFarRight, 500, 1, -4295017, -4294968);
        row(false, 1000, kMost, kFarRight, 500, 250, -1073741824, -1073741775);
        row(false, 1000, kMost, kFarRight, 500, 500, kMost, kFarRight);
        row(true, 1000, kMost, kFarRight, 500, 0, kMost, kFarRight);
        row(true, 1000, kMost, kFarRight, 500, 1, 2143188736, 2143188785);
        row(true, 1000, kMost, kFarRight, 500, 250, 1073742336, 1073742385);
        row(true, 1000, kMost, kFarRight, 500, 500, 1000, 1049);
        row(false, 1000, kLeast, kNearLeast, 500, 0, -50, -1);
        row(false, 1000, kLeast, kNearLeast, 500, 250, -1073741824, -1073741775);
        row(false, 1000, kLeast, kNearLeast, 500, 499, -2143188736, -2143188687);
        row(false, 1000, kLeast, kNearLeast, 500, 500, kLeast, kNearLeast);
        row(true, 1000, kLeast, kNearLeast, 500, 0, kLeast, kNearLeast);
        row(true, 1000, kLeast, kNearLeast, 500, 1, kLeast, kNearLeast);
        row(true, 1000, kLeast, kNearLeast, 500, 250, kLeast, kNearLeast);
        row(true, 1000, kLeast, kNearLeast, 500, 500, 1000, 1049);
        row(false, 1000, kLeast, kMost, 500, 250, -1073741824, -1073741825);
        row(false, 1000, kMost, -3, 500, 250, kLeast, -2);
        row(true, 1000, kMost, -3, 500, 250, 1073742336, -1073741314);
        row(false, 1000, kLeast, -2, 500, 250, kLeast, -2);
        row(false, 1000, 0, kMost - 1, 500, 250, -1073741824, 1073741822);
        row(false, 1000, 0, kMost, 500, 0, kLeast, -1);
        row(false, 1000, 0, kMost, 500, 250, kLeast, -1);
        row(true, kMost, 100, 149, 500, 250, 1073741824, 1073741873);
        row(true, kMost, -100, -51, 500, 250, -1073741824, -1073741775);
        row(true, kMost, -100, -51, 500, 500, kMost, kFarRight);
    }

    void motion()
    {
        QFETCH(bool, leaves);
        QFETCH(int, pageWidth);
        QFETCH(int, x);
        QFETCH(int, right);
        QFETCH(unsigned int, duration);
        QFETCH(unsigned int, passed);
        QFETCH(int, expectedLeft);
        QFETCH(int, expectedRight);
        PPT_Effect effect;
        effect.exit = leaves ? kLeave : kEnter;
        effect.effectNo = -1; // no kind of effect moves otherwise
        effect.effectParamA = -1;
        effect.effectParamB = 3;
        effect.timing.duration = 9; // it is the entry's that counts
        OpenPlayer player;
        player.pageWidth = pageWidth;
        player.pageHeight = 77;
        ShapeAnimDat dat = moving(effect, passed, duration);
        const QPair<int, int> verticals[] = {{20, 49}, {-7, -9}, {kMost, kLeast}, {kLeast, kMost}};
        for (const auto &[top, bottom] : verticals) { // stay, whatever they are
            const QRect before = rectOf(x, top, right, bottom);
            QRect org = before;
            QCOMPARE(coordinates(player.GetAnimCurretRect(dat, org)),
                     (QList<int>{expectedLeft, top, expectedRight, bottom}));
            QVERIFY(org == before);
        }
        QCOMPARE(dat.drawState, 2);
        QCOMPARE(dat.effect, &effect);
        QCOMPARE(dat.effectPassed, passed);
        QCOMPARE(dat.effectDuration, duration);
    }

    void motionByState_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("hasEffect");
        QTest::addColumn<int>("expectedLeft");
        QTest::newRow("default") << 0 << true << 100;
        QTest::newRow("shown") << 1 << true << 100;
        QTest::newRow("-1") << -1 << true << 100;
        QTest::newRow("least") << kLeast << true << 100;
        QTest::newRow("moving") << 2 << true << 25;
        QTest::newRow("hidden") << 3 << true << 25;
        QTest::newRow("4") << 4 << true << 25;
        QTest::newRow("moving, no effect") << 2 << false << 100;
        QTest::newRow("hidden, no effect") << 3 << false << 100;
        QTest::newRow("default, no effect") << 0 << false << 100;
    }

    void motionByState()
    {
        QFETCH(int, state);
        QFETCH(bool, hasEffect);
        QFETCH(int, expectedLeft);
        PPT_Effect effect;
        ShapeAnimDat dat = moving(effect, 250, 500);
        dat.drawState = state;
        if (!hasEffect)
            dat.effect = nullptr;
        OpenPlayer player;
        QRect org = rectOf(100, 20, 149, 49);
        QCOMPARE(coordinates(player.GetAnimCurretRect(dat, org)),
                 (QList<int>{expectedLeft, 20, expectedLeft + 49, 49}));
    }

    void exitOfMotion_data()
    {
        QTest::addColumn<int>("exit");
        QTest::addColumn<int>("expectedLeft");
        QTest::newRow("-1") << -1 << 550;
        for (int entrance : {0, 1, 2, -2, 127, -128})
            QTest::addRow("%d", entrance) << entrance << 25;
    }

    void exitOfMotion()
    {
        QFETCH(int, exit);
        PPT_Effect effect;
        effect.exit = static_cast<qint8>(exit);
        ShapeAnimDat dat = moving(effect, 250, 500);
        OpenPlayer player;
        player.pageWidth = 1000;
        QRect org = rectOf(100, 20, 149, 49);
        QTEST(player.GetAnimCurretRect(dat, org).left(), "expectedLeft");
    }

    // In these ranges a double holds the product and the sum exactly, so that it is rounded once.
    void randomMotion()
    {
        QRandomGenerator random(1);
        OpenPlayer player;
        for (int round = 0; round < 100000; ++round) {
            const int x = random.bounded(-2000, 2000);
            const int width = random.bounded(2000);
            player.pageWidth = random.bounded(1, 3000);
            const int duration = random.bounded(1, 4000);
            const int passed = random.bounded(duration);
            PPT_Effect effect;
            effect.exit = random.bounded(2) ? kLeave : kEnter;
            const int from = effect.exit == kLeave ? x : -width;
            const int to = effect.exit == kLeave ? player.pageWidth : x;
            const float part = float(passed) / float(duration);
            const int left = int(float(double(part) * (to - from) + from));
            ShapeAnimDat dat = moving(effect, unsigned(passed), unsigned(duration));
            QRect org = rectOf(x, 5, x + width - 1, 6);
            const QRect place = player.GetAnimCurretRect(dat, org);
            QVERIFY2(place == rectOf(left, 5, left + width - 1, 6),
                     qPrintable(QStringLiteral("exit %1, page %2, x %3, width %4, %5 of %6 ms")
                                    .arg(effect.exit)
                                    .arg(player.pageWidth)
                                    .arg(x)
                                    .arg(width)
                                    .arg(passed)
                                    .arg(duration)));
        }
    }
};

QTEST_GUILESS_MAIN(AnimShapePlaceTest)
#include "tst_animshapeplace.moc"
