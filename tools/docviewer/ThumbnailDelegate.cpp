#include "tools/docviewer/ThumbnailDelegate.h"

#include <QPixmap>

namespace {

constexpr int kItemMargin = 6;

} // namespace

QSize ThumbnailDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return option.decorationSize +
           QSize(2 * kItemMargin, 3 * kItemMargin + option.fontMetrics.height());
}

void ThumbnailDelegate::initStyleOption(QStyleOptionViewItem *option,
                                        const QModelIndex &index) const
{
    const QSize size = option->decorationSize; // the list's, not that of the page's picture
    QStyledItemDelegate::initStyleOption(option, index);
    option->decorationSize = size;
    // The current page in its own colours, too: the style would tint it.
    option->icon.addPixmap(index.data(Qt::DecorationRole).value<QPixmap>(), QIcon::Selected);
    option->decorationPosition = QStyleOptionViewItem::Top;
    option->decorationAlignment = Qt::AlignCenter;
    option->displayAlignment = Qt::AlignCenter;
}
