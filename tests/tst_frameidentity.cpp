#include "AnimPaint.h"
#include "PicturedSlide.h"
#include "PlainPainter.h"
#include "ResourceLimits.h"

#include <QColorSpace>
#include <QElapsedTimer>
#include <QTest>

#include <atomic>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

using namespace AnimModel;
using namespace AnimPaint;

Q_DECLARE_METATYPE(QImage::Format)
using Change = std::function<void(AnimModel::OpenPlayer &)>;
Q_DECLARE_METATYPE(Change)

namespace {

constexpr QSize kPage{97, 61};
constexpr int kAll = 1 << 20; // images

// What is different, byte for byte.
QString difference(const QImage &image, const QImage &expected)
{
    if (image.format() != expected.format() || image.size() != expected.size())
        return QStringLiteral("another format or size");
    if (image.depth() < 8) // where the last byte of a line has bits that are nothing
        return image == expected ? QString() : QStringLiteral("other bits");
    const auto length = static_cast<size_t>(image.width()) * static_cast<size_t>(image.depth()) / 8;
    for (int y = 0; y < image.height(); ++y) {
        const uchar *line = image.constScanLine(y);
        const uchar *other = expected.constScanLine(y);
        for (size_t i = 0; std::memcmp(line, other, length) != 0; ++i) {
            if (line[i] != other[i]) {
                return QStringLiteral("line %1, byte %2: %3 for %4")
                    .arg(y)
                    .arg(i)
                    .arg(line[i])
                    .arg(other[i]);
            }
        }
    }
    return {};
}

QString metadata(const QImage &image)
{
    QStringList texts;
    for (const QString &key : image.textKeys())
        texts << key + QLatin1Char('=') + image.text(key);
    return QStringLiteral("%1 x %2 dots, %3 lines, ratio %4, offset %5 %6, colours %7, %8, %9")
        .arg(image.dotsPerMeterX())
        .arg(image.dotsPerMeterY())
        .arg(image.bytesPerLine())
        .arg(image.devicePixelRatio())
        .arg(image.offset().x())
        .arg(image.offset().y())
        .arg(int(image.colorSpace().primaries()))
        .arg(image.colorCount())
        .arg(texts.join(QLatin1Char(',')));
}

/// What a host keeps of the images that it was given.
class Host
{
public:
    explicit Host(int kept)
        : m_kept(kept)
    {
    }

    void take(const QImage &image, const QImage &expected)
    {
        m_images.push_back({image, expected});
        while (m_images.size() > static_cast<size_t>(m_kept))
            m_images.pop_front();
    }

    /// An image is the host's own, to do with it what it likes.
    void paintOnOne(PicturedSlide &slide)
    {
        if (m_images.empty())
            return;
        Kept &kept = m_images[size_t(slide.random().bounded(int(m_images.size())))];
        std::memset(kept.image.bits(), slide.random().bounded(256),
                    static_cast<size_t>(kept.image.sizeInBytes()));
        kept.expected = kept.image.copy();
    }

    QString fault() const
    {
        for (const Kept &kept : m_images) {
            const QString fault = difference(kept.image, kept.expected);
            if (!fault.isEmpty())
                return QStringLiteral("one that was kept: ") + fault;
        }
        return {};
    }

private:
    struct Kept
    {
        QImage image;
        QImage expected;
    };

    int m_kept;
    std::deque<Kept> m_images;
};

/// The player and the plain one, to which the same is done.
class Twins
{
public:
    explicit Twins(PPT_Page *page, int width = kPage.width())
    {
        const QByteArray model = modelBytes({page}, float(width));
        both([&](OpenPlayer &p) {
            if (!p.Init(1, model, 25))
                qFatal("no model");
        });
    }

    template <typename Act>
    void both(Act act)
    {
        act(player);
        act(plain);
    }

    void seek(unsigned int step, unsigned int ms)
    {
        both([=](OpenPlayer &p) {
            p.SetAnimStep(step);
            p.SetAnimPassedDuration(ms);
        });
    }
    void tick(unsigned int ms)
    {
        both([=](OpenPlayer &p) { p.nextFrame(ms); });
    }

    /// Puts images into the caches in the place of those that would be decoded.
    void plant(const QImage &background, const QVector<QImage> &pictures = {})
    {
        both([&](OpenPlayer &p) {
            p.picCachs[&p.curPage->pageImage] = background;
            auto shape = p.curPage->shapes.begin();
            for (const QImage &picture : pictures)
                p.picCachs[&(*shape++)->picDat] = picture;
        });
    }

    QString fault()
    {
        image = player.GetImg();
        const QImage expected = plain.GetImg();
        QString fault = difference(image, expected);
        if (fault.isEmpty() && metadata(image) != metadata(expected))
            fault = metadata(image) + QStringLiteral(" for ") + metadata(expected);
        if (fault.isEmpty() && keys(player) != keys(plain))
            fault = QStringLiteral("another cache");
        return fault.isEmpty()
                   ? QString()
                   : QStringLiteral("at ") + position(player) + QStringLiteral(": ") + fault;
    }

    QString faultAfter(unsigned int ms)
    {
        tick(ms);
        return fault();
    }

    OpenPlayer player;
    PlainPainter plain;
    QImage image; // the last one

private:
    // What the cache holds, by the place of the picture in the model.
    static QVector<bool> keys(OpenPlayer &p)
    {
        QVector<bool> list;
        const auto add = [&](const QByteArray &bytes) {
            const auto found = p.picCachs.find(&bytes);
            list << (found != p.picCachs.end())
                 << (found != p.picCachs.end() && found->second.isNull());
        };
        add(p.curPage->pageImage);
        for (PPT_Shape *shape : p.curPage->shapes)
            add(shape->picDat);
        return list;
    }
};

/// Plays by chance: mostly on, now and then back and elsewhere.
void move(Twins &twins, PicturedSlide &slide)
{
    QRandomGenerator &random = slide.random();
    const int chance = random.bounded(100);
    if (chance < 78) {
        constexpr unsigned int kTicks[] = {1, 17, 40, 40, 40, 40, 90};
        const unsigned int ms = kTicks[random.bounded(int(std::size(kTicks)))];
        twins.both([ms](OpenPlayer &p) {
            if (!p.nextFrame(ms) && !p.nextStep())
                p.GotoHome();
        });
    } else if (chance < 86) {
        twins.both([](OpenPlayer &p) { p.prevFrame(40); });
    } else if (chance < 88) {
        twins.both([](OpenPlayer &p) { p.nextStep(); });
    } else if (chance < 90) {
        twins.both([](OpenPlayer &p) { p.prevStep(); });
    } else if (chance < 93) {
        const unsigned int step = random.bounded(6U);
        const unsigned int ms = random.bounded(4000U);
        twins.seek(step, ms);
    } else if (chance < 95) {
        twins.both([](OpenPlayer &p) { p.StartRun(); });
    } else if (chance < 96) {
        twins.both([](OpenPlayer &p) { p.StopRun(); });
    } else if (chance < 97) {
        twins.both([](OpenPlayer &p) { p.ClearPicCachs(); });
    } // else it stays
}

void addFormats(bool isDecoded)
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<bool>("caching");
    QTest::addColumn<int>("kept");
    QTest::addColumn<quint32>("seed");
    constexpr int kKept[] = {0, 1, 2, 3, kAll};
    quint32 seed = 0;
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format) {
        const bool isFast =
            format >= QImage::Format_RGB32 && format <= QImage::Format_ARGB32_Premultiplied;
        for (const bool caching : {true, false}) {
            const int rounds = isFast && caching ? 15 : caching && isDecoded ? 3 : 1;
            for (int round = 0; round < rounds; ++round) {
                ++seed;
                QTest::addRow("format %d, %s, seed %u", format, caching ? "caching" : "no caching",
                              seed)
                    << QImage::Format(format) << caching << kKept[seed % 5] << seed;
            }
        }
    }
}

/// Red rests below what moves, and blue above it.
enum Role { Below, Moving, Above };

PPT_Page *flight(const QByteArray &background = png(97, 61, kGrey))
{
    PicturedSlide slide(7);
    const auto noise = [&](QImage::Format format) {
        return encoded(slide.noise({30, 25}, format));
    };
    return newPage({newShape(1 + Below, 15, 5, 30, 25, noise(QImage::Format_ARGB32)),
                    newShape(1 + Moving, 50, 10, 30, 25, noise(QImage::Format_ARGB32)),
                    newShape(1 + Above, 30, 20, 30, 25, noise(QImage::Format_RGB32))},
                   {newEffect(kClick, 1, 1 + Moving)}, background);
}

PPT_Shape *shapeOf(OpenPlayer &player, Role role)
{
    return *std::next(player.curPage->shapes.begin(), role);
}

// Its third image and those after it are made quickly.
void startRun(Twins &twins)
{
    twins.both([](OpenPlayer &p) { p.SetCachPic(true); });
    twins.seek(1, 300);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(twins.faultAfter(40), QString());
}

} // namespace

/// The frames of the player beside those that are painted shape by shape.
class TestFrameIdentity : public QObject
{
    Q_OBJECT

private:
    static void playAndCompare(Twins &twins, PicturedSlide &slide, int kept,
                               const std::function<void()> &plant)
    {
        Silence silence; // of formats that cannot be painted on
        Host host(kept);
        bool isCaching = twins.player.IsCachPic();
        for (int i = 0; i < 110; ++i) {
            move(twins, slide);
            if (slide.isOneIn(60)) {
                isCaching = !isCaching;
                twins.both([=](OpenPlayer &p) { p.SetCachPic(isCaching); });
            }
            plant();
            const QString fault = twins.fault();
            QVERIFY2(fault.isEmpty(), qPrintable(fault));
            host.take(twins.image, twins.image.copy());
            twins.image = {};
            if (slide.isOneIn(12))
                host.paintOnOne(slide);
            QVERIFY2(host.fault().isEmpty(), qPrintable(host.fault()));
        }
    }

private Q_SLOTS:
    void decodedBackgrounds_data() { addFormats(true); }
    void decodedBackgrounds()
    {
        QFETCH(QImage::Format, format);
        QFETCH(bool, caching);
        QFETCH(int, kept);
        QFETCH(quint32, seed);
        PicturedSlide slide(seed);
        Twins twins(slide.page(kPage, encoded(slide.noise(kPage, format))));
        twins.both([=](OpenPlayer &p) { p.SetCachPic(caching); });
        playAndCompare(twins, slide, kept, [] {});
    }

    // As far above and below the page as pictures are painted, together they are 2^31 lines high.
    void placesFarApart_data()
    {
        QTest::addColumn<QVector<float>>("tops");
        QTest::newRow("page, above, below") << QVector<float>{30, -1073741760, 1073741760};
        QTest::newRow("page, below, above") << QVector<float>{30, 1073741760, -1073741760};
        QTest::newRow("above, page, below") << QVector<float>{-1073741760, 30, 1073741760};
        QTest::newRow("below, page, above") << QVector<float>{1073741760, 30, -1073741760};
        QTest::newRow("above, below, page") << QVector<float>{-1073741760, 1073741760, 30};
        QTest::newRow("below, above, page") << QVector<float>{1073741760, -1073741760, 30};
        QTest::newRow("above, below") << QVector<float>{-1073741760, 1073741760};
    }
    void placesFarApart()
    {
        QFETCH(QVector<float>, tops);
        PPT_Page *page = newPage({}, {}, png(97, 61, kGrey));
        for (const float top : qAsConst(tops)) {
            const int id = int(page->shapes.size()) + 1;
            const QImage picture = flat(20, 200, 0x80FF0000, QImage::Format_ARGB32);
            page->shapes.push_back(newShape(id, 50, top, 20, 200, encoded(picture)));
            page->effects.push_back(newEffect(id == 1 ? kClick : kWith, 2, id));
        }
        Twins twins(page);
        twins.both([](OpenPlayer &p) { p.SetCachPic(true); });
        twins.seek(1, 0);
        for (int i = 0; i < 20; ++i)
            QCOMPARE(twins.faultAfter(40), QString());
    }

    // A thousand bars side by side, each at a height of its own: to work out what they touch must
    // not take longer than to paint them.
    void manyPieces_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<bool>("allMove");
        QTest::newRow("all move") << QImage::Format_ARGB32 << true;
        QTest::newRow("all move, solid") << QImage::Format_RGB32 << true;
        QTest::newRow("one moves below") << QImage::Format_RGB32 << false;
    }
    void manyPieces()
    {
        QFETCH(QImage::Format, format);
        QFETCH(bool, allMove);
        constexpr int kLength = 1000;
        PPT_Page *page = newPage({}, {}, png(kLength, kLength, kGrey));
        const auto add = [page](int id, float left, float top, const QImage &picture, bool moves) {
            page->shapes.push_back(newShape(id, left, top, float(picture.width()),
                                            float(picture.height()), encoded(picture)));
            if (moves)
                page->effects.push_back(
                    newEffect(page->effects.empty() ? kClick : kWith, 10, id, kEnter, id));
        };
        if (!allMove)
            add(1, 0, 0, flat(kLength, kLength, 0x40FF0000, QImage::Format_ARGB32), true);
        const QImage bar = flat(1, kLength / 2, 0x80800000, format);
        // Where programs are many times slower, only the pixels are worth a look.
        const int count = kSanitized || !emulator().isEmpty() ? 200 : 1000;
        for (int i = 0; i < count; ++i)
            add(i + 2, float(2 * i % kLength), float(7919 * i % (kLength / 2)), bar, allMove);

        Twins twins(page, kLength);
        twins.both([](OpenPlayer &p) { p.SetCachPic(true); });
        twins.seek(1, 9000);
        QVector<qint64> took; // ms
        for (int i = 0; i < 5; ++i) {
            QElapsedTimer timer;
            timer.start();
            twins.player.GetImg();
            took << timer.elapsed();
            QCOMPARE(twins.fault(), QString());
            twins.tick(40);
        }
        for (const qint64 ms : qAsConst(took)) // of which the first is painted plainly
            QVERIFY2(ms < 4 * took[0] + 200,
                     qPrintable(QStringLiteral("%1 ms after %2").arg(ms).arg(took[0])));
    }

    // In formats that no decoder makes, and with what only a program says of an image.
    void backgroundsInTheCache_data() { addFormats(false); }
    void backgroundsInTheCache()
    {
        QFETCH(QImage::Format, format);
        QFETCH(bool, caching);
        QFETCH(int, kept);
        QFETCH(quint32, seed);
        PicturedSlide slide(seed + 1000);
        const QSize size(1 + slide.random().bounded(130), 1 + slide.random().bounded(70));
        QImage background = slide.noise(size, format);
        background.setDotsPerMeterX(1000 + slide.random().bounded(1000));
        background.setDotsPerMeterY(1000 + slide.random().bounded(1000));
        background.setOffset({slide.random().bounded(9), slide.random().bounded(9)});
        background.setText(QStringLiteral("Title"), QString::number(seed));
        background.setColorSpace(QColorSpace::DisplayP3);
        if (slide.isOneIn(8))
            background.setDevicePixelRatio(2);
        Twins twins(slide.page(size, png(1, 1, kRed)), size.width());
        QVector<QImage> pictures;
        for (size_t i = 0; i < twins.plain.curPage->shapes.size(); ++i) {
            pictures << slide.picture();
            if (slide.isOneIn(30))
                pictures.last().setDevicePixelRatio(2);
            if (slide.isOneIn(3))
                pictures.last() =
                    pictures.last().convertToFormat(QImage::Format_ARGB32_Premultiplied);
            else if (slide.isOneIn(4))
                pictures.last() = slide.noise(pictures.last().size(), QImage::Format_RGB32);
        }
        twins.both([=](OpenPlayer &p) { p.SetCachPic(caching); });
        const auto plant = [&] {
            if (twins.player.picCachs.count(&twins.player.curPage->pageImage) == 0 ||
                twins.player.picCachs.at(&twins.player.curPage->pageImage).size() != size)
                twins.plant(background, pictures);
        };
        playAndCompare(twins, slide, kept, plant);
    }

    // What Qt blends at a time ends within the line.
    void wideBackground_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::newRow("RGB32") << QImage::Format_RGB32;
        QTest::newRow("ARGB32") << QImage::Format_ARGB32;
        QTest::newRow("premultiplied") << QImage::Format_ARGB32_Premultiplied;
    }
    void wideBackground()
    {
        QFETCH(QImage::Format, format);
        PicturedSlide slide(77);
        const QImage background = slide.noise({2203, 9}, format);
        const auto wide = [&](int id, float left) {
            return newShape(id, left, 1, 2101, 7,
                            encoded(slide.noise({2101, 7}, QImage::Format_ARGB32)));
        };
        Twins twins(newPage({wide(1, 3), wide(2, 60), wide(3, 31)}, {newEffect(kClick, 1, 2)},
                            png(1, 1, kRed)),
                    2203);
        twins.both([](OpenPlayer &p) { p.SetCachPic(true); });
        twins.plant(background);
        twins.seek(1, 300);
        for (int i = 0; i < 12; ++i)
            QCOMPARE(twins.faultAfter(40), QString());
    }

    // Onto ARGB32 some colours on some others come out a level lighter at the end of a line that is
    // painted than in its midst. Here every pixel is one of them: nothing may be painted in parts.
    void translucentBackground()
    {
        constexpr QRgb kBackground[] = {0x48C18C73, 0x4D8D0E63, 0x86B4CB34};
        constexpr QRgb kAbove[] = {0x6003DC64, 0x797BC65E, 0xE859AEF1};
        const auto striped = [](QSize size, const QRgb(&colours)[3]) {
            QImage image(size, QImage::Format_ARGB32);
            for (int y = 0; y < size.height(); ++y)
                fill(image, {0, y, size.width(), 1}, colours[y % 3]);
            return encoded(image);
        };
        const QByteArray clear = encoded(flat(20, 30, 0, QImage::Format_ARGB32));
        const QByteArray opaque = encoded(flat(11, 40, kRed, QImage::Format_ARGB32));
        Twins twins(newPage({newShape(1, 70, 12, 20, 30, clear),
                             newShape(2, 3, 6, 80, 50, striped({80, 50}, kAbove)),
                             newShape(3, 50, 10, 11, 40, opaque)},
                            {newEffect(kClick, 1, 1)}, striped(kPage, kBackground)));
        twins.both([](OpenPlayer &p) { p.SetCachPic(true); });
        twins.seek(1, 0);
        for (int frame = 0; frame < 140; ++frame)
            QCOMPARE(twins.faultAfter(7), QString());
    }

    // All of them overlap, and there are more than can be told apart at little cost.
    void manyThatMove()
    {
        for (const int count : {2, 5, 60}) {
            PicturedSlide slide(78);
            PPT_Page *page = newPage({}, {}, png(97, 61, kGrey));
            for (int id = 1; id <= 2 * count; ++id) {
                const QSize size(3 + slide.random().bounded(20), 3 + slide.random().bounded(20));
                page->shapes.push_back(newShape(id, float(slide.random().bounded(80)),
                                                float(slide.random().bounded(50)), 20, 20,
                                                encoded(slide.noise(size, QImage::Format_ARGB32))));
                if (id % 2 == 0)
                    page->effects.push_back(
                        newEffect(kWith, 1 + float(id) / 50, id, id % 3 == 0 ? kLeave : kEnter));
            }
            Twins twins(page);
            twins.both([](OpenPlayer &p) { p.SetCachPic(true); });
            twins.seek(1, 0);
            for (int i = 0; i < 100; ++i)
                QCOMPARE(twins.faultAfter(40), QString());
        }
    }

    // Whoever has the pictures within reach may change them between two frames of a run.
    void changesDuringARun_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) {
            QTest::newRow(name) << change;
        };
        row("another background",
            [](OpenPlayer &p) { p.picCachs[&p.curPage->pageImage] = flat(97, 61, kYellow); });
        row("a larger background",
            [](OpenPlayer &p) { p.picCachs[&p.curPage->pageImage] = flat(120, 80, kYellow); });
        row("a translucent background", [](OpenPlayer &p) {
            p.picCachs[&p.curPage->pageImage] = flat(97, 61, 0x40302010, QImage::Format_ARGB32);
        });
        row("painted on in the cache", [](OpenPlayer &p) {
            fill(p.picCachs[&p.curPage->pageImage], {40, 0, 50, 60}, kYellow);
        });
        for (const Role role : {Below, Moving, Above}) {
            const auto roleRow = [=](const char *name, auto change) {
                QTest::addRow("%d: %s", role, name)
                    << Change([=](OpenPlayer &p) { change(p, shapeOf(p, role)); });
            };
            roleRow("another picture", [](OpenPlayer &p, PPT_Shape *shape) {
                p.picCachs[&shape->picDat] = flat(9, 41, 0x80FF0000, QImage::Format_ARGB32);
            });
            roleRow("no picture", [](OpenPlayer &p, PPT_Shape *shape) {
                shape->picDat = garbage();
                p.picCachs.erase(&shape->picDat);
            });
            roleRow("painted on in the cache", [](OpenPlayer &p, PPT_Shape *shape) {
                p.picCachs[&shape->picDat].fill(kYellow);
            });
            roleRow("of another density", [](OpenPlayer &p, PPT_Shape *shape) {
                p.picCachs[&shape->picDat].setDevicePixelRatio(2);
            });
            roleRow("to the right", [](OpenPlayer &, PPT_Shape *shape) { shape->left += 9; });
            roleRow("down", [](OpenPlayer &, PPT_Shape *shape) { shape->top += 14; });
            roleRow("far away", [](OpenPlayer &, PPT_Shape *shape) { shape->top = 1.5e9F; });
        }
    }
    void changesDuringARun()
    {
        QFETCH(Change, change);
        Twins twins(flight());
        startRun(twins);
        twins.both(change);
        for (int i = 0; i < 6; ++i)
            QCOMPARE(twins.faultAfter(40), QString());
    }

    // Of the shapes that move some stop or leave before the others, and others join them.
    void someStopBeforeOthers()
    {
        PicturedSlide slide(79);
        const auto shape = [&](int id, float left, float top) {
            return newShape(id, left, top, 30, 20,
                            encoded(slide.noise({30, 20}, QImage::Format_ARGB32)));
        };
        for (const bool isHolding : {true, false}) {
            Twins twins(
                newPage({shape(1, 60, 30), shape(2, 10, 5), shape(3, 30, 15), shape(4, 50, 20),
                         shape(5, 20, 30), shape(6, 40, 3)},
                        {newEffect(kClick, 0.6F, 2), newEffect(kWith, 1, 3, kLeave),
                         newEffect(kWith, 1.4F, 5), newEffect(kWith, 0.8F, 6, kLeave),
                         newEffect(kAfter, 0.7F, 2, kLeave, 1), newEffect(kWith, 0.5F, 1, kLeave),
                         newEffect(kClick, 1, 4, kLeave)},
                        png(97, 61, kGrey)));
            twins.both([](OpenPlayer &p) { p.SetCachPic(true); });
            twins.seek(1, 1);
            for (int i = 0; i < 90; ++i) {
                QCOMPARE(twins.faultAfter(40), QString());
                if (i == 60)
                    twins.both([](OpenPlayer &p) { p.nextStep(); });
                if (!isHolding)
                    twins.image = {};
            }
        }
    }

    // Without a move, after which all would be painted anyway.
    void changesAtAPosition_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) {
            QTest::newRow(name) << change;
        };
        row("another background",
            [](OpenPlayer &p) { p.picCachs[&p.curPage->pageImage] = flat(97, 61, kYellow); });
        row("painted on in the cache", [](OpenPlayer &p) {
            fill(p.picCachs[&p.curPage->pageImage], {40, 0, 50, 60}, kYellow);
        });
        row("nothing in the cache", [](OpenPlayer &p) { p.picCachs.clear(); });
        row("an image without a cache", [](OpenPlayer &p) {
            p.SetCachPic(false);
            p.GetImg();
            p.SetCachPic(true);
        });
        row("a shape, and all evaluated", [](OpenPlayer &p) {
            shapeOf(p, Moving)->left += 9;
            p.getAllShapeDrawState();
        });
        row("a step's record",
            [](OpenPlayer &p) { p.GetEffectStep(1)->effectGrps.front().grpDuration = 100; });
    }
    void changesAtAPosition()
    {
        QFETCH(Change, change);
        Twins twins(flight());
        startRun(twins);
        QCOMPARE(twins.faultAfter(200), QString());
        twins.both(change);
        QCOMPARE(twins.fault(), QString());
    }

    void samePositionSameImage()
    {
        Twins twins(flight());
        const QImage uncached = twins.player.GetImg();
        QVERIFY(twins.player.GetImg().cacheKey() != uncached.cacheKey());
        startRun(twins);
        for (const unsigned int ms : {500U, 1000U}) { // in the midst of the run and after it
            twins.seek(1, ms);
            QCOMPARE(twins.fault(), QString());
            const QImage image = twins.image;
            for (int i = 0; i < 3; ++i)
                QCOMPARE(twins.player.GetImg().cacheKey(), image.cacheKey());
            twins.seek(1, 700);
            twins.seek(1, ms); // nothing was asked in between
            QCOMPARE(twins.player.GetImg().cacheKey(), image.cacheKey());
            twins.player.ClearPicCachs();
            QVERIFY(twins.player.GetImg().cacheKey() != image.cacheKey());
            twins.plain.ClearPicCachs();
            QCOMPARE(twins.fault(), QString());
        }
    }

    // Nobody may take another frame for one it has seen, as a cache of textures would.
    void anotherFrameAnotherKey_data()
    {
        QTest::addColumn<int>("kept");
        for (const int kept : {0, 1, 2, 3, 30})
            QTest::addRow("%d", kept) << kept;
    }
    void anotherFrameAnotherKey()
    {
        QFETCH(int, kept);
        Twins twins(flight());
        startRun(twins);
        Host host(kept);
        QSet<qint64> seen;
        for (int i = 1; i <= 25; ++i) {
            QCOMPARE(twins.faultAfter(20), QString());
            seen << twins.image.cacheKey();
            QCOMPARE(seen.size(), i);
            host.take(twins.image, twins.image.copy());
            twins.image = {};
        }
    }

    // An image that somebody reads is not painted on; one that was dropped may be, whoever did it.
    void droppedOnAnotherThread()
    {
        struct Sent
        {
            QImage image;
            QImage expected;
        };
        constexpr size_t kFrames = 3000;
        constexpr size_t kMostSent = 3;
        std::deque<Sent> sent;
        std::mutex mutex;
        std::condition_variable changed;
        std::atomic<int> faults{0};
        std::thread reader([&] {
            for (size_t i = 0; i < kFrames; ++i) {
                Sent got;
                {
                    std::unique_lock lock(mutex);
                    changed.wait(lock, [&] { return !sent.empty(); });
                    got = std::move(sent.front());
                    sent.pop_front();
                }
                changed.notify_one();
                faults += got.image != got.expected;
            }
        });
        Twins twins(flight());
        startRun(twins);
        std::vector<QImage> expected;
        for (unsigned int ms = 0; ms < 800; ms += 16) {
            twins.plain.SetAnimPassedDuration(ms);
            expected.push_back(twins.plain.GetImg());
        }
        for (size_t i = 0; i < kFrames; ++i) {
            const size_t at = i % expected.size();
            twins.player.SetAnimPassedDuration(static_cast<unsigned int>(at) * 16);
            QImage image = twins.player.GetImg();
            {
                std::unique_lock lock(mutex);
                changed.wait(lock, [&] { return sent.size() < kMostSent; });
                sent.push_back({std::move(image), expected[at]});
            }
            changed.notify_one();
        }
        reader.join();
        QCOMPARE(faults.load(), 0);
    }
};

QTEST_GUILESS_MAIN(TestFrameIdentity)
#include "tst_frameidentity.moc"
