#pragma once

#include "docdisplay/DocDisplayMgr.h"
#include "tools/docpage/Document.h"
#include "tools/docpage/PageFile.h"

#include <QImage>

/// The image of a position, as the display manager returns it.
/// \param file that of the page
/// \return why the image is not worth having; empty when it is in `image`
QString pageImage(const Document &document, const DocDisplayMgr::AnimStatus &position,
                  const PageFile &file, QImage &image);
