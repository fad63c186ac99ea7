#pragma once

#include "DocpagePages.h"

#include <QTextCodec>
#include <QtTest>

#include <memory>

#include <sys/stat.h>

/// What tests of docpage have in common: a folder with two pictures, and runs of the program in it.
class DocpageTest : public QObject
{
    Q_OBJECT

protected:
    std::unique_ptr<Workplace> place;

    /// Runs a command that has to fail as told, and leaves everything as it was.
    void verifyFails(const QStringList &arguments, int status, const QByteArray &err,
                     const QByteArray &out = {})
    {
        const QStringList before = place->entries();
        const Outcome outcome = place->run(arguments);
        QCOMPARE(outcome.err, err);
        QCOMPARE(outcome.out, out);
        QCOMPARE(outcome.status, status);
        QCOMPARE(place->entries(), before);
    }
    void verifyFails(const QStringList &arguments, const QByteArray &err)
    {
        verifyFails(arguments, 1, err);
    }

    /// Runs a command that has to succeed and to print `out` only.
    void verifyDoes(const QStringList &arguments, const QByteArray &out = {})
    {
        const Outcome outcome = place->run(arguments);
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.out, out);
        QCOMPARE(outcome.status, 0);
    }

protected Q_SLOTS:
    void initTestCase()
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
        ::umask(022);
    }

    void init()
    {
        place = std::make_unique<Workplace>();
        place->write(text("red.png"), TinyPictures::png());
        place->write(text("grey.jpg"), TinyPictures::jpg());
    }
};

/// With a page of each kind as well.
class DocpagePagesTest : public DocpageTest
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        DocpageTest::init();
        place->write(text("png_page"), pngPage());
        place->write(text("jpg_page"), jpgPage());
        place->write(text("slide_page"), slidePage());
    }
};
