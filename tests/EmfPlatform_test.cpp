// A renderer's hooks in place of the platform's.
#include "emfdeal/EmfDeal.h"

bool EmfDeal::checkEmfFile(const QByteArray &data)
{
    return data.startsWith("EMF");
}
