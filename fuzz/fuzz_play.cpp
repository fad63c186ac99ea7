// Any bytes as an animated page: it is played through all its frames, forwards and backwards.
#include "pptanim/PPTAnimDisplayBase.h"
#include "pptdata/PPT_fileDat.h"

#include <QBuffer>
#include <QImageReader>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

constexpr int kSettings = 5; // bytes before the model
constexpr int kMostSteps = 200;
constexpr qint64 kMostPixels = 1 << 18;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

// Tells how many pixels a picture says it has, without decoding it. Those that do not say are taken
// for the largest.
qint64 announcedPixels(QByteArray picture)
{
    QBuffer buffer(&picture);
    QImageReader reader(&buffer);
    if (!reader.canRead())
        return 0;
    const QSize size = reader.size();
    return size.isValid() ? qint64(size.width()) * size.height() : kMostPixels + 1;
}

// A decoder makes room for the pixels that a picture announces, and fills it, be there data for
// them or not: a few bytes would hold the fuzzer up for minutes, in code that is Qt's.
bool isQuicklyPainted(PPT_Page *page)
{
    if (!page)
        return true;
    qint64 pixels = announcedPixels(page->pageImage);
    for (const PPT_Shape *shape : page->shapes) {
        if (pixels > kMostPixels)
            break;
        pixels += announcedPixels(shape->picDat);
    }
    return pixels <= kMostPixels;
}

bool isQuicklyPlayed(int pageId, const QByteArray &bytes)
{
    PPT_fileDat model;
    CStdDataStream stream(bytes);
    const bool isQuick =
        !model.streamFrom(stream) || isQuicklyPainted(model.getPage(static_cast<quint16>(pageId)));
    model.release();
    return isQuick;
}

// One player and what holds for all of its frames.
class Show
{
public:
    Show(int pageId, const QByteArray &bytes, int fps, bool isCaching, unsigned int framesPerStep)
        : player(CreatePPTAnimDisplayer())
        , frames(framesPerStep)
    {
        const bool isLoaded = player->Init(pageId, bytes, fps);
        require(player->GetPageID() == (isLoaded ? pageId : -1));
        require(isLoaded || player->GetStepCount() == 0);
        require(player->IsAtHome());
        if (isCaching)
            player->SetCachPic(true);
        home = player->GetImg();
        require(isLoaded || home.isNull());
    }

    void forwards()
    {
        for (int steps = 0; steps < kMostSteps && player->nextStep(); ++steps) {
            const unsigned int ms = frameLength();
            for (unsigned int i = 0; i <= frames; ++i) {
                look();
                if (!player->nextFrame(ms))
                    break;
            }
        }
        player->GotoEnd();
        require(player->IsAtEnd() && !player->nextStep());
        look();
    }

    void backwards()
    {
        if (player->IsCachPic())
            player->SetCachPic(true); // now as the shapes' states are, and not as at first
        for (int steps = 0; steps < kMostSteps; ++steps) {
            const unsigned int ms = frameLength();
            for (unsigned int i = 0; i <= frames && player->prevFrame(ms); ++i)
                look();
            if (!player->prevStep())
                break;
        }
        player->GotoHome();
        require(player->IsAtHome() && !player->prevStep() && !player->prevFrame(1));
        look();
        require(player->GetImg() == home);
    }

    void end()
    {
        player->Clear();
        require(player->GetImg().isNull() && !player->IsCachPic());
        require(player->GetPageID() == -1 && player->GetStepCount() == 0);
    }

private:
    void look()
    {
        require(player->GetImg().size() == home.size());
        require(player->GetAnimStep() <= player->GetStepCount());
    }

    unsigned int frameLength() const
    {
        return player->GetStepDuration(player->GetAnimStep()) / frames + 1;
    }

    std::unique_ptr<PPTAnimDisplayBase> player;
    unsigned int frames;
    QImage home; // the frame before anything has moved
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < kSettings)
        return 0;
    qInstallMessageHandler(ignoreMessage);
    const int pageId = static_cast<std::int16_t>(data[0] << 8 | data[1]);
    const int fps = static_cast<std::int8_t>(data[2]);
    const bool isCaching = (data[3] & 1) != 0;
    const unsigned int framesPerStep = data[4] % 4 + 1;
    const QByteArray bytes(reinterpret_cast<const char *>(data) + kSettings,
                           static_cast<int>(size) - kSettings);
    if (!isQuicklyPlayed(pageId, bytes))
        return 0;

    Show show(pageId, bytes, fps, isCaching, framesPerStep);
    show.forwards();
    show.backwards();
    show.end();
    return 0;
}
