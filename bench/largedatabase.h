#ifndef TAVOLINE_BENCH_LARGEDATABASE_H
#define TAVOLINE_BENCH_LARGEDATABASE_H

#include <QProcess>
#include <QString>

/// The database that a benchmark works on: its first argument, or else the 273 193 connected graphs on up to nine
/// vertices, unpacked into @p folder.
inline QString largeDatabase(int argc, char *argv[], const QString &folder)
{
    if (argc > 1) {
        return QString::fromLocal8Bit(argv[1]);
    }
    QString path = folder + QStringLiteral("/connected-9.tav");
    QProcess unpack;
    unpack.setStandardOutputFile(path);
    unpack.start(QStringLiteral("xz"), {QStringLiteral("-dc"), QStringLiteral(TAVOLINE_LARGE_DATABASE)});
    if (!unpack.waitForFinished(-1) || unpack.exitCode() != 0) {
        qFatal("cannot unpack the database");
    }
    return path;
}

#endif
