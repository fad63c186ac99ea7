#include "AnimModel.h"
#include "PageFiles.h"
#include "tools/docpage/ContactSheet.h"
#include "tools/docpage/FrameHash.h"
#include "tools/docpage/PictureFault.h"
#include "tools/docpage/SlideFrames.h"

#include <QtTest>

using namespace AnimModel;

namespace {

/// The beginning of a grey picture, which announces its size.
QByteArray announcing(int width, int height)
{
    return "P5 " + QByteArray::number(width) + ' ' + QByteArray::number(height) + " 255\n";
}

QImage imageOf(QImage::Format format, QRgb left, QRgb right)
{
    QImage image(2, 1, format);
    auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(0)); // as they are
    pixels[0] = left;
    pixels[1] = right;
    return image;
}

} // namespace

Q_DECLARE_METATYPE(QImage::Format)

/// What docpage plays frames with.
class TestDocpageFrames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frameCounts_data()
    {
        QTest::addColumn<qint64>("frames");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("fault");
        const auto row = [](qint64 frames, QSize size, const char *fault) {
            QTest::addRow("%lld of %d x %d", frames, size.width(), size.height())
                << frames << size << QString::fromLatin1(fault);
        };
        row(1, {20, 4}, "");
        row(100000, {20, 4}, "");
        row(100001, {20, 4}, "too long: 100001 frames");
        row(Q_INT64_C(9000000000000000000), {20, 4}, "too long: 9000000000000000000 frames");
        row(33140, {1920, 1080}, "");
        row(33141, {1920, 1080}, "too long: 33141 frames of 1920 x 1080 pixels");
        row(65536, {1024, 1024}, ""); // all that there may be
        row(65537, {1024, 1024}, "too long: 65537 frames of 1024 x 1024 pixels");
        row(256, {16384, 16384}, "");
        row(257, {16384, 16384}, "too long: 257 frames of 16384 x 16384 pixels");
    }

    void frameCounts()
    {
        QFETCH(qint64, frames);
        QFETCH(QSize, size);
        QTEST(frameCountFault(frames, size), "fault");
    }

    void longSlides()
    {
        const QByteArray background = PageFiles::picture(Qt::white, "PNG", {20, 4});
        const SlideFrames most(
            modelBytes({newPage({}, newEffects("click 3999.92"), background, 0)}), 0, 25);
        QCOMPARE(most.fault(), QString());
        QCOMPARE(most.count(), qint64(100000));
        const SlideFrames more(
            modelBytes({newPage({}, newEffects("click 3999.96"), background, 0)}), 0, 25);
        QCOMPARE(more.fault(), QStringLiteral("too long: 100001 frames"));
    }

    void labels()
    {
        QCOMPARE(Frame().label(), QStringLiteral("home"));
        QCOMPARE((Frame{1, 0, {}}.label()), QStringLiteral("step 1, 0 ms"));
        QCOMPARE((Frame{12, 4294967295U, {}}.label()), QStringLiteral("step 12, 4294967295 ms"));
    }

    void thinnedSheets_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<qint64>("taken");
        QTest::newRow("1") << qint64(1) << qint64(1);
        QTest::newRow("2") << qint64(2) << qint64(2);
        QTest::newRow("399") << qint64(399) << qint64(399);
        QTest::newRow("400") << qint64(400) << qint64(400);
        QTest::newRow("401: every second one") << qint64(401) << qint64(201);
        QTest::newRow("402: and the last one") << qint64(402) << qint64(202);
        QTest::newRow("799") << qint64(799) << qint64(400);
        QTest::newRow("800: every third one") << qint64(800) << qint64(268);
        QTest::newRow("1198") << qint64(1198) << qint64(400);
        QTest::newRow("100000") << qint64(100000) << qint64(400);
    }

    void thinnedSheets()
    {
        QFETCH(qint64, count);
        qint64 taken = 0;
        for (qint64 i = 0; i < count; ++i)
            taken += ContactSheet::takes(i, count) ? 1 : 0;
        QTEST(taken, "taken");
        QVERIFY(ContactSheet::takes(0, count));
        QVERIFY(ContactSheet::takes(count - 1, count));
    }

    void sheetColumns_data()
    {
        QTest::addColumn<int>("pictures");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("rows");
        const auto row = [](int pictures, int columns, int rows) {
            QTest::addRow("%d", pictures) << pictures << columns << rows;
        };
        row(1, 1, 1);
        row(2, 2, 1);
        row(4, 2, 2);
        row(5, 3, 2);
        row(9, 3, 3);
        row(10, 4, 3);
        row(100, 10, 10);
        row(101, 10, 11);
    }

    void sheetColumns()
    {
        QFETCH(int, pictures);
        QFETCH(int, columns);
        QFETCH(int, rows);
        QImage image(240, 10, QImage::Format_RGB32);
        image.fill(Qt::white);
        ContactSheet sheet;
        QVERIFY(sheet.image().isNull());
        for (int i = 0; i < pictures; ++i)
            sheet.add(image, QString());
        QCOMPARE(sheet.image().size(), QSize(columns * 252 + 12, rows * 44 + 12));
    }

    // One black column of ten: each pixel of the small picture has as much of it.
    void sheetsAreSmooth()
    {
        QImage image(2400, 100, QImage::Format_RGB32);
        image.fill(Qt::white);
        for (int x = 0; x < image.width(); x += 10) {
            for (int y = 0; y < image.height(); ++y)
                image.setPixel(x, y, 0xFF000000);
        }
        ContactSheet sheet;
        sheet.add(image, QString());
        const QImage small = sheet.image().copy(12, 12, 240, 10);
        for (int x = 0; x < 240; ++x) {
            const int grey = qGray(small.pixel(x, 5));
            QVERIFY2(grey >= 227 && grey <= 232, qPrintable(QString::number(grey)));
        }
    }

    void extremeSizes_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSize>("small");
        QTest::newRow("flat") << QSize(4000, 1) << QSize(240, 1);
        QTest::newRow("narrow") << QSize(1, 4000) << QSize(1, 240);
        QTest::newRow("small") << QSize(1, 1) << QSize(240, 240);
    }

    void extremeSizes()
    {
        QFETCH(QSize, size);
        QFETCH(QSize, small);
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        ContactSheet sheet;
        sheet.add(image, QString());
        QCOMPARE(sheet.image().size(), QSize(264, small.height() + 46));
        QImage all(small, QImage::Format_RGB32);
        all.fill(Qt::red);
        QCOMPARE(sheet.image().copy(QRect({12, 12}, small)), all);
    }

    void hashes_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<QByteArray>("hash");
        // 00 00 ff 80 56 34 12 00
        QTest::newRow("translucent")
            << imageOf(QImage::Format_ARGB32, 0x80FF0000, 0x00123456)
            << QByteArray("bbbe934e427f315ccc6dce411d7fb8daee3fbd3e15a434a0a3bc74475f50bd06");
        // 00 00 ff ff 56 34 12 ff
        QTest::newRow("without alpha, whose bits may be any")
            << imageOf(QImage::Format_RGB32, 0x00FF0000, 0x7F123456)
            << QByteArray("c4f1de2f8da0a47dac22437311e29643a30c3cba0e87d13e5aa1e895957e6bc6");
        // 00 00 80 80 56 34 12 ff
        QTest::newRow("premultiplied")
            << imageOf(QImage::Format_ARGB32_Premultiplied, 0x80800000, 0xFF123456)
            << QByteArray("8423f351fedf97674edcf35194e73e6f0b10f1eec44b378688f5574caac5c1a9");
    }

    void hashes()
    {
        QFETCH(QImage, image);
        QTEST(frameHash(image), "hash");
    }

    void hashedFormats_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<bool>("isHashed");
        QTest::newRow("RGB32") << QImage::Format_RGB32 << true;
        QTest::newRow("ARGB32") << QImage::Format_ARGB32 << true;
        QTest::newRow("premultiplied") << QImage::Format_ARGB32_Premultiplied << true;
        QTest::newRow("other order") << QImage::Format_RGBX8888 << false;
        QTest::newRow("other order, alpha") << QImage::Format_RGBA8888 << false;
        QTest::newRow("10 bits") << QImage::Format_RGB30 << false;
        QTest::newRow("16 bits") << QImage::Format_RGB16 << false;
        QTest::newRow("64 bits") << QImage::Format_RGBA64 << false;
        QTest::newRow("palette") << QImage::Format_Indexed8 << false;
        QTest::newRow("none") << QImage::Format_Invalid << false;
    }

    void hashedFormats()
    {
        QFETCH(QImage::Format, format);
        QTEST(isQRgbFormat(format), "isHashed");
    }

    void pictureSizes()
    {
        QCOMPARE(pictureSizeFault(announcing(16384, 16384)), QString());
        QCOMPARE(pictureSizeFault(announcing(16385, 16384)),
                 QStringLiteral("picture too large: 16385 x 16384 pixels"));
        QCOMPARE(pictureFault(announcing(16385, 16384)),
                 QStringLiteral("picture too large: 16385 x 16384 pixels"));
        QCOMPARE(pictureSizeFault("text"), QString());
    }

    void slideFaults_data()
    {
        QTest::addColumn<QByteArray>("background");
        QTest::addColumn<QByteArray>("picture"); // of shapes 7 and 65535
        QTest::addColumn<QString>("fault");
        const auto row = [](const char *name, const QByteArray &background,
                            const QByteArray &picture, const char *fault) {
            QTest::newRow(name) << background << picture << QString::fromLatin1(fault);
        };
        const QByteArray good = PageFiles::picture(Qt::red, "PNG");
        row("good", good, good, "");
        row("another format", PageFiles::picture(Qt::red, "BMP"),
            PageFiles::picture(Qt::red, "PPM"), "");
        row("no pictures of shapes", good, {}, "");
        row("no background", {}, good, "page 0 has no background");
        row("background just too large", announcing(16385, 16384), good,
            "background: picture too large: 16385 x 16384 pixels");
        row("shape just too large", good, announcing(16384, 16385),
            "picture of shape 7: picture too large: 16384 x 16385 pixels");
        // 2^28 pixels in all: only then they are decoded.
        row("the most pixels", announcing(8192, 16384), announcing(8192, 8192),
            "background: neither a JPG nor a PNG picture");
        row("one pixel more", announcing(1, 1), announcing(8192, 16384),
            "pictures too large: 268435457 pixels");
        row("one column more", announcing(8192, 16384), announcing(8193, 8192),
            "pictures too large: 268451840 pixels");
        row("much more", announcing(16384, 16384), announcing(16384, 16384),
            "pictures too large: 805306368 pixels");
    }

    void slideFaults()
    {
        QFETCH(QByteArray, background);
        QFETCH(QByteArray, picture);
        const QByteArray model = modelBytes(
            {newPage({newShape(7, 0, 0, 1, 1, picture), newShape(65535, 0, 0, 1, 1, picture)}, {},
                     background, 0)});
        QTEST(slideFault(model, 0), "fault");
    }

    // The player would take the low 16 bits.
    void pageNumbers()
    {
        const QByteArray good = PageFiles::picture(Qt::red, "PNG");
        const QByteArray model =
            modelBytes({newPage({}, {}, good, 0), newPage({}, {}, good, 65535)});
        QCOMPARE(slideFault(model, 0), QString());
        QCOMPARE(slideFault(model, 65535), QString());
        QCOMPARE(slideFault(model, 65536),
                 QStringLiteral("holds no page 65536; its pages: 0, 65535"));
        QCOMPARE(slideFault(model, 4294967295U),
                 QStringLiteral("holds no page 4294967295; its pages: 0, 65535"));
        QCOMPARE(SlidePlayer(model, 65536).fault(), slideFault(model, 65536));
    }
};

QTEST_MAIN(TestDocpageFrames)
#include "tst_docpage_frames.moc"
