#include "tools/docpage/NaturalOrder.h"

#include <QLocale>
#include <QtTest>

#include <clocale>

/// The order of a document's page result files, by name.
class TestNaturalOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sorts_data()
    {
        QTest::addColumn<QString>("names"); // separated by a bar
        QTest::addColumn<QString>("sorted");

        const auto row = [](const char *name, const char *names, const char *sorted) {
            QTest::newRow(name) << QString::fromUtf8(names) << QString::fromUtf8(sorted);
        };
        row("numbers: by value", "page_10|page_2|page_1|page_100|page_0",
            "page_0|page_1|page_2|page_10|page_100");
        row("numbers inside: by value", "p10.png|p9.png|p10a.png", "p9.png|p10.png|p10a.png");
        row("two numbers: the first counts first", "2-1|1-10|1-9", "1-9|1-10|2-1");
        row("long numbers: by value", "p99999999999999999999|p100000000000000000000",
            "p99999999999999999999|p100000000000000000000");
        row("leading zeros: the same value, then by character", "page_2|page_02|page_002|page_1",
            "page_1|page_002|page_02|page_2");
        row("leading zeros the other way round: the same", "page_002|page_02|page_2|page_1",
            "page_1|page_002|page_02|page_2");
        row("beginning of another: first", "page_1a|page_1|page", "page|page_1|page_1a");
        row("letters: lower before upper case of the same", "B|b|A|a", "a|A|b|B");
        row("umlaut: beside its letter", "z|ä|b|a", "a|ä|b|z");
        row("not told apart by the collation: by character", "a\x02|a\x01|a", "a|a\x01|a\x02");
        row("equal names: both kept", "a|b|a", "a|a|b");
        row("one: as it is", "a", "a");
    }

    void sorts()
    {
        QFETCH(QString, names);
        QFETCH(QString, sorted);
        QStringList list = names.split(QLatin1Char('|'));
        sortNaturally(list);
        QCOMPARE(list.join(QLatin1Char('|')), sorted);
    }

    void isTheSameInEveryLocale_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::newRow("C") << QLocale::c();
        QTest::newRow("Swedish, where ä follows z") << QLocale(QLocale::Swedish);
        QTest::newRow("German") << QLocale(QLocale::German);
    }

    void isTheSameInEveryLocale()
    {
        QFETCH(QLocale, locale);
        const QLocale before;
        QLocale::setDefault(locale);
        QStringList names = QStringLiteral("z|page_10|ä|Page_2|page_2").split(QLatin1Char('|'));
        sortNaturally(names);
        QLocale::setDefault(before);
        QCOMPARE(names.join(QLatin1Char('|')), QStringLiteral("ä|page_2|Page_2|page_10|z"));
    }

    void isTheSameWithoutALocale()
    {
        const QByteArray before = std::setlocale(LC_ALL, nullptr);
        std::setlocale(LC_ALL, "C");
        QStringList names = QStringLiteral("page_10|ä|page_2").split(QLatin1Char('|'));
        sortNaturally(names);
        std::setlocale(LC_ALL, before.constData());
        QCOMPARE(names.join(QLatin1Char('|')), QStringLiteral("ä|page_2|page_10"));
    }
};

QTEST_APPLESS_MAIN(TestNaturalOrder)
#include "tst_naturalorder.moc"
