#include "tools/docviewer/FrameFile.h"

#include "tools/docpage/OutputFile.h"
#include "tools/docpage/PngEncoder.h"

#include <new>

QString savePng(const QImage &image, const QString &path)
{
    try {
        QByteArray png;
        const QString fault = encodePng(image, png);
        return fault.isEmpty() ? saveFile(path, OutputRules(true, {}), {png}) : fault;
    } catch (const std::bad_alloc &) { // which an event loop does not survive
        return QStringLiteral("out of memory");
    }
}
