#pragma once

#include <QByteArray>

/// Complete pictures, small enough to be read byte by byte.
namespace TinyPictures {

/// 4 x 3 pixels, all of them red.
inline QByteArray png()
{
    return QByteArray::fromHex(
        "89 50 4e 47 0d 0a 1a 0a "
        "00 00 00 0d 49 48 44 52 00 00 00 04 00 00 00 03 08 02 00 00 00 3b 96 39 91 " // IHDR
        "00 00 00 10 49 44 41 54 78 9c 63 f8 cf c0 00 47 0c 38 39 00 f5 31 0b f5 "    // IDAT
        "35 7b fb 82 "
        "00 00 00 00 49 45 4e 44 ae 42 60 82"); // IEND
}

/// 2 x 2 pixels, all of them of the grey #c8c8c8.
inline QByteArray jpg()
{
    return QByteArray::fromHex(
        "ff d8 "
        "ff e0 00 10 4a 46 49 46 00 01 01 00 00 01 00 01 00 00 " // APP0
        "ff db 00 43 00 "                                        // DQT
        "01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 "
        "01 "
        "01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 "
        "01 "
        "01 01 "
        "ff c0 00 0b 08 00 02 00 02 01 01 11 00 "                            // SOF0
        "ff c4 00 14 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0a " // DHT
        "ff c4 00 14 10 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 " // DHT
        "ff da 00 08 01 01 00 00 3f 00 48 0f "                               // SOS and its data
        "ff d9");
}

} // namespace TinyPictures
