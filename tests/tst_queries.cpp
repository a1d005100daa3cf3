// The queries over the records: derived invariants, closures of lists and comparisons of I1 with I2.

#include "support/literals.h"
#include "support/loadedengine.h"
#include "support/signalrecorder.h"
#include "support/testfiles.h"

#include <QtTest>

#include <cmath>
#include <deque>
#include <set>
#include <vector>

/// The closures, the comparisons and the derivations over a whole database.
class TestQueries : public QObject
{
    Q_OBJECT

private slots:
    void closureOfNothing();
    void closureOfABottom();
    void breadthFirstInTheOrderOfTheLists();
    void seedsComeInDatabaseOrder();
    void upwardClosure();
    void recordsOfTheSameName();
    void closuresLeaveTheirMarksWalksDoNot();
    void ownInvariants();
    void equalBelow();
    void missingNeighboursNeverList();
    void oneFailureIsEnough();
    void selfLinks();
    void exactToleranceIsNeither();
    void barriersHideFailures();
    void barrierInALongChain();
    void barriersOfManyGraphs();
    void orientationOfTheMembers_data();
    void orientationOfTheMembers();
    void appendedDatabase();
    void consoleOfTheQueries();
    void emptyDatabase();
    void wholeDatabaseOperations();
    void everyNeighbourMatches();
    void completeGraphsByAverageDistance();
    void sizeNeverGrowsDownwards();
    void walksOnRealInvariants_data();
    void walksOnRealInvariants();
};

using Query = QStringList (TAVSearchEngine::*)();
Q_DECLARE_METATYPE(Query)

namespace
{
constexpr double tolerance = 1.0e-8;

/// The sample database and one of its invariants, read from the text.
struct Sample {
    QStringList names;
    std::vector<std::vector<int>> subs;
    std::vector<std::vector<int>> overs;
    std::vector<double> values; // NaN when missing

    explicit Sample(const char *invariant)
    {
        const QList<QByteArray> lines = contents(example("connected-8.tav")).split('\n');
        const QList<QByteArray> invariantLines =
            contents(example((QByteArray("connected-8.") + invariant + ".txt").constData())).split('\n').mid(1);
        for (int i = 0; i + 1 < lines.size(); ++i) {
            const QList<QByteArray> fields = lines.at(i).split('\t');
            names.append(QString::fromLatin1(fields.first()));
            subs.emplace_back();
            overs.emplace_back();
            for (const QByteArray &index : fields.mid(1)) {
                subs.back().push_back(index.toInt());
                overs[index.toInt()].push_back(i);
            }
            const QByteArray value = invariantLines.at(i).split('\t').at(1);
            values.push_back(value == "NA" ? std::nan("") : value.toDouble());
        }
    }

    /// The graphs from which a walk over the links, with I1 = I2 = the invariant, is listed: at least one graph is
    /// reached through present values, and the test holds for all of them.
    template<typename Holds> QStringList walk(const std::vector<std::vector<int>> &links, Holds holds) const
    {
        QStringList listed;
        for (size_t start = 0; start < values.size(); ++start) {
            std::set<int> reached;
            std::deque<size_t> queue{start};
            bool all = !std::isnan(values[start]);
            for (; all && !queue.empty(); queue.pop_front()) {
                for (const int next : links[queue.front()]) {
                    if (!std::isnan(values[next]) && reached.insert(next).second) {
                        all = all && holds(values[start], values[next]);
                        queue.push_back(next);
                    }
                }
            }
            if (all && !reached.empty()) {
                listed.append(names.at(int(start)));
            }
        }
        return listed;
    }
};

/// The engine with the sample database and one of its invariants as I1 and I2.
class SampleEngine : public LoadedEngine
{
public:
    explicit SampleEngine(const char *invariant) : LoadedEngine(contents(example("connected-8.tav")))
    {
        if (!engine.loadInv1(example((QByteArray("connected-8.") + invariant + ".txt").constData()))) {
            qFatal("the invariant does not load");
        }
        engine.I2getsI1();
    }
};
} // namespace

void TestQueries::closureOfNothing()
{
    LoadedEngine database("A\nB\t0\n");
    QCOMPARE(database.engine.subgraphs(QStringList()), QStringList());
    QCOMPARE(database.engine.subgraphs(words({"C", "a"})), QStringList());
    QCOMPARE(database.engine.overgraphs(words({"C"})), QStringList());
}

void TestQueries::closureOfABottom()
{
    LoadedEngine database("A\nB\t0\n");
    QCOMPARE(database.engine.subgraphs(words({"A"})), words({"A"}));
    QCOMPARE(database.engine.overgraphs(words({"B"})), words({"B"}));
}

void TestQueries::breadthFirstInTheOrderOfTheLists()
{
    LoadedEngine bFirst("A\nB\t0\nD\t1\t0\n");
    QCOMPARE(bFirst.engine.subgraphs(words({"D"})), words({"D", "B", "A"}));
    LoadedEngine aFirst("A\nB\t0\nD\t0\t1\n");
    QCOMPARE(aFirst.engine.subgraphs(words({"D"})), words({"D", "A", "B"}));
    LoadedEngine levels("A\nB\nC\t0\nD\t1\t0\nE\t3\t2\n");
    QCOMPARE(levels.engine.subgraphs(words({"E"})), words({"E", "D", "C", "B", "A"}));
}

void TestQueries::seedsComeInDatabaseOrder()
{
    LoadedEngine database("A\nB\t0\nD\t0\t1\n");
    QCOMPARE(database.engine.subgraphs(words({"D", "B", "unknown", "D"})), words({"B", "D", "A"}));
}

void TestQueries::upwardClosure()
{
    LoadedEngine database("A\nB\t0\nC\t0\nD\t2\t1\n");
    QCOMPARE(database.engine.overgraphs(words({"A"})), words({"A", "B", "C", "D"}));
    QCOMPARE(database.engine.overgraphs(words({"C"})), words({"C", "D"}));
}

void TestQueries::recordsOfTheSameName()
{
    LoadedEngine database("A\nA\nB\t1\t0\t1\n");
    QCOMPARE(database.engine.subgraphs(words({"A"})), words({"A", "A"}));
    QCOMPARE(database.engine.subgraphs(words({"B"})), words({"B", "A", "A"}));
}

void TestQueries::closuresLeaveTheirMarksWalksDoNot()
{
    LoadedEngine database("A\nB\t0\nC\n");
    database.setInv1({1.0, 1.0, 1.0});
    database.setInv2({1.0, 1.0, 1.0});
    database.engine.subgraphs(words({"B"}));
    QVERIFY(database.graph(0).isChecked() && database.graph(1).isChecked() && !database.graph(2).isChecked());
    QCOMPARE(database.engine.I1eqI2subsgraphs(), words({"B"}));
    QVERIFY(!database.graph(0).isChecked() && !database.graph(1).isChecked() && !database.graph(2).isChecked());
}

void TestQueries::ownInvariants()
{
    LoadedEngine database("a\nb\nc\nd\ne\nf\n");
    database.setInv1({1.0, 1.0, std::nullopt, 1.0, 2.0, qQNaN()});
    database.setInv2({1.000000005, 1.00000002, 0.0, std::nullopt, 1.0, 1.0});
    QCOMPARE(database.engine.I1geI2graphs(), words({"a", "e"}));
    QCOMPARE(database.engine.I1leI2graphs(), words({"a", "b"}));
}

void TestQueries::equalBelow()
{
    LoadedEngine database("A\nB\t0\nC\t1\n");
    database.setInv1({std::nullopt, std::nullopt, 2.0});
    database.setInv2({2.0, 2.0, 9.0});
    QCOMPARE(database.engine.I1eqI2subsgraphs(), words({"C"}));
    database.setInv2({3.0, 2.0, 9.0});
    QCOMPARE(database.engine.I1eqI2subsgraphs(), QStringList());
    database.setInv2({std::nullopt, 2.0, 9.0});
    QCOMPARE(database.engine.I1eqI2subsgraphs(), words({"C"}));
}

void TestQueries::missingNeighboursNeverList()
{
    LoadedEngine database("A\nB\t0\n");
    database.setInv1({1.0, 1.0});
    database.setInv2({std::nullopt, 1.0});
    for (const Query query :
         {&TAVSearchEngine::I1eqI2subsgraphs, &TAVSearchEngine::I1geI2subsgraphs, &TAVSearchEngine::I1leI2subsgraphs,
          &TAVSearchEngine::I1gtI2subsgraphs, &TAVSearchEngine::I1ltI2subsgraphs}) {
        QCOMPARE((database.engine.*query)(), QStringList());
    }
}

void TestQueries::oneFailureIsEnough()
{
    LoadedEngine database("A\nB\nC\t0\t1\n");
    database.setInv1({std::nullopt, std::nullopt, 2.0});
    database.setInv2({3.0, 2.0, 2.0});
    QCOMPARE(database.engine.I1eqI2subsgraphs(), QStringList());
    QCOMPARE(database.engine.I1geI2subsgraphs(), words({"C"}));
    QCOMPARE(database.engine.I1leI2subsgraphs(), QStringList());
}

void TestQueries::selfLinks()
{
    LoadedEngine database("A\t0\nB\t1\nC\n");
    database.setInv1({1.0, 1.0, 1.0});
    database.setInv2({1.0, 5.0, 1.0});
    QCOMPARE(database.engine.I1eqI2subsgraphs(), words({"A"}));
    QCOMPARE(database.engine.I1eqI2overgraphs(), words({"A"}));
    QCOMPARE(database.engine.I1ltI2subsgraphs(), words({"B"}));
}

void TestQueries::exactToleranceIsNeither()
{
    // 0 and 1e-8 are apart by exactly the tolerance: neither match nor failure in the eq members.
    LoadedEngine database("A\nB\nC\t0\t1\nD\t0\n");
    database.setInv1({std::nullopt, std::nullopt, 0.0, 0.0});
    database.setInv2({tolerance, 0.0, std::nullopt, std::nullopt});
    QCOMPARE(database.engine.I1eqI2subsgraphs(), words({"C"}));
    database.setInv2({std::nextafter(tolerance, 1.0), 0.0, std::nullopt, std::nullopt});
    QCOMPARE(database.engine.I1eqI2subsgraphs(), QStringList());
    database.setInv2({std::nextafter(tolerance, 0.0), 0.0, std::nullopt, std::nullopt});
    QCOMPARE(database.engine.I1eqI2subsgraphs(), words({"C", "D"}));
}

void TestQueries::barriersHideFailures()
{
    // The walk does not go on from B, whose I2 differs by exactly the tolerance, and never meets A.
    LoadedEngine database("A\nB\t0\nE\nC\t1\t2\nD\t1\t0\t2\n");
    database.setInv1({std::nullopt, std::nullopt, std::nullopt, 0.0, 0.0});
    database.setInv2({5.0, -tolerance, 0.0, std::nullopt, std::nullopt});
    QCOMPARE(database.engine.I1eqI2subsgraphs(), words({"C"}));
}

/// A walk from every graph that goes to the barrier each time: one through the chain, and no recursion.
void TestQueries::barrierInALongChain()
{
    constexpr int length = 200000;
    QByteArray lines = "0\n";
    for (int i = 1; i < length; ++i) {
        lines += QByteArray::number(i) + '\t' + QByteArray::number(i - 1) + '\n';
    }
    LoadedEngine database(lines);
    for (TAVGraph *graph : database.engine.records()) {
        graph->setInv1(0.0, false);
        graph->setInv2(0.0, false);
    }
    database.graph(0).setInv2(5.0, false);
    database.graph(1).setInv2(tolerance, false);
    QCOMPARE(database.engine.I1eqI2subsgraphs().size(), length - 3); // all from graph 3 on
    database.graph(length - 1).setInv2(5.0, false);
    database.graph(length - 2).setInv2(-tolerance, false);
    QCOMPARE(database.engine.I1eqI2overgraphs().size(), length - 4); // not the last three, nor graph 0
    // Now the barrier is on no way to the failure.
    database.graph(1).setInv2(0.0, false);
    QCOMPARE(database.engine.I1eqI2subsgraphs(), QStringList());
}

/// Walks that need a barrier each, for different I1, and have thousands of graphs to go through.
void TestQueries::barriersOfManyGraphs()
{
    LoadedEngine database(contents(QStringLiteral(TAVOLINE_BUILD_DATA "/connected-9.tav")));
    const QVector<TAVGraph *> &graphs = database.engine.records();
    const auto order = [](const TAVGraph *graph) { return graph->getName().at(0).unicode() - u'?'; };

    // Every graph has an I1 of its own. The connected graphs on one vertex and on two, and what is next to them:
    for (TAVGraph *graph : graphs) {
        graph->setInv1(graph->getPosition() * 1e-33, false);
        graph->setInv2(order(graph) == 1 ? 5.0 : order(graph) == 2 ? tolerance : 0.0, false);
    }
    QCOMPARE(database.engine.I1eqI2subsgraphs().size(), graphs.size() - 4);

    // Every order has an I2 of its own, which falls with it, and is a barrier for some graphs of each order: they are
    // listed if it is below that of their neighbours.
    constexpr double step = 0x1p-78; // of the last digit of the tolerance
    QStringList listed;
    for (TAVGraph *graph : graphs) {
        const int barrier = 2 + graph->getPosition() % 8;
        graph->setInv1((9 - barrier) * step, false);
        graph->setInv2(order(graph) == 1 ? 5.0 : tolerance + (9 - order(graph)) * step, false);
        if (barrier < order(graph) - 1) {
            listed.append(graph->getName());
        }
    }
    QCOMPARE(database.engine.I1eqI2subsgraphs(), listed);
}

void TestQueries::orientationOfTheMembers_data()
{
    QTest::addColumn<Query>("subs");
    QTest::addColumn<Query>("overs");
    QTest::addColumn<QStringList>("listed");
    // The neighbours of L and l are below their I1, by far and by twice the tolerance; those of s, S and t equal it, s
    // and t with a difference of half the tolerance; those of g and G are above it.
    QTest::newRow("eq") << &TAVSearchEngine::I1eqI2subsgraphs << &TAVSearchEngine::I1eqI2overgraphs
                        << words({"s", "S", "t"});
    QTest::newRow("ge") << &TAVSearchEngine::I1geI2subsgraphs << &TAVSearchEngine::I1geI2overgraphs
                        << words({"s", "S", "t", "g", "G"});
    QTest::newRow("le") << &TAVSearchEngine::I1leI2subsgraphs << &TAVSearchEngine::I1leI2overgraphs
                        << words({"L", "l", "s", "S", "t"});
    QTest::newRow("gt") << &TAVSearchEngine::I1gtI2subsgraphs << &TAVSearchEngine::I1gtI2overgraphs
                        << words({"L", "l"});
    QTest::newRow("lt") << &TAVSearchEngine::I1ltI2subsgraphs << &TAVSearchEngine::I1ltI2overgraphs
                        << words({"g", "G"});
}

void TestQueries::orientationOfTheMembers()
{
    QFETCH(Query, subs);
    QFETCH(Query, overs);
    QFETCH(QStringList, listed);
    const Values level(7, 2.0);
    const Values none(7, std::nullopt);
    const Values around{1.0, 2.0 - 2e-8, 2.0 - 5e-9, 2.0, 2.0 + 5e-9, 2.0 + 2e-8, 3.0};

    LoadedEngine below("1\n2\n3\n4\n5\n6\n7\nL\t0\nl\t1\ns\t2\nS\t3\nt\t4\ng\t5\nG\t6\n");
    below.setInv1(none + level);
    below.setInv2(around + none);
    QCOMPARE((below.engine.*subs)(), listed);
    QCOMPARE((below.engine.*overs)(), QStringList());

    LoadedEngine above("L\nl\ns\nS\nt\ng\nG\n1\t0\n2\t1\n3\t2\n4\t3\n5\t4\n6\t5\n7\t6\n");
    above.setInv1(level + none);
    above.setInv2(none + around);
    QCOMPARE((above.engine.*overs)(), listed);
    QCOMPARE((above.engine.*subs)(), QStringList());
}

void TestQueries::appendedDatabase()
{
    // The links of the second file lead to the records of the first: its "B", too, lies above the first "A".
    for (const bool byRun : {true, false}) {
        LoadedEngine database("A\nB\t0\n");
        if (byRun) {
            database.engine.run();
        } else {
            database.engine.loadData(database.path("database.tav"));
        }
        database.setInv1({5.0, 1.0, 5.0, 1.0});
        database.setInv2({1.0, 5.0, 9.0, 5.0});
        QCOMPARE(database.engine.I1eqI2subsgraphs(), words({"B", "B"}));
        QCOMPARE(database.engine.I1eqI2overgraphs(), words({"A"}));
        database.setInv2({1.0, 5.0, 9.0, 4.0});
        QCOMPARE(database.engine.I1eqI2subsgraphs(), words({"B", "B"}));
        QCOMPARE(database.engine.I1eqI2overgraphs(), QStringList());
    }
}

void TestQueries::consoleOfTheQueries()
{
    LoadedEngine database("A\nB\t0\n");
    SignalRecorder signalsSeen(database.engine);
    database.engine.I1geI2graphs();
    database.engine.I1leI2graphs();
    database.engine.avgSub1();
    database.engine.exch_1_2();
    QCOMPARE(signalsSeen.take(), QStringList());
    database.engine.subgraphs(words({"A"}));
    QCOMPARE(signalsSeen.take(), words({"console Database cleared."}));
    database.engine.I1gtI2overgraphs();
    QCOMPARE(signalsSeen.take(), words({"console Database cleared."}));
}

void TestQueries::emptyDatabase()
{
    LoadedEngine database("");
    QCOMPARE(database.engine.subgraphs(words({"A"})), QStringList());
    QCOMPARE(database.engine.I1geI2graphs(), QStringList());
    QCOMPARE(database.engine.I1eqI2subsgraphs(), QStringList());
    QCOMPARE(database.engine.I1ltI2overgraphs(), QStringList());
    database.engine.maxAll1();
    database.engine.I1getsI2();
    QCOMPARE(database.inv1(), QString());
}

void TestQueries::wholeDatabaseOperations()
{
    LoadedEngine database("A\nB\t0\nC\t0\t1\n");
    const struct {
        void (TAVSearchEngine::*operation)();
        const char *inv2;
    } rows[] = {
        {&TAVSearchEngine::avgSub1, "NA 1 2"},  {&TAVSearchEngine::minSub1, "NA 1 1"},
        {&TAVSearchEngine::maxSub1, "NA 1 3"},  {&TAVSearchEngine::avgOver1, "5 7 NA"},
        {&TAVSearchEngine::minOver1, "3 7 NA"}, {&TAVSearchEngine::maxOver1, "7 7 NA"},
        {&TAVSearchEngine::avgAll1, "5 4 2"},   {&TAVSearchEngine::minAll1, "3 1 1"},
        {&TAVSearchEngine::maxAll1, "7 7 3"},   {&TAVSearchEngine::I2getsI1, "1 3 7"},
        {&TAVSearchEngine::exch_1_2, "1 3 7"},  {&TAVSearchEngine::I1getsI2, "NA 9 NA"},
    };
    for (const auto &row : rows) {
        database.setInv1({1.0, 3.0, 7.0});
        database.setInv2({std::nullopt, 9.0, std::nullopt});
        (database.engine.*row.operation)();
        QCOMPARE(database.inv2(), QLatin1String(row.inv2));
    }
    QCOMPARE(database.inv1(), QStringLiteral("NA 9 NA"));
}

/// A walk from every graph that goes to the bottom each time: one pass over the links, not one walk a graph.
void TestQueries::everyNeighbourMatches()
{
    LoadedEngine database(contents(QStringLiteral(TAVOLINE_BUILD_DATA "/connected-9.tav")));
    for (TAVGraph *graph : database.engine.records()) {
        graph->setInv1(1.0, false);
        graph->setInv2(1.0, false);
    }
    QCOMPARE(database.engine.I1eqI2subsgraphs().size(), 273192);
    QCOMPARE(database.engine.I1geI2overgraphs().size(), 273193 - 261080); // all but the graphs on nine vertices
    for (TAVGraph *graph : database.engine.records()) {
        graph->setInv1(0.0, false);
        graph->setInv2(0.0, false);
    }
    database.graph(0).setInv2(tolerance, false); // a value that neither matches nor fails
    QCOMPARE(database.engine.I1eqI2subsgraphs().size(), 273191);
}

void TestQueries::completeGraphsByAverageDistance()
{
    SampleEngine database("averagedistance");
    // No connected graph below has a smaller average distance: only the complete graphs on 3 to 8 vertices.
    QCOMPARE(database.engine.I1geI2subsgraphs(), words({"Bw", "C~", "D~{", "E~~w", "F~~~w", "G~~~~{"}));
}

void TestQueries::sizeNeverGrowsDownwards()
{
    SampleEngine database("size");
    database.engine.maxSub1();
    const QStringList all = Sample("size").names;
    QCOMPARE(database.engine.I1geI2graphs(), all.mid(1)); // the single vertex has nothing below it
}

void TestQueries::walksOnRealInvariants_data()
{
    QTest::addColumn<QString>("invariant");
    QTest::newRow("average distance") << QStringLiteral("averagedistance");
    QTest::newRow("girth, missing for trees") << QStringLiteral("girth");
    QTest::newRow("diameter") << QStringLiteral("diameter");
}

void TestQueries::walksOnRealInvariants()
{
    QFETCH(QString, invariant);
    SampleEngine database(invariant.toLatin1().constData());
    const Sample sample(invariant.toLatin1().constData());
    const auto atLeast = [](double x, double y) { return y >= x - tolerance; };
    const auto atMost = [](double x, double y) { return x + tolerance >= y; };
    QCOMPARE(database.engine.I1geI2subsgraphs(), sample.walk(sample.subs, atLeast));
    QCOMPARE(database.engine.I1leI2subsgraphs(), sample.walk(sample.subs, atMost));
    QCOMPARE(database.engine.I1geI2overgraphs(), sample.walk(sample.overs, atLeast));
    QCOMPARE(database.engine.I1leI2overgraphs(), sample.walk(sample.overs, atMost));
}

QTEST_GUILESS_MAIN(TestQueries)
#include "tst_queries.moc"
