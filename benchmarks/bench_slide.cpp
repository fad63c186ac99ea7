// Going to another slide of an animated deck against decoding what it is made of: its model, and
// its pictures. The exit status is 1 when the bound is missed.
#include "Frames.h"
#include "docdisplay/DocDisplayMgr.h"

#include <QCoreApplication>

#include <memory>

namespace {

constexpr FlyIn::Look kLook = {FlyIn::kHd, 20, 1, 25, QImage::Format_RGB32, -1};

struct Destroy
{
    void operator()(DocDisplayMgr *mgr) const { mgr->Destroy(); }
};

/// Two slides in page result files, and a manager that shows them.
class Deck
{
public:
    Deck()
    {
        m_mgr->Init(DocCovRslt::DOCRSLT_PPT_ANIM, int(std::size(m_models)));
        for (unsigned int page = 0; page < std::size(m_models); ++page) {
            m_mgr->AddDocPage(page, PageFiles::write(m_dir, QString::number(page),
                                                     PageFiles::pageResultFile(3, m_models[page])));
        }
    }

    const QByteArray &model(unsigned int page) const { return m_models[page]; }
    unsigned int otherPage() const { return 1 - m_mgr->GetCurPage(); }
    void goTo(unsigned int page) { m_mgr->SetAnimStatus({page, 0, 0}); }
    QImage image() { return m_mgr->GetImg(); }

private:
    const QTemporaryDir m_dir;
    const QByteArray m_models[2] = {FlyIn::model(kLook, 0, 1), FlyIn::model(kLook, 1, 2)};
    const std::unique_ptr<DocDisplayMgr, Destroy> m_mgr{CreateDisplayMgr()};
};

/// A decoded model with its pictures decoded.
class Decoded
{
public:
    explicit Decoded(const QByteArray &bytes)
    {
        CStdDataStream stream(bytes);
        m_model.streamFrom(stream);
        for (const auto &entry : m_model.pages) {
            m_images.push_back(QImage::fromData(entry.second->pageImage));
            for (const PPT_Shape *shape : entry.second->shapes)
                m_images.push_back(QImage::fromData(shape->picDat));
        }
    }
    ~Decoded() { m_model.release(); }
    Q_DISABLE_COPY_MOVE(Decoded)

private:
    PPT_fileDat m_model;
    std::vector<QImage> m_images;
};

void requireSameImages(Deck &deck)
{
    for (unsigned int page : {0U, 1U, 0U}) {
        PlainPainter plain;
        require(plain.Init(int(page), deck.model(page), 25), "the slide is refused");
        deck.goTo(page);
        require(deck.image() == plain.GetImg(), "the image differs");
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv); // for the players' timers
    Deck deck;
    requireSameImages(deck);
    addBenchmark("slide/1920x1080/20", 21, [&](Turns &turns) {
        turns.compare([&] { return seconds([&] { deck.goTo(deck.otherPage()); }); },
                      [&] {
                          std::unique_ptr<Decoded> decoded;
                          return seconds([&] {
                              decoded = std::make_unique<Decoded>(deck.model(deck.otherPage()));
                          });
                      });
    });
    return runBenchmarks(argc, argv);
}
