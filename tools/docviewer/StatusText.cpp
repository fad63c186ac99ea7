#include "tools/docviewer/StatusText.h"

#include <QCoreApplication>

namespace {

QString statusLine(const char *english)
{
    return QCoreApplication::translate("StatusText", english);
}

QString nextText(const Presentation &show, const DocDisplayMgr::AnimStatus &position)
{
    const PageContent &content = show.content();
    if (show.isRunning())
        return statusLine("playing, next: end of step %1").arg(position.step);
    if (position.passedDuration < content.duration(position.step))
        return statusLine("next: end of step %1").arg(position.step);
    if (position.step < content.stepCount())
        return statusLine("next: step %1 of %2").arg(position.step + 1).arg(content.stepCount());
    if (position.page + 1 < show.pageCount())
        return statusLine("next: page %1").arg(position.page + 2);
    return statusLine("end");
}

} // namespace

StatusText StatusText::of(const Presentation &show, const DocDisplayMgr::AnimStatus &position)
{
    StatusText status;
    if (show.pageCount() == 0)
        return status;
    const PageContent &content = show.content();
    status.page = statusLine("Page %1 of %2").arg(position.page + 1).arg(show.pageCount());
    if (content.stepCount() > 0) {
        status.step = statusLine("Step %1 of %2").arg(position.step).arg(content.stepCount());
        status.time = statusLine("%1 of %2 ms")
                          .arg(position.passedDuration)
                          .arg(content.duration(position.step));
    }
    status.next = nextText(show, position);
    return status;
}
