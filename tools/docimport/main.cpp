#include "tools/docimport/ImportCommand.h"
#include "tools/docpage/Program.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const auto makeApplication = [](int &count, char *names[], const QStringList &) {
        return std::make_unique<QCoreApplication>(count, names);
    };
    return runProgram(argc, argv, {"docimport", makeApplication, runImport});
}
