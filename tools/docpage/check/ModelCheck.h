#pragma once

#include "tools/docpage/check/LocatedModel.h"
#include "tools/docpage/check/PageReport.h"

#include <QByteArray>
#include <QString>

/// Tells of slide animation data what would not show, or not as it was meant.
class ModelCheck
{
public:
    /// \param maxMemory bytes that the decoding of a picture, and the pictures of a slide, may take
    ModelCheck(PageReport &report, qint64 maxMemory)
        : m_report(report)
        , m_maxMemory(maxMemory)
    {
    }

    /// \param start the place of the payload in the file
    /// \param file the name of the file, which tells its place in a document
    void check(const QByteArray &payload, qint64 start, const QString &file);

private:
    void checkPageNumbers(const QString &file);
    void checkRepeatedPages();
    void checkPage(const LocatedPage &page);
    void checkShapes(const LocatedPage &page, QSize background);
    void checkPlace(const LocatedPage &page, const LocatedShape &shape, QSize picture,
                    QSize background);
    void checkRepeatedShapes(const LocatedPage &page);
    void checkEffects(const LocatedPage &page);
    void checkSteps(const LocatedPage &page);
    void add(Severity severity, const char *code, qint64 offset, const QString &words);

    PageReport &m_report;
    const qint64 m_maxMemory;
    LocatedModel m_model;
    qint64 m_slideBytes = 0; // of the pictures of a page
};
