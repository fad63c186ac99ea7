#pragma once

#include <QStringList>

#include <memory>

class QCoreApplication;

/// A command line program, besides what all of them have in common.
struct Program
{
    const char *name;

    /// Makes the application object. It is given no arguments but the name: it would take out some
    /// for itself.
    std::unique_ptr<QCoreApplication> (*makeApplication)(int &argc, char *argv[],
                                                         const QStringList &arguments);

    /// Does the work. Returns the exit status.
    int (*run)(const QStringList &arguments);
};

/// All that main() does: names are UTF-8 whatever the locale, a write that fails is told, and so is
/// a want of memory.
/// \return the exit status
int runProgram(int argc, char *argv[], const Program &program);
