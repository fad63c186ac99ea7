#include "pptanim/Scene.h"

#include <algorithm>

SceneKind::SceneKind(const Scene &scene)
{
    m_traits.reserve(1 + scene.pictures.size());
    m_traits.push_back(backgroundOf(scene));
    for (const Scene::Picture &picture : scene.pictures)
        m_traits.push_back(of(picture));
}

bool SceneKind::goesOn(const Scene &scene, std::vector<bool> &movers) const
{
    auto trait = m_traits.begin();
    if (trait == m_traits.end() || !trait->goesOn(backgroundOf(scene)))
        return false;
    movers.clear();
    for (const Scene::Picture &picture : scene.pictures) {
        const Trait next = of(picture);
        do {
            ++trait;
        } while (trait != m_traits.end() && trait->isMoving && !trait->goesOn(next));
        if (trait == m_traits.end() || !trait->goesOn(next))
            return false;
        movers.push_back(trait->isMoving);
    }
    return std::all_of(trait + 1, m_traits.end(), [](const Trait &gone) { return gone.isMoving; });
}

bool SceneKind::Trait::operator==(const Trait &other) const
{
    return isMoving == other.isMoving && goesOn(other);
}

bool SceneKind::Trait::goesOn(const Trait &next) const
{
    return image == next.image && at.y() == next.at.y() && (isMoving || at.x() == next.at.x());
}

SceneKind::Trait SceneKind::backgroundOf(const Scene &scene)
{
    return {scene.background.cacheKey(), {}, false};
}

SceneKind::Trait SceneKind::of(const Scene::Picture &picture)
{
    return {picture.image.cacheKey(), picture.at, picture.isMoving};
}
