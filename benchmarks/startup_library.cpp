// The first image of a host: shows the only page of a document by the library, and prints a hash of
// its pixels.
#include "PixelHash.h"
#include "docdisplay/DocDisplayMgr.h"

#include <QFile>

int main(int, char *argv[])
{
    DocDisplayMgr *mgr = CreateDisplayMgr();
    mgr->Init(DocCovRslt::DOCRSLT_PICTURE, 1);
    mgr->AddDocPage(0, QFile::decodeName(argv[1]));
    const int status = printHash(mgr->GetImg());
    mgr->Destroy();
    return status;
}
