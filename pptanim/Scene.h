#pragma once

#include <QImage>
#include <QPoint>

#include <vector>

/// What a frame shows: a background with pictures on it.
struct Scene
{
    struct Picture
    {
        QImage image; // not null
        QPoint at;    // of its upper left corner; less than 2^30 from the background's
        bool isMoving = false;
    };

    QImage background;             // not null
    std::vector<Picture> pictures; // in paint order
    unsigned int movingFor = 0;    // ms, until the first moving one comes to rest; 0: none moves
};

/// What scenes have in common that differ in nothing but how far pictures have moved to the side.
class SceneKind
{
public:
    SceneKind() = default; // of no scene
    explicit SceneKind(const Scene &scene);

    bool operator==(const SceneKind &other) const { return m_traits == other.m_traits; }
    bool operator!=(const SceneKind &other) const { return !(*this == other); }

    /// Whether `scene` is of this kind, but for that moving ones may have come to rest or be gone.
    /// \param[out] movers for each of its pictures, whether it is one of those
    bool goesOn(const Scene &scene, std::vector<bool> &movers) const;

private:
    struct Trait
    {
        qint64 image; // its cache key
        QPoint at;
        bool isMoving;

        bool operator==(const Trait &other) const;
        bool goesOn(const Trait &next) const;
    };

    static Trait backgroundOf(const Scene &scene);
    static Trait of(const Scene::Picture &picture);

    std::vector<Trait> m_traits; // of the background and of the pictures
};
