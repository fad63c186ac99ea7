#pragma once

#include <QtGlobal>

/// While it lives, the first signal that would end the program (as Ctrl-C does) is a request to end
/// when all is cleaned up. The next one ends it at once. Signals that are ignored stay so. One at a
/// time.
class EndRequest
{
public:
    EndRequest();
    ~EndRequest();
    Q_DISABLE_COPY_MOVE(EndRequest)

    /// Whether the signal has come.
    bool isMade() const;

    /// Becomes readable when the signal comes.
    int descriptor() const;

    /// Ends the program by the signal that has come, so that its caller learns of it.
    void grant() const;
};
