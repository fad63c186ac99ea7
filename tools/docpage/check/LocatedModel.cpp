#include "tools/docpage/check/LocatedModel.h"

#include "pptdata/Record.h"

namespace {

// Of the parts of the stream, in bytes.
constexpr qint64 kHead = 24;
constexpr qint64 kMagic = 4;
constexpr qint64 kPageId = 2;
constexpr qint64 kLength = 4;
constexpr qint64 kShapeId = 2;
constexpr qint64 kRect = 32;
constexpr qint64 kEffect = 64;

/// Reads the parts of a model and knows where it is. Stops at the first part that is not all there.
class Reader
{
public:
    Reader(const QByteArray &payload, qint64 start, Findings &findings)
        : m_stream(payload)
        , m_start(start)
        , m_findings(findings)
    {
    }

    qint64 offset() const { return m_start + m_stream.device()->pos(); }

    bool readHead(PPT_FileHead &head)
    {
        const qint64 at = offset();
        head.streamFrom(m_stream);
        if (!isOk(m_stream))
            return isCut(at, QStringLiteral("its head"));
        if (head.magic != PPT_FileHead::kMagic)
            return isRefused("bad-model-magic", at,
                             QStringLiteral("no slide animation data: it does not begin with "
                                            "\"PTAM\""));
        if (head.version != PPT_FileHead::kVersion)
            return isRefused(
                "bad-model-version", at + kMagic,
                QStringLiteral("unknown version %1 of slide animation data").arg(head.version));
        return true;
    }

    bool readCount(qint32 &count, const QString &what)
    {
        const qint64 at = offset();
        m_stream >> count;
        return isOk(m_stream) || isCut(at, what);
    }

    bool readPage(LocatedPage &page)
    {
        page.offset = offset();
        m_stream >> page.pageId;
        readByteArray(m_stream, page.image);
        PPT_SlideShowTransition transition;
        transition.streamFrom(m_stream);
        const QString name = QStringLiteral("page %1").arg(page.pageId);
        if (!isOk(m_stream))
            return isCut(page.offset, name);
        return readShapes(page, name) && readEffects(page, name);
    }

private:
    bool readShapes(LocatedPage &page, const QString &pageName)
    {
        qint32 count = 0;
        if (!readCount(count, QStringLiteral("the number of shapes of ") + pageName))
            return false;
        for (qint32 i = 0; i < count; ++i) {
            page.shapes.emplace_back();
            LocatedShape &shape = page.shapes.back();
            shape.offset = offset();
            if (!shape.shape.streamFrom(m_stream))
                return isCut(shape.offset, partName("shape", i, count, pageName));
        }
        return true;
    }

    bool readEffects(LocatedPage &page, const QString &pageName)
    {
        qint32 count = 0;
        if (!readCount(count, QStringLiteral("the number of effects of ") + pageName))
            return false;
        page.effectsOffset = offset();
        for (qint32 i = 0; i < count; ++i) {
            const qint64 at = offset();
            page.effects.emplace_back();
            if (!page.effects.back().effect.streamFrom(m_stream))
                return isCut(at, partName("effect", i, count, pageName));
        }
        return true;
    }

    static QString partName(const char *kind, qint32 index, qint32 count, const QString &pageName)
    {
        return QStringLiteral("%1 %2 of %3 of %4")
            .arg(QLatin1String(kind))
            .arg(index + 1)
            .arg(count)
            .arg(pageName);
    }

    bool isCut(qint64 at, const QString &part)
    {
        return isRefused("short-model", at,
                         QStringLiteral("the slide animation data is truncated or corrupt: it ends "
                                        "within ") +
                             part);
    }

    bool isRefused(const char *code, qint64 at, const QString &words)
    {
        m_findings.add(Severity::Error, code, at, words);
        return false;
    }

    CStdDataStream m_stream;
    qint64 m_start;
    Findings &m_findings;
};

} // namespace

qint64 LocatedShape::pictureOffset() const
{
    return offset + kShapeId + kRect + kLength;
}

qint64 LocatedPage::imageOffset() const
{
    return offset + kPageId + kLength;
}

qint64 LocatedPage::effectOffset(size_t effect) const
{
    return effectsOffset + kEffect * static_cast<qint64>(effect);
}

qint64 LocatedPage::triggerOffset(size_t effect) const
{
    return effectOffset(effect + 1) - 1; // the last byte
}

qint64 LocatedModel::pageCountOffset() const
{
    return start + kHead;
}

bool LocatedModel::read(const QByteArray &payload, qint64 payloadStart, Findings &findings)
{
    start = payloadStart;
    Reader reader(payload, start, findings);
    qint32 count = 0;
    if (!reader.readHead(head) || !reader.readCount(count, QStringLiteral("the number of pages")))
        return false;
    for (qint32 i = 0; i < count; ++i) {
        pages.emplace_back();
        if (!reader.readPage(pages.back()))
            return false;
    }
    end = reader.offset();
    return true;
}
