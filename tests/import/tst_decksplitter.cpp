#include "PageFiles.h"
#include "import/FlatDeck.h"
#include "tools/docimport/deck/DeckSplitter.h"

#include <QtTest>

using namespace FlatDeck;

namespace {

/// A deck that is taken apart in a folder of its own.
class Split
{
public:
    explicit Split(const QByteArray &deckXml)
    {
        fault = m_splitter.read(PageFiles::write(m_dir, QStringLiteral("deck.fodp"), deckXml),
                                m_dir.path());
    }

    const std::vector<DeckSlide> &slides() const { return m_splitter.slides(); }

    QString write(const QSet<int> &wanted)
    {
        return m_splitter.write(path("a.fodp"), path("l.fodp"), wanted);
    }

    QByteArray backgrounds() const { return content("a.fodp"); }
    QByteArray layers() const { return content("l.fodp"); }
    bool hasFiles() const { return QFile::exists(path("a.fodp")) || QFile::exists(path("l.fodp")); }

    QString fault;

private:
    QString path(const char *name) const { return m_dir.filePath(QLatin1String(name)); }

    QByteArray content(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }

    QTemporaryDir m_dir;
    DeckSplitter m_splitter;
};

// What is in the first element of this name.
QByteArray inside(const QByteArray &xml, const QByteArray &element)
{
    const int begin = xml.indexOf("<" + element + ">") + element.size() + 2;
    return xml.mid(begin, xml.indexOf("</" + element + ">") - begin);
}

QByteArray pagesOf(const QByteArray &xml)
{
    return inside(xml, "office:presentation");
}

QByteArray stylesOf(const QByteArray &xml)
{
    return inside(xml, "office:automatic-styles");
}

// A page of a layer on paper whose style is the first that is made, and on the next.
QByteArray twice(const QByteArray &content, const QByteArray &white, const QByteArray &yellow)
{
    const QByteArray end = " draw:master-page-name=\"M\">" + content + "</draw:page>";
    return "<draw:page draw:style-name=\"" + white + "\"" + end + "<draw:page draw:style-name=\"" +
           yellow + "\"" + end;
}

QByteArray in(const QByteArray &target)
{
    return click(effect("on-click", "entrance", target));
}

// A shape of shape(), as its copies are.
QByteArray copied(const QByteArray &name, const QByteArray &content = {},
                  const QByteArray &style = "gr1")
{
    const QByteArray tag =
        "<draw:rect draw:name=\"" + name + "\" draw:style-name=\"" + style + "\"";
    return content.isEmpty() ? tag + "/>" : tag + ">" + content + "</draw:rect>";
}

QByteArray paper(const QByteArray &name, const QByteArray &colour)
{
    return "<style:style style:family=\"drawing-page\" style:name=\"" + name +
           "\"><style:drawing-page-properties draw:fill=\"solid\" draw:fill-color=\"" + colour +
           "\" presentation:background-visible=\"true\" "
           "presentation:background-objects-visible=\"false\" "
           "presentation:display-header=\"false\" presentation:display-footer=\"false\" "
           "presentation:display-page-number=\"false\" "
           "presentation:display-date-time=\"false\"/></style:style>";
}

constexpr char kInvisible[] =
    "fo:color=\"#000000\" loext:opacity=\"0%\" fo:background-color=\"transparent\" "
    "fo:text-shadow=\"none\" style:font-relief=\"none\" style:text-underline-style=\"none\" "
    "style:text-overline-style=\"none\" style:text-line-through-style=\"none\" "
    "style:text-line-through-type=\"none\" style:text-emphasize=\"none\" "
    "style:text-outline=\"false\"";

constexpr char kBare[] = "draw:fill=\"none\" draw:stroke=\"none\" draw:shadow=\"hidden\"";

} // namespace

/// A deck is written as two others: what rests, and what moves.
class TestDeckSplitter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesBackgroundsAndLayers()
    {
        Split split(deck(page(shape("a")) + page(shape("b") + shape("c") + shape("d"), in("c")) +
                         page(shape("e") + shape("f"), in("f"))));
        QCOMPARE(split.fault, QString());
        QCOMPARE(split.slides().size(), size_t(3));
        QCOMPARE(split.slides()[0].layers, 0);
        QCOMPARE(split.slides()[1].layers, 2);
        QCOMPARE(split.slides()[1].effects.size(), size_t(1));
        QCOMPARE(split.slides()[1].report.size(), 1);
        QCOMPARE(split.slides()[2].layers, 1);

        QCOMPARE(split.write({0, 1, 2}), QString());
        QCOMPARE(split.slides()[0].backgroundPage, -1);
        QCOMPARE(split.slides()[0].firstLayerPage, -1);
        QCOMPARE(split.slides()[1].backgroundPage, 1);
        QCOMPARE(split.slides()[1].firstLayerPage, 0);
        QCOMPARE(split.slides()[2].backgroundPage, 2);
        QCOMPARE(split.slides()[2].firstLayerPage, 4);
        // The first slide's page is blank: it is there so that the others have their numbers.
        QCOMPARE(pagesOf(split.backgrounds()),
                 QByteArray("<draw:page draw:name=\"slide\" draw:style-name=\"layer1\" "
                            "draw:master-page-name=\"M\"/>"
                            "<draw:page draw:name=\"slide\" draw:style-name=\"dp1\" "
                            "draw:master-page-name=\"M\">") +
                     copied("b") +
                     "</draw:page><draw:page draw:name=\"slide\" draw:style-name=\"dp1\" "
                     "draw:master-page-name=\"M\">" +
                     copied("e") + "</draw:page>");
        QCOMPARE(pagesOf(split.layers()), twice(copied("c"), "layer1", "layer2") +
                                              twice(copied("d"), "layer1", "layer2") +
                                              twice(copied("f"), "layer1", "layer2"));
        for (const QByteArray &xml : {split.backgrounds(), split.layers()})
            QCOMPARE(stylesOf(xml), paper("layer1", "#ffffff") + paper("layer2", "#ffff00"));
    }

    void writesOnlyWhatIsWanted()
    {
        Split split(deck(page(shape("a"), in("a")) + page(shape("b"), in("b"))));
        QCOMPARE(split.write({1}), QString());
        QCOMPARE(split.slides()[0].backgroundPage, -1);
        QCOMPARE(split.slides()[0].firstLayerPage, -1);
        QCOMPARE(split.slides()[0].layers, 1);
        QCOMPARE(split.slides()[1].backgroundPage, 1);
        QCOMPARE(split.slides()[1].firstLayerPage, 0);
        QCOMPARE(pagesOf(split.layers()), twice(copied("b"), "layer1", "layer2"));

        QCOMPARE(split.write({0}), QString()); // another time
        QCOMPARE(split.slides()[0].firstLayerPage, 0);
        QCOMPARE(split.slides()[1].firstLayerPage, -1);
        QCOMPARE(pagesOf(split.layers()), twice(copied("a"), "layer1", "layer2"));
    }

    void writesNothingWhereNothingMoves()
    {
        Split still(deck(page(shape("a"))));
        QCOMPARE(still.write({0}), QString());
        QVERIFY(!still.hasFiles());
        Split notWanted(deck(page(shape("a"), in("a"))));
        QCOMPARE(notWanted.write({1, -1, 7}), QString());
        QVERIFY(!notWanted.hasFiles());
    }

    void hidesParagraphs()
    {
        const QByteArray text = paragraph("p", "<text:span text:style-name=\"T1\">one <text:span "
                                               "text:style-name=\"T2\">bold</text:span></text:span>"
                                               "<text:tab/>") +
                                paragraph("q", "two");
        const QByteArray styles =
            "<style:style style:name=\"T1\" style:family=\"text\"><style:text-properties "
            "fo:font-size=\"9pt\" style:use-window-font-color=\"true\" loext:color-lum-mod=\"50%\" "
            "loext:theme-color=\"accent1\" loext:opacity=\"100%\"/></style:style>"
            "<style:style style:name=\"gr1\" style:family=\"graphic\"><style:graphic-properties "
            "draw:fill=\"solid\" draw:fill-color=\"#ff0000\"/></style:style>";
        Split split(deck(page(shape("a", text), in("q") + in("p")), styles));
        QCOMPARE(split.write({0}), QString());
        const QByteArray hiddenOne =
            "<text:p><text:span text:style-name=\"layer3\"><text:span text:style-name=\"layer1\">"
            "one <text:span text:style-name=\"layer2\">bold</text:span></text:span><text:tab/>"
            "</text:span></text:p>";
        const QByteArray hiddenTwo =
            "<text:p><text:span text:style-name=\"layer3\">two</text:span></text:p>";
        QCOMPARE(pagesOf(split.backgrounds()),
                 "<draw:page draw:name=\"slide\" draw:style-name=\"dp1\" "
                 "draw:master-page-name=\"M\">" +
                     copied("a", hiddenOne + hiddenTwo) + "</draw:page>");
        QCOMPARE(pagesOf(split.layers()),
                 twice(copied("a",
                              "<text:p><text:span text:style-name=\"T1\">one <text:span "
                              "text:style-name=\"T2\">bold</text:span></text:span><text:tab/>"
                              "</text:p>" +
                                  hiddenTwo,
                              "layer4"),
                       "layer5", "layer6") +
                     twice(copied("a", hiddenOne + "<text:p>two</text:p>", "layer4"), "layer5",
                           "layer6"));
        QCOMPARE(stylesOf(split.layers()),
                 styles +
                     "<style:style style:name=\"layer1\" style:family=\"text\">"
                     "<style:text-properties fo:font-size=\"9pt\" loext:opacity=\"0%\" "
                     "fo:color=\"#000000\"" +
                     QByteArray(kInvisible)
                         .mid(int(qstrlen("fo:color=\"#000000\" "
                                          "loext:opacity=\"0%\""))) +
                     "/></style:style><style:style style:parent-style-name=\"T2\" "
                     "style:family=\"text\" style:name=\"layer2\"><style:text-properties " +
                     kInvisible +
                     "/></style:style><style:style style:family=\"text\" style:name=\"layer3\">"
                     "<style:text-properties " +
                     kInvisible +
                     "/></style:style><style:style style:name=\"layer4\" "
                     "style:family=\"graphic\"><style:graphic-properties draw:fill=\"none\" "
                     "draw:fill-color=\"#ff0000\" draw:stroke=\"none\" draw:shadow=\"hidden\"/>"
                     "</style:style>" +
                     paper("layer5", "#ffffff") + paper("layer6", "#ffff00"));
    }

    void hidesWhatIsNotInAnItem()
    {
        const QByteArray text = "<text:list><text:list-header><text:p>head</text:p>"
                                "</text:list-header></text:list><svg:title>no</svg:title>"
                                "<text:p>one</text:p>" +
                                paragraph("p", "two");
        Split split(deck(page(shape("a", text), in("p"))));
        QCOMPARE(split.write({0}), QString());
        const auto hidden = [](const QByteArray &content) {
            return "<text:p><text:span text:style-name=\"layer1\">" + content +
                   "</text:span></text:p>";
        };
        const QByteArray visible = "<text:list><text:list-header><text:p>head</text:p>"
                                   "</text:list-header></text:list><svg:title>no</svg:title>"
                                   "<text:p>one</text:p>";
        QVERIFY(pagesOf(split.backgrounds()).contains(copied("a", visible + hidden("two"))));
        QVERIFY(pagesOf(split.layers())
                    .contains(copied("a",
                                     "<text:list><text:list-header>" + hidden("head") +
                                         "</text:list-header></text:list><svg:title>no"
                                         "</svg:title>" +
                                         hidden("one") + "<text:p>two</text:p>",
                                     "layer2")));
    }

    void keepsStylesOfParagraphsWithoutAFill()
    {
        const QByteArray box = "<draw:frame draw:style-name=\"gr1\" draw:text-style-name=\"P1\">"
                               "<draw:text-box>" +
                               paragraph("p", "one") + "</draw:text-box></draw:frame>";
        Split split(deck(page(box, in("p")),
                         "<style:style style:name=\"P1\" style:family=\"paragraph\"/>"));
        QCOMPARE(split.write({0}), QString());
        QVERIFY(pagesOf(split.layers()).contains("draw:text-style-name=\"P1\""));
    }

    void findsTheStyleOfPlaceholders()
    {
        const QByteArray box =
            "<draw:frame presentation:style-name=\"pr1\" draw:text-style-name=\"P1\">"
            "<draw:text-box>" +
            paragraph("p", "one") + "</draw:text-box></draw:frame>";
        Split split(deck(page(box, in("p")),
                         "<style:style style:name=\"P1\" style:family=\"paragraph\">"
                         "<loext:graphic-properties draw:fill=\"solid\"/></style:style>"));
        QCOMPARE(split.write({0}), QString());
        QCOMPARE(pagesOf(split.layers()),
                 twice("<draw:frame presentation:style-name=\"layer2\" "
                       "draw:text-style-name=\"layer3\"><draw:text-box><text:p>one</text:p>"
                       "</draw:text-box></draw:frame>",
                       "layer4", "layer5"));
        const QByteArray styles = stylesOf(split.layers());
        QVERIFY(styles.contains("<style:style style:parent-style-name=\"pr1\" "
                                "style:family=\"presentation\" style:name=\"layer2\">"
                                "<style:graphic-properties " +
                                QByteArray(kBare) + "/></style:style>"));
        QVERIFY(styles.contains("<style:style style:name=\"layer3\" style:family=\"paragraph\">"
                                "<loext:graphic-properties " +
                                QByteArray(kBare) + "/></style:style>"));
    }

    void hidesBullets_data()
    {
        QTest::addColumn<QByteArray>("list"); // attributes
        QTest::addColumn<QByteArray>("item");
        QTest::addColumn<QByteArray>("blank"); // style of the list

        const QByteArray bullet = "<text:list-level-style-bullet text:level=\"1\" "
                                  "text:bullet-char=\" \"><style:list-level-properties "
                                  "text:min-label-width=\"1cm\"/></text:list-level-style-bullet>";
        const QByteArray number =
            "<text:list-level-style-number text:level=\"2\" style:num-format=\"\"/>";
        QTest::newRow("of the list")
            << QByteArray(" text:style-name=\"L1\"") << QByteArray() << bullet + number;
        QTest::newRow("of the item")
            << QByteArray(" text:style-name=\"L2\"") << QByteArray(" text:style-override=\"L1\"")
            << bullet + number;
        QTest::newRow("of the shape's style") << QByteArray() << QByteArray()
                                              << QByteArray("<text:list-level-style-bullet "
                                                            "text:level=\"1\" "
                                                            "text:bullet-char=\" \"/>");
        QTest::newRow("a picture") << QByteArray(" text:style-name=\"L2\"") << QByteArray()
                                   << QByteArray("<text:list-level-style-bullet text:level=\"1\" "
                                                 "text:bullet-char=\" \"/>");
    }

    void hidesBullets()
    {
        QFETCH(QByteArray, list);
        QFETCH(QByteArray, item);
        QFETCH(QByteArray, blank);
        const QByteArray text = "<text:list" + list + "><text:list-item" + item + ">" +
                                paragraph("p", "one") + "</text:list-item></text:list>";
        const QByteArray styles =
            "<text:list-style style:name=\"L1\"><text:list-level-style-bullet text:level=\"1\" "
            "text:bullet-char=\"x\"><style:list-level-properties text:min-label-width=\"1cm\"/>"
            "<style:text-properties fo:font-family=\"Signs\"/></text:list-level-style-bullet>"
            "<text:list-level-style-number text:level=\"2\" style:num-format=\"1\" "
            "style:num-suffix=\".\"/></text:list-style>"
            "<text:list-style style:name=\"L2\"><text:list-level-style-image text:level=\"1\"/>"
            "</text:list-style>"
            "<style:style style:name=\"gr1\" style:family=\"graphic\" "
            "style:parent-style-name=\"parent\"/>"
            "<style:style style:name=\"parent\" style:family=\"graphic\" "
            "style:parent-style-name=\"parent\"><style:graphic-properties><text:list-style>"
            "<text:list-level-style-bullet text:level=\"1\" text:bullet-char=\"y\"/>"
            "</text:list-style></style:graphic-properties></style:style>";
        Split split(deck(page(shape("a", text), in("p")), styles));
        QCOMPARE(split.write({0}), QString());
        QVERIFY2(pagesOf(split.backgrounds())
                     .contains("<text:list-item text:style-override=\"layer2\"><text:p><text:span "
                               "text:style-name=\"layer1\">one</text:span></text:p>"),
                 pagesOf(split.backgrounds()));
        QVERIFY2(
            stylesOf(split.backgrounds())
                .contains("<text:list-style style:name=\"layer2\">" + blank + "</text:list-style>"),
            stylesOf(split.backgrounds()));
        QVERIFY(!pagesOf(split.layers()).contains("layer2"));
    }

    void hidesBulletsOfUnknownLists()
    {
        const QByteArray text =
            "<text:list><text:list-item>" + paragraph("p", "one") + "</text:list-item></text:list>";
        Split split(deck(page(shape("a", text), in("p"))));
        QCOMPARE(split.write({0}), QString());
        const QByteArray styles = stylesOf(split.backgrounds());
        QCOMPARE(styles.count("text:bullet-char=\" \""), 10);
        QVERIFY(styles.contains("<text:list-level-style-bullet text:level=\"10\" "
                                "text:bullet-char=\" \"/></text:list-style>"));
    }

    void keepsNumbers_data()
    {
        QTest::addColumn<QByteArray>("list");    // the paragraphs of which the last one moves
        QTest::addColumn<QByteArray>("numbers"); // of the items that are seen in the background

        const auto item = [](const QByteArray &content, const QByteArray &attributes = {}) {
            return "<text:list-item" + attributes + "><text:p>" + content +
                   "</text:p></text:list-item>";
        };
        const auto list = [](const QByteArray &items, const QByteArray &style = "L1") {
            return "<text:list text:style-name=\"" + style + "\">" + items + "</text:list>";
        };
        const QByteArray mover = "<text:p text:id=\"p\">moves</text:p>";
        const QByteArray moving = "<text:list-item>" + mover + "</text:list-item>";
        const auto row = [](const char *name, const QByteArray &lists, const char *numbers) {
            QTest::newRow(name) << lists << QByteArray(numbers);
        };
        row("what is hidden counts", list(item("a") + moving + item("c")), "1 - 3");
        row("over lists of the same look", list(item("a")) + list(moving) + list(item("c")),
            "1 - 3");
        row("not over those of another", list(item("a")) + list(moving, "L2") + list(item("c")),
            "1 - 1");
        row("over text between",
            list(item("a")) + "<text:p>text</text:p>" + list(moving + item("c")), "1 - 3");
        row("over a level below",
            list(item("a") + "<text:list-item><text:p>b</text:p><text:list>" + item("x") + moving +
                 item("y") + "</text:list></text:list-item>" + item("c")),
            "1 2 1 - 3 3");
        row("a level above ends it",
            list("<text:list-item><text:p>a</text:p><text:list>" + item("x") +
                 "</text:list>"
                 "</text:list-item><text:list-item>" +
                 mover + "<text:list>" + item("y") + "</text:list></text:list-item>"),
            "1 1 - 1");
        row("begins elsewhere", list(item("a") + moving + item("c"), "L5"), "5 - 7");
        row("begins anew",
            list(item("a") + moving + item("c", " text:start-value=\"9\"") + item("d")),
            "1 - 9 10");
        row("the one that moves begins anew",
            list(item("a") + "<text:list-item text:start-value=\"4\">" + mover +
                 "</text:list-item>" + item("c")),
            "1 4 5");
        row("a heading has none, and does not count",
            list("<text:list-header><text:p>head</text:p></text:list-header>" + item("a") + moving +
                 "<text:list-header><text:p>head</text:p></text:list-header>" + item("c")),
            "1 - 3");
        row("the second paragraph of an item has none",
            list("<text:list-item><text:p>a</text:p><text:p>more</text:p></text:list-item>" +
                 moving + item("c")),
            "1 - 3");
        row("each level begins where it says",
            list("<text:list-item><text:p>a</text:p><text:list>" + moving + item("y") +
                     "</text:list></text:list-item>",
                 "L7"),
            "1 - 4");
        row("a level without numbers has none", list(item("a") + moving + item("c"), "L0"),
            "- - -");
        row("bullets have none", list(item("a") + moving + item("c"), "B"), "- - -");
    }

    void keepsNumbers()
    {
        QFETCH(QByteArray, list);
        QFETCH(QByteArray, numbers);
        const QByteArray styles =
            "<text:list-style style:name=\"L1\">"
            "<text:list-level-style-number text:level=\"1\" style:num-format=\"1\"/>"
            "<text:list-level-style-number text:level=\"2\" style:num-format=\"a\"/>"
            "</text:list-style><text:list-style style:name=\"L2\">"
            "<text:list-level-style-number text:level=\"1\" style:num-format=\"1\" "
            "style:num-suffix=\")\"/></text:list-style><text:list-style style:name=\"L5\">"
            "<text:list-level-style-number text:level=\"1\" style:num-format=\"1\" "
            "text:start-value=\"5\"/></text:list-style><text:list-style style:name=\"L7\">"
            "<text:list-level-style-number text:level=\"1\" style:num-format=\"1\"/>"
            "<text:list-level-style-number text:level=\"2\" style:num-format=\"1\" "
            "text:start-value=\"3\"/></text:list-style><text:list-style style:name=\"L0\">"
            "<text:list-level-style-number text:level=\"1\" style:num-format=\"\"/>"
            "</text:list-style><text:list-style style:name=\"B\">"
            "<text:list-level-style-bullet text:level=\"1\" text:bullet-char=\"x\"/>"
            "</text:list-style>";
        Split split(deck(page(shape("a", list), in("p")), styles));
        QCOMPARE(split.write({0}), QString());
        QByteArrayList found;
        const QByteArray pages = pagesOf(split.backgrounds());
        for (int at = pages.indexOf("<text:list-item"); at >= 0;
             at = pages.indexOf("<text:list-item", at + 1)) {
            const QByteArray tag = pages.mid(at, pages.indexOf('>', at) - at);
            const QByteArray key = "text:start-value=\"";
            const int number = tag.indexOf(key);
            found += number < 0 ? QByteArray("-") : tag.mid(number + key.size()).split('"').front();
        }
        QCOMPARE(found.join(' '), numbers);
    }

    void namesOfStylesAreNew()
    {
        const QByteArray taken = "<style:style style:name=\"layer1\" style:family=\"text\"/>"
                                 "<text:list-style style:name=\"layer3\"/>";
        Split split(deck(page(shape("a"), in("a")), taken));
        QCOMPARE(split.write({0}), QString());
        QCOMPARE(stylesOf(split.layers()),
                 taken + paper("layer2", "#ffffff") + paper("layer4", "#ffff00"));
    }

    void mastersAreWithoutDecoration()
    {
        const QByteArray kept =
            "<draw:frame presentation:class=\"title\"/><draw:frame presentation:class=\"outline\"/>"
            "<draw:frame presentation:class=\"subtitle\"/><presentation:notes><draw:frame/>"
            "</presentation:notes>";
        const QByteArray masters =
            "<style:handout-master><draw:frame/></style:handout-master>"
            "<style:master-page style:name=\"M\"><draw:g><draw:rect/></draw:g>"
            "<draw:frame presentation:class=\"page-number\"/>"
            "<dr3d:scene/>" +
            kept + "</style:master-page>";
        Split split(deck(page(shape("a"), in("a")), {}, masters));
        QCOMPARE(split.write({0}), QString());
        QCOMPARE(inside(split.layers(), "office:master-styles"),
                 "<style:handout-master><draw:frame/></style:handout-master>"
                 "<style:master-page style:name=\"M\">" +
                     kept + "</style:master-page>");
        QCOMPARE(inside(split.backgrounds(), "office:master-styles"), masters);
    }

    void copiesStandAlone_data()
    {
        QTest::addColumn<QByteArray>("content"); // of the shape
        QTest::addColumn<QByteArray>("copy");

        QTest::newRow("a connector joins nothing")
            << QByteArray("<draw:connector draw:start-shape=\"a\" draw:start-glue-point=\"1\" "
                          "draw:end-shape=\"b\" draw:end-glue-point=\"2\" svg:d=\"m0 0\"/>")
            << QByteArray("<draw:connector svg:d=\"m0 0\"/>");
        QTest::newRow("nothing is done on a click")
            << QByteArray("<office:event-listeners><presentation:event-listener/>"
                          "</office:event-listeners><text:p>one</text:p>")
            << QByteArray("<text:p>one</text:p>");
        QTest::newRow("numbers and names of the slide")
            << QByteArray("<text:p>page <text:page-number>&lt;number&gt;</text:page-number> of "
                          "<text:page-count>9</text:page-count> <text:page-name/> "
                          "<loext:page-name>&lt;slide-name&gt;</loext:page-name></text:p>")
            << QByteArray("<text:p>page 2 of 3 slide slide</text:p>");
        QTest::newRow("other fields stay")
            << QByteArray("<text:p><text:date/><presentation:footer/></text:p>")
            << QByteArray("<text:p><text:date/><presentation:footer/></text:p>");
        QTest::newRow("an embedded document stays as it is")
            << QByteArray("<draw:object><office:document xmlns:x=\"u\"><draw:rect xml:id=\"a\"/>"
                          "<text:page-number/></office:document></draw:object>")
            << QByteArray("<draw:object><office:document xmlns:x=\"u\"><draw:rect xml:id=\"a\"/>"
                          "<text:page-number/></office:document></draw:object>");
        QTest::newRow("pictures")
            << QByteArray("<draw:image><office:binary-data>QUJD</office:binary-data></draw:image>")
            << QByteArray("<draw:image><office:binary-data>QUJD</office:binary-data></draw:image>");
    }

    void copiesStandAlone()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, copy);
        Split split(
            deck(page({}) + page(shape("b", content) + shape("a", content), in("a")) + page({})));
        QCOMPARE(split.write({1}), QString());
        QCOMPARE(pagesOf(split.layers()), twice(copied("a", copy), "layer1", "layer2"));
        QVERIFY(pagesOf(split.backgrounds()).contains(copied("b", copy)));
    }

    void leavesOutWhatMovesOrActs()
    {
        const QByteArray properties = "<style:drawing-page-properties draw:fill=\"none\"";
        const QByteArray transition =
            " presentation:transition-type=\"automatic\" presentation:transition-style=\"x\" "
            "presentation:transition-speed=\"slow\" presentation:duration=\"PT1S\" smil:type=\"x\" "
            "smil:subtype=\"x\" smil:direction=\"reverse\" smil:fadeColor=\"#000000\"";
        const QByteArray style = "<style:style style:name=\"dp1\" style:family=\"drawing-page\">";
        QByteArray xml = deck(
            "<presentation:footer-decl presentation:name=\"f\">foot</presentation:footer-decl>" +
                page("<office:forms form:x=\"1\"/>" + shape("b") + shape("a") +
                         "<presentation:notes>" + shape("n") + "</presentation:notes>",
                     in("a")) +
                "<presentation:settings/>",
            style + properties + transition +
                "><presentation:sound xlink:href=\"x\"/>"
                "</style:drawing-page-properties></style:style>");
        xml.replace("<office:automatic-styles>",
                    "<office:scripts><office:script/></office:scripts><office:automatic-styles>");
        Split split(xml);
        QCOMPARE(split.write({0}), QString());
        QCOMPARE(pagesOf(split.backgrounds()),
                 "<presentation:footer-decl presentation:name=\"f\">foot</presentation:footer-decl>"
                 "<draw:page draw:name=\"slide\" draw:style-name=\"dp1\" "
                 "draw:master-page-name=\"M\"><office:forms form:x=\"1\"/>" +
                     copied("b") + "</draw:page>");
        for (const QByteArray &written : {split.backgrounds(), split.layers()}) {
            QVERIFY(!written.contains("office:script"));
            QVERIFY(!written.contains("anim:"));
            QVERIFY(stylesOf(written).startsWith(style + properties + "/></style:style>"));
        }
    }

    void keepsTheRest()
    {
        QByteArray xml = deck(page(shape("a"), in("a")), {}, "\n <x>&lt;</x>\n");
        const QByteArray head = "<office:meta><dc:title>t</dc:title></office:meta>";
        xml.replace("<office:automatic-styles>", head + "<office:automatic-styles>");
        Split split(xml);
        QCOMPARE(split.write({0}), QString());
        const int begin = xml.indexOf("<office:document");
        QCOMPARE(
            split.layers().mid(split.layers().indexOf("<office:document")).split('>').mid(0, 5),
            xml.mid(begin).split('>').mid(0, 5));
        QCOMPARE(inside(split.layers(), "office:master-styles"), QByteArray("\n <x>&lt;</x>\n"));
        QVERIFY(
            split.layers().endsWith("</office:presentation></office:body></office:document>\n"));
    }

    void findsAPlaceForStyles()
    {
        QByteArray xml = deck(page(shape("a"), in("a")));
        xml.replace("<office:automatic-styles></office:automatic-styles>", "");
        Split split(xml);
        QCOMPARE(split.write({0}), QString());
        QCOMPARE(stylesOf(split.layers()), paper("layer1", "#ffffff") + paper("layer2", "#ffff00"));
        QVERIFY(split.layers().contains("</office:automatic-styles><office:body>"));
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("fault");

        QTest::newRow("a document type") << QByteArray("<!DOCTYPE a><a/>")
                                         << QStringLiteral("line 1: a document type is declared");
        QTest::newRow("another document")
            << QByteArray("<html><office:body><office:presentation><draw:page/>"
                          "</office:presentation></office:body></html>")
            << QStringLiteral("no presentation");
        QTest::newRow("a text document")
            << QByteArray("<office:document><office:body><office:text/></office:body>"
                          "</office:document>")
            << QStringLiteral("no presentation");
        QTest::newRow("without a body")
            << QByteArray("<office:document/>") << QStringLiteral("no presentation");
        QTest::newRow("without slides")
            << deck("<presentation:settings/>") << QStringLiteral("no slides");
    }

    void refuses()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QString, fault);
        Split split(xml);
        QCOMPARE(split.fault, fault);
        QVERIFY(split.slides().empty());
        QCOMPARE(split.write({0}), QStringLiteral("no deck is read"));
        QVERIFY(!split.hasFiles());
    }

    void tellsWhatCannotBeOpened()
    {
        const QTemporaryDir dir;
        const QString missing = dir.filePath(QStringLiteral("missing/file"));
        const QString there =
            PageFiles::write(dir, QStringLiteral("d"), deck(page(shape("a"), in("a"))));
        const QString none = QStringLiteral("No such file or directory");
        DeckSplitter splitter;
        QCOMPARE(splitter.read(missing, dir.path()), none);
        QCOMPARE(splitter.read(there, missing), none);
        QCOMPARE(splitter.read(there, dir.path()), QString());
        const QString file = dir.filePath(QStringLiteral("f"));
        QCOMPARE(splitter.write(missing, file, {0}), none);
        QCOMPARE(splitter.write(file, missing, {0}), none);
        QCOMPARE(splitter.write(QStringLiteral("/dev/full"), file, {0}),
                 QStringLiteral("No space left on device"));
        QCOMPARE(splitter.read(missing, dir.path()), none); // nothing is left of what was read
        QVERIFY(splitter.slides().empty());
    }
};

QTEST_APPLESS_MAIN(TestDeckSplitter)
#include "tst_decksplitter.moc"
