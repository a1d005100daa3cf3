// The companion program's invariants, held against closed formulas, literal definitions and the examples.

#include "commandline.h"
#include "support/heapuse.h"
#include "support/namedgraphs.h"
#include "support/stderrcapture.h"
#include "support/testfiles.h"

#include <QtTest>

#include <algorithm>
#include <bitset>
#include <cmath>
#include <ctime>
#include <map>

namespace
{
using Value = std::optional<double>;
const Value missing;
const double pi = std::acos(-1.0);

double factorial(int n)
{
    double product = 1.0;
    for (int factor = 2; factor <= n; ++factor) {
        product *= factor;
    }
    return product;
}

/// What is known of a graph: values of invariants.
using Known = std::map<QByteArray, Value>;

/// The closed formulas below are those of F. Harary, "Graph Theory" (1969); of I. Gutman and B. Furtula, "Recent
/// Results in the Theory of Randić Index" (2008); of A. E. Brouwer and W. H. Haemers, "Spectra of Graphs" (2012),
/// section 1.4, for the spectra, from which the energies follow by adding up; and of M. Fiedler, "Algebraic
/// connectivity of graphs" (1973), section 4. Every row has at least three vertices.
Known known(std::initializer_list<std::pair<const char *, Value>> values)
{
    Known result;
    for (const auto &[name, value] : values) {
        result[name] = value;
    }
    return result;
}

Known ofComplete(int n)
{
    return known({// Harary
                  {"order", n},
                  {"size", n * (n - 1) / 2},
                  {"minimum-degree", n - 1},
                  {"maximum-degree", n - 1},
                  {"average-degree", n - 1},
                  {"triangles", n * (n - 1) * (n - 2) / 6},
                  {"components", 1},
                  {"girth", 3},
                  {"diameter", 1},
                  {"radius", 1},
                  {"clique-number", n},
                  {"independence-number", 1},
                  {"chromatic-number", n},
                  {"matching-number", n / 2},
                  {"vertex-connectivity", n - 1},
                  {"edge-connectivity", n - 1},
                  // the distances added up
                  {"average-distance", 1},
                  {"wiener-index", n * (n - 1) / 2},
                  // Gutman and Furtula
                  {"randic-index", n / 2.0},
                  // Brouwer and Haemers: n - 1, and -1 n - 1 times
                  {"spectral-radius", n - 1},
                  {"energy", 2 * (n - 1)},
                  // Fiedler
                  {"algebraic-connectivity", n},
                  // Harary
                  {"automorphisms", factorial(n)}});
}

Known ofCycle(int n)
{
    double energy = 0.0; // the eigenvalues are 2 cos(2 pi j / n)
    for (int j = 0; j < n; ++j) {
        energy += std::abs(2 * std::cos(2 * pi * j / n));
    }
    const double wiener = n % 2 == 0 ? n * n * n / 8.0 : n * (n * n - 1) / 8.0;
    return known({// Harary
                  {"order", n},
                  {"size", n},
                  {"minimum-degree", 2},
                  {"maximum-degree", 2},
                  {"average-degree", 2},
                  {"triangles", n == 3 ? 1 : 0},
                  {"components", 1},
                  {"girth", n},
                  {"diameter", n / 2},
                  {"radius", n / 2},
                  {"clique-number", n == 3 ? 3 : 2},
                  {"independence-number", n / 2},
                  {"chromatic-number", n % 2 == 0 ? 2 : 3},
                  {"matching-number", n / 2},
                  {"vertex-connectivity", 2},
                  {"edge-connectivity", 2},
                  // the distances added up
                  {"average-distance", wiener * 2 / (n * (n - 1))},
                  {"wiener-index", wiener},
                  // Gutman and Furtula
                  {"randic-index", n / 2.0},
                  // Brouwer and Haemers
                  {"spectral-radius", 2},
                  {"energy", energy},
                  // Fiedler
                  {"algebraic-connectivity", 2 * (1 - std::cos(2 * pi / n))},
                  // Harary
                  {"automorphisms", 2 * n}});
}

Known ofPath(int n)
{
    double energy = 0.0; // the eigenvalues are 2 cos(pi j / (n + 1))
    for (int j = 1; j <= n; ++j) {
        energy += std::abs(2 * std::cos(pi * j / (n + 1)));
    }
    return known({// Harary
                  {"order", n},
                  {"size", n - 1},
                  {"minimum-degree", 1},
                  {"maximum-degree", 2},
                  {"average-degree", 2 - 2.0 / n},
                  {"triangles", 0},
                  {"components", 1},
                  {"girth", missing},
                  {"diameter", n - 1},
                  {"radius", n / 2},
                  {"clique-number", 2},
                  {"independence-number", (n + 1) / 2},
                  {"chromatic-number", 2},
                  {"matching-number", n / 2},
                  {"vertex-connectivity", 1},
                  {"edge-connectivity", 1},
                  // the distances added up
                  {"average-distance", (n + 1) / 3.0},
                  {"wiener-index", n * (n * n - 1) / 6},
                  // Gutman and Furtula
                  {"randic-index", (n - 3) / 2.0 + std::sqrt(2.0)},
                  // Brouwer and Haemers
                  {"spectral-radius", 2 * std::cos(pi / (n + 1))},
                  {"energy", energy},
                  // Fiedler
                  {"algebraic-connectivity", 2 * (1 - std::cos(pi / n))},
                  // Harary
                  {"automorphisms", 2}});
}

/// Both parts have a vertex, one of them two; a star has one vertex in the first part.
Known ofCompleteBipartite(int a, int b)
{
    const int n = a + b;
    const double wiener = a * b + a * (a - 1) + b * (b - 1);
    return known({// Harary
                  {"order", n},
                  {"size", a * b},
                  {"minimum-degree", std::min(a, b)},
                  {"maximum-degree", std::max(a, b)},
                  {"average-degree", 2.0 * a * b / n},
                  {"triangles", 0},
                  {"components", 1},
                  {"girth", std::min(a, b) == 1 ? missing : 4},
                  {"diameter", 2},
                  {"radius", std::min(a, b) == 1 ? 1 : 2},
                  {"clique-number", 2},
                  {"independence-number", std::max(a, b)},
                  {"chromatic-number", 2},
                  {"matching-number", std::min(a, b)},
                  {"vertex-connectivity", std::min(a, b)},
                  {"edge-connectivity", std::min(a, b)},
                  // the distances added up
                  {"average-distance", 2 * wiener / (n * (n - 1))},
                  {"wiener-index", wiener},
                  // Gutman and Furtula
                  {"randic-index", std::sqrt(a * b)},
                  // Brouwer and Haemers: sqrt(ab), -sqrt(ab), 0
                  {"spectral-radius", std::sqrt(a * b)},
                  {"energy", 2 * std::sqrt(a * b)},
                  // Fiedler
                  {"algebraic-connectivity", std::min(a, b)},
                  // Harary
                  {"automorphisms", factorial(a) * factorial(b) * (a == b ? 2 : 1)}});
}

/// D. A. Holton and J. Sheehan, "The Petersen Graph" (1993); its spectrum is 3, 1 (5 times), -2 (4 times).
Known ofPetersen()
{
    return known({{"order", 10},
                  {"size", 15},
                  {"minimum-degree", 3},
                  {"maximum-degree", 3},
                  {"average-degree", 3},
                  {"triangles", 0},
                  {"components", 1},
                  {"girth", 5},
                  {"diameter", 2},
                  {"radius", 2},
                  {"average-distance", 75 / 45.0},
                  {"wiener-index", 75},
                  {"randic-index", 5},
                  {"clique-number", 2},
                  {"independence-number", 4},
                  {"chromatic-number", 3},
                  {"matching-number", 5},
                  {"vertex-connectivity", 3},
                  {"edge-connectivity", 3},
                  {"spectral-radius", 3},
                  {"energy", 16},
                  {"algebraic-connectivity", 2},
                  {"automorphisms", 120}});
}

QByteArray text(const char *name, const QByteArray &graph)
{
    return textOf(name, decoded(graph));
}

bool isClique(const SmallGraph &graph, unsigned set)
{
    for (int u = 0; u < graph.order; ++u) {
        for (int v = 0; v < u; ++v) {
            if ((set >> u & set >> v & 1U) != 0 && !graph.adjacent(u, v)) {
                return false;
            }
        }
    }
    return true;
}

bool isIndependent(const SmallGraph &graph, unsigned set)
{
    for (int u = 0; u < graph.order; ++u) {
        for (int v = 0; v < u; ++v) {
            if ((set >> u & set >> v & 1U) != 0 && graph.adjacent(u, v)) {
                return false;
            }
        }
    }
    return true;
}

/// The largest set of vertices of which @p test holds.
int largestSet(const SmallGraph &graph, bool (*test)(const SmallGraph &, unsigned))
{
    int largest = 0;
    for (unsigned set = 0; set < 1U << graph.order; ++set) {
        if (test(graph, set)) {
            largest = std::max(largest, int(std::bitset<32>(set).count()));
        }
    }
    return largest;
}

/// The vertices of @p rest in the fewest independent sets.
int fewestIndependentSets(const SmallGraph &graph, unsigned rest)
{
    if (rest == 0) {
        return 0;
    }
    int fewest = graph.order;
    for (unsigned set = rest; set != 0; set = (set - 1) & rest) {
        if ((set & rest & ~(rest - 1)) != 0 && isIndependent(graph, set)) {
            fewest = std::min(fewest, 1 + fewestIndependentSets(graph, rest & ~set));
        }
    }
    return fewest;
}

/// The most edges without common vertices within @p rest.
int mostEdges(const SmallGraph &graph, unsigned rest)
{
    int most = 0;
    for (int u = 0; u < graph.order; ++u) {
        for (int v = 0; v < u; ++v) {
            if ((rest >> u & rest >> v & 1U) != 0 && graph.adjacent(u, v)) {
                most = std::max(most, 1 + mostEdges(graph, rest & ~(1U << u) & ~(1U << v)));
            }
        }
    }
    return most;
}

void addExample(const char *invariant, const char *file)
{
    QTest::newRow(invariant) << QByteArray(invariant) << QByteArray(file);
}
} // namespace

class TestInvariants : public QObject
{
    Q_OBJECT

private slots:
    void theExamplesComeOutAgain_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("file");
        addExample("size", "connected-8.size.txt");
        addExample("diameter", "connected-8.diameter.txt");
        addExample("average-distance", "connected-8.averagedistance.txt");
        addExample("spectral-radius", "connected-8.spectralradius.txt");
        addExample("girth", "connected-8.girth.txt");
        addExample("algebraic-connectivity", "connected-8.algebraicconnectivity.txt");
    }

    void theExamplesComeOutAgain()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, file);
        QList<QByteArray> lines = contents(example(file.constData())).trimmed().split('\n');
        lines.removeFirst();
        QCOMPARE(lines.size(), 12113);
        for (const QByteArray &line : lines) {
            const QByteArray graph = line.split('\t').at(0);
            const Value value = valueOf(name.constData(), decoded(graph));
            const QByteArray sixDigits = value ? QByteArray::number(*value, 'g', 6) : QByteArray("NA");
            QCOMPARE(graph + '\t' + sixDigits, line);
        }
    }

    void closedFormulas_data();
    void closedFormulas();
    void smallestGraphs_data();
    void smallestGraphs();
    void disconnectedGraphs();
    void forests();
    void againstTrial();
    void chromaticNumbersBeyondTheClique();
    void hardSearches_data();
    void hardSearches();
    void texts_data();
    void texts();
    void names();
    void memoryIsGivenBack();
    void aFailureOfIgraph();
};

Q_DECLARE_METATYPE(Known)

void TestInvariants::closedFormulas_data()
{
    QTest::addColumn<SmallGraph>("graph");
    QTest::addColumn<Known>("expected");
    for (const int n : {3, 4, 7, 20}) {
        QTest::addRow("complete, %d", n) << complete(n) << ofComplete(n);
    }
    for (const int n : {3, 4, 7, 8, 62}) {
        QTest::addRow("cycle, %d", n) << cycle(n) << ofCycle(n);
    }
    for (const int n : {3, 4, 7, 8, 62}) {
        QTest::addRow("path, %d", n) << path(n) << ofPath(n);
    }
    for (const int leaves : {2, 3, 8, 17}) {
        QTest::addRow("star, %d leaves", leaves) << completeBipartite(1, leaves) << ofCompleteBipartite(1, leaves);
    }
    for (const auto &[a, b] : {std::pair(2, 2), std::pair(2, 3), std::pair(5, 3), std::pair(6, 6), std::pair(12, 9)}) {
        QTest::addRow("complete bipartite, %d and %d", a, b) << completeBipartite(a, b) << ofCompleteBipartite(a, b);
    }
    QTest::newRow("Petersen") << petersen() << ofPetersen();
}

void TestInvariants::closedFormulas()
{
    QFETCH(SmallGraph, graph);
    QFETCH(Known, expected);
    for (const auto &[name, value] : expected) {
        QCOMPARE(name + ' ' + textOf(name.constData(), graph), name + ' ' + invariantText(value));
    }
}

void TestInvariants::smallestGraphs_data()
{
    QTest::addColumn<QByteArray>("none");
    QTest::addColumn<QByteArray>("one");
    const auto row = [](const char *name, const char *none, const char *one) {
        QTest::newRow(name) << QByteArray(none) << QByteArray(one);
    };
    row("order", "0", "1");
    row("size", "0", "0");
    row("minimum-degree", "NA", "0");
    row("maximum-degree", "NA", "0");
    row("average-degree", "NA", "0");
    row("triangles", "0", "0");
    row("components", "0", "1");
    row("girth", "NA", "NA");
    row("diameter", "NA", "0");
    row("radius", "NA", "0");
    row("average-distance", "NA", "NA");
    row("wiener-index", "NA", "0");
    row("randic-index", "0", "0");
    row("clique-number", "0", "1");
    row("independence-number", "0", "1");
    row("chromatic-number", "0", "1");
    row("matching-number", "0", "0");
    row("vertex-connectivity", "0", "0");
    row("edge-connectivity", "0", "0");
    row("spectral-radius", "NA", "0");
    row("energy", "0", "0");
    row("algebraic-connectivity", "NA", "NA");
    row("automorphisms", "1", "1");
}

void TestInvariants::smallestGraphs()
{
    QFETCH(QByteArray, none);
    QFETCH(QByteArray, one);
    QCOMPARE(text(QTest::currentDataTag(), "?"), none);
    QCOMPARE(text(QTest::currentDataTag(), "@"), one);
}

/// Two triangles, and a triangle with two single vertices.
void TestInvariants::disconnectedGraphs()
{
    for (const char *name : {"diameter", "radius", "average-distance", "wiener-index"}) {
        QCOMPARE(text(name, "EwCW"), QByteArray("NA"));
        QCOMPARE(text(name, "Dw?"), QByteArray("NA"));
    }
    for (const char *name : {"vertex-connectivity", "edge-connectivity", "algebraic-connectivity"}) {
        QCOMPARE(text(name, "EwCW"), QByteArray("0"));
        QCOMPARE(text(name, "Dw?"), QByteArray("0"));
    }
    QCOMPARE(text("components", "EwCW"), QByteArray("2"));
    QCOMPARE(text("components", "Dw?"), QByteArray("3"));
    QCOMPARE(text("triangles", "EwCW"), QByteArray("2"));
    QCOMPARE(text("girth", "EwCW"), QByteArray("3"));
    QCOMPARE(text("randic-index", "Dw?"), QByteArray("1.5"));
    QCOMPARE(text("automorphisms", "EwCW"), QByteArray("72"));
}

/// Three edges without common vertices, and no edge.
void TestInvariants::forests()
{
    for (const char *forest : {"E`?G", "E???"}) {
        QCOMPARE(text("girth", forest), QByteArray("NA"));
    }
    QCOMPARE(text("matching-number", "E`?G"), QByteArray("3"));
    QCOMPARE(text("energy", "E`?G"), QByteArray("6"));
    QCOMPARE(text("energy", "E???"), QByteArray("0"));
}

void TestInvariants::againstTrial()
{
    const QList<QByteArray> names = namesUpToSeven();
    QCOMPARE(names.size(), 1252);
    for (const QByteArray &name : names) {
        const SmallGraph graph = decoded(name);
        const unsigned all = (1U << graph.order) - 1;
        const std::initializer_list<std::pair<const char *, int>> expected = {
            {"clique-number", largestSet(graph, isClique)},
            {"independence-number", largestSet(graph, isIndependent)},
            {"chromatic-number", fewestIndependentSets(graph, all)},
            {"matching-number", mostEdges(graph, all)},
        };
        for (const auto &[invariant, value] : expected) {
            QVERIFY2(valueOf(invariant, graph) == Value(value), (name + ' ' + invariant).constData());
        }
    }
}

/// The construction of J. Mycielski, "Sur le coloriage des graphes" (1955): one colour more, no triangle. From a cycle
/// of five it makes graphs of 11, 23 and 47 vertices.
void TestInvariants::chromaticNumbersBeyondTheClique()
{
    SmallGraph graph = cycle(5);
    for (const double colours : {4.0, 5.0, 6.0}) {
        const int n = graph.order;
        SmallGraph next = graph;
        next.order = 2 * n + 1;
        for (int u = 0; u < n; ++u) {
            for (int v = 0; v < n; ++v) {
                if (graph.adjacent(u, v)) {
                    next.addEdge(u, v + n);
                }
            }
            next.addEdge(u + n, 2 * n);
        }
        graph = next;
        QCOMPARE(*valueOf("chromatic-number", graph), colours);
        QCOMPARE(*valueOf("clique-number", graph), 2.0);
    }
}

/// Searches that take some methods for ever. Of the cubic graphs on 62 vertices, the prism over a cycle of 31 has at
/// most 15 vertices of either layer in an independent set; the cycle of 62 with its longest diagonals is bipartite. In
/// the dense graphs a largest clique takes a vertex of every part, every second of the cycle, two of every pentagon.
void TestInvariants::hardSearches_data()
{
    QTest::addColumn<QString>("invariant");
    QTest::addColumn<SmallGraph>("graph");
    QTest::addColumn<int>("size");
    const QString independence = QStringLiteral("independence-number");
    const QString clique = QStringLiteral("clique-number");
    SmallGraph prism = edgeless(62);
    SmallGraph ladder = cycle(62);
    for (int v = 0; v < 31; ++v) {
        prism.addEdge(v, (v + 1) % 31);
        prism.addEdge(v + 31, (v + 1) % 31 + 31);
        prism.addEdge(v, v + 31);
        ladder.addEdge(v, v + 31);
    }
    QTest::newRow("prism") << independence << prism << 30;
    QTest::newRow("ladder") << independence << ladder << 31;
    QTest::newRow("complete multipartite, parts of 3")
        << clique << completeBut(62, [](int v, int u) { return v / 3 == u / 3; }) << 21;
    QTest::newRow("complete multipartite, parts of 6")
        << clique << completeBut(62, [](int v, int u) { return v / 6 == u / 6; }) << 11;
    QTest::newRow("complement of a cycle")
        << clique << completeBut(62, [](int v, int u) { return v - u == 1 || v - u == 61; }) << 31;
    QTest::newRow("join of pentagons") << clique << completeBut(60, [](int v, int u) {
        return v / 5 == u / 5 && (v - u == 2 || v - u == 3);
    }) << 24;
}

void TestInvariants::hardSearches()
{
    QFETCH(QString, invariant);
    QFETCH(SmallGraph, graph);
    QFETCH(int, size);
    const std::clock_t start = std::clock(); // of the process: what else the machine does counts for nothing
    QCOMPARE(*valueOf(invariant.toLatin1().constData(), graph), double(size));
    QVERIFY(std::clock() - start < 10 * CLOCKS_PER_SEC);
}

void TestInvariants::texts_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("integer") << 3.0 << QByteArray("3");
    QTest::newRow("a little less") << 3.0 - 9e-13 << QByteArray("3");
    QTest::newRow("a little more") << 3.0 + 9e-13 << QByteArray("3");
    QTest::newRow("below zero") << -1e-16 << QByteArray("0");
    QTest::newRow("above zero") << 1e-16 << QByteArray("0");
    QTest::newRow("minus zero") << -0.0 << QByteArray("0");
    QTest::newRow("no zero") << 2e-12 << QByteArray("2e-12");
    QTest::newRow("twelve digits") << std::sqrt(2.0) << QByteArray("1.41421356237");
    QTest::newRow("negative") << -1.5 << QByteArray("-1.5");
    QTest::newRow("a large integer") << 1792160394037.0 << QByteArray("1792160394037"); // 13^11
    QTest::newRow("a round integer") << -1e15 << QByteArray("-1000000000000000");
    QTest::newRow("the largest exact integer") << 0x1p53 - 1 << QByteArray("9007199254740991");
    QTest::newRow("an integer that may be rounded") << 0x1p53 << QByteArray("9.00719925474e+15");
    QTest::newRow("large, no integer") << 1792160394037.5 << QByteArray("1.79216039404e+12");
    QTest::newRow("large") << factorial(62) << QByteArray("3.14699732604e+85");
}

void TestInvariants::texts()
{
    QFETCH(double, value);
    QFETCH(QByteArray, expected);
    QCOMPARE(invariantText(value), expected);
}

void TestInvariants::names()
{
    QCOMPARE(invariantText(missing), QByteArray("NA"));
    QVERIFY(findInvariant(QStringLiteral("Girth")) == nullptr);
    QVERIFY(findInvariant(QString()) == nullptr);
    for (const Invariant &invariant : invariants()) {
        QCOMPARE(findInvariant(QLatin1String(invariant.name)), &invariant);
    }
}

/// The objects of igraph and nauty have to be freed by hand.
void TestInvariants::memoryIsGivenBack()
{
    const SmallGraph graph = complete(5);
    for (const Invariant &invariant : invariants()) {
        for (int i = 0; i < 1000; ++i) { // what a library sets up once stays
            valueOf(invariant.name, graph);
        }
        const size_t before = heapUse();
        for (int i = 0; i < 1000; ++i) {
            valueOf(invariant.name, graph);
        }
        // A block that is lost each time makes 32 kB; glibc keeps some blocks for the thread and counts them as used.
        QVERIFY2(heapUse() < before + 10000, invariant.name);
    }
}

/// igraph refuses a negative number of vertices, and leaves it to the caller to tell.
void TestInvariants::aFailureOfIgraph()
{
    StderrCapture capture;
    QString message;
    try {
        valueOf("cliques", edgeless(-1));
    } catch (const CommandError &error) {
        message = error.text();
    }
    QCOMPARE(message, QStringLiteral("igraph: Invalid value"));
    QCOMPARE(capture.take(), QByteArray());
}

QTEST_APPLESS_MAIN(TestInvariants)
#include "tst_invariants.moc"
