#pragma once

#include "Emulator.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QStringList>

/// Runs this test program again, with other arguments and with variables ("NAME=value") of the
/// environment changed. Returns what it prints, or what went wrong.
inline QByteArray runSelf(const QStringList &arguments, const QStringList &variables = {})
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &variable : variables) {
        const int equals = variable.indexOf(QLatin1Char('='));
        environment.insert(variable.left(equals), variable.mid(equals + 1));
    }
    ForkedProcess process;
    process.setProcessEnvironment(environment);
    QStringList command = commandOf(QCoreApplication::applicationFilePath()) + arguments;
    process.start(command.takeFirst(), command);
    if (!process.waitForFinished(300000))
        return "failed: " + process.errorString().toUtf8();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return "failed: " + QByteArray::number(process.exitCode()) + '\n' +
               process.readAllStandardError();
    return process.readAllStandardOutput();
}
