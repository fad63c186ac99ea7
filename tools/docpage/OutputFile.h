#pragma once

#include <QByteArray>
#include <QPair>
#include <QSet>
#include <QString>

#include <initializer_list>

/// What the outputs of a call may replace.
class OutputRules
{
public:
    /// Files that exist may be replaced with `force` only, and `inputs` not even then.
    OutputRules(bool force, const QStringList &inputs);

    bool force() const { return m_force; }

    /// Why `path` must not be written; empty when it may.
    QString refusal(const QString &path) const;

private:
    bool m_force;
    QSet<QString> m_inputs; // canonical paths
    // The same by device and inode: a file may have other paths.
    QSet<QPair<quint64, quint64>> m_files;
};

/// Creates a folder, and those above it, unless it is there.
/// \return what went wrong; empty when it is there
QString createFolder(const QString &folder);

/// What is in the making inside `folder` is named: a hidden file, or folder, of this program.
QString temporaryName(const QString &folder);

/// Saves a file of the given parts. It appears under its name complete or not at all, and nothing
/// else is left behind. A symbolic link is replaced itself, not what it points to.
/// \return what went wrong; empty when the file is there
QString saveFile(const QString &path, const OutputRules &rules,
                 std::initializer_list<QByteArray> parts);
