#pragma once

#include "tools/docimport/deck/XmlNode.h"

#include <QHash>
#include <QSet>

#include <vector>

/// The styles of a deck, and those that are made for its parts: copies of the deck's own that keep
/// the place of everything and show less. Each is made once.
class DeckStyles
{
public:
    /// \param deck outlives this, and does not change meanwhile
    explicit DeckStyles(const XmlNode &deck);

    /// Null when there is no such style.
    const XmlNode *find(const QString &family, const QString &name) const;
    const XmlNode *findList(const QString &name) const;

    /// The list style that a shape's style brings along; null when there is none.
    const XmlNode *listOfShape(const QString &family, const QString &name) const;

    /// Of text: as the named style (which may be empty), but invisible.
    QString invisibleText(const QString &name);

    /// Of a shape: as the named style of the family, but without fill, stroke and shadow.
    QString bareShape(const QString &family, const QString &name);

    /// Of the paragraphs of a shape: the same, where they have a say in it.
    QString bareParagraph(const QString &name);

    /// Of a list: as `list` (which may be null), but without bullets and numbers.
    QString blankList(const XmlNode *list);

    /// Of a page: paper of this colour, without the objects of its master page.
    QString paper(const QString &colour);

    /// What was made.
    const std::vector<XmlNode> &made() const { return m_made; }

private:
    void take(const XmlNode *styles);
    QString newName();
    XmlNode &makeLike(const QString &family, const QString &name);
    XmlNode &made(XmlNode style);

    QHash<QString, const XmlNode *> m_styles; // by family and name
    QHash<QString, const XmlNode *> m_lists;
    QSet<const XmlNode *> m_automatic; // which cannot be the parent of another
    QSet<QString> m_names;             // that are taken
    QHash<QString, QString> m_nameOf;  // what was made
    std::vector<XmlNode> m_made;
    int m_count = 0;
};
