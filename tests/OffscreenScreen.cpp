// Linked to tests that have windows. Qt's offscreen platform never deletes its screen; while there
// is a pointer to it LeakSanitizer does not take that for a leak of the test.
#include <QGuiApplication>

namespace {

QScreen *volatile screen = nullptr;

void keepScreen()
{
    screen = QGuiApplication::primaryScreen();
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(keepScreen)
