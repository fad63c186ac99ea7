#pragma once

#include "tools/docimport/engine/EngineProcess.h"
#include "tools/docimport/engine/EngineProfile.h"

class EndRequest;
class QDeadlineTimer;

/// Conversions by the engine, one after another, in a folder with a profile of its own: several
/// objects may be at work side by side.
class EngineRun
{
public:
    /// \param folder is there, and this object's alone; the files to convert are in the one above
    EngineRun(const QString &engine, const QString &folder);
    ~EngineRun();
    Q_DISABLE_COPY_MOVE(EngineRun)

    /// Starts to convert files of the folder above, as `filter` says.
    /// \return what went wrong; empty when it is under way
    QString start(const QString &filter, const QStringList &names);

    /// Waits until all is done, the time is up, or an end is requested; then nothing is under way.
    /// \return what went wrong; empty when all is done, or an end was requested
    QString finish(const QDeadlineTimer &deadline, const EndRequest &request);

    /// The file that became of the one of that name. Whether it is there tells whether it could be
    /// read: the engine's exit status does not.
    QString result(const QString &name, const QString &suffix) const;

private:
    void begin();
    void wait(const QDeadlineTimer &deadline, const EndRequest &request);
    bool isEndedBy(int status) const;
    QString faultOfEnd() const;

    const QString m_engine;
    const QString m_folder;
    Confinement m_confinement;
    EngineProfile m_profile;
    EngineProcess m_process;
    QStringList m_arguments;
};

namespace EngineFilter {

/// A deck as flat XML.
QString flatXml();

/// As PDF, with the slides that are hidden, pictures as they are.
QString pdf();

} // namespace EngineFilter
