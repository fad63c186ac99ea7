#include "Hex.h"
#include "LargestBlock.h"
#include "TinyPictures.h"
#include "tools/docpage/PictureCheck.h"
#include "tools/docpage/PictureSize.h"

#include <QSize>
#include <QtTest>

#include <cstring>
#include <memory>

namespace {

constexpr int kJpg = 2;
constexpr int kPng = 4;
constexpr int kNone = 5;

const char kNeither[] = "neither a JPG nor a PNG picture";
const char kJpgTruncated[] = "JPG picture is truncated";
const char kPngTruncated[] = "PNG picture is truncated";

// Bytes that end where their memory does, so that a sanitizer sees a read beyond them.
PictureCheck check(const QByteArray &bytes)
{
    const auto size = static_cast<size_t>(bytes.size());
    const std::unique_ptr<char[]> exact(new char[size]);
    std::memcpy(exact.get(), bytes.constData(), size);
    return PictureCheck::of(QByteArray::fromRawData(exact.get(), bytes.size()));
}

// The parts of PNG pictures, each with the checksum that is right for it.
const char kSignature[] = "89 50 4e 47 0d 0a 1a 0a ";
const char kHeader[] =
    "00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 00 3b 96 39 91 ";
const char kPixels[] = "00 00 00 10 49 44 41 54 78 9c 63 f8 cf c0 00 47 0c 38 39 00 f5 31 0b f5 "
                       "35 7b fb 82 ";
const char kEnd[] = "00 00 00 00 49 45 4e 44 ae 42 60 82 ";

QByteArray png(std::initializer_list<const char *> chunks)
{
    QByteArray text = kSignature;
    for (const char *chunk : chunks)
        text += chunk;
    return hex(text);
}

// The parts of JPG pictures.
const char kStart[] = "ff d8 ";
const char kFrame[] = "ff c0 00 0b 08 00 02 00 03 01 01 11 00 ";
const char kScan[] = "ff da 00 08 01 01 00 00 3f 00 12 34 ";
const char kStop[] = "ff d9 ";

QByteArray jpg(std::initializer_list<const char *> segments)
{
    QByteArray text = kStart;
    for (const char *segment : segments)
        text += segment;
    return hex(text);
}

} // namespace

/// Whether picture files are complete, and their size, as told from their bytes.
class TestPictureCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void complete_data();
    void complete();
    void refused_data();
    void refused();
    void everyPrefixIsRefused_data();
    void everyPrefixIsRefused();
    void everyChangedBitOfAPngIsRefused();
    void size_data();
    void size();
};

void TestPictureCheck::complete_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("format");

    const QByteArray tinyPng = TinyPictures::png();
    const QByteArray tinyJpg = TinyPictures::jpg();
    QTest::newRow("PNG") << tinyPng << kPng;
    QTest::newRow("PNG: one byte after the end is ignored") << tinyPng + '\0' << kPng;
    QTest::newRow("PNG: a JPG after the end is ignored") << tinyPng + tinyJpg << kPng;
    QTest::newRow("PNG: chunk that nobody needs")
        << png({kHeader, "00 00 00 03 74 45 58 74 61 00 62 dc 49 a2 3b ", kPixels, kEnd}) << kPng;
    QTest::newRow("PNG: several pixel chunks")
        << png({kHeader, "00 00 00 00 49 44 41 54 35 af 06 1e ", kPixels, kPixels, kEnd}) << kPng;
    QTest::newRow("PNG: end chunk with data")
        << png({kHeader, kPixels, "00 00 00 01 49 45 4e 44 78 8f c4 b6 ef "}) << kPng;

    QTest::newRow("PNG: 1 bits of grey")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 01 00 00 00 00 9c 8f 93 6b ",
                kPixels, kEnd})
        << kPng;
    QTest::newRow("PNG: 2 bits of grey")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 02 00 00 00 00 db 2f e9 bb ",
                kPixels, kEnd})
        << kPng;
    QTest::newRow("PNG: 4 bits of grey")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 04 00 00 00 00 54 6f 1c 1b ",
                kPixels, kEnd})
        << kPng;
    QTest::newRow("PNG: 16 bits of grey")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 10 00 00 00 00 c1 0f 2d 59 ",
                kPixels, kEnd})
        << kPng;
    QTest::newRow("PNG: 16 bits of red, green, blue")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 10 02 00 00 00 6b 06 e5 d2 ",
                kPixels, kEnd})
        << kPng;
    QTest::newRow("PNG: grey with alpha")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 04 00 00 00 1e fd 66 4d ",
                kPixels, kEnd})
        << kPng;
    QTest::newRow("PNG: red, green, blue with alpha")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 06 00 00 00 b4 f4 ae c6 ",
                kPixels, kEnd})
        << kPng;
    QTest::newRow("PNG: interlaced")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 01 4c 91 09 07 ",
                kPixels, kEnd})
        << kPng;
    QTest::newRow("PNG: palette")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 03 00 00 00 83 2a 5e f4 ",
                "00 00 00 03 50 4c 54 45 ff 00 00 19 e2 09 37 ", kPixels, kEnd})
        << kPng;

    QTest::newRow("JPG") << tinyJpg << kJpg;
    QTest::newRow("JPG: one byte after the end is ignored") << tinyJpg + '\xff' << kJpg;
    QTest::newRow("JPG: a second one after the end is ignored") << tinyJpg + tinyJpg << kJpg;
    QTest::newRow("JPG: nothing but frame and scan") << jpg({kFrame, kScan, kStop}) << kJpg;
    QTest::newRow("JPG: several scans, as a progressive one has")
        << jpg({"ff c2 00 0b 08 00 02 00 03 01 01 11 00 ", kScan, kScan, kScan, kStop}) << kJpg;
    QTest::newRow("JPG: tables between scans")
        << jpg({kFrame, kScan, "ff c4 00 04 00 00 ", kScan, kStop}) << kJpg;
    QTest::newRow("JPG: FF in the picture data")
        << jpg({kFrame, kScan, "ff 00 d9 ff 00 ", kStop}) << kJpg;
    QTest::newRow("JPG: restart markers")
        << jpg({kFrame, kScan, "ff d0 12 ff d1 34 ff d7 56 ", kStop}) << kJpg;
    QTest::newRow("JPG: fill bytes before markers")
        << jpg({"ff ff ff ", kFrame, "ff ff ", kScan, "ff ff ff ", kStop}) << kJpg;
    QTest::newRow("JPG: marker that stands alone") << jpg({"ff 01 ", kFrame, kScan, kStop}) << kJpg;
    QTest::newRow("JPG: bytes between segments, which decoders skip")
        << jpg({"00 00 ", kFrame, "00 ", kScan, kStop}) << kJpg;
    QTest::newRow("JPG: end marker within a segment is none")
        << jpg({"ff e1 00 08 ff d8 ff d9 ff d9 ", kFrame, kScan, kStop}) << kJpg;
    QTest::newRow("JPG: segment without content")
        << jpg({"ff fe 00 02 ", kFrame, kScan, kStop}) << kJpg;
    QTest::newRow("JPG: last of the frame headers")
        << jpg({"ff cf 00 0b 08 00 02 00 03 01 01 11 00 ", kScan, kStop}) << kJpg;
}

void TestPictureCheck::complete()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, format);
    const PictureCheck picture = check(bytes);
    QCOMPARE(picture.fault, QString());
    QCOMPARE(int(picture.format), format);
}

void TestPictureCheck::refused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("format");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const QByteArray &bytes, int format, const char *fault) {
        QTest::newRow(name) << bytes << format << QString::fromLatin1(fault);
    };

    row("no bytes", "", kNone, kNeither);
    row("text", "picture", kNone, kNeither);
    row("other picture", "GIF89a", kNone, kNeither);
    row("PNG with its line ends changed", hex("89 50 4e 47 0a 1a 0a"), kNone, kNeither);
    row("page result file", hex("88 88 88 88 01 01 04 00 00 00 01 00 00 00 00"), kNone, kNeither);

    row("PNG: too wide",
        png({"00 00 00 0d 49 48 44 52 80 00 00 00 00 00 00 03 08 02 00 00 00 92 17 bc fc ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (picture size)");
    row("PNG: too high",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 ff ff ff ff 08 02 00 00 00 a4 f4 a0 6e ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (picture size)");
    row("PNG: 7 bits a sample",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 07 00 00 00 00 13 cf 66 cb ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: 4 bits of red, green, blue",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 04 02 00 00 00 fe 66 d4 90 ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: 16 bits into a palette",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 10 03 00 00 00 d3 ba 82 b7 ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: 32 bits of grey",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 20 00 00 00 00 60 2e 95 df ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: no bits",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 00 00 00 00 00 a1 ef ba db ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: kind of colour 1",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 01 00 00 00 29 23 96 7f ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: kind of colour 9",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 09 00 00 00 ec 97 be 90 ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: compression 1",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 02 01 00 00 3a 54 53 a6 ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: filter 1",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 01 00 22 8d 08 d0 ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: interlace 2",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 02 d5 98 58 bd ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: palette missing",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 03 00 00 00 83 2a 5e f4 ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (no palette)");
    row("PNG: palette too late",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 03 00 00 00 83 2a 5e f4 ", kPixels,
             "00 00 00 03 50 4c 54 45 ff 00 00 19 e2 09 37 ", kEnd}),
        kPng, "PNG picture is corrupt (no palette)");
    row("PNG: unknown chunk that is needed",
        png({kHeader, "00 00 00 01 41 42 43 44 78 2a bb 56 c4 ", kPixels, kEnd}), kPng,
        "PNG picture is corrupt (unknown chunk ABCD)");
    row("PNG: nothing after the signature", png({}), kPng, kPngTruncated);
    row("PNG: header missing", png({kPixels, kEnd}), kPng, "PNG picture is corrupt (header)");
    row("PNG: header without data", png({"00 00 00 00 49 48 44 52 a8 a1 ae 0a ", kPixels, kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: header of 12 bytes",
        png({"00 00 00 0c 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 f7 73 29 06 ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: header of 14 bytes",
        png({"00 00 00 0e 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 00 00 55 31 da 66 ",
             kPixels, kEnd}),
        kPng, "PNG picture is corrupt (header)");
    row("PNG: second header", png({kHeader, kHeader, kPixels, kEnd}), kPng,
        "PNG picture is corrupt (header)");
    row("PNG: no width",
        png({"00 00 00 0d 49 48 44 52 00 00 00 00 00 00 00 03 08 02 00 00 00 32 7d 99 eb ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (picture size)");
    row("PNG: no height",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 00 08 02 00 00 00 bd 02 4b 3f ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (picture size)");
    row("PNG: no pixel chunk", png({kHeader, kEnd}), kPng, "PNG picture is corrupt (no pixels)");
    row("PNG: pixel chunk without data",
        png({kHeader, "00 00 00 00 49 44 41 54 35 af 06 1e ", kEnd}), kPng,
        "PNG picture is corrupt (no pixels)");
    row("PNG: end chunk missing", png({kHeader, kPixels}), kPng, kPngTruncated);
    row("PNG: digit in the type of a chunk",
        png({kHeader, "00 00 00 01 49 44 31 54 61 46 7c 44 76 ", kPixels, kEnd}), kPng,
        "PNG picture is corrupt (type of a chunk)");
    row("PNG: line end in the type of a chunk",
        png({kHeader, "00 00 00 01 49 44 0a 54 61 6e 42 4e 07 ", kPixels, kEnd}), kPng,
        "PNG picture is corrupt (type of a chunk)");
    row("PNG: checksum of the header",
        png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 00 3b 96 39 90 ", kPixels,
             kEnd}),
        kPng, "PNG picture is corrupt (checksum of chunk IHDR)");
    row("PNG: checksum of the pixels",
        png({kHeader, "00 00 00 01 49 44 41 54 78 00 00 00 00 ", kEnd}), kPng,
        "PNG picture is corrupt (checksum of chunk IDAT)");
    row("PNG: checksum of the end chunk",
        png({kHeader, kPixels, "00 00 00 00 49 45 4e 44 ae 42 60 83 "}), kPng,
        "PNG picture is corrupt (checksum of chunk IEND)");
    row("PNG: chunk longer than any may be",
        png({kHeader, "80 00 00 00 49 44 41 54 78 00 00 00 00 ", kEnd}), kPng,
        "PNG picture is corrupt (length of chunk IDAT)");
    row("PNG: length of 32 set bits", png({kHeader, "ff ff ff ff 49 44 41 54 78 00 00 00 00 "}),
        kPng, "PNG picture is corrupt (length of chunk IDAT)");
    row("PNG: length that would wrap around to the signature",
        png({kHeader, "ff ff ff db 49 44 41 54 78 00 00 00 00 "}), kPng,
        "PNG picture is corrupt (length of chunk IDAT)");
    row("PNG: longest chunk, not there", png({kHeader, "7f ff ff ff 49 44 41 54 78 00 00 00 00 "}),
        kPng, kPngTruncated);
    row("PNG: chunk one byte longer than the file",
        png({kHeader, kPixels, "00 00 00 01 49 45 4e 44 ae 42 60 82 "}), kPng, kPngTruncated);

    row("JPG: nothing after the start", jpg({}), kJpg, kJpgTruncated);
    row("JPG: an end and nothing else", jpg({kStop}), kJpg,
        "JPG picture is corrupt (no picture data)");
    row("JPG: no scan", jpg({kFrame, kStop}), kJpg, "JPG picture is corrupt (no picture data)");
    row("JPG: no frame", jpg({kScan, kStop}), kJpg,
        "JPG picture is corrupt (picture data without a size)");
    row("JPG: tables are no frame",
        jpg({"ff c4 00 0b 08 00 02 00 03 01 01 11 00 ", "ff c8 00 0b 08 00 02 00 03 01 01 11 00 ",
             "ff cc 00 0b 08 00 02 00 03 01 01 11 00 ", kScan, kStop}),
        kJpg, "JPG picture is corrupt (picture data without a size)");
    row("JPG: no height", jpg({"ff c0 00 0b 08 00 00 00 03 01 01 11 00 ", kScan, kStop}), kJpg,
        "JPG picture is corrupt (picture size)");
    row("JPG: no width", jpg({"ff c0 00 0b 08 00 02 00 00 01 01 11 00 ", kScan, kStop}), kJpg,
        "JPG picture is corrupt (picture size)");
    row("JPG: frame header too short for a size",
        jpg({"ff c0 00 07 08 00 02 00 03 ", kScan, kStop}), kJpg,
        "JPG picture is corrupt (picture size)");
    row("JPG: length 0 of a segment", jpg({"ff e0 00 00 ", kFrame, kScan, kStop}), kJpg,
        "JPG picture is corrupt (length of a segment)");
    row("JPG: length 1 of a segment", jpg({"ff e0 00 01 ", kFrame, kScan, kStop}), kJpg,
        "JPG picture is corrupt (length of a segment)");
    row("JPG: longest segment, not there", jpg({kFrame, "ff e0 ff ff ", kScan, kStop}), kJpg,
        kJpgTruncated);
    row("JPG: segment one byte longer than the file", jpg({kFrame, kScan, "ff e0 00 03 "}), kJpg,
        kJpgTruncated);
    row("JPG: end marker within the last segment", jpg({kFrame, kScan, "ff e0 00 04 ff d9 "}), kJpg,
        kJpgTruncated);
    row("JPG: fill bytes to the end", jpg({kFrame, kScan, "ff ff ff ff "}), kJpg, kJpgTruncated);
    row("JPG: picture data to the end", jpg({kFrame, kScan, "12 34 ff 00 56 "}), kJpg,
        kJpgTruncated);
    row("JPG: begins again before its end", jpg({kFrame, kScan, kStart, kFrame, kScan, kStop}),
        kJpg, "JPG picture is corrupt (a second picture begins within it)");
    row("JPG: marker that does not exist", jpg({kFrame, kScan, "ff 02 00 02 ", kStop}), kJpg,
        "JPG picture is corrupt (unknown marker)");
}

void TestPictureCheck::refused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, format);
    QFETCH(QString, fault);
    const PictureCheck picture = check(bytes);
    QCOMPARE(picture.fault, fault);
    QCOMPARE(int(picture.format), format);
}

void TestPictureCheck::everyPrefixIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("fault");
    const auto rows = [](const char *format, const QByteArray &whole, int told, const char *fault) {
        for (int n = 0; n < whole.size(); ++n)
            QTest::addRow("%s: first %d of %d bytes", format, n, int(whole.size()))
                << whole.left(n) << QString::fromLatin1(n < told ? kNeither : fault);
    };
    rows("PNG", TinyPictures::png(), 8, kPngTruncated);
    rows("JPG", TinyPictures::jpg(), 2, kJpgTruncated);
    rows("JPG of several scans", jpg({kFrame, kScan, "ff 00 ff d0 01 ff ", kScan, kStop}), 2,
         kJpgTruncated);
}

void TestPictureCheck::everyPrefixIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, fault);
    QCOMPARE(check(bytes).fault, fault);
}

void TestPictureCheck::everyChangedBitOfAPngIsRefused()
{
    const QByteArray whole = TinyPictures::png();
    for (int bit = 0; bit < 8 * whole.size(); ++bit) {
        QByteArray changed = whole;
        changed[bit / 8] = static_cast<char>(changed.at(bit / 8) ^ (1 << bit % 8));
        QVERIFY2(!check(changed).fault.isEmpty(), QByteArray::number(bit).constData());
    }
}

void TestPictureCheck::size_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("expected"); // not valid: no picture

    QTest::newRow("PNG") << TinyPictures::png() << QSize(4, 3);
    QTest::newRow("JPG") << TinyPictures::jpg() << QSize(2, 2);
    QTest::newRow("GIF") << hex("47 49 46 38 39 61 02 00 01 00 80 00 00 00 00 00 ff ff ff "
                                "2c 00 00 00 00 02 00 01 00 00 02 02 04 0a 00 3b")
                         << QSize(2, 1);
    QTest::newRow("GIF of no rows: none")
        << hex("47 49 46 38 39 61 02 00 00 00 80 00 00 00 00 00 ff ff ff "
               "2c 00 00 00 00 02 00 00 00 00 02 02 04 0a 00 3b")
        << QSize();
    QTest::newRow("PNG of no columns: none")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 00 00 00 00 03 08 02 00 00 00 32 7d 99 eb ",
                kPixels, kEnd})
        << QSize();
    QTest::newRow("PNG, the largest")
        << png({"00 00 00 0d 49 48 44 52 7f ff ff ff 7f ff ff ff 08 02 00 00 00 9b ab 9c 31 "})
        << QSize(0x7FFFFFFF, 0x7FFFFFFF);
    QTest::newRow("PNG, one column too many: none")
        << png({"00 00 00 0d 49 48 44 52 80 00 00 00 00 00 00 03 08 02 00 00 00 92 17 bc fc "})
        << QSize();
    QTest::newRow("PNG of 7 bits a sample: none")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 07 00 00 00 00 13 cf 66 cb "})
        << QSize();
    QTest::newRow("PNG, header of 12 bytes: none")
        << png({"00 00 00 0c 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 f7 73 29 06 ", kEnd})
        << QSize();
    QTest::newRow("PNG, checksum of the header: none")
        << png({"00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 00 3b 96 39 90 ",
                kPixels, kEnd})
        << QSize();
    QTest::newRow("PNG that does not begin with its header: none")
        << png({"00 00 00 0d 74 45 58 74 00 00 00 04 00 00 00 03 08 02 00 00 00 2d a1 76 98 ",
                kPixels, kEnd})
        << QSize();
    QTest::newRow("PNG, nothing but the header") << png({kHeader}) << QSize(4, 3);
    QTest::newRow("PNG, one byte of the header missing: none")
        << png({kHeader}).chopped(1) << QSize();
    QTest::newRow("PNG, signature alone: none") << png({}) << QSize();
    for (const char *type : {"tEXt", "zTXt", "iTXt", "sPLT", "eXIf"})
        QTest::addRow("PNG with 2 GB of %s, not there", type)
            << png({kHeader, "7f ff ff ff "}) + type + hex("61 00 62 00 00 00 00") << QSize(4, 3);
    QTest::newRow("no picture: none") << QByteArray("no picture") << QSize();
    QTest::newRow("nothing: none") << QByteArray() << QSize();
}

void TestPictureCheck::size()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, expected);
    largestBlock = 0;
    const QSize announced = pictureSize(bytes);
    const size_t largest = largestBlock;
    QVERIFY2(largest < 1 << 20, QByteArray::number(qulonglong(largest)));
    QCOMPARE(announced, expected);
}

QTEST_APPLESS_MAIN(TestPictureCheck)
#include "tst_picturecheck.moc"
