// tav build, held against a second, literal implementation.

#include "support/endingsignals.h"
#include "support/literals.h"
#include "support/patience.h"
#include "support/plaingraph6.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QtTest>

#include <algorithm>
#include <csignal>
#include <numeric>
#include <random>
#include <unistd.h>

namespace
{
using Graph = QVector<QVector<bool>>;

/// All graphs on 1 to @p order vertices, as the generator of the nauty package writes them.
QByteArray generate(int order, const QStringList &options = {})
{
    QByteArray lines;
    for (int n = 1; n <= order; ++n) {
        lines += outputOf(QStringLiteral("nauty-geng"),
                          QStringList{QStringLiteral("-q")} + options + QStringList{QString::number(n)});
    }
    return lines;
}

QList<QByteArray> linesOf(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

/// Reads graph6 the slow way: all bits into a string first.
Graph decode(const QByteArray &name)
{
    QByteArray bits;
    for (int i = 1; i < name.size(); ++i) {
        bits += QByteArray::number((name.at(i) - 63) | 64, 2).mid(1);
    }
    const int order = name.at(0) - 63;
    Graph graph(order, QVector<bool>(order, false));
    int next = 0;
    for (int v = 1; v < order; ++v) {
        for (int u = 0; u < v; ++u) {
            graph[u][v] = graph[v][u] = bits.at(next++) == '1';
        }
    }
    return graph;
}

QByteArray encode(const Graph &graph)
{
    return plainGraph6(graph.size(), [&graph](int u, int v) { return graph.at(u).at(v); });
}

Graph randomGraph(std::mt19937 &random, int order, int size)
{
    QVector<QPair<int, int>> pairs;
    for (int v = 1; v < order; ++v) {
        for (int u = 0; u < v; ++u) {
            pairs.append({u, v});
        }
    }
    std::shuffle(pairs.begin(), pairs.end(), random);
    Graph graph(order, QVector<bool>(order, false));
    for (int i = 0; i < size; ++i) {
        graph[pairs.at(i).first][pairs.at(i).second] = graph[pairs.at(i).second][pairs.at(i).first] = true;
    }
    return graph;
}

Graph withoutVertex(Graph graph, int vertex)
{
    graph.remove(vertex);
    for (QVector<bool> &row : graph) {
        row.remove(vertex);
    }
    return graph;
}

QVector<int> degreesOf(const Graph &graph)
{
    QVector<int> degrees;
    for (const QVector<bool> &row : graph) {
        degrees.append(int(std::count(row.begin(), row.end(), true)));
    }
    return degrees;
}

/// Tries every way of placing the vertices of a graph on those of another, one vertex after the other.
bool extendIsomorphism(const Graph &a, const Graph &b, QVector<int> &image)
{
    const int next = image.size();
    if (next == a.size()) {
        return true;
    }
    for (int candidate = 0; candidate < b.size(); ++candidate) {
        bool fits = !image.contains(candidate);
        for (int v = 0; fits && v < next; ++v) {
            fits = a.at(v).at(next) == b.at(image.at(v)).at(candidate);
        }
        if (fits) {
            image.append(candidate);
            if (extendIsomorphism(a, b, image)) {
                return true;
            }
            image.removeLast();
        }
    }
    return false;
}

bool areIsomorphic(const Graph &a, const Graph &b)
{
    if (a.size() != b.size()) {
        return false;
    }
    QVector<int> degreesA = degreesOf(a);
    QVector<int> degreesB = degreesOf(b);
    std::sort(degreesA.begin(), degreesA.end());
    std::sort(degreesB.begin(), degreesB.end());
    QVector<int> image;
    return degreesA == degreesB && extendIsomorphism(a, b, image);
}

/// The distinct direct sub-graphs of a graph, each once, up to isomorphism.
QVector<Graph> subGraphsOf(const Graph &graph, bool edges)
{
    QVector<Graph> found;
    const auto include = [&](const Graph &subGraph) {
        if (std::none_of(found.begin(), found.end(),
                         [&](const Graph &other) { return areIsomorphic(subGraph, other); })) {
            found.append(subGraph);
        }
    };
    for (int v = 0; v < graph.size(); ++v) {
        if (!edges) {
            include(withoutVertex(graph, v));
            continue;
        }
        for (int u = 0; u < v; ++u) {
            if (graph.at(u).at(v)) {
                Graph subGraph = graph;
                subGraph[u][v] = subGraph[v][u] = false;
                include(subGraph);
            }
        }
    }
    return found;
}

/// A database file, read as text.
struct Database {
    QVector<Graph> graphs;
    QVector<QVector<int>> links;

    explicit Database(const QByteArray &text)
    {
        const QList<QByteArray> lines = linesOf(text);
        for (const QByteArray &line : lines) {
            const QList<QByteArray> fields = line.split('\t');
            graphs.append(decode(fields.first()));
            links.append(QVector<int>());
            for (const QByteArray &field : fields.mid(1)) {
                links.last().append(field.toInt());
            }
        }
    }
};

QStringList build(const QStringList &arguments = {})
{
    return QStringList{QStringLiteral("build")} + arguments;
}

const QString readInput = QStringLiteral("-");
const QByteArray noTrouble = "2 graphs and 1 link; 0 isomorphic repetitions dropped.\n";
} // namespace

class TestTavBuild : public QObject
{
    Q_OBJECT

private:
    TestFolder folder;

private slots:
    void aSmallDatabaseByHand()
    {
        // The graphs on three vertices, on two and on one, in an order of no meaning.
        const ToolResult result = runTav(build(), "Bw\nB?\nBW\nA_\nBG\nA?\n@\n");
        QCOMPARE(result.output, QByteArray("@\n"
                                           "A?\t0\n"
                                           "A_\t0\n"
                                           "B?\t1\n"
                                           "BG\t1\t2\n"
                                           "BW\t1\t2\n"
                                           "Bw\t2\n"));
        QCOMPARE(result.errors, QByteArray("7 graphs and 8 links; 0 isomorphic repetitions dropped.\n"));
        QCOMPARE(result.status, 0);
    }

    void theSameByEdges()
    {
        const ToolResult result =
            runTav(build({QStringLiteral("--relation"), QStringLiteral("edge")}), "Bw\nB?\nBW\nA_\nBG\nA?\n@\n");
        QCOMPARE(result.output, QByteArray("@\n"
                                           "A?\n"
                                           "A_\t1\n"
                                           "B?\n"
                                           "BG\t3\n"
                                           "BW\t4\n"
                                           "Bw\t5\n"));
        QCOMPARE(result.status, 0);
    }

    void onlyGraphsOfTheInputAreLinked()
    {
        const ToolResult result = runTav(build(), "@\nBw\nC~\n");
        QCOMPARE(result.output, QByteArray("@\nBw\nC~\t1\n"));
    }

    void theGraphWithoutVerticesIsBelowThatWithOne()
    {
        QCOMPARE(runTav(build(), "@\n?\n").output, QByteArray("?\n@\t0\n"));
    }

    void theFirstOfIsomorphicStringsIsKept()
    {
        // Two numberings of the path on three vertices and of the triangle with a pendant vertex.
        const ToolResult result = runTav(build(), "BW\nBo\nCx\nBW\nCj\n");
        QCOMPARE(result.output, QByteArray("BW\nCx\t0\n"));
        QCOMPARE(result.errors, QByteArray("2 graphs and 1 link; 3 isomorphic repetitions dropped.\n"));
        QCOMPARE(result.status, 0);
    }

    void strictRefusesIsomorphicStrings()
    {
        const QString first = folder.write("first.g6", "@\nBW\n");
        const QString second = folder.write("second.g6", "A_\n\nBo\n");
        const QString output = folder.path("strict.tav");
        const ToolResult result =
            runTav(build({QStringLiteral("--strict"), QStringLiteral("-o"), output, first, second}));
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors,
                 QStringLiteral("tav: %1:3: isomorphic to the graph of %2:2\n").arg(second, first).toUtf8());
        QVERIFY(!QFile::exists(output));
        QCOMPARE(runTav(build({QStringLiteral("--strict"), first})).output, QByteArray("@\nBW\n"));
    }

    void theInputHoldsNoGraph_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QByteArray>("message");
        const QString empty = folder.write("empty.g6", ">>graph6<<\n");
        QTest::newRow("standard input") << QStringList() << QByteArray() << QByteArray("standard input:1: no graph");
        QTest::newRow("only disconnected graphs")
            << QStringList{QStringLiteral("--connected")} << QByteArray("A?\nB?\n")
            << QByteArray("standard input:1: no connected graph");
        QTest::newRow("two files") << QStringList{empty, readInput} << QByteArray("\n")
                                   << QByteArray("standard input:1: no graph");
    }

    void theInputHoldsNoGraph()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, input);
        QFETCH(QByteArray, message);
        const ToolResult result = runTav(build(arguments), input);
        QCOMPARE(result.errors, QByteArray("tav: " + message + " in the input\n"));
        QCOMPARE(result.status, 1);
    }

    void disconnectedGraphsAreLeftOut()
    {
        const ToolResult result = runTav(build({QStringLiteral("--connected")}), "?\nA?\nA_\nBG\n@\nBW\nB?\n");
        QCOMPARE(result.output, QByteArray("@\nA_\t0\nBW\t1\n"));
        QCOMPARE(result.errors, QByteArray("3 graphs and 2 links; 0 isomorphic repetitions dropped, "
                                           "4 disconnected graphs left out.\n"));
    }

    void filesAndStandardInputFollowEachOther()
    {
        const QString first = folder.write("a.g6", "A_\n");
        const ToolResult result = runTav(build({first, readInput}), "@\n");
        QCOMPARE(result.output, QByteArray("@\nA_\t0\n"));
        QCOMPARE(result.errors, noTrouble);
    }

    void headerEmptyLinesAndDosLineEndsAreNoGraphs()
    {
        QCOMPARE(runTav(build(), ">>graph6<<A_\r\n\r\n\n@").output, QByteArray("@\nA_\t0\n"));
        QCOMPARE(runTav(build(), ">>graph6<<\n@\nA_\n").output, QByteArray("@\nA_\t0\n"));
        QCOMPARE(runTav(build(), ">>graph6<<\r\r\n@\r\r\n\r\r\nA_\r\r\n").output, QByteArray("@\nA_\t0\n"));
    }

    /// Some editors put one before the first line.
    void aByteOrderMarkIsNoGraph()
    {
        QCOMPARE(runTav(build(), "\xEF\xBB\xBF@\nA_\n").output, QByteArray("@\nA_\t0\n"));
        QCOMPARE(runTav(build(), "\xEF\xBB\xBF>>graph6<<@\nA_\n").output, QByteArray("@\nA_\t0\n"));
        QCOMPARE(runTav(build(), "@\n\xEF\xBB\xBF"
                                 "A_\n")
                     .errors,
                 QByteArray("tav: standard input:2: not graph6: byte 239 at column 1\n"));
    }

    void oneOfAKindIsNoPlural()
    {
        QCOMPARE(runTav(build({QStringLiteral("--connected")}), "@\n@\nA?\n").errors,
                 QByteArray("1 graph and 0 links; 1 isomorphic repetition dropped, 1 disconnected graph left out.\n"));
        QCOMPARE(runTav(build(), "@@\n").errors,
                 QByteArray("tav: standard input:1: not graph6: 2 bytes where a graph on 1 vertex has 1\n"));
    }

    void theOutputReplacesAFile()
    {
        const QString output = folder.write("old.tav", "what stood there");
        QCOMPARE(runTav(build({QStringLiteral("-o"), output}), "@\nA_\n").errors, noTrouble);
        QCOMPARE(contents(output), QByteArray("@\nA_\t0\n"));
    }

    void aReplacedFileKeepsItsPermissions()
    {
        const QString output = folder.write("private.tav", "what stood there");
        const QFile::Permissions onlyMine = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QVERIFY(QFile::setPermissions(output, onlyMine));
        QCOMPARE(runTav(build({QStringLiteral("-o"), output}), "@\nA_\n").errors, noTrouble);
        QCOMPARE(contents(output), QByteArray("@\nA_\t0\n"));
        QCOMPARE(QFile::permissions(output), onlyMine);
    }

    void aSymbolicLinkStaysOne()
    {
        const QString target = folder.write("target.tav", "what stood there");
        const QString link = folder.path("link.tav");
        QVERIFY(QFile::link(target, link));
        QCOMPARE(runTav(build({QStringLiteral("-o"), link}), "@\nA_\n").errors, noTrouble);
        QCOMPARE(QFileInfo(link).symLinkTarget(), target);
        QCOMPARE(contents(target), QByteArray("@\nA_\t0\n"));
    }

    void theInputMayBeTheOutput()
    {
        const QString file = folder.write("same.g6", "A_\n@\n");
        QCOMPARE(runTav(build({QStringLiteral("-o"), file, file})).errors, noTrouble);
        QCOMPARE(contents(file), QByteArray("@\nA_\t0\n"));
    }

    void badInput_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("nothing") << QByteArray() << QByteArray("1: no graph in the input");
        QTest::newRow("empty lines") << QByteArray("\n\r\n") << QByteArray("1: no graph in the input");
        QTest::newRow("a blank") << QByteArray("@\nA _\n") << QByteArray("2: not graph6: byte 32 at column 2");
        QTest::newRow("beyond ASCII") << QByteArray("A\xc3\xa9") << QByteArray("1: not graph6: byte 195 at column 2");
        QTest::newRow("too short") << QByteArray("@\n\nD\n")
                                   << QByteArray("3: not graph6: 1 byte where a graph on 5 vertices has 3");
        QTest::newRow("too long") << QByteArray("A_?\n")
                                  << QByteArray("1: not graph6: 3 bytes where a graph on 2 vertices has 2");
        QTest::newRow("63 vertices") << QByteArray("@\n~??~?????\n") << QByteArray("2: more than 62 vertices");
        QTest::newRow("a loop") << QByteArray("@\n:Av\n") << QByteArray("2: a loop: only simple graphs are read");
        QTest::newRow("half a header") << QByteArray("@\n>>graph6\n")
                                       << QByteArray("2: not graph6: byte 62 at column 1");
        QTest::newRow("10 MB") << QByteArray("@\n") + QByteArray(10000000, 'A') + "\n@\n"
                               << QByteArray("2: not graph6: 10000000 bytes where a graph on 2 vertices has 2");
        QTest::newRow("NUL") << QByteArray("@\n@\0\n", 5) << QByteArray("2: not graph6: byte 0 at column 2");
    }

    void badInput()
    {
        QFETCH(QByteArray, input);
        QFETCH(QByteArray, message);
        const QString output = folder.path("bad.tav");
        ToolResult result = runTav(build({QStringLiteral("-o"), output}), input);
        QCOMPARE(result.errors, QByteArray("tav: standard input:" + message + "\n"));
        QCOMPARE(result.status, 1);
        QVERIFY(!QFile::exists(output));
        const QString file = folder.write("bad.g6", input);
        const QString old = folder.write("old.tav", "old");
        result = runTav(build({QStringLiteral("-o"), old, file}));
        QCOMPARE(result.errors, QByteArray("tav: " + file.toUtf8() + ":" + message + "\n"));
        QCOMPARE(result.status, 1);
        QCOMPARE(contents(old), QByteArray("old"));
    }

    void graphsOnUpTo62VerticesAreTaken()
    {
        // The path on 62 vertices, the cycle on 62, and the path on 61 below the former.
        const auto path = [](int order) {
            Graph graph(order, QVector<bool>(order, false));
            for (int v = 1; v < order; ++v) {
                graph[v - 1][v] = graph[v][v - 1] = true;
            }
            return graph;
        };
        Graph cycle = path(62);
        cycle[0][61] = cycle[61][0] = true;
        const QByteArray shorter = encode(path(61));
        const QByteArray longer = encode(path(62));
        const ToolResult result = runTav(build(), encode(cycle) + "\n" + longer + "\n" + shorter + "\n");
        QCOMPARE(result.output, QByteArray(shorter + "\n" + longer + "\t0\n" + encode(cycle) + "\t0\n"));
    }

    void filesThatCannotBeUsed()
    {
        const QString missing = folder.path("missing.g6");
        ToolResult result = runTav(build({missing}));
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors,
                 QByteArray("tav: " + missing.toUtf8() + ": cannot be opened: No such file or directory\n"));
        result = runTav(build({folder.path()}));
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors, QByteArray("tav: " + folder.path().toUtf8() + ": cannot be read: Is a directory\n"));
        const QString nowhere = folder.path("no/such/folder.tav");
        result = runTav(build({QStringLiteral("-o"), nowhere}), "@\n");
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors,
                 QByteArray("tav: " + nowhere.toUtf8() + ": cannot be written: No such file or directory\n"));
        result = runTav(build({QStringLiteral("-o"), folder.path()}), "@\n");
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors, QByteArray("tav: " + folder.path().toUtf8() + ": cannot be written: Is a directory\n"));
        result = runTav(build({QStringLiteral("-o"), QStringLiteral("/dev/full")}), "@\n");
        QCOMPARE(result.status, 1);
        QCOMPARE(result.errors, QByteArray("tav: /dev/full: cannot be written: No space left on device\n"));
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("no such option") << build({QStringLiteral("--fast")}) << QByteArray("Unknown option 'fast'.");
        QTest::newRow("a long one") << build({QStringLiteral("--") + QString(100, QLatin1Char('x'))})
                                    << QByteArray("Unknown option '" + QByteArray(60, 'x') + "...'.");
        QTest::newRow("no such relation") << build({QStringLiteral("--relation"), QStringLiteral("minor")})
                                          << QByteArray("Unknown relation 'minor': neither 'vertex' nor 'edge'.");
        QTest::newRow("no processors") << build({QStringLiteral("-j"), QStringLiteral("0")})
                                       << QByteArray("Not a number of processors from 1 to 1024: '0'.");
        QTest::newRow("too many processors") << build({QStringLiteral("-j"), QStringLiteral("1025")})
                                             << QByteArray("Not a number of processors from 1 to 1024: '1025'.");
        QTest::newRow("no number") << build({QStringLiteral("-j"), QStringLiteral("all")})
                                   << QByteArray("Not a number of processors from 1 to 1024: 'all'.");
        QTest::newRow("no file name") << build({QStringLiteral("-o")}) << QByteArray("Missing value after '-o'.");
    }

    void wrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const ToolResult result = runTav(arguments);
        QCOMPARE(result.status, 2);
        QCOMPARE(result.errors, QByteArray("tav: " + message + "\nTry 'tav build --help'.\n"));
        QCOMPARE(result.output, QByteArray());
    }

    void theKnownDatabasesComeOutAgain()
    {
        const QByteArray connected = runTav(build(), generate(7, {QStringLiteral("-c")})).output;
        QVERIFY(connected == contents(QStringLiteral(TAVOLINE_TEST_DATA "/connected-7.tav")));
        const QByteArray all = generate(7);
        QVERIFY(runTav(build({QStringLiteral("--relation"), QStringLiteral("edge")}), all).output ==
                contents(QStringLiteral(TAVOLINE_TEST_DATA "/all-7-edge-deleted.tav")));
        QVERIFY(runTav(build({QStringLiteral("--connected")}), all).output == connected);
    }

    void numbersOfGraphs_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QVector<int>>("numbers");
        // On-Line Encyclopedia of Integer Sequences, A000088 and A001349, from one vertex on.
        QTest::newRow("graphs") << QStringList() << QVector<int>{1, 2, 4, 11, 34, 156, 1044, 12346, 274668};
        QTest::newRow("connected graphs")
            << QStringList{QStringLiteral("--connected")} << QVector<int>{1, 1, 2, 6, 21, 112, 853, 11117, 261080};
    }

    void numbersOfGraphs()
    {
        QFETCH(QStringList, options);
        QFETCH(QVector<int>, numbers);
        QVector<int> found(numbers.size(), 0);
        const QList<QByteArray> lines = linesOf(runTav(build(options), generate(9)).output);
        for (const QByteArray &line : lines) {
            ++found[line.at(0) - 64];
        }
        QCOMPARE(found, numbers);
    }

    void linksAgreeWithBruteForce_data()
    {
        QTest::addColumn<bool>("edges");
        QTest::newRow("one vertex less") << false;
        QTest::newRow("one edge less") << true;
    }

    void linksAgreeWithBruteForce()
    {
        QFETCH(bool, edges);
        const QStringList options =
            edges ? QStringList{QStringLiteral("--relation"), QStringLiteral("edge")} : QStringList();
        // Every third graph is missing from the input, so that not every sub-graph is there.
        QByteArray input;
        const QList<QByteArray> names = linesOf(generate(7));
        for (int i = 0; i < names.size(); ++i) {
            input += i % 3 == 1 ? QByteArray() : names.at(i) + '\n';
        }
        const Database database(runTav(build(options), input).output);
        QVERIFY(database.graphs.size() > 800);
        for (int i = 0; i < database.graphs.size(); ++i) {
            QVector<int> expected;
            const QVector<Graph> subGraphs = subGraphsOf(database.graphs.at(i), edges);
            for (int j = 0; j < i; ++j) {
                if (std::any_of(subGraphs.begin(), subGraphs.end(), [&](const Graph &subGraph) {
                        return areIsomorphic(subGraph, database.graphs.at(j));
                    })) {
                    expected.append(j);
                }
            }
            QCOMPARE(database.links.at(i), expected);
        }
    }

    void orderOfInputAndNumbersOfVerticesDoNotMatter()
    {
        // Shuffled, renumbered and repeated, the graphs are the same: as many lines, and as many links.
        std::mt19937 random(20);
        QList<QByteArray> names = linesOf(generate(6));
        names += names;
        std::shuffle(names.begin(), names.end(), random);
        QByteArray input;
        for (const QByteArray &name : qAsConst(names)) {
            const Graph graph = decode(name);
            QVector<int> image(graph.size());
            std::iota(image.begin(), image.end(), 0);
            std::shuffle(image.begin(), image.end(), random);
            Graph renumbered = graph;
            for (int u = 0; u < graph.size(); ++u) {
                for (int v = 0; v < graph.size(); ++v) {
                    renumbered[image.at(u)][image.at(v)] = graph.at(u).at(v);
                }
            }
            input += encode(renumbered) + '\n';
        }
        const ToolResult plain = runTav(build(), generate(6));
        const ToolResult shuffled = runTav(build(), input);
        QVERIFY(plain.errors.startsWith("208 graphs and "));
        QVERIFY2(plain.errors.endsWith(" links; 0 isomorphic repetitions dropped.\n"), plain.errors.constData());
        QCOMPARE(shuffled.errors, QByteArray(plain.errors).replace("; 0 ", "; 208 "));
    }

    void theNumberOfProcessorsDoesNotMatter_data()
    {
        QTest::addColumn<QString>("relation");
        QTest::newRow("one vertex less") << QStringLiteral("vertex");
        QTest::newRow("one edge less") << QStringLiteral("edge");
    }

    void theNumberOfProcessorsDoesNotMatter()
    {
        QFETCH(QString, relation);
        const QByteArray input = generate(8);
        const QStringList arguments = build({QStringLiteral("--relation"), relation, QStringLiteral("-j")});
        const QByteArray single = runTav(arguments + words({"1"}), input).output;
        QCOMPARE(linesOf(single).size(), 13598);
        for (const char *jobs : {"2", "3", "16"}) {
            QVERIFY(runTav(arguments + words({jobs}), input).output == single);
        }
    }

    void aSignalEndsLongWorkAtOnce_data() { addEndingSignals(); }

    /// Of the long work no partial file is left.
    void aSignalEndsLongWorkAtOnce()
    {
        QFETCH(int, number);
        // By edges, and with a level below to look in, each of the lines behind the first takes 946 canonical forms,
        // about ten milliseconds of a processor: the whole is work for minutes.
        std::mt19937 random(62);
        const QByteArray below = encode(randomGraph(random, 62, 945)) + '\n';
        const QByteArray repeated = encode(randomGraph(random, 62, 946)) + '\n';
        const QString graphs = folder.write("hard.g6", below + repeated.repeated(20000));
        QTemporaryDir place;
        const qint64 timeOfOthers = processorTimeOfChildren();
        QProcess process;
        process.setWorkingDirectory(place.path());
        process.start(QStringLiteral(TAVOLINE_TAV),
                      build({QStringLiteral("--relation"), QStringLiteral("edge"), QStringLiteral("-j"),
                             QStringLiteral("2"), QStringLiteral("-o"), QStringLiteral("cut.tav"), graphs}));
        QTRY_VERIFY_WITH_TIMEOUT(hasFileOpenIn(process.processId(), place.path()), patience);
        const qint64 beginning = processorTime(process.processId());
        QTRY_VERIFY_WITH_TIMEOUT(processorTime(process.processId()) > beginning + 100, patience);
        const qint64 before = processorTime(process.processId());
        ::kill(pid_t(process.processId()), number);
        QVERIFY(process.waitForFinished(patience));
        // Not the time of the clock, of which other programs take their part. The batch of lines would take 10 seconds.
        QVERIFY(processorTimeOfChildren() - timeOfOthers - before < 3000);
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), number);
        QCOMPARE(QDir(place.path()).entryList(QDir::Files), QStringList());
        QCOMPARE(process.readAllStandardError(), QByteArray());
    }

    void aReaderThatLeavesEndsItQuietly()
    {
        const QString graphs = folder.write("all-8.g6", generate(8));
        const QString command = QStringLiteral("set -o pipefail; '%1' build '%2' | head -1; echo \"${PIPESTATUS[0]}\"")
                                    .arg(QStringLiteral(TAVOLINE_TAV), graphs);
        const ToolResult result = runProgram(QStringLiteral("bash"), {QStringLiteral("-c"), command});
        QCOMPARE(result.output, QByteArray("@\n141\n"));
        QCOMPARE(result.errors, QByteArray());
    }

    void aLevelThatIsMissingIsNotBridged_data()
    {
        QTest::addColumn<QString>("relation");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QByteArray>("summary");
        const auto graphs = [](const QStringList &arguments) {
            return runProgram(QStringLiteral("nauty-geng"), QStringList{QStringLiteral("-q")} + arguments).output;
        };
        QTest::newRow("3 and 5 vertices")
            << QStringLiteral("vertex") << graphs(words({"3"})) + graphs(words({"5"})) << QByteArray("38 graphs");
        QTest::newRow("2 and 4 edges") << QStringLiteral("edge")
                                       << graphs(words({"5", "2:2"})) + graphs(words({"5", "4:4"}))
                                       << QByteArray("8 graphs");
        QTest::newRow("no edge on 2 vertices and 1 edge on 3")
            << QStringLiteral("edge") << QByteArray("A?\nBG\n") << QByteArray("2 graphs");
    }

    /// Between what is there nothing is linked: a direct sub-graph lacks one vertex, or one edge.
    void aLevelThatIsMissingIsNotBridged()
    {
        QFETCH(QString, relation);
        QFETCH(QByteArray, input);
        QFETCH(QByteArray, summary);
        const ToolResult result = runTav(build({QStringLiteral("--relation"), relation}), input);
        QCOMPARE(result.errors, summary + " and 0 links; 0 isomorphic repetitions dropped.\n");
        QVERIFY(!result.output.contains('\t'));
    }

    void asManyProcessorsAsAreAllowed()
    {
        QCOMPARE(runTav(build({QStringLiteral("-j"), QStringLiteral("1024")}), "@\nA_\n").errors, noTrouble);
    }

    /// A thousand of these graphs are a batch, whose lines are written before the next is begun.
    void theProgressNeverFalls()
    {
        std::mt19937 random(63);
        const QString graphs =
            folder.write("batches.g6", (encode(randomGraph(random, 62, 1000)) + '\n').repeated(4500));
        const QString command =
            QStringLiteral("'%1' build -j 1 '%2' >/dev/null").arg(QStringLiteral(TAVOLINE_TAV), graphs);
        const QByteArray shown =
            runProgram(QStringLiteral("script"), {QStringLiteral("-qec"), command, QStringLiteral("/dev/null")}).output;
        QVector<int> percentages;
        for (const QByteArray &piece : shown.split('\r')) {
            if (piece.startsWith("Building: ")) {
                percentages.append(piece.mid(10).chopped(2).toInt());
            }
        }
        QVERIFY2(std::is_sorted(percentages.begin(), percentages.end()), shown.constData());
        QVERIFY2(percentages.value(0) < 5 && percentages.contains(50) && percentages.contains(95), shown.constData());
        QVERIFY2(percentages.last() <= 100, shown.constData());
    }

    void moreFilesThanMayBeOpenAtATime()
    {
        const TestFolder place;
        for (int i = 0; i < 300; ++i) {
            place.write(QString::number(i), i % 2 == 0 ? "@\n" : "A_\n");
        }
        const QString command = QStringLiteral("ulimit -n 16; exec '%1' build *").arg(QStringLiteral(TAVOLINE_TAV));
        const ToolResult result =
            runProgram(QStringLiteral("bash"), {QStringLiteral("-c"), command}, QByteArray(), place.path());
        QCOMPARE(result.errors, QByteArray("2 graphs and 1 link; 298 isomorphic repetitions dropped.\n"));
        QCOMPARE(result.output, QByteArray("@\nA_\t0\n"));
    }
};

QTEST_GUILESS_MAIN(TestTavBuild)
#include "tst_tav_build.moc"
