#include "tools/docviewer/Screenshot.h"

#include "tools/docviewer/FrameFile.h"

namespace {

constexpr int kPatience = 2000; // ms

} // namespace

Screenshot::Screenshot(MainWindow *window, const QString &path)
    : QObject(window)
    , m_window(window)
    , m_path(path)
{
    m_patience.setSingleShot(true);
    m_patience.start(kPatience);
    connect(&m_patience, &QTimer::timeout, this, &Screenshot::save);
    // Queued: what has changed is painted by then.
    connect(window->thumbnails()->model(), &QAbstractItemModel::dataChanged, this,
            &Screenshot::saveWhenComplete, Qt::QueuedConnection);
}

void Screenshot::saveWhenComplete()
{
    if (!m_window)
        return;
    const ThumbnailList *list = m_window->thumbnails();
    const QRect seen = list->viewport()->rect();
    const QModelIndex first = list->indexAt(seen.topLeft());
    const QModelIndex last = list->indexAt(seen.bottomLeft());
    const int end = last.isValid() ? last.row() : list->model()->rowCount() - 1;
    const auto *model = qobject_cast<const ThumbnailModel *>(list->model());
    if (!first.isValid() || model->missing(first.row(), end).isEmpty())
        save();
}

void Screenshot::save()
{
    if (!m_window)
        return;
    const QImage picture = m_window->grab().toImage();
    m_window = nullptr; // only once
    Q_EMIT done(savePng(picture, m_path));
}
