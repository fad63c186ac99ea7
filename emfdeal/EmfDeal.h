#pragma once

#include "common/CovProgressInfo.h"
#include "common/DocCovRslt.h"
#include "common/DocDisplayGlobal.h"
#include "common/QNamedThread.h"

#include <QByteArray>
#include <QMutex>
#include <QString>
#include <QStringList>

#include <string>

/// Page result files (one page of a document each, a 14-byte header and the payload: a picture, or
/// the animation data of a slide) and the encoder, which makes such files of the pages of a print
/// job on a thread of its own. The format is described in docs/page-result-file.md, the rest in
/// docs/encoding.md.
///
/// The object is the encoder's thread: construct it without a parent, start() it, and at the end
/// TerminateDeal(), quit() and wait() before deleting it. Reading and writing page result files
/// need no running thread and keep no state: they may be called from any thread, at the same time.
///
/// No operation throws, but that std::bad_alloc may leave those that are called directly when
/// memory runs out; a job fails then. A slot that is connected directly to a signal must not throw,
/// either. Only a job removes files. Each failure is a result, and for page result files and jobs a
/// log line of level 2, module "VPrnt", with the file name in UTF-8; conversions that are called
/// directly log nothing of their own. A pipe as a file is waited for, like any read of it.
class DOCDISPLAY_EXPORT EmfDeal : public QNamedThread
{
    Q_OBJECT

public:
    /// The result of converting one page.
    struct PageCovrRslt
    {
        QByteArray rsltDat;                                                  ///< the payload bytes
        DocCovRslt::PAGE_FORMAT_DEF picFormat = DocCovRslt::PAGE_FORMAT_EMF; ///< what they are
    };

    /// An encoder that is not started; its thread will be named "EmfDeal". Registers all types of
    /// its signals with Qt, for queued delivery. With a `parent` it could not move to its own
    /// thread.
    explicit EmfDeal(QObject *parent = nullptr);

    /// The thread must have ended.
    ~EmfDeal() override;

    /// Hands over a job: to make a page result file of each of `files`, in order. Returns at once;
    /// jobs are done one after the other. Any thread but the encoder's own, where the job would run
    /// within the call. A TerminateDeal() of before is forgotten, also for jobs that still wait.
    ///
    /// The job consumes its inputs: each is deleted when it is done, and when the job fails or is
    /// cancelled all of them are, with all outputs that were made.
    /// \param taskId the caller's name for the job, which all of its signals carry
    /// \param fmt PAGE_FORMAT_EMF: the inputs are EMF pages, to be rendered; any other: they hold
    ///        data of this format already and are wrapped as they are
    /// \param outPathPrefix what the outputs' names begin with, usually a folder with '/' at its
    ///        end; an identifier of the job in braces, '_' and the index from 0 follow
    void startEmfEncode(const std::string &taskId, DocCovRslt::PAGE_FORMAT_DEF fmt,
                        const QStringList &files, const QString &outPathPrefix);

    /// Cancels the running job before its next file, and all jobs handed over so far. Any thread.
    void TerminateDeal();

    /// The 14 bytes that precede a payload of `datSize` bytes. Both values are stored as given.
    static QByteArray getHeader(int datSize, DocCovRslt::PAGE_FORMAT_DEF picFormat);

    /// Writes `rslt` as the page result file `path`, which is created or emptied first.
    /// \return false when the file cannot be opened or takes fewer bytes than given. The partly
    ///         written file stays.
    bool WriteEmfDealRsltFile(const QString &path, EmfDeal::PageCovrRslt &rslt);

    /// Reads the page result file `path`. Its payload replaces the content of `data`; whatever
    /// follows it in the file is ignored.
    /// \return the format as the file states it, not judged, or 5 (no format) on failure. `data`
    ///         is untouched when the file cannot be opened or its header is refused, and holds the
    ///         bytes that were there when they are fewer than the header says.
    static int getPicDataFromFile(const QString &path, QByteArray &data);

    /// Reads the page result file `path` as getPicDataFromFile() does, `data` included, and accepts
    /// it only with a format that can be shown and a payload that is not empty.
    /// \return 2 (JPG), 3 (slide animation data), 4 (PNG), or 5 when refused. A negative format is
    ///         returned as the file states it.
    static int decodeEmf(const QString &path, QByteArray &data);

    /// Whether `data` is an EMF page that this platform can render. On Linux, which has no metafile
    /// renderer, always false.
    bool checkEmfFile(const QByteArray &data);

    /// Makes the page result file `dst` of the EMF page `src`. On Linux always false.
    bool encodeEmf_inner(const QString &src, const QString &dst);

    /// Makes the page result file `dst` of the file `src`, which holds data of the format `fmt` and
    /// is not examined. PAGE_FORMAT_NONE is refused, with nothing read or written.
    bool encodeOther_inner(const QString &src, const QString &dst, DocCovRslt::PAGE_FORMAT_DEF fmt);

    /// Renders an EMF page as PNG, or as JPG when the PNG has more than 256000 bytes and the JPG
    /// has fewer than the PNG.
    /// \return false, with `rslt` untouched, when the platform cannot render it.
    bool CovrEmf(QByteArray &emf, EmfDeal::PageCovrRslt &rslt);

    /// Renders an EMF page as a picture of `format`, "PNG" or "JPG". On Linux always false.
    static bool CovEmf2Pic(const QByteArray &emf, QByteArray &out, const QString &format,
                           int quality, int resolution);

    /// The same from file to file; `dst` is replaced.
    static bool CovEmf2Pic(const QString &src, const QString &dst, const QString &format,
                           int quality, int resolution);

Q_SIGNALS:
    /// A file of the job is done, and deleted. On the encoder's thread, as all signals.
    void s_EmfEncodeProcess(const std::string &taskId, const CovProgressInfo &progress);

    /// The job has succeeded; `files` are the outputs, in the order of the inputs.
    void s_EmfEncodeFinished(const std::string &taskId, const QStringList &files);

    /// The job was cancelled or failed. None of its inputs and outputs is left.
    void s_EmfEncodeFailed(const std::string &taskId, DocCovRslt::COVER_ERR_DEF err);

    /// Carries a job to the encoder's thread; not for hosts.
    void s_startEmfEncode(std::string taskId, DocCovRslt::PAGE_FORMAT_DEF fmt, QStringList files,
                          QString outPathPrefix);

private Q_SLOTS:
    void slot_startEmfEncode(std::string taskId, DocCovRslt::PAGE_FORMAT_DEF fmt, QStringList files,
                             QString outPathPrefix);

private:
    void setTerminateFlag(int flag);
    bool isTerminated();
    bool encodeFile(const QString &src, const QString &dst, DocCovRslt::PAGE_FORMAT_DEF fmt);

    QMutex dealMutex;      // guards terminateFlag
    int terminateFlag = 0; // 1: jobs are to end; the only datum that threads share
};

/// The complete content of a page result file that holds the JPG picture `data`. The bytes are not
/// examined and nothing is written to disk. Any thread.
DOCDISPLAY_EXPORT QByteArray DocDisplayAddHeader(const QByteArray &data);
