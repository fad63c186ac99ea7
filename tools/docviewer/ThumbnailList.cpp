#include "tools/docviewer/ThumbnailList.h"

#include "tools/docviewer/ThumbnailDelegate.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyle>

namespace {

constexpr QSize kThumbnailSize(160, 120);
constexpr int kIconSize = 32;

} // namespace

ThumbnailList::ThumbnailList(QWidget *parent)
    : QListView(parent)
{
    setAccessibleName(tr("Pages"));
    setIconSize(kThumbnailSize);
    setItemDelegate(new ThumbnailDelegate(this));
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // no other layout when it comes and goes
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setModel(&m_model);
    updateIcons();

    m_requestTimer.setSingleShot(true);
    connect(&m_requestTimer, &QTimer::timeout, this, &ThumbnailList::requestVisible);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, &m_requestTimer,
            [this] { m_requestTimer.start(0); });
    connect(&m_loader, &ThumbnailLoader::loaded, this, &ThumbnailList::takeThumbnail);
}

void ThumbnailList::setDocument(const ViewerDocument &document)
{
    m_document = document;
    m_ratio = devicePixelRatioF();
    m_loader.setDocument(document, kThumbnailSize * m_ratio);
    m_model.reset(document.files.size());
    scrollToTop();
    m_requestTimer.start(0);
}

void ThumbnailList::setCurrentPage(int page)
{
    const QScopedValueRollback<bool> setting(m_isSettingCurrentPage, true);
    const QModelIndex index = m_model.index(page);
    setCurrentIndex(index);
    if (!index.isValid())
        clearSelection();
}

QSize ThumbnailList::sizeHint() const
{
    const int width = kThumbnailSize.width() * 5 / 4 + verticalScrollBar()->sizeHint().width();
    return {width, 3 * kThumbnailSize.height()};
}

void ThumbnailList::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QListView::currentChanged(current, previous);
    if (current.isValid() && !m_isSettingCurrentPage)
        Q_EMIT pageChosen(current.row());
}

// Only what moves along the list is its own; all else, digits too, is the window's.
void ThumbnailList::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        QListView::keyPressEvent(event);
        break;
    default:
        event->ignore();
    }
}

void ThumbnailList::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    m_requestTimer.start(0);
}

void ThumbnailList::showEvent(QShowEvent *event)
{
    QListView::showEvent(event);
    m_requestTimer.start(0);
}

void ThumbnailList::changeEvent(QEvent *event)
{
    QListView::changeEvent(event);
    m_requestTimer.start(0); // with another font, more or fewer pages are in sight
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange)
        updateIcons();
}

void ThumbnailList::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (m_ratio != devicePixelRatioF()) // on another screen it is painted anew, whatever else comes
        m_requestTimer.start(0);
}

// Thumbnails for the pixels of the screen that the list is on.
void ThumbnailList::followScreen()
{
    if (m_ratio == devicePixelRatioF())
        return;
    m_ratio = devicePixelRatioF();
    m_loader.setDocument(m_document, kThumbnailSize * m_ratio);
    m_model.forgetThumbnails();
}

void ThumbnailList::updateIcons()
{
    const auto icon = [this](QStyle::StandardPixmap which) {
        return style()->standardIcon(which, nullptr, this).pixmap(kIconSize, kIconSize);
    };
    m_model.setIcons(icon(QStyle::SP_FileIcon), icon(QStyle::SP_MessageBoxWarning));
}

void ThumbnailList::requestVisible()
{
    const int height = sizeHintForRow(0);
    if (height <= 0 || !isVisible())
        return;
    followScreen();
    const int first = verticalOffset() / height;
    const int last = (verticalOffset() + viewport()->height() - 1) / height;
    const int count = last - first + 1;
    // What is in sight, then what comes next to it on either side. All of it must stay, or it would
    // be made over and over.
    m_model.makeRoomFor(6 * count, kThumbnailSize * m_ratio);
    m_loader.request(m_model.missing(first, last) + m_model.missing(last + 1, last + count) +
                     m_model.missing(first - count, first - 1));
}

void ThumbnailList::takeThumbnail(int page, QImage thumbnail, const QString &fault)
{
    thumbnail.setDevicePixelRatio(m_ratio);
    m_model.setThumbnail(page, QPixmap::fromImage(thumbnail), fault);
}
