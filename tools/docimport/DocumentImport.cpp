#include "tools/docimport/DocumentImport.h"

#include "tools/docimport/DeckImport.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/EndRequest.h"
#include "tools/docpage/PageFile.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>

DocumentImport::DocumentImport(const QString &input, const QString &folder,
                               const ImportOptions &options, const OutputRules &rules,
                               const EndRequest &request)
    : m_input(input)
    , m_options(options)
    , m_request(request)
    , m_folder(folder, rules)
{
    m_report.input = input;
    m_report.output = folder;
}

DocumentReport DocumentImport::run()
{
    QElapsedTimer time;
    time.start();
    if (import())
        tellDone();
    else if (m_request.isMade())
        isGood({m_report.output, QStringLiteral("cancelled, no page is made")});
    settleWork();
    m_progress.clear();
    m_report.seconds = static_cast<double>(time.elapsed()) / 1000;
    return m_report;
}

// The first fault ends it.
bool DocumentImport::import()
{
    const InputKind kind = InputKind::of(m_input);
    const bool isMade = isGood({m_input, kind.fault}) && isGood(m_folder.check()) &&
                        isGood(m_folder.create()) && openSource(kind) && choosePages() &&
                        makePages();
    if (!isMade)
        return false;
    settleWork();
    return isGood(m_folder.publish(m_pages.size()));
}

bool DocumentImport::isGood(const PageFolder::Fault &fault)
{
    if (fault.words.isEmpty())
        return true;
    m_progress.clear();
    reportFault(fault.file, fault.words);
    m_report.fault =
        fault.file == m_input ? fault.words : fault.file + QStringLiteral(": ") + fault.words;
    m_report.slides.clear();
    return false;
}

void DocumentImport::show(const QString &what)
{
    m_progress.show(QStringLiteral("%1: %2").arg(QFileInfo(m_input).fileName(), what));
}

bool DocumentImport::openSource(const InputKind &kind)
{
    if (kind.kind == InputKind::Pdf) {
        m_source = std::make_unique<PdfImport>(m_input, m_options);
    } else {
        show(QStringLiteral("LibreOffice at work"));
        m_source = std::make_unique<DeckImport>(m_input, kind.suffix, m_folder.workPath(),
                                                m_options, m_request);
    }
    return isGood({m_input, m_source->open()}) && !m_request.isMade();
}

bool DocumentImport::choosePages()
{
    return isGood({m_input, m_options.pages.pagesOf(m_source->pageCount(), m_pages)}) &&
           isGood(m_folder.checkCount(m_pages.size()));
}

bool DocumentImport::makePages()
{
    if (!isGood({m_input, m_source->prepare(m_pages)}) || m_request.isMade())
        return false;
    m_report.slides.resize(m_pages.size());
    SlideReport *slides = m_report.slides.data();
    const auto makePage = [this, slides](int number, SlideTools &tools) {
        SlideReport &report = slides[number];
        report.number = m_pages.at(number) + 1;
        report.page = pageFileName(number);
        PagePayload payload;
        const QString fault =
            m_source->makePage(m_pages.at(number), number, tools, payload, report);
        return fault.isEmpty() ? m_folder.save(number, payload) : fault;
    };
    const QString fault =
        workOnSlides(m_pages.size(), makePage, m_options.timeout, m_request, [this](int done) {
            show(QStringLiteral("slide %1 of %2")
                     .arg(qMin(done + 1, m_pages.size()))
                     .arg(m_pages.size()));
        });
    m_report.note = m_source->note();
    return !m_request.isMade() && isGood({m_input, fault});
}

// Before the folder of the work goes.
void DocumentImport::settleWork()
{
    if (!m_source)
        return;
    m_source.reset();
    if (!m_options.keepsWork)
        return;
    const QString kept = m_folder.keepWork();
    m_progress.clear();
    if (!kept.isEmpty())
        print(QStringLiteral("the work is kept in %1\n").arg(escaped(kept)));
}

void DocumentImport::tellDone()
{
    m_progress.clear();
    if (!m_report.note.isEmpty())
        reportFault(m_input, m_report.note);
    const auto animated = std::count_if(m_report.slides.begin(), m_report.slides.end(),
                                        [](const SlideReport &slide) { return slide.isAnimated; });
    const QString ofThem =
        animated > 0 ? QStringLiteral(", %1 of them animated").arg(animated) : QString();
    print(QStringLiteral("%1 in %2%3\n")
              .arg(counted(m_pages.size(), "page result file"), escaped(m_report.output), ofThem));
}
