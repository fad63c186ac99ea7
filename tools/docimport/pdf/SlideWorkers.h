#pragma once

#include "tools/docimport/pdf/PdfCache.h"

#include <QDeadlineTimer>

#include <functional>

class EndRequest;

/// What a thread has for its work on slides.
struct SlideTools
{
    PdfCache pdfs;
    QDeadlineTimer deadline;         ///< of the present slide
    std::function<bool()> isStopped; ///< whether what is done for it is in vain, as behind that
};

/// Does the work on slide 0 and on, on as many threads as the machine has use for, and waits until
/// all is done. Nothing is begun after the first fault, or when an end is requested.
/// \param work returns what went wrong; empty when the slide is done
/// \param limit for one slide, in seconds
/// \param onDone called in this thread with the number of slides that are done
/// \return the fault; empty when all is done or an end was requested
QString workOnSlides(int count, const std::function<QString(int slide, SlideTools &tools)> &work,
                     int limit, const EndRequest &request,
                     const std::function<void(int done)> &onDone);
