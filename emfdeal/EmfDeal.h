#pragma once

#include "common/DocCovRslt.h"
#include "common/DocDisplayGlobal.h"
#include "common/QNamedThread.h"

#include <QByteArray>
#include <QString>

/// Page result files: one page of a document each, a 14-byte header and the payload (a picture, or
/// the animation data of a slide). The format is described in docs/page-result-file.md.
///
/// Reading and writing keep no state: they may be called from any thread, at the same time. No
/// operation throws or removes a file. Each failure is a result and a log line of level 2, module
/// "VPrnt", with the file name in UTF-8. A pipe as a file is waited for, like any read of it.
///
/// The object is a thread, for the work that is done in the background. Reading and writing do not
/// need it to run; whoever starts it ends it, with quit() and wait(), before deleting it.
class DOCDISPLAY_EXPORT EmfDeal : public QNamedThread
{
    Q_OBJECT

public:
    /// The result of converting one page.
    struct PageCovrRslt
    {
        QByteArray rsltDat;                                                  ///< the payload bytes
        DocCovRslt::PAGE_FORMAT_DEF picFormat = DocCovRslt::PAGE_FORMAT_EMF; ///< what they are
    };

    /// Registers the types of DocCovRslt with Qt under their full names. Does not start the thread.
    /// A `parent`, if any, owns the object.
    explicit EmfDeal(QObject *parent = nullptr);
    ~EmfDeal() override;

    /// The 14 bytes that precede a payload of `datSize` bytes. Both values are stored as given.
    static QByteArray getHeader(int datSize, DocCovRslt::PAGE_FORMAT_DEF picFormat);

    /// Writes `rslt` as the page result file `path`, which is created or emptied first.
    /// \return false when the file cannot be opened or takes fewer bytes than given. The partly
    ///         written file stays. A device that fails only when the last buffered bytes are
    ///         flushed on closing goes unnoticed.
    bool WriteEmfDealRsltFile(const QString &path, EmfDeal::PageCovrRslt &rslt);

    /// Reads the page result file `path`. Its payload replaces the content of `data`; whatever
    /// follows it in the file is ignored.
    /// \return the format as the file states it, not judged, or 5 (no format) on failure. `data`
    ///         is untouched when the file cannot be opened or its header is refused, and holds the
    ///         bytes that were there when they are fewer than the header says.
    static int getPicDataFromFile(const QString &path, QByteArray &data);

    /// Reads the page result file `path` as getPicDataFromFile() does, `data` included, and accepts
    /// it only with a format that can be shown and a payload that is not empty.
    /// \return 2 (JPG), 3 (slide animation data), 4 (PNG), or 5 when refused. A negative format is
    ///         returned as the file states it.
    static int decodeEmf(const QString &path, QByteArray &data);

    /// Whether `data` is an EMF page that this platform can render. On Linux, which has no metafile
    /// renderer, always false.
    bool checkEmfFile(const QByteArray &data);
};

/// The complete content of a page result file that holds the JPG picture `data`. The bytes are not
/// examined and nothing is written to disk. Any thread.
DOCDISPLAY_EXPORT QByteArray DocDisplayAddHeader(const QByteArray &data);
