#pragma once

#include <QStringList>

/// Sorts names as people count: page_2 before page_10. The order is the same in every locale, and
/// names that differ never count as equal.
void sortNaturally(QStringList &names);
