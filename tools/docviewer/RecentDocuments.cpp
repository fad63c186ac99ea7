#include "tools/docviewer/RecentDocuments.h"

#include "tools/docviewer/ViewerSettings.h"

#include <QFileInfo>
#include <QMenu>

namespace {

constexpr int kMost = 10;

QString settingsKey()
{
    return QStringLiteral("recentDocuments");
}

} // namespace

RecentDocuments::RecentDocuments(QMenu *menu)
    : QObject(menu)
    , m_menu(menu)
{
    connect(menu, &QMenu::aboutToShow, this, &RecentDocuments::fill);
    fill();
}

void RecentDocuments::add(const QString &path)
{
    QStringList list = paths();
    const QString absolute = QFileInfo(path).absoluteFilePath();
    list.removeAll(absolute);
    list.prepend(absolute);
    ViewerSettings().setValue(settingsKey(), QStringList(list.mid(0, kMost)));
    fill();
}

void RecentDocuments::clear()
{
    ViewerSettings().remove(settingsKey());
    fill();
}

QStringList RecentDocuments::paths() const
{
    return ViewerSettings().value(settingsKey()).toStringList();
}

void RecentDocuments::fill()
{
    m_menu->clear();
    const QStringList list = paths();
    m_menu->setEnabled(!list.isEmpty());
    for (const QString &path : list) {
        const int number = m_menu->actions().size() + 1;
        const QString name = QString(path).replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction *action = m_menu->addAction(
            number < kMost ? QStringLiteral("&%1 %2").arg(QString::number(number), name) : name);
        connect(action, &QAction::triggered, this, [this, path] { Q_EMIT chosen(path); });
    }
    m_menu->addSeparator();
    QAction *clearAction = m_menu->addAction(tr("&Clear List"));
    clearAction->setStatusTip(tr("Forget the documents that were opened last"));
    connect(clearAction, &QAction::triggered, this, &RecentDocuments::clear);
}
