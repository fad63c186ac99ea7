#pragma once

#include "tools/docpage/deck/DeckFields.h"

#include <QString>

// The fields of the model as they are printed, which is their JSON.

QString fieldText(quint16 number);
QString fieldText(qint16 number);
QString fieldText(qint8 flag);
QString fieldText(float number);
QString fieldText(Trigger<const qint8> trigger);

/// Whether a field that is only carried has nothing to tell.
bool isZero(float number);
template <typename Integer>
bool isZero(Integer number)
{
    return number == 0;
}

/// Calls `print(key, text)` for the fields of `object` that are to be printed, when used with the
/// functions of DeckFields.h.
template <typename Print>
auto printingFields(const Print &print)
{
    return [&print](const char *key, const auto &field, Presence presence) {
        if constexpr (std::is_arithmetic_v<std::decay_t<decltype(field)>>) {
            if (presence == Presence::Carried && isZero(field))
                return;
        }
        print(key, fieldText(field));
    };
}
