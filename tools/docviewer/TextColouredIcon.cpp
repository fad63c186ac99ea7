#include "tools/docviewer/TextColouredIcon.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>

namespace {

class Engine : public QIconEngine
{
public:
    explicit Engine(QStyle::StandardPixmap icon)
        : m_icon(icon)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, pixmap(rect.size() * ratio, mode, state));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        const QRect all({}, size);
        QApplication::style()->standardIcon(m_icon).paint(&painter, all);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(all, QApplication::palette().color(
                                  mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active,
                                  QPalette::ButtonText));
        return pixmap;
    }

    QIconEngine *clone() const override { return new Engine(*this); }

private:
    QStyle::StandardPixmap m_icon;
};

} // namespace

QIcon textColouredIcon(QStyle::StandardPixmap icon)
{
    return QIcon(new Engine(icon));
}
