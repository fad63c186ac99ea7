#include "tools/docimport/deck/BinaryData.h"
#include "tools/docimport/deck/XmlFile.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QByteArray kProlog = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

/// Reads XML, with its pictures laid aside, and writes it again.
class RoundTrip
{
public:
    QByteArray of(QByteArray xml)
    {
        QBuffer input(&xml);
        input.open(QIODevice::ReadOnly);
        between = m_pictures.takeFrom(input);
        QByteArray written;
        QBuffer output(&written);
        output.open(QIODevice::WriteOnly);
        XmlWriter writer(output, m_pictures);
        writer.write(readXml(between));
        fault = writer.finish();
        return written;
    }

    QByteArray between; ///< the text that was read, without the pictures
    QString fault;

private:
    QTemporaryDir m_dir;
    BinaryData m_pictures{m_dir.filePath(QStringLiteral("pictures"))};
};

QString faultOf(const QByteArray &xml)
{
    try {
        readXml(xml);
    } catch (const XmlFault &fault) {
        return fault.text;
    }
    return {};
}

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

} // namespace

/// Flat XML: as it is read, it is written.
class TestDeckXml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesWhatItRead_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QByteArray>("written"); // behind the prolog; empty: the same

        QTest::newRow("elements in elements")
            << QByteArray("<a><b/><c><d/></c></a>") << QByteArray();
        QTest::newRow("names with prefixes, declared anywhere")
            << QByteArray("<x:a xmlns:x=\"u\" x:b=\"c\"><y:d xmlns:y=\"v\"/></x:a>")
            << QByteArray();
        QTest::newRow("order of attributes")
            << QByteArray("<a z=\"1\" b=\"2\" y=\"3\"/>") << QByteArray();
        QTest::newRow("a blank between two words")
            << QByteArray("<p><s>one</s> <s>two</s></p>") << QByteArray();
        QTest::newRow("white space between elements")
            << QByteArray("<a>\n <b/>\n\t<c/>\n</a>") << QByteArray();
        QTest::newRow("reserved characters")
            << QByteArray("<a b=\"&lt;&amp;&quot;\">&lt;&amp;</a>") << QByteArray();
        QTest::newRow("a line end in an attribute")
            << QByteArray("<a b=\"one&#10;two\"/>") << QByteArray();
        QTest::newRow("umlauts, and characters beyond 16 bits")
            << QByteArray("<a b=\"\xc3\xa4\">\xe2\x80\x99\xf0\x9f\x98\x80</a>") << QByteArray();
        QTest::newRow("numbered characters")
            << QByteArray("<a>&#228;&#x2019;</a>") << QByteArray("<a>\xc3\xa4\xe2\x80\x99</a>");
        QTest::newRow("text in parts: in one")
            << QByteArray("<a>one<![CDATA[<two>]]>three<!-- no --></a>")
            << QByteArray("<a>one&lt;two&gt;three</a>");
        QTest::newRow("comments and instructions: left out")
            << QByteArray("<!-- no --><a><?no no?><b/></a>") << QByteArray("<a><b/></a>");
    }

    void writesWhatItRead()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QByteArray, written);
        RoundTrip trip;
        QCOMPARE(trip.of(xml), kProlog + (written.isEmpty() ? xml : written) + "\n");
        QCOMPARE(trip.fault, QString());
    }

    void laysPicturesAside()
    {
        const QByteArray large((3 << 20) + 1, 'x'); // a byte more than is read at a time
        const QByteArray xml = "<a><office:binary-data>" + large +
                               "</office:binary-data><b>text</b><c><office:binary-data>"
                               "eHl6</office:binary-data></c>"
                               "<office:binary-data></office:binary-data></a>";
        RoundTrip trip;
        QCOMPARE(trip.of(xml), kProlog + xml + "\n");
        QCOMPARE(trip.between,
                 QByteArray("<a><office:binary-data>0</office:binary-data><b>text</b><c>"
                            "<office:binary-data>1</office:binary-data></c>"
                            "<office:binary-data>2</office:binary-data></a>"));
    }

    // A megabyte is read at a time.
    void findsPicturesWhereverTheReadingIsCut()
    {
        const QByteArray picture = "<office:binary-data>QUJD</office:binary-data>";
        for (int shift = 0; shift <= picture.size(); ++shift) {
            const QByteArray xml =
                "<a>" + QByteArray((1 << 20) - 3 - shift, 'x') + picture + picture + "</a>";
            RoundTrip trip;
            QVERIFY2(trip.of(xml) == kProlog + xml + "\n", qPrintable(QString::number(shift)));
            QCOMPARE(trip.between.size(), xml.size() - 2 * 3); // three digits less each
        }
    }

    void refusesMoreTextThanMemoryShouldHold()
    {
        const QByteArray picture =
            "<office:binary-data>" + QByteArray(8 << 20, 'x') + "</office:binary-data>";
        const auto faultOfText = [&](int size) {
            QByteArray xml = QByteArray(size, 'x') + picture;
            QBuffer input(&xml);
            input.open(QIODevice::ReadOnly);
            QTemporaryDir dir;
            try {
                BinaryData(dir.filePath(QStringLiteral("pictures"))).takeFrom(input);
            } catch (const XmlFault &fault) {
                return fault.text;
            }
            return QString();
        };
        QCOMPARE(faultOfText(39 << 20), QString());
        QCOMPARE(faultOfText(41 << 20), QStringLiteral("more than 40 MiB of text"));
    }

    void ownsUpToAPictureThatIsLost()
    {
        QByteArray written;
        QBuffer output(&written);
        output.open(QIODevice::WriteOnly);
        QTemporaryDir dir;
        BinaryData none(dir.filePath(QStringLiteral("pictures")));
        XmlWriter writer(output, none);
        writer.write(readXml("<office:binary-data >0</office:binary-data >"));
        QCOMPARE(writer.finish(), QStringLiteral("a picture of the deck is lost"));
    }

    void tellsWhenThereIsNoSpace()
    {
        QFile full(QStringLiteral("/dev/full"));
        QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QTemporaryDir dir;
        BinaryData none(dir.filePath(QStringLiteral("pictures")));
        XmlWriter writer(full, none);
        writer.write(readXml("<a/>"));
        QCOMPARE(writer.finish(), QStringLiteral("No space left on device"));
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("fault"); // empty: in Qt's words

        QTest::newRow("nothing") << QByteArray() << QString();
        QTest::newRow("other data") << QByteArray("PK\x03\x04 zip") << QString();
        QTest::newRow("cut") << QByteArray("<a>\n<b>") << QString();
        QTest::newRow("two elements") << QByteArray("<a/><b/>") << QString();
        QTest::newRow("another encoding") << QByteArray("<a>\xe4</a>") << QString();
        QTest::newRow("deep") << nested(251)
                              << QStringLiteral("line 1: elements are nested too deep");
        QTest::newRow("very deep")
            << nested(1000000) << QStringLiteral("line 1: elements are nested too deep");
        QTest::newRow("a document type") << QByteArray("<!DOCTYPE a><a/>")
                                         << QStringLiteral("line 1: a document type is declared");
        QTest::newRow("entities that grow")
            << QByteArray("<!DOCTYPE a [<!ENTITY b \"bbbbbbbbbb\"><!ENTITY c \"&b;&b;&b;&b;&b;\">"
                          "]>\n<a>&c;&c;&c;</a>")
            << QStringLiteral("line 1: a document type is declared");
        QTest::newRow("an unknown entity") << QByteArray("<a>&b;</a>") << QString();
    }

    void refuses()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QString, fault);
        const QString told = faultOf(xml);
        if (fault.isEmpty())
            QVERIFY2(told.startsWith(QStringLiteral("line ")) && told.size() > 10,
                     qPrintable(told));
        else
            QCOMPARE(told, fault);
    }

    void readsWhatIsAsDeepAsItMayBe() { QCOMPARE(faultOf(nested(250)), QString()); }
};

QTEST_APPLESS_MAIN(TestDeckXml)
#include "tst_deckxml.moc"
