#include "pptanim/RunningFrame.h"

#include <QTest>

namespace {

QImage imageOf(QImage::Format format, qreal ratio = 1)
{
    QImage image(4, 4, format);
    image.setDevicePixelRatio(ratio);
    return image;
}

} // namespace

/// For which scenes there are running frames.
class RunningFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formats_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<bool>("isUsual");
        for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format) {
            QTest::addRow("format %d", format)
                << QImage::Format(format)
                << (format == QImage::Format_RGB32 || format == QImage::Format_ARGB32 ||
                    format == QImage::Format_ARGB32_Premultiplied);
        }
    }
    void formats()
    {
        QFETCH(QImage::Format, format);
        QFETCH(bool, isUsual);
        const QImage image = imageOf(format);
        const QImage plain = imageOf(QImage::Format_RGB32);
        QCOMPARE(RunningFrame::fits({image, {{plain, {}, true}}, 200}), isUsual);
        QCOMPARE(RunningFrame::fits({plain, {{image, {}, true}}, 200}), isUsual);
        QCOMPARE(RunningFrame::fits({plain, {{image, {}, false}, {plain, {}, true}}, 200}),
                 isUsual);
        QCOMPARE(RunningFrame::fits({plain, {{plain, {}, true}, {image, {}, false}}, 200}),
                 isUsual);
    }

    void ratios()
    {
        const QImage image = imageOf(QImage::Format_RGB32, 2);
        const QImage plain = imageOf(QImage::Format_RGB32);
        QVERIFY(!RunningFrame::fits({image, {{plain, {}, true}}, 200}));
        QVERIFY(!RunningFrame::fits({plain, {{image, {}, true}}, 200}));
        QVERIFY(!RunningFrame::fits({plain, {{image, {}, false}, {plain, {}, true}}, 200}));
    }

    void nothingMoves()
    {
        const QImage plain = imageOf(QImage::Format_RGB32);
        QVERIFY(!RunningFrame::fits({plain, {}, 0}));
        QVERIFY(!RunningFrame::fits({plain, {{plain, {}, false}}, 0}));
        QVERIFY(RunningFrame::fits({plain, {{plain, {}, false}, {plain, {}, true}}, 200}));
        QVERIFY(RunningFrame::fits({plain, {{plain, {}, true}, {plain, {}, false}}, 200}));
    }
};

QTEST_APPLESS_MAIN(RunningFrameTest)
#include "tst_runningframe.moc"
