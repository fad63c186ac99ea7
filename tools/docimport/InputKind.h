#pragma once

#include <QString>

/// What an input is, told from its content: names are often wrong.
struct InputKind
{
    enum Kind { Unknown, Pdf, Deck };

    Kind kind = Unknown;
    QString suffix; ///< of a deck, by which the engine is told of its format
    QString fault;  ///< why it cannot be imported; empty when it may be tried

    static InputKind of(const QString &path);
};
