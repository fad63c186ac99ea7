#include "RefusedBlocks.h"
#include "tools/docimport/LayerPicture.h"
#include "tools/docimport/PictureDifference.h"

#include <QPainter>
#include <QtTest>

namespace {

constexpr QRgb kWhite = 0xffffffff;
constexpr QRgb kYellow = 0xffffff00;

QImage page(QRgb paper, const QSize &size = {4, 3})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(paper);
    return image;
}

QVector<QRgb> pixelsOf(const QImage &image)
{
    QVector<QRgb> pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            pixels.append(image.pixel(x, y));
    }
    return pixels;
}

} // namespace

/// What is told from a page on white and on yellow paper, and how far apart pictures are.
class TestLayerPicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixel_data()
    {
        QTest::addColumn<QRgb>("onWhite");
        QTest::addColumn<QRgb>("onYellow");
        QTest::addColumn<QRgb>("pixel");

        QTest::newRow("opaque red") << 0xffff0000U << 0xffff0000U << 0xffff0000U;
        QTest::newRow("opaque black") << 0xff000000U << 0xff000000U << 0xff000000U;
        QTest::newRow("opaque white") << 0xffffffffU << 0xffffffffU << 0xffffffffU;
        QTest::newRow("opaque yellow") << 0xffffff00U << 0xffffff00U << 0xffffff00U;
        // Half of black: 255 - (127 - 0) = 128, and no colour is left.
        QTest::newRow("half of black") << 0xff7f7f7fU << 0xff7f7f00U << 0x80000000U;
        // (0.2, 0.4, 0.6) of 255 with an alpha of 51: on white 204 + 51 * colour / 255.
        QTest::newRow("a fifth of a blue") << 0xffd6e0ebU << 0xffd6e01fU << 0x3332649bU;
        QTest::newRow("faint") << 0xfffffffcU << 0xffffff00U << 0x03ffff00U;
        QTest::newRow("brighter than the paper") << 0xffffffffU << 0xffffff80U << 0x80ffffffU;
        QTest::newRow("darker on white by rounding") << 0xff00007fU << 0xff000080U << 0xff00007fU;
    }

    void pixel()
    {
        QFETCH(QRgb, onWhite);
        QFETCH(QRgb, onYellow);
        QImage white = page(kWhite);
        QImage yellow = page(kYellow);
        white.setPixel(2, 1, onWhite);
        yellow.setPixel(2, 1, onYellow);
        const LayerPicture layer = layerOf(white, yellow);
        QCOMPARE(layer.at, QPoint(2, 1));
        QCOMPARE(layer.image.size(), QSize(1, 1));
        QTEST(layer.image.pixel(0, 0), "pixel");
    }

    void nothingIsPainted_data()
    {
        QTest::addColumn<QRgb>("onWhite");
        QTest::addColumn<QRgb>("onYellow");
        QTest::newRow("paper") << kWhite << kYellow;
        QTest::newRow("paper but for rounding") << 0xfffffffdU << kYellow;
        QTest::newRow("less on white by rounding") << 0xfffefefeU << 0xfffefe01U;
    }

    void nothingIsPainted()
    {
        QFETCH(QRgb, onWhite);
        QFETCH(QRgb, onYellow);
        QImage white = page(kWhite);
        QImage yellow = page(kYellow);
        white.setPixel(2, 1, onWhite);
        yellow.setPixel(2, 1, onYellow);
        const LayerPicture layer = layerOf(white, yellow);
        QCOMPARE(layer.at, QPoint(0, 0));
        QCOMPARE(layer.image.format(), QImage::Format_ARGB32);
        QCOMPARE(pixelsOf(layer.image), QVector<QRgb>({0x00000000}));
    }

    void paintedPartIsCutOut()
    {
        QImage white = page(kWhite);
        QImage yellow = page(kYellow);
        for (QImage *image : {&white, &yellow}) {
            image->setPixel(3, 0, 0xff0000ff);
            image->setPixel(1, 1, 0xff00ff00);
        }
        const LayerPicture layer = layerOf(white, yellow);
        QCOMPARE(layer.at, QPoint(1, 0));
        QCOMPARE(layer.image.size(), QSize(3, 2));
        QCOMPARE(layer.image.format(), QImage::Format_ARGB32);
        QCOMPARE(pixelsOf(layer.image), QVector<QRgb>({0, 0, 0xff0000ff, 0xff00ff00, 0, 0}));
    }

    void memoryLacks()
    {
        const QImage white = page(0xff0000ff, {200, 200});
        const RefusedBlocks::From refused(0, 65'536);
        QCOMPARE(layerOf(white, white).image.isNull(), !kSanitized);
    }

    void opaquePartHasNoAlpha()
    {
        const QImage blue = page(0xff0000ff);
        const LayerPicture layer = layerOf(blue, blue);
        QCOMPARE(layer.at, QPoint(0, 0));
        QCOMPARE(layer.image.size(), QSize(4, 3));
        QCOMPARE(layer.image.format(), QImage::Format_RGB32);
        QCOMPARE(layer.image.pixel(3, 2), 0xff0000ff);
    }

    // Whatever is painted on whatever paper looks as the layer does on it.
    void layerLooksAsItsPaint()
    {
        const auto painted = [](QRgb paper) {
            QImage image = page(paper, {40, 30});
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(200, 40, 90, 160));
            painter.drawEllipse(5, 4, 25, 20);
            painter.setBrush(QColor(10, 90, 60));
            painter.drawEllipse(15, 8, 20, 20);
            return image;
        };
        const LayerPicture layer = layerOf(painted(kWhite), painted(kYellow));
        QImage composed = page(0xff3050a0, {40, 30});
        QPainter(&composed).drawImage(layer.at, layer.image);
        const QImage expected = painted(0xff3050a0);
        for (int y = 0; y < 30; ++y) {
            for (int x = 0; x < 40; ++x) {
                const QRgb a = composed.pixel(x, y);
                const QRgb b = expected.pixel(x, y);
                const int apart = qMax(qAbs(qRed(a) - qRed(b)), qMax(qAbs(qGreen(a) - qGreen(b)),
                                                                     qAbs(qBlue(a) - qBlue(b))));
                QVERIFY2(apart <= 2, qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
            }
        }
    }

    void difference_data()
    {
        QTest::addColumn<QRgb>("pixel");
        QTest::addColumn<double>("difference");
        QTest::newRow("same") << 0xff808080U << 0.0;
        QTest::newRow("32 levels brighter") << 0xffa0a0a0U << 0.0;
        QTest::newRow("33 levels of red") << 0xffa18080U << 0.25;
        QTest::newRow("33 levels less of green") << 0xff805f80U << 0.25;
        QTest::newRow("33 levels of blue") << 0xff8080a1U << 0.25;
    }

    void difference()
    {
        QFETCH(QRgb, pixel);
        const QImage grey = page(0xff808080, {2, 2});
        QImage other = grey;
        other.setPixel(1, 1, pixel);
        QTEST(differenceOf(grey, other), "difference");
        QTEST(differenceOf(other, grey), "difference");
    }

    void otherSizesDifferThroughout()
    {
        QCOMPARE(differenceOf(page(kWhite, {2, 2}), page(kWhite, {2, 3})), 1.0);
        QCOMPARE(differenceOf(QImage(), QImage()), 0.0);
    }
};

QTEST_GUILESS_MAIN(TestLayerPicture)
#include "tst_layerpicture.moc"
