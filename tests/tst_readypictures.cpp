#include "pptanim/ReadyPictures.h"

#include <QTest>

#include <algorithm>
#include <vector>

namespace {

constexpr QImage::Format kPlain = QImage::Format_RGB32;
constexpr QImage::Format kPremultiplied = QImage::Format_ARGB32_Premultiplied;

// A picture drawn in letters: # is solid, + nearly, and nothing of . is seen.
QImage drawn(const QStringList &lines, QImage::Format format = QImage::Format_ARGB32)
{
    QImage image(lines.first().size(), lines.size(), QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QChar letter = lines[y][x];
            const int alpha = letter == QLatin1Char('#')   ? 0xFF
                              : letter == QLatin1Char('+') ? 0xFE
                                                           : 0;
            image.setPixel(x, y, qRgba(200, 100, 50, alpha));
        }
    }
    return image.convertToFormat(format);
}

/// The same in the middle of memory that looks solid, for whoever looks beyond.
class Framed
{
public:
    explicit Framed(const QImage &image)
        : m_memory(size_t(image.width() + 2 * kMargin) * size_t(image.height() + 2 * kMargin),
                   0xFFFFFFFF)
    {
        const int width = image.width() + 2 * kMargin;
        QRgb *begin = m_memory.data() + kMargin * width + kMargin;
        for (int y = 0; y < image.height(); ++y)
            std::copy_n(reinterpret_cast<const QRgb *>(image.constScanLine(y)), image.width(),
                        begin + y * width);
        picture = QImage(reinterpret_cast<const uchar *>(begin), image.width(), image.height(),
                         width * int(sizeof(QRgb)), image.format());
    }
    Q_DISABLE_COPY_MOVE(Framed)

    QImage picture;

private:
    static constexpr int kMargin = 4;
    std::vector<QRgb> m_memory;
};

} // namespace

/// The pictures that are painted in the place of the decoded ones.
class ReadyPicturesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void solidPart_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QRect>("solid");
        const auto row = [](const char *name, const char *lines, QRect solid) {
            QTest::newRow(name) << QString::fromLatin1(lines).split(QLatin1Char(' ')) << solid;
        };
        row("one pixel", "#", {0, 0, 1, 1});
        row("one that is seen through", ".", {});
        row("nearly solid", "+", {});
        row("all", "##### ##### #####", {0, 0, 5, 3});
        row("all, of even sizes", "#### ####", {0, 0, 4, 2});
        row("nothing", "..... ..... .....", {});
        row("a frame", ".#### #...# #...# #...# #####", {});
        row("round corners", ".####. ###### ###### .####.", {1, 0, 4, 4});
        row("round and wide", "..##.. ###### ###### ..##..", {0, 1, 6, 2});
        row("as large, but narrower", ".##. #### ....", {0, 1, 4, 1});
        row("a soft edge", "+++++ +###+ +###+ +###+ +++++", {1, 1, 3, 3});
        row("one line wider than the middle", "####### ..###.. #######", {2, 0, 3, 3});
        row("the upper half", "#### #### .... ....", {});
        row("down to the middle", "#### #### #### ....", {0, 1, 4, 2});
        row("below it only", ".... .... #### ####", {0, 2, 4, 1});
        row("a line more above than below", "... ### ### ### ### ...", {0, 1, 3, 4});
        row("two lines, the upper one", "# .", {});
        row("two lines, the lower one", ". #", {0, 1, 1, 1});
        row("left of the middle", "##...", {0, 0, 2, 1});
        row("up to the middle", "#.... #.... #....", {});
        row("right of the middle", "..###", {2, 0, 3, 1});
        row("a gap left of it", "#.###", {2, 0, 3, 1});
        row("a gap right of it", "###.#", {0, 0, 3, 1});
        row("a gap in the middle", "##### ##### ##.## ##### #####", {0, 0, 2, 5});
        row("narrower to the left", "..### ##### ..###", {2, 0, 3, 3});
        row("narrower to the right", "###.. ##### ###..", {0, 0, 3, 3});
    }
    void solidPart()
    {
        QFETCH(QStringList, lines);
        QFETCH(QRect, solid);
        for (const QImage::Format format : {QImage::Format_ARGB32, kPremultiplied}) {
            ReadyPictures pictures;
            const Framed framed(drawn(lines, format));
            QCOMPARE(pictures.of(framed.picture).solid, solid);
        }
    }

    // Whatever its fourth byte is.
    void opaqueFormat()
    {
        QImage image(3, 2, kPlain);
        for (int y = 0; y < 2; ++y)
            std::fill_n(reinterpret_cast<QRgb *>(image.scanLine(y)), 3, 0x00102030U);
        ReadyPictures pictures;
        const ReadyPictures::Picture &ready = pictures.of(image);
        QCOMPARE(ready.solid, QRect(0, 0, 3, 2));
        QCOMPARE(ready.image.cacheKey(), image.cacheKey());
    }

    void format_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<QImage::Format>("format");
        const QStringList solid{QStringLiteral("##"), QStringLiteral("##")};
        const QStringList soft{QStringLiteral("##"), QStringLiteral("#+")};
        QTest::newRow("solid") << drawn(solid) << kPlain;
        QTest::newRow("solid, premultiplied") << drawn(solid, kPremultiplied) << kPlain;
        QTest::newRow("soft") << drawn(soft) << kPremultiplied;
        QTest::newRow("soft, premultiplied") << drawn(soft, kPremultiplied) << kPremultiplied;
    }
    void format()
    {
        QFETCH(QImage, image);
        QFETCH(QImage::Format, format);
        ReadyPictures pictures;
        const QImage ready = pictures.of(image).image;
        QCOMPARE(ready.format(), format);
        QCOMPARE(ready, image.convertToFormat(format));
    }

    void eachIsMadeOnce()
    {
        const QImage image = drawn({QStringLiteral("#.")});
        const QImage other = drawn({QStringLiteral(".#")});
        ReadyPictures pictures;
        const qint64 made = pictures.of(image).image.cacheKey();
        QCOMPARE(pictures.of(other).solid, QRect(1, 0, 1, 1));
        QCOMPARE(pictures.of(image).image.cacheKey(), made);
        pictures.clear();
        QVERIFY(pictures.of(image).image.cacheKey() != made);
    }
};

QTEST_APPLESS_MAIN(ReadyPicturesTest)
#include "tst_readypictures.moc"
