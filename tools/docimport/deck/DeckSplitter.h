#pragma once

#include "tools/docimport/ImportReport.h"

#include <QSet>
#include <QString>

#include <memory>
#include <vector>

/// An effect that will play.
struct PlannedEffect
{
    int layer = 0;       ///< what it moves
    int trigger = 1;     ///< as in the model: 1 on click, 2 with the previous effect, 3 after it
    bool isExit = false; ///< the layer leaves
    double duration = 0; ///< seconds
};

/// What is made of one slide of a deck.
struct DeckSlide
{
    int layers = 0; ///< 0: the slide is static

    /// Its page among the backgrounds, from 0. Other slides have blank ones there, so that pages
    /// keep their numbers.
    int backgroundPage = -1;

    /// Its first page among the layers, from 0: two for each layer, on white paper and on yellow.
    int firstLayerPage = -1;

    std::vector<PlannedEffect> effects; ///< in playing order
    QVector<EffectReport> report;       ///< all effects of the slide's main sequence, in order
};

/// A deck as flat XML, taken apart for the engine into pages that have only what rests at the
/// bottom of an animated slide, and pages of a layer each: a shape that moves, a paragraph that
/// does, or what rests between them.
class DeckSplitter
{
public:
    DeckSplitter();
    ~DeckSplitter();
    Q_DISABLE_COPY_MOVE(DeckSplitter)

    /// Reads the deck. Pictures in it are laid aside in a file in `workFolder`, so that memory is
    /// bounded by the text of the deck.
    /// \return what is wrong with it; empty when it is read
    QString read(const QString &path, const QString &workFolder);

    /// The slides in order, those that are hidden as well.
    const std::vector<DeckSlide> &slides() const;

    /// Numbers the pages of those slides that are `wanted` (from 0) and have layers, and writes
    /// both decks. When no slide has layers nothing is written.
    /// \return what went wrong; empty when they are there
    QString write(const QString &backgrounds, const QString &layers, const QSet<int> &wanted);

private:
    class Private;
    std::unique_ptr<Private> d;
};
