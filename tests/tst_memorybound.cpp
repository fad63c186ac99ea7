#include "LargeModels.h"
#include "LiveBytes.h"
#include "LogSpy.h"
#include "PageFiles.h"
#include "ResourceLimits.h"
#include "TinyPictures.h"
#include "common/FileHelper.h"
#include "docdisplay/DocDisplayMgr.h"
#include "emfdeal/EmfDeal.h"
#include "pptdata/Record.h"

#include <KxCommon/KxIniFile.h>

#include <QEventLoop>
#include <QFileInfo>
#include <QSignalSpy>
#include <QtTest>

#include <array>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <sys/stat.h>

using namespace LargeModels;

Q_DECLARE_METATYPE(LargeModels::Make)
using Act = std::function<void(AnimModel::OpenPlayer &)>;
Q_DECLARE_METATYPE(Act)

namespace {

constexpr qint64 kMiB = 1024 * 1024;

// What is asked of the allocator is the same in every build: where programs are many times slower,
// smaller files do.
const std::vector<int> kSizes{1'000'000,
                              kSanitized || !emulator().isEmpty() ? 4'000'000 : 20'000'000};
constexpr QSize kPagePixels{1000, 500};
constexpr qint64 kPageBytes = 4 * 1000 * 500;

struct DestroyManager
{
    void operator()(DocDisplayMgr *manager) const { manager->Destroy(); }
};
using Manager = std::unique_ptr<DocDisplayMgr, DestroyManager>;

Manager managerOf(DocCovRslt::DOCRSLT_TYPE kind, const QStringList &files)
{
    Manager manager(CreateDisplayMgr());
    manager->Init(kind, files.size());
    for (int page = 0; page < files.size(); ++page)
        manager->AddDocPage(static_cast<unsigned int>(page), files.at(page));
    return manager;
}

/// At the start of a step, in which a shape as high as the page flies in within 1 s and a small one
/// within 1.5 s.
class RunningPlayer : public OpenPlayer
{
public:
    explicit RunningPlayer(float top = 0)
    {
        const auto picture = [](QSize size) {
            QImage image(size, QImage::Format_ARGB32);
            image.fill(QColor(10, 20, 30, 40));
            return PageFiles::encoded(image);
        };
        QImage background(kPagePixels, QImage::Format_RGB32);
        background.fill(Qt::gray);
        const auto height = float(kPagePixels.height());
        Init(kPage,
             modelBytes({newPage({newShape(1, 100, top, 50, height, picture({50, 500})),
                                  newShape(2, 40, top + 10, 90, 90, picture({90, 90}))},
                                 {newEffect(kClick, 1, 1), newEffect(kWith, 1.5F, 2)},
                                 PageFiles::encoded(background))}),
             25);
        SetCachPic(true);
        SetAnimStep(1);
    }

    static constexpr qint64 kPictureBytes = 4 * (50 * 500 + 90 * 90);
};

// What is wrong with that a run takes `bytes`: pages, the shapes' pictures once more, little else.
QString excessOverPages(qint64 bytes, int pages)
{
    const qint64 bound = pages * kPageBytes + RunningPlayer::kPictureBytes + 50'000;
    return bytes < bound ? QString() : QStringLiteral("%1 of %2 bytes").arg(bytes).arg(bound);
}

template <typename Work>
qint64 highestWhile(Work work)
{
    const LiveBytes::Count count;
    work();
    return count.highest();
}

// What is wrong with that the library takes `bytes` for a file of `n`, and `pictures` are Qt's.
QString excess(qint64 bytes, qint64 n, qint64 pictures = 0)
{
    const qint64 bound = 4 * n + 16 * kMiB + pictures;
    return bytes < bound ? QString() : QStringLiteral("%1 of %2 bytes").arg(bytes).arg(bound);
}

QImage decoded(const QByteArray &picture)
{
    QImage image;
    image.loadFromData(picture);
    return image;
}

// A picture of 4000 x 3000 pixels, all of one colour.
QByteArray fewBytes(QImage::Format format)
{
    QImage image(4000, 3000, format);
    image.fill(Qt::gray);
    return PageFiles::encoded(image, "PNG", 0);
}

void addModel(const char *name, Make make)
{
    for (const int size : kSizes)
        QTest::addRow("%s, %d", name, size) << make << size;
}

void addModelColumns()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<int>("size");
}

} // namespace

/// The library's own memory for a file of n bytes stays below 4 n + 16 MiB. It is counted as bytes
/// asked of the allocator: what that adds to each block is its own. Beside it is what Qt takes for
/// pictures, which a few bytes may announce to be large.
class TestMemoryBound : public QObject
{
    Q_OBJECT

private:
    const QTemporaryDir dir;

    // A page file; its content is not in memory any more.
    QString pageFile(qint32 format, const QByteArray &payload) const
    {
        return PageFiles::write(dir, QStringLiteral("page"),
                                PageFiles::pageResultFile(format, payload));
    }
    QString modelFile() const
    {
        QFETCH(Make, make);
        QFETCH(int, size);
        return pageFile(3, make(size));
    }
    QString smallFile() const
    {
        return PageFiles::write(dir, QStringLiteral("small"),
                                PageFiles::pageResultFile(2, TinyPictures::jpg()));
    }

    // A pipe with the content of a file, which `read` is to read once.
    template <typename Read>
    void throughPipe(const QString &file, Read read) const
    {
        const QString pipe = dir.filePath(QStringLiteral("pipe"));
        QFile::remove(pipe);
        QCOMPARE(mkfifo(pipe.toUtf8().constData(), 0600), 0);
        std::thread writer([&] {
            QFile from(file);
            QFile to(pipe);
            if (!from.open(QIODevice::ReadOnly) ||
                !to.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
                return;
            std::array<char, 65536> block;
            for (qint64 got = 0; (got = from.read(block.data(), block.size())) > 0;)
                to.write(block.data(), got);
        });
        read(pipe);
        writer.join();
    }

private Q_SLOTS:
    void whatIsCounted()
    {
        const LiveBytes::Count count;
        void *block = malloc(1000);
        QCOMPARE(count.kept(), qint64(1000));
        block = realloc(block, 3000);
        QCOMPARE(count.kept(), qint64(3000));
        free(block);
        char *volatile bytes = new char[500]; // which no compiler leaves out
        QCOMPARE(count.kept(), qint64(500));
        delete[] bytes;
        QCOMPARE(count.kept(), qint64(0));
        QCOMPARE(count.highest(), qint64(4000)); // a block that grows may have to move
    }

    void slides_data()
    {
        addModelColumns();
        addModel("clicks", clicks);
        addModel("empty shapes", emptyShapes);
        addModel("shapes of a byte", shapesOfAByte);
        addModel("shapes and clicks", shapesAndClicks);
        addModel("empty pages", emptyPages);
        addModel("pages of a byte", pagesOfAByte);
        addModel("a long background", longBackground);
        addModel("a long shape", longShape);
    }
    void slides()
    {
        const QString file = modelFile();
        const qint64 n = QFileInfo(file).size();
        const Manager manager = managerOf(DocCovRslt::DOCRSLT_PPT_ANIM, {smallFile(), file});
        QImage image;
        const qint64 shownAside = highestWhile([&] { image = manager->GetImg({kPage, 1, 0}); });
        QCOMPARE(image.size(), QSize(4, 3));
        QCOMPARE(excess(shownAside, n), QString());
        const qint64 played = highestWhile([&] {
            manager->SetCurPage(kPage);
            image = manager->GetImg();
        });
        QCOMPARE(image.size(), QSize(4, 3));
        QCOMPARE(excess(played, n), QString());
    }

    // A deck may have any number of them.
    void anEmptyPicture()
    {
        QDataStream stream(QByteArray(4, '\0'));
        QByteArray picture;
        const LiveBytes::Count count;
        readByteArray(stream, picture);
        QCOMPARE(stream.status(), QDataStream::Ok);
        QCOMPARE(count.highest(), qint64(0));
    }

    // With the bytes kept by the caller, whose they are.
    void aPlayer_data()
    {
        addModelColumns();
        addModel("clicks", clicks);
        addModel("empty shapes", emptyShapes);
    }
    void aPlayer()
    {
        QFETCH(Make, make);
        QFETCH(int, size);
        const QByteArray bytes = make(size);
        const std::unique_ptr<PPTAnimDisplayBase> player(CreatePPTAnimDisplayer());
        bool isLoaded = false;
        const qint64 highest = highestWhile([&] { isLoaded = player->Init(kPage, bytes, 25); });
        QVERIFY(isLoaded);
        QCOMPARE(excess(highest, bytes.size()), QString());
    }

    // The counts of a model and the length of a payload are claims.
    void announcedOnly_data()
    {
        QTest::addColumn<QByteArray>("header"); // of the file
        QTest::addColumn<Make>("make");
        QTest::addColumn<int>("countAt"); // of what is announced in the model; -1: nothing
        QTest::addColumn<int>("size");
        const auto row = [](const char *name, const char *header, Make make, int countAt) {
            for (const int size : kSizes)
                QTest::addRow("%s, %d", name, size)
                    << QByteArray::fromHex(header) << make << countAt << size;
        };
        row("a payload of 4 GB", "8888888801010300 0000FFFFFFFF", longBackground, -1);
        row("a payload of 2 GB", "8888888801010300 0000FFFFFF7F", longBackground, -1);
        row("a picture of 2 GB", "8888888801010400 0000FFFFFF7F", longBackground, -1);
        row("pages", nullptr, emptyPages, 24);
        row("effects", nullptr, clicks, int(onePage({}, {}).size()) - 4);
        row("shapes", nullptr, emptyShapes, int(onePage({}, {}).size()) - 8);
    }
    void announcedOnly()
    {
        QFETCH(QByteArray, header);
        QFETCH(Make, make);
        QFETCH(int, countAt);
        QFETCH(int, size);
        QByteArray model = make(size);
        if (countAt >= 0)
            overwrite<qint32>(model, countAt, kMost);
        if (header.isEmpty())
            header = PageFiles::pageResultFile(3, model).left(14);
        const QString file = PageFiles::write(dir, QStringLiteral("page"), header + model);
        model.clear();
        const LogSpy log;
        const Manager manager = managerOf(DocCovRslt::DOCRSLT_PPT_ANIM, {smallFile(), file});
        QImage image;
        const qint64 highest = highestWhile([&] { image = manager->GetImg({kPage, 0, 0}); });
        QVERIFY(image.isNull());
        QCOMPARE(excess(highest, QFileInfo(file).size()), QString());
    }

    // Room is made by powers of two: for twice as many bytes as there are it would be 128 MiB.
    void aPayloadThatFallsShort()
    {
        const int size = 23'000'000;
        const QString file = PageFiles::write(dir, QStringLiteral("page"),
                                              QByteArray::fromHex("8888888801010400 0000FFFFFF7F") +
                                                  QByteArray(size, 'p'));
        const LogSpy log;
        QByteArray payload;
        const qint64 highest =
            highestWhile([&] { QCOMPARE(EmfDeal::decodeEmf(file, payload), 5); });
        QCOMPARE(payload.size(), size);
        QCOMPARE(excess(highest, size), QString());
    }

    void pictures_data()
    {
        QTest::addColumn<QByteArray>("picture");
        QTest::addColumn<QSize>("pixels");
        for (const int size : kSizes) {
            QTest::addRow("png and padding, %d", size)
                << padded(TinyPictures::png(), size) << QSize(4, 3);
            QTest::addRow("jpg and padding, %d", size)
                << padded(TinyPictures::jpg(), size) << QSize(2, 2);
            const QSize pixels(1000, size / 4000);
            QTest::addRow("bmp, %d", size) << PageFiles::picture(Qt::red, "BMP", pixels) << pixels;
        }
        QTest::addRow("a small file of many pixels")
            << fewBytes(QImage::Format_RGB32) << QSize(4000, 3000);
    }
    void pictures()
    {
        QFETCH(QByteArray, picture);
        const qint64 qtTakes = highestWhile([&] { decoded(picture); });
        const QString file = pageFile(4, picture);
        picture.clear();
        const Manager manager = managerOf(DocCovRslt::DOCRSLT_PICTURE, {file});
        QImage image;
        const qint64 highest = highestWhile([&] { image = manager->GetImg(); });
        QTEST(image.size(), "pixels");
        QCOMPARE(excess(highest, QFileInfo(file).size(), qtTakes), QString());
    }

    // Of a slide with its 48 MB of pixels there are the cached one and the frame.
    void theBackgroundOfASlide()
    {
        const QString file = pageFile(3, onePage({}, {}, fewBytes(QImage::Format_Grayscale8)));
        for (const auto kind : {DocCovRslt::DOCRSLT_PPT_ANIM, DocCovRslt::DOCRSLT_PICTURE}) {
            const Manager manager = managerOf(kind, {smallFile(), file});
            QImage image;
            const qint64 highest = highestWhile([&] {
                manager->SetCurPage(kPage);
                image = manager->GetImg();
            });
            QCOMPARE(image.size(), QSize(4000, 3000));
            QCOMPARE(excess(highest, QFileInfo(file).size(), 2 * 48'000'000), QString());
        }
    }

    // With a host that holds some of the images, which are its own.
    void aRun_data()
    {
        QTest::addColumn<int>("held");
        QTest::addColumn<int>("mostFresh"); // of 20 images
        QTest::addColumn<int>("pages");     // that are the player's
        QTest::newRow("none held") << 0 << 0 << 3;
        QTest::newRow("one held") << 1 << 0 << 4;
        QTest::newRow("two held") << 2 << 0 << 5;
        QTest::newRow("three held") << 3 << 7 << 5;
        QTest::newRow("four held") << 4 << 20 << 5;
        QTest::newRow("all held") << 30 << 20 << 5;
    }
    void aRun()
    {
        QFETCH(int, held);
        QFETCH(int, mostFresh);
        QFETCH(int, pages);
        RunningPlayer player;
        const LiveBytes::Count count;
        std::vector<QImage> host(static_cast<size_t>(held));
        int fresh = 0; // images in memory of their own
        for (unsigned int frame = 0; frame < 24; ++frame) {
            player.SetAnimPassedDuration(frame * 40);
            const LiveBytes::Count ofFrame;
            QImage image = player.GetImg();
            fresh += frame >= 4 && ofFrame.highest() > kPageBytes / 10;
            if (held > 0)
                host[frame % host.size()] = std::move(image);
        }
        QVERIFY2(fresh <= mostFresh, qPrintable(QString::number(fresh)));
        QCOMPARE(excessOverPages(count.highest(), 5 + held), QString());
        host.clear();
        QCOMPARE(excessOverPages(count.kept(), pages), QString());
        player.SetAnimPassedDuration(1500);
        player.GetImg(); // which is kept in case it is asked for again
        QCOMPARE(excessOverPages(count.kept(), 1), QString());
        player.ClearPicCachs();
        // With the pictures that were decoded before.
        QCOMPARE(excessOverPages(count.kept() + 2 * RunningPlayer::kPictureBytes, -1), QString());
    }

    // Which are taken for lost, after a while.
    void imagesThatAHostKeeps()
    {
        RunningPlayer player;
        std::vector<QImage> host;
        QImage shown;
        for (unsigned int frame = 0; frame < 24; ++frame) {
            player.SetAnimPassedDuration(frame * 40);
            const LiveBytes::Count ofFrame;
            shown = player.GetImg();
            const qint64 taken = ofFrame.highest();
            QVERIFY2(frame < 16 || taken < kPageBytes / 10, qPrintable(QString::number(taken)));
            if (frame == 3 || frame == 5)
                host.push_back(shown);
        }
    }

    // Earlier it would be in vain.
    void theBeginOfARun_data()
    {
        QTest::addColumn<QVector<unsigned int>>("times"); // of the images, ms
        QTest::addColumn<bool>("isPrepared");
        const auto row = [](const char *name, const QVector<unsigned int> &times, bool isPrepared) {
            QTest::newRow(name) << times << isPrepared;
        };
        row("one image", {40}, false);
        row("two", {40, 80}, true);
        row("the same twice", {40, 40}, false);
        row("at rest between them", {40, 2000, 80}, false);
        row("200 ms left of one", {100, 800}, true);
        row("199 ms left of one", {100, 801}, false);
        row("less moves than before", {100, 1100}, false);
        row("less moves, twice", {100, 1100, 1140}, true);
        row("200 ms left", {1100, 1300}, true);
        row("199 ms left", {1100, 1301}, false);
    }
    void theBeginOfARun()
    {
        QFETCH(QVector<unsigned int>, times);
        QFETCH(bool, isPrepared);
        RunningPlayer player;
        const LiveBytes::Count count;
        for (const unsigned int ms : times) {
            player.SetAnimPassedDuration(ms);
            player.GetImg();
        }
        QCOMPARE(excessOverPages(count.kept(), 1).isEmpty(), !isPrepared);
    }

    // Nothing of what is below them is kept.
    void aRunBeyondThePage()
    {
        RunningPlayer player(1000);
        const LiveBytes::Count count;
        for (unsigned int frame = 0; frame < 10; ++frame) {
            player.SetAnimPassedDuration(frame * 40);
            player.GetImg();
        }
        QCOMPARE(excessOverPages(count.kept(), 2), QString());
        QVERIFY(!excessOverPages(count.kept(), 1).isEmpty());
    }

    // Of which two images are needed once more.
    void theBeginOfAnotherRun()
    {
        RunningPlayer player;
        const LiveBytes::Count count;
        for (const unsigned int ms : {40U, 80U, 120U}) {
            player.StopRun();
            player.SetAnimPassedDuration(ms);
            player.GetImg();
        }
        QCOMPARE(excessOverPages(count.kept(), 1), QString());
    }

    // What was prepared for earlier images is dropped before.
    void preparingAgain()
    {
        RunningPlayer player;
        const LiveBytes::Count count;
        for (const unsigned int ms : {700U, 740U, 1020U, 1060U}) {
            player.SetAnimPassedDuration(ms);
            player.GetImg();
        }
        QVERIFY2(count.highest() < 4 * kPageBytes, qPrintable(QString::number(count.highest())));
    }

    // When the one as high as the page has come to rest, there is less to be repainted.
    void theRestOfARun()
    {
        RunningPlayer player;
        const LiveBytes::Count count;
        for (const unsigned int ms : {700U, 740U, 1020U, 1060U}) {
            player.SetAnimPassedDuration(ms);
            player.GetImg();
        }
        const qint64 kept = count.kept();
        QVERIFY2(kept > 2 * kPageBytes && kept < 5 * kPageBytes / 2,
                 qPrintable(QString::number(kept)));
    }

    void theEndOfARun_data()
    {
        QTest::addColumn<Act>("end");
        QTest::addColumn<int>("pages"); // that are left
        const auto row = [](const char *name, int pages, const Act &end) {
            QTest::newRow(name) << end << pages;
        };
        row("another frame", 1, [](OpenPlayer &player) {
            player.SetAnimPassedDuration(1500);
            player.GetImg();
        });
        row("StopRun", 1, [](OpenPlayer &player) { player.StopRun(); });
        row("SetAnimStep", 1, [](OpenPlayer &player) { player.SetAnimStep(1); });
        row("prevStep", 1, [](OpenPlayer &player) { player.prevStep(); });
        row("GotoEnd", 1, [](OpenPlayer &player) { player.GotoEnd(); });
        row("the timer", 1, [](OpenPlayer &player) {
            QSignalSpy finished(&player, &PPTAnimDisplay::s_AnimFnished);
            player.animTimer.setInterval(1);
            player.StartRun();
            player.SetAnimPassedDuration(1500);
            QVERIFY(finished.wait());
        });
        row("ClearPicCachs", 0, [](OpenPlayer &player) { player.ClearPicCachs(); });
        row("SetCachPic", 0, [](OpenPlayer &player) { player.SetCachPic(false); });
        row("Clear", 0, [](OpenPlayer &player) { player.Clear(); });
    }
    void theEndOfARun()
    {
        QFETCH(Act, end);
        QFETCH(int, pages);
        RunningPlayer player;
        const LiveBytes::Count count;
        for (unsigned int frame = 0; frame < 10; ++frame) {
            player.SetAnimPassedDuration(frame * 40);
            player.GetImg();
        }
        QVERIFY(count.kept() > 2 * kPageBytes);
        end(player);
        QCOMPARE(excessOverPages(count.kept(), pages), QString());
    }

    void pipes_data()
    {
        addModelColumns();
        addModel("clicks", clicks);
        addModel("empty shapes", emptyShapes);
    }
    void pipes()
    {
        const QString file = modelFile();
        throughPipe(file, [&](const QString &pipe) {
            const Manager manager = managerOf(DocCovRslt::DOCRSLT_PPT_ANIM, {smallFile(), pipe});
            const QSignalSpy updates(manager.get(), &DocDisplayMgr::s_PptAnimUpdate);
            const qint64 highest = highestWhile([&] { manager->SetCurPage(kPage); });
            QCOMPARE(updates.size(), 1); // it was loaded
            QCOMPARE(excess(highest, QFileInfo(file).size()), QString());
        });
    }

    // A pipe does not tell its size; what is read of one keeps no room for more.
    void thePayloadOfAPipe()
    {
        const int size = (1 << 20) + 1;
        throughPipe(pageFile(4, padded(TinyPictures::png(), size)), [&](const QString &pipe) {
            const LiveBytes::Count count;
            QByteArray payload;
            QCOMPARE(EmfDeal::decodeEmf(pipe, payload), 4);
            QCOMPARE(payload.size(), size);
            QVERIFY2(payload.capacity() <= size + 1,
                     qPrintable(QString::number(payload.capacity())));
            QCOMPARE(excess(count.highest(), size), QString());
        });
    }

    void encoderJobs_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<bool>("isDone");
        QTest::addColumn<int>("size");
        for (const int size : kSizes) {
            QTest::addRow("wrapped, %d", size) << 4 << true << size;
            QTest::addRow("of no format, %d", size) << 5 << false << size;
            QTest::addRow("rendered, %d", size) << 0 << false << size; // no renderer
        }
    }
    void encoderJobs()
    {
        QFETCH(int, format);
        QFETCH(bool, isDone);
        QFETCH(int, size);
        const QString input = PageFiles::write(dir, QStringLiteral("input"), QByteArray(size, 'i'));
        const LogSpy log;
        EmfDeal encoder;
        QEventLoop loop;
        QObject::connect(&encoder, &EmfDeal::s_EmfEncodeFinished, &loop, [&] { loop.exit(1); });
        QObject::connect(&encoder, &EmfDeal::s_EmfEncodeFailed, &loop, [&] { loop.exit(0); });
        encoder.start();
        int outcome = -1;
        const qint64 highest = highestWhile([&] {
            encoder.startEmfEncode("job", static_cast<DocCovRslt::PAGE_FORMAT_DEF>(format), {input},
                                   dir.filePath(QStringLiteral("out")));
            outcome = loop.exec();
        });
        encoder.quit();
        encoder.wait();
        QCOMPARE(outcome, isDone ? 1 : 0);
        QCOMPARE(excess(highest, size), QString());
    }

    void helpers_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : kSizes)
            QTest::addRow("%d", size) << size;
    }
    void helpers()
    {
        QFETCH(int, size);
        const QString file = PageFiles::write(dir, QStringLiteral("file"), QByteArray(size, 'f'));
        QCOMPARE(excess(highestWhile([&] {
                            QByteArray data;
                            ReadDataFromFile(file, data);
                            QCOMPARE(data.size(), size);
                        }),
                        size),
                 QString());
        QCOMPARE(excess(highestWhile([&] {
                            QString md5;
                            QCOMPARE(GetFileMd5(file, md5), 0);
                        }),
                        size),
                 QString());
    }

    // One line that is the whole file, of which the library reads as much as it likes.
    void configurationFiles_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("1 MiB") << 1024 * 1024;
        QTest::newRow("16 MiB") << 16 * 1024 * 1024;
    }
    void configurationFiles()
    {
        QFETCH(int, size);
        const QString file =
            PageFiles::write(dir, QStringLiteral("file"), "Ver=" + QByteArray(size - 4, '1'));
        QCOMPARE(
            excess(highestWhile([&] { GetInifileString({}, QStringLiteral("Ver"), file); }), size),
            QString());
    }
};

QTEST_GUILESS_MAIN(TestMemoryBound)
#include "tst_memorybound.moc"
