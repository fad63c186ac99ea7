#include "tools/docviewer/PageView.h"

#include "tools/docviewer/ScaledImage.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextDocument>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kZooms[] = {0.1, 0.25, 0.5, 0.75, 1.0, 1.5, 2.0, 3.0, 4.0, 6.0, 8.0};
constexpr int kNotch = 120;           // the angle of one, as wheel events count it
constexpr int kNoteMargin = 12;       // around a note and within it
constexpr int kMargin = 8;            // around a fitted picture in the window
constexpr int kShade = 135;           // per cent of the window's darkness around a picture
constexpr double kMessageWidth = 0.8; // of that of the view

} // namespace

PageView::PageView(QWidget *parent)
    : QAbstractScrollArea(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(tr("Page"));
}

void PageView::setImage(const QImage &image)
{
    const double before = scale();
    const bool isSameSize = image.size() == m_image.size();
    m_image = image;
    m_title.clear();
    m_detail.clear();
    m_scaled = {};
    if (!isSameSize)
        updateScrollBars();
    viewport()->update();
    if (before != scale())
        Q_EMIT scaleChanged();
}

void PageView::setMessage(const QString &title, const QString &detail)
{
    setImage({});
    m_title = title;
    m_detail = detail;
}

QString PageView::message() const
{
    return m_detail.isEmpty() ? m_title : m_title + QLatin1Char('\n') + m_detail;
}

void PageView::zoomToFit()
{
    m_zoom = 0;
    updateScrollBars();
    viewport()->update();
    Q_EMIT scaleChanged();
}

void PageView::setZoom(double zoom)
{
    // What is in the middle of the view stays there.
    const auto middle = [](const QScrollBar *bar) {
        return (bar->value() + bar->pageStep() / 2.0) / (bar->maximum() + bar->pageStep());
    };
    const double x = middle(horizontalScrollBar());
    const double y = middle(verticalScrollBar());
    m_zoom = std::clamp(zoom, *std::begin(kZooms), *std::rbegin(kZooms));
    updateScrollBars();
    const auto centre = [](QScrollBar *bar, double at) {
        bar->setValue(qRound(at * (bar->maximum() + bar->pageStep()) - bar->pageStep() / 2.0));
    };
    centre(horizontalScrollBar(), x);
    centre(verticalScrollBar(), y);
    viewport()->update();
    Q_EMIT scaleChanged();
}

void PageView::zoomIn()
{
    const auto *next = std::find_if(std::begin(kZooms), std::end(kZooms),
                                    [now = scale()](double zoom) { return zoom > now * 1.001; });
    if (next != std::end(kZooms))
        setZoom(*next);
}

void PageView::zoomOut()
{
    const auto next = std::find_if(std::rbegin(kZooms), std::rend(kZooms),
                                   [now = scale()](double zoom) { return zoom < now * 0.999; });
    if (next != std::rend(kZooms))
        setZoom(*next);
}

double PageView::scale() const
{
    return isFitted() ? fitScale() : m_zoom;
}

double PageView::fitScale() const
{
    if (m_image.isNull())
        return 1;
    // Of the view without scroll bars, which a fitted picture does not need.
    const int margin = m_isPresenting ? 0 : kMargin;
    const QSize room = maximumViewportSize() - QSize(2 * margin, 2 * margin);
    const QSizeF pixels = QSizeF(room.expandedTo({1, 1})) * devicePixelRatioF();
    return std::min({1.0, pixels.width() / m_image.width(), pixels.height() / m_image.height()});
}

void PageView::setBlack(bool black)
{
    m_isBlack = black;
    viewport()->update();
}

void PageView::setPresenting(bool presenting)
{
    m_isPresenting = presenting;
    updateScrollBars();
    viewport()->update();
    Q_EMIT scaleChanged();
}

void PageView::setNote(const QString &note)
{
    m_note = note;
    viewport()->update();
}

QRectF PageView::pageRect() const
{
    const double ratio = devicePixelRatioF();
    const QSizeF size = QSizeF(m_image.size()) * (scale() / ratio);
    const auto offset = [](double room, double length, const QScrollBar *bar) {
        return length > room ? -bar->value() : (room - length) / 2;
    };
    // On whole pixels of the screen, for a picture that is not scaled must not become blurred.
    const auto whole = [ratio](double at) { return std::round(at * ratio) / ratio; };
    return {whole(offset(viewport()->width(), size.width(), horizontalScrollBar())),
            whole(offset(viewport()->height(), size.height(), verticalScrollBar())), size.width(),
            size.height()};
}

void PageView::updateScrollBars()
{
    const auto policy = isFitted() ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded;
    setHorizontalScrollBarPolicy(policy);
    setVerticalScrollBarPolicy(policy);
    const QSizeF size = QSizeF(m_image.size()) * (scale() / devicePixelRatioF());
    static constexpr double kLongest = 1 << 30; // of which the scroll bars can make sums
    const auto adjust = [](QScrollBar *bar, double length, int room) {
        bar->setRange(0, std::max(0, int(std::ceil(std::min(length, kLongest))) - room));
        bar->setPageStep(room);
        bar->setSingleStep(std::max(1, room / 20));
    };
    adjust(horizontalScrollBar(), size.width(), viewport()->width());
    adjust(verticalScrollBar(), size.height(), viewport()->height());
}

bool PageView::canScroll() const
{
    return horizontalScrollBar()->maximum() > 0 || verticalScrollBar()->maximum() > 0;
}

const QPixmap &PageView::scaledDown()
{
    const QSize size = (QSizeF(m_image.size()) * scale()).toSize().expandedTo({1, 1});
    if (m_scaled.isNull() || m_scaledFor != size) {
        m_scaled = QPixmap::fromImage(scaledImage(m_image, size));
        m_scaledFor = size;
    }
    return m_scaled;
}

void PageView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    // A shade of the window's own colour: what else a palette says need not go with it.
    const QColor window = palette().color(QPalette::Window);
    const QColor around = m_image.isNull() ? window : window.darker(kShade);
    painter.fillRect(viewport()->rect(), m_isBlack || m_isPresenting ? QColor(Qt::black) : around);
    if (m_isBlack)
        return;
    if (!m_image.isNull())
        paintPage(painter);
    else
        paintMessage(painter);
    if (!m_note.isEmpty())
        paintNote(painter);
}

void PageView::paintPage(QPainter &painter)
{
    const QRectF rect = pageRect();
    if (m_image.hasAlphaChannel())
        painter.fillRect(rect, Qt::white); // as on paper
    if (scale() <= 1) {
        const QPixmap &pixmap = scaledDown();
        painter.drawPixmap(rect, pixmap, pixmap.rect());
        return;
    }
    // Enlarged it may have any number of pixels: no more is made of it than is seen.
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF seen = rect & QRectF(viewport()->rect());
    const double pixels = devicePixelRatioF() / scale(); // of the picture in a unit of the view
    const QRectF source((seen.topLeft() - rect.topLeft()) * pixels, seen.size() * pixels);
    painter.drawImage(seen, m_image, source);
}

void PageView::paintMessage(QPainter &painter)
{
    QTextDocument text;
    text.setDefaultFont(font());
    text.setHtml(QStringLiteral("<div align='center'><p style='font-size:x-large'>%1</p>"
                                "<p>%2</p></div>")
                     .arg(m_title.toHtmlEscaped(), m_detail.toHtmlEscaped()));
    text.setTextWidth(viewport()->width() * kMessageWidth);
    painter.translate(viewport()->width() * (1 - kMessageWidth) / 2,
                      std::max(0.0, (viewport()->height() - text.size().height()) / 2));
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(
        QPalette::Text, m_isPresenting ? QColor(Qt::white) : palette().color(QPalette::WindowText));
    text.documentLayout()->draw(&painter, context);
}

void PageView::paintNote(QPainter &painter)
{
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    painter.setFont(large);
    QRect rect = painter.fontMetrics().boundingRect(m_note).marginsAdded(
        {kNoteMargin, kNoteMargin, kNoteMargin, kNoteMargin});
    rect.moveBottomRight(viewport()->rect().bottomRight() - QPoint(kNoteMargin, kNoteMargin));
    painter.fillRect(rect, palette().toolTipBase());
    painter.setPen(palette().toolTipText().color());
    painter.drawText(rect, Qt::AlignCenter, m_note);
}

void PageView::resizeEvent(QResizeEvent *)
{
    updateScrollBars();
    Q_EMIT scaleChanged();
}

void PageView::mousePressEvent(QMouseEvent *event)
{
    m_pressedAt = m_draggedTo = event->pos();
    m_isDragging = false;
}

void PageView::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton) || !canScroll())
        return;
    const int way = (event->pos() - m_pressedAt).manhattanLength();
    m_isDragging = m_isDragging || way >= QApplication::startDragDistance();
    if (!m_isDragging)
        return;
    const QPoint moved = event->pos() - m_draggedTo;
    m_draggedTo = event->pos();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - moved.y());
}

void PageView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_isDragging && viewport()->rect().contains(event->pos()))
        Q_EMIT clicked(event->button());
    m_isDragging = false;
}

void PageView::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event); // two quick clicks are two clicks
}

void PageView::wheelEvent(QWheelEvent *event)
{
    const bool zooms = event->modifiers() & Qt::ControlModifier;
    if (!zooms && canScroll()) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    m_wheelAngle += event->angleDelta().y(); // less than a notch at a time on a touchpad
    const int notches = m_wheelAngle / kNotch;
    m_wheelAngle -= notches * kNotch;
    event->accept();
    for (int i = 0; zooms && i < std::abs(notches); ++i)
        notches > 0 ? zoomIn() : zoomOut();
    if (!zooms && notches != 0)
        Q_EMIT wheelTurned(-notches);
}
