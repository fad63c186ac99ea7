#pragma once

#include "DocpageRun.h"
#include "TinyPictures.h"
#include "emfdeal/EmfDeal.h"

inline constexpr char kPngHeader[] = "88 88 88 88 01 01 04 00 00 00 49 00 00 00";
inline constexpr char kJpgHeader[] = "88 88 88 88 01 01 02 00 00 00 a0 00 00 00";
inline constexpr char kSlideHeader[] = "88 88 88 88 01 01 03 00 00 00 1c 00 00 00";

inline QByteArray pngPage()
{
    return hex(kPngHeader) + TinyPictures::png();
}

inline QByteArray jpgPage()
{
    return hex(kJpgHeader) + TinyPictures::jpg();
}

// A model of 640 x 480 without pages.
inline QByteArray slideModel()
{
    return hex("50 54 41 4d 00 00 00 02 40 84 00 00 00 00 00 00 40 7e 00 00 00 00 00 00 "
               "00 00 00 00");
}

inline QByteArray slidePage()
{
    return hex(kSlideHeader) + slideModel();
}

// A JPG page whose picture has the given bytes.
inline QByteArray jpgPageOf(const QByteArray &picture)
{
    QByteArray header = hex(kJpgHeader);
    header[10] = static_cast<char>(picture.size());
    header[11] = static_cast<char>(picture.size() >> 8);
    return header + picture;
}

// The page of a model, and what follows it in the file.
inline QByteArray pageOf(const QByteArray &model, const QByteArray &behind = {})
{
    return EmfDeal::getHeader(model.size(), DocCovRslt::PAGE_FORMAT_PPT_ANIM) + model + behind;
}
