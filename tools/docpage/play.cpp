#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/FrameHash.h"
#include "tools/docpage/PageImage.h"
#include "tools/docpage/PageWriter.h"
#include "tools/docpage/Progress.h"
#include "tools/docpage/SlideFrames.h"

#include <QDir>
#include <QFileInfo>

namespace {

/// What the command was asked for, and what it has done.
class Play
{
public:
    Play(const Document &document, const QDir &folder, const OutputRules &rules, int fps,
         bool hashes)
        : m_document(document)
        , m_folder(folder)
        , m_rules(rules)
        , m_fps(fps)
        , m_hashes(hashes)
    {
    }

    /// Writes one page. What fails is told.
    bool playPage(unsigned int page);

    qint64 frames() const { return m_written; }

private:
    bool writePicture(unsigned int page, const PageFile &file);
    bool writeSlide(unsigned int page, const PageFile &file);
    bool addFrame(PageWriter &writer, unsigned int page, const Frame &frame);
    bool fail(const QString &file, const QString &fault);
    bool fail(const PageWriter &writer) { return fail(writer.file(), writer.fault()); }

    const Document &m_document;
    QDir m_folder;
    const OutputRules &m_rules;
    int m_fps;
    bool m_hashes;
    qint64 m_written = 0;
    Progress m_progress;
};

bool Play::fail(const QString &file, const QString &fault)
{
    m_progress.clear();
    reportFault(file, fault);
    return false;
}

bool Play::playPage(unsigned int page)
{
    const QString &name = m_document.pages.at(static_cast<int>(page));
    const PageFile file = PageFile::read(name);
    if (!file.fault.isEmpty())
        return fail(name, file.fault);
    const bool isDone = file.header.picFormat == DocCovRslt::PAGE_FORMAT_PPT_ANIM
                            ? writeSlide(page, file)
                            : writePicture(page, file);
    m_progress.clear();
    return isDone;
}

bool Play::addFrame(PageWriter &writer, unsigned int page, const Frame &frame)
{
    m_progress.show(
        QStringLiteral("page %1, step %2, %3 ms").arg(page).arg(frame.step).arg(frame.ms));
    if (!writer.add(frame))
        return fail(writer);
    ++m_written;
    if (m_hashes)
        print(QStringLiteral("page %1 step %2 ms %3 size %4x%5 sha256 %6\n")
                  .arg(page)
                  .arg(frame.step)
                  .arg(frame.ms)
                  .arg(frame.image.width())
                  .arg(frame.image.height())
                  .arg(QString::fromLatin1(frameHash(frame.image))));
    return printFault().isEmpty(); // which the program tells at its end
}

bool Play::writePicture(unsigned int page, const PageFile &file)
{
    Frame frame;
    const QString fault = pageImage(m_document, {page, 0, 0}, file, frame.image);
    if (!fault.isEmpty())
        return fail(m_document.pages.at(static_cast<int>(page)), fault);
    PageWriter writer(m_folder, page, 1, m_rules);
    if (!writer.check())
        return fail(writer);
    if (!isQRgbFormat(frame.image.format()))
        frame.image = frame.image.convertToFormat(QImage::Format_ARGB32);
    return addFrame(writer, page, frame) && (writer.addSheet() || fail(writer));
}

bool Play::writeSlide(unsigned int page, const PageFile &file)
{
    const QString &name = m_document.pages.at(static_cast<int>(page));
    SlideFrames frames(file.payload, page, m_fps);
    if (!frames.fault().isEmpty())
        return fail(name, frames.fault());
    PageWriter writer(m_folder, page, frames.count(), m_rules);
    if (!writer.check())
        return fail(writer);
    do {
        if (!addFrame(writer, page, frames.frame()))
            return false;
    } while (frames.next());
    if (!frames.fault().isEmpty())
        return fail(name, frames.fault());
    return writer.addSheet() || fail(writer);
}

// Frames in the folder of the pages would be taken for pages from then on.
bool isFolderOf(const Document &document, const QString &folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath(); // empty when it is missing
    return !path.isEmpty() && path == QFileInfo(document.name).canonicalFilePath();
}

} // namespace

int runPlay(const QStringList &arguments)
{
    CommandLine line("docpage play",
                     "DOCUMENT... -o DIR [--fps FPS] [--page N]\n"
                     "                    [--hashes] [--force]",
                     "Saves every frame of every step of a document's pages as PNG pictures,\n"
                     "page_0-frame_00000.png and so on, and for each page a contact sheet,\n"
                     "page_0-sheet.png, that tells the step and the time of each frame.");
    line.addDocument();
    line.addOutput("DIR", "The folder of the pictures. It is created when missing.");
    line.addOption("fps", "Frames a second, 1 to 1000. Without it, 25.", "FPS");
    line.addOption("page", "Plays this page only, counted from 0.", "N");
    line.addOption("hashes",
                   "Prints a line for each frame with its page, step, time, size and the SHA-256 "
                   "of its pixels, to compare what two machines paint.");
    if (const std::optional<int> status = line.parse(arguments))
        return *status;
    constexpr unsigned int kMaxFramesPerSecond = 1000; // the player counts in milliseconds
    unsigned int fps = kFramesPerSecond;
    unsigned int only = 0;
    QString fault = line.readNumber("fps", "number of frames a second from 1 to 1000", fps, 1,
                                    kMaxFramesPerSecond);
    if (fault.isEmpty())
        fault = line.readNumber("page", "page number", only);
    if (!fault.isEmpty())
        return line.wrongUsage(fault);

    const Document document = Document::of(line.inputs());
    if (!document.fault.isEmpty())
        return reportFault(document.name, document.fault);
    fault = document.pageFault(only);
    if (!fault.isEmpty())
        return reportFault(document.name, fault);
    if (isFolderOf(document, line.output()))
        return reportFault(line.output(), QStringLiteral("is the folder of the document"));
    fault = createFolder(line.output());
    if (!fault.isEmpty())
        return reportFault(line.output(), fault);

    const OutputRules rules(line.isSet("force"), document.pages);
    Play play(document, QDir(line.output()), rules, static_cast<int>(fps), line.isSet("hashes"));
    const auto end =
        line.isSet("page") ? only + 1 : static_cast<unsigned int>(document.pages.size());
    bool isDone = true;
    for (unsigned int page = only; page < end && printFault().isEmpty(); ++page)
        isDone = play.playPage(page) && isDone;
    if (!line.isSet("hashes"))
        print(QStringLiteral("%1 in %2\n")
                  .arg(counted(play.frames(), "frame"), escaped(line.output())));
    return isDone ? ExitStatus::Done : ExitStatus::Failed;
}
