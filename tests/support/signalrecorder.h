// Writes down the signals of an object as text.
#ifndef TAVOLINE_TESTS_SIGNALRECORDER_H
#define TAVOLINE_TESTS_SIGNALRECORDER_H

#include <QMetaMethod>
#include <QObject>
#include <QStringList>
#include <QVector>

/// Records the signals of an object in the order in which they arrive, each as a line of text: the name without
/// "signal_", then the arguments, separated by blanks ("progress 0 25000"). Signals with other names are left out. A
/// signal from another thread arrives through the event loop of the thread that made the recorder.
class SignalRecorder : public QObject
{
public:
    explicit SignalRecorder(const QObject &sender);

    /// What arrived so far.
    const QStringList &recorded() const { return lines; }
    /// What arrived since the last call.
    QStringList take();

    // The signals are connected to slot numbers instead of slots: number i behind the methods of QObject is methods[i].
    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    QVector<QMetaMethod> methods;
    QStringList lines;
};

#endif
