#pragma once

#include "tools/docviewer/PageNumberEntry.h"
#include "tools/docviewer/PageView.h"
#include "tools/docviewer/Presentation.h"
#include "tools/docviewer/RecentDocuments.h"
#include "tools/docviewer/SheetPainter.h"
#include "tools/docviewer/ThumbnailList.h"
#include "tools/docviewer/Timeline.h"
#include "tools/docviewer/ViewerActions.h"

#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>

class OutputJob;

/// The window of the program: a document, its pages, and what can be done with them.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Whether the window keeps its place and the documents that it opens for the next time.
    enum class Memory { Kept, None };
    explicit MainWindow(Memory memory = Memory::Kept);
    ~MainWindow() override;

    /// Shows a folder or a file, or why it cannot be shown.
    void open(const QString &path);

    Presentation *presentation() { return &m_presentation; }
    PageView *view() const { return m_view; }
    ThumbnailList *thumbnails() const { return m_thumbnails; }
    Timeline *timeline() const { return m_timeline; }
    const ViewerActions &actionSet() const { return m_actions; }
    RecentDocuments *recentDocuments() const { return m_recent; }

    /// What the status line says.
    QString statusText() const;

    /// Nothing but the page on the whole screen, or the window again.
    void setFullScreen(bool on);

    /// Saves a picture, or all pages; a fault is told in a window. Nothing is saved in the
    /// document's own folder.
    void saveFrame(const QImage &image, const QString &path);
    /// \return null when nothing may be saved there
    OutputJob *savePdf(const QString &path);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void connectActions();
    void connectPage();
    void makeStatusLine();
    void makePanels();

    void askForFolder();
    void askForFile();
    void askForPage();
    void askForFrameName();
    void askForPdfName();
    void askForPrinter();
    void showHelp();
    SheetPainter::Sheets sheets() const;
    void tell(OutputJob *job, const QString &success, const QString &failure);
    void tellFault(const QString &what, const QString &fault);

    void click(Qt::MouseButton button);
    void turnWheel(int notches);
    void goToNumber(quint32 number);
    void showDocument();
    void showPage();
    void showFrame();
    void showScrubbed(const QImage &frame, quint32 step, quint32 ms);
    void showStatus(const DocDisplayMgr::AnimStatus &position);
    void showScale();
    void updateActions();
    void updateTimeline();
    void updateFullScreen();
    QString suggestedName(const QString &suffix) const;

    const Memory m_memory;
    Presentation m_presentation;
    PageView *m_view;
    ViewerActions m_actions;
    RecentDocuments *m_recent;
    Timeline *m_timeline;
    ThumbnailList *m_thumbnails;
    QDockWidget *m_thumbnailDock;
    QAction *m_timelineAction;
    PageNumberEntry *m_numberEntry;
    QLabel *m_pageLabel;
    QLabel *m_stepLabel;
    QLabel *m_timeLabel;
    QLabel *m_nextLabel;
    QLabel *m_scaleLabel;
    bool m_wasMaximized = false;
    bool m_isDockHidden = false; // by full screen
    bool m_isToolBarHidden = false;
};
