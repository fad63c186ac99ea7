#pragma once

#include <QtGlobal>

/// \file
/// Marks what the library exports; everything else in it is hidden.

#if defined(DOCDISPLAY_LIBRARY)
#define DOCDISPLAY_EXPORT Q_DECL_EXPORT
#else
#define DOCDISPLAY_EXPORT Q_DECL_IMPORT
#endif
