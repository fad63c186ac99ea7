#include "TinyPdf.h"
#include "tools/docimport/pdf/SlideWorkers.h"
#include "tools/docpage/EndRequest.h"

#include <QMutex>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <new>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

void noProgress(int) {}

} // namespace

/// The threads that work on slides, and the PDF documents that they have.
class TestSlideWorkers : public QObject
{
    Q_OBJECT

private:
    QString write(const char *name, const QByteArray &pdf) const
    {
        QFile file(m_folder.filePath(text(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(pdf) != pdf.size())
            qFatal("cannot write the test's file");
        return file.fileName();
    }

    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase() { PdfFile::silence(); }

    // Each slide once, and the progress to its end.
    void allSlides_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {0, 1, 2, 5, 1000})
            QTest::addRow("%d", count) << count;
    }
    void allSlides()
    {
        QFETCH(int, count);
        const EndRequest request;
        QMutex mutex;
        QVector<int> calls(count, 0);
        QVector<int> progress;
        const QString fault = workOnSlides(
            count,
            [&](int slide, SlideTools &) {
                const QMutexLocker lock(&mutex);
                ++calls[slide];
                return QString();
            },
            60, request, [&progress](int done) { progress << done; });
        QCOMPARE(fault, QString());
        QCOMPARE(calls, QVector<int>(count, 1));
        QVERIFY(!progress.isEmpty());
        QVERIFY(std::is_sorted(progress.begin(), progress.end()));
        QVERIFY(progress.constLast() <= count);
    }

    // What is under way is told to stop, and nothing else is begun.
    void firstFault()
    {
        const EndRequest request;
        std::atomic<int> calls{0};
        const QString fault = workOnSlides(
            1000,
            [&](int slide, SlideTools &tools) {
                ++calls;
                if (slide == 3)
                    return text("third");
                while (slide > 3 && !tools.isStopped())
                    QThread::yieldCurrentThread();
                return slide > 3 ? text("stopped") : QString();
            },
            60, request, noProgress);
        QCOMPARE(fault, text("third"));
        QVERIFY2(calls <= 8,
                 qPrintable(QString::number(calls))); // no more than one for each thread
    }

    void outOfMemory()
    {
        const EndRequest request;
        const QString fault = workOnSlides(
            4, [](int, SlideTools &) -> QString { throw std::bad_alloc(); }, 60, request,
            noProgress);
        QCOMPARE(fault, text("out of memory"));
    }

    void endRequest()
    {
        const EndRequest request;
        std::atomic<int> calls{0};
        const QString fault = workOnSlides(
            1000,
            [&](int, SlideTools &tools) {
                if (++calls == 1)
                    ::raise(SIGTERM);
                while (!tools.isStopped())
                    QThread::yieldCurrentThread();
                return text("stopped");
            },
            60, request, noProgress);
        QCOMPARE(fault, QString());
        QVERIFY2(calls <= 4, qPrintable(QString::number(calls)));
    }

    // Of each slide anew.
    void timeLimit()
    {
        const EndRequest request;
        const QString fault = workOnSlides(
            2,
            [](int, SlideTools &tools) {
                if (tools.isStopped())
                    return text("too early");
                while (!tools.isStopped())
                    QThread::yieldCurrentThread();
                return tools.deadline.hasExpired() ? QString() : text("no time limit");
            },
            1, request, noProgress);
        QCOMPARE(fault, QString());
    }

    void documents()
    {
        const QString good = write("good.pdf", TinyPdf::document({TinyPdf::page(20, 10, "1 0 0")}));
        const QString bad = write("bad.pdf", "%PDF-1.4\n");
        PdfCache cache;
        const PdfFile *first = nullptr;
        QCOMPARE(cache.open(good, first), QString());
        QCOMPARE(first->pageCount(), 1);
        QCOMPARE(first->pageSize(0), QSizeF(20, 10));
        QVERIFY(first->pageSize(1).isEmpty());
        const PdfFile *second = nullptr;
        QCOMPARE(cache.open(good, second), QString());
        QCOMPARE(second, first);
        for (int i = 0; i < 2; ++i)
            QCOMPARE(cache.open(bad, second), text("damaged, or no PDF document"));
        QCOMPARE(cache.open(m_folder.filePath(text("missing")), second),
                 text("No such file or directory"));
    }

    // Where nothing is drawn, the paper shows.
    void paper()
    {
        PdfFile file;
        QCOMPARE(file.open(write("half.pdf",
                                 TinyPdf::document({{"/MediaBox [0 0 20 10]",
                                                     TinyPdf::rectangle("1 0 0", "0 0 10 10")}}))),
                 QString());
        const auto never = [] { return false; };
        for (const QRgb paper : {0xffffff00, 0xffffffff, 0xff000000}) {
            const QImage image = file.render(0, {40, 20}, QColor(paper), never);
            QCOMPARE(image.format(), QImage::Format_RGB32);
            QCOMPARE(image.size(), QSize(40, 20));
            QCOMPARE(image.pixel(10, 10), 0xffff0000);
            QCOMPARE(image.pixel(30, 10), paper);
        }
        // Exactly as large as it is asked for, whatever its form is.
        const QImage square = file.render(0, {30, 30}, Qt::white, never);
        QCOMPARE(square.size(), QSize(30, 30));
        QCOMPARE(square.pixel(14, 29), 0xffff0000);
        QCOMPARE(square.pixel(15, 0), 0xffffffff);
        QVERIFY(file.render(0, {40, 20}, Qt::white, [] { return true; }).isNull());
        QVERIFY(file.render(1, {40, 20}, Qt::white, never).isNull());
    }
};

QTEST_GUILESS_MAIN(TestSlideWorkers)

#include "tst_slideworkers.moc"
