// Any bytes as an animated page: it is played through all its frames, forwards and backwards, and
// then moved about in at random. The first bytes are the settings.
#include "fuzz/Fuzz.h"
#include "fuzz/Mutators.h"
#include "fuzz/PictureBudget.h"
#include "fuzz/Silence.h"
#include "pptanim/PPTAnimDisplayBase.h"

#include <QCoreApplication>

#include <memory>
#include <random>

namespace {

constexpr int kSettings = 5; // bytes before the model
constexpr int kMostSteps = 100;
constexpr int kMoves = 40;

// The player's timer belongs to an event loop, though none is run here.
void makeApplication()
{
    static int argumentCount = 1;
    static char name[] = "fuzz";
    static char *arguments[] = {name, nullptr};
    static const QCoreApplication application(argumentCount, arguments);
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

    // From the end, back to what there was at first.
    void backwards(bool comparesPixels)
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
        require(!comparesPixels || player->GetImg() == home);
    }

    // Any operation at any position, also by those who are told of a frame.
    void wander(unsigned int seed)
    {
        std::minstd_rand random(seed);
        const auto moveOn = [&] { move(random); };
        QObject::connect(player.get(), &PPTAnimDisplayBase::s_AnimUpdate, player.get(), moveOn);
        QObject::connect(player.get(), &PPTAnimDisplayBase::s_AnimFnished, player.get(), moveOn);
        for (int i = 0; i < kMoves; ++i) {
            move(random);
            look();
            if (player->IsRunning())
                require(QMetaObject::invokeMethod(player.get(), "slot_AnimTimeout",
                                                  Qt::DirectConnection));
        }
        player->disconnect();
    }

    void end()
    {
        player->Clear();
        require(player->GetImg().isNull() && !player->IsCachPic() && !player->IsRunning());
        require(player->GetPageID() == -1 && player->GetStepCount() == 0);
    }

private:
    void look()
    {
        require(player->GetImg().size() == home.size());
        const unsigned int step = player->GetAnimStep();
        const unsigned int passed = player->GetAnimPassedDuration();
        require(step <= player->GetStepCount());
        require(player->IsAtHome() == (step == 0 && passed == 0));
        require(player->IsAtEnd() ==
                (step == player->GetStepCount() && passed >= player->GetStepDuration(step)));
    }

    void move(std::minstd_rand &random)
    {
        const auto number = static_cast<unsigned int>(random());
        const unsigned int step = player->GetAnimStep();
        const unsigned int duration = player->GetStepDuration(step);
        const auto time = static_cast<unsigned int>(number % (duration + Q_UINT64_C(100)));
        switch (random() % 11) {
        case 0:
            player->SetAnimStep(number % (player->GetStepCount() + 2));
            require(player->GetAnimPassedDuration() == 0 && !player->IsRunning());
            break;
        case 1:
            player->SetAnimPassedDuration(time);
            require(player->GetAnimPassedDuration() == qMin(time, duration));
            break;
        case 2:
            player->nextStep();
            require(player->GetAnimStep() - step <= 1);
            break;
        case 3:
            require(player->prevStep() == (step > 0));
            require(!player->IsRunning() || step == 0);
            break;
        case 4:
            player->nextFrame(time);
            require(player->GetAnimStep() == step || (step == 0 && player->GetAnimStep() == 1));
            break;
        case 5:
            player->prevFrame(number);
            require(player->GetAnimStep() == step);
            break;
        case 6:
            player->StartRun();
            require(player->IsRunning() && player->GetAnimPassedDuration() > 0);
            break;
        case 7:
            player->StopRun();
            require(!player->IsRunning());
            break;
        case 8:
            player->SetCachPic(number % 2 != 0);
            break;
        case 9:
            player->ClearPicCachs();
            break;
        default:
            player->GotoEnd();
            require(player->IsAtEnd() && !player->IsRunning());
            break;
        }
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

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t most, unsigned int seed)
{
    return mutateBehind(kSettings, mutateModel, data, size, most, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < kSettings)
        return 0;
    silenceLogs();
    makeApplication();
    const int pageId = static_cast<std::int16_t>(data[0] << 8 | data[1]);
    const int fps = data[2] < 128 ? data[2] : data[2] - 256;
    const bool isCaching = (data[3] & 1) != 0;
    const unsigned int framesPerStep = data[4] % 4 + 1;
    const unsigned int seed = data[3] / 2U * 64 + data[4] / 4U + 1;
    const QByteArray bytes = byteArray(data, size).mid(kSettings);
    PictureBudget budget;
    budget.addModel(bytes);
    if (!budget.isKept())
        return 0;

    Show show(pageId, bytes, fps, isCaching, framesPerStep);
    show.forwards();
    show.backwards(budget.hasDefinedPixels());
    show.wander(seed);
    show.end();
    return 0;
}
