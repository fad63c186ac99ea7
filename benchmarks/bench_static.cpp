// The image of a static page against QImage decoding the same bytes, which it has in memory. The
// exit status is 1 when the bound is missed.
#include "FlyIn.h"
#include "docdisplay/DocDisplayMgr.h"

#include <memory>

namespace {

QByteArray picture()
{
    QRandomGenerator random(1);
    return PageFiles::encoded(FlyIn::background({FlyIn::kHd, 2, 1}, random), "PNG", -1);
}

struct Destroy
{
    void operator()(DocDisplayMgr *mgr) const { mgr->Destroy(); }
};

} // namespace

int main(int argc, char *argv[])
{
    const QByteArray bytes = picture();
    const QTemporaryDir dir;
    const QString path =
        PageFiles::write(dir, QStringLiteral("page"), PageFiles::pageResultFile(4, bytes));
    const std::unique_ptr<DocDisplayMgr, Destroy> mgr(CreateDisplayMgr());
    mgr->Init(DocCovRslt::DOCRSLT_PICTURE, 1);
    mgr->AddDocPage(0, path);
    const QImage expected = QImage::fromData(bytes);
    require(expected.size() == FlyIn::kHd && mgr->GetImg() == expected, "the image differs");

    addBenchmark("static/1920x1080", 41, [&](Turns &turns) {
        QImage image;
        turns.compare([&] { return seconds([&] { image = mgr->GetImg(); }); },
                      [&] { return seconds([&] { image = QImage::fromData(bytes); }); });
    });
    return runBenchmarks(argc, argv);
}
