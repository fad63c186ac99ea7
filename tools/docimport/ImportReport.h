#pragma once

#include <QString>
#include <QVector>

/// What became of one effect of a deck.
struct EffectReport
{
    QString target;      ///< the shape's name, or the beginning of the paragraph
    QString kind;        ///< "entrance", "exit", "emphasis", "motion-path", "media-call", "other"
    QString trigger;     ///< "click", "with", "after"
    double duration = 0; ///< seconds
    QString result;      ///< "kept", "merged" (the slide looks the same without it), "dropped"
    QString reason;      ///< why it is not kept, or what of it is coarser; else empty
};

/// What became of one slide, or page.
struct SlideReport
{
    int number = 0; ///< in the document, from 1
    QString page;   ///< the name of its page result file
    bool isAnimated = false;
    QString reason;         ///< why a slide with effects is static; else empty
    QString note;           ///< what else there is to know, as that it is drawn smaller; else empty
    double difference = -1; ///< share of the pixels in which it differs from the engine's own
                            ///< picture, 0 to 1; negative: not composed
    QVector<EffectReport> effects;
};

/// What became of one input.
struct DocumentReport
{
    QString input;
    QString output; ///< the folder of its pages
    QString fault;  ///< why there are no pages; empty when there are
    QString note;   ///< why no slide is animated, when that was tried; else empty
    double seconds = 0;
    QVector<SlideReport> slides;
};

/// All of it as JSON.
QByteArray reportJson(const QVector<DocumentReport> &documents);
