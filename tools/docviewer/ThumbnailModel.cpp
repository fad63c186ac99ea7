#include "tools/docviewer/ThumbnailModel.h"

namespace {

constexpr int kCacheBytes = 16 << 20;

int bytesOf(QSize size)
{
    return size.width() * size.height() * 4;
}

} // namespace

ThumbnailModel::ThumbnailModel(QObject *parent)
    : QAbstractListModel(parent)
    , m_thumbnails(kCacheBytes)
{
}

void ThumbnailModel::setIcons(const QPixmap &placeholder, const QPixmap &fault)
{
    m_placeholder = placeholder;
    m_faultIcon = fault;
    if (m_pageCount > 0)
        Q_EMIT dataChanged(index(0), index(m_pageCount - 1), {Qt::DecorationRole});
}

void ThumbnailModel::reset(int pageCount)
{
    beginResetModel();
    m_pageCount = pageCount;
    m_thumbnails.clear();
    m_faults.clear();
    endResetModel();
}

void ThumbnailModel::forgetThumbnails()
{
    m_thumbnails.clear();
    if (m_pageCount > 0)
        Q_EMIT dataChanged(index(0), index(m_pageCount - 1), {Qt::DecorationRole});
}

void ThumbnailModel::setThumbnail(int page, const QPixmap &thumbnail, const QString &fault)
{
    if (fault.isEmpty())
        m_thumbnails.insert(page, new QPixmap(thumbnail), bytesOf(thumbnail.size()));
    else
        m_faults.insert(page, fault);
    Q_EMIT dataChanged(index(page), index(page));
}

QVector<int> ThumbnailModel::missing(int first, int last) const
{
    QVector<int> pages;
    for (int page = qMax(first, 0); page <= qMin(last, m_pageCount - 1); ++page) {
        if (!m_thumbnails.contains(page) && !m_faults.contains(page))
            pages.append(page);
    }
    return pages;
}

void ThumbnailModel::makeRoomFor(int count, QSize size)
{
    m_thumbnails.setMaxCost(qMax(kCacheBytes, count * bytesOf(size)));
}

int ThumbnailModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_pageCount;
}

QVariant ThumbnailModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const int page = index.row();
    const QString fault = m_faults.value(page);
    switch (role) {
    case Qt::DisplayRole:
        return QString::number(page + 1);
    case Qt::DecorationRole:
        if (!fault.isEmpty())
            return m_faultIcon;
        if (const QPixmap *thumbnail = m_thumbnails.object(page))
            return *thumbnail;
        return m_placeholder;
    case Qt::ToolTipRole:
        return fault.isEmpty() ? QVariant() : fault;
    case Qt::AccessibleTextRole:
        return fault.isEmpty() ? tr("Page %1").arg(page + 1)
                               : tr("Page %1 cannot be shown: %2").arg(page + 1).arg(fault);
    default:
        return {};
    }
}
