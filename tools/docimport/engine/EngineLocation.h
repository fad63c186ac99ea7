#pragma once

#include <QStringList>

/// The folders in which LibreOffice usually is, the first choice first.
QStringList usualEngineFolders();

/// Looks for LibreOffice's program proper: what is usually started is a script around it, which
/// does not hand on the end that is wished. \param given a file to take instead of looking in
/// `folders`; empty when there is none \return what is wrong; empty when `engine` is the program
QString findEngine(const QString &given, const QStringList &folders, QString &engine);
