#pragma once

#include <QString>

/// The URL of an absolute path, as it may stand among the engine's variables.
QString engineUrl(const QString &path);
