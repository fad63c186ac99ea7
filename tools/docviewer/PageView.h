#pragma once

#include <QAbstractScrollArea>
#include <QImage>
#include <QPixmap>

/// Shows the picture of a page, or a message in its place. A picture pixel is a screen pixel at
/// 100 %, whatever the scale factor of the screen.
class PageView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit PageView(QWidget *parent = nullptr);

    /// Shows a picture. The part that is seen stays when it has the size of the one before.
    void setImage(const QImage &image);
    const QImage &image() const { return m_image; }

    /// Shows a text in place of a picture.
    void setMessage(const QString &title, const QString &detail);
    QString message() const;

    /// Fits the picture into the view, never above 100 %. So it is at first.
    void zoomToFit();
    bool isFitted() const { return m_zoom <= 0; }
    /// Shows the picture at a scale of its own, 1.0 being 100 %.
    void setZoom(double zoom);
    void zoomIn();
    void zoomOut();
    /// The scale that the picture is shown at.
    double scale() const;

    /// Hides everything behind black until it is set back.
    void setBlack(bool black);
    bool isBlack() const { return m_isBlack; }

    /// Black around a picture that reaches the edges, for a whole screen.
    void setPresenting(bool presenting);

    /// A note in the corner, such as what is being typed; none when empty.
    void setNote(const QString &note);
    QString note() const { return m_note; }

    /// Where the picture is on the viewport.
    QRectF pageRect() const;

Q_SIGNALS:
    /// A button was pressed and released without a drag between.
    void clicked(Qt::MouseButton button);
    /// The wheel was turned by so many notches, towards the user when positive, where there is
    /// nothing to scroll.
    void wheelTurned(int notches);
    void scaleChanged();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    double fitScale() const;
    void updateScrollBars();
    bool canScroll() const;
    void paintPage(QPainter &painter);
    void paintMessage(QPainter &painter);
    void paintNote(QPainter &painter);
    const QPixmap &scaledDown();

    QImage m_image;
    QPixmap m_scaled; // the image at m_scaledFor pixels, null when it has to be made
    QSize m_scaledFor;
    QString m_title;
    QString m_detail;
    QString m_note;
    double m_zoom = 0; // 0: fitted
    bool m_isBlack = false;
    bool m_isPresenting = false;
    QPoint m_pressedAt;
    QPoint m_draggedTo;
    bool m_isDragging = false;
    int m_wheelAngle = 0; // what has been turned beyond whole notches
};
