#include "tools/docpage/deck/JsonNode.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace {

QString syntaxFault(const QByteArray &text, const QJsonParseError &error)
{
    const QByteArray before = text.left(error.offset);
    const int lineStart = before.lastIndexOf('\n') + 1;
    return QStringLiteral("line %1, column %2: %3")
        .arg(before.count('\n') + 1)
        .arg(QString::fromUtf8(before.mid(lineStart)).size() + 1)
        .arg(error.errorString());
}

} // namespace

QString shortened(const QString &text, int longest)
{
    if (text.size() <= longest)
        return text;
    const bool isBetweenTwo = !text.at(longest - 1).isHighSurrogate();
    return text.left(isBetweenTwo ? longest : longest - 1) + QStringLiteral("...");
}

JsonNode JsonNode::parse(const QByteArray &text)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        throw JsonFault{syntaxFault(text, error)};
    return {document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()), {}};
}

void JsonNode::fail(const QString &cause) const
{
    throw JsonFault{m_path.isEmpty() ? cause : m_path + QStringLiteral(": ") + cause};
}

void JsonNode::mustBe(const QString &what) const
{
    fail(QStringLiteral("must be ") + what + QStringLiteral(", not ") + shown());
}

QString JsonNode::shown() const
{
    if (m_value.isObject())
        return QStringLiteral("an object");
    if (m_value.isArray())
        return QStringLiteral("an array");
    const QString text =
        QString::fromUtf8(QJsonDocument(QJsonArray{m_value}).toJson(QJsonDocument::Compact));
    return shortened(text.mid(1, text.size() - 2));
}

void JsonNode::expectKeys(const QStringList &keys) const
{
    if (!m_value.isObject())
        mustBe(QStringLiteral("an object"));
    const QStringList found = m_value.toObject().keys();
    for (const QString &key : found) {
        if (!keys.contains(key))
            at(key).fail(QStringLiteral("unknown key; the keys here are ") +
                         keys.join(QStringLiteral(", ")));
    }
}

JsonNode JsonNode::at(const QString &key) const
{
    const QString name = key.isEmpty() ? QStringLiteral("\"\"") : shortened(key);
    return {m_value.toObject().value(key),
            m_path.isEmpty() ? name : m_path + QLatin1Char('.') + name};
}

std::optional<JsonNode> JsonNode::find(const char *key) const
{
    return has(key) ? std::optional<JsonNode>(at(key)) : std::nullopt;
}

JsonNode JsonNode::require(const char *key) const
{
    const JsonNode node = at(key);
    if (!has(key))
        node.fail(QStringLiteral("missing"));
    return node;
}

std::vector<JsonNode> JsonNode::elements() const
{
    if (!m_value.isArray())
        mustBe(QStringLiteral("an array"));
    const QJsonArray array = m_value.toArray();
    std::vector<JsonNode> nodes;
    nodes.reserve(static_cast<size_t>(array.size()));
    for (int i = 0; i < array.size(); ++i)
        nodes.push_back(JsonNode(array.at(i), m_path + QStringLiteral("[%1]").arg(i)));
    return nodes;
}

int JsonNode::integer(int least, int most, const QString &what) const
{
    const double number = m_value.toDouble(least - 0.5);
    if (number < least || number > most || std::floor(number) != number)
        mustBe(what + QStringLiteral("a whole number from %1 to %2").arg(least).arg(most));
    return static_cast<int>(number);
}
