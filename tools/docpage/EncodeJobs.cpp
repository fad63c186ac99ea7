#include "tools/docpage/EncodeJobs.h"

#include "emfdeal/EmfDeal.h"
#include "tools/docpage/EndRequest.h"
#include "tools/docpage/FreeSpace.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PageFile.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QSocketNotifier>

#include <atomic>
#include <map>

namespace {

struct Job
{
    DocCovRslt::PAGE_FORMAT_DEF format;
    QVector<int> pictures; // their places among all
    QStringList files;
    int finished = 0;
};

using Jobs = std::map<std::string, Job>; // by the names that they are given

Jobs jobsOf(const QVector<EncodeInput> &pictures)
{
    Jobs jobs;
    for (int i = 0; i < pictures.size(); ++i) {
        const DocCovRslt::PAGE_FORMAT_DEF format = pictures.at(i).format;
        Job &job = jobs[std::to_string(format)];
        job.format = format;
        job.pictures.append(i);
        job.files.append(pictures.at(i).file);
    }
    return jobs;
}

// Why a picture failed. The library knows the step, but not the system's reason.
QString faultOf(const EncodeInput &picture, qint64 freeBytes)
{
    const QString line = LibraryLog::takeFirstLine();
    if (!line.startsWith(QStringLiteral("CreateEmfDealRsltFile")) &&
        !line.startsWith(QStringLiteral("WrtEmfDealRsltFile")))
        return QStringLiteral("its copy cannot be read, or out of memory");
    return freeBytes < picture.size + PageResultHeader::kSize
               ? QStringLiteral("its page cannot be written: no space left")
               : QStringLiteral("its page cannot be written");
}

/// The jobs at work.
class Run
{
public:
    Run(const QVector<EncodeInput> &pictures, const QString &prefix,
        const std::function<void(const EncodeInput &)> &onPage)
        : m_pictures(pictures)
        , m_onPage(onPage)
        , m_jobs(jobsOf(pictures))
        , m_left(static_cast<int>(m_jobs.size()))
        , m_folder(QFileInfo(prefix).path())
        , m_prefix(prefix)
        , m_freeBytes(FreeSpace(m_folder).bytes)
    {
        for (int i = 0; i < pictures.size(); ++i)
            m_result.pages.append(QString());
        QObject::connect(&m_encoder, &EmfDeal::s_EmfEncodeProcess, &m_loop,
                         [this](const std::string &id, const CovProgressInfo &progress) {
                             Job &job = m_jobs.at(id);
                             m_onPage(m_pictures.at(job.pictures.at(job.finished)));
                             job.finished = progress.finished;
                         });
        // Of before a failure, which is told when all files are deleted.
        QObject::connect(
            &m_encoder, &EmfDeal::s_EmfEncodeProcess, &m_encoder,
            [this] { m_freeBytes = FreeSpace(m_folder).bytes; }, Qt::DirectConnection);
        QObject::connect(&m_encoder, &EmfDeal::s_EmfEncodeFinished, &m_loop,
                         [this](const std::string &id, const QStringList &files) {
                             takePages(m_jobs.at(id), files);
                             end();
                         });
        QObject::connect(&m_encoder, &EmfDeal::s_EmfEncodeFailed, &m_loop,
                         [this](const std::string &id, DocCovRslt::COVER_ERR_DEF err) {
                             const Job &job = m_jobs.at(id);
                             if (err == DocCovRslt::COVER_ERR_FILE_FAILED && m_result.failed < 0)
                                 m_result.failed = job.pictures.at(job.finished);
                             m_encoder.TerminateDeal(); // the others are of no use
                             end();
                         });
        m_encoder.start();
    }
    ~Run()
    {
        m_encoder.TerminateDeal();
        m_encoder.quit();
        m_encoder.wait();
    }
    Q_DISABLE_COPY_MOVE(Run)

    EncodeResult finish(const EndRequest &request)
    {
        if (!m_encoder.isRunning()) {
            m_result.fault = QStringLiteral("the encoder's thread cannot be started");
            return m_result;
        }
        QSocketNotifier notifier(request.descriptor(), QSocketNotifier::Read);
        QObject::connect(&notifier, &QSocketNotifier::activated, &m_loop, [&] {
            notifier.setEnabled(false);
            m_encoder.TerminateDeal();
        });
        for (const auto &[id, job] : m_jobs)
            m_encoder.startEmfEncode(id, job.format, job.files, m_prefix);
        m_loop.exec();
        if (m_result.failed >= 0)
            m_result.fault = faultOf(m_pictures.at(m_result.failed), m_freeBytes);
        return m_result;
    }

private:
    // The encoder does not notice when a read ends early.
    void takePages(const Job &job, const QStringList &files)
    {
        for (int i = 0; i < files.size(); ++i) {
            const int picture = job.pictures.at(i);
            m_result.pages[picture] = files.at(i);
            const qint64 size = m_pictures.at(picture).size + PageResultHeader::kSize;
            if (m_result.failed < 0 && QFileInfo(files.at(i)).size() != size)
                m_result.failed = picture;
        }
    }

    void end()
    {
        if (--m_left == 0)
            m_loop.quit();
    }

    const QVector<EncodeInput> &m_pictures;
    const std::function<void(const EncodeInput &)> &m_onPage;
    Jobs m_jobs;
    int m_left;             // jobs that have not ended
    const QString m_folder; // of the pages
    const QString m_prefix;
    std::atomic<qint64> m_freeBytes; // there, when the last page was done
    EncodeResult m_result;
    EmfDeal m_encoder;
    QEventLoop m_loop;
};

} // namespace

EncodeResult encodePictures(const QVector<EncodeInput> &pictures, const QString &prefix,
                            const EndRequest &end,
                            const std::function<void(const EncodeInput &)> &onPage)
{
    LibraryLog::takeFirstLine(); // of before
    return Run(pictures, prefix, onPage).finish(end);
}
