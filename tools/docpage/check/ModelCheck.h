#pragma once

#include "tools/docpage/check/LocatedModel.h"
#include "tools/docpage/check/PageReport.h"

#include <QByteArray>
#include <QString>

/// Tells of slide animation data what would not show, or not as it was meant.
class ModelCheck
{
public:
    /// \param budget for the pictures of the file; its memory is for the images of a slide, too
    ModelCheck(PageReport &report, DecodingBudget &budget)
        : m_report(report)
        , m_budget(budget)
    {
    }

    /// \param start the place of the payload in the file
    /// \param file the name of the file, which tells its place in a document
    void check(const QByteArray &payload, qint64 start, const QString &file);

private:
    void checkPages(const QString &file);
    void checkPage(const LocatedPage &page);
    QSize checkBackground(const LocatedPage &page);
    void checkShapes(const LocatedPage &page, QSize background);
    void checkShape(const LocatedPage &page, const LocatedShape &shape, QSize background);
    void checkPlace(const LocatedPage &page, const LocatedShape &shape, QSize picture,
                    QSize background);
    void checkEffects(const LocatedPage &page);
    void checkSteps(const LocatedPage &page);
    PictureVerdict addPicture(const QByteArray &picture, const QString &name, qint64 offset);
    void add(Severity severity, const char *code, qint64 offset, const QString &words);

    PageReport &m_report;
    DecodingBudget &m_budget;
    LocatedModel m_model;
    qint64 m_slideBytes = 0; // of the pictures of a page
};
