#include "common/QNamedThread.h"

#include <pthread.h>

QNamedThread::QNamedThread(QObject *parent)
    : QThread(parent)
{
    setObjectName(QStringLiteral("QNamedThread"));
}

QNamedThread::~QNamedThread() = default;

int QNamedThread::SetThreadName(const char *name)
{
    return pthread_setname_np(pthread_self(), name);
}

void QNamedThread::updateThreadName()
{
    QString name = objectName();
    if (name.isEmpty())
        name = QString::fromLatin1(metaObject()->className());
    SetThreadName(name.toLocal8Bit().constData());
}

void QNamedThread::run()
{
    updateThreadName();
    QThread::run();
}
