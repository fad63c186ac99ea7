#include "docdisplay/DocDisplayMgr.h"

#include "docdisplay/DocDisplay_Imp.h"

DocDisplayMgr::DocDisplayMgr() = default;

DocDisplayMgr::~DocDisplayMgr() = default;

DocDisplayMgr *CreateDisplayMgr()
{
    return new DocDisplay_Imp;
}
