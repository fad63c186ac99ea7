#include "AnimModel.h"
#include "SampleDeck.h"
#include "emfdeal/EmfDeal.h"

#include <QPainter>
#include <QtTest>

namespace {

/// Paints the shapes one by one, each in its place, as any program would with the same pictures.
class PlacePainter : public AnimModel::OpenPlayer
{
public:
    QImage plainFrame()
    {
        QImage frame = decoded(curPage->pageImage);
        QPainter painter(&frame);
        QList<ShapeAnimDat *> visible;
        CoverShapes(shapeAnimDats, visible);
        for (ShapeAnimDat *entry : qAsConst(visible)) {
            QRect rest = GetShapeOrgRect(entry->shape);
            const QRect place =
                entry->drawState == DRAW_MOVE ? GetAnimCurretRect(*entry, rest) : rest;
            painter.drawImage(place.topLeft(), decoded(entry->shape->picDat));
        }
        return frame;
    }

private:
    // The cache keeps 32 bits a pixel.
    static QImage decoded(const QByteArray &bytes)
    {
        const QImage image = QImage::fromData(bytes);
        return image.format() == QImage::Format_RGB32
                   ? image
                   : image.convertToFormat(QImage::Format_ARGB32);
    }
};

} // namespace

/// The frames of the sample deck as it stands. Onto the backgrounds with an alpha channel (palettes
/// have one) Qt paints a level lighter or darker on another processor, so that they have no hash;
/// but it does so for everybody on that processor.
class TestSamplePaint : public QObject
{
    Q_OBJECT

private:
    Workplace place;

private Q_SLOTS:
    void initTestCase()
    {
        const Outcome built =
            place.run({text("build"), QStringLiteral(SAMPLE_DECK), text("-o"), text("pages")});
        QCOMPARE(built.err, QByteArray());
        QCOMPARE(built.status, 0);
    }

    void frames_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<unsigned int>("steps");
        QTest::newRow("sea") << 0 << QImage::Format_RGB32 << 1U;
        QTest::newRow("cause") << 1 << QImage::Format_ARGB32 << 2U;
        QTest::newRow("phases") << 2 << QImage::Format_ARGB32 << 2U;
        QTest::newRow("harbour") << 3 << QImage::Format_RGB32 << 3U;
    }

    void frames()
    {
        QFETCH(int, page);
        QByteArray model;
        QCOMPARE(EmfDeal::decodeEmf(place.path(QStringLiteral("pages/page_%1").arg(page)), model),
                 3);
        PlacePainter player;
        QVERIFY(player.Init(page, model, 25));
        player.SetCachPic(true);
        QTEST(player.GetImg().format(), "format");
        QTEST(player.GetStepCount(), "steps");
        for (unsigned int step = 0; step <= player.GetStepCount(); ++step) {
            for (unsigned int ms = 0; ms <= player.GetStepDuration(step); ms += 120) {
                player.SetAnimStep(step);
                player.SetAnimPassedDuration(ms);
                const QImage frame = player.GetImg();
                QVERIFY2(frame == player.plainFrame(),
                         qPrintable(QStringLiteral("step %1, %2 ms").arg(step).arg(ms)));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestSamplePaint)
#include "tst_samplepaint.moc"
