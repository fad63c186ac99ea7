#pragma once

#include "tools/docimport/PageSource.h"
#include "tools/docimport/deck/DeckSplitter.h"

#include <QImage>

/// What an animated slide is composed of.
struct SlideParts
{
    /// Draws a page, counted from 0, as large as the reference on paper of that colour. Returns
    /// what is wrong; empty when `image` is the page.
    using Draw = std::function<QString(int page, const QColor &paper, QImage &image)>;

    const DeckSlide &slide; ///< has layers
    int number;             ///< that of its page result file, and of its page in the model
    QImage reference;       ///< the engine's own picture of it
    Draw background;        ///< of the document of backgrounds
    Draw layer;             ///< of the document of layers
    int jpegQuality;
};

/// What came of it.
struct ComposedSlide
{
    PagePayload payload;    ///< when it is animated
    double difference = -1; ///< as in SlideReport
    QString reason;         ///< why it has to be static; empty when it is animated
};

/// Composes the model of an animated slide. On any thread, on several at once.
/// \return what is wrong; empty when `composed` tells what came of it
QString composeSlide(const SlideParts &parts, ComposedSlide &composed);
