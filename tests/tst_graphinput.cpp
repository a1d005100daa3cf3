// Files of graphs: graph6 and sparse6 with and without headers, and what other formats are told to be.

#include "graphstring.h"
#include "sparse6.h"
#include "support/literals.h"
#include "support/plaingraph6.h"
#include "support/testfiles.h"
#include "support/toolprocess.h"

#include <QtTest>

#include <random>

namespace
{
/// What parseGraph() makes of a string: the graph6 string of the graph, or the fault.
QByteArray readingOf(const QByteArray &text)
{
    SmallGraph graph;
    graph.rows.fill(~uint64_t(0)); // of a graph that was read before
    const QString fault = parseGraph(std::string_view(text.constData(), text.size()), graph);
    return fault.isEmpty() ? QByteArray::fromStdString(graph6Of(graph)) : fault.toUtf8();
}

/// Runs tav build on some lines, with what it says and then what it writes.
QByteArray built(const QByteArray &lines)
{
    const ToolResult result = runTav(words({"build"}), lines);
    return result.status == 0 ? result.output : result.errors;
}

/// What a program of the nauty package makes of its input.
QByteArray converted(const char *program, const QStringList &arguments, const QByteArray &input)
{
    const ToolResult result = runProgram(QLatin1String(program), arguments, input);
    if (result.status != 0 || result.output.isEmpty()) {
        qFatal("%s: %s", program, result.errors.constData());
    }
    return result.output;
}

/// A random graph in graph6.
QByteArray randomGraph(std::mt19937 &random, int order, unsigned sparseness)
{
    return plainGraph6(order, [&](int, int) { return random() % sparseness == 0; });
}
} // namespace

class TestGraphInput : public QObject
{
    Q_OBJECT

private slots:
    void sparse6ByHand_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("graph6");
        QTest::newRow("no vertex") << QByteArray(":?") << QByteArray("?");
        QTest::newRow("one vertex") << QByteArray(":@") << QByteArray("@");
        QTest::newRow("two vertices") << QByteArray(":A") << QByteArray("A?");
        // 1 0, then 1111 to fill up
        QTest::newRow("an edge") << QByteArray(":An") << QByteArray("A_");
        // The example of the description of the format: the edges 01 02 12 56 on seven vertices.
        QTest::newRow("the published example") << QByteArray(":Fa@x^") << QByteArray("Fw??G");
        // Two bits a vertex. 1 00 is the edge 01, 0 11 the vertex 3 without an edge: 100 011 and no more.
        QTest::newRow("an order that is a power of 2") << QByteArray(":Cb") << QByteArray("C_");
        // Vertex 2 is joined to 0 and 3 is not: 1 00, 1 00, then 0 11111 instead of 111111.
        QTest::newRow("a zero fills up") << QByteArray(":Cc^") << QByteArray("Co");
    }

    void sparse6ByHand()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, graph6);
        QCOMPARE(readingOf(text), graph6);
    }

    /// Both ways of the nauty package: the plain strings of all small graphs, and those of sparse and dense large ones.
    void sparse6AsOthersWriteIt()
    {
        QByteArray lines("?\n@\n");
        for (const char *order : {"2", "3", "4", "5", "6", "7"}) {
            lines += converted("nauty-geng", words({"-q", order}), {});
        }
        std::mt19937 random(16);
        for (int order = 2; order <= SmallGraph::maxOrder; ++order) {
            for (const unsigned sparseness : {1U, 2U, 9U, 60U}) {
                lines += randomGraph(random, order, sparseness) + '\n';
            }
        }
        const QList<QByteArray> expected = lines.trimmed().split('\n');
        const QList<QByteArray> sparse = converted("nauty-copyg", words({"-qs"}), lines).trimmed().split('\n');
        QCOMPARE(sparse.size(), expected.size());
        for (int i = 0; i < sparse.size(); ++i) {
            QVERIFY2(sparse.at(i).startsWith(':'), sparse.at(i).constData());
            QCOMPARE(readingOf(sparse.at(i)), expected.at(i));
        }
    }

    void sparse6Faults_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("fault");
        const auto row = [](const char *title, const char *text, const char *fault) {
            QTest::newRow(title) << QByteArray(text) << QByteArray(fault);
        };
        row("nothing", ":", "not sparse6: nothing behind ':'");
        row("byte below", ":B>", "not sparse6: byte 62 at column 3");
        row("byte above", ":\x7f", "not sparse6: byte 127 at column 2");
        row("blank", ":An ", "not sparse6: byte 32 at column 4");
        row("63 vertices", ":~??~", "more than 62 vertices");
        row("a loop at once", ":A@", "a loop: only simple graphs are read");         // 0 0
        row("a loop later", ":Av", "a loop: only simple graphs are read");           // 1 1
        row("an edge twice", ":Ab", "a multiple edge: only simple graphs are read"); // 1 0, 0 0
        row("too long", ":An~", "not sparse6: bytes behind the last edge");
        row("too long for one vertex", ":@~", "not sparse6: bytes behind the last edge");
    }

    void sparse6Faults()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, fault);
        QCOMPARE(readingOf(text), fault);
    }

    void onlyItsMarkMakesASparse6String()
    {
        SmallGraph graph;
        QCOMPARE(parseSparse6("An", graph), QStringLiteral("not sparse6: no ':' at the beginning"));
        QCOMPARE(parseSparse6("", graph), QStringLiteral("not sparse6: no ':' at the beginning"));
    }

    /// The names of a database are graph6, whatever the graphs were written in.
    void bothFormatsAndTheirHeaders()
    {
        const QByteArray database("@\nA_\t0\nBw\t1\n");
        QCOMPARE(built("@\nA_\nBw\n"), database);
        QCOMPARE(built(">>graph6<<@\nA_\nBw\n"), database);
        QCOMPARE(built(">>sparse6<<:@\n:An\n:BcN\n"), database);
        QCOMPARE(built(":BcN\n@\n:An\n"), database);
        QCOMPARE(built("\xEF\xBB\xBF>>sparse6<<\n:@\r\n:An\r\nBw\n"), database);
        // Several files one after the other.
        QCOMPARE(built(">>graph6<<@\n>>graph6<<A_\n>>sparse6<<:BcN\n>>sparse6<<\n"), database);
        QCOMPARE(built(converted("nauty-geng", words({"-qch", "1"}), {}) +
                       converted("nauty-geng", words({"-qchs", "2"}), {})),
                 QByteArray("@\nA_\t0\n"));
        QCOMPARE(built(">>graph6<<>>graph6<<@\n"),
                 QByteArray("tav: standard input:1: not graph6: byte 62 at column 1\n"));
    }

    /// The file of an invariant has the names of the database, so that it fits it.
    void invariantsOfBothFormats()
    {
        const ToolResult result = runTav(words({"invariant", "size", "-"}), ">>sparse6<<:@\n>>graph6<<A_\t0\n:BcN\n");
        QCOMPARE(result.output, QByteArray("GRAPH\tINV1\n:@\t0\nA_\t1\n:BcN\t3\n"));
        QCOMPARE(result.errors, QByteArray());
    }

    void otherFormats_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("message");
        const auto row = [](const char *title, const char *text, const char *message) {
            QTest::newRow(title) << QByteArray(text) << QByteArray(message);
        };
        const char *const directed =
            "digraph6, whose graphs are directed; nauty-underlyingg makes undirected ones of them";
        const char *const edges = "an edge list, which Python's networkx converts (read_edgelist, write_graph6)";
        const char *const matrix = "an adjacency matrix, which nauty-amtog converts (its -n is the number of vertices)";
        const char *const gml = "GML, which Python's networkx converts (read_gml, write_graph6)";
        const char *const json =
            "JSON; if it is of Python's networkx, that converts it (node_link_graph, write_graph6)";
        const char *const graphviz = "the language of Graphviz, which gv2gml makes GML of; Python's networkx converts "
                                     "that (read_gml with label='id', write_graph6)";
        row("digraph6", "&BP_", directed);
        row("digraph6 with a header", ">>digraph6<<&BP_", directed);
        row("incremental sparse6", ";w", "incremental sparse6, which nauty-copyg -s converts");
        row("planar code", ">>planar_code<<\x04\x02", "planar code, in whose place plantri writes graph6 with -g");
        row("planar code with the order of bytes", ">>planar_code le<<",
            "planar code, in whose place plantri writes graph6 with -g");
        row("edge code", ">>edge_code<<", "edge code, in whose place plantri writes graph6 with -g");
        row("edge list", "0 1", edges);
        row("edge list with tabs", "10\t11", edges);
        row("edge list with signs", "-1 12", edges);
        row("weighted edge list", "1 2 3", edges);
        row("number of vertices", "4", edges);
        row("matrix", "0 1 0", matrix);
        row("matrix without blanks", "010", matrix);
        row("DIMACS", "p edge 3 2", "DIMACS, which nauty-dimacs2g converts");
        row("DIMACS comment", "c a path", "DIMACS, which nauty-dimacs2g converts if the line 'p' says 'edge'");
        row("DIMACS, other word", "p col 3 2", "DIMACS, which nauty-dimacs2g converts once 'p col' is 'p edge'");
        row("GML", "graph [", gml);
        row("GML with its author", "Creator \"me\"", gml);
        row("GraphML", "<?xml version='1.0'?>",
            "XML; if it is GraphML, Python's networkx converts it (read_graphml, write_graph6)");
        row("JSON", "{\"nodes\": []}", json);
        row("JSON on lines", "{", json);
        row("JSON list", "[[1], [0]]", json);
        row("Graphviz", "graph G {", graphviz);
        row("Graphviz, strict", "strict graph {", graphviz);
        row("database", "Bw\t1\t2", "a database, whose names 'cut -f 1' takes");
    }

    void otherFormats()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, message);
        const QByteArray reading = readingOf(text);
        const QByteArray hint = "; this looks like ";
        QVERIFY2(reading.startsWith("not graph6: ") && reading.contains(hint), reading.constData());
        QCOMPARE(reading.mid(reading.indexOf(hint) + hint.size()), message);
    }

    /// A string of graph6 that is damaged is nothing else, whatever it begins with.
    void damagedStrings()
    {
        QCOMPARE(readingOf("{~~"), QByteArray("not graph6: 3 bytes where a graph on 60 vertices has 296"));
        QCOMPARE(readingOf("c~"), QByteArray("not graph6: 2 bytes where a graph on 36 vertices has 106"));
        QCOMPARE(readingOf("A _"), QByteArray("not graph6: byte 32 at column 2"));
        QCOMPARE(readingOf("1x"), QByteArray("not graph6: byte 49 at column 1"));
        QCOMPARE(readingOf("1-2"), QByteArray("not graph6: byte 49 at column 1"));
        QCOMPARE(readingOf(" "), QByteArray("not graph6: byte 32 at column 1"));
    }

    /// The programs that the messages name do what they say, as far as they come with nauty.
    void theConvertersThatAreNamed()
    {
        QCOMPARE(built(converted("nauty-underlyingg", words({"-q"}), "&BP_\n&AW\n")), QByteArray("A_\nBw\t0\n"));
        QCOMPARE(built(converted("nauty-copyg", words({"-qs"}), ":C\n;w\n;x\n")).count('\n'), 3);
        QCOMPARE(built(converted("nauty-amtog", words({"-qn3"}), "0 1 0\n1 0 1\n0 1 0\n")), QByteArray("Bg\n"));
        QCOMPARE(built(converted("nauty-amtog", words({"-qn3"}), "010\n101\n010\n")), QByteArray("Bg\n"));
        const TestFolder folder;
        const QString dimacs = folder.write("path.col", "c a path\np edge 3 2\ne 1 2\ne 2 3\n");
        QCOMPARE(built(converted("nauty-dimacs2g", {dimacs}, {})), QByteArray("Bg\n"));
    }
};

QTEST_GUILESS_MAIN(TestGraphInput)
#include "tst_graphinput.moc"
