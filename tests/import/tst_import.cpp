#include "DocimportTest.h"

#include <QDir>
#include <QRegularExpression>
#include <QTcpServer>

#include <csignal>

#include <sys/socket.h>
#include <sys/un.h>

namespace {

constexpr QRgb kLinked = 0xff00c864; // of files that decks link

// A deck as flat XML, with slides of 28 x 15.75 cm.
QByteArray deckOf(const QByteArray &pages)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<office:document\n"
           " xmlns:draw=\"urn:oasis:names:tc:opendocument:xmlns:drawing:1.0\"\n"
           " xmlns:fo=\"urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0\"\n"
           " xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\"\n"
           " xmlns:presentation=\"urn:oasis:names:tc:opendocument:xmlns:presentation:1.0\"\n"
           " xmlns:style=\"urn:oasis:names:tc:opendocument:xmlns:style:1.0\"\n"
           " xmlns:svg=\"urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0\"\n"
           " xmlns:text=\"urn:oasis:names:tc:opendocument:xmlns:text:1.0\"\n"
           " xmlns:xlink=\"http://www.w3.org/1999/xlink\"\n"
           " office:version=\"1.2\" "
           "office:mimetype=\"application/vnd.oasis.opendocument.presentation\">\n"
           "<office:automatic-styles>\n"
           "<style:style style:name=\"hidden\" style:family=\"drawing-page\">\n"
           "<style:drawing-page-properties presentation:visibility=\"hidden\"/>\n"
           "</style:style>\n"
           "<style:style style:name=\"red\" style:family=\"graphic\">\n"
           "<style:graphic-properties draw:stroke=\"none\" draw:fill=\"solid\" "
           "draw:fill-color=\"#ff0000\"/>\n"
           "</style:style>\n"
           "<style:style style:name=\"blue\" style:family=\"graphic\">\n"
           "<style:graphic-properties draw:stroke=\"none\" draw:fill=\"solid\" "
           "draw:fill-color=\"#0000ff\"/>\n"
           "</style:style>\n"
           "<style:style style:name=\"linked\" style:family=\"graphic\">\n"
           "<style:graphic-properties draw:stroke=\"none\" draw:fill=\"solid\" "
           "draw:fill-color=\"#00c864\"/>\n"
           "</style:style>\n"
           "</office:automatic-styles>\n"
           "<office:body><office:presentation>\n" +
           pages + "</office:presentation></office:body></office:document>\n";
}

// A slide whose left half has that style.
QByteArray slide(const QByteArray &name, const QByteArray &half, const QByteArray &attributes = {})
{
    return "<draw:page draw:name=\"" + name + "\" " + attributes +
           "><draw:rect draw:style-name=\"" + half +
           "\" svg:x=\"0cm\" svg:y=\"0cm\" svg:width=\"14cm\" "
           "svg:height=\"15.75cm\"/></draw:page>\n";
}

QByteArray smallDeck()
{
    return deckOf(slide("one", "red") + slide("two", "blue", "draw:style-name=\"hidden\"") +
                  slide("three", "red"));
}

// A slide that links pictures, objects and film in a folder or on a server.
QByteArray linkingDeck(const QByteArray &base)
{
    const auto frame = [&](const QByteArray &element, const QByteArray &name) {
        return "<draw:frame svg:x=\"1cm\" svg:y=\"1cm\" svg:width=\"9cm\" svg:height=\"9cm\">"
               "<draw:" +
               element + " xlink:href=\"" + base + name +
               "\" xlink:type=\"simple\" xlink:show=\"embed\" xlink:actuate=\"onLoad\"/>"
               "</draw:frame>\n";
    };
    return deckOf("<draw:page draw:name=\"one\">\n" + frame("image", "picture.png") +
                  frame("object", "deck.fodp") + frame("object-ole", "other.fodp") +
                  frame("floating-frame", "page.html") + frame("plugin", "film.mp4") +
                  "</draw:page>\n");
}

// The sockets of engines that nobody listens to any more.
QStringList staleSockets()
{
    QStringList stale;
    const QDir folder(text("/tmp"));
    for (const QString &name : folder.entryList({text("OSL_PIPE_*")}, QDir::System)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(folder.filePath(name)).constData(),
                 sizeof address.sun_path);
        const int end = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (::connect(end, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 &&
            errno == ECONNREFUSED)
            stale << name;
        ::close(end);
    }
    return stale;
}

QStringList addedTo(const QStringList &before, QStringList now)
{
    for (const QString &name : before)
        now.removeAll(name);
    return now;
}

} // namespace

/// docimport with the engine itself.
class TestImport : public DocimportTest
{
    Q_OBJECT

private Q_SLOTS:
    // From the deck to pages, with those that are hidden.
    void deck()
    {
        place->write(text("a.fodp"), smallDeck());
        const QStringList sockets = staleSockets();
        verifyDoes(words("a.fodp -o new --static"), "3 page result files in new\n");
        QCOMPARE(QDir(place->path(text("new")))
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 (QStringList{text("page_0"), text("page_1"), text("page_2")}));
        const QRgb colours[] = {0xffff0000, 0xff0000ff, 0xffff0000};
        for (int i = 0; i < 3; ++i) {
            const QImage page = picture(qPrintable(QStringLiteral("new/page_%1").arg(i)));
            QCOMPARE(page.size(), QSize(1280, 720));
            QCOMPARE(page.pixel(320, 360), colours[i]);
            QCOMPARE(page.pixel(960, 360), 0xffffffff);
        }
        QCOMPARE(processes(), QStringList());
        QTRY_COMPARE(addedTo(sockets, staleSockets()), QStringList()); // others' go in a moment
    }

    // What it is told is not read as anything else, and the first start is not in vain.
    void names_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("folder");
        QTest::newRow("blanks") << text("a b.txt") << text("new folder");
        QTest::newRow("other letters") << text("日本語") << text("äöü");
        QTest::newRow("of no meaning") << text("100%20#?;&'\"$x") << text("a%20b#c?&'\"*");
    }
    void names()
    {
        QFETCH(QString, input);
        QFETCH(QString, folder);
        place->write(input, smallDeck());
        const QStringList sockets = staleSockets();
        const Outcome outcome = place->run(
            {input, text("-o"), folder, text("--static"), text("--keep-work"), text("--pages=2")});
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.status, 0);
        const QString page = folder + text("/page_0");
        QCOMPARE(picture(page.toUtf8().constData()).pixel(320, 360), 0xff0000ff);
        const QStringList work =
            QDir(place->path(folder))
                .entryList({text(".docimport-*-work")}, QDir::Dirs | QDir::Hidden);
        QCOMPARE(work.size(), 1);
        QVERIFY(place->read(folder + text("/%1/reference/engine.log").arg(work.constFirst()))
                    .startsWith("convert "));
        QTRY_COMPARE(addedTo(sockets, staleSockets()), QStringList());
    }

    // Whatever it makes of such a path.
    void namesOfItsOwn_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("a variable") << text("a$HOME");
        QTest::newRow("a list") << text("a;b");
    }
    void namesOfItsOwn()
    {
        QFETCH(QString, folder);
        place->write(text("a.fodp"), smallDeck());
        const QStringList before = QDir(text("/tmp")).entryList({text("docimport-*")});
        verifyDoes({text("a.fodp"), text("-o"), folder, text("--static"), text("--pages=2")},
                   "1 page result file in " + folder.toUtf8() + '\n');
        QCOMPARE(picture((folder + text("/page_0")).toUtf8().constData()).pixel(320, 360),
                 0xff0000ff);
        QCOMPARE(QDir(text("/tmp")).entryList({text("docimport-*")}), before);
        place->write(text("none.fodp"), "opendocument.presentation <draw:page >");
        const Outcome outcome =
            place->run({text("none.fodp"), text("-o"), folder + text("/x"), text("--keep-work")});
        QCOMPARE(outcome.status, 1);
        const QString kept = QString::fromUtf8(outcome.out).section(text(" in "), 1).trimmed();
        QVERIFY2(kept.startsWith(text("/tmp/docimport-")), qPrintable(kept));
        QVERIFY(QFile::exists(kept + text("/deck.fodp")));
        QDir folderOfWork(QFileInfo(kept).path());
        QVERIFY(folderOfWork.removeRecursively());
    }

    // Nobody learns that a deck was imported.
    void linksIntoTheNetwork()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        place->write(text("a.fodp"), linkingDeck("http://127.0.0.1:" +
                                                 QByteArray::number(server.serverPort()) + "/"));
        verifyDoes(words("a.fodp -o new --static"), "1 page result file in new\n");
        QVERIFY(!server.waitForNewConnection(0));
        QVERIFY(!server.hasPendingConnections());
        QCOMPARE(picture("new/page_0").size(), QSize(1280, 720));
    }

    // Nor does anything of the user's get into it.
    void linksToFiles_data()
    {
        QTest::addColumn<bool>("isRelative");
        QTest::newRow("by their names") << false;
        QTest::newRow("beside the deck") << true;
    }
    void linksToFiles()
    {
        QFETCH(bool, isRelative);
        QImage linked(10, 10, QImage::Format_RGB32);
        linked.fill(kLinked);
        QVERIFY(linked.save(place->path(text("picture.png"))));
        for (const char *name : {"other.fodp", "third.fodp"})
            place->write(text(name), deckOf(slide("one", "linked")));
        const QString folder = text("file://") + place->path({}) + QLatin1Char('/');
        place->write(text("a.fodp"), linkingDeck(isRelative ? QByteArray() : folder.toUtf8()));
        verifyDoes(words("a.fodp -o new --static"), "1 page result file in new\n");
        const QImage page = picture("new/page_0");
        for (int y = 0; y < page.height(); ++y) {
            for (int x = 0; x < page.width(); ++x)
                QVERIFY(page.pixel(x, y) != kLinked);
        }
    }

    // It does not wait for films, ten seconds and more for each where nothing plays them.
    void films()
    {
        QByteArray films;
        for (int i = 0; i < 4; ++i)
            films += "<draw:frame svg:x=\"1cm\" svg:y=\"1cm\" svg:width=\"9cm\" svg:height=\"9cm\">"
                     "<draw:plugin xlink:href=\"film.mp4\" "
                     "draw:mime-type=\"application/vnd.sun.star.media\" xlink:type=\"simple\"/>"
                     "</draw:frame>";
        place->write(text("a.fodp"),
                     deckOf("<draw:page draw:name=\"one\">" + films + "</draw:page>"));
        verifyDoes(words("a.fodp -o new --static --timeout 40"), "1 page result file in new\n");
    }

    void unreadable()
    {
        place->write(text("a.fodp"),
                     smallDeck().replace("</office:automatic-styles>", "</broken>"));
        verifyFails(words("a.fodp -o new"), "docimport: a.fodp: LibreOffice cannot read it\n");
    }

    void endsBySignal()
    {
        place->write(text("a.fodp"), smallDeck());
        const QStringList before = place->entries();
        const QStringList sockets = staleSockets();
        ForkedProcess process;
        process.setWorkingDirectory(place->path({}));
        process.setProcessEnvironment(place->environment);
        process.start(place->program, words("a.fodp -o new"));
        QVERIFY(process.waitForStarted());
        // Both engines have come far enough to have their sockets.
        QTRY_COMPARE(place->entries().filter(QRegularExpression(text("/lu[^/]*/$"))).size(), 2);
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardError(),
                 QByteArray("docimport: new: cancelled, no page is made\n"));
        QCOMPARE(process.exitCode(), SIGINT);
        QCOMPARE(place->entries(), before);
        QTRY_COMPARE(processes(), QStringList());
        QTRY_COMPARE(addedTo(sockets, staleSockets()), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestImport)

#include "tst_import.moc"
