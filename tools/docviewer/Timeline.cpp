#include "tools/docviewer/Timeline.h"

#include "tools/docpage/SlidePlayer.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QToolTip>

#include <utility>

namespace {

constexpr int kLineMargin = 4; // around the line, for the focus rectangle and the cursor's ends

// "1.24 s", "2:05.3" or "1193:02:47.2": minutes and hours only where there are any.
QString timeText(quint32 ms)
{
    if (ms < 60000)
        return Timeline::tr("%1 s").arg(ms / 1000.0, 0, 'f', 2);
    const auto twoDigits = [](quint32 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    const quint32 seconds = ms / 1000;
    const quint32 minutes = seconds / 60;
    const QString whole =
        minutes < 60 ? QString::number(minutes)
                     : QString::number(minutes / 60) + QLatin1Char(':') + twoDigits(minutes % 60);
    return QStringLiteral("%1:%2.%3").arg(whole, twoDigits(seconds % 60)).arg(ms / 100 % 10);
}

bool isPlain(const QKeyEvent &key)
{
    return (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

Timeline::Timeline(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("Timeline"));
    m_frameTimer.setSingleShot(true);
    connect(&m_frameTimer, &QTimer::timeout, this, &Timeline::sendFrame);
    clear();
}

Timeline::~Timeline() = default;

void Timeline::setSlide(const PageContent &content, int page)
{
    m_page = page;
    m_slide = content.slide;
    m_player.reset();
    m_durations.clear();
    for (const SlideStep &step : content.steps)
        m_durations.append(step.duration);
    m_position = {};
    m_frameTimer.stop();
    updateScale();
    setEnabled(!m_durations.isEmpty());
    tellMoment();
    if (m_isScrubbing) {
        m_isScrubbing = false;
        Q_EMIT scrubEnded();
    }
}

void Timeline::clear()
{
    setSlide({}, 0);
}

bool Timeline::load()
{
    if (m_player)
        return true;
    std::unique_ptr<PPTAnimDisplayBase> player(CreatePPTAnimDisplayer());
    if (!player->Init(m_page, m_slide, kFramesPerSecond))
        return false;
    player->SetCachPic(true);
    m_player = std::move(player);
    return true;
}

void Timeline::updateScale()
{
    m_scale = TimelineScale(m_durations, lineRect().width());
    update();
}

void Timeline::setPosition(quint32 step, quint32 ms)
{
    const SlideMoment before = std::exchange(m_position, m_scale.bounded({step, ms}));
    if (m_isScrubbing || m_position == before)
        return;
    if (m_position.step != before.step)
        tellMoment();
    update();
}

QSize Timeline::sizeHint() const
{
    return {480, minimumSizeHint().height()};
}

QSize Timeline::minimumSizeHint() const
{
    return {120, fontMetrics().height() + 2 * kLineMargin};
}

QRect Timeline::lineRect() const
{
    return contentsRect().adjusted(kLineMargin, kLineMargin, -kLineMargin, -kLineMargin);
}

SlideMoment Timeline::momentAt(const QPoint &position) const
{
    return m_scale.momentAt(position.x() - lineRect().left());
}

QString Timeline::momentText(SlideMoment moment) const
{
    if (m_durations.isEmpty())
        return tr("No steps");
    if (moment.step == 0)
        return tr("Before step 1 of %1").arg(m_durations.size());
    return tr("Step %1 of %2, %3 of %4")
        .arg(moment.step)
        .arg(m_durations.size())
        .arg(timeText(moment.ms), timeText(m_scale.duration(moment.step)));
}

void Timeline::tellMoment()
{
    setAccessibleDescription(momentText(shownMoment()));
}

void Timeline::scrubTo(SlideMoment moment)
{
    if (m_durations.isEmpty() || (m_isScrubbing && moment == m_scrubbed))
        return;
    m_isScrubbing = true;
    m_scrubbed = moment;
    tellMoment();
    update();
    m_frameTimer.start(0); // whatever comes until the next round of the event loop is one move
}

void Timeline::sendFrame()
{
    m_frameTimer.stop();
    if (!load())
        return;
    m_player->SetAnimStep(m_scrubbed.step);
    m_player->SetAnimPassedDuration(m_scrubbed.ms);
    Q_EMIT scrubbed(m_player->GetImg(), m_scrubbed.step, m_scrubbed.ms);
}

void Timeline::endScrubbing()
{
    // A receiver may delete this, or show another slide.
    const QPointer<Timeline> self(this);
    if (m_frameTimer.isActive())
        sendFrame();
    if (!self || !m_isScrubbing)
        return;
    m_isScrubbing = false;
    tellMoment();
    update();
    Q_EMIT scrubEnded();
}

bool Timeline::momentOfKey(int key, SlideMoment &moment) const
{
    if (m_durations.isEmpty())
        return false;
    const SlideMoment from = shownMoment();
    switch (key) {
    case Qt::Key_Left:
        moment = m_scale.previousFrame(from);
        return true;
    case Qt::Key_Right:
        moment = m_scale.nextFrame(from);
        return true;
    case Qt::Key_PageUp:
        moment = m_scale.previousStep(from);
        return true;
    case Qt::Key_PageDown:
        moment = m_scale.nextStep(from);
        return true;
    case Qt::Key_Home:
        moment = {};
        return true;
    case Qt::Key_End:
        moment = m_scale.end();
        return true;
    default:
        return false;
    }
}

bool Timeline::endsScrubbing(int key) const
{
    return m_isScrubbing &&
           (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter);
}

bool Timeline::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // With the focus these keys are not the window's.
        const auto *key = static_cast<QKeyEvent *>(event);
        SlideMoment moment;
        if (isPlain(*key) && (momentOfKey(key->key(), moment) || endsScrubbing(key->key()))) {
            event->accept();
            return true;
        }
    } else if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        QToolTip::showText(help->globalPos(), momentText(momentAt(help->pos())), this);
        return true;
    }
    return QWidget::event(event);
}

void Timeline::keyPressEvent(QKeyEvent *event)
{
    SlideMoment moment;
    if (isPlain(*event) && momentOfKey(event->key(), moment))
        scrubTo(moment);
    else if (isPlain(*event) && endsScrubbing(event->key()))
        endScrubbing();
    else
        QWidget::keyPressEvent(event);
}

void Timeline::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        scrubTo(momentAt(event->pos()));
    else
        event->ignore();
}

void Timeline::mouseMoveEvent(QMouseEvent *event)
{
    // A drag that has lost its slide does not go on on the next one.
    if (m_isScrubbing && (event->buttons() & Qt::LeftButton) != 0)
        scrubTo(momentAt(event->pos()));
}

void Timeline::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        endScrubbing();
}

void Timeline::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    update();
    endScrubbing();
}

void Timeline::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        endScrubbing();
}

void Timeline::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    updateScale();
}

void Timeline::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QRect line = lineRect();
    const int cursor = line.left() + m_scale.xOf(shownMoment());
    // Of the text's colour, so that they stand out from any background.
    const QColor played = palette().color(QPalette::Highlight);
    QColor ahead = palette().color(QPalette::WindowText);
    ahead.setAlphaF(0.3);

    for (int i = 0; i <= m_scale.stepCount(); ++i) {
        const auto step = static_cast<quint32>(i);
        QRect segment = line;
        segment.setLeft(line.left() + m_scale.left(step));
        segment.setRight(line.left() + m_scale.right(step) - 1);
        if (!segment.intersects(event->rect()))
            continue;
        if (segment.width() > 2)
            segment.setWidth(segment.width() - 1); // a gap before the next one
        if (step == 0)                             // no step: a mark half as high
            segment.adjust(0, line.height() / 4, 0, -line.height() / 4);
        painter.fillRect(segment, ahead);
        painter.fillRect(segment.intersected(QRect(line.topLeft(), QPoint(cursor, line.bottom()))),
                         played);
    }
    if (isEnabled()) {
        painter.fillRect(QRect(cursor - 1, line.top() - 2, 3, line.height() + 4),
                         palette().color(QPalette::WindowText));
    }
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.backgroundColor = palette().color(QPalette::Window);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}
