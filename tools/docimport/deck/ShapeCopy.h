#pragma once

#include "tools/docimport/deck/LayerPiece.h"
#include "tools/docimport/deck/XmlNode.h"

class DeckStyles;

/// What fields on a slide show, which in a layer's page would show that page's.
struct SlideFields
{
    int page = 1; ///< from 1
    int pages = 1;
    QString pageName;
};

/// What a layer shows of a shape, everything at the same place as in the shape: what is not to be
/// seen is invisible, not gone.
/// \param styles is asked for the styles that make it invisible
XmlNode shapeCopy(const XmlNode &shape, const LayerPiece &piece, const SlideFields &fields,
                  DeckStyles &styles);
