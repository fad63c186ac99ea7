#include "LogSpy.h"
#include "PageFiles.h"
#include "emfdeal/EmfDeal.h"

#include <QDir>
#include <QtTest>

/// The hooks of a platform without a metafile renderer.
class TestNoEmfPlatform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsRendered_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("EMF page");
        QTest::newRow("head of a metafile")
            << QByteArray::fromHex("01000000 6c000000") + QByteArray(32, '\0') + " EMF";
    }
    void nothingIsRendered()
    {
        QFETCH(QByteArray, page);
        const QTemporaryDir dir;
        const QString src = PageFiles::write(dir, QStringLiteral("in"), page);
        const QString dst = dir.filePath(QStringLiteral("out"));
        LogSpy log;
        EmfDeal enc;
        QVERIFY(!enc.checkEmfFile(page));
        QVERIFY(!enc.encodeEmf_inner(src, dst));

        EmfDeal::PageCovrRslt rslt;
        rslt.rsltDat = "before";
        rslt.picFormat = DocCovRslt::PAGE_FORMAT_PPT_ANIM;
        QByteArray emf = page;
        QVERIFY(!enc.CovrEmf(emf, rslt));
        QCOMPARE(rslt.rsltDat, QByteArray("before"));
        QCOMPARE(rslt.picFormat, DocCovRslt::PAGE_FORMAT_PPT_ANIM);
        QCOMPARE(emf, page);

        QByteArray out = "before";
        QVERIFY(!EmfDeal::CovEmf2Pic(page, out, QStringLiteral("PNG"), 95, 120));
        QCOMPARE(out, QByteArray("before"));
        QVERIFY(!EmfDeal::CovEmf2Pic(src, dst, QStringLiteral("JPG"), 95, 120));

        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList(QStringLiteral("in")));
        QCOMPARE(log.takeLines(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestNoEmfPlatform)
#include "tst_noemfplatform.moc"
