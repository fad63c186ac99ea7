#pragma once

#include "pptanim/PPTAnimDisplayBase.h"
#include "tools/docviewer/PageContent.h"
#include "tools/docviewer/TimelineScale.h"

#include <QTimer>
#include <QWidget>

#include <memory>

/// The steps of a slide as a line, one segment per step, on which any moment of the slide can be
/// looked at. The frames come from a player of its own, so that nobody else's moves.
///
/// Scrubbing lasts from a press of the mouse to its release, or from the first key to the loss of
/// the focus, Escape or Enter. Meanwhile the cursor follows the user; otherwise setPosition().
class Timeline : public QWidget
{
    Q_OBJECT

public:
    explicit Timeline(QWidget *parent = nullptr);
    ~Timeline() override;

    /// Shows the steps of a page of a document, at home. Disabled when it has none. The slide is
    /// not loaded before a frame of it is needed.
    void setSlide(const PageContent &content, int page);

    /// No slide.
    void clear();

    /// Where the slide stands that is being shown. A moment beyond the slide counts as its end.
    void setPosition(quint32 step, quint32 ms);

    bool isScrubbing() const { return m_isScrubbing; }

    /// Lets go, as the user does.
    void endScrubbing();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user looks at another moment. Sent at most once in a round of the event loop.
    void scrubbed(const QImage &frame, quint32 step, quint32 ms);

    /// The user has let go. Any frame that was still due has been sent before.
    void scrubEnded();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QRect lineRect() const;
    SlideMoment momentAt(const QPoint &position) const;
    SlideMoment shownMoment() const { return m_isScrubbing ? m_scrubbed : m_position; }
    QString momentText(SlideMoment moment) const;
    bool momentOfKey(int key, SlideMoment &moment) const;
    bool endsScrubbing(int key) const;
    bool load();
    void updateScale();
    void tellMoment();
    void scrubTo(SlideMoment moment);
    void sendFrame();

    int m_page = 0;
    QByteArray m_slide;
    QVector<quint32> m_durations;
    std::unique_ptr<PPTAnimDisplayBase> m_player; // loaded with the slide, since it is needed
    TimelineScale m_scale;
    SlideMoment m_position;
    SlideMoment m_scrubbed;
    bool m_isScrubbing = false;
    QTimer m_frameTimer; // runs while a frame is due
};
