// Receives every signal of an object through its meta-object, and writes out the arguments.

#include "signalrecorder.h"

#include <QVariant>

#include <utility>

namespace
{
const QByteArray prefix = QByteArrayLiteral("signal_");

QString describe(const QMetaMethod &method, void **arguments)
{
    QStringList words{QString::fromLatin1(method.name().mid(prefix.size()))};
    for (int i = 0; i < method.parameterCount(); ++i) {
        // moc passes the address of the result first.
        words.append(QVariant(method.parameterType(i), arguments[i + 1]).toString());
    }
    return words.join(QLatin1Char(' '));
}
} // namespace

SignalRecorder::SignalRecorder(const QObject &sender)
{
    const QMetaObject &type = *sender.metaObject();
    for (int i = 0; i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (method.methodType() == QMetaMethod::Signal && method.name().startsWith(prefix)) {
            QMetaObject::connect(&sender, i, this, QObject::staticMetaObject.methodCount() + methods.size());
            methods.append(method);
        }
    }
}

QStringList SignalRecorder::take()
{
    return std::exchange(lines, QStringList());
}

int SignalRecorder::qt_metacall(QMetaObject::Call call, int id, void **arguments)
{
    id = QObject::qt_metacall(call, id, arguments);
    if (id >= 0 && call == QMetaObject::InvokeMetaMethod) {
        lines.append(describe(methods.at(id), arguments));
        return -1;
    }
    return id;
}
