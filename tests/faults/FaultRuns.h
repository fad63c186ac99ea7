#pragma once

#include "tests/DocpageRun.h"

#include <QMetaType>

#include <cerrno>

/// What fails in a run of a program, see FaultPlan.h.
struct Fault
{
    const char *kind;
    int at = 0; ///< the number of the call, from 1; none fails without it
    int error = EIO;
    bool isAndAfter = false;
    bool isShort = false;
    int least = 0; ///< of an allocation, in bytes
    bool kills = false;
};

/// The faults in calls for files, each of which may befall any of them.
inline constexpr Fault kFileFaults[] = {
    {"open", 0, EIO},
    {"read", 0, EIO},
    {"read", 0, EIO, true},
    {"read", 0, EIO, false, true},
    {"write", 0, EIO},
    {"write", 0, ENOSPC, true},
    {"write", 0, EIO, false, true},
    {"rename", 0, EIO},
    {"rename", 0, ENOSPC, true},
    {"unlink", 0, EIO},
    {"mkdir", 0, ENOSPC},
    {"close", 0, EIO},
};

/// A fault in an allocation of so many bytes or more.
constexpr Fault memoryFault(int least, int at = 0)
{
    return {"memory", at, ENOMEM, false, false, least};
}

/// A fault in words.
QByteArray nameOf(const Fault &fault);

/// A run with a fault, and how many calls of its kind there were; -1 when it did not end by itself.
struct FaultyRun
{
    Outcome outcome;
    int calls;
};

/// Runs the place's program with a fault in what it does with the place's own files, or behind the
/// first call for one of these.
FaultyRun runWithFault(Workplace &place, const QStringList &arguments, const Fault &fault);

/// Why what came of a run is not harmless; empty when it is. Harmless is the whole result, or
/// failing with a line that names a file; in both cases every file of before is as it was or
/// replaced by the one of the whole result, and there are no others.
/// \param before what the place held; \param done what it holds after a run without faults
/// \param program the name that its lines begin with
QString harm(const Outcome &outcome, const QStringList &after, const QStringList &before,
             const QStringList &done, const QString &program = text("docpage"));

Q_DECLARE_METATYPE(Fault)
