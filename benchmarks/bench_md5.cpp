// GetFileMd5() of a large file against `md5sum` of the same file, and its peak memory with an empty
// file and with the large one. The exit status is 1 when a bound is missed.
#include "CommandRun.h"
#include "common/FileHelper.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstring>

namespace {

constexpr int kMebibytes = 256;
constexpr int kMiB = 1 << 20;

/// A file of so many MiB, no two of them alike.
class LargeFile
{
public:
    explicit LargeFile(int mebibytes)
        : path(dir.filePath(QStringLiteral("file")).toStdString())
    {
        QFile file(QString::fromStdString(path));
        require(file.open(QIODevice::WriteOnly), "cannot write the file");
        QByteArray part(kMiB, '\0');
        for (int i = 0; i < part.size(); ++i)
            part[i] = static_cast<char>(i % 251);
        for (int i = 0; i < mebibytes; ++i) {
            std::memcpy(part.data(), &i, sizeof i);
            require(file.write(part) == part.size(), "cannot write the file");
        }
    }

    /// `command` followed by the path.
    std::vector<std::string> after(std::vector<std::string> command) const
    {
        command.push_back(path);
        return command;
    }

private:
    QTemporaryDir dir;
    std::string path;
};

// Two programs that do not find the same are not worth comparing.
void requireEqualDigests(const LargeFile &file)
{
    const QString name = QString::fromStdString(file.after({}).front());
    QProcess md5sum;
    md5sum.start(QStringLiteral("md5sum"), {name});
    require(md5sum.waitForFinished(-1) && md5sum.exitCode() == 0, "md5sum failed");
    QString md5;
    require(GetFileMd5(name, md5) == 0, "GetFileMd5 failed");
    require(md5 == QString::fromLatin1(md5sum.readAllStandardOutput().left(32)),
            "the digests differ");
}

Usage runMd5Sum(const LargeFile &file)
{
    return run(file.after({"md5sum"}));
}

// This program, see main().
Usage runGetFileMd5(const LargeFile &file)
{
    return run(file.after({"/proc/self/exe", "--digest"}));
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 3 && std::strcmp(argv[1], "--digest") == 0) {
        QString md5;
        return GetFileMd5(QString::fromLocal8Bit(argv[2]), md5);
    }
    const LargeFile file(kMebibytes);
    requireEqualDigests(file);

    addBenchmark("md5/256_MiB", 9, [&](Turns &turns) {
        turns.compare([&] { return runGetFileMd5(file).seconds; },
                      [&] { return runMd5Sum(file).seconds; });
    });
    addBenchmark("md5/memory", 1, [&](Turns &turns) {
        const LargeFile empty(0);
        turns.measure([&] { return runGetFileMd5(file).peakKiB - runGetFileMd5(empty).peakKiB; });
    });
    return runBenchmarks(argc, argv);
}
