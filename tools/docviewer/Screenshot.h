#pragma once

#include "tools/docviewer/MainWindow.h"

#include <QTimer>

/// Saves a picture of the window when it is complete: its page at once, its thumbnails as far as
/// they come in two seconds.
class Screenshot : public QObject
{
    Q_OBJECT

public:
    Screenshot(MainWindow *window, const QString &path);

Q_SIGNALS:
    /// It is saved, or why it is not.
    void done(const QString &fault);

private:
    void saveWhenComplete();
    void save();

    MainWindow *m_window;
    QString m_path;
    QTimer m_patience;
};
