#include "import/FlatDeck.h"
#include "tools/docimport/deck/SlideEffects.h"
#include "tools/docimport/deck/TimeValue.h"
#include "tools/docimport/deck/XmlFile.h"

#include <QtTest>

using namespace FlatDeck;

namespace {

// As "entrance 1 0.5 a b/text +1@2 endless": kind, trigger, duration, targets, delay and start.
QString inWords(const SlideEffect &effect)
{
    QStringList words{effect.kind, QString::number(effect.trigger),
                      QString::number(effect.duration)};
    for (const EffectTarget &target : effect.targets) {
        const char *parts[] = {"", "/background", "/text"};
        words += target.id + QLatin1String(parts[static_cast<int>(target.part)]);
    }
    words += QStringLiteral("+%1@%2").arg(effect.delay).arg(effect.start);
    words += QStringLiteral("click%1").arg(effect.click);
    if (effect.isEndless)
        words += QStringLiteral("endless");
    if (effect.isByLetters)
        words += QStringLiteral("letters");
    return words.join(QLatin1Char(' '));
}

QString effectsOf(const QByteArray &pageContent)
{
    QStringList all;
    for (const SlideEffect &effect :
         slideEffects(readXml("<draw:page>" + pageContent + "</draw:page>")))
        all += inWords(effect);
    return all.join(QLatin1Char('\n'));
}

QByteArray node(const QByteArray &attributes, const QByteArray &children)
{
    return "<anim:par presentation:node-type=\"on-click\" presentation:preset-class=\"entrance\" " +
           attributes + ">" + children + "</anim:par>";
}

} // namespace

/// The effects of a slide in flat XML.
class TestSlideEffects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTimes_data()
    {
        QTest::addColumn<double>("seconds"); // negative: none
        const auto row = [](const char *time, double seconds) { QTest::newRow(time) << seconds; };
        row("0.5s", 0.5);
        row("500ms", 0.5);
        row("0.5", 0.5);
        row("2min", 120);
        row("1h", 3600);
        row("00:00:01", 1);
        row("00:01:30.5", 90.5);
        row("01:30", 90);
        row(" 1s ", 1);
        row("1s;2s", 1);
        row("", -1);
        row("indefinite", -1);
        row("next", -1);
        row("media", -1);
        row("id1.begin", -1);
        row("s", -1);
        row("ms", -1);
        row("nans", -1);
        row("inf", -1);
        row("1e999s", -1);
        row("1:x", -1);
        row(":", -1);
        row("0x10s", -1);
        row("1,5s", -1);
    }

    void readsTimes()
    {
        QFETCH(double, seconds);
        const std::optional<double> time = secondsOf(QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(time.value_or(-1), seconds);
    }

    void finds_data()
    {
        QTest::addColumn<QByteArray>("content"); // of the page
        QTest::addColumn<QString>("effects");

        QTest::newRow("none") << QByteArray("<draw:rect/>") << QString();
        QTest::newRow("an empty sequence") << sequence({}) << QString();
        QTest::newRow("the three triggers")
            << sequence(click(effect("on-click", "entrance", "a") +
                              effect("with-previous", "exit", "b")) +
                        click(effect("after-previous", "emphasis", "c")))
            << QStringLiteral("entrance 1 0.5 a +0@0 click0\nexit 2 0.5 b +0@0 click0\n"
                              "emphasis 3 0.5 c +0@0 click1");
        QTest::newRow("not of the main sequence")
            << QByteArray("<anim:par presentation:node-type=\"timing-root\">"
                          "<anim:par smil:begin=\"id1.begin\"><anim:transitionFilter/></anim:par>"
                          "<anim:seq presentation:node-type=\"interactive-sequence\">" +
                          effect("on-click", "entrance", "a") + "</anim:seq></anim:par>")
            << QString();
        QTest::newRow("not of the notes")
            << QByteArray("<presentation:notes>" +
                          sequence(click(effect("on-click", "entrance", "a"))) +
                          "</presentation:notes>")
            << QString();
        QTest::newRow("of old decks: triggers on what holds them together, too")
            << sequence("<anim:par presentation:node-type=\"on-click\"><anim:par "
                        "presentation:node-type=\"after-previous\">" +
                        effect("with-previous", "entrance", "a") + "</anim:par></anim:par>")
            << QStringLiteral("entrance 2 0.5 a +0@0 click0");
        QTest::newRow("a preset within a preset: the inner one")
            << sequence(click(node({}, effect("after-previous", "exit", "a"))))
            << QStringLiteral("exit 3 0.5 a +0@0 click0");
        QTest::newRow("of no class, but with a target")
            << sequence("<anim:par presentation:node-type=\"on-click\"><anim:set "
                        "smil:targetElement=\"a\"/></anim:par>")
            << QStringLiteral("other 1 0 a +0@0 click0");
        QTest::newRow("of no class and without a target: nothing")
            << sequence("<anim:par presentation:node-type=\"on-click\"><anim:set/></anim:par>")
            << QString();
        QTest::newRow("another node type: nothing")
            << sequence("<anim:par presentation:node-type=\"on-hover\" "
                        "presentation:preset-class=\"entrance\"/>")
            << QString();
    }

    void finds()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, effects);
        QCOMPARE(effectsOf(content), effects);
    }

    void tellsTheDuration_data()
    {
        QTest::addColumn<QByteArray>("attributes");
        QTest::addColumn<QByteArray>("children");
        QTest::addColumn<QString>("effect");

        const auto row = [](const char *name, const char *attributes, const char *children,
                            const char *effect) {
            QTest::newRow(name) << QByteArray(attributes) << QByteArray(children)
                                << QString::fromLatin1(effect);
        };
        row("none: at once", "", "", "entrance 1 0 +0@0 click0");
        row("the longest", "", "<anim:set smil:dur=\"0.001s\"/><anim:animate smil:dur=\"2s\"/>",
            "entrance 1 2 +0@0 click0");
        row("begin and duration", "",
            "<anim:animate smil:dur=\"1s\"/><anim:set smil:begin=\"1.5s\" smil:dur=\"0.5s\"/>",
            "entrance 1 2 +0@0 click0");
        row("nested", "",
            "<anim:par smil:begin=\"1s\"><anim:animate smil:begin=\"1s\" "
            "smil:dur=\"1s\"/></anim:par>",
            "entrance 1 3 +0@0 click0");
        row("repeated", "smil:repeatCount=\"3\"", "<anim:animate smil:dur=\"2s\"/>",
            "entrance 1 6 +0@0 click0");
        row("repeated below", "", "<anim:animate smil:dur=\"2s\" smil:repeatCount=\"1.5\"/>",
            "entrance 1 3 +0@0 click0");
        row("there and back", "smil:autoReverse=\"true\"", "<anim:animate smil:dur=\"2s\"/>",
            "entrance 1 4 +0@0 click0");
        row("there and back, repeated", "smil:autoReverse=\"true\" smil:repeatCount=\"2\"",
            "<anim:animate smil:dur=\"2s\"/>", "entrance 1 8 +0@0 click0");
        row("not there and back", "smil:autoReverse=\"false\"", "<anim:animate smil:dur=\"2s\"/>",
            "entrance 1 2 +0@0 click0");
        row("until the next click: one turn", "smil:repeatCount=\"indefinite\"",
            "<anim:animate smil:dur=\"2s\"/>", "entrance 1 2 +0@0 click0 endless");
        row("not known", "", "<anim:animate smil:dur=\"indefinite\"/>", "entrance 1 0 +0@0 click0");
        row("negative times and counts", "smil:repeatCount=\"-2\"",
            "<anim:animate smil:begin=\"-3s\" smil:dur=\"1s\"/><anim:animate smil:dur=\"-1s\"/>",
            "entrance 1 1 +0@0 click0");
        row("longer than a day: a day", "smil:repeatCount=\"1e300\"",
            "<anim:animate smil:dur=\"1e300s\" smil:repeatCount=\"1e300\"/>",
            "entrance 1 86400 +0@0 click0");
        row("infinitely often there and back, which takes no time",
            "smil:repeatCount=\"1.7e308\" smil:autoReverse=\"true\"",
            "<anim:animate smil:dur=\"0s\"/>", "entrance 1 0 +0@0 click0");
        row("a count that is no number", "smil:repeatCount=\"nan\"",
            "<anim:animate smil:dur=\"1s\"/>", "entrance 1 1 +0@0 click0");
    }

    void tellsTheDuration()
    {
        QFETCH(QByteArray, attributes);
        QFETCH(QByteArray, children);
        QFETCH(QString, effect);
        QCOMPARE(effectsOf(sequence(click(node(attributes, children)))), effect);
    }

    void tellsTheDelay()
    {
        QCOMPARE(effectsOf(sequence(
                     click(effect("on-click", "entrance", "a", " smil:begin=\"0.25s\""), "1s") +
                     click(effect("after-previous", "entrance", "b", " smil:begin=\"next\""),
                           "indefinite"))),
                 QStringLiteral("entrance 1 0.5 a +0.25@1.25 click0\n"
                                "entrance 3 0.5 b +0@0 click1"));
    }

    void findsTargets_data()
    {
        QTest::addColumn<QByteArray>("children");
        QTest::addColumn<QString>("effect");

        const auto row = [](const char *name, const char *children, const char *effect) {
            QTest::newRow(name) << QByteArray(children) << QString::fromLatin1(effect);
        };
        row("one, often",
            "<anim:set smil:targetElement=\"a\"/><anim:par><anim:animate "
            "smil:targetElement=\"a\"/></anim:par>",
            "entrance 1 0 a +0@0 click0");
        row("several", "<anim:set smil:targetElement=\"b\"/><anim:set smil:targetElement=\"a\"/>",
            "entrance 1 0 b a +0@0 click0");
        row("its background, told by one of two",
            "<anim:set smil:targetElement=\"a\"/><anim:animate smil:targetElement=\"a\" "
            "anim:sub-item=\"background\"/>",
            "entrance 1 0 a/background +0@0 click0");
        row("its background, told by the first of two",
            "<anim:set smil:targetElement=\"a\" anim:sub-item=\"background\"/>"
            "<anim:animate smil:targetElement=\"a\"/>",
            "entrance 1 0 a/background +0@0 click0");
        row("its text", "<anim:set smil:targetElement=\"a\" anim:sub-item=\"text\"/>",
            "entrance 1 0 a/text +0@0 click0");
        row("all of it", "<anim:set smil:targetElement=\"a\" anim:sub-item=\"whole\"/>",
            "entrance 1 0 a +0@0 click0");
        row("by letters", "<anim:iterate smil:targetElement=\"a\"><anim:set/></anim:iterate>",
            "entrance 1 0 a +0@0 click0 letters");
    }

    void findsTargets()
    {
        QFETCH(QByteArray, children);
        QFETCH(QString, effect);
        QCOMPARE(effectsOf(sequence(click(node({}, children)))), effect);
    }
};

QTEST_APPLESS_MAIN(TestSlideEffects)
#include "tst_slideeffects.moc"
