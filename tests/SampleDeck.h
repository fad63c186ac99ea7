#pragma once

#include "DocpageRun.h"
#include "PageFiles.h"

#include <QDir>
#include <QImage>

/// The folder of the sample deck.
inline QDir sampleFolder()
{
    return QFileInfo(QStringLiteral(SAMPLE_DECK)).dir();
}

/// Puts the sample deck into `place`, with backgrounds that have no alpha channel: what Qt paints
/// on the others may be a level lighter or darker on another processor.
inline void writeOpaqueSample(const Workplace &place)
{
    const QDir samples = sampleFolder();
    for (const QString &name : samples.entryList(QDir::Files)) {
        QFile file(samples.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read the sample");
        place.write(name, file.readAll());
    }
    for (const char *background : {"cause.png", "phases.png"}) {
        const QImage image(samples.filePath(text(background)));
        place.write(text(background),
                    PageFiles::encoded(image.convertToFormat(QImage::Format_RGB32)));
    }
}
