#pragma once

#include "common/DocCovRslt.h"

#include <QByteArray>
#include <QtEndian>

/// The head of a page result file. Layout: docs/page-result-file.md. Little-endian, packed.
struct PageResultHeader
{
    static constexpr int kSize = 4 + 2 + 4 + 4; // magic, version, picFormat, datSize
    static constexpr quint32 kMagic = 0x88888888;
    static constexpr quint16 kVersion = 0x0101;

    quint32 magic = kMagic;
    quint16 version = kVersion;
    qint32 picFormat = DocCovRslt::PAGE_FORMAT_NONE;
    qint32 datSize = 0; // payload bytes as the file claims them; may be negative or too large

    bool isPageResultFile() const { return magic == kMagic && version == kVersion; }

    /// `bytes` holds at least kSize bytes.
    static PageResultHeader parse(const void *bytes)
    {
        const auto *at = static_cast<const uchar *>(bytes);
        PageResultHeader header;
        header.magic = qFromLittleEndian<quint32>(at);
        header.version = qFromLittleEndian<quint16>(at + 4);
        header.picFormat = qFromLittleEndian<qint32>(at + 6);
        header.datSize = qFromLittleEndian<qint32>(at + 10);
        return header;
    }

    QByteArray toBytes() const
    {
        QByteArray bytes(kSize, Qt::Uninitialized);
        auto *at = reinterpret_cast<uchar *>(bytes.data());
        qToLittleEndian(magic, at);
        qToLittleEndian(version, at + 4);
        qToLittleEndian(picFormat, at + 6);
        qToLittleEndian(datSize, at + 10);
        return bytes;
    }
};
