#include "emfdeal/EmfDeal.h"

#include <QtTest>

/// A renderer linked beside the library's objects takes the place of the platform's hooks.
class TestEmfPlatform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linkedRendererIsUsed()
    {
        EmfDeal enc;
        QVERIFY(enc.checkEmfFile(QByteArrayLiteral("EMF page")));
        QVERIFY(!enc.checkEmfFile(QByteArrayLiteral("page")));
    }
};

QTEST_APPLESS_MAIN(TestEmfPlatform)
#include "tst_emfplatform.moc"
