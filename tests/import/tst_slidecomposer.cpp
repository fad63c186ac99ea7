#include "tools/docimport/SlideComposer.h"
#include "tools/docpage/deck/SlideModel.h"

#include <QtTest>

namespace {

constexpr QRgb kPaper = 0xff204060;
const QSize kPage(100, 60);

// A page with a red field of 20 x 10 in it.
QImage withField(QRgb paper, int left, int top, int height = 10)
{
    QImage image(kPage, QImage::Format_RGB32);
    image.fill(paper);
    for (int y = top; y < top + height; ++y) {
        for (int x = left; x < left + 20; ++x)
            image.setPixel(x, y, 0xffff0000);
    }
    return image;
}

QImage empty(QRgb paper)
{
    return withField(paper, 0, 0, 0);
}

using Draw = SlideParts::Draw;

// The papers' pages of layer 0 are 6 and 7, which have a field; layer 1 shows nothing.
QString drawLayer(int page, const QColor &paper, QImage &image)
{
    if (paper != (page % 2 == 0 ? Qt::white : Qt::yellow))
        return QStringLiteral("the wrong paper");
    image = page < 8 ? withField(paper.rgb(), 30, 40) : empty(paper.rgb());
    return {};
}

QString drawBackground(int page, const QColor &paper, QImage &image)
{
    if (page != 3 || paper != Qt::white)
        return QStringLiteral("the wrong page");
    image = empty(kPaper);
    return {};
}

SlideParts partsOf(const DeckSlide &slide, const QImage &whole)
{
    return {slide, 2, whole, drawBackground, drawLayer, 90};
}

DeckSlide slideOf(int layers, std::vector<PlannedEffect> effects)
{
    DeckSlide slide;
    slide.layers = layers;
    slide.backgroundPage = 3;
    slide.firstLayerPage = 6;
    slide.effects = std::move(effects);
    return slide;
}

} // namespace

/// A slide's parts as slide animation data.
class TestSlideComposer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void slide()
    {
        const DeckSlide slide =
            slideOf(2, {{0, 1, false, 0.5}, {1, 2, false, 0.001}, {0, 3, true, 2}});
        ComposedSlide composed;
        QCOMPARE(composeSlide(partsOf(slide, withField(kPaper, 30, 40)), composed), QString());
        QCOMPARE(composed.reason, QString());
        QCOMPARE(composed.difference, 0.0);
        QCOMPARE(composed.payload.format, DocCovRslt::PAGE_FORMAT_PPT_ANIM);

        SlideModel model;
        QCOMPARE(model.read(composed.payload.bytes), QString());
        QCOMPARE(model.bytesAfter, qint64(0));
        QCOMPARE(model.data.head.width, 100.0F);
        QCOMPARE(model.data.head.height, 60.0F);
        QCOMPARE(model.data.pages.size(), size_t(1));
        const PPT_Page &page = *model.data.pages.at(2);
        QCOMPARE(page.pageId, quint16(2));
        QCOMPARE(QImage::fromData(page.pageImage).convertToFormat(QImage::Format_RGB32),
                 empty(kPaper));

        QCOMPARE(page.shapes.size(), size_t(2));
        const PPT_Shape &field = *page.shapes.front();
        QCOMPARE(field.shapeId, quint16(1));
        QCOMPARE(field.left, 30.0F);
        QCOMPARE(field.top, 40.0F);
        QCOMPARE(field.width, 20.0F);
        QCOMPARE(field.height, 10.0F);
        const QImage picture = QImage::fromData(field.picDat);
        QCOMPARE(picture.size(), QSize(20, 10));
        QCOMPARE(picture.pixel(19, 9), 0xffff0000);
        const PPT_Shape &nothing = *page.shapes.back(); // has a picture all the same
        QCOMPARE(nothing.shapeId, quint16(2));
        QCOMPARE(nothing.width, 1.0F);
        QCOMPARE(QImage::fromData(nothing.picDat).pixel(0, 0), 0x00000000U);

        QCOMPARE(page.effects.size(), size_t(3));
        auto effect = page.effects.cbegin();
        const auto compare = [&](int number, int shape, int exit, float duration, int trigger) {
            QCOMPARE((*effect)->effectNo, qint16(number));
            QCOMPARE((*effect)->shapeId, quint16(shape));
            QCOMPARE((*effect)->exit, qint8(exit));
            QCOMPARE((*effect)->timing.duration, duration);
            QCOMPARE((*effect)->timing.triggerType, qint8(trigger));
            ++effect;
        };
        compare(1, 1, 0, 0.5F, 1);
        compare(2, 2, 0, 0.001F, 2);
        compare(3, 1, -1, 2.0F, 3);
    }

    // Of the 6000 pixels so many are red in the whole only: 20 in each line.
    void difference_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<double>("difference");
        QTest::addColumn<QString>("reason");
        QTest::newRow("1.33 %") << 4 << 80.0 / 6000 << QString();
        QTest::newRow("1.67 %") << 5 << 100.0 / 6000
                                << QStringLiteral("put together, its parts look different");
    }

    void difference()
    {
        QFETCH(int, lines);
        const DeckSlide slide = slideOf(1, {{0, 1, false, 1}});
        ComposedSlide composed;
        QCOMPARE(composeSlide(partsOf(slide, withField(kPaper, 30, 40, 10 + lines)), composed),
                 QString());
        QTEST(composed.difference, "difference");
        QTEST(composed.reason, "reason");
        QCOMPARE(composed.payload.bytes.isEmpty(), !composed.reason.isEmpty());
    }

    void faultOfAPart()
    {
        const DeckSlide slide = slideOf(1, {{0, 1, false, 1}});
        SlideParts parts = partsOf(slide, empty(kPaper));
        ComposedSlide composed;
        const auto failAt = [](const Draw &draw, const QColor &failing) -> Draw {
            return [=](int page, const QColor &paper, QImage &image) {
                return paper == failing ? QStringLiteral("damaged") : draw(page, paper, image);
            };
        };
        parts.background = failAt(drawBackground, Qt::white);
        QCOMPARE(composeSlide(parts, composed), QStringLiteral("damaged"));
        parts.background = drawBackground;
        for (const QColor paper : {Qt::white, Qt::yellow}) {
            parts.layer = failAt(drawLayer, paper);
            QCOMPARE(composeSlide(parts, composed), QStringLiteral("damaged"));
        }
        QVERIFY(composed.payload.bytes.isEmpty());
    }

    void tooManyParts_data()
    {
        QTest::addColumn<int>("layers");
        QTest::addColumn<int>("effects");
        QTest::addColumn<int>("number");
        QTest::newRow("layers") << 65536 << 1 << 0;
        QTest::newRow("effects") << 1 << 32768 << 0;
        QTest::newRow("pages") << 1 << 1 << 65536;
    }

    void tooManyParts()
    {
        QFETCH(int, layers);
        QFETCH(int, effects);
        const DeckSlide slide =
            slideOf(layers, std::vector<PlannedEffect>(static_cast<size_t>(effects)));
        const QImage whole = empty(kPaper);
        ComposedSlide composed;
        const SlideParts parts = partsOf(slide, whole);
        QFETCH(int, number);
        QCOMPARE(composeSlide({slide, number, whole, parts.background, parts.layer, 90}, composed),
                 QString());
        QCOMPARE(composed.reason,
                 QStringLiteral("it has more parts than slide animation data can number"));
    }
};

QTEST_GUILESS_MAIN(TestSlideComposer)
#include "tst_slidecomposer.moc"
