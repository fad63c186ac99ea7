#pragma once

#include <QString>

/// A file name that is somebody's own, so that Qt takes it as no more than that: a name that begins
/// with a colon would be that of a resource. Such a name is given a "./" in front.
QString plainName(const QString &name);
