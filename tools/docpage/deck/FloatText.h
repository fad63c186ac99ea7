#pragma once

#include <QString>

#include <optional>

// Floats as text that gives the same float back, whatever its bits.

/// The bits of a float; equal bits are written alike, also those of NaN and of -0.
quint32 bitsOf(float value);

/// A decimal number of as few digits as it takes, or what JSON has no number for: nan, inf, -inf,
/// -0, or for any other NaN its bits as 0xffc00001.
QString floatText(float value);

/// Whether floatText() of `value` is a number in JSON.
bool isJsonNumber(float value);

/// The float that is written as `text`, when that is no number in JSON.
std::optional<float> floatOfText(const QString &text);
