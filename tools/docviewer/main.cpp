#include "tools/docpage/Console.h"
#include "tools/docpage/Document.h"
#include "tools/docviewer/MainWindow.h"
#include "tools/docviewer/Screenshot.h"
#include "tools/docviewer/ThreadLog.h"
#include "tools/docviewer/ViewerArguments.h"

#include <QApplication>
#include <QTextCodec>

namespace {

// Qt ends the program with a core dump when there is none.
bool hasDisplay()
{
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    }
    return false;
}

int show(const ViewerArguments &arguments)
{
    const bool isScreenshot = !arguments.screenshot.isEmpty();
    MainWindow window(isScreenshot ? MainWindow::Memory::None : MainWindow::Memory::Kept);
    window.show();
    if (!arguments.document.isEmpty())
        window.open(arguments.document);
    const ViewerDocument &document = window.presentation()->document();
    const auto &position = arguments.position;
    if (position || isScreenshot) {
        QString fault = document.fault;
        if (fault.isEmpty() && position)
            fault = Document{document.name, document.files, {}}.pageFault(position->page);
        if (!fault.isEmpty())
            return reportFault(arguments.document, fault);
    }
    if (position)
        window.presentation()->hold(*position);
    if (!isScreenshot)
        return QApplication::exec();
    const QString refusal = document.savingFault(arguments.screenshot);
    if (!refusal.isEmpty())
        return reportFault(arguments.screenshot, refusal);

    int status = ExitStatus::Done;
    Screenshot screenshot(&window, arguments.screenshot);
    QObject::connect(&screenshot, &Screenshot::done, [&](const QString &fault) {
        if (!fault.isEmpty())
            status = reportFault(arguments.screenshot, fault);
        QApplication::exit(status);
    });
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    setProgramName("docviewer");
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); // names, whatever the locale
    ViewerArguments arguments;
    {
        // Help is to be had without a display, and without what Qt takes out of the arguments.
        QCoreApplication reader(argc, argv);
        const auto status = arguments.parse(QCoreApplication::arguments().mid(1));
        if (!printFault().isEmpty())
            return reportFault(QStringLiteral("standard output"), printFault());
        if (status)
            return *status;
    }
    if (!hasDisplay()) {
        printError(QStringLiteral("there is no display to show the window on"));
        return ExitStatus::Failed;
    }
    ThreadLog::divert();
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // A scale of 150 % is not rounded to 200 %.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    int count = 1;
    QApplication app(count, argv);
    QApplication::setApplicationName(QStringLiteral("docviewer"));
    QApplication::setApplicationDisplayName(QStringLiteral("Document Viewer"));
    QApplication::setOrganizationName(QStringLiteral("DocDisplay"));
    return show(arguments);
}
