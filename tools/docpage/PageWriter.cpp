#include "tools/docpage/PageWriter.h"

#include "tools/docpage/PageFile.h"
#include "tools/docpage/PngEncoder.h"

PageWriter::PageWriter(const QDir &folder, unsigned int page, qint64 frames,
                       const OutputRules &rules)
    : m_folder(folder)
    , m_page(page)
    , m_frames(frames)
    , m_rules(rules)
{
}

QString PageWriter::frameName(qint64 number) const
{
    constexpr int kDigits = 5; // of the highest number that there is
    return m_folder.filePath(QStringLiteral("%1-frame_%2.png")
                                 .arg(pageFileName(static_cast<int>(m_page)))
                                 .arg(number, kDigits, 10, QLatin1Char('0')));
}

QString PageWriter::sheetName() const
{
    return m_folder.filePath(pageFileName(static_cast<int>(m_page)) + QStringLiteral("-sheet.png"));
}

bool PageWriter::check()
{
    for (qint64 i = 0; i <= m_frames && m_fault.isEmpty(); ++i) {
        m_file = i < m_frames ? frameName(i) : sheetName();
        m_fault = m_rules.refusal(m_file);
    }
    return m_fault.isEmpty();
}

bool PageWriter::save(const QString &file, const QImage &image)
{
    constexpr int kFast = 85; // frames are many
    QByteArray png;
    m_file = file;
    m_fault = encodePng(image, png, kFast);
    if (m_fault.isEmpty())
        m_fault = saveFile(file, m_rules, {png});
    return m_fault.isEmpty();
}

bool PageWriter::add(const Frame &frame)
{
    if (ContactSheet::takes(m_number, m_frames))
        m_sheet.add(frame.image, frame.label());
    return save(frameName(m_number++), frame.image);
}

bool PageWriter::addSheet()
{
    return save(sheetName(), m_sheet.image());
}
