#include "tools/docviewer/ViewerActions.h"

#include "tools/docviewer/TextColouredIcon.h"

#include <QApplication>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>

namespace {

QString actionText(const char *english)
{
    return QCoreApplication::translate("ViewerActions", english);
}

QAction *addAction(QMenu *menu, const char *name, const char *statusTip,
                   const QList<QKeySequence> &keys = {})
{
    QAction *action = menu->addAction(actionText(name));
    action->setStatusTip(actionText(statusTip));
    action->setShortcuts(keys);
    return action;
}

void setIcon(QAction *action, QStyle::StandardPixmap icon)
{
    action->setIcon(QApplication::style()->standardIcon(icon));
}

// An action whose keys count while the page has the focus only.
void belongsTo(QWidget *view, QAction *action)
{
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    view->addAction(action);
}

} // namespace

ViewerActions::ViewerActions(QMainWindow *window, QWidget *view)
    : m_window(window)
{
    makeFileMenu();
    makeGoMenu(view);
    makeViewMenu(view);
    makeHelpMenu();
    makeToolBar();
    // Without its menu bar the window keeps the keys.
    for (QAction *action : {openFolder, openFile, saveFrame, savePdf, print, quit, goTo, fullScreen,
                            leaveFullScreen, zoomFit, zoomFull, zoomIn, zoomOut})
        window->addAction(action);
}

void ViewerActions::makeFileMenu()
{
    QMenu *menu = m_window->menuBar()->addMenu(actionText("&File"));
    openFolder = addAction(menu, "&Open Folder ...", "Open a folder of page result files",
                           {QKeySequence::Open});
    setIcon(openFolder, QStyle::SP_DirOpenIcon);
    openFile = addAction(menu, "Open &File ...", "Open a single page result file",
                         {QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_O)});
    recent = menu->addMenu(actionText("Open &Recent"));
    menu->addSeparator();
    saveFrame = addAction(menu, "&Save Picture ...", "Save what is shown as a PNG picture",
                          {QKeySequence::Save});
    setIcon(saveFrame, QStyle::SP_DialogSaveButton);
    savePdf = addAction(menu, "Save as P&DF ...", "Save all pages as a PDF document",
                        {QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_S)});
    print = addAction(menu, "&Print ...", "Print all pages", {QKeySequence::Print});
    eachStep = addAction(menu, "One Sheet per S&tep",
                         "Print and save a sheet for each step of a slide, not only its end");
    eachStep->setCheckable(true);
    menu->addSeparator();
    quit = addAction(menu, "&Quit", "Close the window", {QKeySequence(Qt::CTRL + Qt::Key_Q)});
}

void ViewerActions::makeGoMenu(QWidget *view)
{
    QMenu *menu = m_window->menuBar()->addMenu(actionText("&Go"));
    next = addAction(menu, "&Next", "A step on, or to the next page",
                     {Qt::Key_Right, Qt::Key_Space, Qt::Key_PageDown});
    next->setIcon(textColouredIcon(QStyle::SP_MediaSeekForward));
    previous = addAction(menu, "&Previous", "A step back, or to the previous page",
                         {Qt::Key_Left, Qt::Key_PageUp, Qt::Key_Backspace});
    previous->setIcon(textColouredIcon(QStyle::SP_MediaSeekBackward));
    first = addAction(menu, "&First Page", "To the first page", {Qt::Key_Home});
    first->setIcon(textColouredIcon(QStyle::SP_MediaSkipBackward));
    last = addAction(menu, "&Last Page", "To the last page", {Qt::Key_End});
    last->setIcon(textColouredIcon(QStyle::SP_MediaSkipForward));
    for (QAction *action : {next, previous, first, last})
        belongsTo(view, action);
    menu->addSeparator();
    goTo = addAction(menu, "&Go to Page ...",
                     "To a page by its number; or type the number on the page, then Enter",
                     {QKeySequence(Qt::CTRL + Qt::Key_G)});
}

void ViewerActions::makeViewMenu(QWidget *view)
{
    QMenu *menu = m_window->menuBar()->addMenu(actionText("&View"));
    zoomFit = addAction(menu, "&Fit to Window", "Show the whole page",
                        {QKeySequence(Qt::CTRL + Qt::Key_0)});
    zoomFit->setCheckable(true);
    zoomFull =
        addAction(menu, "&Original Size", "Show each pixel of the picture as one of the screen",
                  {QKeySequence(Qt::CTRL + Qt::Key_1)});
    zoomIn = addAction(menu, "Zoom &In", "Show the page larger",
                       {QKeySequence::ZoomIn, QKeySequence(Qt::CTRL + Qt::Key_Equal)});
    zoomOut = addAction(menu, "Zoom O&ut", "Show the page smaller", {QKeySequence::ZoomOut});
    menu->addSeparator();
    panels = menu->addMenu(actionText("&Panels"));
    menu->addSeparator();
    fullScreen =
        addAction(menu, "F&ull Screen", "Show nothing but the page", {Qt::Key_F5, Qt::Key_F11});
    fullScreen->setCheckable(true);
    leaveFullScreen = addAction(menu, "&Leave Full Screen", "Back to the window", {Qt::Key_Escape});
    black = addAction(menu, "&Black", "Black in place of the page, until any key is pressed",
                      {Qt::Key_B});
    belongsTo(view, black);
}

void ViewerActions::makeHelpMenu()
{
    QMenu *menu = m_window->menuBar()->addMenu(actionText("&Help"));
    keysHelp =
        addAction(menu, "&Keys and Mouse", "What a presenter can do", {QKeySequence::HelpContents});
}

void ViewerActions::makeToolBar()
{
    toolBar = m_window->addToolBar(actionText("Tool Bar"));
    toolBar->setObjectName(QStringLiteral("toolBar"));
    toolBar->addAction(openFolder);
    toolBar->addSeparator();
    for (QAction *action : {first, previous, next, last})
        toolBar->addAction(action);
    toolBar->addSeparator();
    for (QAction *action : {zoomFit, zoomFull, zoomOut, zoomIn})
        toolBar->addAction(action);
    toolBar->addSeparator();
    toolBar->addAction(fullScreen);
    panels->addAction(toolBar->toggleViewAction());
}
