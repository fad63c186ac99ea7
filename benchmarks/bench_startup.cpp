// From the start of a program to the first page: loading the library, CreateDisplayMgr() and a
// static page, against a bare Qt program that decodes the same bytes with QImage. The exit status
// is 1 when the bound is missed.
#include "CommandRun.h"
#include "FlyIn.h"

#include <QProcess>

namespace {

QByteArray page()
{
    QRandomGenerator random(1);
    return PageFiles::pageResultFile(
        4, PageFiles::encoded(FlyIn::background({FlyIn::kHd, 2, 1}, random), "PNG", -1));
}

QByteArray outputOf(const char *program, const QString &page)
{
    QProcess process;
    process.start(QString::fromLocal8Bit(program), {page});
    require(process.waitForFinished(-1) && process.exitCode() == 0, "a program failed");
    return process.readAllStandardOutput();
}

// Of the processor, in all: the programs wait for nothing.
double processorSeconds(const char *program, const QString &page)
{
    return run({program, page.toStdString()}).processorSeconds;
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir dir;
    const QString path = PageFiles::write(dir, QStringLiteral("page"), page());
    const QByteArray expected = outputOf(STARTUP_QT, path);
    require(expected.startsWith("1920x1080 ") && outputOf(STARTUP_LIBRARY, path) == expected,
            "the images differ");

    addBenchmark("startup/1920x1080", 61, [&](Turns &turns) {
        turns.compare([&] { return processorSeconds(STARTUP_LIBRARY, path); },
                      [&] { return processorSeconds(STARTUP_QT, path); });
    });
    return runBenchmarks(argc, argv);
}
