#pragma once

#include <QByteArray>
#include <QString>

/// The marker segments and scans that a JPG picture is made of.
namespace JpgStructure {

/// Whether `bytes` begin as every JPG picture does.
bool isJpg(const QByteArray &bytes);

/// Why the JPG picture is not complete up to its end marker; empty when it is.
QString fault(const QByteArray &bytes);

} // namespace JpgStructure
