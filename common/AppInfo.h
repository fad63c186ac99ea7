#pragma once

#include "common/DocDisplayGlobal.h"

#include <QString>

#include <string>

/// \file
/// The running program, and stand-ins for what there is on other platforms only: hosts that are
/// written for several link and run unchanged. All functions are reentrant, and each call asks the
/// system afresh.

/// The absolute path of the running executable, as the system knows it; empty when it does not.
DOCDISPLAY_EXPORT QString GetAppPathFileName();

/// The executable's folder, with '/' at the end; empty when it is not known.
DOCDISPLAY_EXPORT QString GetAppPath();

/// The executable's file name.
DOCDISPLAY_EXPORT QString GetAppName();

/// The executable's file name up to its first '.'.
DOCDISPLAY_EXPORT QString GetAppBaseName();

/// The application's version: what the file UpdateInfo.ini in the executable's folder has for the
/// key Ver in the section VER; empty when there is no such file, section or key.
DOCDISPLAY_EXPORT QString GetAppVer();

/// Empty: there is no print folder on this platform.
DOCDISPLAY_EXPORT QString GetKxPrintDir();

/// The kind of device: "pc".
DOCDISPLAY_EXPORT std::string MeetDeviceType();

/// False, with nothing done: there is no registry on this platform.
DOCDISPLAY_EXPORT bool GetRegKey(const QString &key, unsigned int &value);
DOCDISPLAY_EXPORT bool GetRegKey(const QString &key, QString &value);
DOCDISPLAY_EXPORT bool SetRegKey(const QString &key, unsigned int value);
DOCDISPLAY_EXPORT bool SetRegKey(const QString &key, const QString &value);
DOCDISPLAY_EXPORT bool DelRegKey(const QString &key);
DOCDISPLAY_EXPORT bool DealRegistryCfg(const QString &cfg);
