// A renderer's hooks in place of the platform's.
#include "TestRenderer.h"
#include "emfdeal/EmfDeal.h"

TestRenderer &TestRenderer::instance()
{
    static TestRenderer renderer;
    return renderer;
}

bool EmfDeal::checkEmfFile(const QByteArray &data)
{
    const TestRenderer &renderer = TestRenderer::instance();
    if (renderer.onCheck)
        renderer.onCheck();
    return data.startsWith("EMF");
}

bool EmfDeal::CovEmf2Pic(const QByteArray &emf, QByteArray &out, const QString &format, int quality,
                         int resolution)
{
    TestRenderer &renderer = TestRenderer::instance();
    renderer.calls << QStringLiteral("%1 %2 %3 of %4")
                          .arg(format, QString::number(quality), QString::number(resolution),
                               QString::fromUtf8(emf));
    if (renderer.onRender)
        renderer.onRender(format);
    const bool isPng = format == QStringLiteral("PNG");
    const int size = isPng ? renderer.pngSize : renderer.jpgSize;
    // A renderer may leave something behind when it fails.
    out = size == TestRenderer::kFails ? QByteArray("?") : QByteArray(size, isPng ? 'p' : 'j');
    return size != TestRenderer::kFails;
}
