#pragma once

#include <QStyledItemDelegate>

/// Draws the pages of a thumbnail list: the picture, and its number below. All are of one size, so
/// that the list needs to ask for none but the first.
class ThumbnailDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};
