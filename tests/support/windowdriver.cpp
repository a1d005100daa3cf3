// Finds the widgets of a window by their labels, uses them, and answers dialogs.

#include "windowdriver.h"

#include "patience.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include <utility>

namespace
{
constexpr int radioMarkX = 8;
}

namespace driver
{
QAbstractButton *button(QWidget *window, const QString &text)
{
    const QList<QAbstractButton *> buttons = window->findChildren<QAbstractButton *>();
    for (QAbstractButton *candidate : buttons) {
        if (candidate->isVisible() && candidate->text().remove(QLatin1Char('&')).trimmed() == text.trimmed()) {
            return candidate;
        }
    }
    return nullptr;
}

void click(QWidget *window, const QString &text)
{
    QAbstractButton *target = button(window, text);
    if (target == nullptr) {
        qFatal("no visible button \"%s\"", qPrintable(text));
    }
    // QRadioButton ignores clicks beside its mark and its text.
    const int x = qobject_cast<QRadioButton *>(target) != nullptr ? radioMarkX : target->width() / 2;
    QTest::mouseClick(target, Qt::LeftButton, Qt::NoModifier, QPoint(x, target->height() / 2));
}

bool waitUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, patience);
}

void chooseFile(QFileDialog *dialog, const QString &path)
{
    auto *nameEdit = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    nameEdit->setText(path);
    auto *buttons = dialog->findChild<QDialogButtonBox *>();
    const bool saving = dialog->acceptMode() == QFileDialog::AcceptSave;
    QTest::mouseClick(buttons->button(saving ? QDialogButtonBox::Save : QDialogButtonBox::Open), Qt::LeftButton);
}

DialogAnswer::DialogAnswer(std::function<void(QDialog *)> answer) : reply(std::move(answer))
{
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { poll(); });
    timer.start(10);
}

DialogAnswer DialogAnswer::withFile(const QString &path)
{
    return DialogAnswer([path](QDialog *dialog) { chooseFile(qobject_cast<QFileDialog *>(dialog), path); });
}

DialogAnswer DialogAnswer::cancelling()
{
    return DialogAnswer([](QDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
}

void DialogAnswer::poll()
{
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (answered || dialog == nullptr || !dialog->isVisible()) {
        return;
    }
    answered = true;
    timer.stop();
    reply(dialog);
}
} // namespace driver
