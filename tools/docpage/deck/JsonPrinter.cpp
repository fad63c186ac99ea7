#include "tools/docpage/deck/JsonPrinter.h"

#include <QJsonArray>
#include <QJsonDocument>

void JsonPrinter::begin(char opening, char closing, Layout layout)
{
    separate();
    m_text += QLatin1Char(opening);
    m_open.push_back({closing, layout, true});
}

void JsonPrinter::end()
{
    const Open ended = m_open.back();
    m_open.pop_back();
    if (!ended.isEmpty && ended.layout == Layout::Lines)
        newLine();
    m_text += QLatin1Char(ended.closing);
}

void JsonPrinter::key(const char *name)
{
    addString(QLatin1String(name));
    m_text += QStringLiteral(": ");
    m_isAfterKey = true;
}

void JsonPrinter::add(const QString &json)
{
    separate();
    m_text += json;
}

void JsonPrinter::addString(const QString &string)
{
    const QByteArray array = QJsonDocument(QJsonArray{string}).toJson(QJsonDocument::Compact);
    add(QString::fromUtf8(array.constData() + 1, array.size() - 2));
}

// Sets what follows apart from what is there.
void JsonPrinter::separate()
{
    if (m_isAfterKey || m_open.empty()) {
        m_isAfterKey = false;
        return;
    }
    Open &open = m_open.back();
    if (!open.isEmpty)
        m_text += QLatin1Char(',');
    if (open.layout == Layout::Lines)
        newLine();
    else if (!open.isEmpty)
        m_text += QLatin1Char(' ');
    open.isEmpty = false;
}

void JsonPrinter::newLine()
{
    m_text += QLatin1Char('\n') + QString(2 * static_cast<int>(m_open.size()), QLatin1Char(' '));
}
