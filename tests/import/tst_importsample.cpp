#include "DocimportTest.h"
#include "docdisplay/DocDisplayMgr.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/deck/SlideModel.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

namespace {

constexpr int kPages = 4;

// "1 in 0.75 click": the effects of a page as its model has them, each with its shape.
QString effectsOf(const PPT_Page &page)
{
    static const char *const kTriggers[] = {"", "click", "with", "after"};
    QStringList effects;
    for (const PPT_Effect *effect : page.effects)
        effects += QStringLiteral("%1 %2 %3 %4")
                       .arg(effect->shapeId)
                       .arg(text(effect->exit == -1 ? "out" : "in"))
                       .arg(double(effect->timing.duration))
                       .arg(text(kTriggers[effect->timing.triggerType]));
    return effects.join(text(", "));
}

struct Release
{
    void operator()(DocDisplayMgr *manager) const { manager->Destroy(); }
};

// Whether nothing is seen but the page's own colour.
bool isBlank(const QImage &page, const QRect &part)
{
    const QRgb blank = page.pixel(0, 0);
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (page.pixel(x, y) != blank)
                return false;
        }
    }
    return true;
}

} // namespace

/// The sample deck from its flat XML to what the display manager shows of it.
class TestImportSample : public DocimportTest
{
    Q_OBJECT

private:
    std::unique_ptr<DocDisplayMgr, Release> manager;

    QImage imageAt(unsigned int page, unsigned int step, unsigned int ms)
    {
        return manager->SetAnimStatus({page, step, ms}) ? manager->GetImg() : QImage();
    }

private Q_SLOTS:
    void initTestCase()
    {
        DocimportTest::initTestCase();
        DocimportTest::init();
        verifyDoes({text(IMPORT_SAMPLE), text("-o"), text("new"), text("--report"), text("r.json")},
                   "4 page result files in new, 4 of them animated\n");
        manager.reset(CreateDisplayMgr());
        manager->Init(DocCovRslt::DOCRSLT_PPT_ANIM, kPages);
        for (unsigned int i = 0; i < kPages; ++i)
            manager->AddDocPage(i, place->path(QStringLiteral("new/page_%1").arg(i)));
    }
    void init() {} // the folder stays
    void cleanupTestCase() { manager.reset(); }

    void models_data()
    {
        QTest::addColumn<QString>("effects");
        QTest::newRow("0") << text("1 in 0.75 click");
        QTest::newRow("1") << text("1 in 0.5 click, 2 in 0.5 click, 3 in 0.5 after");
        QTest::newRow("2") << text("1 in 1 click, 2 in 0.5 click");
        QTest::newRow("3") << text("1 in 1 after, 1 out 0.75 click, 2 in 0.75 with");
    }
    void models()
    {
        const QString number = text(QTest::currentDataTag());
        SlideModel model;
        QCOMPARE(model.read(PageFile::read(place->path(text("new/page_") + number)).payload),
                 QString());
        QCOMPARE(model.data.head.width, 1280.0F);
        QCOMPARE(model.data.head.height, 720.0F);
        const PPT_Page *page = model.data.getPage(number.toUShort());
        QVERIFY(page);
        QTEST(effectsOf(*page), "effects");
    }

    // The title rests, the line below it comes in.
    void titleSlide()
    {
        const QRect title(70, 230, 700, 90);
        const QRect subtitle(70, 345, 700, 70);
        const QImage before = imageAt(0, 0, 0);
        QCOMPARE(before.size(), QSize(1280, 720));
        QVERIFY(!isBlank(before, title));
        QVERIFY(isBlank(before, subtitle));
        QVERIFY(!isBlank(imageAt(0, 1, 750), subtitle));
    }

    // Each paragraph with its bullet, and not before its turn.
    void listSlide()
    {
        const QRect lines[] = {{70, 195, 900, 40}, {70, 255, 900, 40}, {70, 312, 900, 40}};
        const auto seen = [&](unsigned int step, unsigned int ms) {
            const QImage image = imageAt(1, step, ms);
            QString marks;
            for (const QRect &line : lines)
                marks += QLatin1Char(isBlank(image, line) ? '-' : 'x');
            return marks;
        };
        QCOMPARE(seen(0, 0), text("---"));
        QCOMPARE(seen(1, 500), text("x--"));
        QCOMPARE(seen(2, 500), text("xx-"));
        QCOMPARE(seen(2, 1000), text("xxx"));
    }

    // The picture leaves to the right while the answer comes in where it was.
    void pictureSlide()
    {
        const QRect sky(100, 180, 100, 60);   // of the picture alone
        const QRect answer(80, 280, 500, 90); // below which the picture has been
        QVERIFY(isBlank(imageAt(3, 0, 0), sky));
        QVERIFY(!isBlank(imageAt(3, 1, 1000), sky));
        const QImage end = imageAt(3, 2, 751);
        QVERIFY(isBlank(end, sky));
        QVERIFY(!isBlank(end, answer));
    }

    void report()
    {
        const QJsonArray documents = QJsonDocument::fromJson(place->read(text("r.json")))
                                         .object()
                                         .value(text("documents"))
                                         .toArray();
        QCOMPARE(documents.size(), 1);
        const QJsonArray slides = documents.at(0).toObject().value(text("slides")).toArray();
        QCOMPARE(slides.size(), kPages);
        int kept = 0;
        for (const QJsonValue &slide : slides) {
            QCOMPARE(slide.toObject().value(text("reason")).toString(), QString());
            QVERIFY(slide.toObject().value(text("difference")).toDouble(1) < 0.015);
            for (const QJsonValue &effect : slide.toObject().value(text("effects")).toArray())
                kept += effect.toObject().value(text("result")).toString() == text("kept") ? 1 : 0;
        }
        QCOMPARE(kept, 9);
    }
};

QTEST_GUILESS_MAIN(TestImportSample)
#include "tst_importsample.moc"
