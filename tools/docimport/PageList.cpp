#include "tools/docimport/PageList.h"

#include <QRegularExpression>

#include <algorithm>

std::optional<PageList> PageList::read(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A([0-9]+)(-([0-9]+)?)?\\z"));
    PageList list;
    for (const QString &part : text.split(QLatin1Char(','))) {
        const QRegularExpressionMatch match = form.match(part);
        const QString last = match.captured(3);
        bool isFirst = false;
        bool isLast = true;
        Range range = {match.captured(1).toInt(&isFirst), 0};
        if (match.capturedLength(2) == 0)
            range.last = range.first;
        else if (!last.isEmpty())
            range.last = last.toInt(&isLast);
        if (!isFirst || !isLast || range.first < 1)
            return std::nullopt;
        if (match.capturedLength(2) != 1 && range.last < range.first)
            return std::nullopt;
        list.m_ranges.append(range);
    }
    return list;
}

QString PageList::pagesOf(int count, QVector<int> &pages) const
{
    QVector<bool> isWanted(count, m_ranges.isEmpty());
    for (const Range &range : m_ranges) {
        const int last = range.last == 0 ? std::max(count, range.first) : range.last;
        if (last > count)
            return QStringLiteral("has no page %1, but %2")
                .arg(range.first > count ? range.first : last)
                .arg(count);
        std::fill(isWanted.begin() + range.first - 1, isWanted.begin() + last, true);
    }
    pages.clear();
    for (int page = 0; page < count; ++page) {
        if (isWanted.at(page))
            pages.append(page);
    }
    return {};
}
