#pragma once

#include "pptdata/PPT_Objects.h"
#include "tools/docpage/check/Finding.h"

#include <vector>

struct LocatedShape
{
    qint64 offset = 0;
    PPT_Shape shape;

    qint64 pictureOffset() const;
};

/// Its place follows from those before it.
struct LocatedEffect
{
    PPT_Effect effect;
};

struct LocatedPage
{
    qint64 offset = 0;
    quint16 pageId = 0;
    QByteArray image;
    std::vector<LocatedShape> shapes;
    qint64 effectsOffset = 0;
    std::vector<LocatedEffect> effects;

    qint64 imageOffset() const;
    qint64 effectOffset(size_t effect) const;
    qint64 triggerOffset(size_t effect) const;
};

/// A model of animated pages in which everything has its place in the file. Unlike the library's,
/// it also has the pages that others of the same number replace.
class LocatedModel
{
public:
    /// Reads the model.
    /// \param start the place of the payload in the file
    /// \return false with a finding when the library refuses it
    bool read(const QByteArray &payload, qint64 start, Findings &findings);

    qint64 start = 0; ///< in the file
    qint64 end = 0;   ///< in the file, behind the last byte
    PPT_FileHead head;
    std::vector<LocatedPage> pages;

    qint64 pageCountOffset() const;
};
