#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

class DecodingBudget;

/// What a picture is for, which decides what its image takes.
enum class PictureUse {
    Page, ///< it is the page, and kept as decoded
    Slide ///< it is a part of a slide, of which the player keeps images of 32 bits a pixel
};

/// What became of a picture when it was decoded as the display manager does it: by the content.
struct PictureVerdict
{
    enum class Kind {
        Decoded,
        Damaged, ///< decoded, but the decoder made up a part of it, or might have
        Undecodable,
        TooLarge,
        Crashed,  ///< the decoder, with it
        TimedOut, ///< the decoder, on it
        Unchecked ///< for want of time, or of a process to decode it in
    };
    Kind kind = Kind::Unchecked;
    QString words;     ///< what is wrong; empty when it is decoded
    QByteArray format; ///< what Qt calls its format, as "png"; empty when it knows none
    QSize size;        ///< of the image
    qint64 bytes = 0;  ///< of the image that is kept

    bool isShown() const { return kind == Kind::Decoded || kind == Kind::Damaged; }

    /// Decodes the picture in a process of its own.
    static PictureVerdict of(const QByteArray &picture, PictureUse use, DecodingBudget &budget);

    /// Decodes the picture in this process, whatever comes of it.
    static PictureVerdict inProcess(const QByteArray &picture, PictureUse use, qint64 maxMemory);
};
