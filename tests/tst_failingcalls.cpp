// Every call of the operating system that the window makes in a save fails once: the old file is whole then, or the
// new one complete, and the window says which.

#include "TAVmainwidget.h"
#include "TAVmanager.h"
#include "graph.h"
#include "support/callfailures.h"
#include "support/mainwindowfixture.h"
#include "support/testfiles.h"
#include "support/watchedcalls.h"
#include "support/windowdriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QtTest>

#include <cerrno>
#include <functional>
#include <memory>

namespace
{
const QByteArray oldText = "what was there before";

/// The program's window with a database, an invariant, a list and a graph.
class Window
{
public:
    Window()
    {
        QDir(fixture.path(QString())).mkdir(QStringLiteral("saves"));
        const QString database = fixture.write(QStringLiteral("graphs.tav"), "@\nA_\t0\nBW\t1\nBw\t1\n");
        if (!fixture.load(database)) {
            qFatal("the database is not loaded");
        }
        fixture.addList(QStringLiteral("list"), fixture.write(QStringLiteral("names.g6"), "A_\nBw\n"));
        fixture.view()->loadg6(QStringLiteral("Bw"), true);
    }

    QString folder() const { return fixture.path(QStringLiteral("saves")); }
    QString file() const { return folder() + QStringLiteral("/target.golm3"); }

    /// Presses the button, or chooses the entry of the viewer's menu, and saves into the file. Calls @p begin when all
    /// dialogs have been answered.
    void save(const QString &button, const std::function<void()> &begin)
    {
        fixture.clearConsole();
        warnings.clear();
        QPointer<QWidget> answered;
        const bool asksAfterwards = button == QLatin1String("Save..."); // whether to replace the file
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (dialog == nullptr || !dialog->isVisible() || dialog == answered) {
                return;
            }
            answered = dialog;
            if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
                files->setOption(QFileDialog::DontConfirmOverwrite);
                if (!asksAfterwards) {
                    QObject::connect(files, &QDialog::finished, files, begin);
                }
                driver::chooseFile(files, file());
                return;
            }
            auto *box = qobject_cast<QMessageBox *>(dialog);
            if (QAbstractButton *replace = box->button(QMessageBox::Yes)) {
                QObject::connect(box, &QDialog::finished, box, begin);
                QTest::mouseClick(replace, Qt::LeftButton);
            } else {
                warnings.append(box->text());
                QTest::keyClick(box, Qt::Key_Return);
            }
        });
        timer.start(1);
        if (button == QLatin1String("Save...")) {
            fixture.view()->slot_save();
        } else if (button == QLatin1String("Export...")) {
            fixture.view()->slot_export_graph();
        } else if (button == QLatin1String("Print...")) {
            fixture.view()->slot_print();
        } else {
            fixture.press(button == QLatin1String("Save Inv1") ? QStringLiteral("Invariants manipulation")
                                                               : QStringLiteral("Lists manipulation"));
            fixture.press(button);
        }
    }

    /// What the window says of the last save.
    QStringList said() const { return fixture.console() + warnings; }
    QStringList lists() const { return fixture.widget()->getManager()->listNames(); }

private:
    MainWindowFixture fixture;
    QStringList warnings;
};

/// The PDF files tell when they were made.
QByteArray withoutTime(QByteArray text)
{
    const int date = text.indexOf("/CreationDate");
    return date < 0 ? text : text.remove(date, text.indexOf('\n', date) - date);
}
} // namespace

class TestFailingCalls : public QObject
{
    Q_OBJECT

private slots:
    void saves_data();
    void saves();
};

void TestFailingCalls::saves_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("success");  // what the window says after a save
    QTest::addColumn<QStringList>("failures"); // what it says, one or the other, when there is none
    QTest::addColumn<bool>("isNamed");
    for (const bool isNamed : {false, true}) {
        const auto add = [&](const char *button, const QStringList &success, const QStringList &failures) {
            QTest::newRow((QByteArray(button) + (isNamed ? ", named files" : "")).constData())
                << QString::fromLatin1(button) << success << failures << isNamed;
        };
        const QString notWritten = QStringLiteral("Unable to write file :%1");
        add("Save GraphList :", {}, {QStringLiteral("Unable to open file :%1"), notWritten});
        add("Save all graphs", {QStringLiteral("Wrote %1")}, {QString(), notWritten});
        add("Save Inv1", {QStringLiteral("Wrote %1")}, {QString(), notWritten});
        add("Save...", {}, {QStringLiteral("Failed to save graph.")});
        add("Export...", {}, {QStringLiteral("Failed to export graph.")});
        add("Print...", {}, {QString()});
    }
}

void TestFailingCalls::saves()
{
    QFETCH(QString, button);
    QFETCH(QStringList, success);
    QFETCH(QStringList, failures);
    QFETCH(bool, isNamed);
    Window window;
    success.replaceInStrings(QStringLiteral("%1"), window.file());
    failures.replaceInStrings(QStringLiteral("%1"), window.file());
    CallCounts counts;
    const auto save = [&](const QByteArray &kind, int occurrence, int error) {
        counts.clear();
        write(window.file(), oldText);
        std::unique_ptr<CallWatch> watch;
        window.save(button, [&] {
            watch = std::make_unique<CallWatch>(window.folder().toStdString(), [&](const SystemCall &call) {
                if (call.isUnnamed && isNamed) {
                    return EOPNOTSUPP;
                }
                return ++counts[call.kind] == occurrence && kind == call.kind ? error : 0;
            });
        });
    };

    save({}, 0, 0);
    const CallCounts usual = counts;
    const QByteArray complete = withoutTime(contents(window.file()));
    QVERIFY(complete != oldText);
    QCOMPARE(window.said(), success);
    CallCounts failed;
    for (auto kind = usual.begin(); kind != usual.end(); ++kind) {
        for (int occurrence = 1; occurrence <= kind.value(); ++occurrence) {
            for (const int error : callErrors) {
                save(kind.key(), occurrence, error);
                const QByteArray what = description(kind.key(), occurrence, error) +
                                        "; the window says: " + window.said().join(QLatin1Char('\n')).toLocal8Bit();
                QVERIFY2(counts[kind.key()] >= occurrence, what.constData());
                QCOMPARE(filesIn(window.folder()), QStringList{QStringLiteral("target.golm3")});
                QCOMPARE(window.lists(), QStringList{QStringLiteral("list")});
                const QByteArray text = withoutTime(contents(window.file()));
                if (text == complete) {
                    QVERIFY2(window.said() == success, what.constData());
                    QVERIFY2(error == EINTR || !isIndispensable(kind.key()), what.constData());
                } else {
                    ++failed[kind.key()];
                    QVERIFY2(error != EINTR || !survivesSignals(kind.key()), what.constData());
                    QVERIFY2(text == oldText, what.constData());
                    QVERIFY2(failures.contains(window.said().join(QLatin1Char('\n'))), what.constData());
                }
            }
        }
    }
    const QList<QByteArray> kinds = importantKinds(isNamed);
    for (const QByteArray &kind : kinds) {
        QVERIFY2(failed[kind] > 0, kind.constData());
    }
}

QTEST_MAIN(TestFailingCalls)
#include "tst_failingcalls.moc"
