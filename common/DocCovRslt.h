#pragma once

#include <QMetaType>

/// The codes of a converted document, shared by the display side and the encoder. The numbers cross
/// the library's interface and are stored in files. Each type holds any 32-bit value, also one that
/// has no name here.
namespace DocCovRslt {

/// The kind of a document, given to DocDisplayMgr::Init().
enum DOCRSLT_TYPE : int {
    DOCRSLT_PICTURE = 0,     ///< static: pages are pictures
    DOCRSLT_PPT_ANIM = 1,    ///< slide deck with animation
    DOCRSLT_PICTURE_ALT = 2, ///< static, treated exactly as DOCRSLT_PICTURE
    DOCRSLT_NONE = 3         ///< no document; so is every value above
};

/// What the payload of a page result file is.
enum PAGE_FORMAT_DEF : int {
    PAGE_FORMAT_EMF = 0,      ///< source of an encoding job; never valid in a page result file
    PAGE_FORMAT_RESERVED = 1, ///< neither written nor accepted
    PAGE_FORMAT_JPG = 2,      ///< JPG picture
    PAGE_FORMAT_PPT_ANIM = 3, ///< slide animation data
    PAGE_FORMAT_PNG = 4,      ///< PNG picture
    PAGE_FORMAT_NONE = 5      ///< no format: the result of every failed read
};

/// Why an encoding job ended early.
enum COVER_ERR_DEF : int {
    COVER_ERR_CANCELLED = 1,  ///< it was told to
    COVER_ERR_FILE_FAILED = 9 ///< a file could not be read, converted or written
};

} // namespace DocCovRslt

Q_DECLARE_METATYPE(DocCovRslt::DOCRSLT_TYPE)
Q_DECLARE_METATYPE(DocCovRslt::PAGE_FORMAT_DEF)
Q_DECLARE_METATYPE(DocCovRslt::COVER_ERR_DEF)
