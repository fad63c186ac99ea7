#include "tools/docpage/deck/ModelText.h"

#include "tools/docpage/Console.h"
#include "tools/docpage/PictureSize.h"
#include "tools/docpage/deck/FieldText.h"
#include "tools/docpage/deck/FloatText.h"

#include <QSet>

namespace {

QString line(int depth, const QString &text)
{
    return QString(2 * depth, QLatin1Char(' ')) + text + QLatin1Char('\n');
}

QString pictureText(const QByteArray &picture)
{
    if (picture.isNull())
        return QStringLiteral("none");
    if (picture.isEmpty())
        return QStringLiteral("empty");
    const QSize size = pictureSize(picture);
    return counted(picture.size(), "byte") +
           (size.isValid() ? QStringLiteral(", %1 x %2 pixels").arg(size.width()).arg(size.height())
                           : QStringLiteral(", size in pixels unreadable"));
}

// The carried fields that have something to tell: "key value, key value".
template <typename Object>
QString carriedText(const Object &object)
{
    QStringList fields;
    const auto add = [&fields](const char *key, const QString &text) {
        fields += QLatin1String(key) + QLatin1Char(' ') + text;
    };
    const auto print = printingFields(add);
    visitFields(object, [&print](const char *key, const auto &field, Presence presence) {
        if (presence == Presence::Carried)
            print(key, field, presence);
    });
    return fields.join(QStringLiteral(", "));
}

QString shapeText(const PPT_Shape &shape)
{
    return QStringLiteral("shape %1: at %2, %3, size %4 x %5; picture: %6")
        .arg(QString::number(shape.shapeId), floatText(shape.left), floatText(shape.top),
             floatText(shape.width), floatText(shape.height), pictureText(shape.picDat));
}

QString triggerText(qint8 type)
{
    for (const TriggerName &trigger : kTriggerNames) {
        if (trigger.type == type)
            return QLatin1String(trigger.inWords);
    }
    return QStringLiteral("trigger %1").arg(type);
}

QString exitText(qint8 exit)
{
    switch (exit) {
    case 0:
        return {};
    case -1:
        return QStringLiteral(", exit");
    default:
        return QStringLiteral(", exit %1").arg(exit);
    }
}

QString effectText(const PPT_Effect &effect, bool hasShape)
{
    const QString carried = carriedText(effect);
    return QStringLiteral("effect %1 of shape %2").arg(effect.effectNo).arg(effect.shapeId) +
           (hasShape ? QString() : QStringLiteral(" (not there)")) + QStringLiteral(": ") +
           triggerText(effect.timing.triggerType) + exitText(effect.exit) +
           QStringLiteral(", %1 s").arg(floatText(effect.timing.duration)) +
           (carried.isEmpty() ? QString() : QStringLiteral("; ") + carried);
}

QString pageText(const PPT_Page &page)
{
    QString text = line(1, QStringLiteral("page %1").arg(page.pageId));
    text += line(2, QStringLiteral("background: ") + pictureText(page.pageImage));
    const QString transition = carriedText(page.transition);
    if (!transition.isEmpty())
        text += line(2, QStringLiteral("transition: ") + transition);
    QSet<quint16> ids;
    for (const PPT_Shape *shape : page.shapes) {
        text += line(2, shapeText(*shape));
        ids.insert(shape->shapeId);
    }
    for (const PPT_Effect *effect : page.effects)
        text += line(2, effectText(*effect, ids.contains(effect->shapeId)));
    return text;
}

} // namespace

QString modelSummary(const SlideModel &model)
{
    size_t shapes = 0;
    size_t effects = 0;
    for (const auto &entry : model.data.pages) {
        shapes += entry.second->shapes.size();
        effects += entry.second->effects.size();
    }
    const QString summary =
        QStringLiteral("%1 x %2, %3, %4, %5")
            .arg(floatText(model.data.head.width), floatText(model.data.head.height),
                 counted(static_cast<qint64>(model.data.pages.size()), "page"),
                 counted(static_cast<qint64>(shapes), "shape"),
                 counted(static_cast<qint64>(effects), "effect"));
    if (model.bytesAfter == 0)
        return summary;
    return summary + QStringLiteral(", the model ") + followedByIgnored(model.bytesAfter);
}

QString modelText(const PPT_fileDat &model)
{
    QString text;
    for (const auto &entry : model.pages)
        text += pageText(*entry.second);
    return text;
}
