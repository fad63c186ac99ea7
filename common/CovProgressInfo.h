#pragma once

#include <QMetaType>

/// How far an encoding job is.
struct CovProgressInfo
{
    qint32 stage;    ///< what is being done; 3 in all that the encoder sends
    qint32 finished; ///< files done
    qint32 total;    ///< files of the job
};

Q_DECLARE_METATYPE(CovProgressInfo)
