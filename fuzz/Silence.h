#pragma once

#include <KxBase/KxLog.h>

#include <QtGlobal>

/// Keeps off standard error what the library and Qt say of bad data: it would be all there is.
inline void silenceLogs()
{
    KxBase::KxSetLogSink([](void *, Kxlogger::E_LOG_LEVEL_DEF, const char *, const char *) {},
                         nullptr);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}
