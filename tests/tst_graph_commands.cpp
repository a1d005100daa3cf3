// The commands that change the structure of the viewer's graph.

#include "edge.h"
#include "graph.h"
#include "node.h"
#include "support/graphtext.h"
#include "support/signalrecorder.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <array>
#include <cstring>

using Command = void (Graph::*)();
Q_DECLARE_METATYPE(Command)

class TestGraphCommands : public QObject
{
    Q_OBJECT

private slots:
    void result_data();
    void result();
    void commitsInOneStep_data();
    void commitsInOneStep();
    void changeCounter_data();
    void changeCounter();
    void newVertexStandsAtTheMouse();
    void newVerticesBuildAClique();
    void newVerticesBuildABipartiteGraph();
    void newVerticesBuildAPath();
    void newVertexDoesNotInheritASelectionOrEdges();
    void fullGraphTakesNoVertex_data();
    void fullGraphTakesNoVertex();
    void removalMovesItems();
    void movedItemKeepsItsEdges();
    void removalDiscardsUnpublishedChanges();
    void removalLeavesTheDiagonalOfTheFreedSlot_data();
    void removalLeavesTheDiagonalOfTheFreedSlot();
    void duplicationNeedsASelectionAndRoom();
    void duplicationFillsThePool();
    void copiesStandBesideTheirSources();
    void copiesHaveNoEdgesOfEarlierVertices();
    void repeatedDuplicationCopiesTheCopies();
    void diameterMessages_data();
    void diameterMessages();
    void diameterOfFewVertices_data();
    void diameterOfFewVertices();
    void disconnectedGraphOfAllSlotsIsNotDetected();
    void oneDiametralPairOfSmallDegrees();
    void countsOutsideTheSlots_data();
    void countsOutsideTheSlots();
    void sameAsTheSecondImplementation();
    void randomOperations();
    void noStateIsLeaked();
};

namespace
{
struct NamedCommand {
    const char *name;
    Command run;
};

const NamedCommand allCommands[] = {
    {"addK", &Graph::addK},
    {"addBip", &Graph::addBip},
    {"addTail", &Graph::addTail},
    {"adde", &Graph::slot_adde},
    {"reme", &Graph::slot_reme},
    {"remcut", &Graph::slot_remcut},
    {"addv", &Graph::slot_addv},
    {"remv", &Graph::slot_remv},
    {"complement", &Graph::slot_complement},
    {"duplicate", &Graph::slot_duplicate},
    {"duplicate link", &Graph::slot_duplicate_link},
    {"duplicate twins", &Graph::slot_duplicate_twins},
    {"duplicate link twins", &Graph::slot_duplicate_link_twins},
    {"link diameter", &Graph::slot_link_diameter},
    {"link one diameter", &Graph::slot_link_one_diameter},
};

Command command(const char *name)
{
    for (const NamedCommand &entry : allCommands) {
        if (std::strcmp(entry.name, name) == 0) {
            return entry.run;
        }
    }
    qFatal("no command \"%s\"", name);
}

QString pathGraph(int n)
{
    QStringList edges;
    for (int i = 1; i < n; ++i) {
        edges.append(QStringLiteral("%1-%2").arg(i - 1).arg(i));
    }
    return edges.join(QLatin1Char(' '));
}

QString completeGraph(int n)
{
    QStringList edges;
    for (int j = 1; j < n; ++j) {
        for (int i = 0; i < j; ++i) {
            edges.append(QStringLiteral("%1-%2").arg(i).arg(j));
        }
    }
    return edges.join(QLatin1Char(' '));
}

QVector<int> firstVertices(int count)
{
    QVector<int> vertices;
    for (int i = 0; i < count; ++i) {
        vertices.append(i);
    }
    return vertices;
}

QString vertexNames(const Graph &graph)
{
    QStringList names;
    for (int i = 0; i < graph.getNbNodes(); ++i) {
        names.append(graph.node(i)->getName());
    }
    return names.join(QLatin1Char(' '));
}

/// The commands over again, step by step on a plain matrix.
class PlainGraph
{
public:
    explicit PlainGraph(const Graph &graph) : n(graph.getNbNodes())
    {
        for (int i = 0; i < 32; ++i) {
            for (int j = 0; j < 32; ++j) {
                joined[i][j] = graph.edge(i, j);
            }
            selected[i] = graph.node(i)->isSelected();
            item[i] = graph.node(i)->getName();
        }
    }

    void run(const QString &name)
    {
        if (name.startsWith(QLatin1String("add")) && name != QLatin1String("adde")) {
            addVertex(name);
        } else if (name == QLatin1String("remv")) {
            removeSelected();
        } else if (name.startsWith(QLatin1String("duplicate"))) {
            duplicate(name.contains(QLatin1String("twins")), name.contains(QLatin1String("link")));
        } else if (name.startsWith(QLatin1String("link"))) {
            linkDiameter(name.contains(QLatin1String("one")));
        } else {
            changePairs(name);
        }
    }

    QString text() const
    {
        QString text;
        for (int i = 0; i < n; ++i) {
            text += item[i] + (selected[i] ? QLatin1String("*:") : QLatin1String(":"));
            for (int j = 0; j < n; ++j) {
                text += QLatin1Char(joined[i][j] ? '1' : '0');
            }
            text += QLatin1Char('\n');
        }
        return text;
    }

private:
    void join(int i, int j, bool value)
    {
        joined[i][j] = value && i != j;
        joined[j][i] = value && i != j;
    }

    void addVertex(const QString &name)
    {
        if (n == 32) {
            return;
        }
        const int v = n++;
        if (name == QLatin1String("addv")) {
            return;
        }
        selected[v] = name == QLatin1String("addK");
        for (int i = 0; i < n; ++i) {
            join(i, v, selected[i]);
        }
        if (name == QLatin1String("addTail")) {
            selected.fill(false);
            selected[v] = true;
        }
    }

    void changePairs(const QString &name)
    {
        for (int i = 0; i < n; ++i) {
            for (int j = i + 1; j < n; ++j) {
                const bool both = selected[i] && selected[j];
                const bool across = selected[i] != selected[j];
                if ((name == QLatin1String("reme") && both) || (name == QLatin1String("remcut") && across)) {
                    join(i, j, false);
                } else if (name == QLatin1String("adde") && both) {
                    join(i, j, true);
                } else if (name == QLatin1String("complement") && both) {
                    join(i, j, !joined[i][j]);
                }
            }
        }
    }

    void removeSelected()
    {
        for (int v = n - 1; v >= 0; --v) {
            if (!selected[v]) {
                continue;
            }
            const int last = n - 1;
            for (int i = 0; i < n; ++i) {
                if (i != v) {
                    join(i, v, i != last && joined[i][last]);
                }
            }
            std::swap(item[v], item[last]);
            std::swap(selected[v], selected[last]);
            --n;
        }
        for (int i = n; i < 32; ++i) {
            for (int j = 0; j < 32; ++j) {
                join(i, j, false);
            }
        }
    }

    void duplicate(bool twins, bool linked)
    {
        QVector<int> sources;
        const int f = n;
        for (int i = 0; i < f; ++i) {
            if (selected[i]) {
                sources.append(i);
            }
        }
        const int k = sources.size();
        if (k == 0 || f + k > 32) {
            return;
        }
        n += k;
        for (int m = 0; m < k; ++m) {
            selected[f + m] = true;
            for (int w = 0; w < f; ++w) {
                join(f + m, w, twins && joined[sources[m]][w]);
            }
            for (int b = 0; b < k; ++b) {
                join(f + m, f + b, joined[sources[m]][sources[b]]);
            }
        }
        for (int m = 0; m < k; ++m) {
            if (linked) {
                join(sources[m], f + m, true);
            }
            selected[sources[m]] = false;
        }
    }

    /// All distances, by Floyd and Warshall; 32 without a path.
    QVector<QVector<int>> distances() const
    {
        QVector<QVector<int>> distance(n, QVector<int>(n, 32));
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                distance[i][j] = i == j ? 0 : joined[i][j] ? 1 : 32;
            }
        }
        for (int via = 0; via < n; ++via) {
            for (int i = 0; i < n; ++i) {
                for (int j = 0; j < n; ++j) {
                    distance[i][j] = qMin(distance[i][j], distance[i][via] + distance[via][j]);
                }
            }
        }
        return distance;
    }

    void linkDiameter(bool onlyOne)
    {
        const QVector<QVector<int>> distance = distances();
        int diameter = 0;
        for (const QVector<int> &row : distance) {
            diameter = qMax(diameter, *std::max_element(row.begin(), row.end()));
        }
        if (diameter > n || diameter == 1) {
            return;
        }
        QVector<int> degree;
        for (int i = 0; i < n; ++i) {
            degree.append(int(std::count(joined[i].begin(), joined[i].begin() + n, true)));
        }
        int best = 0;
        int bi = -1;
        int bj = -1;
        int key = -1;
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                if (distance[i][j] == diameter && i != j && !onlyOne) {
                    join(i, j, true);
                }
                const bool better = degree[i] < key && degree[j] < key;
                if (distance[i][j] > best || (distance[i][j] == best && better)) {
                    best = distance[i][j];
                    bi = i;
                    bj = j;
                    key = qMax(degree[i], degree[j]);
                }
            }
        }
        if (onlyOne && bi >= 0 && bj >= 1) {
            join(bi, bj, true);
        }
    }

    int n;
    std::array<std::array<bool, 32>, 32> joined{};
    std::array<bool, 32> selected{};
    std::array<QString, 32> item;
};

/// A random graph of up to 32 vertices, published and shown, with a random selection, from sparse to dense.
void randomise(Graph &graph, QRandomGenerator &random)
{
    graphtext::set(graph, random.bounded(Graph::MAX_NODES + 1), QString());
    const int density = random.bounded(101);
    const int share = random.bounded(101);
    for (int i = 0; i < Graph::MAX_NODES; ++i) {
        for (int j = 0; j < i; ++j) {
            if (random.bounded(100) < density) {
                graph.addEdge(i, j);
            }
        }
        graph.node(i)->setSelected(random.bounded(100) < share);
    }
    graph.changeBest();
    graph.update_display();
}

/// What is wrong with a graph that has just been published and shown, empty when nothing is.
QString fault(const Graph &graph)
{
    const int n = graph.getNbNodes();
    if (n < 0 || n > Graph::MAX_NODES) {
        return QStringLiteral("%1 vertices").arg(n);
    }
    if (!graphtext::published(graph)) {
        return QStringLiteral("not published");
    }
    for (int i = 0; i < Graph::MAX_NODES; ++i) {
        if (graph.node(i)->getVisible() != (i < n) || graph.node(i)->isVisible() != (i < n)) {
            return QStringLiteral("vertex %1 is not shown as it should be").arg(i);
        }
        for (int j = 0; j < i; ++j) {
            const Edge *item = graph.edgeItem(i, j);
            const bool rightEnds = (item->from() == graph.node(i) && item->to() == graph.node(j)) ||
                                   (item->from() == graph.node(j) && item->to() == graph.node(i));
            if (!rightEnds || !graph.node(i)->getENeighbors().contains(graph.edgeItem(i, j)) ||
                !graph.node(j)->getENeighbors().contains(graph.edgeItem(i, j))) {
                return QStringLiteral("edge item %1-%2 hangs on other vertices").arg(i).arg(j);
            }
            if (item->isVisible() != graph.edge(i, j) || graph.edge(i, j) != graph.edge(j, i)) {
                return QStringLiteral("edge %1-%2 is not shown as it should be").arg(i).arg(j);
            }
        }
        if (graph.node(i)->getENeighbors().size() != Graph::MAX_NODES - 1) {
            return QStringLiteral("vertex %1 has other edge items").arg(i);
        }
    }
    return {};
}
} // namespace

void TestGraphCommands::result_data()
{
    QTest::addColumn<Command>("run");
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("edges");
    QTest::addColumn<QVector<int>>("selected");
    QTest::addColumn<int>("nAfter");
    QTest::addColumn<QString>("edgesAfter");
    QTest::addColumn<QString>("selectedAfter");
    const auto row = [](const char *name, int n, const char *edges, const QVector<int> &selected, int nAfter,
                        const char *edgesAfter, const char *selectedAfter) {
        QTest::addRow("%s of %s [%s]", name, edges, qPrintable(graphtext::vertices(selected)))
            << command(name) << n << QString::fromLatin1(edges) << selected << nAfter << QString::fromLatin1(edgesAfter)
            << QString::fromLatin1(selectedAfter);
    };
    row("addK", 3, "0-1 1-2", {0, 2}, 4, "0-1 1-2 0-3 2-3", "0 2 3");
    row("addK", 0, "", {}, 1, "", "0");
    row("addBip", 3, "0-1 1-2", {0, 2}, 4, "0-1 1-2 0-3 2-3", "0 2");
    row("addBip", 3, "0-1 1-2", {}, 4, "0-1 1-2", "");
    row("addTail", 3, "0-1 1-2", {2}, 4, "0-1 1-2 2-3", "3");
    row("adde", 4, "0-1 1-2 2-3", {0, 1, 3}, 4, "0-1 1-2 0-3 1-3 2-3", "0 1 3");
    row("adde", 4, "0-1", {2}, 4, "0-1", "2");
    row("reme", 4, "0-1 0-2 1-2 0-3 1-3 2-3", {1, 2, 3}, 4, "0-1 0-2 0-3", "1 2 3");
    row("remcut", 4, "0-1 0-2 1-2 0-3 1-3 2-3", {0, 1}, 4, "0-1 2-3", "0 1");
    row("remcut", 3, "0-1 1-2", {0, 1, 2}, 3, "0-1 1-2", "0 1 2");
    row("complement", 4, "0-1 1-2 2-3", {0, 1, 2}, 4, "0-2 2-3", "0 1 2");
    row("addv", 2, "0-1", {0}, 3, "0-1", "0");
    row("remv", 5, "0-1 1-2 2-3 3-4 0-4", {1, 3}, 3, "0-1", "");
    row("remv", 4, "0-1 1-2 2-3", {0, 1, 2, 3}, 0, "", "");
    row("remv", 4, "0-1 1-2 2-3", {}, 4, "0-1 1-2 2-3", "");
    row("remv", 4, "0-1 1-2 2-3", {0}, 3, "1-2 0-2", "");
    row("duplicate", 3, "0-1 1-2", {1, 2}, 5, "0-1 1-2 3-4", "3 4");
    row("duplicate link", 3, "0-1 1-2", {1, 2}, 5, "0-1 1-2 1-3 2-4 3-4", "3 4");
    row("duplicate twins", 3, "0-1 1-2", {1}, 4, "0-1 1-2 0-3 2-3", "3");
    row("duplicate twins", 3, "0-1 1-2", {0, 1}, 5, "0-1 1-2 1-3 0-4 2-4 3-4", "3 4");
    row("duplicate link twins", 3, "0-1 1-2", {1}, 4, "0-1 1-2 0-3 1-3 2-3", "3");
    row("link diameter", 4, "0-1 1-2 2-3", {}, 4, "0-1 1-2 0-3 2-3", "");
    row("link diameter", 6, "0-1 1-2 2-3 3-4 4-5 0-5", {}, 6, "0-1 1-2 0-3 2-3 1-4 3-4 0-5 2-5 4-5", "");
    row("link one diameter", 3, "0-1 1-2", {}, 3, "0-1 0-2 1-2", "");
    row("link one diameter", 6, "0-1 1-2 2-3 3-4 4-5 0-5", {}, 6, "0-1 1-2 0-3 2-3 3-4 0-5 4-5", "");
}

void TestGraphCommands::result()
{
    QFETCH(Command, run);
    QFETCH(int, n);
    QFETCH(QString, edges);
    QFETCH(QVector<int>, selected);
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, n, edges, selected);
    SignalRecorder recorder(graph);
    (graph.*run)();
    QTEST(graph.getNbNodes(), "nAfter");
    QFETCH(QString, edgesAfter);
    const auto sorted = [](const QString &text) {
        QStringList words = text.split(QLatin1Char(' '));
        words.sort();
        return words;
    };
    QCOMPARE(sorted(graphtext::edges(graph)), sorted(edgesAfter));
    QTEST(graphtext::selection(graph), "selectedAfter");
    QCOMPARE(fault(graph), QString());
    QCOMPARE(recorder.recorded(), (QStringList{QStringLiteral("best_graph_changed")}));
}

void TestGraphCommands::commitsInOneStep_data()
{
    QTest::addColumn<Command>("run");
    for (const NamedCommand &entry : allCommands) {
        QTest::newRow(entry.name) << entry.run;
    }
}

// One undo leads back to the state before the command, one redo to the state behind it.
void TestGraphCommands::commitsInOneStep()
{
    QFETCH(Command, run);
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 4, QStringLiteral("0-1 1-2 2-3"), {1, 2});
    graph.backup();
    const int before = graphtext::living();
    (graph.*run)();
    QCOMPARE(graphtext::living(), before + 1);
    const QString after = graphtext::edges(graph);
    const int nAfter = graph.getNbNodes();
    graph.slot_undo();
    QCOMPARE(graph.getNbNodes(), 4);
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-1 1-2 2-3"));
    graph.slot_redo();
    QCOMPARE(graph.getNbNodes(), nAfter);
    QCOMPARE(graphtext::edges(graph), after);
}

void TestGraphCommands::changeCounter_data()
{
    QTest::addColumn<Command>("run");
    QTest::addColumn<int>("changes");
    const auto row = [](const char *name, int changes) { QTest::newRow(name) << command(name) << changes; };
    row("addK", 5 + 1); // one of each vertex with the new one, itself included
    row("addBip", 5 + 1);
    row("addTail", 5 + 1);
    row("adde", 1 + 1); // one pair
    row("reme", 1 + 1);
    row("complement", 1 + 1);
    row("remcut", 4 + 1); // four pairs
    row("addv", 1 + 1);
    row("remv", 1);
    row("duplicate", 4 + 2); // all pairs of two copies, both ways
    row("duplicate link", 4 + 2 + 2);
    row("duplicate twins", 4 + 8 + 2); // two copies with four old vertices
    row("duplicate link twins", 4 + 8 + 2 + 2);
    row("link diameter", 1 + 2);
    row("link one diameter", 1 + 2);
}

void TestGraphCommands::changeCounter()
{
    QFETCH(Command, run);
    QFETCH(int, changes);
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 4, QStringLiteral("0-1 1-2 2-3"), {1, 2});
    const unsigned before = graph.getID();
    (graph.*run)();
    QCOMPARE(unsigned(graph.getID()) - before, unsigned(changes));
}

void TestGraphCommands::newVertexStandsAtTheMouse()
{
    for (const char *name : {"addK", "addBip", "addTail", "addv"}) {
        Graph graph(QStringLiteral("commands"), true);
        graph.resize(400, 400);
        graph.show();
        graphtext::set(graph, 2, QStringLiteral("0-1"));
        QMouseEvent move(QEvent::MouseMove, QPoint(120, 250), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(graph.viewport(), &move);
        graph.node(2)->setPosition(1, 2, 3);
        (graph.*command(name))();
        QCOMPARE(graph.node(2)->pos(), graph.mapToScene(120, 250));
        QCOMPARE(graph.node(2)->getCoordZ(), 0.0);
    }
}

void TestGraphCommands::newVerticesBuildAClique()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 0, QString());
    for (int i = 0; i < 4; ++i) {
        graph.addK();
    }
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-1 0-2 1-2 0-3 1-3 2-3"));
}

void TestGraphCommands::newVerticesBuildABipartiteGraph()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 2, QString(), {0, 1});
    for (int i = 0; i < 3; ++i) {
        graph.addBip();
    }
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-2 1-2 0-3 1-3 0-4 1-4"));
    QCOMPARE(graphtext::selection(graph), QStringLiteral("0 1"));
}

void TestGraphCommands::newVerticesBuildAPath()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 1, QString(), {0});
    for (int i = 0; i < 3; ++i) {
        graph.addTail();
    }
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-1 1-2 2-3"));
    QCOMPARE(graphtext::selection(graph), QStringLiteral("3"));
}

// The slot of the new vertex has been in use: it was joined to all others, and it is selected.
void TestGraphCommands::newVertexDoesNotInheritASelectionOrEdges()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 3, QString());
    graph.backup();
    graph.slot_select_all();
    graph.addK();
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-3 1-3 2-3"));
    graph.slot_undo();
    graphtext::select(graph, {0, 3});
    graph.addBip();
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-3"));
    QCOMPARE(graphtext::selection(graph), QStringLiteral("0"));
}

void TestGraphCommands::fullGraphTakesNoVertex_data()
{
    QTest::addColumn<Command>("run");
    QTest::addColumn<bool>("commits");
    QTest::newRow("addK") << command("addK") << false;
    QTest::newRow("addBip") << command("addBip") << false;
    QTest::newRow("addTail") << command("addTail") << false;
    QTest::newRow("addv") << command("addv") << true;
}

void TestGraphCommands::fullGraphTakesNoVertex()
{
    QFETCH(Command, run);
    QFETCH(bool, commits);
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, Graph::MAX_NODES, QStringLiteral("0-31"), {0});
    SignalRecorder recorder(graph);
    const int id = graph.getID();
    const int before = graphtext::living();
    (graph.*run)();
    QCOMPARE(graph.getNbNodes(), Graph::MAX_NODES);
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-31"));
    QCOMPARE(graphtext::selection(graph), QStringLiteral("0"));
    QCOMPARE(graphtext::living() - before, commits ? 1 : 0);
    QCOMPARE(graph.getID() != id, commits);
    QCOMPARE(recorder.recorded().size(), commits ? 1 : 0);
}

// Vertex 4 fills the hole in slot 3 and, from there, the hole in slot 1.
void TestGraphCommands::removalMovesItems()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 5, QStringLiteral("2-4"), {1, 3});
    graph.node(4)->setPosition(7, 8);
    Node *moved = graph.node(4);
    graph.slot_remv();
    QCOMPARE(vertexNames(graph), QStringLiteral("Node 1 Node 5 Node 3"));
    QCOMPARE(graph.node(1), moved);
    QCOMPARE(moved->pos(), QPointF(7, 8));
    QCOMPARE(graphtext::edges(graph), QStringLiteral("1-2"));
    QCOMPARE(fault(graph), QString());
}

void TestGraphCommands::movedItemKeepsItsEdges()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 4, QStringLiteral("1-3"), {0});
    graph.node(1)->setPosition(0, 0);
    graph.node(3)->setPosition(30, 0);
    graph.slot_remv();
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-1"));
    const Edge *edge = graph.edgeItem(0, 1);
    QCOMPARE(edge->length(), 30.0);
    graph.node(0)->setPosition(0, 40);
    QCOMPARE(edge->length(), 40.0);
    graph.node(1)->setPosition(0, -20);
    QCOMPARE(edge->length(), 60.0);
}

void TestGraphCommands::removalDiscardsUnpublishedChanges()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 3, QStringLiteral("0-1"), {2});
    graph.remEdge(0, 1);
    graph.slot_remv();
    QCOMPARE(graph.getNbNodes(), 2);
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-1"));
}

void TestGraphCommands::removalLeavesTheDiagonalOfTheFreedSlot_data()
{
    QTest::addColumn<int>("removed");
    QTest::addColumn<int>("degree");
    QTest::newRow("freed by the move of its vertex") << 0 << 1;
    QTest::newRow("freed by the removal of its vertex") << 2 << 0;
}

// A vertex that is added later takes over the row of its slot, and its degree counts the diagonal.
void TestGraphCommands::removalLeavesTheDiagonalOfTheFreedSlot()
{
    QFETCH(int, removed);
    QFETCH(int, degree);
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 3, QString(), {removed});
    graph.invert(); // sets the diagonal, too
    graph.changeBest();
    graph.slot_remv();
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-1"));
    QCOMPARE(graph.degree(0), 2);
    QCOMPARE(graph.degree(1), 2);
    QVERIFY(graph.addNode());
    QCOMPARE(graph.degree(2), degree);
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-1"));
}

void TestGraphCommands::duplicationNeedsASelectionAndRoom()
{
    for (const int count : {0, 13}) {
        Graph graph(QStringLiteral("commands"), true);
        graphtext::set(graph, 20, QStringLiteral("0-1"), firstVertices(count));
        SignalRecorder recorder(graph);
        const int id = graph.getID();
        const int before = graphtext::living();
        for (const char *name : {"duplicate", "duplicate link", "duplicate twins", "duplicate link twins"}) {
            (graph.*command(name))();
        }
        QCOMPARE(graph.getNbNodes(), 20);
        QCOMPARE(graph.getID(), id);
        QCOMPARE(graphtext::living(), before);
        QCOMPARE(graphtext::selection(graph), graphtext::vertices(firstVertices(count)));
        QCOMPARE(recorder.recorded(), QStringList());
    }
}

void TestGraphCommands::duplicationFillsThePool()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 20, QStringLiteral("0-11"), firstVertices(12));
    graph.slot_duplicate();
    QCOMPARE(graph.getNbNodes(), 32);
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-11 20-31"));
    QCOMPARE(graphtext::selection(graph), QStringLiteral("20 21 22 23 24 25 26 27 28 29 30 31"));
}

void TestGraphCommands::copiesStandBesideTheirSources()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 3, QString(), {0, 2});
    graph.node(0)->setPosition(1, 2, 3);
    graph.node(2)->setPosition(-50, 60, 7);
    graph.slot_duplicate_twins();
    QCOMPARE(graph.node(3)->pos(), QPointF(-9, 12));
    QCOMPARE(graph.node(4)->pos(), QPointF(-60, 70));
    QCOMPARE(graph.node(4)->getCoordZ(), 0.0);
}

// An undone vertex leaves its entries behind in its slot.
void TestGraphCommands::copiesHaveNoEdgesOfEarlierVertices()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 3, QString());
    graph.backup();
    graphtext::select(graph, {0, 1, 2});
    graph.addK();
    graph.slot_undo();
    graphtext::select(graph, {0});
    graph.slot_duplicate();
    QCOMPARE(graph.getNbNodes(), 4);
    QCOMPARE(graphtext::edges(graph), QString());
}

void TestGraphCommands::repeatedDuplicationCopiesTheCopies()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 2, QStringLiteral("0-1"), {1});
    graph.slot_duplicate_link();
    graph.slot_duplicate_link();
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-1 1-2 2-3"));
    QCOMPARE(graphtext::selection(graph), QStringLiteral("3"));
}

void TestGraphCommands::diameterMessages_data()
{
    QTest::addColumn<Command>("run");
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("edges");
    QTest::addColumn<QString>("message");
    const QString disconnected =
        QStringLiteral("console Link diameter impossible : Disconnected graph false 0 #0000ff");
    const QString complete = QStringLiteral("console Link diameter impossible : Complete graph false 0 #0000ff");
    for (const char *name : {"link diameter", "link one diameter"}) {
        QTest::addRow("%s, disconnected", name) << command(name) << 4 << QStringLiteral("0-1 2-3") << disconnected;
        QTest::addRow("%s, 31 vertices, one isolated", name)
            << command(name) << 31 << completeGraph(30) << disconnected;
        QTest::addRow("%s, one edge", name) << command(name) << 2 << QStringLiteral("0-1") << complete;
        QTest::addRow("%s, complete", name) << command(name) << 32 << completeGraph(32) << complete;
    }
}

void TestGraphCommands::diameterMessages()
{
    QFETCH(Command, run);
    QFETCH(int, n);
    QFETCH(QString, edges);
    QFETCH(QString, message);
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, n, edges);
    SignalRecorder recorder(graph);
    const int before = graphtext::living();
    (graph.*run)();
    QCOMPARE(recorder.recorded(), (QStringList{message, QStringLiteral("best_graph_changed")}));
    QCOMPARE(graphtext::edges(graph), edges);
    QCOMPARE(graphtext::living(), before + 1);
}

void TestGraphCommands::diameterOfFewVertices_data()
{
    QTest::addColumn<Command>("run");
    QTest::addColumn<int>("n");
    for (const char *name : {"link diameter", "link one diameter"}) {
        QTest::addRow("%s, none", name) << command(name) << 0;
        QTest::addRow("%s, one", name) << command(name) << 1;
    }
}

void TestGraphCommands::diameterOfFewVertices()
{
    QFETCH(Command, run);
    QFETCH(int, n);
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, n, QString());
    SignalRecorder recorder(graph);
    const unsigned id = graph.getID();
    const int before = graphtext::living();
    (graph.*run)();
    QCOMPARE(recorder.recorded(), (QStringList{QStringLiteral("best_graph_changed")}));
    QCOMPARE(unsigned(graph.getID()) - id, 2U);
    QCOMPARE(graphtext::living(), before + 1);
    QCOMPARE(graph.getNbNodes(), n);
}

// Without a path the distance is 32, which a graph of 32 vertices takes for its diameter.
void TestGraphCommands::disconnectedGraphOfAllSlotsIsNotDetected()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 32, pathGraph(31));
    SignalRecorder recorder(graph);
    graph.slot_link_one_diameter();
    // The first pair whose larger degree is 1: an end of the path and the isolated vertex.
    QCOMPARE(graphtext::edges(graph), pathGraph(31) + QStringLiteral(" 0-31"));
    graphtext::set(graph, 32, completeGraph(31));
    graph.slot_link_diameter();
    QCOMPARE(graphtext::edges(graph), completeGraph(32));
    QVERIFY(recorder.recorded().filter(QStringLiteral("console")).isEmpty());
}

// Vertices 0 and 4 are ends of the path 0-1-2-3-4 as well as 5 and 4, but vertex 0 has a second neighbour.
void TestGraphCommands::oneDiametralPairOfSmallDegrees()
{
    Graph graph(QStringLiteral("commands"), true);
    graphtext::set(graph, 7, QStringLiteral("0-1 0-6 1-6 1-2 2-3 3-4 1-5"));
    graph.slot_link_one_diameter();
    QCOMPARE(graphtext::edges(graph), QStringLiteral("0-1 1-2 2-3 3-4 1-5 4-5 0-6 1-6"));
}

void TestGraphCommands::countsOutsideTheSlots_data()
{
    QTest::addColumn<QString>("name");
    for (const NamedCommand &entry : allCommands) {
        QTest::newRow(entry.name) << QString::fromLatin1(entry.name);
    }
}

// A text may claim any number of vertices; the commands stay within the slots.
void TestGraphCommands::countsOutsideTheSlots()
{
    QFETCH(QString, name);
    for (const bool selectAll : {false, true}) {
        Graph graph(QStringLiteral("commands"), true);
        for (const char *text : {"~", "?", "!", "`"}) {
            graph.loadg6(QString::fromLatin1(text), false);
            graph.changeBest();
            graph.update_display();
            if (selectAll) {
                graph.slot_select_all();
            }
            (graph.*command(qPrintable(name)))();
            graph.slot_undo();
            QVERIFY(graph.getNbEdges() >= 0);
        }
    }
}

void TestGraphCommands::sameAsTheSecondImplementation()
{
    QRandomGenerator random(20240607);
    Graph graph(QStringLiteral("commands"), true);
    for (int round = 0; round < 40; ++round) {
        for (const NamedCommand &entry : allCommands) {
            randomise(graph, random);
            PlainGraph expected(graph);
            (graph.*entry.run)();
            expected.run(QString::fromLatin1(entry.name));
            QVERIFY2(PlainGraph(graph).text() == expected.text(), entry.name);
        }
    }
}

void TestGraphCommands::randomOperations()
{
    QRandomGenerator random(4711);
    const auto anyVertex = [&random]() { return random.bounded(-1, Graph::MAX_NODES + 1); };
    const std::function<void(Graph &)> others[] = {
        [](Graph &graph) { graph.addNode(); },
        [](Graph &graph) { graph.remNode(); },
        [&](Graph &graph) { graph.remNode(anyVertex()); },
        [&](Graph &graph) { graph.addEdge(anyVertex(), anyVertex()); },
        [&](Graph &graph) { graph.remEdge(anyVertex(), anyVertex()); },
        [](Graph &graph) { graph.invert(); },
        [](Graph &graph) { graph.perturb(3); },
        [](Graph &graph) { graph.relabel(); },
        [](Graph &graph) { graph.slot_reorganize(); },
        [](Graph &graph) { graph.slot_undo(); },
        [](Graph &graph) { graph.slot_redo(); },
        [](Graph &graph) { graph.slot_invert_selection(); },
        [](Graph &graph) { graph.best_restore(); },
        [](Graph &graph) { graph.rotate(0.1, 0.2, 0.3); },
        [&](Graph &graph) { randomise(graph, random); },
    };
    const int commandCount = int(std::size(allCommands));
    const int otherCount = int(std::size(others));
    Graph graph(QStringLiteral("commands"), true);
    for (int step = 0; step < 1500; ++step) {
        const int choice = random.bounded(commandCount + otherCount);
        for (int i = 0; i < Graph::MAX_NODES; ++i) {
            if (random.bounded(4) == 0) {
                graph.node(i)->toggleSelected();
            }
        }
        if (choice < commandCount) {
            (graph.*allCommands[choice].run)();
        } else {
            others[choice - commandCount](graph);
        }
        graph.changeBest();
        graph.update_display();
        QVERIFY2(fault(graph).isEmpty(),
                 qPrintable(QStringLiteral("step %1, choice %2: %3").arg(step).arg(choice).arg(fault(graph))));
    }
}

void TestGraphCommands::noStateIsLeaked()
{
    const int before = graphtext::living();
    {
        Graph graph(QStringLiteral("commands"), true);
        for (int i = 0; i < 5; ++i) {
            graph.addK();
        }
        graph.slot_undo();
        graph.slot_undo();
        QCOMPARE(graphtext::living(), before + 1 + 5);
        graph.addBip();
        QCOMPARE(graphtext::living(), before + 1 + 4);
    }
    QCOMPARE(graphtext::living(), before);
}

QTEST_MAIN(TestGraphCommands)
#include "tst_graph_commands.moc"
