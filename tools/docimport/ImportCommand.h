#pragma once

#include <QStringList>

/// All that docimport does with its arguments.
/// \return the exit status
int runImport(const QStringList &arguments);
