#pragma once

#include <QFile>

#include <vector>

/// The pictures of a flat XML file, which are text in it: laid aside in a file, so that memory is
/// bounded by the rest.
class BinaryData
{
public:
    /// \param path the file that holds them, which is made anew
    explicit BinaryData(const QString &path);

    /// Reads all of `input`.
    /// \return what it is without its pictures: each element office:binary-data has the number of
    /// its
    ///         picture in place of it
    /// \throws XmlFault when that is more than memory should hold, or a file fails
    QByteArray takeFrom(QIODevice &input);

    /// Writes the picture as it was.
    /// \param number the text of its element
    /// \return whether there is such a picture, and `output` took it
    bool write(const QString &number, QIODevice &output);

private:
    struct Place
    {
        qint64 begin = 0;
        qint64 size = 0;
    };
    void add(const QByteArray &picture);

    QFile m_file;
    std::vector<Place> m_places;
};
