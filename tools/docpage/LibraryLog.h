#pragma once

#include <QString>

/// What the library, Qt and the decoders have to say. The program has one line of its own for each
/// fault, so theirs are kept off standard error.
namespace LibraryLog {

/// Keeps what the library and Qt log off standard error from now on.
void divert();

/// The library's first line about an error since the last call, for a fault that nothing else
/// explains: the cause is logged first, then what comes of it. Not while another thread logs.
QString takeFirstLine();

/// What Qt and its decoders have reported since the last call; of a flood, the beginning.
QString takeMessages();

/// Silences standard error of the process while one of them lives, on whatever threads: some
/// decoders write to it themselves.
class DecoderSilence
{
public:
    DecoderSilence();
    ~DecoderSilence();
    Q_DISABLE_COPY_MOVE(DecoderSilence)
};

} // namespace LibraryLog
