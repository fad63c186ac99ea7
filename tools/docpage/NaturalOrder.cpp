#include "tools/docpage/NaturalOrder.h"

#include <QCollator>

#include <algorithm>

void sortNaturally(QStringList &names)
{
    QCollator collator{QLocale(QLocale::English)};
    collator.setNumericMode(true);
    std::sort(names.begin(), names.end(), [&](const QString &a, const QString &b) {
        const int order = collator.compare(a, b);
        return order != 0 ? order < 0 : a < b; // page_02 and page_2 count the same
    });
}
