#pragma once

#include "pptdata/PPT_fileDat.h"

#include <QVector>

/// A step of a slide: what one click plays.
struct SlideStep
{
    bool startsByItself; ///< without a click
    quint32 duration;    ///< ms
};

/// The steps of a page of a model, from step 1, as the player cuts them.
QVector<SlideStep> slideSteps(PPT_fileDat &model, quint16 pageId);
