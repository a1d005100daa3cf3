// Works with a window as a user does.
#ifndef TAVOLINE_TESTS_WINDOWDRIVER_H
#define TAVOLINE_TESTS_WINDOWDRIVER_H

#include <QString>
#include <QTimer>

#include <functional>

class QAbstractButton;
class QDialog;
class QFileDialog;
class QWidget;

/// Works with a window as a user does: clicks buttons that are visible, and answers dialogs.
namespace driver
{
/// The visible button of @p window with that text ("&" and blanks at the ends left out), or nullptr.
QAbstractButton *button(QWidget *window, const QString &text);

/// Clicks the button with that text; fatal when there is none, or when it is hidden.
void click(QWidget *window, const QString &text);

/// Waits, turning the event loop, until @p condition holds; false when it never does.
bool waitUntil(const std::function<bool()> &condition);

/// Chooses @p path in a file dialog: types it and presses the accepting button.
void chooseFile(QFileDialog *dialog, const QString &path);

/// Answers the next modal dialog that comes up. Create it before the click that opens the dialog.
class DialogAnswer
{
public:
    /// Calls @p answer, once, with the dialog as soon as it is shown.
    explicit DialogAnswer(std::function<void(QDialog *)> answer);
    /// Chooses the file @p path.
    static DialogAnswer withFile(const QString &path);
    /// Presses Escape.
    static DialogAnswer cancelling();

    /// Whether a dialog came up and was answered.
    bool done() const { return answered; }

    DialogAnswer(const DialogAnswer &) = delete;
    DialogAnswer &operator=(const DialogAnswer &) = delete;

private:
    void poll();

    std::function<void(QDialog *)> reply;
    QTimer timer;
    bool answered = false;
};
} // namespace driver

#endif
