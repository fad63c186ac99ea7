#include "AnimPaint.h"
#include "TinyPictures.h"

#include <QTest>

using namespace AnimModel;
using namespace AnimPaint;

class AnimPicCacheTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picturesAreDecoded_data();
    void picturesAreDecoded();
    void pictureOfTheCacheIsConvertedOnlyWhereNeeded_data();
    void pictureOfTheCacheIsConvertedOnlyWhereNeeded();
    void filledCacheServesWithoutCaching();
    void brokenPictureIsTriedAgain();
    void cachingIsOffAtFirst();
    void cachingDecodesAllPicturesAtOnce();
    void cachingGoesByTheStatesAsTheyStand();
    void cachingSkipsEntriesWithoutShape();
    void cachingNeedsAPageAndConsent();
    void cacheGoesByAddress();
    void cachedPicturesAreNotDecodedAgain();
    void cachedPicturesAreThePainted();
    void droppedPicturesAreCachedAgain();
    void cachingOffDropsPictures();
    void newPageStartsUncached_data();
    void newPageStartsUncached();
    void cachedBackgroundIsNotPaintedOn();
    void frameIsTheCallersOwn();
};

void AnimPicCacheTest::picturesAreDecoded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QImage::Format>("cachedFormat");
    QTest::addColumn<QRgb>("pixel");

    const auto asIs = [](QRgb colour, QImage::Format format) {
        return encoded(flat(2, 2, colour, QImage::Format_ARGB32).convertToFormat(format));
    };
    QImage palette(2, 2, QImage::Format_Indexed8);
    palette.setColorTable({kRed, kGreen});
    palette.fill(1);
    QImage clearPalette = palette;
    clearPalette.setColorTable({kRed, 0x4000FF00});
    QImage mono(2, 2, QImage::Format_Mono);
    mono.setColorTable({0xFFFFFFFF, 0xFF000000});
    mono.fill(1);

    QTest::newRow("opaque") << asIs(kRed, QImage::Format_RGB32) << QImage::Format_RGB32
                            << QImage::Format_RGB32 << kRed;
    QTest::newRow("translucent") << asIs(0x80FF0000, QImage::Format_ARGB32) << QImage::Format_ARGB32
                                 << QImage::Format_ARGB32 << QRgb(0x80FF0000);
    QTest::newRow("16 bits a channel")
        << asIs(0x80C86432, QImage::Format_RGBA64) << QImage::Format_RGBA64 << QImage::Format_ARGB32
        << QRgb(0x80C86432);
    QTest::newRow("16 bits a channel, opaque")
        << asIs(0xFFC86432, QImage::Format_RGBX64) << QImage::Format_RGBX64 << QImage::Format_ARGB32
        << QRgb(0xFFC86432);
    QTest::newRow("grey") << asIs(0xFF646464, QImage::Format_Grayscale8)
                          << QImage::Format_Grayscale8 << QImage::Format_ARGB32 << QRgb(0xFF646464);
    QTest::newRow("grey JPG") << TinyPictures::jpg() << QImage::Format_Grayscale8
                              << QImage::Format_ARGB32 << QRgb(0xFFC8C8C8);
    QTest::newRow("palette") << encoded(palette) << QImage::Format_Indexed8 << QImage::Format_ARGB32
                             << kGreen;
    QTest::newRow("palette BMP") << encoded(palette, "BMP") << QImage::Format_Indexed8
                                 << QImage::Format_ARGB32 << kGreen;
    QTest::newRow("translucent palette") << encoded(clearPalette) << QImage::Format_Indexed8
                                         << QImage::Format_ARGB32 << QRgb(0x4000FF00);
    QTest::newRow("mono") << encoded(mono) << QImage::Format_Mono << QImage::Format_ARGB32
                          << QRgb(0xFF000000);
    QTest::newRow("mono BMP") << encoded(mono, "BMP") << QImage::Format_Mono
                              << QImage::Format_ARGB32 << QRgb(0xFF000000);
    QTest::newRow("broken") << garbage() << QImage::Format_Invalid << QImage::Format_Invalid
                            << QRgb(0);
    QTest::newRow("empty") << QByteArray() << QImage::Format_Invalid << QImage::Format_Invalid
                           << QRgb(0);
}

void AnimPicCacheTest::picturesAreDecoded()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QImage::Format, format);
    QFETCH(QImage::Format, cachedFormat);
    QFETCH(QRgb, pixel);
    Silence silence;

    Player player;
    const QImage plain = player.MakeImage(bytes);
    QCOMPARE(plain.format(), format);
    QVERIFY(player.picCachs.empty());

    player.SetCachPic(true);
    const QImage cached = player.MakeImage(bytes);
    QCOMPARE(cached.format(), cachedFormat);
    QCOMPARE(player.picCachs.size(), size_t(1));
    QCOMPARE(player.picCachs.begin()->first, static_cast<const QByteArray *>(&bytes));
    QCOMPARE(player.picCachs.begin()->second, cached);

    for (const QImage &image : {plain, cached}) {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                QCOMPARE(image.pixel(x, y), pixel);
        }
    }
    QCOMPARE(silence.lines(), QStringList());
}

void AnimPicCacheTest::pictureOfTheCacheIsConvertedOnlyWhereNeeded_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("result");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::addRow("format %d", format) << format << (format >= 4 && format <= 6 ? format : 5);
}

void AnimPicCacheTest::pictureOfTheCacheIsConvertedOnlyWhereNeeded()
{
    QFETCH(int, format);
    QFETCH(int, result);

    const QByteArray bytes = png(1, 1, kRed);
    const QImage image(3, 2, static_cast<QImage::Format>(format));
    Player player;
    player.picCachs[&bytes] = image;

    QCOMPARE(int(player.MakeImage(bytes).format()), format);
    QCOMPARE(int(player.picCachs.at(&bytes).format()), format);
    player.SetCachPic(true);
    QCOMPARE(int(player.MakeImage(bytes).format()), result);
    QCOMPARE(int(player.picCachs.at(&bytes).format()), result);
    QCOMPARE(player.MakeImage(bytes).size(), QSize(3, 2));
}

void AnimPicCacheTest::filledCacheServesWithoutCaching()
{
    Player player(newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))}, {}, png(8, 6, kGrey)));
    player.picCachs[&player.curPage->pageImage] = flat(4, 4, kBlue);
    player.picCachs[&player.shape(0)->picDat] = flat(1, 2, kGreen);

    QImage frame = flat(4, 4, kBlue);
    fill(frame, QRect(1, 1, 1, 2), kGreen);
    QCOMPARE(player.GetImg(), frame);
    QVERIFY(!player.IsCachPic());
    QCOMPARE(player.picCachs.size(), size_t(2));
    QCOMPARE(player.picCachs.at(&player.curPage->pageImage), flat(4, 4, kBlue));
}

void AnimPicCacheTest::brokenPictureIsTriedAgain()
{
    Player player;
    player.SetCachPic(true);
    QByteArray bytes = garbage();
    for (int i = 0; i < 2; ++i) {
        QVERIFY(player.MakeImage(bytes).isNull());
        QCOMPARE(player.picCachs.size(), size_t(1));
        QVERIFY(player.picCachs.at(&bytes).isNull());
    }
    bytes = png(2, 1, kRed);
    QCOMPARE(player.MakeImage(bytes), flat(2, 1, kRed));
    QCOMPARE(player.picCachs.at(&bytes), flat(2, 1, kRed));
    bytes = garbage();
    QCOMPARE(player.MakeImage(bytes), flat(2, 1, kRed));
}

void AnimPicCacheTest::cachingIsOffAtFirst()
{
    const Player fresh;
    QVERIFY(!fresh.cachPic);

    Player player(newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))}, {}, png(8, 6, kGrey)));
    QVERIFY(!player.IsCachPic());
    QVERIFY(!player.GetImg().isNull());
    QVERIFY(player.picCachs.empty());
    player.SetCachPic(true);
    QVERIFY(player.IsCachPic());
}

void AnimPicCacheTest::cachingDecodesAllPicturesAtOnce()
{
    const QImage translucent = flat(2, 2, 0x80FF0000, QImage::Format_ARGB32);
    Player player(newPage({newShape(1, 1, 1, 2, 2, encoded(translucent)),
                           newShape(2, 1, 1, 2, 2, encoded(indexed(3, 1, {kRed}))),
                           newShape(3, 1, 1, 2, 2, garbage())},
                          {newEffect(kClick, 1, 1), newEffect(kWith, 1, 2, kLeave)},
                          png(8, 6, kGrey)));
    player.SetCachPic(true);

    // Nobody has looked yet at what is hidden: the first shape is decoded, too.
    QCOMPARE(player.state(1), int(PPTAnimDisplay::DRAW_DEFAULT));
    QCOMPARE(player.picCachs.size(), size_t(4));
    QCOMPARE(player.picCachs.at(&player.curPage->pageImage), flat(8, 6, kGrey));
    QCOMPARE(player.picCachs.at(&player.shape(0)->picDat), translucent);
    QCOMPARE(player.picCachs.at(&player.shape(1)->picDat), flat(3, 1, kRed, QImage::Format_ARGB32));
    QVERIFY(player.picCachs.at(&player.shape(2)->picDat).isNull());
}

void AnimPicCacheTest::cachingGoesByTheStatesAsTheyStand()
{
    Player player(newPage(
        {newShape(1, 1, 1, 2, 2, png(2, 2, kRed)), newShape(2, 1, 1, 2, 2, png(2, 2, kBlue))},
        {newEffect(kClick, 1, 1), newEffect(kWith, 1, 2, kLeave)}, png(8, 6, kGrey)));
    player.GetImg(); // at home: the first shape is hidden
    player.SetAnimStep(1);
    player.SetAnimPassedDuration(1000); // now it would be the second
    player.SetCachPic(true);

    QCOMPARE(player.picCachs.size(), size_t(2));
    QCOMPARE(player.picCachs.count(&player.shape(0)->picDat), size_t(0));
    QCOMPARE(player.picCachs.count(&player.shape(1)->picDat), size_t(1));
    player.GetImg();
    QCOMPARE(player.picCachs.count(&player.shape(0)->picDat), size_t(1));
}

void AnimPicCacheTest::cachingSkipsEntriesWithoutShape()
{
    Player player(newPage({newShape(2, 1, 1, 2, 2, png(2, 2, kRed))},
                          {newEffect(kClick, 1, 9, kLeave), newEffect(kWith, 1, 1, kLeave)},
                          png(8, 6, kGrey)));
    QImage frame = flat(8, 6, kGrey);
    fill(frame, QRect(1, 1, 2, 2), kRed);
    QCOMPARE(player.GetImg(), frame);
    QCOMPARE(player.shapeAnimDats.size(), size_t(3));
    QCOMPARE(player.state(9), int(PPTAnimDisplay::DRAW_SHOW));

    player.SetCachPic(true);
    QCOMPARE(player.picCachs.size(), size_t(2));
    QCOMPARE(player.imageAt(1, 500), frame);
    QCOMPARE(player.picCachs.size(), size_t(2));
}

void AnimPicCacheTest::cachingNeedsAPageAndConsent()
{
    Player cleared;
    cleared.SetCachPic(true);
    QVERIFY(cleared.IsCachPic());
    QVERIFY(cleared.picCachs.empty());

    Player player(newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))}, {}, png(8, 6, kGrey)));
    player.MakePicCachs();
    QVERIFY(player.picCachs.empty());
    player.cachPic = true;
    player.MakePicCachs();
    QCOMPARE(player.picCachs.size(), size_t(2));
}

void AnimPicCacheTest::cacheGoesByAddress()
{
    const QByteArray same = png(2, 2, kRed);
    Player player(newPage({newShape(1, 1, 1, 2, 2, same), newShape(2, 4, 1, 2, 2, same)}, {},
                          png(8, 6, kGrey)));
    player.shape(1)->picDat = player.shape(0)->picDat; // even the memory is the same
    player.SetCachPic(true);

    const std::map<const QByteArray *, QImage> expected{
        {&player.curPage->pageImage, flat(8, 6, kGrey)},
        {&player.shape(0)->picDat, flat(2, 2, kRed)},
        {&player.shape(1)->picDat, flat(2, 2, kRed)}};
    QVERIFY(player.picCachs == expected);
    QVERIFY(player.picCachs.at(&player.shape(0)->picDat).cacheKey() !=
            player.picCachs.at(&player.shape(1)->picDat).cacheKey());
}

void AnimPicCacheTest::cachedPicturesAreNotDecodedAgain()
{
    Player player(newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))},
                          {newEffect(kClick, 1, 1, kLeave)}, png(8, 6, kGrey)),
                  8);
    QImage frame = flat(8, 6, kGrey);
    fill(frame, QRect(1, 1, 2, 2), kRed);
    QImage moved = flat(8, 6, kGrey);
    fill(moved, QRect(4, 1, 2, 2), kRed);
    player.SetCachPic(true);

    // Whoever decoded now would get other colours.
    player.curPage->pageImage = png(8, 6, kBlue);
    player.shape(0)->picDat = png(2, 2, kGreen);
    QCOMPARE(player.GetImg(), frame);
    QCOMPARE(player.imageAt(1, 500), moved);
    QCOMPARE(player.GetImg(), moved);

    player.SetCachPic(false);
    QImage decodedAgain = flat(8, 6, kBlue);
    fill(decodedAgain, QRect(4, 1, 2, 2), kGreen);
    QCOMPARE(player.GetImg(), decodedAgain);
}

void AnimPicCacheTest::cachedPicturesAreThePainted()
{
    Player player(newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))}, {}, png(8, 6, kGrey)));
    player.SetCachPic(true);
    player.picCachs[&player.curPage->pageImage] = flat(5, 4, kYellow);
    player.picCachs[&player.shape(0)->picDat] = flat(1, 1, kBlue);

    QImage frame = flat(5, 4, kYellow);
    frame.setPixel(1, 1, kBlue);
    QCOMPARE(player.GetImg(), frame);
}

void AnimPicCacheTest::droppedPicturesAreCachedAgain()
{
    Player player(newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))}, {}, png(8, 6, kGrey)));
    player.SetCachPic(true);
    const auto full = player.picCachs;

    player.ClearPicCachs();
    QVERIFY(player.picCachs.empty());
    QVERIFY(player.IsCachPic());
    player.GetImg();
    QVERIFY(player.picCachs == full);
    player.SetCachPic(true);
    QVERIFY(player.picCachs == full);
}

void AnimPicCacheTest::cachingOffDropsPictures()
{
    class CountingPlayer : public Player
    {
    public:
        using Player::Player;
        void ClearPicCachs() override
        {
            ++drops;
            Player::ClearPicCachs();
        }
        int drops = 0;
    };
    CountingPlayer player(
        newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))}, {}, png(8, 6, kGrey)));
    player.drops = 0;
    player.SetCachPic(true);
    QCOMPARE(player.drops, 0);
    player.SetCachPic(false);
    QCOMPARE(player.drops, 1);
    QVERIFY(player.picCachs.empty());
    QVERIFY(!player.IsCachPic());
    player.GetImg();
    QVERIFY(player.picCachs.empty());
}

void AnimPicCacheTest::newPageStartsUncached_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("another page") << modelBytes({newPage({}, {}, png(8, 6, kBlue))}) << true;
    QTest::newRow("no such page") << modelBytes({newPage({}, {}, png(8, 6, kBlue), 2)}) << false;
    QTest::newRow("no model") << garbage() << false;
}

void AnimPicCacheTest::newPageStartsUncached()
{
    QFETCH(QByteArray, model);
    QFETCH(bool, isLoaded);

    Player player(newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))}, {}, png(8, 6, kGrey)));
    player.SetCachPic(true);
    QCOMPARE(player.Init(1, model, 25), isLoaded);
    QVERIFY(!player.IsCachPic());
    QVERIFY(player.picCachs.empty());
    QCOMPARE(player.GetImg(), isLoaded ? flat(8, 6, kBlue) : QImage());

    player.SetCachPic(true);
    QCOMPARE(player.picCachs.empty(), !isLoaded);
    player.Clear();
    QVERIFY(!player.IsCachPic());
    QVERIFY(player.picCachs.empty());
}

void AnimPicCacheTest::cachedBackgroundIsNotPaintedOn()
{
    Player player(newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))},
                          {newEffect(kClick, 1, 1, kLeave)}, png(8, 6, kGrey)),
                  8);
    player.SetCachPic(true);
    const qint64 key = player.picCachs.at(&player.curPage->pageImage).cacheKey();
    for (unsigned int ms : {0U, 250U, 500U, 1000U, 100U}) {
        player.imageAt(1, ms);
        const QImage &background = player.picCachs.at(&player.curPage->pageImage);
        QCOMPARE(background, flat(8, 6, kGrey));
        QCOMPARE(background.cacheKey(), key);
        QCOMPARE(player.picCachs.at(&player.shape(0)->picDat), flat(2, 2, kRed));
    }
}

void AnimPicCacheTest::frameIsTheCallersOwn()
{
    Player player(newPage({}, {}, png(8, 6, kGrey)));
    player.SetCachPic(true);
    QImage frame = player.GetImg();
    frame.fill(kRed);
    QCOMPARE(player.GetImg(), flat(8, 6, kGrey));
    frame = player.GetImg();
    player.Clear();
    QCOMPARE(frame, flat(8, 6, kGrey));
}

QTEST_GUILESS_MAIN(AnimPicCacheTest)
#include "tst_animpiccache.moc"
