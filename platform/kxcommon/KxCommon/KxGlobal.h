#pragma once

#include <QtGlobal>

/// Marks what the library offers; everything else in it is hidden.
#define KXCOMMON_EXPORT Q_DECL_EXPORT
