#include "tools/docimport/ImportReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {

double rounded(double value, double steps)
{
    return std::round(value * steps) / steps;
}

QString key(const char *name)
{
    return QLatin1String(name);
}

template <typename Item>
QJsonArray arrayOf(const QVector<Item> &items, QJsonObject (*toJson)(const Item &))
{
    QJsonArray array;
    for (const Item &item : items)
        array.append(toJson(item));
    return array;
}

QJsonObject effectJson(const EffectReport &effect)
{
    return {{key("target"), effect.target},   {key("kind"), effect.kind},
            {key("trigger"), effect.trigger}, {key("duration"), rounded(effect.duration, 1000)},
            {key("result"), effect.result},   {key("reason"), effect.reason}};
}

QJsonObject slideJson(const SlideReport &slide)
{
    const bool isComposed = slide.difference >= 0;
    return {
        {key("number"), slide.number},
        {key("page"), slide.page},
        {key("animated"), slide.isAnimated},
        {key("reason"), slide.reason},
        {key("note"), slide.note},
        {key("difference"), isComposed ? QJsonValue(rounded(slide.difference, 1e6)) : QJsonValue()},
        {key("effects"), arrayOf(slide.effects, effectJson)}};
}

QJsonObject documentJson(const DocumentReport &document)
{
    return {{key("input"), document.input},
            {key("output"), document.output},
            {key("fault"), document.fault},
            {key("note"), document.note},
            {key("seconds"), rounded(document.seconds, 1000)},
            {key("slides"), arrayOf(document.slides, slideJson)}};
}

} // namespace

QByteArray reportJson(const QVector<DocumentReport> &documents)
{
    return QJsonDocument(QJsonObject{{key("documents"), arrayOf(documents, documentJson)}})
        .toJson();
}
