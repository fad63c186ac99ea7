#include "tools/docimport/engine/EngineServices.h"

#include "tools/docimport/engine/EngineUrl.h"
#include "tools/docpage/InputFile.h"
#include "tools/docpage/OutputFile.h"

#include <QDir>

namespace {

// Takes the components of that library out of a list.
bool leaveOut(QByteArray &list, const QByteArray &library)
{
    static const QByteArray end = "</component>";
    bool isThere = false;
    for (int at = list.indexOf(library); at >= 0; at = list.indexOf(library)) {
        const int first = list.lastIndexOf("<component ", at);
        const int last = list.indexOf(end, at);
        if (first < 0 || last < 0)
            break;
        list.remove(first, last + end.size() - first);
        isThere = true;
    }
    return isThere;
}

} // namespace

QString writeServices(const QString &engine, const QString &folder, QString &argument)
{
    const QDir lists(QFileInfo(engine).path() + QStringLiteral("/services"));
    QString fault = createFolder(folder);
    bool isShorter = false;
    for (const QString &name : lists.entryList({QStringLiteral("*.rdb")}, QDir::Files)) {
        QByteArray list;
        if (fault.isEmpty())
            fault = readInput(lists.filePath(name), list);
        isShorter = leaveOut(list, "/libavmediagst.so\"") || isShorter;
        if (fault.isEmpty())
            fault = saveFile(QDir(folder).filePath(name), OutputRules(true, {}), {list});
    }
    if (isShorter)
        argument = QStringLiteral("-env:URE_MORE_SERVICES=<%1>*").arg(engineUrl(folder));
    return fault;
}
