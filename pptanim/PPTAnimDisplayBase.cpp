#include "pptanim/PPTAnimDisplayBase.h"

#include "pptanim/PPTAnimDisplay.h"

PPTAnimDisplayBase::PPTAnimDisplayBase() = default;

PPTAnimDisplayBase::~PPTAnimDisplayBase() = default;

PPTAnimDisplayBase *CreatePPTAnimDisplayer()
{
    return new PPTAnimDisplay;
}
