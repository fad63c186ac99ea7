#pragma once

#include "AnimPaint.h"
#include "PageFiles.h"
#include "docdisplay/DocDisplay_Imp.h"

#include <QDateTime>
#include <QPointer>
#include <QTemporaryDir>

#include <functional>

/// Animated decks in the display manager: slides of flat colours, and a host that shows them.
namespace DeckHost {

using namespace AnimModel;
using namespace AnimPaint;
using Status = DocDisplayMgr::AnimStatus;

constexpr quint32 kEnd = 0xFFFFFFFF;
constexpr int kUnseen = -100; // where a shape is that is not seen

/// The model of one slide of 60 x 40 pixels. Shape 1, of 10 x 10 pixels, rests at (20, 10).
inline QByteArray slide(int id, QRgb background, QRgb shape, std::list<PPT_Effect *> effects)
{
    return modelBytes({newPage({newShape(1, 20, 10, 10, 10, png(10, 10, shape))},
                               std::move(effects), png(60, 40, background), id)},
                      60, 40);
}

/// A frame of such a slide with the shape's left edge at `x`.
inline QImage frame(QRgb background, QRgb shape, int x)
{
    QImage image = flat(60, 40, background);
    fill(image, QRect(x, 10, 10, 10), shape);
    return image;
}

/// Step 1, 500 ms: shape 1 comes. Step 2, 250 ms: it goes.
inline QByteArray comesAndGoes(int id = 0, QRgb background = kGrey, QRgb shape = kRed)
{
    return slide(id, background, shape,
                 {newEffect(kClick, 0.5F, 1), newEffect(kClick, 0.25F, 1, kLeave, 1)});
}

/// Step 1, 200 ms, starts by itself: shape 1 comes.
inline QByteArray comesByItself(int id = 1)
{
    return slide(id, kGreen, kBlue, {newEffect(kAfter, 0.2F, 1)});
}

/// No steps.
inline QByteArray still(int id = 2, QRgb background = kYellow)
{
    return slide(id, background, kRed, {});
}

/// The three of them, as pages 0 to 2.
inline QByteArrayList threeSlides()
{
    return {comesAndGoes(), comesByItself(), still()};
}

/// The manager with its player in reach.
class OpenManager : public DocDisplay_Imp
{
public:
    using DocDisplay_Imp::animDisplayer;
};

/// A host of a deck: its page files, its manager, and what that has sent.
class Host
{
public:
    explicit Host(const QByteArrayList &models = threeSlides(),
                  DocCovRslt::DOCRSLT_TYPE kind = DocCovRslt::DOCRSLT_PPT_ANIM)
        : mgr(new OpenManager)
    {
        mgr->Init(kind, models.size());
        for (int page = 0; page < models.size(); ++page) {
            writeSlide(page, models.at(page));
            mgr->AddDocPage(static_cast<unsigned int>(page), file(page));
        }
        QObject::connect(mgr, &DocDisplayMgr::s_PptAnimUpdate,
                         [this] { receive("update", atUpdate); });
        QObject::connect(mgr, &DocDisplayMgr::s_PptAnimFnished,
                         [this] { receive("finish", atFinish); });
    }
    ~Host()
    {
        if (mgr)
            mgr->Destroy();
    }
    Q_DISABLE_COPY_MOVE(Host)

    const QTemporaryDir dir;
    QPointer<OpenManager> mgr; // null once it has been destroyed
    /// "update 1:20 runs": each signal with the player's position when it was sent.
    QStringList log;
    /// What is done in the slots, after the signal has been noted.
    std::function<void()> atUpdate, atFinish;

    PPTAnimDisplayBase &player() const { return *mgr->animDisplayer; }

    /// "1:20 runs": the step, the ms, and whether the player runs.
    QString played() const
    {
        return QStringLiteral("%1:%2%3")
            .arg(player().GetAnimStep())
            .arg(player().GetAnimPassedDuration())
            .arg(player().IsRunning() ? QStringLiteral(" runs") : QString());
    }

    /// "0 1 20": the manager's position, "end" for 0xFFFFFFFF.
    QString position() const
    {
        Status status{77, 77, 77};
        mgr->GetAnimStatus(status);
        return QStringLiteral("%1 %2 %3")
            .arg(number(status.page), number(status.step), number(status.passedDuration));
    }

    /// One tick of the player, now, `elapsed` ms after the last.
    void tick(unsigned int elapsed)
    {
        lastTick() = QDateTime::currentMSecsSinceEpoch() - elapsed;
        if (!QMetaObject::invokeMethod(&player(), "slot_AnimTimeout"))
            qFatal("the player has no tick");
    }

    QStringList takeLog() { return std::exchange(log, QStringList()); }

    QString file(int page) const { return dir.filePath(QString::number(page)); }
    void writePage(int page, qint32 format, const QByteArray &payload) const
    {
        PageFiles::write(dir, QString::number(page), PageFiles::pageResultFile(format, payload));
    }
    void writeSlide(int page, const QByteArray &model) const { writePage(page, 3, model); }
    void removePage(int page) const
    {
        if (!QFile::remove(file(page)))
            qFatal("the test has no such page");
    }

    // Fields of the player.
    std::map<const QByteArray *, QImage> &cache() const { return live().*&OpenPlayer::picCachs; }
    QTimer &timer() const { return live().*&OpenPlayer::animTimer; }
    qint64 &lastTick() const { return live().*&OpenPlayer::lastTickMSecs; }

private:
    PPTAnimDisplay &live() const { return static_cast<PPTAnimDisplay &>(*mgr->animDisplayer); }

    static QString number(quint32 value)
    {
        return value == kEnd ? QStringLiteral("end") : QString::number(value);
    }

    void receive(const char *name, const std::function<void()> &react)
    {
        log << QLatin1String(name) + QLatin1Char(' ') + played();
        const std::function<void()> copy = react; // which may replace itself
        if (copy)
            copy();
    }
};

} // namespace DeckHost
