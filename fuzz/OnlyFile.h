#pragma once

#include <QByteArray>
#include <QString>

/// While one lives, this file is the only one that the process can open by its name (and the one
/// of nothing, which output may be sent to): an input may name any file of the machine.
class OnlyFile
{
public:
    explicit OnlyFile(const QString &path);
    ~OnlyFile();
    Q_DISABLE_COPY_MOVE(OnlyFile)

private:
    QByteArray name;
};
