#pragma once

#include <QByteArray>

/// The bytes of a test's data, written as "88 88 01".
inline QByteArray hex(const char *bytes)
{
    return QByteArray::fromHex(bytes);
}
