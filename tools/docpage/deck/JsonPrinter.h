#pragma once

#include <QString>

#include <vector>

/// Puts a JSON text together, its members in the order in which they are added.
class JsonPrinter
{
public:
    enum class Layout { Lines, OneLine };

    void beginObject(Layout layout = Layout::Lines) { begin('{', '}', layout); }
    void beginArray(Layout layout = Layout::Lines) { begin('[', ']', layout); }

    /// Ends the object or array begun last.
    void end();

    /// The key of the value that is added next.
    void key(const char *name);

    /// A value as it is in JSON.
    void add(const QString &json);
    void addString(const QString &string);

    /// The text, once everything is ended.
    QString text() const { return m_text + QLatin1Char('\n'); }

private:
    struct Open
    {
        char closing;
        Layout layout;
        bool isEmpty;
    };

    void begin(char opening, char closing, Layout layout);
    void separate();
    void newLine();

    QString m_text;
    std::vector<Open> m_open;
    bool m_isAfterKey = false;
};
