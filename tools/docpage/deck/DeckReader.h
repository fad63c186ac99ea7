#pragma once

#include "tools/docpage/deck/SlideModel.h"

#include <QStringList>

/// A deck as described by a JSON file: one model for each page result file to be.
struct Deck
{
    SlideModels models;
    QStringList inputs; ///< the files that were read
    QString fault;      ///< what is wrong with the description; empty when all of it was read

    /// Reads the description `file` and the pictures it names.
    void read(const QString &file);
};
