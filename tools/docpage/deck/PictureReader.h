#pragma once

#include "tools/docpage/deck/JsonNode.h"

#include <QByteArray>
#include <QDir>
#include <QHash>

/// The pictures that a deck's JSON names or holds.
class PictureReader
{
public:
    /// File names are relative to `folder`.
    explicit PictureReader(const QDir &folder)
        : m_folder(folder)
    {
    }

    /// The bytes of a picture, null when it is none. Whether they are a picture is not judged.
    QByteArray read(const JsonNode &picture);

    /// The files that were read.
    QStringList files() const { return m_files.keys(); }

private:
    QByteArray readFile(const JsonNode &picture);

    QDir m_folder;
    QHash<QString, QByteArray> m_files; // a file used twice is read, and held, once
};
