#pragma once

#include <QByteArray>
#include <QStringList>

#include <functional>

/// What the renderer in EmfPlatform_test.cpp does and was asked for. It takes what begins with
/// "EMF" for a page and makes pictures of one letter, 'p' for PNG and 'j' for JPG. Not safe from
/// several threads.
struct TestRenderer
{
    static constexpr int kFails = -1;

    int pngSize = 10;
    int jpgSize = kFails;
    std::function<void()> onCheck; ///< before a page is judged
    std::function<void(const QString &format)> onRender;
    QStringList calls; ///< "PNG 95 120 of <the page>"

    static TestRenderer &instance();
};
