#include "SampleDeck.h"

#include <QtTest>

#include <cstdlib>

namespace {

/// Those lines that are about the page.
QByteArrayList linesOf(int page, const QByteArray &hashes)
{
    const QByteArray start = "page " + QByteArray::number(page) + ' ';
    QByteArrayList lines;
    for (const QByteArray &line : hashes.split('\n')) {
        if (line.startsWith(start))
            lines << line;
    }
    return lines;
}

/// The largest difference of a colour of two pictures of the same size.
int difference(const QImage &one, const QImage &other)
{
    int most = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            for (const int change : {qAlpha(a) - qAlpha(b), qRed(a) - qRed(b),
                                     qGreen(a) - qGreen(b), qBlue(a) - qBlue(b)})
                most = qMax(most, std::abs(change));
        }
    }
    return most;
}

} // namespace

/// The sample deck, built and played by docpage.
class TestDocpageSample : public QObject
{
    Q_OBJECT

private:
    Workplace place;
    QByteArray known;

    void build(const QString &deck, const char *folder)
    {
        const Outcome built = place.run({text("build"), deck, text("-o"), text(folder)});
        QCOMPARE(built.err, QByteArray());
        QCOMPARE(built.status, 0);
    }

    QByteArray play(const QString &line)
    {
        const Outcome played = place.run(line.split(QLatin1Char(' ')));
        return played.status == 0 ? played.out : played.err;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QFile file(QStringLiteral(SAMPLE_HASHES));
        QVERIFY(file.open(QIODevice::ReadOnly));
        known = file.readAll();
        writeOpaqueSample(place);
        build(text("deck.json"), "opaque");
        build(QStringLiteral(SAMPLE_DECK), "deck");
    }

    // Every pixel is the same on all processors and at any optimisation, where libjpeg-turbo
    // decodes the pictures in JPG.
    void frames_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("frames");
        QTest::newRow("sea") << 0 << 6;
        QTest::newRow("cause") << 1 << 13;
        QTest::newRow("phases") << 2 << 11;
        QTest::newRow("harbour") << 3 << 27;
    }

    void frames()
    {
        QFETCH(int, page);
        const QByteArray played =
            play(QStringLiteral("play opaque -o frames%1 --fps 5 --hashes --page %1").arg(page));
        QCOMPARE(linesOf(page, played), linesOf(page, known));
        QTEST(linesOf(page, played).size(), "frames");
    }

    // With an alpha channel, as pictures with a palette have it.
    void backgroundsWithAlpha_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("frames");
        QTest::newRow("cause") << 1 << 5;
        QTest::newRow("phases") << 2 << 5;
    }

    void backgroundsWithAlpha()
    {
        QFETCH(int, page);
        QFETCH(int, frames);
        for (const char *deck : {"deck", "opaque"}) {
            const QString line = QStringLiteral("play %1 -o %1%2 --fps 1 --page %2");
            QCOMPARE(play(line.arg(text(deck)).arg(page)), QByteArray::number(frames) +
                                                               " frames in " + deck +
                                                               QByteArray::number(page) + '\n');
        }
        for (int i = 0; i < frames; ++i) {
            const QString name =
                QStringLiteral("%1/page_%1-frame_%2.png").arg(page).arg(i, 5, 10, QLatin1Char('0'));
            const QImage frame(place.path(text("deck") + name));
            const QImage opaque(place.path(text("opaque") + name));
            QCOMPARE(frame.size(), QSize(1280, 720));
            QCOMPARE(opaque.size(), QSize(1280, 720));
            const int most = difference(frame, opaque);
            QVERIFY2(most <= 1, qPrintable(QString::number(most)));
        }
    }
};

QTEST_GUILESS_MAIN(TestDocpageSample)
#include "tst_docpage_sample.moc"
