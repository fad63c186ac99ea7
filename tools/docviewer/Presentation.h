#pragma once

#include "tools/docviewer/StillPages.h"

#include <QElapsedTimer>
#include <QObject>

/// The document that is being shown, and the place where it is: a display manager, and beside it
/// what a manager does not tell.
class Presentation : public QObject
{
    Q_OBJECT

public:
    using Position = DocDisplayMgr::AnimStatus;

    explicit Presentation(QObject *parent = nullptr);

    /// Shows the first page of a document, in place of the one before.
    void open(const ViewerDocument &document);
    const ViewerDocument &document() const { return m_document; }

    quint32 pageCount() const { return m_manager->GetPageCount(); }

    /// What is shown, and the content of its page.
    const PagePicture &picture() const { return m_picture; }
    const PageContent &content() const { return m_content; }

    /// The place. While a step runs, the manager does not tell how far it has come: then the time
    /// is that of a clock of our own.
    Position position() const;
    /// Whether a step is being played.
    bool isRunning() const { return m_clock.isValid(); }

    bool canGoNext() const;
    bool canGoPrevious() const;

public Q_SLOTS:
    /// A step on, or to the next page at the end of a slide.
    void next();
    /// A step back, or to the end of the previous page.
    void previous();
    /// To a page, counted from 0, which begins to play what starts by itself.
    void goTo(quint32 page);
    void goToLast();
    /// To a position that is shown still, whatever its time; from there, next() ends the step.
    void hold(const DocDisplayMgr::AnimStatus &position);

Q_SIGNALS:
    /// Another document is shown.
    void opened();
    /// The page is another one. Sent before changed().
    void pageChanged();
    /// Somebody has gone on, back, or elsewhere, if only on the page. Sent before changed().
    void moved();
    /// The picture, the position, or what is possible has changed.
    void changed();

private:
    void prepare(quint32 page);
    void showFrame();
    void stopped();
    void takeOver(bool runs);

    ViewerDocument m_document;
    ManagerPointer m_manager;
    PageContent m_content;
    PageContent m_nextContent; // of the page that was prepared
    PagePicture m_picture;
    Position m_position{0, 0, 0}; // where the clock was started, or where we are when it stands
    QElapsedTimer m_clock;        // valid while a step runs
    bool m_isMoving = false;      // the manager is being moved, and signals that
    int m_contentPage = -1;       // the page that m_content is of
};
