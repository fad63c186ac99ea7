// The view of a page: at what scale it is painted, where, and what with.
#include "tools/docviewer/PageView.h"
#include "tools/docviewer/ScaledImage.h"

#include <QElapsedTimer>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest>

class tst_PageView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fit_data();
    void fit();
    void zoom();
    void zoomKeepsTheMiddle();
    void pixelsAreSharpAtFullScale();
    void smoothWhenReduced();
    void veryLargePictures();
    void enlargedOnlyWhereItIsSeen();
    void longestPage();
    void paperBehindTransparency();
    void messageInPlaceOfThePicture();
    void palettes();
};

namespace {

QImage flat(QSize size, const QColor &colour)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

// Columns of one pixel, black and white in turn.
QImage stripes(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, x % 2 == 0 ? 0xFF000000 : 0xFFFFFFFF);
    }
    return image;
}

class View : public PageView
{
public:
    explicit View(QSize size)
    {
        resize(size);
        show();
    }

    QImage shot() { return viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32); }
};

} // namespace

void tst_PageView::fit_data()
{
    QTest::addColumn<QSize>("view");
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<bool>("presenting");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("smaller: as it is")
        << QSize(416, 316) << QSize(100, 50) << false << QRectF(158, 133, 100, 50);
    QTest::newRow("wider") << QSize(416, 316) << QSize(800, 200) << false
                           << QRectF(8, 108, 400, 100);
    QTest::newRow("higher") << QSize(416, 316) << QSize(300, 600) << false
                            << QRectF(133, 8, 150, 300);
    QTest::newRow("presenting, to the edges")
        << QSize(400, 300) << QSize(800, 600) << true << QRectF(0, 0, 400, 300);
    QTest::newRow("presenting, smaller")
        << QSize(400, 300) << QSize(40, 30) << true << QRectF(180, 135, 40, 30);
}

void tst_PageView::fit()
{
    QFETCH(QSize, view);
    QFETCH(QSize, picture);
    QFETCH(bool, presenting);
    View page(view);
    page.setPresenting(presenting);
    page.setImage(flat(picture, Qt::red));
    QTEST(page.pageRect(), "expected");
    const QRect rect = page.pageRect().toRect();
    const QImage shot = page.shot();
    QCOMPARE(shot.pixelColor(rect.topLeft()), QColor(Qt::red));
    QCOMPARE(shot.pixelColor(rect.bottomRight()), QColor(Qt::red));
    if (rect.left() > 0)
        QVERIFY(shot.pixelColor(rect.left() - 1, rect.top()) != QColor(Qt::red));
}

void tst_PageView::zoom()
{
    View page({400, 300});
    page.setImage(flat({1000, 1000}, Qt::red));
    QSignalSpy changes(&page, &PageView::scaleChanged);
    QList<int> scales;
    for (int i = 0; i < 10; ++i) {
        page.zoomIn();
        scales += qRound(page.scale() * 100);
    }
    QCOMPARE(scales, QList<int>({50, 75, 100, 150, 200, 300, 400, 600, 800, 800}));
    scales.clear();
    for (int i = 0; i < 11; ++i) {
        page.zoomOut();
        scales += qRound(page.scale() * 100);
    }
    QCOMPARE(scales, QList<int>({600, 400, 300, 200, 150, 100, 75, 50, 25, 10, 10}));
    QVERIFY(!page.isFitted());
    page.setImage(flat({500, 500}, Qt::red)); // the next page has the same scale
    QCOMPARE(page.scale(), 0.1);
    page.zoomToFit();
    QCOMPARE(page.scale(), 284 / 500.0);
    QVERIFY(changes.count() >= 20); // all that was done
}

void tst_PageView::zoomKeepsTheMiddle()
{
    View page({400, 300});
    page.setImage(flat({1000, 1000}, Qt::red));
    page.setZoom(1);
    const auto middle = [&] {
        const QRectF seen(page.viewport()->rect());
        const QPointF at = seen.center() - page.pageRect().topLeft();
        return at / page.scale();
    };
    QVERIFY((middle() - QPointF(500, 500)).manhattanLength() <= 2);
    page.horizontalScrollBar()->setValue(100);
    const QPointF before = middle();
    page.setZoom(3);
    QVERIFY2((middle() - before).manhattanLength() <= 2, qPrintable(QString::number(middle().x())));
}

void tst_PageView::pixelsAreSharpAtFullScale()
{
    View page({401, 301}); // the middle is between two pixels
    const QImage picture = stripes({100, 50});
    page.setImage(picture);
    const QRect rect = page.pageRect().toRect();
    QCOMPARE(page.shot().copy(rect), picture);
}

void tst_PageView::smoothWhenReduced()
{
    View page({416, 316});
    page.setImage(stripes({800, 600}));
    const QRect rect = page.pageRect().toRect();
    QCOMPARE(rect, QRect(8, 8, 400, 300));
    const int grey = qGray(page.shot().pixel(rect.center()));
    QVERIFY2(grey > 100 && grey < 155, qPrintable(QString::number(grey)));
}

// An image of the whole page at this scale would take four gigabytes.
// Each pixel of them counts for less, so that they are shown in a part of the time.
void tst_PageView::veryLargePictures()
{
    QImage image(8000, 6000, QImage::Format_Indexed8);
    image.setColorTable({QColor(Qt::red).rgb(), QColor(Qt::blue).rgb()});
    image.fill(0);
    for (int y = 0; y < image.height(); ++y)
        std::fill(image.scanLine(y) + 4000, image.scanLine(y) + 8000, uchar(1));
    qint64 plain = std::numeric_limits<qint64>::max();
    qint64 thinned = plain;
    for (int attempt = 0; attempt < 3; ++attempt) {
        QElapsedTimer clock;
        clock.start();
        QVERIFY(
            !image.scaled({400, 300}, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).isNull());
        plain = qMin(plain, clock.restart());
        const QImage small = scaledImage(image, {400, 300});
        thinned = qMin(thinned, clock.elapsed());
        QCOMPARE(small.size(), QSize(400, 300));
        QCOMPARE(small.pixelColor(190, 0), QColor(Qt::red));
        QCOMPARE(small.pixelColor(210, 299), QColor(Qt::blue));
    }
    qInfo("%lld ms, all pixels %lld ms", thinned, plain);
    QVERIFY(thinned < plain / 2);
    QCOMPARE(scaledImage(image, {7900, 5900}).size(), QSize(7900, 5900));

    View page({400, 300});
    page.setImage(image);
    const QImage shot = page.shot();
    QCOMPARE(shot.pixelColor(100, 150), QColor(Qt::red));
    QCOMPARE(shot.pixelColor(300, 150), QColor(Qt::blue));
}

void tst_PageView::enlargedOnlyWhereItIsSeen()
{
    View page({400, 300});
    QImage picture = flat({4000, 4000}, Qt::red);
    for (const QPoint &at :
         {QPoint(2000, 2000), QPoint(2001, 2000), QPoint(2000, 2001), QPoint(2001, 2001)})
        picture.setPixelColor(at, Qt::blue);
    page.setImage(picture);
    page.setZoom(8);
    QElapsedTimer timer;
    timer.start();
    page.horizontalScrollBar()->setValue(2000 * 8);
    page.verticalScrollBar()->setValue(2000 * 8);
    const QImage shot = page.shot();
    QVERIFY2(timer.elapsed() < 500, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(shot.pixelColor(8, 8), QColor(Qt::blue));
    QCOMPARE(shot.pixelColor(30, 30), QColor(Qt::red));
}

// As wide as an image may be, enlarged to 2^31 pixels.
void tst_PageView::longestPage()
{
    View page({400, 300});
    page.setImage(QImage(1 << 28, 1, QImage::Format_Mono));
    page.setZoom(8);
    QScrollBar *bar = page.horizontalScrollBar();
    QCOMPARE(bar->maximum() + bar->pageStep(), 1 << 30);
    page.setZoom(4);
    QCOMPARE(bar->maximum() + bar->pageStep(), 1 << 30);
    page.setZoom(3);
    QCOMPARE(bar->maximum() + bar->pageStep(), 3 << 28);
}

void tst_PageView::paperBehindTransparency()
{
    View page({400, 300});
    page.setImage(flat({100, 100}, QColor(0, 0, 0, 0)));
    QCOMPARE(page.shot().pixelColor(200, 150), QColor(Qt::white));
}

void tst_PageView::messageInPlaceOfThePicture()
{
    View page({400, 300});
    page.setImage(flat({100, 100}, Qt::red));
    page.setMessage(QStringLiteral("Page <b> & 1"), QStringLiteral("Why"));
    QCOMPARE(page.message(), QStringLiteral("Page <b> & 1\nWhy"));
    QVERIFY(page.image().isNull());
    QVERIFY(page.shot().pixelColor(200, 150) != QColor(Qt::red));
    page.setImage(flat({100, 100}, Qt::red));
    QCOMPARE(page.message(), QString());
}

void tst_PageView::palettes()
{
    View page({400, 300});
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x20, 0x20, 0x20));
    dark.setColor(QPalette::WindowText, QColor(0xf0, 0xf0, 0xf0));
    page.setPalette(dark);
    page.setMessage(QStringLiteral("Message"), QStringLiteral("Detail"));
    QImage shot = page.shot();
    QCOMPARE(shot.pixelColor(0, 0), QColor(0x20, 0x20, 0x20));
    int brightest = 0;
    for (int y = 0; y < shot.height(); ++y) {
        for (int x = 0; x < shot.width(); ++x)
            brightest = qMax(brightest, qGray(shot.pixel(x, y)));
    }
    QVERIFY2(brightest > 0xd0, qPrintable(QString::number(brightest)));
    page.setImage(flat({100, 100}, Qt::red));
    QCOMPARE(page.shot().pixelColor(0, 0), QColor(0x18, 0x18, 0x18)); // a shade darker
    page.setPresenting(true);
    QCOMPARE(page.shot().pixelColor(0, 0), QColor(Qt::black));
}

QTEST_MAIN(tst_PageView)

#include "tst_pageview.moc"
