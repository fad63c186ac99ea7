#include "tools/docpage/CommandLine.h"
#include "tools/docpage/Commands.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/EncodeJobs.h"
#include "tools/docpage/EndRequest.h"
#include "tools/docpage/FreeSpace.h"
#include "tools/docpage/InputFile.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/PictureCheck.h"
#include "tools/docpage/Progress.h"
#include "tools/docpage/StagingFolder.h"
#include "tools/docpage/WorkRate.h"

#include <QDir>

#include <numeric>

namespace {

// The most space that encoding files of these sizes takes at once: each picture as copy or page,
// and the largest as both.
qint64 neededSpace(const QVector<qint64> &sizes, qint64 blockSize)
{
    qint64 all = 0;
    qint64 largest = 0;
    for (const qint64 size : sizes) {
        const qint64 page = size + PageResultHeader::kSize;
        const qint64 taken = (page + blockSize - 1) / blockSize * blockSize;
        all += taken;
        largest = qMax(largest, taken);
    }
    return all + largest;
}

/// One call: copies of the pictures are made, encoded, and given their names.
class Encoding
{
public:
    Encoding(const QStringList &pictures, const QString &folder, bool force,
             const EndRequest &request)
        : m_pictures(pictures)
        , m_folder(folder)
        , m_rules(force, pictures)
        , m_request(request)
        , m_staging(folder)
    {
        for (const QString &picture : pictures) {
            const qint64 size = QFileInfo(picture).size();
            m_sizes.append(size > kMaxPayloadSize ? 0 : size); // too large, and refused when read
        }
        m_bytesToDo = 2 * std::accumulate(m_sizes.cbegin(), m_sizes.cend(), qint64(0));
        m_sinceStart.start();
    }

    int run()
    {
        const bool isReady = arePagesFree() && makeFolder() && copyPictures();
        if (!isReady || m_request.isMade())
            return stopped();
        const QString prefix = m_staging.filePath({});
        const EncodeResult result =
            encodePictures(m_copies, prefix, m_request, [this](const EncodeInput &picture) {
                ++m_encoded;
                show("encoding page", m_encoded, picture.size);
            });
        if (!result.fault.isEmpty())
            fail(result.failed < 0 ? m_folder : m_pictures.at(result.failed), result.fault);
        if (!result.fault.isEmpty() || m_request.isMade())
            return stopped();
        QString page;
        const QString fault = m_staging.publish(result.pages, m_rules, page);
        if (!fault.isEmpty()) {
            fail(page, fault);
            return stopped();
        }
        m_progress.clear();
        print(QStringLiteral("%1 in %2\n")
                  .arg(counted(m_pictures.size(), "page result file"), escaped(m_folder)));
        return ExitStatus::Done;
    }

private:
    void fail(const QString &file, const QString &fault)
    {
        m_progress.clear();
        reportFault(file, fault);
    }

    int stopped()
    {
        if (m_request.isMade())
            fail(m_folder, QStringLiteral("cancelled, no page is made"));
        return ExitStatus::Failed;
    }

    void show(const char *what, int number, qint64 bytes)
    {
        m_bytesDone += bytes;
        QString text = QStringLiteral("%1 %2 of %3")
                           .arg(QLatin1String(what))
                           .arg(number)
                           .arg(m_pictures.size());
        const QString rate = workRate(m_bytesDone, m_bytesToDo, m_sinceStart.elapsed());
        if (!rate.isEmpty())
            text += QStringLiteral(", ") + rate;
        m_progress.show(text);
    }

    bool arePagesFree()
    {
        bool isFree = true;
        for (int i = 0; i < m_pictures.size(); ++i) {
            const QString page = QDir(m_folder).filePath(pageFileName(i));
            const QString fault = m_rules.refusal(page);
            if (!fault.isEmpty())
                fail(page, fault);
            isFree = isFree && fault.isEmpty();
        }
        return isFree;
    }

    bool makeFolder()
    {
        const QString fault = m_staging.create();
        if (!fault.isEmpty()) {
            fail(m_folder, fault);
            return false;
        }
        const FreeSpace space(m_staging.filePath({}));
        const qint64 needed = neededSpace(m_sizes, space.blockSize);
        if (space.bytes < needed) {
            fail(m_folder, QStringLiteral("not enough space: %1 bytes are needed, %2 are free")
                               .arg(needed)
                               .arg(space.bytes));
            return false;
        }
        return true;
    }

    // All faults are told, but nothing is copied behind the first.
    bool copyPictures()
    {
        bool isGood = true;
        for (int i = 0; i < m_pictures.size() && !m_request.isMade(); ++i) {
            const QString fault = copyPicture(i, isGood);
            if (m_request.isMade())
                return false; // which may be the fault
            if (!fault.isEmpty())
                fail(m_pictures.at(i), fault);
            isGood = isGood && fault.isEmpty();
        }
        return isGood;
    }

    // What is checked is what is copied. A link would do for the encoder, but it would still be the
    // picture's file: what is written to that meanwhile would become part of the page.
    QString copyPicture(int i, bool isWanted)
    {
        QByteArray bytes;
        const QString fault = readInput(m_pictures.at(i), bytes);
        if (!fault.isEmpty())
            return fault;
        const PictureCheck check = PictureCheck::of(bytes);
        show("checking picture", i + 1, bytes.size());
        if (!check.fault.isEmpty() || !isWanted)
            return check.fault;
        const QString copy = m_staging.filePath(QString::number(i));
        const QString copyFault = saveFile(copy, OutputRules(false, {}), {bytes});
        if (!copyFault.isEmpty())
            return QStringLiteral("cannot be copied to %1: %2").arg(m_folder, copyFault);
        m_copies.append({copy, bytes.size(), check.format});
        return {};
    }

    const QStringList m_pictures;
    const QString m_folder;
    const OutputRules m_rules;
    const EndRequest &m_request;
    StagingFolder m_staging;
    QVector<qint64> m_sizes;
    QVector<EncodeInput> m_copies;
    Progress m_progress;
    QElapsedTimer m_sinceStart;
    qint64 m_bytesToDo = 0; // each byte is copied and encoded
    qint64 m_bytesDone = 0;
    int m_encoded = 0;
};

} // namespace

int runEncode(const QStringList &arguments)
{
    CommandLine line("docpage encode", "PICTURE... -o DIR [--force]",
                     "Makes page result files from JPG and PNG pictures on the encoder's thread:\n"
                     "page_0 from the first one given, page_1 from the second, and so on. All of\n"
                     "them are made, or none. The pictures are kept as they are.");
    line.addInput("PICTURE", CommandLine::Count::OneOrMore,
                  "A complete JPG or PNG picture, as told from its content.");
    line.addOutput("DIR", "The folder of the page result files. It is created when missing.");
    if (const std::optional<int> status = line.parse(arguments))
        return *status;

    const EndRequest request;
    const int status = Encoding(line.inputs(), line.output(), line.isSet("force"), request).run();
    if (status != ExitStatus::Done && request.isMade())
        request.grant();
    return status;
}
