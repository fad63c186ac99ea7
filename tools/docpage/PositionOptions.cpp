#include "tools/docpage/PositionOptions.h"

QString readPosition(const CommandLine &line, DocDisplayMgr::AnimStatus &position)
{
    QString fault = line.readNumber("page", "page number", position.page);
    if (fault.isEmpty())
        fault = line.readNumber("step", "step number", position.step);
    if (fault.isEmpty())
        fault = line.readNumber("ms", "number of milliseconds", position.passedDuration);
    return fault;
}
