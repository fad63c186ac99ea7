#pragma once

#include "tools/docimport/deck/XmlNode.h"

#include <QIODevice>
#include <QXmlStreamWriter>

class BinaryData;

/// What is wrong with an XML file: thrown where one is read or written.
struct XmlFault
{
    QString text;
};

/// The element that the XML text consists of. Comments and processing instructions are left out;
/// white space is kept: between two words it is shown.
/// \throws XmlFault when it is no XML, is nested too deep to be a document, or declares a type of
/// its
///         own, which could make much of little
XmlNode readXml(const QByteArray &text);

/// Writes an XML file element by element.
class XmlWriter
{
public:
    /// \param pictures is where the content of elements office:binary-data is had from
    XmlWriter(QIODevice &output, BinaryData &pictures);

    /// Writes all of `node`.
    void write(const XmlNode &node);

    /// Begins `node`, without its children.
    void begin(const XmlNode &node);
    void end();

    /// Ends the file.
    /// \return what went wrong; empty when all is written
    QString finish();

private:
    QIODevice &m_output;
    BinaryData &m_pictures;
    QXmlStreamWriter m_writer;
    bool m_hasFault = false;
};
