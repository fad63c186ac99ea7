// Shape states: what is hidden, at rest or moving at a position, and where.
#include "pptanim/PPTAnimDisplay.h"

#include "common/FloatToInt.h"
#include "pptanim/StateWalk.h"

#include <cmath>

namespace {

bool isExit(const PPT_Effect &effect)
{
    return effect.exit == -1;
}

// Sums of coordinates wrap, as the processor's integers do: a shape may be placed anywhere.
int wrappingAdd(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) + static_cast<unsigned int>(b));
}

int wrappingSubtract(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) - static_cast<unsigned int>(b));
}

QRect movedTo(const QRect &rect, int left)
{
    QRect moved;
    moved.setCoords(left, rect.top(),
                    wrappingAdd(left, wrappingSubtract(rect.right(), rect.left())), rect.bottom());
    return moved;
}

} // namespace

void PPTAnimDisplay::ShapeAnimDat::updateAnimDat(PPT_Effect *e, EFFECT_STATE st)
{
    switch (st) {
    case EFFECT_RUN:
        effect = e;
        drawState = DRAW_MOVE;
        break;
    case EFFECT_END:
        effect = e;
        drawState = isExit(*e) ? DRAW_HIDE : DRAW_SHOW;
        break;
    case EFFECT_WAIT:
        // Of the effects to come, the one with the lowest number says how the shape waits.
        if (effect && static_cast<quint16>(e->effectNo) > static_cast<quint16>(effect->effectNo))
            break;
        effect = e;
        drawState = isExit(*e) ? DRAW_SHOW : DRAW_HIDE;
        break;
    }
}

void PPTAnimDisplay::ShapeAnimDat::playEffect(PPT_Effect *e, unsigned int passed)
{
    effectPassed = passed;
    effectDuration = toUInt32(static_cast<double>(e->timing.duration * 1000.0F));
    updateAnimDat(e, effectDuration > effectPassed ? EFFECT_RUN : EFFECT_END);
}

void PPTAnimDisplay::CollectShapes()
{
    stateWalk.reset();
    shapeAnimDats.clear();
    for (PPT_Shape *shape : curPage->shapes) {
        ShapeAnimDat fresh;
        fresh.shape = shape;
        shapeAnimDats[shape->shapeId] = fresh;
    }
}

void PPTAnimDisplay::getAllShapeDrawState()
{
    stateWalk.reset();
    updateShapeStates();
}

quint64 PPTAnimDisplay::updateShapeStates()
{
    if (!stateWalk)
        stateWalk = std::make_unique<StateWalk>(effectSteps, shapeAnimDats);
    if (stateWalk->moveTo(animStep, passedDuration))
        ++evaluations;
    return evaluations;
}

void PPTAnimDisplay::CoverShapes(std::map<int, ShapeAnimDat> &map, QList<ShapeAnimDat *> &out)
{
    for (auto &entry : map) {
        if (entry.second.drawState != DRAW_HIDE)
            out.append(&entry.second);
    }
}

void PPTAnimDisplay::CoverShapes(std::map<int, ShapeAnimDat> &map, QList<ShapeAnimDat *> &below,
                                 QList<ShapeAnimDat *> &moving, QList<ShapeAnimDat *> &above)
{
    QList<ShapeAnimDat *> visible;
    CoverShapes(map, visible);
    auto *layer = &below;
    for (ShapeAnimDat *dat : qAsConst(visible)) {
        const bool isMoving = dat->drawState == DRAW_MOVE;
        if (layer == &below && isMoving)
            layer = &moving;
        else if (layer == &moving && !isMoving)
            layer = &above;
        layer->append(dat);
        if (layer == &above && isMoving) {
            moving += above;
            above.clear();
        }
    }
}

QRect PPTAnimDisplay::GetShapeOrgRect(PPT_Shape *shape)
{
    const int left = toPixels(shape->left);
    const int top = toPixels(shape->top);
    QRect rect;
    rect.setCoords(left, top, wrappingSubtract(wrappingAdd(left, toPixels(shape->width)), 1),
                   wrappingSubtract(wrappingAdd(top, toPixels(shape->height)), 1));
    return rect;
}

QRect PPTAnimDisplay::GetAnimCurretRect(ShapeAnimDat &d, QRect &org)
{
    if (d.drawState < DRAW_MOVE || !d.effect)
        return org;
    const bool isLeaving = isExit(*d.effect);
    const int beforePage =
        wrappingSubtract(wrappingSubtract(org.left(), org.right()), 1); // ends at -1
    const int from = isLeaving ? org.left() : beforePage;
    const int to = isLeaving ? pageWidth : org.left();
    if (d.effectPassed == 0)
        return movedTo(org, from);
    if (d.effectPassed >= d.effectDuration)
        return movedTo(org, to);
    const float part = static_cast<float>(d.effectPassed) / static_cast<float>(d.effectDuration);
    const float left =
        std::fma(part, static_cast<float>(wrappingSubtract(to, from)), static_cast<float>(from));
    return movedTo(org, toInt32(static_cast<double>(left)));
}
