// What a program learns about itself: five texts, each with a NUL behind it.
#include "common/AppInfo.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>

#include <unistd.h>

int main(int argc, char *argv[])
{
    if (argc > 1 && std::strcmp(argv[1], "--remove-itself") == 0 && ::unlink(argv[0]) != 0)
        return 1;
    const QCoreApplication app(argc, argv); // which is not asked
    for (const QString &text :
         {GetAppPathFileName(), GetAppPath(), GetAppName(), GetAppBaseName(), GetAppVer()})
        std::printf("%s%c", text.toUtf8().constData(), '\0');
    return 0;
}
