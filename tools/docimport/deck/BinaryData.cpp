#include "tools/docimport/deck/BinaryData.h"

#include "tools/docimport/deck/XmlFile.h"

#include <algorithm>

namespace {

constexpr qint64 kPiece = 1 << 20;  // bytes that are read at a time
constexpr int kMostText = 40 << 20; // bytes, of which the tree makes some seven times as many

const QByteArray &tagOf(bool isEnd)
{
    static const QByteArray kTags[] = {"<office:binary-data>", "</office:binary-data>"};
    return kTags[isEnd ? 1 : 0];
}

} // namespace

BinaryData::BinaryData(const QString &path)
    : m_file(path)
{
}

QByteArray BinaryData::takeFrom(QIODevice &input)
{
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::Truncate))
        throw XmlFault{m_file.errorString()};
    QByteArray text;
    QByteArray unread;
    bool isPicture = false;
    for (QByteArray piece = input.read(kPiece); !piece.isEmpty(); piece = input.read(kPiece)) {
        unread += piece;
        int at = 0;
        const auto takeTo = [&](int end) {
            if (isPicture)
                add(unread.mid(at, end - at));
            else
                text += unread.mid(at, end - at);
            at = end;
        };
        for (int tag = unread.indexOf(tagOf(isPicture)); tag >= 0;
             tag = unread.indexOf(tagOf(isPicture), at)) {
            takeTo(tag);
            isPicture = !isPicture;
            if (isPicture)
                m_places.push_back({m_file.pos(), 0});
            else
                text += QByteArray::number(static_cast<qulonglong>(m_places.size() - 1));
            text += tagOf(!isPicture);
            at += tagOf(!isPicture).size();
        }
        // The end may be the beginning of a tag.
        takeTo(std::max(at, unread.size() - tagOf(isPicture).size() + 1));
        unread.remove(0, at);
        if (text.size() > kMostText)
            throw XmlFault{QStringLiteral("more than 40 MiB of text")};
    }
    return text + unread;
}

void BinaryData::add(const QByteArray &picture)
{
    if (m_file.write(picture) != picture.size())
        throw XmlFault{m_file.errorString()};
    m_places.back().size += picture.size();
}

bool BinaryData::write(const QString &number, QIODevice &output)
{
    bool isNumber = false;
    const uint index = number.toUInt(&isNumber);
    if (!isNumber || index >= m_places.size() || !m_file.seek(m_places[index].begin))
        return false;
    for (qint64 left = m_places[index].size; left > 0;) {
        const QByteArray piece = m_file.read(std::min(left, kPiece));
        if (piece.isEmpty() || output.write(piece) != piece.size())
            return false;
        left -= piece.size();
    }
    return true;
}
