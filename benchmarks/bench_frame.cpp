// Frames of a run, once it is under way: against LIMIT, which copies a page and draws the moving
// shape on it, or against PLAIN, which paints every shape. The exit status is 1 when a bound is
// missed.
#include "Frames.h"

#include <QCoreApplication>

namespace {

using FlyIn::Look;
using Frames::Host;
using Frames::Limit;

constexpr int kAll = 26; // images of a step of 25 frames, with the one after its end
constexpr int kWarm = 6; // the first frames, which make what the others use

struct Path
{
    const char *name;
    Look look;
    int kept; // images by the host
    int rounds;
};

const Path kAgainstLimit[] = {
    {"frame/1920x1080/5", {FlyIn::kHd, 5, 0.5}, 1, 31},
    {"frame/1920x1080/20", {FlyIn::kHd, 20, 1}, 1, 31},
    {"frame/1920x1080/100", {FlyIn::kHd, 100, 2}, 1, 31},
    {"frame/3840x2160/5", {FlyIn::k4K, 5, 0.5}, 1, 9},
    {"frame/3840x2160/20", {FlyIn::k4K, 20, 1}, 1, 9},
    {"frame/3840x2160/100", {FlyIn::k4K, 100, 2}, 1, 9},
    {"frame/1920x1080/20/three_held", {FlyIn::kHd, 20, 1}, 3, 31},
    {"frame/1920x1080/100/three_held", {FlyIn::kHd, 100, 2}, 3, 31},
};

const Path kAllHeld[] = {
    {"frame/1920x1080/20/all_held", {FlyIn::kHd, 20, 1}, kAll, 31},
    {"frame/1920x1080/100/all_held", {FlyIn::kHd, 100, 2}, kAll, 31},
};

const Path kAgainstPlain[] = {
    {"frame/1920x1080/20/translucent_background",
     {FlyIn::kHd, 20, 1, 25, QImage::Format_ARGB32},
     1,
     15},
};

const Look kOneLook = {FlyIn::kHd, 20, 1};

bool isUnderWay(int frame)
{
    return frame >= kWarm && frame < kAll - 1; // the last one is at rest
}

// The sum over the frames that are under way.
double runSeconds(PPTAnimDisplay &player, int kept)
{
    Host host(kept);
    double sum = 0;
    FlyIn::play(player, [&](PPTAnimDisplay &, int frame) {
        const double taken = seconds([&] { host.show(player); });
        sum += isUnderWay(frame) ? taken : 0;
    });
    return sum;
}

void againstLimit(Turns &turns, const Path &path)
{
    const QByteArray model = FlyIn::model(path.look);
    PPTAnimDisplay player;
    PlainPainter plain;
    FlyIn::load(player, model);
    FlyIn::load(plain, model);
    const Limit limit(path.look, plain);
    QImage page = limit.page();
    turns.compare([&] { return runSeconds(player, path.kept); },
                  [&] {
                      double sum = 0;
                      for (int frame = kWarm; frame < kAll - 1; ++frame)
                          sum += seconds([&] { limit.paint(frame, page); });
                      return sum;
                  });
}

// LIMIT paints each image in a page of its own, too, which it has made when it needs it.
void againstLimitOfPages(Turns &turns, const Path &path)
{
    const QByteArray model = FlyIn::model(path.look);
    PPTAnimDisplay player;
    PlainPainter plain;
    FlyIn::load(player, model);
    FlyIn::load(plain, model);
    const Limit limit(path.look, plain);
    turns.compare([&] { return runSeconds(player, path.kept); },
                  [&] {
                      Host host(path.kept);
                      double sum = 0;
                      for (int frame = 0; frame < kAll; ++frame) {
                          const double taken = seconds([&] {
                              QImage &page = host.place();
                              page = limit.page();
                              limit.paint(frame, page);
                          });
                          sum += isUnderWay(frame) ? taken : 0;
                      }
                      return sum;
                  });
}

void againstPlain(Turns &turns, const Path &path)
{
    const QByteArray model = FlyIn::model(path.look);
    PPTAnimDisplay player;
    PlainPainter plain;
    FlyIn::load(player, model);
    FlyIn::load(plain, model);
    turns.compare([&] { return runSeconds(player, path.kept); },
                  [&] { return runSeconds(plain, path.kept); });
}

// Microseconds for one image of a position that was shown before, in the midst of a run.
void samePosition(Turns &turns)
{
    PPTAnimDisplay player;
    FlyIn::load(player, FlyIn::model(kOneLook));
    Host host(1);
    FlyIn::play(player, [&](PPTAnimDisplay &, int frame) {
        host.show(player);
        if (frame != 12)
            return;
        turns.measure([&] {
            constexpr int kTimes = 20;
            return 1e6 / kTimes * seconds([&] {
                       for (int i = 0; i < kTimes; ++i)
                           host.show(player);
                   });
        });
    });
}

void requireSamePosition()
{
    const QByteArray model = FlyIn::model(kOneLook);
    PPTAnimDisplay player;
    PlainPainter plain;
    FlyIn::load(player, model);
    FlyIn::load(plain, model);
    FlyIn::play(plain, [&](PPTAnimDisplay &, int) {
        player.SetAnimStep(1);
        player.SetAnimPassedDuration(plain.GetAnimPassedDuration());
        const QImage expected = plain.GetImg();
        for (int times = 0; times < 3; ++times)
            require(player.GetImg() == expected, "a frame asked again is another one");
    });
}

template <typename Run, size_t Count>
void add(const Path (&paths)[Count], Run run)
{
    for (const Path &path : paths)
        addBenchmark(path.name, path.rounds, [&path, run](Turns &turns) { run(turns, path); });
}

template <size_t Count>
void check(const Path (&paths)[Count])
{
    for (const Path &path : paths)
        Frames::requireSameFrames(path.look, path.kept);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv); // for the players' timers
    Frames::keepFreedMemory();
    check(kAgainstLimit);
    check(kAllHeld);
    check(kAgainstPlain);
    requireSamePosition();

    add(kAgainstLimit, againstLimit);
    add(kAllHeld, againstLimitOfPages);
    add(kAgainstPlain, againstPlain);
    addBenchmark("frame/same_position", 101, samePosition);
    return runBenchmarks(argc, argv);
}
