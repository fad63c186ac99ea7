#pragma once

#include "tools/docpage/deck/DeckFields.h"
#include "tools/docpage/deck/JsonNode.h"

// The fields of the model as they are in JSON. What is no such field throws JsonFault.

void readField(const JsonNode &node, quint16 &number);
void readField(const JsonNode &node, qint16 &number);
void readField(const JsonNode &node, qint8 &flag);
void readField(const JsonNode &node, float &number);
void readField(const JsonNode &node, Trigger<qint8> trigger);

/// Sets the fields that `object` has, when used with the functions of DeckFields.h; fields that it
/// lacks keep their values.
inline auto readingFields(const JsonNode &object)
{
    return [&object](const char *key, auto &&field, Presence presence) {
        if (presence == Presence::Required)
            readField(object.require(key), field);
        else if (const std::optional<JsonNode> node = object.find(key))
            readField(*node, field);
    };
}

/// Appends the keys to `keys`, when used with the functions of DeckFields.h.
inline auto collectingKeys(QStringList &keys)
{
    return [&keys](const char *key, auto &&, Presence) { keys.append(QLatin1String(key)); };
}
