#pragma once

#include "pptdata/PPT_fileDat.h"

#include <QBuffer>
#include <QImageReader>

/// What a target may expect of Qt's decoders when they are given these pictures.
class PictureBudget
{
public:
    void add(const QByteArray &picture)
    {
        QByteArray bytes = picture;
        QBuffer buffer(&bytes);
        QImageReader reader(&buffer);
        if (!reader.canRead())
            return;
        const QSize size = reader.size();
        pixels += size.isValid() ? qint64(size.width()) * size.height() : kMostPixels + 1;
        isDefined = isDefined && (reader.format() == "png" || reader.format() == "jpeg");
    }

    void add(const PPT_Page &page)
    {
        add(page.pageImage);
        for (const PPT_Shape *shape : page.shapes)
            add(shape->picDat);
    }

    /// Adds the pictures of all pages. Of what is no model nothing is painted.
    void addModel(const QByteArray &bytes)
    {
        PPT_fileDat model;
        CStdDataStream stream(bytes);
        if (model.streamFrom(stream)) {
            for (const auto &entry : model.pages)
                add(*entry.second);
        }
        model.release();
    }

    /// Whether they are painted quickly. A decoder makes room for the pixels that a picture
    /// announces, and fills it, be there data for them or not: a few bytes would hold a fuzzer up
    /// for minutes, in code that is Qt's.
    bool isKept() const { return pixels <= kMostPixels; }

    /// Whether they are always decoded to the same pixels. Those that a truncated picture lacks
    /// are, in other formats than PNG and JPG, what was in the memory before.
    bool hasDefinedPixels() const { return isDefined; }

private:
    static constexpr qint64 kMostPixels = 1 << 16;

    qint64 pixels = 0;
    bool isDefined = true;
};
