#pragma once

#include <QString>

/// What EmfDeal::decodeEmf() returns for the page result file `path`, log lines included, without
/// making room for its payload.
int decodedFormat(const QString &path);
