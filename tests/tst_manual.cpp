// The manual of the window has what the window shows.

#include "TAVmainwidget.h"
#include "graph.h"
#include "support/mainwindowfixture.h"
#include "support/matches.h"
#include "support/testfiles.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QRegularExpression>
#include <QToolBar>
#include <QtTest>

namespace
{
const QString folder = QStringLiteral(TAVOLINE_EXAMPLES "/../docs/");

QString page(const QString &name)
{
    return QString::fromUtf8(contents(folder + name));
}

/// The text of a button or an action without what marks its mnemonic and without what joins it to its neighbour.
QString plain(QString text)
{
    text = text.remove(QLatin1Char('&')).trimmed();
    return text.endsWith(QStringLiteral(" :")) ? text.chopped(2) : text;
}

/// The texts of the entries of a menu and of the menus in it.
QStringList entriesOf(const QMenu *menu)
{
    QStringList entries;
    const QList<QAction *> actions = menu->actions();
    for (const QAction *action : actions) {
        if (!action->isSeparator()) {
            entries.append(action->text());
        }
        if (action->menu() != nullptr) {
            entries += entriesOf(action->menu());
        }
    }
    return entries;
}
} // namespace

class TestManual : public QObject
{
    Q_OBJECT

private slots:
    void everyButton();
    void everyEntryOfTheToolBar();
    void everyEntryOfTheMenuAndItsKey();
    void everyPicture();
    void everyLinkToAHeading();

private:
    const QString manual = page(QStringLiteral("manual.md"));
};

void TestManual::everyButton()
{
    const MainWindowFixture window;
    const QList<QAbstractButton *> buttons = window.widget()->findChildren<QAbstractButton *>();
    QVERIFY(buttons.size() > 40);
    for (const QAbstractButton *button : buttons) {
        const QString text = plain(button->text());
        QVERIFY2(manual.contains(QStringLiteral("*%1*").arg(text)) ||
                     manual.contains(QStringLiteral("`%1`").arg(text)), // in italics "<<=" would be a tag
                 qPrintable(text));
    }
}

void TestManual::everyEntryOfTheToolBar()
{
    const MainWindowFixture window;
    const QList<QAction *> actions = window.window->findChild<QToolBar *>()->actions();
    int entries = 0;
    for (const QAction *action : actions) {
        if (!action->isSeparator()) {
            const QString line =
                QStringLiteral("| *%1* | `%2` |").arg(plain(action->text()), action->shortcut().toString());
            QVERIFY2(manual.contains(line), qPrintable(line));
            ++entries;
        }
    }
    QCOMPARE(entries, 4);
}

void TestManual::everyEntryOfTheMenuAndItsKey()
{
    const MainWindowFixture window;
    emit window.view()->customContextMenuRequested(QPoint());
    const QStringList entries = entriesOf(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
    QVERIFY(entries.size() > 35);
    for (const QString &entry : entries) {
        const QString text = plain(entry.section(QLatin1Char('\t'), 0, 0));
        QVERIFY2(manual.contains(QStringLiteral("*%1*").arg(text)), qPrintable(text));
        const QString key = entry.section(QLatin1Char('\t'), 1);
        QVERIFY2(key.isEmpty() || manual.contains(QRegularExpression(
                                      QStringLiteral("\n\\|[^|]*`%1`").arg(QRegularExpression::escape(key)))),
                 qPrintable(key));
    }
}

/// Each picture that a page shows is there and is one of the guided tour, and each that is there is shown.
void TestManual::everyPicture()
{
    QStringList shown;
    for (const QString &name : QDir(folder).entryList({QStringLiteral("*.md")})) {
        shown += allMatches(page(name), R"(\(images/([a-z-]+)\.png\))");
    }
    shown += allMatches(page(QStringLiteral("../README.md")), R"(\(docs/images/([a-z-]+)\.png\))");
    shown.removeDuplicates();
    shown.sort();
    const QString tour = page(QStringLiteral("../tour/tour.cpp"));
    QStringList taken;
    for (const QString &file : QDir(folder + QStringLiteral("images")).entryList(QDir::Files, QDir::Name)) {
        const QString step = QFileInfo(file).completeBaseName();
        QVERIFY2(tour.contains(QStringLiteral("\"%1\"").arg(step)), qPrintable(step));
        taken.append(step);
    }
    QCOMPARE(shown, taken);
}

void TestManual::everyLinkToAHeading()
{
    QStringList anchors;
    for (QString heading : allMatches(manual, "^#+ (.*)$")) {
        heading = heading.toLower().remove(QRegularExpression(QStringLiteral("[^a-z0-9 -]")));
        anchors.append(heading.replace(QLatin1Char(' '), QLatin1Char('-')));
    }
    const QStringList links = allMatches(manual, R"(\]\(#([^)]*)\))");
    QVERIFY(links.size() > 10);
    for (const QString &link : links) {
        QVERIFY2(anchors.contains(link), qPrintable(link));
    }
}

QTEST_MAIN(TestManual)
#include "tst_manual.moc"
