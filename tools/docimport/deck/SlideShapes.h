#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include <vector>

struct XmlNode;

/// What people call a shape or a group: its name, or else its kind.
QString nameOf(const XmlNode &shape);

/// A shape of a slide, and the paragraphs of its text, in which it may be taken apart.
struct SlideShape
{
    const XmlNode *node = nullptr;
    std::vector<const XmlNode *>
        paragraphs; ///< empty for what holds more than one text: a table, a group

    /// The text of a paragraph in one line.
    QString text(int paragraph) const;
};

/// What an identifier on a slide stands for.
struct ShapePlace
{
    const XmlNode *node = nullptr;
    int first = 0;        ///< shape
    int last = 0;         ///< the last shape: another one for a group that is taken apart
    int paragraph = -1;   ///< of the first shape; negative: all of it
    bool isInner = false; ///< only a part of the shape, which cannot move by itself
};

/// The shapes of a slide, lowest first. Groups are taken apart when something in them is to move by
/// itself.
class SlideShapes
{
public:
    /// \param moving the identifiers of what effects move
    SlideShapes(const XmlNode &page, const QSet<QString> &moving);

    const std::vector<SlideShape> &all() const { return m_shapes; }

    /// Null when the slide has no such shape.
    const ShapePlace *find(const QString &id) const;

private:
    void add(const XmlNode &node, const QSet<QString> &moving);
    void addShape(const XmlNode &node);
    void addPlace(const ShapePlace &place);
    void addInner(const XmlNode &node, int shape);

    std::vector<SlideShape> m_shapes;
    QHash<QString, ShapePlace> m_places;
};
