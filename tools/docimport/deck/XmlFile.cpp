#include "tools/docimport/deck/XmlFile.h"

#include "tools/docimport/deck/BinaryData.h"

#include <QSet>
#include <QXmlStreamReader>

namespace {

// Whoever walks the tree calls itself as often.
constexpr size_t kDeepest = 250;

/// Builds the tree of what a reader finds.
class TreeBuilder
{
public:
    explicit TreeBuilder(QXmlStreamReader &reader)
        : m_reader(reader)
    {
    }

    XmlNode build();

private:
    void take(QXmlStreamReader::TokenType token);
    void beginElement();
    void addText();
    QString shared(const QStringRef &text);

    QXmlStreamReader &m_reader;
    XmlNode m_root;
    // A child is complete before its parent has another, so that none of these moves.
    std::vector<XmlNode *> m_open{&m_root};
    QSet<QString> m_known; // names and values are few, and met often
};

XmlNode TreeBuilder::build()
{
    while (!m_reader.atEnd())
        take(m_reader.readNext());
    if (m_reader.hasError())
        throw XmlFault{
            QStringLiteral("line %1: %2").arg(m_reader.lineNumber()).arg(m_reader.errorString())};
    return std::move(m_root.children.front());
}

void TreeBuilder::take(QXmlStreamReader::TokenType token)
{
    switch (token) {
    case QXmlStreamReader::DTD:
        m_reader.raiseError(QStringLiteral("a document type is declared"));
        break;
    case QXmlStreamReader::EntityReference:
        m_reader.raiseError(QStringLiteral("an unknown entity"));
        break;
    case QXmlStreamReader::StartElement:
        beginElement();
        break;
    case QXmlStreamReader::Characters:
        addText();
        break;
    case QXmlStreamReader::EndElement:
        m_open.pop_back();
        break;
    default:
        break;
    }
}

void TreeBuilder::beginElement()
{
    if (m_open.size() > kDeepest) {
        m_reader.raiseError(QStringLiteral("elements are nested too deep"));
        return;
    }
    XmlNode &element = m_open.back()->children.emplace_back();
    element.name = shared(m_reader.qualifiedName());
    const QXmlStreamAttributes attributes = m_reader.attributes();
    element.attributes.reserve(static_cast<size_t>(attributes.size()));
    for (const QXmlStreamAttribute &attribute : attributes)
        element.attributes.push_back(
            {shared(attribute.qualifiedName()), shared(attribute.value())});
    m_open.push_back(&element);
}

void TreeBuilder::addText()
{
    std::vector<XmlNode> &siblings = m_open.back()->children;
    if (siblings.empty() || !siblings.back().name.isEmpty())
        siblings.emplace_back();
    QString &text = siblings.back().text;
    text = text.isEmpty() ? shared(m_reader.text()) : text + m_reader.text();
}

QString TreeBuilder::shared(const QStringRef &text)
{
    return *m_known.insert(text.toString());
}

} // namespace

XmlNode readXml(const QByteArray &text)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    return TreeBuilder(reader).build();
}

XmlWriter::XmlWriter(QIODevice &output, BinaryData &pictures)
    : m_output(output)
    , m_pictures(pictures)
    , m_writer(&output)
{
    m_writer.writeStartDocument();
}

void XmlWriter::write(const XmlNode &node)
{
    if (node.name.isEmpty()) {
        m_writer.writeCharacters(node.text);
        return;
    }
    begin(node);
    if (node.is("office:binary-data")) {
        m_writer.writeCharacters({}); // ends the tag
        m_hasFault = !m_pictures.write(node.allText(), m_output) || m_hasFault;
    } else {
        for (const XmlNode &child : node.children)
            write(child);
    }
    end();
}

void XmlWriter::begin(const XmlNode &node)
{
    m_writer.writeStartElement(node.name);
    for (const XmlAttribute &attribute : node.attributes)
        m_writer.writeAttribute(attribute.name, attribute.value);
}

void XmlWriter::end()
{
    m_writer.writeEndElement();
}

QString XmlWriter::finish()
{
    m_writer.writeEndDocument();
    if (m_hasFault)
        return QStringLiteral("a picture of the deck is lost");
    return m_writer.hasError() ? m_output.errorString() : QString();
}
