#pragma once

#include "DocpageTest.h"
#include "TinyPdf.h"

#include <QImage>

/// What tests of docimport have in common: a folder, runs of the program in it, and what they
/// leave.
class DocimportTest : public DocpageTest
{
    Q_OBJECT

protected:
    /// The picture of a page; null when it is none.
    QImage picture(const char *page) const;

    /// The processes that are at work in the folder, or in one that was there.
    QStringList processes() const;

protected Q_SLOTS:
    void init();
};
