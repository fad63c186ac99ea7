#pragma once

#include <QString>

/// What the library, Qt and the decoders have to say. The program has one line of its own for each
/// fault, so theirs are kept off standard error.
namespace LibraryLog {

/// Keeps what the library and Qt log off standard error from now on.
void divert();

/// The library's last line, for a fault that nothing else explains.
QString lastLine();

/// Silences standard error while it lives: some decoders write to it themselves.
class DecoderSilence
{
public:
    DecoderSilence();
    ~DecoderSilence();
    Q_DISABLE_COPY_MOVE(DecoderSilence)

private:
    const int m_standardError; // a copy of the descriptor, ours
};

} // namespace LibraryLog
