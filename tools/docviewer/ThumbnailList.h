#pragma once

#include "tools/docviewer/ThumbnailLoader.h"
#include "tools/docviewer/ThumbnailModel.h"

#include <QListView>
#include <QTimer>

/// All pages of a document as thumbnails with their numbers, counted from 1, slides in their final
/// state. They are made in the background, those in sight first.
class ThumbnailList : public QListView
{
    Q_OBJECT

public:
    explicit ThumbnailList(QWidget *parent = nullptr);

    /// Shows another document, with no page current. One without pages empties the list.
    void setDocument(const ViewerDocument &document);

    /// Marks a page and brings it in sight; none when there is no such page. Sends nothing.
    void setCurrentPage(int page);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user has chosen a page.
    void pageChosen(int page);

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void takeThumbnail(int page, QImage thumbnail, const QString &fault);
    void requestVisible();
    void followScreen();
    void updateIcons();

    ViewerDocument m_document;
    ThumbnailModel m_model;
    ThumbnailLoader m_loader;
    QTimer m_requestTimer;               // runs while other pages may have come in sight
    qreal m_ratio = 1;                   // pixels of the thumbnails to one of the list's
    bool m_isSettingCurrentPage = false; // it is not the user who does
};
