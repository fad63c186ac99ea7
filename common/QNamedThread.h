#pragma once

#include "common/DocDisplayGlobal.h"

#include <QThread>

/// A QThread whose operating-system thread carries the object's name, to be told apart in a
/// debugger, in `top -H` and in /proc/<pid>/task/*/comm. Its loop is QThread's event loop.
///
/// Set the name wanted with setObjectName() before start(): it is applied on the new thread as its
/// first act. A name set later takes effect when updateThreadName() is called on that thread.
///
/// Linux keeps 15 bytes of a thread name. A longer object name is refused by SetThreadName() and
/// not shortened here; but Qt 5.15 itself has by then named the starting thread with the first 15
/// bytes of the object name, so those are what such a thread shows.
///
/// The class adds no meta-object: its class name at run time is "QThread".
class DOCDISPLAY_EXPORT QNamedThread : public QThread
{
public:
    /// A thread that is not started, with the object name "QNamedThread". A `parent`, if any, owns
    /// it. Creator's thread.
    explicit QNamedThread(QObject *parent = nullptr);

    /// The owner must have stopped the thread before: quit(), then wait().
    ~QNamedThread() override;

    /// Names the calling thread, never another. `name` holds at most 15 bytes and its closing NUL.
    /// \return 0, or the error number of the system: ERANGE when the name is too long, which then
    ///         leaves the thread's name as it was.
    static int SetThreadName(const char *name);

    /// Names the calling thread after this object, or after its class where the object name is
    /// empty. Call it on the thread itself. A name that the system refuses is ignored.
    void updateThreadName();

protected:
    /// Names the thread, then runs its event loop until quit() or exit(). On the new thread.
    void run() override;
};
