// The queries on random databases, held against what their definitions say literally.

#include "TAVgraph.h"
#include "TAVsearchengine.h"
#include "support/stderrcapture.h"
#include "support/threads.h"

#include <QSet>
#include <QTemporaryFile>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <deque>
#include <functional>
#include <limits>
#include <random>
#include <utility>
#include <vector>

/// The queries and derivations on seeded random databases, held against a literal second reading of their steps.
/// TAVOLINE_DATABASES sets how many databases are tried (20000), TAVOLINE_SEED the first seed.
class TestQueriesRandom : public QObject
{
    Q_OBJECT

private slots:
    void everyQueryOnRandomDatabases();
    void everyQueryOnLargeDatabases_data();
    void everyQueryOnLargeDatabases();
    void equalityBehindBarriers();
    void equalityBehindBarriersOnLargeDatabases();
};

namespace
{
constexpr double tolerance = 1.0e-8;
constexpr int mostRecords = 60;
// A sanitizer looks at how memory is used, which a tenth of the databases shows as well.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int usualDatabases = 2000;
#else
constexpr int usualDatabases = 20000;
#endif

using Graphs = QVector<TAVGraph *>;
using Links = const QList<TAVGraph *> &(TAVGraph::*)() const;

// The second reading: slow, and step by step.

struct Tests {
    bool (*matches)(double x, double y);
    bool (*fails)(double x, double y);
};

const Tests equal = {[](double x, double y) { return std::fabs(y - x) < tolerance; },
                     [](double x, double y) { return std::fabs(y - x) > tolerance; }};
/// As if there were no barriers: the walk goes on from a difference of exactly the tolerance.
const Tests equalOrBarrier = {[](double x, double y) { return std::fabs(y - x) <= tolerance; },
                              [](double x, double y) { return std::fabs(y - x) > tolerance; }};
const Tests atLeast = {[](double x, double y) { return y >= x - tolerance; },
                       [](double x, double y) { return x - tolerance > y; }};
const Tests atMost = {[](double x, double y) { return x + tolerance >= y; },
                      [](double x, double y) { return y > x + tolerance; }};
const Tests above = {[](double x, double y) { return x - tolerance > y; },
                     [](double x, double y) { return y >= x - tolerance; }};
const Tests below = {[](double x, double y) { return y > x + tolerance; },
                     [](double x, double y) { return x + tolerance >= y; }};

/// Which records a traversal has marked.
class Marks
{
public:
    explicit Marks(const Graphs &graphs) : markedBy(graphs.size()) {}

    /// Takes back all marks.
    void clear() { ++traversal; }

    /// Marks the record and returns whether it was not marked before.
    bool mark(const TAVGraph *graph)
    {
        const auto place = markedBy.begin() + graph->getPosition();
        return std::exchange(*place, traversal) != traversal;
    }

private:
    std::vector<int> markedBy;
    int traversal = 1;
};

QStringList literalWalk(const Graphs &graphs, Links links, const Tests &tests)
{
    QStringList result;
    Marks marks(graphs);
    for (TAVGraph *g : graphs) {
        if (g->getErrInv1()) {
            continue;
        }
        const double x = g->getInv1();
        bool allHold = true;
        bool someHold = false;
        marks.clear();
        std::deque<TAVGraph *> queue{g};
        while (!queue.empty() && allHold) {
            TAVGraph *h = queue.front();
            queue.pop_front();
            const QList<TAVGraph *> &neighbours = (h->*links)();
            for (TAVGraph *n : neighbours) {
                if (!marks.mark(n)) {
                    continue;
                }
                if (!n->getErrInv2() && tests.matches(x, n->getInv2())) {
                    someHold = true;
                    queue.push_back(n);
                } else if (!n->getErrInv2() && tests.fails(x, n->getInv2())) {
                    allHold = false;
                }
            }
        }
        if (allHold && someHold) {
            result.append(g->getName());
        }
    }
    return result;
}

QStringList literalClosure(const Graphs &graphs, Links links, const QStringList &names)
{
    QStringList result;
    std::deque<TAVGraph *> queue;
    Marks marks(graphs);
    for (TAVGraph *graph : graphs) {
        if (names.contains(graph->getName()) && marks.mark(graph)) {
            queue.push_back(graph);
            result.append(graph->getName());
        }
    }
    while (!queue.empty()) {
        TAVGraph *graph = queue.front();
        queue.pop_front();
        const QList<TAVGraph *> &neighbours = (graph->*links)();
        for (TAVGraph *neighbour : neighbours) {
            if (marks.mark(neighbour)) {
                result.append(neighbour->getName());
                queue.push_back(neighbour);
            }
        }
    }
    return result;
}

/// The invariants of a record.
struct Invariants {
    double inv1;
    double inv2;
    bool missing1;
    bool missing2;
};

/// Whether two numbers are the same: a zero has its sign, and NaN is NaN.
bool isSame(double a, double b)
{
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

bool operator==(const Invariants &a, const Invariants &b)
{
    return isSame(a.inv1, b.inv1) && isSame(a.inv2, b.inv2) && a.missing1 == b.missing1 && a.missing2 == b.missing2;
}

std::vector<Invariants> invariants(const Graphs &graphs)
{
    std::vector<Invariants> result;
    for (const TAVGraph *graph : graphs) {
        result.push_back({graph->getInv1(), graph->getInv2(), graph->getErrInv1(), graph->getErrInv2()});
    }
    return result;
}

/// I1 of a record's neighbours that is present, in the order of the lists.
std::vector<double> presentInv1(const TAVGraph &graph, bool sub, bool over)
{
    std::vector<double> values;
    const QList<TAVGraph *> neighbours =
        (sub ? graph.getSub() : QList<TAVGraph *>()) + (over ? graph.getOver() : QList<TAVGraph *>());
    for (const TAVGraph *neighbour : neighbours) {
        if (!neighbour->getErrInv1()) {
            values.push_back(neighbour->getInv1());
        }
    }
    return values;
}

/// The invariants that a derivation is to leave behind.
std::vector<Invariants> literalDerivation(const Graphs &graphs, bool sub, bool over,
                                          double (*combine)(const std::vector<double> &))
{
    std::vector<Invariants> result = invariants(graphs);
    for (const TAVGraph *graph : graphs) {
        const std::vector<double> values = presentInv1(*graph, sub, over);
        Invariants &expected = result[graph->getPosition()];
        expected.missing2 = values.empty();
        if (!values.empty()) {
            expected.inv2 = combine(values);
        }
    }
    return result;
}

/// The invariants that an exchange is to leave behind.
std::vector<Invariants> literalExchange(const Graphs &graphs, Invariants (*exchange)(const Invariants &))
{
    std::vector<Invariants> result = invariants(graphs);
    std::transform(result.begin(), result.end(), result.begin(), exchange);
    return result;
}

double mean(const std::vector<double> &values)
{
    double sum = 0.0;
    double count = 0.0;
    for (const double value : values) {
        count += 1.0;
        sum += value;
    }
    return sum / count;
}

double smallest(const std::vector<double> &values)
{
    double best = values.front();
    for (const double value : values) {
        best = best > value ? value : best;
    }
    return best;
}

double largest(const std::vector<double> &values)
{
    double best = values.front();
    for (const double value : values) {
        best = value > best ? value : best;
    }
    return best;
}

/// One random database, loaded into an engine.
class RandomDatabase
{
public:
    /// A database of at most mostRecords records, now and then one with long chains.
    explicit RandomDatabase(unsigned seed) : random(seed)
    {
        load(below(mostRecords + 1), 1, chance(30) ? 3 : mostRecords);
        choosePool();
        chooseInvariants();
    }

    /// A database of @p records records that falls into @p parts without links to each other. The records of each take
    /// turns with those of the others, so that its links reach far, and a walk in it stays short.
    RandomDatabase(unsigned seed, int records, int parts) : random(seed)
    {
        load(records, parts, records);
        choosePool();
        chooseInvariants();
    }
    ~RandomDatabase() { engine.eraseDatabase(); }
    RandomDatabase(const RandomDatabase &) = delete;
    RandomDatabase &operator=(const RandomDatabase &) = delete;

    const Graphs &graphs() const { return engine.records(); }

    void chooseInvariants()
    {
        for (TAVGraph *graph : engine.records()) {
            graph->setInv1(randomValue(), chance(missingPercent));
            graph->setInv2(randomValue(), chance(missingPercent));
        }
    }

    /// Values of which many differ by exactly the tolerance, and some by a little more or less.
    void chooseBarriers()
    {
        constexpr double step = 0x1p-78; // of the last digit of the tolerance
        const double infinity = std::numeric_limits<double>::infinity();
        pool = {5.0, -3e-8, 0.0, 1e-30, -1e-30};
        const double centres[] = {0.0,       0.0,        tolerance / 2, -tolerance / 2,
                                  tolerance, -tolerance, 4 * tolerance, 0x1p-25};
        const double centre = centres[size_t(below(int(std::size(centres))))];
        for (int x = below(4); x >= 0; --x) {
            const double near = centre + x * step * (chance(50) ? 1 : 1 << 20);
            pool.insert(pool.end(), {near, near, near + tolerance, near - tolerance});
        }
        const double rare[] = {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity, tolerance + step,
                               tolerance - step / 2};
        for (int i = below(3); i > 0; --i) {
            pool.push_back(rare[size_t(below(int(std::size(rare))))]);
        }
        missingPercent = chance(50) ? 0 : below(20);
        chooseInvariants();
    }

    /// Fewer names than @p bound, and now and then one that no record has.
    QStringList someNames(int bound)
    {
        QStringList names;
        for (int i = below(bound); i > 0; --i) {
            names.append(chance(20) ? QStringLiteral("unknown") : name(below(qMax(mostRecords, graphs().size()))));
        }
        return names;
    }

    TAVSearchEngine engine;

private:
    int below(int bound) { return int(std::uniform_int_distribution<int>(0, bound - 1)(random)); }
    bool chance(int percent) { return below(100) < percent; }

    static QString name(int number) { return QStringLiteral("g%1").arg(number); }

    /// Links lead at most @p reach records of the same part back, or from a record to itself.
    void load(int records, int parts, int reach)
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        const int mostLinks = 1 + below(6);
        for (int record = 0; record < records; ++record) {
            QByteArray line = name(chance(10) ? below(records) : record).toLatin1(); // some names twice
            for (int links = below(mostLinks + 1); links > 0; --links) {
                const int turn = record / parts;
                line += '\t' + QByteArray::number((chance(5) ? turn : turn - below(qMin(turn, reach) + 1)) * parts +
                                                  record % parts);
            }
            file.write(line + '\n');
        }
        file.close();
        engine.setFilename(file.fileName());
        engine.run();
        QCOMPARE(engine.records().size(), records);
    }

    /// Few values that are close to each other, so that walks go deep and end at the borders of the tests.
    void choosePool()
    {
        const double infinity = std::numeric_limits<double>::infinity();
        // Up to 2^-24 two values can be apart by exactly the tolerance.
        const double centres[] = {0.0, 1.0, 3.5, 1e-30, tolerance, 1e17, 2e-8, 3e-8, 0x1p-24, 0x1.8p-25, 0x1p-25, 0.1};
        const double centre = centres[below(int(std::size(centres)))] * (chance(50) ? 1.0 : -1.0);
        pool = {centre, centre, centre};
        const double near[] = {centre + tolerance,
                               centre - tolerance,
                               centre + 2 * tolerance,
                               centre + tolerance / 2,
                               centre - tolerance / 3,
                               centre + 0.5,
                               centre - 1.0,
                               1e-300,
                               -centre,
                               std::numeric_limits<double>::quiet_NaN(),
                               infinity,
                               -infinity};
        for (int i = below(6); i > 0; --i) {
            const double value = near[below(12)];
            pool.push_back(value);
            if (chance(40)) {
                pool.push_back(std::nextafter(value, infinity));
                pool.push_back(std::nextafter(value, -infinity));
            }
        }
        missingPercent = chance(50) ? 0 : below(40);
    }

    double randomValue() { return pool[below(int(pool.size()))]; }

    std::mt19937 random;
    std::vector<double> pool;
    int missingPercent = 0;
};

void checkWalks(RandomDatabase &database)
{
    TAVSearchEngine &engine = database.engine;
    const struct {
        QStringList (TAVSearchEngine::*query)();
        Links links;
        const Tests &tests;
    } members[] = {
        {&TAVSearchEngine::I1eqI2subsgraphs, &TAVGraph::subGraphs, equal},
        {&TAVSearchEngine::I1eqI2overgraphs, &TAVGraph::superGraphs, equal},
        {&TAVSearchEngine::I1geI2subsgraphs, &TAVGraph::subGraphs, atLeast},
        {&TAVSearchEngine::I1geI2overgraphs, &TAVGraph::superGraphs, atLeast},
        {&TAVSearchEngine::I1leI2subsgraphs, &TAVGraph::subGraphs, atMost},
        {&TAVSearchEngine::I1leI2overgraphs, &TAVGraph::superGraphs, atMost},
        {&TAVSearchEngine::I1gtI2subsgraphs, &TAVGraph::subGraphs, above},
        {&TAVSearchEngine::I1gtI2overgraphs, &TAVGraph::superGraphs, above},
        {&TAVSearchEngine::I1ltI2subsgraphs, &TAVGraph::subGraphs, below},
        {&TAVSearchEngine::I1ltI2overgraphs, &TAVGraph::superGraphs, below},
    };
    for (const auto &member : members) {
        QCOMPARE((engine.*member.query)(), literalWalk(database.graphs(), member.links, member.tests));
        QVERIFY(std::none_of(database.graphs().begin(), database.graphs().end(),
                             [](const TAVGraph *graph) { return graph->isChecked(); }));
    }
}

/// Adds to @p behindBarriers how many graphs are listed only because of a barrier.
void checkEquality(RandomDatabase &database, int &behindBarriers)
{
    TAVSearchEngine &engine = database.engine;
    const struct {
        QStringList (TAVSearchEngine::*query)();
        Links links;
    } members[] = {{&TAVSearchEngine::I1eqI2subsgraphs, &TAVGraph::subGraphs},
                   {&TAVSearchEngine::I1eqI2overgraphs, &TAVGraph::superGraphs}};
    for (const auto &member : members) {
        const QStringList expected = literalWalk(database.graphs(), member.links, equal);
        QCOMPARE((engine.*member.query)(), expected);
        const QStringList listed = literalWalk(database.graphs(), member.links, equalOrBarrier);
        const QSet<QString> others(listed.begin(), listed.end());
        behindBarriers += int(std::count_if(expected.begin(), expected.end(),
                                            [&](const QString &name) { return !others.contains(name); }));
    }
}

void checkComparisons(const RandomDatabase &database)
{
    QStringList atLeastOwn;
    QStringList atMostOwn;
    for (const TAVGraph *graph : database.graphs()) {
        if (graph->getErrInv1() || graph->getErrInv2()) {
            continue;
        }
        if (graph->getInv1() >= graph->getInv2() - tolerance) {
            atLeastOwn.append(graph->getName());
        }
        if (graph->getInv2() + tolerance >= graph->getInv1()) {
            atMostOwn.append(graph->getName());
        }
    }
    QCOMPARE(database.engine.I1geI2graphs(), atLeastOwn);
    QCOMPARE(database.engine.I1leI2graphs(), atMostOwn);
}

void checkClosures(RandomDatabase &database, int mostNames)
{
    const QStringList names = database.someNames(mostNames);
    QCOMPARE(database.engine.subgraphs(names), literalClosure(database.graphs(), &TAVGraph::subGraphs, names));
    QCOMPARE(database.engine.overgraphs(names), literalClosure(database.graphs(), &TAVGraph::superGraphs, names));
}

void checkDerivations(RandomDatabase &database)
{
    const struct {
        void (TAVSearchEngine::*derive)();
        bool sub;
        bool over;
        double (*combine)(const std::vector<double> &);
    } members[] = {
        {&TAVSearchEngine::avgSub1, true, false, mean},      {&TAVSearchEngine::avgOver1, false, true, mean},
        {&TAVSearchEngine::avgAll1, true, true, mean},       {&TAVSearchEngine::minSub1, true, false, smallest},
        {&TAVSearchEngine::minOver1, false, true, smallest}, {&TAVSearchEngine::minAll1, true, true, smallest},
        {&TAVSearchEngine::maxSub1, true, false, largest},   {&TAVSearchEngine::maxOver1, false, true, largest},
        {&TAVSearchEngine::maxAll1, true, true, largest},
    };
    for (const auto &member : members) {
        const auto expected = literalDerivation(database.graphs(), member.sub, member.over, member.combine);
        (database.engine.*member.derive)();
        QVERIFY(invariants(database.graphs()) == expected);
    }
}

void checkExchanges(RandomDatabase &database)
{
    const struct {
        void (TAVSearchEngine::*exchange)();
        Invariants (*literal)(const Invariants &);
    } members[] = {
        {&TAVSearchEngine::exch_1_2,
         [](const Invariants &old) {
             return Invariants{old.inv2, old.inv1, old.missing2, old.missing1};
         }},
        {&TAVSearchEngine::I1getsI2,
         [](const Invariants &old) {
             return Invariants{old.inv2, old.inv2, old.missing2, old.missing2};
         }},
        {&TAVSearchEngine::I2getsI1,
         [](const Invariants &old) {
             return Invariants{old.inv1, old.inv1, old.missing1, old.missing1};
         }},
    };
    for (const auto &member : members) {
        database.chooseInvariants();
        const auto expected = literalExchange(database.graphs(), member.literal);
        (database.engine.*member.exchange)();
        QVERIFY(invariants(database.graphs()) == expected);
    }
}
/// Calls @p check for so many databases; returns how many they were.
int forEachRandomDatabase(const std::function<void(RandomDatabase &)> &check)
{
    const int databases = qEnvironmentVariableIsSet("TAVOLINE_DATABASES")
                              ? qEnvironmentVariableIntValue("TAVOLINE_DATABASES")
                              : usualDatabases;
    const unsigned firstSeed = qEnvironmentVariableIntValue("TAVOLINE_SEED");
    const StderrCapture silence; // every engine says that it starts
    for (unsigned seed = firstSeed; seed != firstSeed + databases; ++seed) {
        RandomDatabase database(seed);
        check(database);
        if (QTest::currentTestFailed()) {
            qWarning("repeat with TAVOLINE_SEED=%u TAVOLINE_DATABASES=1", seed);
            break;
        }
    }
    return databases;
}
} // namespace

void TestQueriesRandom::everyQueryOnRandomDatabases()
{
    forEachRandomDatabase([](RandomDatabase &database) {
        checkWalks(database);
        checkComparisons(database);
        checkClosures(database, 5);
        checkDerivations(database);
        checkExchanges(database);
    });
}

void TestQueriesRandom::everyQueryOnLargeDatabases_data()
{
    // The sizes at which the work is shared out, and begins a new batch, and those beside them.
    QTest::addColumn<int>("records");
    QTest::addColumn<int>("threads");
    const struct {
        int records;
        QVector<int> threads;
    } sizes[] = {{4096, {2}},  {4097, {3}},  {16384, {2}}, {16385, {8}},   {32767, {3}},
                 {32768, {2}}, {32769, {8}}, {65536, {3}}, {70001, {1, 8}}};
    for (const auto &size : sizes) {
        for (const int threads : size.threads) {
            QTest::addRow("%d records, %d threads", size.records, threads) << size.records << threads;
        }
    }
}

void TestQueriesRandom::everyQueryOnLargeDatabases()
{
    QFETCH(int, records);
    QFETCH(int, threads);
    const ThreadCount count(threads);
    const StderrCapture silence;
    for (const int turns : {2, 7, 40}) {
        RandomDatabase database(records + turns, records, records / turns);
        checkWalks(database);
        checkComparisons(database);
        checkClosures(database, 5);
        checkClosures(database, 40);
        checkDerivations(database);
        checkExchanges(database);
    }
}

void TestQueriesRandom::equalityBehindBarriers()
{
    int behindBarriers = 0;
    const int databases = forEachRandomDatabase([&](RandomDatabase &database) {
        for (int round = 0; round < 3; ++round) {
            database.chooseBarriers();
            checkEquality(database, behindBarriers);
        }
    });
    QVERIFY(databases < 100 || behindBarriers > databases); // one alone may have none
}

void TestQueriesRandom::equalityBehindBarriersOnLargeDatabases()
{
    const ThreadCount count(3);
    const StderrCapture silence;
    int behindBarriers = 0;
    for (const int turns : {2, 7, 40}) {
        RandomDatabase database(unsigned(turns), 40000, 40000 / turns);
        for (int round = 0; round < 3; ++round) {
            database.chooseBarriers();
            checkEquality(database, behindBarriers);
        }
    }
    QVERIFY(behindBarriers > 1000);
}

QTEST_APPLESS_MAIN(TestQueriesRandom)
#include "tst_queries_random.moc"
