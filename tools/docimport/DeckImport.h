#pragma once

#include "tools/docimport/PdfImport.h"
#include "tools/docimport/deck/DeckSplitter.h"
#include "tools/docimport/engine/EngineRun.h"

#include <QDeadlineTimer>

class EndRequest;
struct ComposedSlide;

/// A deck of slides. The engine makes two things of it, side by side: a PDF document, which is the
/// picture of each slide as it should be, and flat XML, which tells of animations. Of that, in
/// turn, it makes documents of the parts that animated slides are composed of.
class DeckImport : public PageSource
{
public:
    /// \param work a folder that is there, for all that is needed on the way
    DeckImport(const QString &input, const QString &suffix, const QString &work,
               const ImportOptions &options, const EndRequest &request);

    QString open() override;
    int pageCount() const override { return m_reference->pageCount(); }
    QString prepare(const QVector<int> &pages) override;
    QString makePage(int page, int number, SlideTools &tools, PagePayload &payload,
                     SlideReport &report) const override;
    QString note() const override { return m_note; }

private:
    QString startConversions();
    QString startConversion(std::unique_ptr<EngineRun> &run, const char *folder,
                            const QString &filter);
    QString takeReference();
    QString split(const QVector<int> &pages);
    QString convertParts(QString &lack);
    QString compose(int page, int number, const QImage &reference, SlideTools &tools,
                    ComposedSlide &composed) const;
    bool hasLayers(int page) const;

    const QString m_input;
    const QString m_name; // of its copy
    const QString m_work;
    const ImportOptions &m_options;
    const EndRequest &m_request;
    QDeadlineTimer m_deadline;
    QString m_engine;
    std::unique_ptr<EngineRun> m_toPdf;
    std::unique_ptr<EngineRun> m_toXml; // and then the parts to PDF
    std::unique_ptr<PdfImport> m_reference;
    DeckSplitter m_splitter;
    bool m_isSplit = false; // its slides are those of the document
    QString m_backgrounds;  // PDF documents; empty when there are no animations
    QString m_layers;
    QString m_note;
};
