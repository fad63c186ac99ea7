#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>

#include <optional>
#include <vector>

/// What is wrong in a JSON text: thrown by JsonNode.
struct JsonFault
{
    QString text; ///< where it is and what is wrong, as "slides[0].shapes: must be an array"
};

/// The beginning of a text, so that a fault has a line's length whatever it quotes.
QString shortened(const QString &text, int longest = 40);

/// A value of a JSON text that is taken apart, and where it is. What is not as it has to be throws
/// JsonFault.
class JsonNode
{
public:
    /// The object or array that `text` is.
    static JsonNode parse(const QByteArray &text);

    [[noreturn]] void fail(const QString &cause) const;

    /// Fails with "must be ..., not ...".
    [[noreturn]] void mustBe(const QString &what) const;

    const QJsonValue &value() const { return m_value; }

    /// Fails when this is no object, or one with other keys than `keys`.
    void expectKeys(const QStringList &keys) const;

    /// The value of a key.
    bool has(const char *key) const { return m_value.toObject().contains(QLatin1String(key)); }
    std::optional<JsonNode> find(const char *key) const;
    JsonNode require(const char *key) const;

    /// The node that `key` has or would have, for a fault.
    JsonNode at(const char *key) const { return at(QString::fromUtf8(key)); }

    /// The elements; fails when this is no array.
    std::vector<JsonNode> elements() const;

    /// A whole number; fails when this is none. `what` is what else it may be, as "true, false or
    /// ".
    int integer(int least, int most, const QString &what = {}) const;

private:
    JsonNode at(const QString &key) const;
    JsonNode(const QJsonValue &value, const QString &path)
        : m_value(value)
        , m_path(path)
    {
    }
    QString shown() const;

    QJsonValue m_value;
    QString m_path;
};
