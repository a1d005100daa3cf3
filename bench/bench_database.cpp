/// The time of every operation on a database, called through the list manager as the window calls it, compared with the
/// floor: a minimal program over flat arrays (floor.cpp), which is run on the same file before and after the rows.
///
///     bench_database [DATABASE.tav] [BENCHMARK_OPTION...]
///
/// Without a file it takes the 273 193 connected graphs on up to nine vertices. A file must not name a graph twice.
///
/// The time of a row is the average of its rounds; "floors" is its shortest time as a multiple of the floor's. "MB" is
/// the memory after the last round, "peakMB" the highest during it. Rows can be left out and repeated: each round first
/// makes the database, the values and the lists that it needs, outside of the measured time. A row that fails or has a
/// wrong result ends with an error, and then so does the program.

#include "TAVmanager.h"
#include "databasefiles.h"
#include "heap.h"
#include "largedatabase.h"
#include "values.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace
{
/// The seconds that each pass of the floor takes for the file @p database, by the name of the pass.
QMap<QByteArray, double> measureFloor(const QString &database)
{
    QProcess process;
    process.start(QStringLiteral(TAVOLINE_FLOOR), {database});
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        qFatal("the floor failed: %s", process.readAllStandardError().constData());
    }
    QMap<QByteArray, double> floor;
    const QList<QByteArray> lines = process.readAllStandardOutput().split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() == 2) {
            floor.insert(fields.first(), fields.last().toDouble());
        }
    }
    return floor;
}

/// An entry of /proc/self/status in megabytes.
double memory(const char *name)
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

/// Resets "VmHWM:", the highest memory; where the system does not allow that, it counts from the start of the program.
void forgetHighestMemory()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("5");
    }
}

/// The sizes that the list of a row may have. No list counts as the size 0, since the manager adds no empty list.
struct Size {
    static Size exactly(qint64 size) { return {size, size}; }
    static Size atLeast(qint64 size) { return {size, std::numeric_limits<qint64>::max()}; }

    bool contains(qint64 size) const { return least <= size && size <= most; }

    qint64 least;
    qint64 most;
};

/// The values of I1 and I2 before a round; nullptr where the row needs none.
struct Invariants {
    Value first = nullptr;
    Value second = nullptr;
};

using Step = std::function<bool()>;

/// A row of the table: some work, which returns whether it succeeded. By default it needs a database and no lists.
struct Row {
    Row(QByteArray rowName, Step rowWork) : name(std::move(rowName)), work(std::move(rowWork)) {}

    Row onEmptyDatabase() const { return with(&Row::needsDatabase, false); }
    Row onInvariants(const Invariants &needed) const { return with(&Row::invariants, needed); }
    /// The work needs the lists @p needed, which are read from the files of names with the same names.
    Row onLists(const QStringList &needed) const { return with(&Row::lists, needed); }
    /// The work makes the list named "result".
    Row makingList(const Size &expected) const { return with(&Row::size, expected); }
    /// @p test returns whether the work had the right result.
    Row checkedBy(const Step &test) const { return with(&Row::check, test); }
    /// The time is compared with that of the floor's pass @p pass.
    Row besideFloor(const QByteArray &pass) const { return with(&Row::floor, pass); }

    QByteArray name;
    Step work;
    bool needsDatabase = true;
    Invariants invariants;
    QStringList lists;
    Size size = Size::exactly(0);
    Step check = [] { return true; };
    QByteArray floor;

private:
    template<typename Part, typename Value> Row with(Part Row::*part, const Value &value) const
    {
        Row row = *this;
        row.*part = value;
        return row;
    }
};

using Query = bool (TAVManager::*)(const QString &newName);

/// A query that walks through sub-graphs, and the same for super-graphs.
struct Walk {
    QByteArray name;
    Query subs;
    Query over;
    Value matching; ///< when I1 is level and I2 this, every neighbour matches
};

const Walk walks[] = {
    {"list-eq", &TAVManager::addI1eqI2subsList, &TAVManager::addI1eqI2overList, level},
    {"list-ge", &TAVManager::addI1geI2subsList, &TAVManager::addI1geI2overList, above},
    {"list-lt", &TAVManager::addI1ltI2subsList, &TAVManager::addI1ltI2overList, above},
    {"list-le", &TAVManager::addI1leI2subsList, &TAVManager::addI1leI2overList, below},
    {"list-gt", &TAVManager::addI1gtI2subsList, &TAVManager::addI1gtI2overList, below},
};

const QString result = QStringLiteral("result");

/// The table, and the database that its rows work on.
class Bench
{
public:
    Bench(const QString &databasePath, const QString &folder)
        : database(databasePath)
        , floor(measureFloor(databasePath))
        , files(databasePath, folder)
    {
        QObject::connect(&manager, &TAVManager::signal_console, [this](const QString &text) { said = text; });
        addLoading();
        addInvariants();
        addWalks();
        addLists();
        addFilesOfNames();
    }

    /// Returns whether every row did what it should.
    bool run()
    {
        benchmark::RunSpecifiedBenchmarks();
        provideLists({});
        reset();
        const QMap<QByteArray, double> floorAgain = measureFloor(database);
        for (auto pass = floor.cbegin(); pass != floor.cend(); ++pass) {
            std::printf("floor: %-20s %12.8g before the rows, %12.8g after\n", pass.key().constData(), pass.value(),
                        floorAgain.value(pass.key()));
        }
        return !failed;
    }

private:
    using Derivation = void (TAVManager::*)();
    using LoadInvariant = void (TAVManager::*)(const QString &fileName);

    // The table.

    void addLoading()
    {
        add(Row("load", [this] { return load(); }).onEmptyDatabase().besideFloor("load"));
        add(Row("empty", [this] { return reset(); }));
    }

    void addInvariants()
    {
        const Invariants varied = {variedFirst};
        const QString saved = files.path(QStringLiteral("saved.txt"));
        add(Row("load-i1", [this] { return loadInvariant(&TAVManager::loadInv1, firstFile); }).onInvariants(varied));
        add(Row("save-i1", [=] { return manager.saveInv1(saved); }).onInvariants(varied).checkedBy([=] {
            return haveSameContents(saved, files.path(firstFile));
        }));
        const auto addDerivation = [&](const char *name, Derivation derivation, const char *pass) {
            add(Row(name, [=] { return derive(derivation); }).onInvariants(varied).besideFloor(pass));
        };
        addDerivation("i2-gets-i1", &TAVManager::I2getsI1, "");
        addDerivation("avg-sub", &TAVManager::avgSub1, "average-sub");
        addDerivation("min-sub", &TAVManager::minSub1, "average-sub");
        addDerivation("max-sub", &TAVManager::maxSub1, "average-sub");
        addDerivation("avg-over", &TAVManager::avgOver1, "average-over");
        addDerivation("min-over", &TAVManager::minOver1, "average-over");
        addDerivation("max-over", &TAVManager::maxOver1, "average-over");
    }

    void addWalks()
    {
        const Invariants varied = {variedFirst, variedSecond};
        for (const Walk &walk : walks) {
            const bool asFloor = walk.subs == &TAVManager::addI1geI2subsList;
            addQuery(walk.name + "-subs/varied", walk.subs, varied, "walk-varied",
                     asFloor ? found("walk-varied") : Size::atLeast(0));
            addQuery(walk.name + "-over/varied", walk.over, varied, "walk-varied", Size::atLeast(0));
        }
        for (const Walk &walk : walks) {
            const Invariants matching = {level, walk.matching};
            addQuery(walk.name + "-subs/matching", walk.subs, matching, "walk-matching",
                     Size::exactly(files.withSubGraphs));
            addQuery(walk.name + "-over/matching", walk.over, matching, "walk-matching",
                     Size::exactly(files.withSuperGraphs));
        }
        // Some I2 differ from the I1 by exactly the tolerance: they neither match nor fail, and the walk does not go on
        // from them.
        addQuery("list-eq-subs/barred", &TAVManager::addI1eqI2subsList, {level, nearLevel}, "walk-matching",
                 Size::exactly(files.withLevelSubGraphs));
        // The graph that fails is below all others, and one such value hides it from them.
        addQuery("list-eq-subs/hidden", &TAVManager::addI1eqI2subsList, {level, hiddenByOne}, "walk-matching",
                 Size::atLeast(0));
        addQuery("list-ge/varied", &TAVManager::addI1geI2List, varied, "compare", found("compare"));
    }

    /// A row that makes a list by comparing the invariants.
    void addQuery(const QByteArray &name, Query query, const Invariants &invariants, const char *pass, const Size &size)
    {
        add(Row(name, [=] { return (manager.*query)(result); })
                .onInvariants(invariants)
                .makingList(size)
                .besideFloor(pass));
    }

    void addLists()
    {
        const QString half = QStringLiteral("half");
        const QString other = QStringLiteral("other-half");
        const QString thousand = QStringLiteral("thousand");
        const auto addClosure = [&](const char *name, auto closure, const QString &list, qint64 listSize) {
            add(Row(name, [=] { return (manager.*closure)(result, list); })
                    .onLists({list})
                    .makingList(Size::atLeast(listSize)));
        };
        addClosure("subs/1000", &TAVManager::addSubsList, thousand, files.thousand);
        addClosure("over/1000", &TAVManager::addOverList, thousand, files.thousand);
        addClosure("subs/half", &TAVManager::addSubsList, half, files.half);
        addClosure("over/half", &TAVManager::addOverList, half, files.half);
        const auto addCombination = [&](const char *name, auto combination, qint64 size) {
            add(Row(name, [=] { return (manager.*combination)(result, half, other); })
                    .onLists({half, other})
                    .makingList(Size::exactly(size)));
        };
        addCombination("union", &TAVManager::addUnionList, files.half + files.otherHalf - files.bothHalves);
        addCombination("intersection", &TAVManager::addInterList, files.bothHalves);
        addCombination("difference", &TAVManager::addExceptList, files.half - files.bothHalves);
    }

    void addFilesOfNames()
    {
        const QString all = QStringLiteral("all");
        const QString allFile = files.path(QStringLiteral("all.g6"));
        const QString halfFile = files.path(QStringLiteral("half.g6"));
        const QString saved = files.path(QStringLiteral("saved.g6"));
        add(Row("list-from-file/half", [=] {
                return manager.addListFromFile(result, halfFile);
            }).makingList(Size::exactly(files.half)));
        add(Row("list-from-file/all", [=] {
                return manager.addListFromFile(result, allFile);
            }).makingList(Size::exactly(files.graphs)));
        // The last line ends without "\n".
        add(Row("save-list/all", [=] { return manager.saveList(all, saved); }).onLists({all}).checkedBy([=] {
            return QFileInfo(saved).size() == QFileInfo(allFile).size() - 1;
        }));
        add(Row("save-graphs", [=] { return manager.saveGraphs(saved); }).checkedBy([=] {
            return haveSameContents(saved, allFile);
        }));
    }

    /// How many graphs a pass of the floor has found.
    Size found(const QByteArray &pass) const { return Size::exactly(qint64(floor.value(pass + "-found"))); }

    void add(const Row &row)
    {
        benchmark::RegisterBenchmark(row.name.constData(),
                                     [this, row](benchmark::State &state) { measure(row, state); })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }

    // The measuring of a row.

    void measure(const Row &row, benchmark::State &state)
    {
        double least = std::numeric_limits<double>::infinity();
        while (state.KeepRunning()) {
            if (!provide(row)) {
                return fail(state, "what it needs could not be made");
            }
            forgetHighestMemory();
            QElapsedTimer timer;
            timer.start();
            const bool succeeded = row.work();
            const double seconds = timer.nsecsElapsed() * 1e-9;
            state.SetIterationTime(seconds);
            least = qMin(least, seconds);
            if (!succeeded) {
                return fail(state, "it failed");
            }
            if (!row.size.contains(manager.getList(result).size()) || !row.check()) {
                return fail(state, "its result is wrong");
            }
        }
        if (floor.contains(row.floor)) {
            state.counters["floors"] = least / floor.value(row.floor);
        }
        state.counters["MB"] = memory("VmRSS:");
        state.counters["peakMB"] = memory("VmHWM:");
    }

    void fail(benchmark::State &state, const char *message)
    {
        failed = true;
        state.SkipWithError(message);
    }

    // What a row needs is made if it is not there yet.

    bool provide(const Row &row)
    {
        const bool databaseIsRight = row.needsDatabase ? isLoaded || load() : !isLoaded || reset();
        return provideLists(row.lists) && databaseIsRight &&
               provideInvariant(row.invariants.first, present.first, &TAVManager::loadInv1, firstFile) &&
               provideInvariant(row.invariants.second, present.second, &TAVManager::loadInv2, secondFile);
    }

    bool provideLists(const QStringList &needed)
    {
        const QStringList names = manager.listNames();
        for (const QString &name : names) {
            if (!needed.contains(name)) {
                manager.remList(name);
            }
        }
        return std::all_of(needed.begin(), needed.end(), [this](const QString &name) {
            return manager.indexOf(name) >= 0 ||
                   manager.addListFromFile(name, files.path(name + QStringLiteral(".g6")));
        });
    }

    bool provideInvariant(Value needed, Value &there, LoadInvariant loader, const QString &file)
    {
        if (needed == nullptr || needed == there) {
            return true;
        }
        files.writeInvariant(file, needed);
        const bool succeeded = loadInvariant(loader, file);
        there = succeeded ? needed : nullptr;
        return succeeded;
    }

    // Operations for which the manager does not return whether they succeeded.

    bool load()
    {
        QEventLoop loop;
        QObject::connect(&manager, &TAVManager::signal_database_loaded, &loop, &QEventLoop::quit);
        QObject::connect(&manager, &TAVManager::signal_database_empty, &loop, &QEventLoop::quit);
        manager.loadDatabase(database);
        loop.exec();
        isLoaded = said == QStringLiteral("Data loaded : %1 nodes and %2 links.").arg(files.graphs).arg(files.links);
        return isLoaded;
    }

    bool reset()
    {
        bool emptied = false;
        const QObject context;
        QObject::connect(&manager, &TAVManager::signal_database_empty, &context, [&emptied] { emptied = true; });
        manager.resetDatabase();
        isLoaded = false;
        present = {};
        return emptied;
    }

    bool loadInvariant(LoadInvariant loader, const QString &file)
    {
        (manager.*loader)(files.path(file));
        return said == QStringLiteral("Read ") + files.path(file);
    }

    /// A derivation says nothing unless it is refused.
    bool derive(Derivation derivation)
    {
        said.clear();
        (manager.*derivation)();
        present.second = nullptr;
        return said.isEmpty();
    }

    const QString firstFile = QStringLiteral("inv1.txt");
    const QString secondFile = QStringLiteral("inv2.txt");

    QString database;
    QMap<QByteArray, double> floor;
    DatabaseFiles files;
    TAVManager manager;
    QString said; // the last console line
    bool isLoaded = false;
    Invariants present; // of the loaded database; nullptr where unknown
    bool failed = false;
};
} // namespace

int main(int argc, char *argv[])
{
    useLargeHeapSteps();
    // Rounds for a tenth of a second, unless the arguments say otherwise.
    char leastTime[] = "--benchmark_min_time=0.1";
    std::vector<char *> arguments(argv, argv + argc + 1);
    arguments.insert(arguments.begin() + 1, leastTime);
    ++argc;
    benchmark::Initialize(&argc, arguments.data());
    const QCoreApplication application(argc, arguments.data());
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        qFatal("no temporary folder");
    }
    Bench bench(largeDatabase(argc, arguments.data(), folder.path()), folder.path());
    const bool succeeded = bench.run();
    benchmark::Shutdown();
    return succeeded ? 0 : 1;
}
