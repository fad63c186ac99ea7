#include "AnimPaint.h"

#include <QPainter>
#include <QPicture>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

using namespace AnimModel;
using namespace AnimPaint;

namespace {

// Every pixel another colour, and alpha from 0 to 255.
QImage coloured(int width, int height, QImage::Format format)
{
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y,
                           qRgba(x * 255 / width, y * 255 / height, 255 - x * 255 / width,
                                 (x + y) * 255 / (width + height - 2)));
        }
    }
    return image.convertToFormat(format);
}

} // namespace

class AnimPaintTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noFrameWithoutPage();
    void noFrameWithoutBackground_data();
    void noFrameWithoutBackground();
    void brokenShapeIsLeftOut_data();
    void brokenShapeIsLeftOut();
    void hiddenShapeIsNeitherDecodedNorDrawn();
    void indexedBackground_data();
    void indexedBackground();
    void paintOrder_data();
    void paintOrder();
    void laterShapeOfOneIdentifier();
    void edgesCut_data();
    void edgesCut();
    void sizeOfTheRectangleDoesNotScale_data();
    void sizeOfTheRectangleDoesNotScale();
    void endsOfTheNumbers_data();
    void endsOfTheNumbers();
    void movesFromAndToTheEndsOfTheNumbers_data();
    void movesFromAndToTheEndsOfTheNumbers();
    void frames_data();
    void frames();
    void framesDoNotDependOnTheWay();
    void framesOfARun();
    void translucentPictures_data();
    void translucentPictures();
    void halfOfEach();
    void scaledPicturesAreSmooth();
    void drawShape_data();
    void drawShape();
    void drawShapeFollowsThePainter();
    void drawShapesInTheOrderOfTheList();
};

void AnimPaintTest::noFrameWithoutPage()
{
    Silence silence;
    Player player;
    QVERIFY(player.GetImg().isNull());
    player.SetCachPic(true);
    QVERIFY(player.GetImg().isNull());
    QVERIFY(player.picCachs.empty());

    QVERIFY(player.Init(1, modelBytes({newPage({}, {}, png(8, 6, kGrey))}), 25));
    QVERIFY(!player.GetImg().isNull());
    QVERIFY(!player.Init(2, modelBytes({newPage({}, {}, png(8, 6, kGrey))}), 25));
    QVERIFY(player.GetImg().isNull());
    QCOMPARE(silence.lines(), QStringList());
}

void AnimPaintTest::noFrameWithoutBackground_data()
{
    QTest::addColumn<QByteArray>("background");
    QTest::newRow("null") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("broken") << garbage();
}

void AnimPaintTest::noFrameWithoutBackground()
{
    QFETCH(QByteArray, background);
    Silence silence;

    Player player(
        newPage({newShape(1, 1, 1, 2, 2, png(2, 2, kRed))}, {newEffect(kClick, 1, 1)}, background));
    for (bool caching : {false, true}) {
        player.cachPic = caching;
        QVERIFY(player.GetImg().isNull());
        // No frame, no work: the shape would be hidden.
        QCOMPARE(player.state(1), int(PPTAnimDisplay::DRAW_DEFAULT));
    }
    QCOMPARE(player.picCachs.size(), size_t(1));
    QVERIFY(player.picCachs.at(&player.curPage->pageImage).isNull());
    QCOMPARE(silence.lines(), QStringList());

    player.curPage->pageImage = png(8, 6, kGrey);
    QCOMPARE(player.GetImg(), flat(8, 6, kGrey));
    QCOMPARE(player.state(1), int(PPTAnimDisplay::DRAW_HIDE));
}

void AnimPaintTest::brokenShapeIsLeftOut_data()
{
    QTest::addColumn<bool>("caching");
    QTest::newRow("without caching") << false;
    QTest::newRow("with caching") << true;
}

void AnimPaintTest::brokenShapeIsLeftOut()
{
    QFETCH(bool, caching);
    Silence silence;

    Player player(newPage({newShape(1, 1, 1, 2, 2, garbage()), newShape(2, 4, 1, 2, 2),
                           newShape(3, 2, 2, 2, 2, png(2, 2, kRed))},
                          {}, png(8, 6, kGrey)));
    player.SetCachPic(caching);
    QImage frame = flat(8, 6, kGrey);
    fill(frame, QRect(2, 2, 2, 2), kRed);
    QCOMPARE(player.GetImg(), frame);
    QCOMPARE(silence.lines(), QStringList());

    player.shape(0)->picDat = png(1, 1, kBlue);
    frame.setPixel(1, 1, kBlue);
    QCOMPARE(player.GetImg(), frame);
}

void AnimPaintTest::hiddenShapeIsNeitherDecodedNorDrawn()
{
    Player player(newPage(
        {newShape(1, 1, 1, 2, 2, png(2, 2, kRed)), newShape(2, 4, 1, 2, 2, png(2, 2, kBlue))},
        {newEffect(kClick, 1, 1), newEffect(kWith, 1, 2, kLeave)}, png(8, 6, kGrey)));
    player.cachPic = true;

    QImage before = flat(8, 6, kGrey);
    fill(before, QRect(4, 1, 2, 2), kBlue);
    QCOMPARE(player.GetImg(), before);
    QCOMPARE(player.picCachs.count(&player.shape(0)->picDat), size_t(0));
    QCOMPARE(player.picCachs.count(&player.shape(1)->picDat), size_t(1));

    player.ClearPicCachs();
    QImage after = flat(8, 6, kGrey);
    fill(after, QRect(1, 1, 2, 2), kRed);
    QCOMPARE(player.imageAt(1, 1000), after);
    QCOMPARE(player.picCachs.count(&player.shape(0)->picDat), size_t(1));
    QCOMPARE(player.picCachs.count(&player.shape(1)->picDat), size_t(0));
}

void AnimPaintTest::indexedBackground_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("PNG") << QByteArray("PNG");
    QTest::newRow("BMP") << QByteArray("BMP");
}

void AnimPaintTest::indexedBackground()
{
    QFETCH(QByteArray, format);
    Silence silence;

    const QImage background = indexed(8, 6, {kGrey, kYellow});
    Player player(newPage(
        {newShape(1, 1, 1, 2, 2, png(2, 2, kRed)), newShape(2, 4, 1, 2, 2, png(2, 2, kBlue))},
        {newEffect(kClick, 1, 2)}, encoded(background, format.constData())));
    const QImage bare = player.GetImg();
    QCOMPARE(bare.format(), QImage::Format_Indexed8);
    QCOMPARE(bare.convertToFormat(QImage::Format_ARGB32),
             background.convertToFormat(QImage::Format_ARGB32));
    QCOMPARE(player.state(2), int(PPTAnimDisplay::DRAW_HIDE));

    QImage frame = background.convertToFormat(QImage::Format_ARGB32);
    fill(frame, QRect(1, 1, 2, 2), kRed);
    player.SetCachPic(true);
    QCOMPARE(player.GetImg(), frame);
    QCOMPARE(player.GetImg().format(), QImage::Format_ARGB32);
    player.SetCachPic(false);
    QCOMPARE(player.GetImg(), bare);
    QCOMPARE(silence.lines(), QStringList());
}

void AnimPaintTest::paintOrder_data()
{
    QTest::addColumn<QVector<int>>("ids"); // in the order of the list: red, green, blue
    QTest::addColumn<QVector<QRgb>>("order");
    QTest::newRow("as listed") << QVector<int>{1, 2, 3} << QVector<QRgb>{kRed, kGreen, kBlue};
    QTest::newRow("against the list")
        << QVector<int>{3, 2, 1} << QVector<QRgb>{kBlue, kGreen, kRed};
    QTest::newRow("mixed") << QVector<int>{20, 7, 100} << QVector<QRgb>{kGreen, kRed, kBlue};
    QTest::newRow("identifiers are unsigned")
        << QVector<int>{65535, 0, 32767} << QVector<QRgb>{kGreen, kBlue, kRed};
}

void AnimPaintTest::paintOrder()
{
    QFETCH(QVector<int>, ids);
    QFETCH(QVector<QRgb>, order);

    const QVector<QRgb> colours{kRed, kGreen, kBlue};
    const QVector<QPoint> places{{1, 1}, {2, 2}, {3, 1}};
    std::list<PPT_Shape *> shapes;
    for (int i = 0; i < 3; ++i) {
        shapes.push_back(newShape(ids[i], static_cast<float>(places[i].x()),
                                  static_cast<float>(places[i].y()), 4, 3, png(4, 3, colours[i])));
    }
    Player player(newPage(shapes, {}, png(8, 6, kGrey)));

    QImage frame = flat(8, 6, kGrey);
    for (QRgb colour : qAsConst(order))
        fill(frame, QRect(places[colours.indexOf(colour)], QSize(4, 3)), colour);
    QCOMPARE(player.GetImg(), frame);
    player.SetCachPic(true);
    QCOMPARE(player.GetImg(), frame);
}

void AnimPaintTest::laterShapeOfOneIdentifier()
{
    Player player(newPage({newShape(5, 1, 1, 2, 2, png(2, 2, kRed)),
                           newShape(5, 4, 2, 2, 2, png(3, 2, kBlue)),
                           newShape(4, 0, 0, 2, 2, png(1, 1, kGreen))},
                          {}, png(8, 6, kGrey)));
    QImage frame = flat(8, 6, kGrey);
    frame.setPixel(0, 0, kGreen);
    fill(frame, QRect(4, 2, 3, 2), kBlue);
    QCOMPARE(player.GetImg(), frame);
    player.SetCachPic(true);
    QCOMPARE(player.picCachs.size(), size_t(3));
}

void AnimPaintTest::edgesCut_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("top");
    // The picture is 5 x 4 on 8 x 6.
    QTest::newRow("left") << -2 << 1;
    QTest::newRow("last column, left") << -4 << 1;
    QTest::newRow("beyond, left") << -5 << 1;
    QTest::newRow("right") << 6 << 1;
    QTest::newRow("first column, right") << 7 << 1;
    QTest::newRow("beyond, right") << 8 << 1;
    QTest::newRow("above") << 1 << -2;
    QTest::newRow("last row, above") << 1 << -3;
    QTest::newRow("beyond, above") << 1 << -4;
    QTest::newRow("below") << 1 << 4;
    QTest::newRow("first row, below") << 1 << 5;
    QTest::newRow("beyond, below") << 1 << 6;
    QTest::newRow("upper left") << -4 << -3;
    QTest::newRow("upper right") << 7 << -3;
    QTest::newRow("lower left") << -4 << 5;
    QTest::newRow("lower right") << 7 << 5;
    QTest::newRow("far") << 100000 << -100000;
}

void AnimPaintTest::edgesCut()
{
    QFETCH(int, left);
    QFETCH(int, top);

    // A whole number below zero is none any more once 0.5 is added: it goes toward zero.
    const float x = static_cast<float>(left) - (left < 0 ? 1.0F : 0.0F);
    const float y = static_cast<float>(top) - (top < 0 ? 1.0F : 0.0F);
    Player player(newPage({newShape(1, x, y, 5, 4, png(5, 4, kRed))}, {}, png(8, 6, kGrey)));
    QImage frame = flat(8, 6, kGrey);
    fill(frame, QRect(left, top, 5, 4), kRed);
    QCOMPARE(player.GetImg(), frame);
}

void AnimPaintTest::sizeOfTheRectangleDoesNotScale_data()
{
    QTest::addColumn<float>("width");
    QTest::addColumn<float>("height");
    QTest::newRow("its own") << 3.0F << 2.0F;
    QTest::newRow("smaller") << 1.0F << 1.0F;
    QTest::newRow("larger") << 30.0F << 20.0F;
    QTest::newRow("none") << 0.0F << 0.0F;
    QTest::newRow("negative") << -7.0F << -7.0F;
    QTest::newRow("largest") << 1e12F << 1e12F;
    QTest::newRow("no number") << std::nanf("") << std::nanf("");
}

void AnimPaintTest::sizeOfTheRectangleDoesNotScale()
{
    QFETCH(float, width);
    QFETCH(float, height);
    Player player(
        newPage({newShape(1, 2, 1, width, height, png(3, 2, kRed))}, {}, png(8, 6, kGrey)));
    QImage frame = flat(8, 6, kGrey);
    fill(frame, QRect(2, 1, 3, 2), kRed);
    QCOMPARE(player.GetImg(), frame);
}

void AnimPaintTest::endsOfTheNumbers_data()
{
    QTest::addColumn<float>("left");
    QTest::addColumn<float>("top");
    QTest::addColumn<QRect>("shown");

    const auto addRows = [](const char *name, float value, bool isZero) {
        QTest::addRow("left %s", name) << value << 1.0F << (isZero ? QRect(0, 1, 3, 2) : QRect());
        QTest::addRow("top %s", name) << 1.0F << value << (isZero ? QRect(1, 0, 3, 2) : QRect());
        QTest::addRow("both %s", name) << value << value << (isZero ? QRect(0, 0, 3, 2) : QRect());
    };
    addRows("1e12", 1e12F, false);
    addRows("-1e12", -1e12F, false);
    addRows("2147483520", 2147483520.0F, false);
    addRows("-2147483648", -2147483648.0F, false);
    addRows("-2147483520", -2147483520.0F, false);
    addRows("infinite", std::numeric_limits<float>::infinity(), false);
    addRows("-infinite", -std::numeric_limits<float>::infinity(), false);
    addRows("no number", std::nanf(""), true);
}

void AnimPaintTest::endsOfTheNumbers()
{
    QFETCH(float, left);
    QFETCH(float, top);
    QFETCH(QRect, shown);
    Silence silence;

    Player player(newPage({newShape(1, left, top, 3, 2, png(3, 2, kRed))}, {}, png(8, 6, kGrey)));
    QImage frame = flat(8, 6, kGrey);
    fill(frame, shown, kRed);
    QCOMPARE(player.GetImg(), frame);
    player.SetCachPic(true);
    QCOMPARE(player.GetImg(), frame);
    QCOMPARE(silence.lines(), QStringList());
}

void AnimPaintTest::movesFromAndToTheEndsOfTheNumbers_data()
{
    QTest::addColumn<float>("left");
    QTest::addColumn<float>("top");
    QTest::addColumn<float>("width");
    QTest::addColumn<int>("exit");
    for (int exit : {kEnter, kLeave}) {
        const char *way = exit == kLeave ? "leaves" : "enters";
        for (float value : {1e12F, -1e12F, 2147483520.0F, -2147483648.0F, -2147483520.0F}) {
            QTest::addRow("%s, left %g", way, double(value)) << value << 1.0F << 3.0F << exit;
            QTest::addRow("%s, top %g", way, double(value)) << 1.0F << value << 3.0F << exit;
            QTest::addRow("%s, both %g", way, double(value)) << value << value << 3.0F << exit;
            QTest::addRow("%s, left %g, wide", way, double(value))
                << value << 1.0F << 1e12F << exit;
        }
    }
    QTest::newRow("enters, wide") << 1.0F << 1.0F << 1e12F << int(kEnter);
    QTest::newRow("enters, of negative width") << 1.0F << 1.0F << -1e12F << int(kEnter);
}

void AnimPaintTest::movesFromAndToTheEndsOfTheNumbers()
{
    QFETCH(float, left);
    QFETCH(float, top);
    QFETCH(float, width);
    QFETCH(int, exit);
    Silence silence;

    Player player(newPage({newShape(1, left, top, width, 2, png(3, 2, kRed))},
                          {newEffect(kClick, 1, 1, exit)}, png(8, 6, kGrey)),
                  8);
    for (unsigned int ms : {0U, 1U, 250U, 500U, 750U, 999U})
        QCOMPARE(player.imageAt(1, ms), flat(8, 6, kGrey));
    QCOMPARE(silence.lines(), QStringList());
}

namespace {

constexpr int kHidden = 1000; // a place that is not on the page

// 60 x 40. Red enters within 1 s while blue leaves within 0.5 s; after that green enters within
// 0.25 s; the next click makes red leave within 1 s and green within 0.5 s. Yellow rests and is
// above all.
PPT_Page *deckPage()
{
    return newPage({newShape(4, 15, 2, 12, 4, png(12, 4, kYellow)),
                    newShape(1, 20, 4, 10, 6, png(10, 6, kRed)),
                    newShape(2, 30, 8, 8, 8, png(8, 8, kBlue)),
                    newShape(3, 5, 20, 6, 10, png(6, 10, kGreen))},
                   {newEffect(kClick, 1, 1, kEnter, 1), newEffect(kWith, 0.5F, 2, kLeave, 2),
                    newEffect(kAfter, 0.25F, 3, kEnter, 3), newEffect(kClick, 1, 1, kLeave, 4),
                    newEffect(kWith, 0.5F, 3, kLeave, 5)},
                   png(60, 40, kGrey));
}

struct DeckFrame
{
    unsigned int step;
    unsigned int ms;
    int red; // left edges
    int blue;
    int green;

    QImage image() const
    {
        QImage frame = flat(60, 40, kGrey);
        fill(frame, QRect(red, 4, 10, 6), kRed);
        fill(frame, QRect(blue, 8, 8, 8), kBlue);
        fill(frame, QRect(green, 20, 6, 10), kGreen);
        fill(frame, QRect(15, 2, 12, 4), kYellow);
        return frame;
    }
};

constexpr DeckFrame kDeckFrames[] = {
    {0, 0, kHidden, 30, kHidden},   {1, 0, -10, 30, kHidden},
    {1, 1, -9, 30, kHidden},        {1, 100, -7, 36, kHidden},
    {1, 250, -2, 45, kHidden},      {1, 333, 0, 49, kHidden},
    {1, 400, 2, 54, kHidden},       {1, 499, 4, 59, kHidden},
    {1, 500, 5, kHidden, kHidden},  {1, 600, 8, kHidden, kHidden},
    {1, 750, 12, kHidden, kHidden}, {1, 999, 19, kHidden, kHidden},
    {1, 1000, 20, kHidden, -6},     {1, 1001, 20, kHidden, -5},
    {1, 1125, 20, kHidden, 0},      {1, 1150, 20, kHidden, 0},
    {1, 1200, 20, kHidden, 2},      {1, 1249, 20, kHidden, 4},
    {1, 1250, 20, kHidden, 5},      {2, 0, 20, kHidden, 5},
    {2, 1, 20, kHidden, 5},         {2, 250, 30, kHidden, 32},
    {2, 499, 39, kHidden, 59},      {2, 500, 40, kHidden, kHidden},
    {2, 999, 59, kHidden, kHidden}, {2, 1000, kHidden, kHidden, kHidden},
};

} // namespace

void AnimPaintTest::frames_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(kDeckFrames)); ++i) {
        QTest::addRow("step %u, %u ms", kDeckFrames[i].step, kDeckFrames[i].ms) << i;
    }
}

void AnimPaintTest::frames()
{
    QFETCH(int, index);
    const DeckFrame &frame = kDeckFrames[index];
    Player player(deckPage());
    QCOMPARE(player.imageAt(frame.step, frame.ms), frame.image());
    QCOMPARE(player.GetImg(), frame.image());
    player.SetCachPic(true);
    QCOMPARE(player.GetImg(), frame.image());
    QCOMPARE(player.GetImg(), frame.image());
}

void AnimPaintTest::framesDoNotDependOnTheWay()
{
    Player player(deckPage());
    QRandomGenerator random(44);
    for (int i = 0; i < 400; ++i) {
        const DeckFrame &frame = kDeckFrames[random.bounded(int(std::size(kDeckFrames)))];
        if (i % 40 == 20)
            player.SetCachPic(!player.IsCachPic());
        if (i % 40 == 30)
            player.ClearPicCachs();
        QCOMPARE(player.imageAt(frame.step, frame.ms), frame.image());
    }
}

void AnimPaintTest::framesOfARun()
{
    Player player(deckPage());
    player.SetCachPic(true);
    const auto expected = [&] {
        for (const DeckFrame &frame : kDeckFrames) {
            if (frame.step == player.GetAnimStep() && frame.ms == player.GetAnimPassedDuration())
                return frame.image();
        }
        return QImage();
    };
    int compared = 0;
    const auto compare = [&] {
        const QImage image = player.GetImg();
        if (expected().isNull())
            return !image.isNull();
        ++compared;
        return image == expected();
    };

    QVERIFY(compare());
    while (player.nextStep()) {
        do {
            QVERIFY(compare());
        } while (player.nextFrame(50));
    }
    QCOMPARE(player.GetAnimStep(), 2U);
    QCOMPARE(compared, 16);
    do {
        while (player.prevFrame(50))
            QVERIFY(compare());
    } while (player.prevStep());
    QVERIFY(compare());
    QCOMPARE(compared, 30);
}

void AnimPaintTest::translucentPictures_data()
{
    QTest::addColumn<QByteArray>("background");
    QTest::addColumn<QByteArray>("picture");

    const QVector<QPair<const char *, QImage>> images{
        {"RGB32", coloured(24, 18, QImage::Format_RGB32)},
        {"ARGB32", coloured(24, 18, QImage::Format_ARGB32)},
        {"RGBA64", coloured(24, 18, QImage::Format_RGBA64)},
        {"Grayscale8", coloured(24, 18, QImage::Format_Grayscale8)},
        {"Mono", coloured(24, 18, QImage::Format_Mono)},
        {"Indexed8", indexed(24, 18, {kGrey, 0x80FF0000, 0x00000000, 0xC000FF00})},
    };
    for (const auto &background : images) {
        for (const auto &picture : images) {
            QTest::addRow("%s on %s", picture.first, background.first)
                << encoded(background.second) << encoded(picture.second);
        }
    }
}

void AnimPaintTest::translucentPictures()
{
    QFETCH(QByteArray, background);
    QFETCH(QByteArray, picture);
    Silence silence;

    Player player(newPage({newShape(1, 3, 2, 24, 18, picture), newShape(2, 9, 7, 24, 18, picture)},
                          {newEffect(kClick, 1, 2, kLeave)}, background),
                  24);
    for (bool caching : {false, true}) {
        player.SetCachPic(caching);
        const auto decoded = [&](const QByteArray &bytes) {
            QImage image = QImage::fromData(bytes);
            const bool isFast =
                image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32;
            return caching && !isFast ? image.convertToFormat(QImage::Format_ARGB32) : image;
        };
        for (const auto &[ms, left] : {std::pair<unsigned int, int>{0, 9}, {500, 16}}) {
            QImage frame = decoded(background);
            if (frame.format() != QImage::Format_Indexed8) {
                QPainter painter(&frame);
                painter.drawImage(3, 2, decoded(picture));
                painter.drawImage(left, 7, decoded(picture));
            }
            const QImage image = player.imageAt(1, ms);
            QCOMPARE(image.format(), frame.format());
            QCOMPARE(image, frame);
        }
    }
    QCOMPARE(silence.lines(), QStringList());
}

void AnimPaintTest::halfOfEach()
{
    // 128/255 of red on white, and of blue on that.
    const QByteArray red = encoded(flat(2, 1, 0x80FF0000, QImage::Format_ARGB32));
    const QByteArray blue = encoded(flat(2, 1, 0x800000FF, QImage::Format_ARGB32));
    Player player(newPage({newShape(2, 1, 0, 2, 1, blue), newShape(1, 0, 0, 2, 1, red)}, {},
                          png(4, 1, 0xFFFFFFFF)));
    const QImage frame = player.GetImg();
    QCOMPARE(frame.pixel(0, 0), 0xFFFF7F7F);
    QCOMPARE(frame.pixel(1, 0), 0xFF7F3FBF);
    QCOMPARE(frame.pixel(2, 0), 0xFF7F7FFF);
    QCOMPARE(frame.pixel(3, 0), 0xFFFFFFFF);
}

void AnimPaintTest::scaledPicturesAreSmooth()
{
    // Whole pixels at whole places show no smoothness. A picture with two pixels to one of the page
    // does, and only the cache can hold one.
    QImage dense = coloured(12, 8, QImage::Format_RGB32);
    dense.setDevicePixelRatio(2);
    Player player(newPage({newShape(1, 1, 1, 6, 4, png(6, 4, kRed))}, {}, png(8, 6, kGrey)));
    player.SetCachPic(true);
    player.picCachs[&player.shape(0)->picDat] = dense;

    const auto painted = [&](bool smooth) {
        QImage frame = flat(8, 6, kGrey);
        QPainter painter(&frame);
        painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
        painter.drawImage(1, 1, dense);
        painter.end();
        return frame;
    };
    QVERIFY(painted(true) != painted(false));
    QCOMPARE(player.GetImg(), painted(true));
}

void AnimPaintTest::drawShape_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("hasShape");
    QTest::addColumn<int>("left"); // of the picture
    QTest::newRow("no effect") << 0 << true << 4;
    QTest::newRow("at rest") << 1 << true << 4;
    QTest::newRow("moving") << 2 << true << 1;
    QTest::newRow("hidden") << 3 << true << kHidden;
    QTest::newRow("no shape, no effect") << 0 << false << kHidden;
    QTest::newRow("no shape, at rest") << 1 << false << kHidden;
    QTest::newRow("no shape, moving") << 2 << false << kHidden;
    QTest::newRow("no shape, hidden") << 3 << false << kHidden;
}

void AnimPaintTest::drawShape()
{
    QFETCH(int, state);
    QFETCH(bool, hasShape);
    QFETCH(int, left);

    PPT_Shape shape;
    shape.left = 4;
    shape.top = 1;
    shape.width = 2;
    shape.height = 2;
    shape.picDat = png(2, 2, kRed);
    PPT_Effect effect;
    PPTAnimDisplay::ShapeAnimDat dat;
    dat.shape = hasShape ? &shape : nullptr;
    dat.drawState = state;
    dat.effect = &effect;
    dat.effectDuration = 1000;
    dat.effectPassed = 500; // from -2 to 4

    Player player;
    player.cachPic = true;
    QImage image = flat(8, 6, kGrey);
    QPainter painter(&image);
    player.DrawShape(painter, dat);
    painter.end();

    QImage frame = flat(8, 6, kGrey);
    fill(frame, QRect(left, 1, 2, 2), kRed);
    QCOMPARE(image, frame);
    QCOMPARE(player.picCachs.size(), size_t(left == kHidden ? 0 : 1));
}

void AnimPaintTest::drawShapeFollowsThePainter()
{
    Player player(newPage({newShape(1, 103, 1, 2, 2, png(2, 2, kRed))}, {}, png(8, 6, kGrey)));
    QImage frame = flat(8, 6, kGrey);
    fill(frame, QRect(3, 1, 2, 2), kRed);

    QImage image = flat(8, 6, kGrey);
    QPainter painter(&image);
    painter.translate(-100, 0);
    player.DrawShape(painter, player.shapeAnimDats.at(1));
    painter.end();
    QCOMPARE(image, frame);

    QPicture picture;
    painter.begin(&picture);
    player.DrawShape(painter, player.shapeAnimDats.at(1));
    painter.end();
    image.fill(kGrey);
    painter.begin(&image);
    painter.drawPicture(-100, 0, picture);
    painter.end();
    QCOMPARE(image, frame);
}

void AnimPaintTest::drawShapesInTheOrderOfTheList()
{
    Player player(newPage(
        {newShape(1, 1, 1, 4, 3, png(4, 3, kRed)), newShape(2, 2, 2, 4, 3, png(4, 3, kBlue))}, {},
        png(8, 6, kGrey)));
    QList<PPTAnimDisplay::ShapeAnimDat *> list{nullptr, &player.shapeAnimDats.at(2), nullptr,
                                               &player.shapeAnimDats.at(1), nullptr};
    QImage image = flat(8, 6, kGrey);
    QPainter painter(&image);
    player.DrawShapes(painter, list);
    painter.end();

    QImage frame = flat(8, 6, kGrey);
    fill(frame, QRect(2, 2, 4, 3), kBlue);
    fill(frame, QRect(1, 1, 4, 3), kRed);
    QCOMPARE(image, frame);
    QCOMPARE(list.size(), 5);
}

QTEST_GUILESS_MAIN(AnimPaintTest)
#include "tst_animpaint.moc"
