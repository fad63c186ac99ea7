#include "AnimPaint.h"
#include "PlainPainter.h"
#include "RefusedBlocks.h"

#include <QLoggingCategory>
#include <QTest>

using namespace AnimModel;
using namespace AnimPaint;

namespace {

constexpr unsigned int kTimes[] = {40, 80, 120, 160, 1040, 1080, 1120};

constexpr int kAnyImage = 65'536;
constexpr int kLargestPicture = 400'000;

// Frames of 240,000 bytes, in which shapes that are partly seen through fly in, for 1 s and 2 s.
// The first one's picture takes 480,000 bytes.
QByteArray model()
{
    QImage large = flat(400, 300, 0x80FFFF00, QImage::Format_ARGB32);
    fill(large, {30, 30, 60, 80}, kGreen);
    QImage soft = flat(120, 140, 0x80FF0000, QImage::Format_ARGB32);
    fill(soft, {30, 30, 60, 80}, kBlue);
    const auto shape = [](int id, float left, float top, const QImage &picture) {
        return newShape(id, left, top, float(picture.width()), float(picture.height()),
                        encoded(picture));
    };
    return modelBytes(
        {newPage({shape(1, 10, 5, large), shape(2, 100, 20, soft), shape(3, 60, 50, soft)},
                 {newEffect(kClick, 1, 1), newEffect(kWith, 2, 2)}, png(300, 200, kGrey))},
        300, 200);
}

void start(OpenPlayer &player)
{
    player.Init(1, model(), 25);
    player.SetCachPic(true);
    player.SetAnimStep(1);
}

template <typename Player>
QImage frame(Player &player, unsigned int ms)
{
    player.SetAnimPassedDuration(ms);
    return player.GetImg();
}

} // namespace

/// Frames for which there is not enough memory.
class FrameMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLoggingCategory::setFilterRules(
            QStringLiteral("default.warning=false")); // Qt's complaints
    }

    // Each is right or null, whenever it comes to lack, and right as soon as there is enough again.
    void memoryThatLacks_data()
    {
        QTest::addColumn<int>("bytes");   // of blocks that are refused, and more
        QTest::addColumn<bool>("isBack"); // after one image
        QTest::newRow("for one image") << kAnyImage << true;
        QTest::newRow("from then on") << kAnyImage << false;
        QTest::newRow("for one image, for a picture") << kLargestPicture << true;
        QTest::newRow("from then on, for a picture") << kLargestPicture << false;
    }
    void memoryThatLacks()
    {
        QFETCH(int, bytes);
        QFETCH(bool, isBack);
        PlainPainter plain;
        start(plain);
        std::vector<QImage> expected;
        for (const unsigned int ms : kTimes)
            expected.push_back(frame(plain, ms));

        int images = 0; // that were refused memory for
        for (size_t lacking = 0; lacking < std::size(kTimes); ++lacking) {
            for (int n = 0;; ++n) {
                OpenPlayer player;
                start(player);
                std::vector<QImage> shown;
                for (size_t i = 0; i < lacking; ++i)
                    shown.push_back(frame(player, kTimes[i]));
                bool isRefused = false;
                const LogSpy spy;
                {
                    const RefusedBlocks::From refused(n, static_cast<size_t>(bytes));
                    const size_t last = isBack ? lacking + 1 : std::size(kTimes);
                    while (shown.size() < last)
                        shown.push_back(frame(player, kTimes[shown.size()]));
                    isRefused = refused.haveBeen();
                }
                for (size_t i = 0; i < shown.size(); ++i)
                    QVERIFY2(shown[i] == expected[i] || (isRefused && shown[i].isNull()),
                             qPrintable(QStringLiteral("%1 after %2").arg(kTimes[i]).arg(n)));
                for (size_t i = 0; i < std::size(kTimes); ++i)
                    QCOMPARE(frame(player, kTimes[i]), expected[i]);
                if (!isRefused)
                    break;
                ++images;
            }
        }
        QVERIFY2(images > 0 || kSanitized, qPrintable(QString::number(images)));
    }
};

QTEST_APPLESS_MAIN(FrameMemoryTest)
#include "tst_framememory.moc"
