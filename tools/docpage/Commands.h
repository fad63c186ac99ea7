#pragma once

#include <QStringList>

// The commands of docpage. Each is given what follows its name on the command line, says on
// standard output and standard error what there is to say, and returns the program's exit status.

/// Makes page result files from pictures.
int runWrap(const QStringList &arguments);

/// Makes page result files from pictures on the encoder's thread: all of them or none.
int runEncode(const QStringList &arguments);

/// Tells what page result files hold.
int runInfo(const QStringList &arguments);

/// Tells what of page result files would not show.
int runCheck(const QStringList &arguments);

/// Takes the payload out of a page result file.
int runUnwrap(const QStringList &arguments);

/// Makes page result files from the description of an animated deck.
int runBuild(const QStringList &arguments);

/// Tells all that slide animation data holds.
int runModel(const QStringList &arguments);

/// Saves one page of a document as a picture.
int runRender(const QStringList &arguments);

/// Saves every frame of a document as a picture. Needs a QGuiApplication.
int runPlay(const QStringList &arguments);
