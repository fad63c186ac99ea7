#pragma once

#include <QObject>
#include <QStringList>

class QMenu;

/// The documents that were opened last, as a menu, kept from one run of the program to the next.
class RecentDocuments : public QObject
{
    Q_OBJECT

public:
    /// \param menu filled whenever it is opened
    explicit RecentDocuments(QMenu *menu);

    /// Puts a document on top of the list.
    void add(const QString &path);
    void clear();
    QStringList paths() const;

Q_SIGNALS:
    void chosen(const QString &path);

private:
    void fill();

    QMenu *m_menu;
};
