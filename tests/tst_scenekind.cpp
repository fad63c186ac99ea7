#include "pptanim/Scene.h"

#include <QTest>

#include <map>

namespace {

// The picture of a letter, always the same one.
QImage picture(QChar letter)
{
    static std::map<QChar, QImage> pictures;
    QImage &image = pictures[letter];
    if (image.isNull())
        image = QImage(1, 1, QImage::Format_RGB32);
    return image;
}

// "A b1,2 c3,4*": on the background A the picture b at rest and c, which moves.
Scene scene(const QString &text)
{
    Scene scene;
    QStringList words = text.split(QLatin1Char(' '));
    scene.background = picture(words.takeFirst()[0]);
    for (const QString &word : qAsConst(words)) {
        const QStringList numbers = word.mid(1).remove(QLatin1Char('*')).split(QLatin1Char(','));
        scene.pictures.push_back({picture(word[0]),
                                  {numbers[0].toInt(), numbers[1].toInt()},
                                  word.endsWith(QLatin1Char('*'))});
    }
    return scene;
}

} // namespace

/// Which scenes are of the same kind, and which go on from one.
class SceneKindTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scenes_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<bool>("isSame");
        QTest::addColumn<QString>("movers"); // a digit for each picture; null: does not go on
        const auto row = [](const char *first, const char *second, bool isSame,
                            const char *movers) {
            QTest::addRow("%s then %s", first, second)
                << QString::fromLatin1(first) << QString::fromLatin1(second) << isSame
                << QString::fromLatin1(movers);
        };
        const char *const no = nullptr;
        row("A", "A", true, "");
        row("A", "B", false, no);
        row("A b1,2", "A b1,2", true, "0");
        row("A b1,2", "B b1,2", false, no);
        row("A b1,2", "A c1,2", false, no);
        row("A b1,2", "A b3,2", false, no);
        row("A b1,2", "A b1,3", false, no);
        row("A b1,2", "A", false, no);
        row("A", "A b1,2", false, no);
        row("A b1,2*", "A b1,2*", true, "1");
        row("A b1,2*", "A b9,2*", true, "1");
        row("A b1,2*", "A b1,3*", false, no);
        row("A b1,2*", "A c1,2*", false, no);
        row("A b1,2*", "B b1,2*", false, no);
        row("A b1,2*", "A b9,2* c1,1", false, no);
        // One that came to rest.
        row("A b1,2*", "A b5,2", false, "1");
        row("A b1,2*", "A b5,3", false, no);
        row("A b1,2 c3,4* d5,6*", "A b1,2 c9,4 d8,6*", false, "011");
        // One that is gone.
        row("A b1,2*", "A", false, "");
        row("A b1,2* c3,4", "A c3,4", false, "0");
        row("A b1,2* c3,4", "A b5,2*", false, no);
        row("A b1,2 c3,4*", "A b1,2", false, "0");
        row("A b1,2 c3,4*", "A c5,4*", false, no);
        row("A b1,2* c3,4* d5,6", "A d5,6", false, "0");
        row("A b1,2* c3,4* d5,6", "A d5,7", false, no);
        row("A b1,2* c3,4* d5,6*", "A c8,4*", false, "1");
        row("A b1,2* c3,4 d5,6*", "A c3,4 d8,6*", false, "01");
        row("A b1,2* c3,4 d5,6*", "A d8,6*", false, no);
        row("A b1,2 c3,4* d5,6", "A b1,2 c3,4*", false, no);
        row("A b1,2* b1,2*", "A b7,2*", false, "1");
        row("A b1,2* c3,4*", "A c3,4* b1,2*", false, no);
    }
    void scenes()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(bool, isSame);
        QFETCH(QString, movers);
        const SceneKind kind(scene(first));
        const Scene next = scene(second);
        QCOMPARE(kind == SceneKind(next), isSame);
        QCOMPARE(kind != SceneKind(next), !isSame);
        std::vector<bool> found{true, false}; // of an earlier scene
        QCOMPARE(kind.goesOn(next, found), !movers.isNull());
        if (!movers.isNull()) {
            QString digits;
            for (const bool isMover : found)
                digits += QLatin1Char(isMover ? '1' : '0');
            QCOMPARE(digits, movers);
        }
    }

    void theKindOfNoScene()
    {
        std::vector<bool> movers;
        QVERIFY(!SceneKind().goesOn(scene(QStringLiteral("A")), movers));
        QVERIFY(SceneKind() == SceneKind());
        QVERIFY(SceneKind() != SceneKind(scene(QStringLiteral("A"))));
    }
};

QTEST_APPLESS_MAIN(SceneKindTest)
#include "tst_scenekind.moc"
