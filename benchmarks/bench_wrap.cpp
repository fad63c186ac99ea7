// `docpage wrap` of many pictures against `cp` of the same files, and its peak memory with few and
// with many pictures. The exit status is 1 when a bound is missed.
#include "CommandRun.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

constexpr int kPictures = 1000;
constexpr int kBytes = 500'000; // about, of a picture's file

// A picture of noise, which takes about `bytes` bytes as a file.
QByteArray noise(const char *format, int bytes)
{
    QByteArray file;
    double side = 100;
    for (int attempt = 0; attempt < 3; ++attempt) {
        QImage image(static_cast<int>(side), static_cast<int>(side), QImage::Format_RGB32);
        QRandomGenerator random(1);
        for (int y = 0; y < image.height(); ++y) {
            auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(y));
            std::generate_n(pixels, image.width(), [&] { return random.generate() | 0xFF000000U; });
        }
        QBuffer buffer(&file);
        require(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, format), "no picture");
        side *= std::sqrt(static_cast<double>(bytes) / file.size());
    }
    return file;
}

/// Picture files, PNG and JPG by turns, and a place for the results beside them.
class Pictures
{
public:
    Pictures(int count, int bytes)
    {
        const QByteArray kinds[] = {noise("PNG", bytes), noise("JPG", bytes)};
        for (int i = 0; i < count; ++i) {
            QFile file(dir.filePath(QStringLiteral("picture%1").arg(i)));
            const QByteArray &picture = kinds[i % 2];
            require(file.open(QIODevice::WriteOnly) && file.write(picture) == picture.size(),
                    "cannot write a picture");
            paths.push_back(file.fileName().toStdString());
        }
    }

    int count() const { return static_cast<int>(paths.size()); }
    QString path(int index) const { return QString::fromStdString(paths[size_t(index)]); }

    /// `command` followed by the paths of all pictures.
    std::vector<std::string> after(std::vector<std::string> command) const
    {
        command.insert(command.end(), paths.begin(), paths.end());
        return command;
    }

    /// An empty folder.
    std::string results() const
    {
        QDir folder(dir.filePath(QStringLiteral("results")));
        require(folder.removeRecursively() && folder.mkpath(QStringLiteral(".")), "no folder");
        return folder.path().toStdString();
    }

private:
    QTemporaryDir dir;
    std::vector<std::string> paths;
};

Usage runCopy(const Pictures &pictures)
{
    return run(pictures.after({"cp", "-t", pictures.results()}));
}

Usage runWrap(const Pictures &pictures)
{
    return run(pictures.after({DOCPAGE_PROGRAM, "wrap", "-o", pictures.results()}));
}

// A page result file is a head and the picture.
void requireSamePictures(const Pictures &pictures)
{
    const QDir folder(QString::fromStdString(pictures.results()));
    require(
        run(pictures.after({DOCPAGE_PROGRAM, "wrap", "-o", folder.path().toStdString()})).seconds >
            0,
        "wrap failed");
    const QStringList made = folder.entryList(QDir::Files, QDir::Name);
    require(made.size() == pictures.count(), "wrap made another number of pages");
    for (int i = 0; i < made.size(); ++i) {
        constexpr int kHead = 14;
        QFile page(folder.filePath(made[i]));
        QFile picture(pictures.path(i));
        require(page.open(QIODevice::ReadOnly) && picture.open(QIODevice::ReadOnly) &&
                    page.readAll().mid(kHead) == picture.readAll(),
                "a page holds another picture");
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const Pictures few(10, kBytes);
    const Pictures many(kPictures, kBytes);
    requireSamePictures(few);

    addBenchmark("wrap/1000_pictures", 9, [&](Turns &turns) {
        turns.compare([&] { return runWrap(many).seconds; }, [&] { return runCopy(many).seconds; });
    });
    addBenchmark("wrap/memory", 1, [&](Turns &turns) {
        turns.measure([&] { return runWrap(many).peakKiB - runWrap(few).peakKiB; });
    });
    return runBenchmarks(argc, argv);
}
