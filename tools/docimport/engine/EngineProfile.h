#pragma once

#include <QStringList>

/// A profile for one process of the engine at a time, in which nothing is run or fetched that a
/// document asks for, and nothing is remembered.
class EngineProfile
{
public:
    explicit EngineProfile(const QString &folder);

    /// Writes it, as that of an engine that has been started before, or the first start would be in
    /// vain.
    /// \return what went wrong; empty when it is there
    QString create(const QString &engine);

    /// What tells the engine to use it.
    QStringList arguments() const;

    /// Removes the socket by which other starts would find an engine that uses it: an engine that
    /// is killed leaves it behind.
    void removeSocket() const;

private:
    const QString m_folder;
    QString m_services; // an argument
};
