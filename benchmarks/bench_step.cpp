// A whole step of a slide that was just loaded, from its first image to the one after its end,
// against PLAIN, which paints every shape for every image. The exit status is 1 when a bound is
// missed.
#include "Frames.h"

#include <QCoreApplication>

namespace {

struct Path
{
    const char *name;
    int frames;
    int rounds;
};

constexpr Path kPaths[] = {
    {"step/25_frames/20", 25, 21}, {"step/4_frames/20", 4, 31}, {"step/3_frames/20", 3, 31},
    {"step/2_frames/20", 2, 41},   {"step/1_frame/20", 1, 51},
};

FlyIn::Look lookOf(const Path &path)
{
    return {FlyIn::kHd, 20, 1, path.frames};
}

template <typename Player>
double stepSeconds(const QByteArray &model)
{
    Player player; // a new one: nothing is left of an earlier step
    FlyIn::load(player, model);
    Frames::Host host(1);
    return seconds([&] { FlyIn::play(player, [&](PPTAnimDisplay &, int) { host.show(player); }); });
}

void againstPlain(Turns &turns, const Path &path)
{
    const QByteArray model = FlyIn::model(lookOf(path));
    turns.compare([&] { return stepSeconds<PPTAnimDisplay>(model); },
                  [&] { return stepSeconds<PlainPainter>(model); });
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv); // for the players' timers
    Frames::keepFreedMemory();
    for (const Path &path : kPaths)
        Frames::requireSameFrames(lookOf(path), 1);

    for (const Path &path : kPaths)
        addBenchmark(path.name, path.rounds, [&](Turns &turns) { againstPlain(turns, path); });
    return runBenchmarks(argc, argv);
}
