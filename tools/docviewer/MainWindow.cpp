#include "tools/docviewer/MainWindow.h"

#include "tools/docviewer/StatusText.h"
#include "tools/docviewer/ViewerSettings.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace {

QString geometryKey()
{
    return QStringLiteral("geometry");
}

QString stateKey()
{
    return QStringLiteral("windowState");
}

QString droppedPath(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    return urls.size() == 1 && urls.constFirst().isLocalFile() ? urls.constFirst().toLocalFile()
                                                               : QString();
}

constexpr int kLabelMargin = 10;

} // namespace

MainWindow::MainWindow(Memory memory)
    : m_memory(memory)
    , m_view(new PageView)
    , m_actions(this, m_view)
    , m_recent(new RecentDocuments(m_actions.recent))
{
    setAcceptDrops(true);
    makePanels();
    makeStatusLine();
    connectActions();
    connectPage();
    resize(1100, 720);
    if (m_memory == Memory::Kept) {
        restoreGeometry(ViewerSettings().value(geometryKey()).toByteArray());
        restoreState(ViewerSettings().value(stateKey()).toByteArray());
    }
    showDocument();
    showPage();
    showFrame();
    updateFullScreen();
    m_view->setFocus();
}

// The widgets outlive what the window is told by them: a timeline that is deleted still lets go.
MainWindow::~MainWindow()
{
    for (QObject *child : findChildren<QObject *>())
        child->disconnect(this);
}

void MainWindow::makePanels()
{
    auto *middle = new QWidget;
    auto *column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_timeline = new Timeline;
    column->addWidget(m_view, 1);
    column->addWidget(m_timeline);
    setCentralWidget(middle);

    m_thumbnails = new ThumbnailList;
    m_thumbnailDock = new QDockWidget(tr("Pages"));
    m_thumbnailDock->setObjectName(QStringLiteral("thumbnails"));
    m_thumbnailDock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    m_thumbnailDock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
    m_thumbnailDock->setWidget(m_thumbnails);
    addDockWidget(Qt::LeftDockWidgetArea, m_thumbnailDock);
    m_actions.panels->addAction(m_thumbnailDock->toggleViewAction());

    m_timelineAction = m_actions.panels->addAction(tr("&Timeline"));
    m_timelineAction->setStatusTip(tr("Show the steps of a slide below it"));
    m_timelineAction->setCheckable(true);
    m_timelineAction->setChecked(true);

    setTabOrder(m_view, m_timeline);
    setTabOrder(m_timeline, m_thumbnails);
}

void MainWindow::makeStatusLine()
{
    const auto add = [this](const QString &name) {
        auto *label = new QLabel;
        label->setAccessibleName(name);
        label->setContentsMargins(kLabelMargin, 0, kLabelMargin, 0);
        statusBar()->addPermanentWidget(label);
        return label;
    };
    m_pageLabel = add(tr("Page number"));
    m_stepLabel = add(tr("Step"));
    m_timeLabel = add(tr("Time"));
    m_nextLabel = add(tr("What is next"));
    m_scaleLabel = add(tr("Scale"));
}

void MainWindow::connectActions()
{
    const auto on = [this](QAction *action, auto what) {
        connect(action, &QAction::triggered, this, what);
    };
    on(m_actions.openFolder, &MainWindow::askForFolder);
    on(m_actions.openFile, &MainWindow::askForFile);
    on(m_actions.saveFrame, &MainWindow::askForFrameName);
    on(m_actions.savePdf, &MainWindow::askForPdfName);
    on(m_actions.print, &MainWindow::askForPrinter);
    on(m_actions.quit, &MainWindow::close);
    on(m_actions.goTo, &MainWindow::askForPage);
    on(m_actions.keysHelp, &MainWindow::showHelp);
    on(m_actions.fullScreen, &MainWindow::setFullScreen);
    on(m_actions.leaveFullScreen, [this] { setFullScreen(false); });
    on(m_actions.black, [this] {
        m_view->setFocus();
        m_view->setBlack(true);
    });
    on(m_actions.first, [this] { m_presentation.goTo(0); });
    connect(m_actions.last, &QAction::triggered, &m_presentation, &Presentation::goToLast);
    connect(m_actions.next, &QAction::triggered, &m_presentation, &Presentation::next);
    connect(m_actions.previous, &QAction::triggered, &m_presentation, &Presentation::previous);
    connect(m_actions.zoomFit, &QAction::triggered, m_view, &PageView::zoomToFit);
    on(m_actions.zoomFull, [this] { m_view->setZoom(1); });
    connect(m_actions.zoomIn, &QAction::triggered, m_view, &PageView::zoomIn);
    connect(m_actions.zoomOut, &QAction::triggered, m_view, &PageView::zoomOut);
    connect(m_timelineAction, &QAction::toggled, this, &MainWindow::updateTimeline);
    connect(m_recent, &RecentDocuments::chosen, this, &MainWindow::open);
}

void MainWindow::connectPage()
{
    connect(&m_presentation, &Presentation::opened, this, &MainWindow::showDocument);
    connect(&m_presentation, &Presentation::pageChanged, this, &MainWindow::showPage);
    connect(&m_presentation, &Presentation::moved, m_timeline, &Timeline::endScrubbing);
    connect(&m_presentation, &Presentation::moved, this, [this] { m_numberEntry->clear(); });
    connect(&m_presentation, &Presentation::changed, this, &MainWindow::showFrame);
    connect(m_view, &PageView::clicked, this, &MainWindow::click);
    connect(m_view, &PageView::wheelTurned, this, &MainWindow::turnWheel);
    connect(m_view, &PageView::scaleChanged, this, &MainWindow::showScale);
    m_numberEntry = new PageNumberEntry(m_view);
    m_view->installEventFilter(this); // before the entry: behind black a digit is any key
    connect(m_numberEntry, &PageNumberEntry::typed, this, [this](const QString &digits) {
        m_view->setNote(digits.isEmpty() ? QString() : tr("Go to page %1").arg(digits));
    });
    connect(m_numberEntry, &PageNumberEntry::entered, this, &MainWindow::goToNumber);
    connect(m_thumbnails, &ThumbnailList::pageChosen, this,
            [this](int page) { m_presentation.goTo(static_cast<quint32>(page)); });
    connect(m_timeline, &Timeline::scrubbed, this, &MainWindow::showScrubbed);
    connect(m_timeline, &Timeline::scrubEnded, this, &MainWindow::showFrame);
}

void MainWindow::open(const QString &path)
{
    const ViewerDocument document = ViewerDocument::open(path);
    if (m_memory == Memory::Kept && document.fault.isEmpty())
        m_recent->add(document.name);
    m_presentation.open(document);
}

QString MainWindow::statusText() const
{
    QStringList parts;
    for (const QLabel *label : {m_pageLabel, m_stepLabel, m_timeLabel, m_nextLabel}) {
        if (!label->text().isEmpty())
            parts += label->text();
    }
    return parts.join(QStringLiteral(" | "));
}

void MainWindow::click(Qt::MouseButton button)
{
    m_numberEntry->clear();
    if (m_view->isBlack())
        m_view->setBlack(false);
    else if (button == Qt::LeftButton || button == Qt::ForwardButton)
        m_presentation.next();
    else if (button == Qt::RightButton || button == Qt::BackButton)
        m_presentation.previous();
}

void MainWindow::turnWheel(int notches)
{
    if (m_view->isBlack()) {
        m_view->setBlack(false);
        return;
    }
    for (int i = 0; i < notches; ++i)
        m_presentation.next();
    for (int i = 0; i > notches; --i)
        m_presentation.previous();
}

void MainWindow::goToNumber(quint32 number)
{
    if (number >= 1 && number <= m_presentation.pageCount())
        m_presentation.goTo(number - 1);
    else
        statusBar()->showMessage(tr("There is no page %1").arg(number), 3000);
}

void MainWindow::showDocument()
{
    m_numberEntry->clear();
    QString name = QFileInfo(m_presentation.document().name).fileName();
    name.replace(QLatin1String("[*]"), QLatin1String("[*][*]")); // else a place for a mark
    setWindowTitle(name.isEmpty() ? tr("Document Viewer") : tr("%1 - Document Viewer").arg(name));
    m_thumbnails->setDocument(m_presentation.document());
    m_thumbnailDock->setEnabled(m_presentation.pageCount() > 0);
}

void MainWindow::showPage()
{
    m_view->setBlack(false);
    m_timeline->setSlide(m_presentation.content(),
                         static_cast<int>(m_presentation.position().page));
    updateTimeline();
    if (m_presentation.pageCount() > 0)
        m_thumbnails->setCurrentPage(static_cast<int>(m_presentation.position().page));
}

void MainWindow::showFrame()
{
    const Presentation::Position position = m_presentation.position();
    m_timeline->setPosition(position.step, position.passedDuration);
    updateActions();
    if (m_timeline->isScrubbing())
        return;
    const PagePicture &picture = m_presentation.picture();
    const ViewerDocument &document = m_presentation.document();
    if (!picture.image.isNull())
        m_view->setImage(picture.image);
    else if (m_presentation.pageCount() > 0)
        m_view->setMessage(tr("Page %1 cannot be shown").arg(position.page + 1), picture.fault);
    else if (!document.name.isEmpty())
        m_view->setMessage(tr("The document cannot be shown"),
                           document.name + QStringLiteral(": ") + document.fault);
    else
        m_view->setMessage(tr("No document"),
                           tr("Open a folder of page result files, or drop it here."));
    showStatus(position);
}

void MainWindow::showScrubbed(const QImage &frame, quint32 step, quint32 ms)
{
    m_view->setImage(frame);
    showStatus({m_presentation.position().page, step, ms});
    m_nextLabel->setText(tr("looking at another moment"));
}

void MainWindow::showStatus(const DocDisplayMgr::AnimStatus &position)
{
    const StatusText text = StatusText::of(m_presentation, position);
    const auto show = [](QLabel *label, const QString &part) {
        label->setText(part);
        label->setVisible(!part.isEmpty());
    };
    show(m_pageLabel, text.page);
    show(m_stepLabel, text.step);
    show(m_timeLabel, text.time);
    show(m_nextLabel, text.next);
    m_view->setAccessibleDescription(m_view->image().isNull() ? m_view->message() : text.page);
}

void MainWindow::showScale()
{
    m_scaleLabel->setVisible(!m_view->image().isNull());
    m_scaleLabel->setText(tr("%1 %").arg(qRound(m_view->scale() * 100)));
    m_actions.zoomFit->setChecked(m_view->isFitted());
}

void MainWindow::updateActions()
{
    const bool hasPages = m_presentation.pageCount() > 0;
    const bool hasPicture = !m_presentation.picture().image.isNull();
    m_actions.next->setEnabled(hasPages && m_presentation.canGoNext());
    m_actions.previous->setEnabled(hasPages && m_presentation.canGoPrevious());
    for (QAction *action :
         {m_actions.first, m_actions.last, m_actions.goTo, m_actions.savePdf, m_actions.print})
        action->setEnabled(hasPages);
    for (QAction *action : {m_actions.saveFrame, m_actions.zoomFit, m_actions.zoomFull,
                            m_actions.zoomIn, m_actions.zoomOut})
        action->setEnabled(hasPicture);
    showScale();
}

void MainWindow::updateTimeline()
{
    m_timeline->setVisible(m_timelineAction->isChecked() && !isFullScreen() &&
                           m_presentation.content().stepCount() > 0);
}

void MainWindow::setFullScreen(bool on)
{
    if (on == isFullScreen()) {
        m_actions.fullScreen->setChecked(on);
        return;
    }
    if (on) {
        m_wasMaximized = isMaximized();
        showFullScreen();
    } else if (m_wasMaximized) {
        showMaximized();
    } else {
        showNormal();
    }
}

// The window manager may change the state, too.
void MainWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        updateFullScreen();
}

void MainWindow::updateFullScreen()
{
    const bool on = isFullScreen();
    m_actions.fullScreen->setChecked(on);
    m_actions.leaveFullScreen->setEnabled(on);
    m_view->setPresenting(on);
    menuBar()->setVisible(!on);
    statusBar()->setVisible(!on);
    // Only what was seen comes back.
    const auto hide = [on](QWidget *panel, bool &isHidden) {
        if (on && !isHidden && !panel->isHidden()) {
            panel->hide();
            isHidden = true;
        } else if (!on && isHidden) {
            panel->show();
            isHidden = false;
        }
    };
    hide(m_thumbnailDock, m_isDockHidden);
    hide(m_actions.toolBar, m_isToolBarHidden);
    updateTimeline();
    if (on)
        m_view->setFocus();
}

// Behind black any key brings the page back, and does nothing else.
bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey =
        event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (watched != m_view || !isKey || !m_view->isBlack())
        return QMainWindow::eventFilter(watched, event);
    if (event->type() == QEvent::ShortcutOverride)
        event->accept();
    else if (!isModifierKey(static_cast<QKeyEvent *>(event)->key()))
        m_view->setBlack(false);
    return true;
}

// The keys of a presenter that what has the focus has no use for.
void MainWindow::keyPressEvent(QKeyEvent *event)
{
    if (m_numberEntry->take(*event))
        return;
    const QKeySequence key(event->key() |
                           static_cast<int>(event->modifiers() & ~Qt::KeypadModifier));
    for (QAction *action :
         {m_actions.next, m_actions.previous, m_actions.first, m_actions.last, m_actions.black}) {
        if (action->shortcuts().contains(key)) {
            action->trigger();
            return;
        }
    }
    QMainWindow::keyPressEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!droppedPath(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const QString path = droppedPath(event->mimeData());
    if (path.isEmpty())
        return;
    event->acceptProposedAction();
    open(path);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (m_memory == Memory::Kept) {
        setFullScreen(false); // so that its panels are kept as they are in the window
        ViewerSettings().setValue(geometryKey(), saveGeometry());
        ViewerSettings().setValue(stateKey(), saveState());
    }
    QMainWindow::closeEvent(event);
}
