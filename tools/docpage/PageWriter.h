#pragma once

#include "tools/docpage/ContactSheet.h"
#include "tools/docpage/OutputFile.h"
#include "tools/docpage/SlideFrames.h"

#include <QDir>

/// Saves the frames of one page and then their contact sheet.
class PageWriter
{
public:
    /// \param frames how many there will be
    PageWriter(const QDir &folder, unsigned int page, qint64 frames, const OutputRules &rules);

    /// Whether all files can be written, as far as it can be told beforehand; the first that cannot
    /// is in file() and fault() then.
    bool check();

    bool add(const Frame &frame);
    bool addSheet();

    const QString &file() const { return m_file; }
    const QString &fault() const { return m_fault; }

private:
    QString frameName(qint64 number) const;
    QString sheetName() const;
    bool save(const QString &file, const QImage &image);

    QDir m_folder;
    unsigned int m_page;
    qint64 m_frames;
    const OutputRules &m_rules;
    qint64 m_number = 0; // of the next frame
    ContactSheet m_sheet;
    QString m_file;
    QString m_fault;
};
