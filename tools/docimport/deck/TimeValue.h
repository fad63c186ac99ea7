#pragma once

#include <QString>

#include <optional>

/// The seconds of a time in an animation: "0.5s", "500ms", "1min", "1h", "0.5", "00:01:30" or
/// "01:30". Of a list the first time counts. What is no time ("indefinite", "next", an event) is
/// none.
std::optional<double> secondsOf(const QString &time);
