#include "TAVgraph.h"
#include "TAVsearchengine.h"

#include <QTemporaryFile>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <deque>
#include <functional>
#include <limits>
#include <random>
#include <set>

/// The queries and derivations on seeded random databases, held against a literal second reading of their steps.
/// TAVOLINE_DATABASES sets how many databases are tried (20000), TAVOLINE_SEED the first seed.
class TestQueriesRandom : public QObject
{
    Q_OBJECT

private slots:
    void everyQueryOnRandomDatabases();
};

namespace
{
constexpr double tolerance = 1.0e-8;
constexpr int mostRecords = 60;

using Graphs = QVector<TAVGraph *>;
using Links = QList<TAVGraph *> (TAVGraph::*)() const;

// The second reading: slow, and step by step.

struct Tests {
    std::function<bool(double x, double y)> matches;
    std::function<bool(double x, double y)> fails;
};

const Tests equal = {[](double x, double y) { return std::fabs(y - x) < tolerance; },
                     [](double x, double y) { return std::fabs(y - x) > tolerance; }};
const Tests atLeast = {[](double x, double y) { return y >= x - tolerance; },
                       [](double x, double y) { return x - tolerance > y; }};
const Tests atMost = {[](double x, double y) { return x + tolerance >= y; },
                      [](double x, double y) { return y > x + tolerance; }};
const Tests above = {[](double x, double y) { return x - tolerance > y; },
                     [](double x, double y) { return y >= x - tolerance; }};
const Tests below = {[](double x, double y) { return y > x + tolerance; },
                     [](double x, double y) { return x + tolerance >= y; }};

QStringList literalWalk(const Graphs &graphs, Links links, const Tests &tests)
{
    QStringList result;
    for (TAVGraph *g : graphs) {
        if (g->getErrInv1()) {
            continue;
        }
        const double x = g->getInv1();
        bool allHold = true;
        bool someHold = false;
        std::set<TAVGraph *> marked;
        std::deque<TAVGraph *> queue{g};
        while (!queue.empty() && allHold) {
            TAVGraph *h = queue.front();
            queue.pop_front();
            const QList<TAVGraph *> neighbours = (h->*links)();
            for (TAVGraph *n : neighbours) {
                if (!marked.insert(n).second) {
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
    std::set<TAVGraph *> marked;
    for (TAVGraph *graph : graphs) {
        if (marked.count(graph) == 0 && names.contains(graph->getName())) {
            marked.insert(graph);
            queue.push_back(graph);
            result.append(graph->getName());
        }
    }
    while (!queue.empty()) {
        TAVGraph *graph = queue.front();
        queue.pop_front();
        const QList<TAVGraph *> neighbours = (graph->*links)();
        for (TAVGraph *neighbour : neighbours) {
            if (marked.insert(neighbour).second) {
                result.append(neighbour->getName());
                queue.push_back(neighbour);
            }
        }
    }
    return result;
}

/// A number as text that tells every bit of it apart, NaN included.
QString exact(double value)
{
    return std::isnan(value) ? QStringLiteral("nan") : QString::number(value, 'g', 17);
}

QString invariants(const Graphs &graphs)
{
    QStringList lines;
    for (const TAVGraph *graph : graphs) {
        lines.append(exact(graph->getInv1()) + QLatin1Char(graph->getErrInv1() ? '!' : ' ') + exact(graph->getInv2()) +
                     QLatin1Char(graph->getErrInv2() ? '!' : ' '));
    }
    return lines.join(QLatin1Char('\n'));
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

/// What a derivation is to leave behind, as invariants() tells it.
QString literalDerivation(const Graphs &graphs, bool sub, bool over,
                          const std::function<double(const std::vector<double> &)> &combine)
{
    QStringList lines;
    for (const TAVGraph *graph : graphs) {
        const std::vector<double> values = presentInv1(*graph, sub, over);
        const double inv2 = values.empty() ? graph->getInv2() : combine(values);
        lines.append(exact(graph->getInv1()) + QLatin1Char(graph->getErrInv1() ? '!' : ' ') + exact(inv2) +
                     QLatin1Char(values.empty() ? '!' : ' '));
    }
    return lines.join(QLatin1Char('\n'));
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
    explicit RandomDatabase(unsigned seed) : random(seed)
    {
        load();
        choosePool();
        for (TAVGraph *graph : engine.records()) {
            graph->setInv1(randomValue(), chance(missingPercent));
            graph->setInv2(randomValue(), chance(missingPercent));
        }
    }
    ~RandomDatabase() { engine.eraseDatabase(); }
    RandomDatabase(const RandomDatabase &) = delete;
    RandomDatabase &operator=(const RandomDatabase &) = delete;

    const Graphs &graphs() const { return engine.records(); }

    QStringList someNames()
    {
        QStringList names;
        for (int i = below(5); i > 0; --i) {
            names.append(chance(20) ? QStringLiteral("unknown") : name(below(mostRecords)));
        }
        return names;
    }

    TAVSearchEngine engine;

private:
    int below(int bound) { return int(std::uniform_int_distribution<int>(0, bound - 1)(random)); }
    bool chance(int percent) { return below(100) < percent; }

    static QString name(int number) { return QStringLiteral("g%1").arg(number); }

    void load()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        const int records = below(mostRecords + 1);
        const int mostLinks = 1 + below(6);
        for (int record = 0; record < records; ++record) {
            QByteArray line = name(chance(10) ? below(records) : record).toLatin1(); // some names twice
            for (int links = below(mostLinks + 1); links > 0; --links) {
                line += '\t' + QByteArray::number(chance(5) ? record : below(record + 1));
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
        const double centres[] = {0.0, 1.0, -3.5, 1e-30, tolerance, 1e17, 0.1};
        const double centre = centres[below(7)];
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

    double randomValue() { return pool[size_t(below(int(pool.size())))]; }

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
        {&TAVSearchEngine::I1eqI2subsgraphs, &TAVGraph::getSub, equal},
        {&TAVSearchEngine::I1eqI2overgraphs, &TAVGraph::getOver, equal},
        {&TAVSearchEngine::I1geI2subsgraphs, &TAVGraph::getSub, atLeast},
        {&TAVSearchEngine::I1geI2overgraphs, &TAVGraph::getOver, atLeast},
        {&TAVSearchEngine::I1leI2subsgraphs, &TAVGraph::getSub, atMost},
        {&TAVSearchEngine::I1leI2overgraphs, &TAVGraph::getOver, atMost},
        {&TAVSearchEngine::I1gtI2subsgraphs, &TAVGraph::getSub, above},
        {&TAVSearchEngine::I1gtI2overgraphs, &TAVGraph::getOver, above},
        {&TAVSearchEngine::I1ltI2subsgraphs, &TAVGraph::getSub, below},
        {&TAVSearchEngine::I1ltI2overgraphs, &TAVGraph::getOver, below},
    };
    for (const auto &member : members) {
        QCOMPARE((engine.*member.query)(), literalWalk(database.graphs(), member.links, member.tests));
        for (const TAVGraph *graph : database.graphs()) {
            QVERIFY(!graph->isChecked());
        }
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

void checkClosures(RandomDatabase &database)
{
    const QStringList names = database.someNames();
    QCOMPARE(database.engine.subgraphs(names), literalClosure(database.graphs(), &TAVGraph::getSub, names));
    QCOMPARE(database.engine.overgraphs(names), literalClosure(database.graphs(), &TAVGraph::getOver, names));
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
        const QString expected = literalDerivation(database.graphs(), member.sub, member.over, member.combine);
        (database.engine.*member.derive)();
        QCOMPARE(invariants(database.graphs()), expected);
    }
}
} // namespace

void TestQueriesRandom::everyQueryOnRandomDatabases()
{
    const int databases =
        qEnvironmentVariableIsSet("TAVOLINE_DATABASES") ? qEnvironmentVariableIntValue("TAVOLINE_DATABASES") : 20000;
    const auto firstSeed = unsigned(qEnvironmentVariableIntValue("TAVOLINE_SEED"));
    for (unsigned seed = firstSeed; seed != firstSeed + unsigned(databases); ++seed) {
        RandomDatabase database(seed);
        checkWalks(database);
        checkComparisons(database);
        checkClosures(database);
        checkDerivations(database);
        if (QTest::currentTestFailed()) {
            QFAIL(qPrintable(QStringLiteral("repeat with TAVOLINE_SEED=%1 TAVOLINE_DATABASES=1").arg(seed)));
        }
    }
}

QTEST_APPLESS_MAIN(TestQueriesRandom)
#include "tst_queries_random.moc"
