#include "SampleDeck.h"

#include <QtTest>

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
};

QTEST_GUILESS_MAIN(TestDocpageSample)
#include "tst_docpage_sample.moc"
