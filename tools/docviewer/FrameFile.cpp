#include "tools/docviewer/FrameFile.h"

#include "tools/docpage/OutputFile.h"
#include "tools/docpage/PngEncoder.h"

QString savePng(const QImage &image, const QString &path)
{
    QByteArray png;
    const QString fault = encodePng(image, png);
    return fault.isEmpty() ? saveFile(path, OutputRules(true, {}), {png}) : fault;
}
