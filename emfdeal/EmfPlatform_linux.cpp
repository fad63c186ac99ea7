// The metafile renderer's hooks on Linux, which has none. They have a file of their own so that
// another renderer can be linked in their place.
#include "emfdeal/EmfDeal.h"

bool EmfDeal::checkEmfFile(const QByteArray & /*data*/)
{
    return false;
}

bool EmfDeal::CovEmf2Pic(const QByteArray & /*emf*/, QByteArray & /*out*/,
                         const QString & /*format*/, int /*quality*/, int /*resolution*/)
{
    return false;
}
