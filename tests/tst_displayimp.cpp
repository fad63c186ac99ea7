#include "LogSpy.h"
#include "PageFiles.h"
#include "docdisplay/DocDisplay_Imp.h"

#include <QtTest>

/// The members that hosts do not see.
class TestDisplayImp : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir dir;

private Q_SLOTS:
    void pageFileName()
    {
        DocDisplay_Imp mgr;
        QString name = QStringLiteral("before");
        QCOMPARE(mgr.GetPageFileName(0, name), false);
        QCOMPARE(name, QStringLiteral("before"));

        mgr.Init(DocCovRslt::DOCRSLT_PICTURE, 2);
        QVERIFY(mgr.AddDocPage(1, QStringLiteral("no such/page ä")));
        QCOMPARE(mgr.GetPageFileName(1, name), true);
        QCOMPARE(name, QStringLiteral("no such/page ä"));
        QCOMPARE(mgr.GetPageFileName(2, name), false);
        QCOMPARE(mgr.GetPageFileName(0xFFFFFFFF, name), false);
        QCOMPARE(name, QStringLiteral("no such/page ä"));
        QCOMPARE(mgr.GetPageFileName(0, name), true);
        QCOMPARE(name, QString());
    }

    void keptSlotsKeepTheirNames()
    {
        DocDisplay_Imp mgr;
        mgr.Init(DocCovRslt::DOCRSLT_PICTURE, 3);
        for (unsigned int page = 0; page < 3; ++page)
            QVERIFY(mgr.AddDocPage(page, QString::number(page)));
        mgr.Init(DocCovRslt::DOCRSLT_PPT_ANIM, 2);
        mgr.Init(DocCovRslt::DOCRSLT_PPT_ANIM, 4);
        QStringList names;
        for (unsigned int page = 0; page < 4; ++page) {
            QString name;
            QVERIFY(mgr.GetPageFileName(page, name));
            names << name;
        }
        QCOMPARE(names,
                 (QStringList{QStringLiteral("0"), QStringLiteral("1"), QString(), QString()}));
    }

    void pictureOfAPage()
    {
        using namespace PageFiles;
        const QString png =
            write(dir, QStringLiteral("png"), pageResultFile(4, picture(Qt::red, "PNG")));
        const QString slide =
            write(dir, QStringLiteral("slide"), pageResultFile(3, picture(Qt::red, "PNG")));
        DocDisplay_Imp mgr;
        mgr.Init(DocCovRslt::DOCRSLT_PICTURE, 4);
        QVERIFY(mgr.AddDocPage(0, png));
        QVERIFY(mgr.AddDocPage(1, slide));
        QVERIFY(mgr.AddDocPage(2, dir.filePath(QStringLiteral("missing"))));
        LogSpy log;
        QCOMPARE(mgr.GetNoPPTAnimPageImage(0).pixel(0, 0), qRgb(255, 0, 0));
        QVERIFY(mgr.GetNoPPTAnimPageImage(1).isNull());
        QVERIFY(mgr.GetNoPPTAnimPageImage(2).isNull()); // not even opened
        QVERIFY(mgr.GetNoPPTAnimPageImage(3).isNull());
        QVERIFY(mgr.GetNoPPTAnimPageImage(4).isNull());
        QVERIFY(mgr.GetNoPPTAnimPageImage(0xFFFFFFFF).isNull());
        QCOMPARE(log.takeLines(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestDisplayImp)
#include "tst_displayimp.moc"
