#include "emfdeal/EmfDeal.h"

EmfDeal::EmfDeal(QObject *parent)
    : QNamedThread(parent)
{
    qRegisterMetaType<DocCovRslt::DOCRSLT_TYPE>("DocCovRslt::DOCRSLT_TYPE");
    qRegisterMetaType<DocCovRslt::PAGE_FORMAT_DEF>("DocCovRslt::PAGE_FORMAT_DEF");
    setObjectName(QStringLiteral("EmfDeal"));
}

EmfDeal::~EmfDeal() = default;
