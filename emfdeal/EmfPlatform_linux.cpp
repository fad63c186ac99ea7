// The metafile renderer's hooks on Linux, which has none. They have a file of their own so that
// another renderer can be linked in their place.
#include "emfdeal/EmfDeal.h"

bool EmfDeal::checkEmfFile(const QByteArray & /*data*/)
{
    return false;
}
