#include "tools/docimport/engine/EngineRun.h"

#include "tools/docpage/EndRequest.h"
#include "tools/docpage/OutputFile.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QTimer>

#include <cstring>

namespace {

constexpr int kStartAgain = 81; // the exit status that asks for it, as after setting up a profile

// All that belongs to the engine: beside the folder of its programs lie those of its other files.
QString installation(const QString &engine)
{
    const QFileInfo programs(QFileInfo(engine).path());
    return programs.fileName() == QLatin1String("program") ? programs.path() : programs.filePath();
}

} // namespace

EngineRun::EngineRun(const QString &engine, const QString &folder)
    : m_engine(engine)
    , m_folder(folder)
    , m_profile(folder + QStringLiteral("/profile"))
    , m_process(m_confinement)
{
    m_confinement.allowReading(installation(engine));
    m_confinement.allowReading(
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
        QStringLiteral("/fonts"));
    m_confinement.allowReading(QFileInfo(folder).path());
    m_confinement.allowAll(folder);
    m_confinement.allowSockets(QStringLiteral("/tmp")); // wherever else temporary files are
}

EngineRun::~EngineRun()
{
    m_process.end();
    m_profile.removeSocket();
}

QString EngineRun::start(const QString &filter, const QStringList &names)
{
    const QString fault = m_profile.create(m_engine);
    if (!fault.isEmpty())
        return fault;
    // Relative to the folder that it runs in: what that is called does not matter.
    m_arguments = m_profile.arguments();
    m_arguments += {QStringLiteral("--headless"),   QStringLiteral("--norestore"),
                    QStringLiteral("--convert-to"), filter,
                    QStringLiteral("--outdir"),     QStringLiteral("out")};
    for (const QString &name : names)
        m_arguments += QStringLiteral("../") + name;
    begin();
    return {};
}

void EngineRun::begin()
{
    m_process.begin(m_engine, m_arguments, m_folder, m_folder + QStringLiteral("/engine.log"));
}

void EngineRun::wait(const QDeadlineTimer &deadline, const EndRequest &request)
{
    QEventLoop loop;
    const auto quit = [&loop] { loop.quit(); };
    QObject::connect(&m_process, &QProcess::stateChanged, &loop,
                     [&loop](QProcess::ProcessState state) {
                         if (state == QProcess::NotRunning)
                             loop.quit();
                     });
    QSocketNotifier notifier(request.descriptor(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, quit);
    QTimer::singleShot(static_cast<int>(deadline.remainingTime()), &loop, quit);
    if (m_process.state() != QProcess::NotRunning)
        loop.exec();
}

QString EngineRun::finish(const QDeadlineTimer &deadline, const EndRequest &request)
{
    wait(deadline, request);
    if (isEndedBy(kStartAgain) && !request.isMade()) {
        begin();
        wait(deadline, request);
    }
    const bool isTimeUp = m_process.state() != QProcess::NotRunning;
    m_process.end();
    m_profile.removeSocket();
    if (request.isMade())
        return {};
    return isTimeUp ? QStringLiteral("LibreOffice takes too long; --timeout allows it more")
                    : faultOfEnd();
}

bool EngineRun::isEndedBy(int status) const
{
    return m_process.state() == QProcess::NotRunning &&
           m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == status;
}

QString EngineRun::faultOfEnd() const
{
    if (m_process.error() == QProcess::FailedToStart)
        return QStringLiteral("LibreOffice cannot be started: ") + m_process.errorString();
    if (m_process.exitStatus() == QProcess::CrashExit)
        return QStringLiteral("LibreOffice has crashed: ") +
               QString::fromLocal8Bit(::strsignal(m_process.exitCode()));
    if (m_process.exitCode() != 0)
        return QStringLiteral("LibreOffice has failed with exit status %1")
            .arg(m_process.exitCode());
    return {};
}

QString EngineRun::result(const QString &name, const QString &suffix) const
{
    return QStringLiteral("%1/out/%2.%3").arg(m_folder, QFileInfo(name).completeBaseName(), suffix);
}

QString EngineFilter::flatXml()
{
    return QStringLiteral("fodp");
}

// Hidden slides count where slides are numbered.
QString EngineFilter::pdf()
{
    return QStringLiteral("pdf:impress_pdf_Export:{"
                          "\"UseLosslessCompression\":{\"type\":\"boolean\",\"value\":\"true\"},"
                          "\"ReduceImageResolution\":{\"type\":\"boolean\",\"value\":\"false\"},"
                          "\"ExportHiddenSlides\":{\"type\":\"boolean\",\"value\":\"true\"}}");
}
