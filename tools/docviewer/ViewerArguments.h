#pragma once

#include "docdisplay/DocDisplayMgr.h"

#include <QStringList>

#include <optional>

/// What the program was called with.
struct ViewerArguments
{
    QString document;   ///< empty: none
    QString screenshot; ///< where a picture of the window goes; empty: none is asked for
    std::optional<DocDisplayMgr::AnimStatus> position; ///< where to begin

    /// Reads the arguments, without the name of the program; needs an application object.
    /// \return the exit status when that was all: help or version was printed, or the usage is
    /// wrong
    std::optional<int> parse(const QStringList &arguments);
};
