#include "emfdeal/EmfDeal.h"

#include "emfdeal/Guarded.h"
#include "emfdeal/LogModule.h"

#include <KxBase/KxLog.h>

#include <QFile>
#include <QUuid>

Q_DECLARE_METATYPE(std::string) // here alone: a host may do so, too

namespace {

constexpr qint32 kStage = 3; // of all progress that is told

// Those that are there, from the index `from` on.
void removeAll(const QStringList &files, int from = 0)
{
    for (int i = from; i < files.size(); ++i)
        succeeds([&] { return QFile::remove(files.at(i)); });
}

// Emits the signal that a job has ended. What is thrown by it, as by a receiver in this thread, is
// no reason for the thread to end.
template <typename Emit>
void tellEnd(const std::string &taskId, const Emit &emitEnd)
{
    const bool isTold = succeeds([&] {
        emitEnd();
        return true;
    });
    if (isTold)
        return;
    succeeds([&] { // without the line, if need be
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                               "encode Emf, tell end failed! (task:%s)", taskId.c_str());
        return true;
    });
}

} // namespace

EmfDeal::EmfDeal(QObject *parent)
    : QNamedThread(parent)
{
    qRegisterMetaType<DocCovRslt::DOCRSLT_TYPE>("DocCovRslt::DOCRSLT_TYPE");
    qRegisterMetaType<DocCovRslt::PAGE_FORMAT_DEF>("DocCovRslt::PAGE_FORMAT_DEF");
    qRegisterMetaType<DocCovRslt::COVER_ERR_DEF>("DocCovRslt::COVER_ERR_DEF");
    qRegisterMetaType<CovProgressInfo>("CovProgressInfo");
    qRegisterMetaType<std::string>("std::string");
    setObjectName(QStringLiteral("EmfDeal"));
    moveToThread(this);
    connect(this, &EmfDeal::s_startEmfEncode, this, &EmfDeal::slot_startEmfEncode);
}

EmfDeal::~EmfDeal() = default;

void EmfDeal::startEmfEncode(const std::string &taskId, DocCovRslt::PAGE_FORMAT_DEF fmt,
                             const QStringList &files, const QString &outPathPrefix)
{
    setTerminateFlag(0);
    Q_EMIT s_startEmfEncode(taskId, fmt, files, outPathPrefix);
}

void EmfDeal::TerminateDeal()
{
    setTerminateFlag(1);
}

void EmfDeal::setTerminateFlag(int flag)
{
    const QMutexLocker locker(&dealMutex);
    terminateFlag = flag;
}

bool EmfDeal::isTerminated()
{
    const QMutexLocker locker(&dealMutex);
    return terminateFlag != 0;
}

void EmfDeal::slot_startEmfEncode(std::string taskId, DocCovRslt::PAGE_FORMAT_DEF fmt,
                                  QStringList files, QString outPathPrefix)
{
    QStringList outputs;
    int i = 0; // the first input that is not done
    bool isCancelled = false;
    const bool isDone = succeeds([&] {
        const QString outPath = outPathPrefix + QUuid::createUuid().toString() + QLatin1Char('_');
        for (; i < files.size(); ++i) {
            isCancelled = isTerminated();
            if (isCancelled)
                return false;
            outputs.append(outPath + QString::number(i));
            if (!encodeFile(files.at(i), outputs.at(i), fmt))
                return false;
            QFile::remove(files.at(i));
            Q_EMIT s_EmfEncodeProcess(taskId, {kStage, i + 1, files.size()});
        }
        return true;
    });
    if (isDone) {
        tellEnd(taskId, [&] { Q_EMIT s_EmfEncodeFinished(taskId, outputs); });
        return;
    }
    succeeds([&] { // without the line, if need be
        const QByteArray file = files.value(i).toUtf8();
        if (isCancelled)
            KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                                   "cancel encode Emf!(file:%s)", file.constData());
        else
            KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                                   "encode Emf failed! (format:%d, file:%s)", fmt,
                                   file.constData());
        return true;
    });
    removeAll(files, i);
    removeAll(outputs);
    tellEnd(taskId, [&] {
        Q_EMIT s_EmfEncodeFailed(taskId, isCancelled ? DocCovRslt::COVER_ERR_CANCELLED
                                                     : DocCovRslt::COVER_ERR_FILE_FAILED);
    });
}

bool EmfDeal::encodeFile(const QString &src, const QString &dst, DocCovRslt::PAGE_FORMAT_DEF fmt)
{
    return fmt == DocCovRslt::PAGE_FORMAT_EMF ? encodeEmf_inner(src, dst)
                                              : encodeOther_inner(src, dst, fmt);
}
