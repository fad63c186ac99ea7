#pragma once

#include <QAction>
#include <QMainWindow>

class QMenu;

/// What the user can do, each with its text, keys and icon, in the menus and the tool bar of a
/// window. What is done is for the window to say.
class ViewerActions
{
public:
    /// \param view the keys of a presenter belong to it, so that lists and fields keep theirs
    ViewerActions(QMainWindow *window, QWidget *view);

    QAction *openFolder;
    QAction *openFile;
    QMenu *recent;
    QAction *saveFrame;
    QAction *savePdf;
    QAction *print;
    QAction *eachStep;
    QAction *quit;

    QAction *previous;
    QAction *next;
    QAction *first;
    QAction *last;
    QAction *goTo;

    QAction *fullScreen;
    QAction *leaveFullScreen;
    QAction *black;
    QAction *zoomFit;
    QAction *zoomFull;
    QAction *zoomIn;
    QAction *zoomOut;
    QMenu *panels; ///< what can be shown or hidden

    QAction *keysHelp;

    QToolBar *toolBar;

private:
    void makeFileMenu();
    void makeGoMenu(QWidget *view);
    void makeViewMenu(QWidget *view);
    void makeHelpMenu();
    void makeToolBar();

    QMainWindow *m_window;
};
