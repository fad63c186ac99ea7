#pragma once

#include "PlainSteps.h"
#include "pptanim/PPTAnimDisplay.h"

#include <algorithm>
#include <map>
#include <vector>

/// The states once more, shape by shape: of a shape's effects the last one that has started says
/// its state, or else the present holder does, and after it the last of those with the lowest
/// number, itself included, that wait.
class PlainStates
{
public:
    using ShapeAnimDat = PPTAnimDisplay::ShapeAnimDat;

    explicit PlainStates(const PPT_Page &page)
        : m_places(PlainSteps::places(page))
    {
        for (PPT_Shape *shape : page.shapes)
            m_entries[shape->shapeId] = {shape};
    }

    void evaluate(unsigned int step, unsigned int passed)
    {
        std::map<int, std::vector<PlainSteps::Place>> ofShapes;
        for (const PlainSteps::Place &place : m_places)
            ofShapes[place.effect->shapeId].push_back(place);
        for (const auto &[id, places] : ofShapes)
            evaluate(m_entries[id], places, step, passed);
    }

    std::map<int, ShapeAnimDat> m_entries;

private:
    enum Phase { Waits, Runs, Ended };

    Phase phase(ShapeAnimDat &dat, const PlainSteps::Place &place, unsigned int step,
                unsigned int passed) const
    {
        if (place.step != step)
            return place.step < step ? Ended : Waits;
        const quint32 start = PlainSteps::groupStart(m_places, place.step, place.group);
        const quint32 end = PlainSteps::groupStart(m_places, place.step, place.group + 1);
        if (passed > end)
            return Ended;
        if (passed < start)
            return Waits;
        dat.effectPassed = passed - start;
        dat.effectDuration = PlainSteps::milliseconds(*place.effect);
        return dat.effectPassed < dat.effectDuration ? Runs : Ended;
    }

    void evaluate(ShapeAnimDat &dat, const std::vector<PlainSteps::Place> &places,
                  unsigned int step, unsigned int passed) const
    {
        const auto number = [](const PPT_Effect *effect) { return effect->effectNo & 0xFFFF; };
        std::vector<PPT_Effect *> waiting;
        for (const PlainSteps::Place &place : places) {
            const Phase now = phase(dat, place, step, passed);
            if (now == Waits) {
                waiting.push_back(place.effect);
                continue;
            }
            waiting.clear();
            dat.effect = place.effect;
            dat.drawState = now == Runs ? 2 : place.effect->exit == -1 ? 3 : 1;
        }
        int lowest = dat.effect ? number(dat.effect) : 0x10000;
        for (const PPT_Effect *effect : waiting)
            lowest = qMin(lowest, number(effect));
        for (auto it = waiting.rbegin(); it != waiting.rend(); ++it) {
            if (number(*it) != lowest)
                continue;
            dat.effect = *it;
            dat.drawState = (*it)->exit == -1 ? 1 : 3;
            break;
        }
    }

    std::vector<PlainSteps::Place> m_places;
};

/// Whether every field of every entry is the same.
inline bool isSame(const std::map<int, PPTAnimDisplay::ShapeAnimDat> &one,
                   const std::map<int, PPTAnimDisplay::ShapeAnimDat> &other)
{
    return std::equal(
        one.begin(), one.end(), other.begin(), other.end(), [](const auto &a, const auto &b) {
            return a.first == b.first && a.second.shape == b.second.shape &&
                   a.second.drawState == b.second.drawState && a.second.effect == b.second.effect &&
                   a.second.effectPassed == b.second.effectPassed &&
                   a.second.effectDuration == b.second.effectDuration;
        });
}
