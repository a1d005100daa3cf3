#ifndef TAVOLINE_TESTS_SIGNALRECORDER_H
#define TAVOLINE_TESTS_SIGNALRECORDER_H

#include <QMetaMethod>
#include <QObject>
#include <QStringList>
#include <QVector>

/// Writes down the signals of an object in the order in which they arrive, each as one line of text: the name without
/// its "signal_" and the arguments, separated by blanks ("progress 0 25000"). Signals that are not named "signal_..."
/// are left out. Signals of another thread arrive through the event loop of the thread that made the recorder.
class SignalRecorder : public QObject
{
public:
    explicit SignalRecorder(const QObject &sender);

    /// What arrived so far.
    const QStringList &recorded() const { return lines; }
    /// What arrived since the last call.
    QStringList take();

    // The recorder has no slots of its own: the numbers behind QObject's own methods stand for the recorded signals.
    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    QVector<QMetaMethod> methods;
    QStringList lines;
};

#endif
