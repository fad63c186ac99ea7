#include "tools/docviewer/Presentation.h"

#include <algorithm>
#include <utility>

Presentation::Presentation(QObject *parent)
    : QObject(parent)
    , m_manager(CreateDisplayMgr())
{
    connect(m_manager.get(), &DocDisplayMgr::s_PptAnimUpdate, this, &Presentation::showFrame);
    connect(m_manager.get(), &DocDisplayMgr::s_PptAnimFnished, this, &Presentation::stopped);
}

void Presentation::open(const ViewerDocument &document)
{
    m_document = document;
    m_contentPage = -1;
    m_clock.invalidate();
    startDocument(*m_manager, document);
    Q_EMIT opened();
    if (pageCount() > 0) {
        goTo(0);
        return;
    }
    m_position = {0, 0, 0};
    m_content = {};
    m_picture = {};
    Q_EMIT pageChanged();
    Q_EMIT changed();
}

Presentation::Position Presentation::position() const
{
    Position position = m_position;
    if (!isRunning())
        return position;
    // A first step that starts by itself is entered with the first frame.
    if (position.step == 0 && m_content.startsByItself())
        position.step = 1;
    const auto elapsed = static_cast<quint64>(m_clock.elapsed());
    const quint64 passed =
        std::min<quint64>(position.passedDuration + elapsed, m_content.duration(position.step));
    position.passedDuration = static_cast<quint32>(passed);
    return position;
}

bool Presentation::canGoNext() const
{
    const int state = m_manager->GetActionState();
    const bool canStep = m_manager->IsDocHaveAnimation() && !(state & DocDisplayMgr::ACTION_AT_END);
    return canStep || !(state & DocDisplayMgr::ACTION_LAST_PAGE);
}

bool Presentation::canGoPrevious() const
{
    const int state = m_manager->GetActionState();
    // A slide that was started is past its home already, but at step 0 there is no step back.
    const bool canStep = m_manager->IsDocHaveAnimation() &&
                         !(state & DocDisplayMgr::ACTION_AT_HOME) && position().step > 0;
    return canStep || !(state & DocDisplayMgr::ACTION_FIRST_PAGE);
}

void Presentation::next()
{
    if (!m_manager->IsDocHaveAnimation() ||
        m_manager->GetActionState() & DocDisplayMgr::ACTION_AT_END)
        prepare(m_position.page + 1);
    m_isMoving = true;
    if (m_manager->NextAction())
        takeOver(true);
    m_isMoving = false;
}

void Presentation::previous()
{
    // Only from step 0, for the manager; for us that is over when its first step has begun. Before
    // page 0 the subtraction wraps to a page that does not exist.
    if (m_position.step == 0)
        prepare(m_position.page - 1);
    m_isMoving = true;
    if (m_manager->PrevAction())
        takeOver(false);
    m_isMoving = false;
}

void Presentation::goTo(quint32 page)
{
    prepare(page);
    m_isMoving = true;
    // With a time of 0 the page would stand still at home.
    if (m_manager->SetAnimStatus({page, 0, 1}))
        takeOver(true);
    m_isMoving = false;
}

void Presentation::goToLast()
{
    if (pageCount() > 0)
        goTo(pageCount() - 1);
}

void Presentation::hold(const DocDisplayMgr::AnimStatus &position)
{
    prepare(position.page);
    m_isMoving = true;
    if (m_manager->SetAnimStatus({position.page, position.step, 0})) {
        takeOver(false);
        const bool isSlide = !m_content.slide.isEmpty();
        m_position.passedDuration =
            std::min(position.passedDuration, m_content.duration(m_position.step));
        if (isSlide) {
            m_picture = slidePicture(m_content, position);
            Q_EMIT changed();
        }
    }
    m_isMoving = false;
}

// Reads a page before the manager goes there. It would decode a picture of any size, so that it is
// given no file of a page that must not be shown.
void Presentation::prepare(quint32 page)
{
    if (page >= pageCount() || static_cast<int>(page) == m_contentPage)
        return;
    const QString &file = m_document.files.at(static_cast<int>(page));
    m_nextContent = PageContent::read(m_document, page);
    m_manager->AddDocPage(page, m_nextContent.fault.isEmpty() ? file : QString());
}

// Takes over where the manager has gone.
void Presentation::takeOver(bool runs)
{
    m_manager->GetAnimStatus(m_position);
    const bool isOtherPage = m_contentPage != static_cast<int>(m_position.page);
    if (isOtherPage) {
        m_contentPage = static_cast<int>(m_position.page);
        m_content = std::exchange(m_nextContent, {});
    }
    m_position.step = std::min(m_position.step, m_content.stepCount());
    m_position.passedDuration =
        std::min(m_position.passedDuration, m_content.duration(m_position.step));
    const bool hasMore = m_position.step == 0
                             ? m_content.startsByItself()
                             : m_position.passedDuration < m_content.duration(m_position.step);
    if (runs && hasMore && m_manager->IsDocHaveAnimation())
        m_clock.start();
    else
        m_clock.invalidate();
    m_picture = pagePicture(*m_manager, m_position, m_content);
    if (isOtherPage)
        Q_EMIT pageChanged();
    Q_EMIT moved();
    Q_EMIT changed();
}

void Presentation::showFrame()
{
    if (m_isMoving)
        return;
    m_picture = pagePicture(*m_manager, position(), m_content);
    Q_EMIT changed();
}

void Presentation::stopped()
{
    m_position = position();
    if (isRunning()) // whatever our clock says: the player's is the system's, which may be set
        m_position.passedDuration = m_content.duration(m_position.step);
    m_clock.invalidate();
    showFrame();
}
