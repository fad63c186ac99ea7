#pragma once

#include "common/DocDisplayGlobal.h"
#include "pptdata/CStdDataStream.h"

#include <QByteArray>

/// \file
/// The parts of an animated slide: pictures with a place, effects with a timing, the transition.
/// Format on the stream: docs/animation-model.md.
///
/// Every class reads and writes itself in the order of declaration, a shape its identifier first.
/// None of them is thread-safe, none logs or throws, but std::bad_alloc when memory runs out.
///
/// The classes have no virtual destructor on purpose: delete an object by its own type, after
/// release(), as the containers of pptdata/PPT_fileDat.h do:
/// \code
/// auto *shape = new PPT_Shape;  // yours until it is in a page's list
/// shape->picDat = png;          // the shape shares these bytes, and owns its share
/// page.shapes.push_back(shape); // now the page's: page.release() releases and deletes it
/// \endcode

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// What everything in the model can do.
class DOCDISPLAY_EXPORT PPT_OBJ
{
public:
    /// Writes the fields. \return whether the stream's status is Ok afterwards.
    virtual bool streamTo(CStdDataStream &stream) const;

    /// Reads the fields. Where the data ends early the missing values are zero.
    /// \return whether the stream's status is Ok afterwards; if not, release() has been called.
    ///         (PPT_fileDat has further reasons to refuse.)
    virtual bool streamFrom(CStdDataStream &stream);

    /// Frees what the object owns, not the object itself. May be called again.
    virtual void release();
};

/// The place of a picture on the page, in page units.
class DOCDISPLAY_EXPORT PPT_RECT : public PPT_OBJ
{
public:
    bool streamTo(CStdDataStream &stream) const override;
    bool streamFrom(CStdDataStream &stream) override;

    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
};

/// A picture and its place.
class DOCDISPLAY_EXPORT PPT_PicDat : public PPT_RECT
{
public:
    bool streamTo(CStdDataStream &stream) const override;
    bool streamFrom(CStdDataStream &stream) override;

    /// Clears the picture.
    void release() override;

    QByteArray picDat; ///< encoded picture, in any format that QImage can load; owned
};

/// A shape of a page: a picture that effects can move. On the stream its identifier comes first.
class DOCDISPLAY_EXPORT PPT_Shape : public PPT_PicDat
{
public:
    bool streamTo(CStdDataStream &stream) const override;
    bool streamFrom(CStdDataStream &stream) override;

    quint16 shapeId = 0; ///< identifies the shape within its page; effects refer to it
};

/// When an effect starts and how long it lasts. What is said to be carried is kept and written for
/// the producer of the data, and not interpreted.
class DOCDISPLAY_EXPORT PPT_Timing : public PPT_OBJ
{
public:
    bool streamTo(CStdDataStream &stream) const override;
    bool streamFrom(CStdDataStream &stream) override;

    float accelerate = 0;  ///< carried
    qint8 autoReverse = 0; ///< carried
    float decelerate = 0;  ///< carried
    float duration = 0;    ///< length of the effect, in seconds
    float timingF5 = 0;    ///< carried
    qint8 timingB6 = 0;    ///< carried
    float timingF7 = 0;    ///< carried
    qint8 timingB8 = 0;    ///< carried
    qint8 timingB9 = 0;    ///< carried
    qint8 timingB10 = 0;   ///< carried
    qint8 timingB11 = 0;   ///< carried
    float timingF12 = 0;   ///< carried
    qint8 triggerType = 0; ///< 1: on click, 2: with the previous effect, 3: after it
};

/// One effect of a page. It owns its timing by value.
class DOCDISPLAY_EXPORT PPT_Effect : public PPT_OBJ
{
public:
    bool streamTo(CStdDataStream &stream) const override;
    bool streamFrom(CStdDataStream &stream) override;

    /// Does nothing: there is nothing to free.
    void release() override;

    qint16 effectNo = 0; ///< as unsigned: of effects to come the lowest says how the shape waits
    quint16 shapeId = 0; ///< the shape of the same page that moves
    qint16 effectParamA = 0; ///< carried
    qint16 effectParamB = 0; ///< carried
    qint8 exit = 0;          ///< -1: the shape leaves; any other value: it does not
    PPT_Timing timing;
};

/// How the page appears. All fields are carried.
class DOCDISPLAY_EXPORT PPT_SlideShowTransition : public PPT_OBJ
{
public:
    bool streamTo(CStdDataStream &stream) const override;
    bool streamFrom(CStdDataStream &stream) override;

    qint8 advanceOnClick = 0;
    qint8 advanceOnTime = 0;
    float advanceTime = 0;
    qint16 entryEffect = 0;
    qint8 hidden = 0;
    qint8 loopSoundUntilNext = 0;
};

/// The head of a whole model. Reading judges neither magic nor version; PPT_fileDat does.
class DOCDISPLAY_EXPORT PPT_FileHead : public PPT_OBJ
{
public:
    static constexpr qint32 kMagic = 0x5054414D; ///< "PTAM"
    static constexpr qint32 kVersion = 2;

    bool streamTo(CStdDataStream &stream) const override;
    bool streamFrom(CStdDataStream &stream) override;

    qint32 magic = kMagic;
    qint32 version = kVersion;
    float dpi = 72;   ///< resolution; copied with the head, but never written or read
    float width = 0;  ///< of the page, in page units
    float height = 0; ///< of the page, in page units
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
