#pragma once

#include "DocpageRun.h"

#include <QtTest>

#include <memory>

/// What tests of docpage have in common.
class DocpageTest : public QObject
{
protected:
    std::unique_ptr<Workplace> place;

    /// Runs a command that has to fail with `err`, print nothing and leave all files as they are.
    void verifyFails(const QStringList &arguments, const QByteArray &err)
    {
        const QStringList before = place->entries();
        const Outcome outcome = place->run(arguments);
        QCOMPARE(outcome.err, err);
        QCOMPARE(outcome.out, QByteArray());
        QCOMPARE(outcome.status, 1);
        QCOMPARE(place->entries(), before);
    }

    /// Runs a command that has to succeed and to print `out` only.
    void verifyDoes(const QStringList &arguments, const QByteArray &out)
    {
        const Outcome outcome = place->run(arguments);
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.out, out);
        QCOMPARE(outcome.status, 0);
    }
};
