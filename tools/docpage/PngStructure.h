#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

/// The chunks that a PNG picture is made of.
namespace PngStructure {

/// Whether `bytes` begin as every PNG picture does.
bool isPng(const QByteArray &bytes);

/// The size in pixels that the PNG picture's header announces; not valid when the header is broken.
QSize size(const QByteArray &bytes);

/// Why the PNG picture is not complete up to its end chunk; empty when it is.
QString fault(const QByteArray &bytes);

} // namespace PngStructure
