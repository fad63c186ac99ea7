#pragma once

#include <QString>

#include <vector>

/// An attribute by its qualified name.
struct XmlAttribute
{
    QString name;
    QString value;
};

/// An element of an XML file, or a text in one. Names are qualified: who wrote the file uses the
/// usual prefixes of its namespaces.
struct XmlNode
{
    QString name; ///< empty: a text
    QString text; ///< of a text
    std::vector<XmlAttribute> attributes;
    std::vector<XmlNode> children;

    static XmlNode element(const char *name);

    bool is(const char *what) const { return name == QLatin1String(what); }
    bool hasAttribute(const char *what) const;

    /// Its value; null when there is none.
    QString attribute(const char *what) const;
    void setAttribute(const char *what, const QString &value);
    void removeAttribute(const char *what);

    /// The first child of this name; null when there is none.
    const XmlNode *child(const char *what) const;
    XmlNode *child(const char *what);

    /// The same, which is made when it is missing.
    XmlNode &needChild(const char *what);

    /// All text below it.
    QString allText() const;
};
