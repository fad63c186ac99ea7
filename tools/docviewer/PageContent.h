#pragma once

#include "tools/docpage/SlideSteps.h"
#include "tools/docviewer/ViewerDocument.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// What a page's file holds, as far as the display manager does not tell.
struct PageContent
{
    QByteArray slide;         ///< slide animation data; empty when the page is a picture
    QVector<SlideStep> steps; ///< of the slide, from step 1
    QString fault;            ///< why the page must not or cannot be shown; empty when it may

    /// Reads the file of a page of a document.
    static PageContent read(const ViewerDocument &document, unsigned int page);
    /// Reads slide animation data, the model once.
    static PageContent ofSlide(const QByteArray &payload, unsigned int page);

    /// The number of steps.
    quint32 stepCount() const { return static_cast<quint32>(steps.size()); }
    /// How long a step lasts, in ms; 0 when there is no such step.
    quint32 duration(quint32 step) const;
    /// Whether the first step is played without a click.
    bool startsByItself() const { return !steps.isEmpty() && steps.constFirst().startsByItself; }

private:
    static PageContent whatIsIn(const ViewerDocument &document, unsigned int page);
};
