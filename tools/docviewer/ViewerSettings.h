#pragma once

#include <QSettings>

/// What the program remembers from one run to the next.
class ViewerSettings : public QSettings
{
public:
    ViewerSettings()
        : QSettings(QStringLiteral("DocDisplay"), QStringLiteral("docviewer"))
    {
    }
};
