#pragma once

#include <QAbstractListModel>
#include <QCache>
#include <QHash>
#include <QPixmap>
#include <QVector>

/// The pages of a document with their thumbnails, of which it keeps a bounded amount: those shown
/// last. A page without one has a placeholder, and a page that cannot be shown the reason.
class ThumbnailModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit ThumbnailModel(QObject *parent = nullptr);

    /// What is shown in place of a thumbnail.
    void setIcons(const QPixmap &placeholder, const QPixmap &fault);

    /// Another document, whose thumbnails are all missing.
    void reset(int pageCount);

    /// All thumbnails are missing again; faults are not.
    void forgetThumbnails();

    /// \param fault why there is no thumbnail; empty when there is one
    void setThumbnail(int page, const QPixmap &thumbnail, const QString &fault);

    /// Of the pages `first` to `last` those that have neither a thumbnail nor a fault.
    QVector<int> missing(int first, int last) const;

    /// Sees to it that this many thumbnails of a size fit in.
    void makeRoomFor(int count, QSize size);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    int m_pageCount = 0;
    QPixmap m_placeholder;
    QPixmap m_faultIcon;
    QCache<int, QPixmap> m_thumbnails; // the cost is in bytes
    QHash<int, QString> m_faults;
};
