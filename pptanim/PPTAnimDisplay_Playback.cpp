// Playback: the position, the moves between positions, and the timer that makes them while running.
#include "pptanim/PPTAnimDisplay.h"

#include <QDateTime>
#include <QPointer>

namespace {

constexpr unsigned int kEnd = 0xFFFFFFFF; // beyond the end of any step

} // namespace

bool PPTAnimDisplay::IsAtHome()
{
    return animStep == 0 && passedDuration == 0;
}

bool PPTAnimDisplay::IsAtEnd()
{
    return animStep >= GetStepCount() && passedDuration >= GetStepDuration(animStep);
}

void PPTAnimDisplay::GotoHome()
{
    SetAnimStep(0);
}

void PPTAnimDisplay::GotoEnd()
{
    SetAnimStep(GetStepCount());
    SetAnimPassedDuration(kEnd);
}

void PPTAnimDisplay::SetAnimStep(unsigned int step)
{
    passedDuration = 0;
    animStep = qMin(step, GetStepCount());
    StopRun();
}

void PPTAnimDisplay::SetAnimPassedDuration(unsigned int ms)
{
    passedDuration = qMin(ms, GetStepDuration(animStep));
}

unsigned int PPTAnimDisplay::GetAnimStep()
{
    return animStep;
}

unsigned int PPTAnimDisplay::GetAnimPassedDuration()
{
    return passedDuration;
}

bool PPTAnimDisplay::nextStep()
{
    const unsigned int duration = GetStepDuration(animStep);
    if (duration > passedDuration) {
        passedDuration = duration;
        return true;
    }
    if (animStep >= GetStepCount())
        return false;
    SetAnimStep(animStep + 1);
    return true;
}

bool PPTAnimDisplay::prevStep()
{
    if (animStep == 0)
        return false;
    --animStep;
    passedDuration = GetStepDuration(animStep);
    StopRun();
    return true;
}

bool PPTAnimDisplay::nextFrame(unsigned int ms)
{
    if (animStep == 0) {
        const auto first = effectSteps.find(1);
        if (first != effectSteps.end() && first->second.stepType != 1) // starts without a click
            animStep = 1;
    }
    if (GetStepDuration(animStep) <= passedDuration)
        return false;
    passedDuration += ms;
    return true;
}

bool PPTAnimDisplay::prevFrame(unsigned int ms)
{
    if (passedDuration == 0)
        return false;
    passedDuration -= qMin(ms, passedDuration);
    return true;
}

void PPTAnimDisplay::StartRun()
{
    lastTickMSecs = QDateTime::currentMSecsSinceEpoch();
    animTimer.start();
    if (passedDuration == 0) // a started step is no longer at its start
        passedDuration = 1;
}

void PPTAnimDisplay::StopRun()
{
    animTimer.stop();
    framePainter.endRun();
}

bool PPTAnimDisplay::IsRunning()
{
    return animTimer.isActive();
}

void PPTAnimDisplay::slot_AnimTimeout()
{
    const auto before = static_cast<unsigned int>(lastTickMSecs);
    lastTickMSecs = QDateTime::currentMSecsSinceEpoch();
    const unsigned int elapsed = static_cast<unsigned int>(lastTickMSecs) - before;

    const QPointer<PPTAnimDisplay> self(this); // null when a receiver has deleted the player
    Q_EMIT s_AnimUpdate();
    if (!self || nextFrame(elapsed))
        return;
    StopRun();
    Q_EMIT s_AnimFnished();
}
