#include "pptanim/FrameBuffers.h"

#include <QTest>

#include <map>

namespace {

constexpr QRect kPainted(0, 0, 2, 1);

/// Asks for one buffer after the other and holds images, as hosts do. Buffers are named by the turn
/// in which they were made.
class Frames
{
public:
    /// The name of the one for the next image; the image is held under the number of this turn.
    int next()
    {
        ++m_turn;
        FrameBuffers::Buffer &buffer = m_buffers.next(m_original);
        const uchar *memory = buffer.image.constBits();
        if (buffer.painted.isEmpty())
            m_names[memory] = m_turn;
        buffer.painted = kPainted;
        m_held[m_turn] = buffer.image;
        return m_names[memory];
    }

    /// The same, and nobody holds the image.
    int nextDropped()
    {
        const int name = next();
        drop({m_turn});
        return name;
    }

    void hold(int images)
    {
        for (int i = 0; i < images; ++i)
            next();
    }

    void drop(const std::vector<int> &turns)
    {
        for (const int turn : turns)
            m_held.erase(turn);
    }

private:
    QImage m_original = QImage(4, 3, QImage::Format_RGB32);
    FrameBuffers m_buffers;
    int m_turn = 0;
    std::map<const uchar *, int> m_names;
    std::map<int, QImage> m_held;
};

} // namespace

/// Which of the buffers is painted on.
class FrameBuffersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshOneIsACopy()
    {
        QImage original(2, 1, QImage::Format_ARGB32);
        original.fill(0x40102030);
        FrameBuffers buffers;
        FrameBuffers::Buffer &buffer = buffers.next(original);
        QCOMPARE(buffer.image, original);
        QVERIFY(buffer.image.constBits() != original.constBits());
        QVERIFY(buffer.image.isDetached());
        QVERIFY(buffer.painted.isEmpty());
    }

    void oneThatNobodyHoldsIsUsedAgain()
    {
        Frames frames;
        for (int i = 0; i < 5; ++i)
            QCOMPARE(frames.nextDropped(), 1);
    }

    void thereAreThree()
    {
        Frames frames;
        for (int turn = 1; turn <= 5; ++turn)
            QCOMPARE(frames.next(), turn);
        frames.drop({1, 2, 5}); // which are in the buffers
        QCOMPARE(frames.next(), 5);
        QCOMPARE(frames.next(), 2);
        QCOMPARE(frames.next(), 1);
        QCOMPARE(frames.next(), 9);
    }

    // It needs the least to be done to it.
    void theLastOneIsPreferred()
    {
        Frames frames;
        frames.hold(3);
        frames.drop({1});
        QCOMPARE(frames.next(), 1);
        frames.drop({2, 3, 4});
        QCOMPARE(frames.nextDropped(), 1);
        QCOMPARE(frames.next(), 1);
        QCOMPARE(frames.next(), 3);
        QCOMPARE(frames.next(), 2);
    }

    // With a host that holds as many as there are, the older ones soon come back.
    void theNewestGivesWay()
    {
        Frames frames;
        frames.hold(4);
        frames.drop({3});
        QCOMPARE(frames.next(), 5); // the third buffer was the fourth image's
        frames.drop({1});
        QCOMPARE(frames.next(), 1);
    }

    // Held for longer than eight turns, it is taken for lost.
    void theOldestGivesWay_data()
    {
        QTest::addColumn<int>("held");
        QTest::addColumn<int>("dropped");
        QTest::addColumn<int>("expected");
        QTest::newRow("not yet: the oldest") << 9 << 1 << 1;
        QTest::newRow("not yet: the next") << 9 << 2 << 2;
        QTest::newRow("not yet: the newest") << 9 << 9 << 9;
        QTest::newRow("not yet: the newest but one") << 9 << 8 << 10;
        QTest::newRow("the oldest") << 10 << 1 << 11;
        QTest::newRow("the next") << 10 << 2 << 2;
        QTest::newRow("the newest but one") << 10 << 9 << 9;
        QTest::newRow("the newest") << 10 << 10 << 10;
    }
    void theOldestGivesWay()
    {
        QFETCH(int, held);
        QFETCH(int, dropped);
        QFETCH(int, expected);
        Frames frames;
        frames.hold(held);
        frames.drop({dropped});
        QCOMPARE(frames.next(), expected);
    }
};

QTEST_APPLESS_MAIN(FrameBuffersTest)
#include "tst_framebuffers.moc"
