#pragma once

#include "pptanim/FramePainter.h"
#include "pptanim/PPTAnimDisplayBase.h"
#include "pptdata/PPT_fileDat.h"

#include <QList>
#include <QRect>
#include <QTimer>

#include <list>
#include <map>
#include <memory>

class QPainter;
class StateWalk;

/// The player. Operations of the interface call one another virtually: what a subclass overrides
/// holds for all of them. Its concerns are in files of their own: PPTAnimDisplay_Steps.cpp cuts the
/// page's effects into steps, _ShapeState.cpp tells where each shape is, _Paint.cpp paints it, and
/// _Playback.cpp moves the position. A StateWalk leads from one position's states to the next's, a
/// FramePainter from one frame to the next. Who changes steps, entries or the model by hand calls
/// getAllShapeDrawState() before the next frame.
class PPTAnimDisplay : public PPTAnimDisplayBase
{
    Q_OBJECT

public:
    /// Effects that start together.
    struct EffectGrp
    {
        std::list<PPT_Effect *> effects; // borrowed from the page; in its order
        unsigned int grpDuration = 0;    // ms; that of the longest effect
    };

    /// What one click plays: groups, one after the other.
    struct EffectStep
    {
        unsigned int stepIndex = 0;      // its key in effectSteps, from 1
        qint16 stepType = 2;             // trigger type of the last group's first effect
        std::list<EffectGrp> effectGrps; // in play order
        unsigned int stepDuration = 0;   // ms; sum of the groups', modulo 2^32
    };

    enum SHAPE_DRAW_STATE : int {
        DRAW_DEFAULT = 0, ///< no effect has decided: at rest
        DRAW_SHOW = 1,    ///< at rest
        DRAW_MOVE = 2,    ///< where GetAnimCurretRect() says
        DRAW_HIDE = 3     ///< not drawn
    };

    /// One shape at the position of the last evaluation.
    struct ShapeAnimDat
    {
        /// The phase of an effect at a position.
        enum EFFECT_STATE : int { EFFECT_WAIT = 0, EFFECT_RUN = 1, EFFECT_END = 2 };

        /// Lets an effect of the shape decide on the shape's state, if it is its turn to.
        void updateAnimDat(PPT_Effect *e, EFFECT_STATE st);

        /// Lets an effect of a current group decide; `passed` is the time played of the group.
        void playEffect(PPT_Effect *e, unsigned int passed);

        PPT_Shape *shape = nullptr; // borrowed from the page; null: effects name it, but no shape
        int drawState = DRAW_DEFAULT;
        PPT_Effect *effect = nullptr;    // borrowed; the one that decided; null until one has
        unsigned int effectDuration = 0; // ms; of the last effect of a current group
        unsigned int effectPassed = 0;   // ms played of it
    };

    PPTAnimDisplay();
    ~PPTAnimDisplay() override;

    bool Init(int pageId, const QByteArray &data, int fps) override;
    int GetPageID() override;
    void Clear() override;
    unsigned int GetStepCount() override;
    void SetCachPic(bool on) override;
    bool IsCachPic() override;
    void ClearPicCachs() override;
    bool IsAtHome() override;
    bool IsAtEnd() override;
    void GotoHome() override;
    void GotoEnd() override;
    void SetAnimStep(unsigned int step) override;
    void SetAnimPassedDuration(unsigned int ms) override;
    unsigned int GetStepDuration(unsigned int step) override;
    unsigned int GetAnimStep() override;
    unsigned int GetAnimPassedDuration() override;
    bool nextStep() override;
    bool prevStep() override;
    bool nextFrame(unsigned int ms) override;
    bool prevFrame(unsigned int ms) override;
    void StartRun() override;
    void StopRun() override;
    bool IsRunning() override;
    QImage GetImg() override;

    /// Init() with bytes that it lets go as soon as they are decoded: the steps of a slide with
    /// many effects take more memory than the bytes do.
    bool InitAndDrop(int pageId, QByteArray &&data, int fps);

    // Steps. An effect that is neither a click nor an after effect plays with the previous one.
    static bool IsClickEffect(PPT_Effect *e);
    static bool IsAfterEffect(PPT_Effect *e);
    /// Rebuilds effectSteps from the page.
    void AnalyszEffectSteps();
    /// The record of a step; null when there is none.
    EffectStep *GetEffectStep(unsigned int step);

    // Shape states.
    /// Rebuilds shapeAnimDats from the page.
    void CollectShapes();
    /// Updates shapeAnimDats for the present position. What it held has a say in the result.
    void getAllShapeDrawState();
    /// The same for less, where nobody but the player has changed steps, entries or effects since
    /// the last update: it evaluates what a new position makes a difference to.
    /// \return a number that is another one whenever something has been evaluated: as long as it
    ///         stays the same, so do the entries.
    quint64 updateShapeStates();
    /// Appends the visible entries in paint order.
    static void CoverShapes(std::map<int, ShapeAnimDat> &map, QList<ShapeAnimDat *> &out);
    /// Appends the visible entries in paint order to three layers: `moving` is from the first to
    /// the last moving one, the others are at rest below and above.
    static void CoverShapes(std::map<int, ShapeAnimDat> &map, QList<ShapeAnimDat *> &below,
                            QList<ShapeAnimDat *> &moving, QList<ShapeAnimDat *> &above);
    /// The place of a shape at rest, in pixels of the page.
    static QRect GetShapeOrgRect(PPT_Shape *shape);
    /// The place of a visible shape whose place at rest is `org`.
    QRect GetAnimCurretRect(ShapeAnimDat &d, QRect &org);

    // Painting.
    /// The decoded picture, from the cache or into it while caching is on; null when it cannot be
    /// decoded. The cache goes by the address of `data`.
    QImage MakeImage(const QByteArray &data);
    void DrawShape(QPainter &painter, ShapeAnimDat &d);
    void DrawShapes(QPainter &painter, QList<ShapeAnimDat *> &list);
    /// Paints the shapes of the present position.
    void PaintShapes(QPainter &painter);
    /// Fills the cache, if caching is on.
    void MakePicCachs();

protected:
    int curPageId = -1;
    PPT_fileDat fileDat;
    PPT_Page *curPage = nullptr;     // borrowed from fileDat; null when cleared
    int pageWidth = -1;              // pixels; at least 1, but 0 for a width that is no number
    int pageHeight = -1;             // likewise
    unsigned int animStep = 0;       // at most the step count
    unsigned int passedDuration = 0; // ms; nextFrame() and StartRun() may pass the step's end
    std::map<unsigned int, EffectStep> effectSteps; // by step number, from 1
    std::map<int, ShapeAnimDat> shapeAnimDats;      // by shape identifier, which is paint order
    QTimer animTimer;
    qint64 lastTickMSecs = 0; // ms since the epoch; of the last StartRun() or tick
    bool cachPic = false;
    std::map<const QByteArray *, QImage> picCachs; // keys are compared, never followed

private Q_SLOTS:
    void slot_AnimTimeout();

private:
    bool decode(QByteArray data);
    QImage plainFrame(QImage image);
    QImage frameOnce(const QImage &background);
    /// False when one of the pictures cannot be decoded.
    bool addPictures(Scene &scene);

    std::unique_ptr<StateWalk> stateWalk; // null until the first update for these steps and shapes
    quint64 evaluations = 0;

    FramePainter framePainter;
    QImage lastFrame; // null: the next one is painted in any case
    quint64 lastFrameEvaluation = 0;
    qint64 lastBackground = 0; // its cache key
};
