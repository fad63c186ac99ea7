#include "import/FlatDeck.h"
#include "tools/docimport/deck/SlidePlan.h"
#include "tools/docimport/deck/XmlFile.h"

#include <QtTest>

#include <ctime>
#include <functional>

using namespace FlatDeck;

namespace {

// As "a", "a{body 0 2}" or "a{1}".
QString inWords(const LayerPiece &piece, const SlideShapes &shapes)
{
    const QString name = nameOf(*shapes.all()[static_cast<size_t>(piece.shape)].node);
    if (piece.isWhole)
        return name;
    QStringList parts;
    if (piece.hasBody)
        parts += QStringLiteral("body");
    for (const int paragraph : piece.paragraphs)
        parts += QString::number(paragraph);
    return name + QLatin1Char('{') + parts.join(QLatin1Char(' ')) + QLatin1Char('}');
}

QString inWords(const SlideLayer &layer, const SlideShapes &shapes)
{
    QStringList pieces;
    for (const LayerPiece &piece : layer)
        pieces += inWords(piece, shapes);
    return pieces.isEmpty() ? QStringLiteral("-") : pieces.join(QLatin1Char(' '));
}

// As "a b | c | d e": what rests at the bottom, and the layers.
QString layersOf(const SlidePlan &plan)
{
    QStringList layers{inWords(plan.background, plan.shapes)};
    for (const SlideLayer &layer : plan.layers)
        layers += inWords(layer, plan.shapes);
    return layers.join(QStringLiteral(" | "));
}

// As "1 in 0": trigger and layer.
QString effectsOf(const SlidePlan &plan)
{
    QStringList effects;
    for (const PlannedEffect &effect : plan.effects)
        effects += QStringLiteral("%1 %2 %3")
                       .arg(effect.trigger)
                       .arg(effect.isExit ? QStringLiteral("out") : QStringLiteral("in"))
                       .arg(effect.layer);
    return effects.join(QStringLiteral(", "));
}

QString reportOf(const SlidePlan &plan)
{
    QStringList lines;
    for (const EffectReport &effect : plan.report) {
        QString line = effect.target + QLatin1Char(' ') + effect.result;
        if (!effect.reason.isEmpty())
            line += QStringLiteral(": ") + effect.reason;
        lines += line;
    }
    return lines.join(QLatin1Char('\n'));
}

QByteArray in(const QByteArray &target, const QByteArray &more = {})
{
    return click(effect("on-click", "entrance", target, more));
}

QByteArray out(const QByteArray &target)
{
    return click(effect("on-click", "exit", target));
}

// One of a part of the target.
QByteArray inOf(const QByteArray &target, const QByteArray &part)
{
    return click("<anim:par presentation:node-type=\"on-click\" "
                 "presentation:preset-class=\"entrance\"><anim:set smil:targetElement=\"" +
                 target + "\" anim:sub-item=\"" + part + "\"/></anim:par>");
}

QByteArray inOfBoth(const QByteArray &one, const QByteArray &other)
{
    return click("<anim:par presentation:node-type=\"on-click\" "
                 "presentation:preset-class=\"entrance\"><anim:set smil:targetElement=\"" +
                 one + "\"/><anim:set smil:targetElement=\"" + other + "\"/></anim:par>");
}

// A shape of three paragraphs.
QByteArray text(const QByteArray &id)
{
    return shape(id, paragraph(id + "0", "zero") + paragraph(id + "1", "one") +
                         paragraph(id + "2", "two"));
}

QByteArray many(int count, const std::function<QByteArray(const QByteArray &number)> &make)
{
    QByteArray all;
    for (int i = 0; i < count; ++i)
        all += make(QByteArray::number(i));
    return all;
}

} // namespace

/// What is made of a slide: its layers, what plays, and what is said about it.
class TestSlidePlan : public QObject
{
    Q_OBJECT

private:
    static SlidePlan planOf(const XmlNode &page) { return SlidePlan(page); }

private Q_SLOTS:
    void layersAreInPaintOrder_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QByteArray>("effects");
        QTest::addColumn<QString>("layers");
        QTest::addColumn<QString>("plays");

        const auto row = [](const char *name, const QByteArray &shapes, const QByteArray &effects,
                            const char *layers, const char *plays) {
            QTest::newRow(name) << shapes << effects << QString::fromLatin1(layers)
                                << QString::fromLatin1(plays);
        };
        const QByteArray abcde = shape("a") + shape("b") + shape("c") + shape("d") + shape("e");
        row("no effects", abcde, {}, "a b c d e", "");
        row("one at the top", abcde, in("e"), "a b c d | e", "1 in 0");
        row("one at the bottom: the others rest above it", abcde, in("a"), "- | a | b c d e",
            "1 in 0");
        row("what rests between two", abcde, in("b") + in("e"), "a | b | c d | e",
            "1 in 0, 1 in 2");
        row("two beside each other", abcde, in("c") + in("b"), "a | b | c | d e", "1 in 1, 1 in 0");
        row("only an emphasis", abcde, click(effect("on-click", "emphasis", "b")), "a b c d e", "");
        row("notes, forms and titles: no shapes",
            "<office:forms/>" + shape("a") + "<svg:title/>" + shape("b") + "<presentation:notes>" +
                shape("n") + "</presentation:notes>",
            in("a") + in("n"), "- | a | b", "1 in 0");
        row("a group moves as one", shape("a") + group("g", shape("b") + shape("c")), in("g"),
            "a | g", "1 in 0");
        row("in a group: it is taken apart",
            group("g", shape("a") + group("h", shape("b") + shape("c")) + shape("d")), in("b"),
            "a | b | c d", "1 in 0");
        row("another group stays together",
            group("g", shape("a") + group("h", shape("b") + shape("c")) + shape("d")), in("a"),
            "- | a | h d", "1 in 0");
        row("a group that is taken apart, too: together",
            group("g", shape("a") + shape("b")) + shape("c"), in("b") + out("g"), "- | a | b | c",
            "1 in 1, 1 out 0, 2 out 1");
        row("an empty group moves as well", group("g", group("h", {})) + shape("a"), in("h"),
            "- | h | a", "1 in 0");
        row("a group of nothing but a description that moves",
            group("g", "<svg:desc xml:id=\"d\">no</svg:desc>") + shape("a"), in("d") + in("a"),
            "- | a", "1 in 0");
        row("behind a link", "<draw:a>" + shape("a") + "</draw:a>" + shape("b"), in("a"),
            "- | a | b", "1 in 0");
        row("identifiers that are met twice: the first", shape("a") + shape("b") + shape("a"),
            in("a"), "- | a | b a", "1 in 0");
        row("an embedded document has identifiers of its own",
            "<draw:frame draw:name=\"f\"><draw:object><office:document>" + shape("a") +
                "</office:document></draw:object></draw:frame>" + shape("a"),
            in("a"), "f | a", "1 in 0");
    }

    void layersAreInPaintOrder()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QByteArray, effects);
        QFETCH(QString, layers);
        QFETCH(QString, plays);
        const XmlNode node = readXml(page(shapes, effects));
        const SlidePlan plan = planOf(node);
        QCOMPARE(layersOf(plan), layers);
        QCOMPARE(effectsOf(plan), plays);
    }

    void textIsTakenApart_data()
    {
        QTest::addColumn<QByteArray>("effects"); // on the text t
        QTest::addColumn<QString>("layers");
        QTest::addColumn<QString>("plays");

        const auto row = [](const char *name, const QByteArray &effects, const char *layers,
                            const char *plays) {
            QTest::newRow(name) << effects << QString::fromLatin1(layers)
                                << QString::fromLatin1(plays);
        };
        row("all of it", in("t"), "- | t", "1 in 0");
        row("one paragraph: the others stay with the shape", in("t1"), "t{body 0 2} | t{1}",
            "1 in 0");
        row("every paragraph", in("t0") + in("t1") + in("t2"), "t{body} | t{0} | t{1} | t{2}",
            "1 in 0, 1 in 1, 1 in 2");
        row("the shape and then a paragraph", in("t") + in("t1"), "- | t{body 0 2} | t{1}",
            "1 in 0, 1 in 1");
        row("the background and then a paragraph", inOf("t", "background") + in("t1"),
            "- | t{body} | t{0 2} | t{1}", "1 in 0, 1 in 2");
        row("only the background: the text rests", inOf("t", "background"),
            "- | t{body} | t{0 1 2}", "1 in 0");
        row("only the text: the shape rests", inOf("t", "text"), "t{body} | t{0 1 2}", "1 in 0");
        row("a paragraph, and then the shape leaves with it", in("t1") + out("t"),
            "- | t{body 0 2} | t{1}", "1 in 1, 1 out 0, 2 out 1");
        row("the shape leaves, then a paragraph is there alone", out("t") + in("t1"),
            "- | t{body 0 2} | t{1}", "1 out 0, 1 in 1");
        row("a paragraph leaves, then comes back with the shape", out("t1") + out("t") + in("t"),
            "- | t{body 0 2} | t{1}", "1 out 1, 1 out 0, 1 in 0, 2 in 1");
        row("the shape comes in, with a paragraph that leaves later", in("t") + out("t1"),
            "- | t{body 0 2} | t{1}", "1 in 0, 2 in 1, 1 out 1");
        row("shape and paragraph by one effect", inOfBoth("t", "t1"), "- | t{body 0 2} | t{1}",
            "1 in 0, 2 in 1");
    }

    void textIsTakenApart()
    {
        QFETCH(QByteArray, effects);
        QFETCH(QString, layers);
        QFETCH(QString, plays);
        const XmlNode node = readXml(page(text("t"), effects));
        const SlidePlan plan = planOf(node);
        QCOMPARE(layersOf(plan), layers);
        QCOMPARE(effectsOf(plan), plays);
    }

    void findsTextInShapesOfAllKinds_data()
    {
        QTest::addColumn<QByteArray>("shape");
        QTest::addColumn<QString>("layers");

        QTest::newRow("a text box")
            << QByteArray("<draw:frame draw:name=\"f\"><draw:text-box>") + paragraph("o", "other") +
                   paragraph("p", "p") + "</draw:text-box></draw:frame>"
            << QStringLiteral("f{body 0} | f{1}");
        QTest::newRow("lists")
            << QByteArray(
                   "<draw:frame draw:name=\"f\"><draw:text-box><text:list><text:list-header>") +
                   paragraph("o", "o") + "</text:list-header><text:list-item>" +
                   paragraph("q", "q") + "<text:list><text:list-item>" + paragraph("p", "p") +
                   "</text:list-item></text:list></text:list-item></text:list>"
                   "</draw:text-box></draw:frame>"
            << QStringLiteral("f{body 0 1} | f{2}");
        QTest::newRow("a table: moves as one")
            << QByteArray("<draw:frame draw:name=\"f\"><table:table><table:table-cell>") +
                   paragraph("p", "p") + "</table:table-cell></table:table></draw:frame>"
            << QStringLiteral("- | f");
        QTest::newRow("in a group")
            << group("g", shape("f", paragraph("o", "o") + paragraph("p", "p")))
            << QStringLiteral("f{body 0} | f{1}");
    }

    void findsTextInShapesOfAllKinds()
    {
        QFETCH(QByteArray, shape);
        QFETCH(QString, layers);
        const XmlNode node = readXml(page(shape, in("p")));
        QCOMPARE(layersOf(planOf(node)), layers);
    }

    // The work grows with the effects times what each bears on.
    void tooMuch_data()
    {
        QTest::addColumn<int>("shapes");
        QTest::addColumn<bool>("isTooMuch");
        QTest::newRow("less than a million") << 998 << false;
        QTest::newRow("more than a million") << 1001 << true;
    }
    void tooMuch()
    {
        QFETCH(int, shapes);
        QFETCH(bool, isTooMuch);
        const XmlNode node = readXml(
            page(group("g", many(shapes, [](const QByteArray &i) { return shape("s" + i); })),
                 in("s0") + many(1000, [](const QByteArray &) { return in("g"); })));
        const SlidePlan plan = planOf(node);
        QCOMPARE(plan.report.size(), 1001);
        QCOMPARE(plan.report.last().result,
                 isTooMuch ? QStringLiteral("dropped") : QStringLiteral("merged"));
        QCOMPARE(plan.report.last().reason,
                 isTooMuch ? QStringLiteral("the effects of the slide move too many shapes")
                           : QStringLiteral("is there already"));
        QCOMPARE(plan.layers.size(), size_t(0));
    }

    void reports_data()
    {
        QTest::addColumn<QByteArray>("shapes");
        QTest::addColumn<QByteArray>("effects");
        QTest::addColumn<QString>("plays");
        QTest::addColumn<QString>("report");

        const auto row = [](const char *name, const QByteArray &shapes, const QByteArray &effects,
                            const char *plays, const char *report) {
            QTest::newRow(name) << shapes << effects << QString::fromLatin1(plays)
                                << QString::fromUtf8(report);
        };
        const QByteArray ab = shape("a") + shape("b");
        row("all is well", ab, in("a") + out("a"), "1 in 0, 1 out 0", "a kept\na kept");
        row("visible at first: an exit comes first", ab, out("a") + in("a"), "1 out 0, 1 in 0",
            "a kept\na kept");
        row("in and in again, part by part", ab, in("a") + in("a") + in("a"), "1 in 0",
            "a kept\na merged: is there already\na merged: is there already");
        row("out and out again", ab, out("a") + out("a"), "1 out 0",
            "a kept\na merged: has left already");
        row("a group that is taken apart", group("g", shape("a") + shape("b")), in("a") + out("g"),
            "1 in 0, 1 out 0, 2 out 1", "a kept\ng kept");
        row("a shape comes in, and then one of its paragraphs leaves",
            shape("a", paragraph("p", "p") + paragraph("q", "q")), in("a") + out("p"),
            "1 in 0, 2 in 1, 1 out 1", "a kept\np kept");
        row("a paragraph leaves before all of its shape does",
            shape("a", paragraph("p", "p") + paragraph("q", "q")), out("p") + out("a"),
            "1 out 1, 1 out 0", "p kept\na kept");
        row("in, out, in", ab, in("a") + out("a") + in("a"), "1 in 0, 1 out 0, 1 in 0",
            "a kept\na kept\na kept");
        row("neither in nor out", ab,
            click(effect("on-click", "emphasis", "a") +
                  effect("with-previous", "motion-path", "a") +
                  effect("after-previous", "media-call", "b") +
                  effect("after-previous", "ole-action", "b")),
            "",
            "a dropped: only entrances and exits are played\n"
            "a dropped: only entrances and exits are played\n"
            "b dropped: only entrances and exits are played\n"
            "b dropped: only entrances and exits are played");
        row("of what is not there", ab, in("x"), "",
            "x dropped: what it moves is not on the slide");
        row("of nothing", ab,
            click("<anim:par presentation:node-type=\"on-click\" "
                  "presentation:preset-class=\"entrance\"/>"),
            "", " dropped: moves nothing");
        row("several at once", ab, inOfBoth("a", "b"), "1 in 0, 2 in 1", "a and 1 more kept");
        row("several, of which one is there", ab, in("a") + inOfBoth("a", "b"), "1 in 0, 1 in 1",
            "a kept\na and 1 more kept");
        row("a click that is left out goes to the next", ab,
            click(effect("on-click", "emphasis", "a") + effect("with-previous", "entrance", "b") +
                  effect("with-previous", "entrance", "a")),
            "1 in 1, 2 in 0",
            "a dropped: only entrances and exits are played\n"
            "b kept: starts in place of an effect that is left out\na kept");
        row("not to that of another click", ab,
            click(effect("on-click", "emphasis", "a")) + in("b") +
                click(effect("with-previous", "entrance", "a")),
            "1 in 1, 2 in 0", "a dropped: only entrances and exits are played\nb kept\na kept");
        row("over two that are left out", ab,
            click(effect("on-click", "emphasis", "a") + effect("after-previous", "emphasis", "a") +
                  effect("with-previous", "exit", "b")),
            "1 out 0",
            "a dropped: only entrances and exits are played\n"
            "a dropped: only entrances and exits are played\n"
            "b kept: starts in place of an effect that is left out");
        row("what came after another still does", ab,
            click(effect("on-click", "entrance", "a") + effect("after-previous", "emphasis", "a") +
                  effect("with-previous", "exit", "b", " smil:begin=\"0.5s\"")),
            "1 in 0, 3 out 1",
            "a kept\na dropped: only entrances and exits are played\n"
            "b kept: starts in place of an effect that is left out");
        row("a delay", ab, in("a", " smil:begin=\"0.25s\"") + in("b", " smil:begin=\"0.04s\""),
            "1 in 0, 1 in 1", "a kept: starts 0.3 s earlier\nb kept");
        row("after what takes as long", ab,
            click(effect("on-click", "entrance", "a")) +
                "<anim:par><anim:par smil:begin=\"0.5s\">" +
                effect("after-previous", "entrance", "b") + "</anim:par></anim:par>",
            "1 in 0, 3 in 1", "a kept\nb kept");
        row("after what is left out", ab,
            "<anim:par smil:begin=\"next\"><anim:par>" + effect("on-click", "motion-path", "a") +
                "</anim:par><anim:par smil:begin=\"0.5s\">" +
                effect("after-previous", "entrance", "b") + "</anim:par></anim:par>",
            "1 in 0",
            "a dropped: only entrances and exits are played\n"
            "b kept: starts in place of an effect that is left out; starts 0.5 s earlier");
        row("the third group", ab + shape("c"),
            "<anim:par smil:begin=\"next\"><anim:par>" + effect("on-click", "entrance", "a") +
                "</anim:par><anim:par smil:begin=\"0.5s\">" +
                effect("after-previous", "entrance", "b") +
                "</anim:par><anim:par smil:begin=\"0.8s\">" +
                effect("after-previous", "entrance", "c") + "</anim:par></anim:par>",
            "1 in 0, 3 in 1, 3 in 2", "a kept\nb kept\nc kept: starts 0.2 s later");
        row("without end", ab,
            click(effect("on-click", "entrance", "a", " smil:repeatCount=\"indefinite\"")),
            "1 in 0", "a kept: plays once, not until the next click");
        row("by letters", ab,
            click("<anim:iterate presentation:node-type=\"on-click\" "
                  "presentation:preset-class=\"entrance\" smil:targetElement=\"a\"/>"),
            "1 in 0", "a kept: moves all of the text at once");
        row("a cell of a table",
            "<draw:frame draw:name=\"f\"><table:table><table:table-cell>" + paragraph("p", "p") +
                "</table:table-cell></table:table></draw:frame>",
            in("p"), "1 in 0", "f kept: moves all of the shape");
        row("two cells of a table",
            "<draw:frame draw:name=\"f\"><table:table><table:table-cell>" + paragraph("p", "p") +
                paragraph("q", "q") + "</table:table-cell></table:table></draw:frame>",
            inOfBoth("p", "q"), "1 in 0", "f and 1 more kept: moves all of the shape");
        row("the beginning of a paragraph",
            shape("a", paragraph("p", "  one <text:span>two</text:span>\n three") +
                           paragraph("q", "a paragraph of more than forty-one letters") +
                           paragraph("r", "")),
            in("p") + in("q") + in("r"), "1 in 0, 1 in 1, 1 in 2",
            "one two three kept\na paragraph of more than forty-one lette… kept\na kept");
        row("without a name", "<draw:custom-shape draw:id=\"c\"/>", in("c"), "1 in 0",
            "custom-shape kept");
    }

    void reports()
    {
        QFETCH(QByteArray, shapes);
        QFETCH(QByteArray, effects);
        QFETCH(QString, plays);
        QFETCH(QString, report);
        const XmlNode node = readXml(page(shapes, effects));
        const SlidePlan plan = planOf(node);
        QCOMPARE(effectsOf(plan), plays);
        QCOMPARE(reportOf(plan), report);
    }

    void reportsKindTriggerAndDuration()
    {
        const XmlNode node =
            readXml(page(shape("a"), click(effect("on-click", "entrance", "a") +
                                           effect("with-previous", "exit", "a") +
                                           effect("after-previous", "custom", "a"))));
        const SlidePlan plan = planOf(node);
        QCOMPARE(plan.report.size(), 3);
        QCOMPARE(plan.report[0].kind, QStringLiteral("entrance"));
        QCOMPARE(plan.report[0].trigger, QStringLiteral("click"));
        QCOMPARE(plan.report[0].duration, 0.5);
        QCOMPARE(plan.report[1].kind, QStringLiteral("exit"));
        QCOMPARE(plan.report[1].trigger, QStringLiteral("with"));
        QCOMPARE(plan.report[2].kind, QStringLiteral("other"));
        QCOMPARE(plan.report[2].trigger, QStringLiteral("after"));
        QCOMPARE(plan.effects.size(), size_t(2));
        QCOMPARE(plan.effects[1].duration, 0.5);
        QVERIFY(plan.effects[1].isExit);
    }

    void givesUpBeyondManyLayers()
    {
        const auto effects = [](int count) {
            return many(count, [](const QByteArray &number) { return in("s" + number); });
        };
        const auto shapes = [](int count) {
            return many(count, [](const QByteArray &number) { return shape("s" + number); });
        };
        const XmlNode most = readXml(page(shapes(250), effects(250)));
        QCOMPARE(planOf(most).layers.size(), size_t(250));
        const XmlNode tooMany =
            readXml(page(shapes(251), effects(251) + click(effect("on-click", "emphasis", "s0"))));
        const SlidePlan plan = planOf(tooMany);
        QVERIFY(plan.layers.empty());
        QVERIFY(plan.effects.empty());
        QCOMPARE(plan.report.size(), 252);
        QCOMPARE(plan.report[0].result, QStringLiteral("dropped"));
        QCOMPARE(plan.report[0].reason, QStringLiteral("the slide has more than 250 layers"));
        QCOMPARE(plan.report[251].reason, QStringLiteral("only entrances and exits are played"));
    }

    void isQuick()
    {
        const QByteArray inAndOut = many(3000, [](const QByteArray &number) {
            const QByteArray id = "t" + QByteArray::number(number.toInt() % 3);
            return in(id) + out(id) + out("t") + in("t");
        });
        const XmlNode alternating = readXml(page(text("t"), inAndOut));
        const QByteArray paragraphs =
            many(3000, [](const QByteArray &number) { return paragraph("p" + number, "x"); });
        const QByteArray eachIn =
            many(3000, [](const QByteArray &number) { return in("p" + number); });
        const XmlNode longText = readXml(page(shape("s", paragraphs), eachIn));
        const std::clock_t before = std::clock(); // others may be at work as well
        QVERIFY(!planOf(alternating).effects.empty());
        QVERIFY(planOf(longText).effects.empty());
        QVERIFY(std::clock() - before < 20 * CLOCKS_PER_SEC);
    }
};

QTEST_APPLESS_MAIN(TestSlidePlan)
#include "tst_slideplan.moc"
