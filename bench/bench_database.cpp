/// The work on a database, through the list manager as the window does it, beside the floor: a plain program over flat
/// arrays, which is run first on the same file.
///
///     bench_database [DATABASE.tav] [BENCHMARK_OPTION...]
///
/// Without a file it takes the 273 193 connected graphs on up to nine vertices.

#include "TAVmanager.h"
#include "largedatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <functional>

namespace
{
const char *const loadRow = "load";

class Bench
{
public:
    Bench(const QString &databasePath, const QString &temporaryFolder) : database(databasePath), folder(temporaryFolder)
    {
        measureFloor();
        writeFiles();
        addRows();
    }

private:
    using Work = std::function<void()>;

    void measureFloor()
    {
        QProcess process;
        process.start(QStringLiteral(TAVOLINE_FLOOR), {database});
        if (!process.waitForFinished(-1) || process.exitCode() != 0) {
            qFatal("the floor failed: %s", process.readAllStandardError().constData());
        }
        const QList<QByteArray> lines = process.readAllStandardOutput().split('\n');
        for (const QByteArray &line : lines) {
            const QList<QByteArray> fields = line.split(' ');
            if (fields.size() == 2) {
                floor.insert(fields.first(), fields.last().toDouble());
            }
        }
    }

    QString path(const char *name) const { return folder + QLatin1Char('/') + QLatin1String(name); }

    /// Lists of names and an invariant, so that the rows start from files as a user does.
    void writeFiles()
    {
        QFile input(database);
        QFile invariant(path("invariant.txt"));
        QFile half(path("half.g6"));
        QFile otherHalf(path("other-half.g6"));
        QFile thousand(path("thousand.g6"));
        if (!input.open(QIODevice::ReadOnly)) {
            qFatal("cannot read %s", qPrintable(database));
        }
        for (QFile *file : {&invariant, &half, &otherHalf, &thousand}) {
            if (!file->open(QIODevice::WriteOnly)) {
                qFatal("cannot write %s", qPrintable(file->fileName()));
            }
        }
        invariant.write("GRAPH\tINV1\n");
        qint64 graphs = 0;
        qint64 taken = 0;
        for (; !input.atEnd(); ++graphs) {
            QByteArray name = input.readLine();
            name.truncate(qMax(name.indexOf('\t'), name.contains('\t') ? 0 : int(name.size()) - 1));
            invariant.write(name + "\t1.25\n");
            // Two lists of half the names that share half of theirs, and a thousand from everywhere.
            name += '\n';
            if (graphs % 2 == 0) {
                half.write(name);
            }
            if (graphs % 4 < 2) {
                otherHalf.write(name);
            }
            if (2000 * input.pos() / input.size() > 2 * taken) { // in the middle of each thousandth of the file
                thousand.write(name);
                ++taken;
            }
        }
    }

    void addRows()
    {
        row(
            loadRow, "load", [this] { load(); }, [this] { manager.resetDatabase(); });
        file("load-i1", [this] { manager.loadInv1(path("invariant.txt")); });
        file("save-i1", [this] { manager.saveInv1(path("saved.txt")); });
        file("i2-gets-i1", [this] { manager.I2getsI1(); });
        for (const auto &[name, derive] : {std::pair{"avg-sub", &TAVManager::avgSub1},
                                           {"min-sub", &TAVManager::minSub1},
                                           {"max-sub", &TAVManager::maxSub1}}) {
            row(name, "average-sub", [this, derive = derive] { (manager.*derive)(); });
        }
        for (const auto &[name, derive] : {std::pair{"avg-over", &TAVManager::avgOver1},
                                           {"min-over", &TAVManager::minOver1},
                                           {"max-over", &TAVManager::maxOver1}}) {
            row(name, "average-over", [this, derive = derive] { (manager.*derive)(); });
        }
        row("every neighbour matches", "", [this] { manager.I2getsI1(); });
        for (const auto &[name, query] : {std::pair{"list-eq-subs", &TAVManager::addI1eqI2subsList},
                                          {"list-ge-subs", &TAVManager::addI1geI2subsList},
                                          {"list-le-subs", &TAVManager::addI1leI2subsList},
                                          {"list-gt-subs", &TAVManager::addI1gtI2subsList},
                                          {"list-lt-subs", &TAVManager::addI1ltI2subsList},
                                          {"list-eq-over", &TAVManager::addI1eqI2overList},
                                          {"list-ge-over", &TAVManager::addI1geI2overList},
                                          {"list-le-over", &TAVManager::addI1leI2overList},
                                          {"list-gt-over", &TAVManager::addI1gtI2overList},
                                          {"list-lt-over", &TAVManager::addI1ltI2overList}}) {
            list(name, "walk", [this, query = query] { (manager.*query)(result); });
        }
        list("list-ge", "compare", [this] { manager.addI1geI2List(result); });
        list("list of half the graphs", "", [this] { manager.addListFromFile(result, path("half.g6")); });
        for (const char *name : {"thousand", "half", "other-half"}) {
            row("(prepare)", "",
                [this, name] { manager.addListFromFile(QLatin1String(name), path(name) + QStringLiteral(".g6")); });
        }
        const QString half = QStringLiteral("half");
        const QString other = QStringLiteral("other-half");
        const QString thousand = QStringLiteral("thousand");
        list("subs of 1000", "", [this, thousand] { manager.addSubsList(result, thousand); });
        list("over of 1000", "", [this, thousand] { manager.addOverList(result, thousand); });
        list("subs of half", "", [this, half] { manager.addSubsList(result, half); });
        list("over of half", "", [this, half] { manager.addOverList(result, half); });
        list("union", "", [this, half, other] { manager.addUnionList(result, half, other); });
        list("intersection", "", [this, half, other] { manager.addInterList(result, half, other); });
        list("difference", "", [this, half, other] { manager.addExceptList(result, half, other); });
        row("(prepare)", "", [this] {
            manager.remList(QStringLiteral("half"));
            manager.remList(QStringLiteral("other-half"));
        });
        file("save-graphs", [this] { manager.saveGraphs(path("all.g6")); });
        list("list-from-file of all", "", [this] { manager.addListFromFile(result, path("all.g6")); });
        row("(prepare)", "", [this] { manager.addListFromFile(result, path("all.g6")); });
        file("save-list of all", [this] { manager.saveList(result, path("list.g6")); });
        row("(prepare)", "", [this] { manager.remList(result); });
        row("empty the database", "", [this] { manager.resetDatabase(); });
    }

    void file(const char *name, const Work &work) { row(name, "", work); }

    void list(const char *name, const char *floorName, const Work &work)
    {
        row(name, floorName, work, [this] { manager.remList(result); });
    }

    /// A row of the table: the time of @p work, and the multiple of the floor's figure that it is. @p undo comes before
    /// each repetition.
    void row(const char *name, const char *floorName, const Work &work, const Work &undo = {})
    {
        benchmark::RegisterBenchmark(name,
                                     [=](benchmark::State &state) {
                                         QElapsedTimer timer;
                                         double seconds = 0;
                                         for (auto _ : state) {
                                             state.PauseTiming();
                                             if (undo) {
                                                 undo();
                                             }
                                             state.ResumeTiming();
                                             timer.start();
                                             work();
                                             seconds += double(timer.nsecsElapsed()) * 1e-9;
                                         }
                                         if (floor.contains(floorName)) {
                                             state.counters["floors"] =
                                                 seconds / double(state.iterations()) / floor.value(floorName);
                                         }
                                         state.counters["MB"] = memory("VmRSS:");
                                         if (name == loadRow) {
                                             state.counters["peakMB"] = memory("VmHWM:");
                                         }
                                     })
            ->Iterations(1)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    }

    void load()
    {
        QEventLoop loop;
        QObject::connect(&manager, &TAVManager::signal_database_loaded, &loop, &QEventLoop::quit);
        QObject::connect(&manager, &TAVManager::signal_database_empty, &loop, [] { qFatal("the load failed"); });
        manager.loadDatabase(database);
        loop.exec();
    }

    /// A figure of the process in megabytes.
    static double memory(const char *name)
    {
        QFile status(QStringLiteral("/proc/self/status"));
        if (!status.open(QIODevice::ReadOnly)) {
            return 0;
        }
        const QList<QByteArray> lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith(name)) {
                return line.mid(int(qstrlen(name))).simplified().split(' ').first().toDouble() * 1024 / 1e6;
            }
        }
        return 0;
    }

    QString database;
    QString folder;
    QMap<QByteArray, double> floor;
    TAVManager manager;
    const QString result = QStringLiteral("result");
};
} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        qFatal("no temporary folder");
    }
    const Bench bench(largeDatabase(argc, argv, folder.path()), folder.path());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
