// Presses the buttons of the window, fills in its fields and waits for its database.

#include "mainwindowfixture.h"

#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "graph.h"
#include "patience.h"
#include "windowdriver.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTextEdit>
#include <QtTest>

MainWindowFixture::MainWindowFixture(const QString &savedWorkDir)
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setOrganizationName(QStringLiteral("Tavoline"));
    QApplication::setApplicationName(QStringLiteral("tests"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    QSettings settings;
    settings.setValue(QStringLiteral("wd"), savedWorkDir.isNull() ? folder.path() : savedWorkDir);
    settings.sync();

    window = new TAVMainWindow;
    window->show();
    window->activateWindow();
    if (!QTest::qWaitForWindowActive(window, patience)) {
        qFatal("the window does not become active");
    }
}

MainWindowFixture::~MainWindowFixture()
{
    delete window.data();
}

void MainWindowFixture::pressAndChoose(const QString &button, const QString &file, const std::function<void()> &then)
{
    driver::DialogAnswer answer([&](QDialog *dialog) {
        driver::chooseFile(qobject_cast<QFileDialog *>(dialog), file);
        if (then) {
            then();
        }
    });
    driver::click(window, button);
    QVERIFY2(answer.done(), "a file dialog came up");
}

void MainWindowFixture::pressAndCancel(const QString &button)
{
    const driver::DialogAnswer answer = driver::DialogAnswer::cancelling();
    driver::click(window, button);
    QVERIFY2(answer.done(), "a file dialog came up");
}

void MainWindowFixture::press(const QString &button)
{
    driver::click(window, button);
}

bool MainWindowFixture::load(const QString &file, const std::function<void()> &then)
{
    const QSignalSpy loaded(widget()->getManager(), &TAVManager::signal_database_loaded);
    const QSignalSpy failed(widget()->getManager(), &TAVManager::signal_database_empty);
    pressAndChoose(QStringLiteral("Load database"), file, then);
    if (!driver::waitUntil([&] { return loaded.count() + failed.count() > 0; })) {
        qFatal("the load does not end");
    }
    return loaded.count() == 1 && failed.isEmpty();
}

void MainWindowFixture::addList(const QString &name, const QString &file)
{
    typeListName(name);
    pressAndChoose(QStringLiteral("From file."), file);
}

void MainWindowFixture::typeListName(const QString &name)
{
    auto *edit = window->findChild<QLineEdit *>(QStringLiteral("newListName"));
    edit->clear();
    QTest::keyClicks(edit, name);
}

QStringList MainWindowFixture::console() const
{
    const QString text = window->findChild<QTextEdit *>(QStringLiteral("console"))->toPlainText();
    return text.isEmpty() ? QStringList() : text.split(QLatin1Char('\n'));
}

void MainWindowFixture::clearConsole()
{
    window->findChild<QTextEdit *>(QStringLiteral("console"))->clear();
}

QWidget *MainWindowFixture::panel(const char *name) const
{
    return window->findChild<QWidget *>(QLatin1String(name));
}

QComboBox *MainWindowFixture::combo(const char *name) const
{
    return window->findChild<QComboBox *>(QLatin1String(name));
}

QProgressBar *MainWindowFixture::progressBar() const
{
    return window->findChild<QProgressBar *>();
}

QString MainWindowFixture::positionText() const
{
    return window->findChild<QLabel *>(QStringLiteral("position"))->text();
}

TAVMainWidget *MainWindowFixture::widget() const
{
    return qobject_cast<TAVMainWidget *>(window->centralWidget());
}

Graph *MainWindowFixture::view() const
{
    return window->findChild<Graph *>();
}
