#pragma once

#include "tools/docpage/OutputFile.h"
#include "tools/docpage/deck/SlideModel.h"

/// Where the description of a deck goes.
struct DeckOutput
{
    QString json;     ///< the file to be; empty for standard output
    QString pictures; ///< the folder of the pictures; empty when the JSON is to hold them

    /// Writes the description of these models, each for a file of its own, and says what went
    /// wrong. Nothing is written when a file must not be.
    /// \return the exit status
    int write(const SlideModels &models, const OutputRules &rules) const;
};
