#pragma once

#include "pptdata/PPT_fileDat.h"

#include <QByteArray>

#include <list>

/// A model of animated pages that is released with the object.
class SlideModel
{
public:
    SlideModel() = default;
    ~SlideModel() { data.release(); }
    Q_DISABLE_COPY_MOVE(SlideModel)

    /// Reads the payload of a page result file into the model, which must be fresh.
    /// \return why it cannot be read; empty when it is
    QString read(const QByteArray &payload);

    /// The model as the payload of a page result file.
    QByteArray payload() const;

    /// The size of the payload, which may be more than it can have.
    qint64 payloadSize() const;

    PPT_fileDat data;
    qint64 bytesAfter = 0; ///< what follows the model in the payload that was read and is ignored
};

using SlideModels = std::list<SlideModel>;
