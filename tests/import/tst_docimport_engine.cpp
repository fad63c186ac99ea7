#include "DocimportTest.h"
#include "tools/docimport/engine/EngineLocation.h"
#include "tools/docimport/engine/EngineProfile.h"

#include <QDir>
#include <QRegularExpression>

#include <csignal>

#include <linux/landlock.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// A deck as far as docimport looks at it.
constexpr char kDeck[] = "<office:document office:mimetype=\"application/vnd.oasis."
                         "opendocument.presentation\"><draw:page draw:name=\"p\"/>";

// What an engine that works does, beside which lies what it makes.
constexpr char kWork[] = "mkdir -p out && cp \"${0%/*}/result.pdf\" out/deck.pdf\n";

} // namespace

/// docimport with engines that do what is told here: whatever becomes of them, nothing of it stays.
class TestDocimportEngine : public DocimportTest
{
    Q_OBJECT

private:
    void writeProgram(const QString &name, const QByteArray &script) const
    {
        place->write(name, "#!/bin/sh\n" + script);
        QVERIFY(QFile::setPermissions(place->path(name),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    // Starts the program with an engine that never ends, and returns when that runs.
    void startHanging(QProcess &process, const QByteArray &script)
    {
        writeProgram(text("engine"), "touch started\n" + script);
        process.setWorkingDirectory(place->path({}));
        process.setProcessEnvironment(place->environment);
        process.start(place->program, words("a.fodp -o new --static --engine engine"));
        QVERIFY(process.waitForStarted());
        QTRY_VERIFY(!place->entries().filter(text("/started ")).isEmpty());
    }

private Q_SLOTS:
    void init()
    {
        DocimportTest::init();
        place->write(text("a.fodp"), kDeck);
        place->write(text("result.pdf"), TinyPdf::document({TinyPdf::page(10, 10, "1 0 0"),
                                                            TinyPdf::page(10, 10, "0 1 0")}));
    }

    void engineWorks_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("at once") << QByteArray(kWork);
        QTest::newRow("at the second start")
            << "[ -e again ] || { touch again; exit 81; }\n" + QByteArray(kWork);
        QTest::newRow("and says much") << "seq 100000; seq 100000 >&2\n" + QByteArray(kWork);
        QTest::newRow("and leaves a process") << "sleep 1000 &\n" + QByteArray(kWork);
        QTest::newRow("where it may") << "[ \"$HOME\" = \"$PWD\" ] && echo x >in_home && echo x "
                                         ">/dev/null || exit 3\n" +
                                             QByteArray(kWork);
    }
    void engineWorks()
    {
        QFETCH(QByteArray, script);
        writeProgram(text("engine"), script);
        verifyDoes(words("a.fodp -o new --static --engine engine"), "2 page result files in new\n");
        QCOMPARE(picture("new/page_1").pixel(5, 5), 0xff00ff00);
        QCOMPARE(QDir(place->path(text("new")))
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 (QStringList{text("page_0"), text("page_1")}));
        QTRY_COMPARE(processes(), QStringList());
    }

    // It gets what the manual of it asks for, and no names of the user's.
    void argumentsOfEngine()
    {
        writeProgram(text("engine"), "printf '%s\\n' \"$@\"\n" + QByteArray(kWork));
        const Outcome outcome =
            place->run(words("a.fodp -o new --static --keep-work --engine engine"));
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.status, 0);
        const QString work =
            text("new/") + QDir(place->path(text("new")))
                               .entryList({text(".docimport-*-work")}, QDir::Dirs | QDir::Hidden)
                               .value(0);
        QCOMPARE(outcome.out,
                 "the work is kept in " + work.toUtf8() + "\n2 page result files in new\n");
        QList<QByteArray> lines = place->read(work + text("/reference/engine.log")).split('\n');
        QVERIFY(lines.takeFirst().startsWith("-env:UserInstallation=file:///"));
        QCOMPARE(lines, (QList<QByteArray>{
                            "--headless", "--norestore", "--convert-to",
                            "pdf:impress_pdf_Export:{"
                            "\"UseLosslessCompression\":{\"type\":\"boolean\",\"value\":\"true\"},"
                            "\"ReduceImageResolution\":{\"type\":\"boolean\",\"value\":\"false\"},"
                            "\"ExportHiddenSlides\":{\"type\":\"boolean\",\"value\":\"true\"}}",
                            "--outdir", "out", "../deck.fodp", ""}));
        QCOMPARE(place->read(work + text("/deck.fodp")), QByteArray(kDeck));
    }

    // Files of the user's are out of reach, so that what a document links stays unread: where the
    // kernel can keep them.
    void engineIsConfined_data()
    {
        QTest::addColumn<QByteArray>("deed");
        QTest::newRow("reads an input") << QByteArray("cat ../../../../a.fodp");
        QTest::newRow("looks around") << QByteArray("ls ../../../..");
        QTest::newRow("reads temporary files") << QByteArray("ls /tmp");
        QTest::newRow("writes beside its folder") << QByteArray("touch ../outside");
        QTest::newRow("replaces the copy") << QByteArray("echo x >../deck.fodp");
    }
    void engineIsConfined()
    {
        QFETCH(QByteArray, deed);
        QVERIFY(QDir(place->path({})).mkdir(text("engines")));
        QVERIFY(QFile::rename(place->path(text("result.pdf")),
                              place->path(text("engines/result.pdf"))));
        writeProgram(text("engines/engine"), deed + " && exit 4\n" + kWork);
        const Outcome outcome = place->run(words("a.fodp -o new --static --engine engines/engine"));
        const bool isKept =
            ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
        QCOMPARE(outcome.err, isKept ? QByteArray()
                                     : QByteArray("docimport: a.fodp: LibreOffice has failed with "
                                                  "exit status 4\n"));
        QCOMPARE(outcome.status, isKept ? 0 : 1);
    }

    void engineFails_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QByteArray>("fault");
        const auto is = [](const char *row, const char *script, const char *fault) {
            QTest::newRow(row) << QByteArray(script) << QByteArray(fault);
        };
        is("always asks for another start", "exit 81",
           "LibreOffice has failed with exit status 81");
        is("exit status", "exit 7", "LibreOffice has failed with exit status 7");
        is("crash", "kill -SEGV $$", "LibreOffice has crashed: Segmentation fault");
        is("crash of its second start", "[ -e again ] && kill -ABRT $$\ntouch again; exit 81",
           "LibreOffice has crashed: Aborted");
        is("no end", "sleep 1000", "LibreOffice takes too long; --timeout allows it more");
        is("no end, against all signals", "trap '' HUP INT TERM\nsleep 1000 &\nwait; sleep 1000",
           "LibreOffice takes too long; --timeout allows it more");
        is("nothing made", "exit 0", "LibreOffice cannot read it");
        is("an empty file", "mkdir -p out; : >out/deck.pdf", "LibreOffice cannot read it");
        is("something else", "mkdir -p out; echo hello >out/deck.pdf",
           "damaged, or no PDF document");
    }
    void engineFails()
    {
        QFETCH(QByteArray, script);
        QFETCH(QByteArray, fault);
        writeProgram(text("engine"), script);
        verifyFails(words("a.fodp -o new --static --timeout 1 --engine engine"),
                    "docimport: a.fodp: " + fault + '\n');
        QTRY_COMPARE(processes(), QStringList());
    }

    void failsAtFlatXml_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QByteArray>("fault");
        QTest::newRow("crash") << QByteArray("kill -SEGV $$")
                               << QByteArray("LibreOffice has crashed: Segmentation fault");
        QTest::newRow("no end") << QByteArray("sleep 1000")
                                << QByteArray(
                                       "LibreOffice takes too long; --timeout allows it more");
    }
    void failsAtFlatXml()
    {
        QFETCH(QByteArray, script);
        QFETCH(QByteArray, fault);
        writeProgram(text("engine"),
                     "case \"$*\" in *'--convert-to fodp'*)\n" + script + "\nesac\n" + kWork);
        verifyFails(words("a.fodp -o new --timeout 2 --engine engine"),
                    "docimport: a.fodp: " + fault + '\n');
        QTRY_COMPARE(processes(), QStringList());
    }

    // What the engine cannot do keeps the pages from being animated, but not from being made.
    void withoutFlatXml()
    {
        const QByteArray fault =
            "LibreOffice cannot write it as flat XML, as with sound or film in it";
        writeProgram(text("engine"),
                     QByteArray("case \"$*\" in *'--convert-to fodp'*) exit 0;; esac\n") + kWork);
        const Outcome outcome =
            place->run(words("a.fodp -o new --timeout 2 --engine engine --report r.json"));
        QCOMPARE(outcome.err, "docimport: a.fodp: all pages are static: " + fault + '\n');
        QCOMPARE(outcome.out, QByteArray("2 page result files in new\n"));
        QCOMPARE(outcome.status, 0);
        QVERIFY(place->read(text("r.json"))
                    .contains("\"note\": \"all pages are static: " + fault + '"'));
        QTRY_COMPARE(processes(), QStringList());
    }

    void othersAreDone()
    {
        writeProgram(text("engine"), "exit 7");
        place->write(text("b.pdf"), TinyPdf::document({TinyPdf::page(10, 10, "0 0 1")}));
        const Outcome outcome = place->run(words("a.fodp b.pdf -o new --engine engine"));
        QCOMPARE(outcome.err,
                 QByteArray("docimport: a.fodp: LibreOffice has failed with exit status 7\n"));
        QCOMPARE(outcome.out, QByteArray("1 page result file in new/b\n"));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(QDir(place->path(text("new")))
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{text("b")});
    }

    // Before it is started in vain.
    void takenNames()
    {
        writeProgram(text("engine"), "exit 7");
        QVERIFY(QDir(place->path({})).mkdir(text("new")));
        place->write(text("new/page_0"), "old");
        verifyFails(words("a.fodp -o new --engine engine"),
                    "docimport: new/page_0: already exists; use --force to replace it\n");
    }

    // And not after it has worked for longer than needed.
    void pagesThatStayBehind()
    {
        writeProgram(text("engine"), kWork);
        QVERIFY(QDir(place->path({})).mkdir(text("new")));
        place->write(text("new/page_2"), "old");
        verifyFails(words("a.fodp -o new --force --static --engine engine"),
                    "docimport: new/page_2: would stay behind the 2 pages of this document; remove "
                    "it, or choose another folder\n");
    }

    void noEngine()
    {
        place->write(text("text"), "text");
        for (const char *name : {"missing", "text", "."})
            verifyFails(words("a.fodp -o new --engine") << text(name),
                        QByteArray("docimport: a.fodp: ") + name +
                            " is no program to be started\n");
        QVERIFY(
            QFile::setPermissions(place->path(text("text")), QFile::ReadOwner | QFile::ExeOwner));
        const Outcome outcome = place->run(words("a.fodp -o new --engine text"));
        QVERIFY2(outcome.err.startsWith("docimport: a.fodp: LibreOffice cannot be started: "),
                 outcome.err.constData());
        QCOMPARE(outcome.err.count('\n'), 1);
        QCOMPARE(outcome.status, 1);
        QVERIFY(!QFile::exists(place->path(text("new"))));
    }

    void endsBySignal_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGHUP") << SIGHUP;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGQUIT") << SIGQUIT;
        QTest::newRow("SIGTERM") << SIGTERM;
    }
    void endsBySignal()
    {
        QFETCH(int, signal);
        writeProgram(text("engine"), {}); // is there before
        QStringList before = place->entries().filter(QRegularExpression(text("^(?!engine )")));
        ForkedProcess process;
        startHanging(process, "trap '' HUP INT TERM\nsleep 1000 &\nwait; sleep 1000\n");
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), signal), 0);
        QVERIFY(process.waitForFinished());
        QCOMPARE(withoutEmulator(process.readAllStandardError()),
                 QByteArray("docimport: new: cancelled, no page is made\n"));
        QCOMPARE(process.readAllStandardOutput(), QByteArray());
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), signal);
        QCOMPARE(place->entries().filter(QRegularExpression(text("^(?!engine )"))), before);
        QTRY_COMPARE(processes(), QStringList());
    }

    // The engine does not outlive the program, however that ends.
    void killed()
    {
        ForkedProcess process;
        startHanging(process, "exec sleep 1000\n");
        process.kill();
        QVERIFY(process.waitForFinished());
        QTRY_COMPARE(processes(), QStringList());
        QVERIFY(!QFile::exists(place->path(text("new/page_0"))));
    }

    // The first folder that has all of it.
    void findsEngine()
    {
        for (const char *folder : {"bare", "merged", "plain", "text"})
            QVERIFY(QDir(place->path({})).mkdir(text(folder)));
        writeProgram(text("bare/soffice.bin"), {});
        writeProgram(text("merged/soffice.bin"), {});
        place->write(text("merged/libmergedlo.so"), {});
        writeProgram(text("plain/soffice.bin"), {});
        place->write(text("plain/libsdlo.so"), {});
        place->write(text("text/soffice.bin"), {});
        place->write(text("text/libsdlo.so"), {});
        const auto found = [this](const char *folders) {
            QStringList paths;
            for (const QString &folder : words(folders))
                paths << place->path(folder);
            QString engine;
            const QString fault = findEngine({}, paths, engine);
            return fault.isEmpty() ? QDir(place->path({})).relativeFilePath(engine) : fault;
        };
        QCOMPARE(found("merged plain"), text("merged/soffice.bin"));
        QCOMPARE(found("missing text bare plain merged"), text("plain/soffice.bin"));
        QCOMPARE(found("missing text bare"),
                 text("LibreOffice is not found; install it (Debian: libreoffice-impress), or say "
                      "where it is with --engine"));

        // Its wrapper is not what is started.
        writeProgram(text("bare/soffice"), {});
        writeProgram(text("text/soffice"), {});
        QString engine;
        QCOMPARE(findEngine(place->path(text("bare/soffice")), {}, engine), QString());
        QCOMPARE(engine, place->path(text("bare/soffice.bin")));
        QCOMPARE(findEngine(place->path(text("text/soffice")), {}, engine), QString());
        QCOMPARE(engine, place->path(text("text/soffice")));
    }

    void profiles()
    {
        QVERIFY(QDir(place->path({})).mkpath(text("lo/program/services")));
        place->write(text("lo/program/versionrc"),
                     "[Version]\nAllLanguages=en-US de\nbuildid=40(Build:2)\nVendor=x\n");
        place->write(text("lo/program/services/a.rdb"),
                     "<components><component uri=\"$X/liba.so\"><a/></component>"
                     "<component uri=\"$X/libavmediagst.so\"><b/></component>"
                     "<component uri=\"$X/libc.so\"><c/></component></components>");
        place->write(text("lo/program/services/b.rdb"), "<components/>");
        const QString folder = place->path(text("a profile$x"));
        EngineProfile profile(folder);
        QCOMPARE(profile.create(place->path(text("lo/program/soffice.bin"))), QString());
        const QString url = text("file://") + place->path(text("a%20profile%24x"));
        QCOMPARE(profile.arguments(),
                 (QStringList{text("-env:UserInstallation=") + url,
                              text("-env:URE_MORE_SERVICES=<") + url + text("/services>*")}));
        QCOMPARE(place->read(text("a profile$x/user/extensions/buildid")),
                 QByteArray("40(Build:2)"));
        QCOMPARE(place->read(text("a profile$x/services/a.rdb")),
                 QByteArray("<components><component uri=\"$X/liba.so\"><a/></component>"
                            "<component uri=\"$X/libc.so\"><c/></component></components>"));
        QCOMPARE(place->read(text("a profile$x/services/b.rdb")), QByteArray("<components/>"));
        const QByteArray settings = place->read(text("a profile$x/user/registrymodifications.xcu"));
        for (const char *setting :
             {"<item oor:path=\"/org.openoffice.Office.Common/Security/Scripting\"><prop "
              "oor:name=\"DisableMacrosExecution\" "
              "oor:op=\"fuse\"><value>true</value></prop></item>",
              "<item oor:path=\"/org.openoffice.Inet/Settings\"><prop oor:name=\"ooInetProxyType\" "
              "oor:op=\"fuse\"><value>1</value></prop></item>"})
            QVERIFY2(settings.contains(setting), setting);

        // One of which nothing is known.
        EngineProfile plain(place->path(text("plain")));
        QCOMPARE(plain.create(place->path(text("engine"))), QString());
        QCOMPARE(plain.arguments().size(), 1);
        QVERIFY(!QFile::exists(place->path(text("plain/user/extensions/buildid"))));
    }
};

QTEST_GUILESS_MAIN(TestDocimportEngine)

#include "tst_docimport_engine.moc"
