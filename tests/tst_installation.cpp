// What cmake --install brings besides the programs, as the desktop's own tools find it.

#include "support/literals.h"
#include "support/matches.h"
#include "support/runprogram.h"
#include "support/testfiles.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QImage>
#include <QtTest>

namespace
{
const QString menuEntry = QStringLiteral("applications/example.tavoline.tavoline.desktop");
const QString metadata = QStringLiteral("metainfo/example.tavoline.tavoline.metainfo.xml");
const QString fileType = QStringLiteral("application/x-tavoline-database");
} // namespace

class TestInstallation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void menu();
    void softwareCatalogue();
    void typeOfFiles();
    void icons_data();
    void icons();
    void manualPage();
    void pagesAndExamples();

private:
    QString share(const QString &path) const { return prefix.path(QStringLiteral("share/") + path); }
    QString text(const QString &path) const { return QString::fromUtf8(contents(share(path))); }
    /// Runs a program, which must succeed without a word, and returns its output without the line end.
    static QString run(const char *program, const QStringList &arguments);

    TestFolder prefix;
    TestFolder home;
};

/// The desktop's tools see nothing but this installation.
void TestInstallation::initTestCase()
{
    run(CMAKE_PROGRAM, {QStringLiteral("--install"), QStringLiteral(TAVOLINE_BUILD), QStringLiteral("--component"),
                        QStringLiteral("tavoline"), QStringLiteral("--prefix"), prefix.path()});
    qputenv("XDG_DATA_DIRS", QFile::encodeName(share(QString())));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(home.path()));
    qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    run(UPDATE_MIME_DATABASE_PROGRAM, {share(QStringLiteral("mime"))});
    run(UPDATE_DESKTOP_DATABASE_PROGRAM, {share(QStringLiteral("applications"))});
}

void TestInstallation::menu()
{
    QCOMPARE(run(DESKTOP_FILE_VALIDATE_PROGRAM, {share(menuEntry)}), QString());
    const QString entry = text(menuEntry);
    QCOMPARE(allMatches(entry, "^Exec=(.*)$"), words({"tavoline %f"}));
    QVERIFY(QFileInfo(prefix.path("bin/tavoline")).isExecutable());
    const QString icon = allMatches(entry, "^Icon=(.*)$").value(0);
    QVERIFY(QFile::exists(share(QStringLiteral("icons/hicolor/scalable/apps/%1.svg").arg(icon))));
}

void TestInstallation::softwareCatalogue()
{
    run(APPSTREAMCLI_PROGRAM, {QStringLiteral("validate"), QStringLiteral("--no-net"), share(metadata)});
    const QString tale = text(metadata);
    QCOMPARE(allMatches(tale, "<launchable type=\"desktop-id\">(.*)</launchable>"), {QFileInfo(menuEntry).fileName()});
    QCOMPARE(allMatches(tale, "<mediatype>(.*)</mediatype>"), {fileType});
    QCOMPARE(allMatches(tale, "<release version=\"([^\"]*)\""), words({TAVOLINE_VERSION}));
    const QStringList pictures = allMatches(tale, "<image type=\"source\"[^>]*>.*/(images/.*)</image>");
    QCOMPARE(pictures.size(), 2);
    for (const QString &picture : pictures) {
        QVERIFY2(!QImage(share(QStringLiteral("doc/tavoline/") + picture)).isNull(), qPrintable(picture));
    }
}

void TestInstallation::typeOfFiles()
{
    for (const char *name : {"small.tav", "CAPITALS.TAV", "with a blank.tav"}) {
        const QString path = home.write(name, "@\nA_\t0\n");
        QCOMPARE(run(XDG_MIME_PROGRAM, {QStringLiteral("query"), QStringLiteral("filetype"), path}), fileType);
    }
    const QString database = share(QStringLiteral("doc/tavoline/examples/connected-8.tav"));
    QCOMPARE(run(XDG_MIME_PROGRAM, {QStringLiteral("query"), QStringLiteral("filetype"), database}), fileType);
    QCOMPARE(run(XDG_MIME_PROGRAM, {QStringLiteral("query"), QStringLiteral("default"), fileType}),
             QFileInfo(menuEntry).fileName());
}

void TestInstallation::icons_data()
{
    QTest::addColumn<QString>("icon");
    QTest::newRow("program") << QStringLiteral("apps/tavoline");
    QTest::newRow("file") << QStringLiteral("mimetypes/application-x-tavoline-database");
}

void TestInstallation::icons()
{
    QFETCH(QString, icon);
    const QString theme = share(QStringLiteral("icons/hicolor/"));
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        const QImage image(theme + QStringLiteral("%1x%1/%2.png").arg(size).arg(icon));
        QCOMPARE(image.size(), QSize(size, size));
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    }
    QVERIFY(contents(theme + QStringLiteral("scalable/%1.svg").arg(icon)).startsWith("<svg "));
}

void TestInstallation::manualPage()
{
    run(MAN_PROGRAM,
        {QStringLiteral("--warnings=w"), QStringLiteral("--encoding=UTF-8"), QStringLiteral("--troff-device=utf8"),
         QStringLiteral("--ditroff"), QStringLiteral("--local-file"), share(QStringLiteral("man/man1/tavoline.1"))});
}

/// What a page leads to is there.
void TestInstallation::pagesAndExamples()
{
    const QString folder = share(QStringLiteral("doc/tavoline/"));
    QVERIFY(QFile::exists(folder + QStringLiteral("examples/regular-8.g6")));
    QVERIFY(QFileInfo(folder + QStringLiteral("examples/cluster/part")).isExecutable());
    QStringList pages;
    int links = 0;
    QDirIterator files(folder, {QStringLiteral("*.md")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString page = files.next();
        pages.append(page.mid(folder.size()));
        for (const QString &target : allMatches(QString::fromUtf8(contents(page)), "\\]\\(([^)#:]+)")) {
            QVERIFY2(QFile::exists(QFileInfo(page).path() + QLatin1Char('/') + target), qPrintable(page + target));
            ++links;
        }
    }
    QVERIFY(pages.contains(QStringLiteral("guide.md")));
    QVERIFY(links > 0);
}

QString TestInstallation::run(const char *program, const QStringList &arguments)
{
    const ToolResult result = runProgram(QString::fromLocal8Bit(program), arguments);
    if (result.status != 0 || !result.errors.isEmpty()) {
        QTest::qFail((program + QByteArray(": ") + result.output + result.errors).constData(), __FILE__, __LINE__);
    }
    return QString::fromUtf8(result.output).trimmed();
}

QTEST_GUILESS_MAIN(TestInstallation)
#include "tst_installation.moc"
