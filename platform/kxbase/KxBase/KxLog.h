#pragma once

#include <KxBase/KxGlobal.h>

namespace Kxlogger {

/// How much a log line matters. Any other int may be passed too: it is handed on as it is.
enum E_LOG_LEVEL_DEF : int { LOG_LEVEL_DEBUG = 0, LOG_LEVEL_INFO = 1, LOG_LEVEL_ERROR = 2 };

} // namespace Kxlogger

namespace KxBase {

/// Logs one line: a message of any length, made as by printf from `format` (in UTF-8) and what
/// follows, up to its first NUL and without the line ends that close it. A null `module` or
/// `format` counts as empty; a message that cannot be made is replaced by the text of `format`.
///
/// The line goes to the sink, or without one to standard error as `[error] module: message`. There
/// it is written at once, with CR and LF inside it shown as \r and \n, so that a call is one line.
///
/// Callable from any thread, but not from a signal handler; lines of several threads never mix.
/// errno is left as it was. What cannot be written to standard error is lost. Throws only what the
/// sink throws, and std::bad_alloc.
KXBASE_EXPORT void KxSDKCommonLog(Kxlogger::E_LOG_LEVEL_DEF level, const char *module,
                                  const char *format, ...) __attribute__((format(printf, 3, 4)));

/// Receives log lines, each on the thread that logs it and never two at a time. The texts are not
/// null, `message` has no line end at its end, and both are valid during the call only.
///
/// A sink may log (such a line goes to standard error) and may set another sink. It must not wait
/// for a thread that does either, as that thread is waiting for the sink.
using KxLogSink = void (*)(void *context, Kxlogger::E_LOG_LEVEL_DEF level, const char *module,
                           const char *message);

/// Sends all further lines to `sink`, called with `context`; a null sink sends them to standard
/// error. `context` stays the caller's: once this has returned no other thread uses the former sink
/// and its context any more, so that they may be destroyed. Callable from any thread. Never fails.
KXBASE_EXPORT void KxSetLogSink(KxLogSink sink, void *context);

} // namespace KxBase
