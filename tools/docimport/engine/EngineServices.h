#pragma once

#include <QString>

/// Writes a copy of the engine's lists of its components into `folder`, but for the one that plays
/// sound and film: where its decoders are not installed, it waits for each film until time is up. A
/// film keeps its still picture.
/// \return what went wrong; empty when `argument` tells the engine to use the copy, or is empty as
///         there is nothing to leave out
QString writeServices(const QString &engine, const QString &folder, QString &argument);
