#pragma once

#include "DocpagePages.h"

#include <QDir>
#include <QtTest>

#include <sys/stat.h>

/// Inputs that no command can read.
namespace BadInputs {

/// Rows of their names ("name") and of what is wrong with them ("fault").
inline void addRows()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("fault");

    QTest::newRow("missing") << text("missing") << QByteArray("No such file or directory");
    QTest::newRow("no name") << QString() << QByteArray("No file name specified");
    QTest::newRow("empty") << text("empty") << QByteArray("empty file");
    QTest::newRow("folder") << text("folder") << QByteArray("is a directory");
    QTest::newRow("pipe") << text("pipe") << QByteArray("not a regular file");
    QTest::newRow("device") << text("/dev/null") << QByteArray("not a regular file");
    QTest::newRow("endless device") << text("/dev/zero") << QByteArray("not a regular file");
    QTest::newRow("memory of the process")
        << text("/proc/self/mem") << QByteArray("not a regular file");
    QTest::newRow("file of the kernel")
        << text("/proc/self/status") << QByteArray("not a regular file");
    QTest::newRow("link to nowhere") << text("nowhere") << QByteArray("No such file or directory");
    QTest::newRow("link to itself")
        << text("loop") << QByteArray("Too many levels of symbolic links");
    QTest::newRow("below a file") << text("red.png/page") << QByteArray("Not a directory");
    QTest::newRow("name of 256 bytes")
        << QString(256, QLatin1Char('n')) << QByteArray("File name too long");
    if (!isRoot())
        QTest::newRow("unreadable") << text("unreadable") << QByteArray("Permission denied");
}

inline void make(const Workplace &place)
{
    place.write(text("empty"), {});
    QVERIFY(QDir(place.path({})).mkdir(text("folder")));
    QCOMPARE(::mkfifo(QFile::encodeName(place.path(text("pipe"))).constData(), 0600), 0);
    QVERIFY(QFile::link(text("gone"), place.path(text("nowhere"))));
    QVERIFY(QFile::link(text("loop"), place.path(text("loop"))));
    place.write(text("unreadable"), pngPage());
    QVERIFY(QFile::setPermissions(place.path(text("unreadable")), QFile::WriteOwner));
}

} // namespace BadInputs
