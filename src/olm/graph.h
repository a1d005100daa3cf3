#ifndef TAVOLINE_OLM_GRAPH_H
#define TAVOLINE_OLM_GRAPH_H

#include <QColor>
#include <QGraphicsView>
#include <QList>
#include <QMutex>
#include <QPoint>
#include <QPointF>
#include <QString>
#include <QTime>
#include <QVector>

#include <functional>
#include <iosfwd>
#include <utility>

class Edge;
class Node;
class QAction;
class QGraphicsRectItem;
class QGraphicsScene;
class QMenu;
class QLabel;
class QMimeData;
class QPainter;
struct Drawing;

/// The viewer and editor of one simple undirected graph of at most 32 vertices, and at the same time its model.
///
/// The model keeps two graphs. Every structural operation changes the current graph; the best graph is a snapshot of
/// it, taken by best_backup(), and is what update_display() shows. The vertices of a graph are the first slots: vertex
/// i is slot i. The items of all slots and of all pairs of slots live as long as the graph and are shown or hidden.
///
/// loadg6(), loadolm() and loadCurrentGraph() may leave a vertex count outside 0..32 behind. Every operation then works
/// on the slots that exist.
///
/// Two locks guard the adjacency, bestLock (taken first) and currentLock; neither is recursive.
///
/// The viewer can be put into other programs. What this one does not use says so.
class Graph : public QGraphicsView
{
    Q_OBJECT

public:
    static constexpr int MAX_NODES = 32;

    /// A random graph on 10 vertices; without @p interactive it has no scene and serves as a plain model.
    Graph(QString name, bool interactive);
    ~Graph() override;

    /// The change counter of the current graph. Nothing in this program calls it.
    int getID() const { return id; }
    int getNbNodes() const { return nbNodes; }
    /// The number of entries above the diagonal. Nothing in this program calls it.
    int getNbEdges() const;
    /// Sets the directory in which the file dialogs start, and into which autosave() writes.
    void setWD(QString dir) { workDir = std::move(dir); }
    /// A new graph without a scene, named "Clone", that holds a copy of the current graph; the caller owns it.
    Graph *clone() const;

    // The items, owned by the graph. In this program only the tour and the tests ask for them.

    /// The vertex item of @p slot, null outside the slots.
    Node *node(int slot) const;
    /// The item of the pair @p i, @p j, null outside the slots and on the diagonal.
    Edge *edgeItem(int i, int j) const;

    // The current graph. Nothing in this program calls remNode(int), invert() or degree().

    /// Adds a vertex at the last mouse position; false when all slots are in use.
    bool addNode();
    /// Removes the last vertex; false when there is none.
    bool remNode();
    /// Removes vertex @p k, whose place the last vertex takes; false when there is no such vertex.
    bool remNode(int k);
    /// Joins vertices @p i and @p j; false when they are not two vertices of the graph.
    bool addEdge(int i, int j);
    /// Separates slots @p i and @p j; false when they are no slots or not joined.
    bool remEdge(int i, int j);
    /// Flips the adjacency entry (i, j) and leaves its mirror entry alone. The indices must be slots.
    void toggleEdge(int i, int j);
    /// Whether vertices @p i and @p j of the current graph are joined; false when they are not two of its vertices.
    bool edge(int i, int j) const;
    /// The number of neighbours of vertex @p i, 0 when there is no such vertex.
    int degree(int i) const;
    /// Removes all vertices and edges.
    void clear();
    /// Takes over the current graph of @p other, without names and places.
    void copy(const Graph *other);
    /// Replaces the graph by its complement.
    void invert();
    /// Replaces the graph by a random one on @p n vertices (as many as there are slots, at most).
    void randomGraph(int n);

    // The best graph and the display.

    /// Whether vertices @p i and @p j of the best graph are joined; false when they are not two of its vertices.
    bool bestEdge(int i, int j) const;
    /// Makes the current graph the best one.
    void best_backup();
    /// Shows the best graph.
    void update_display();
    /// Publishes the current graph: counts a change, makes it the best graph and tells so.
    void changeBest();
    /// Shows on the background whether a constraint is violated (gray) or not (white). Nothing in this program knows a
    /// constraint: it is never violated.
    void setViolated(bool value);
    /// Takes the lock of the best graph. Whoever holds it only reads and prints the current graph and calls addEdge(),
    /// remEdge() and edge(); what adds or removes vertices, publishes or shows, reads the best graph, or reads or
    /// writes a file takes it itself. Nothing in this program calls lock() or unlock().
    void lock() { bestLock.lock(); }
    void unlock() { bestLock.unlock(); }
    /// Writes the change counter and both matrices to the standard error stream. For a debugger: nothing in this
    /// program calls it.
    void display();

    // Places and decorations of the items. Nothing in this program calls them but resetSizes(): they are for tools that
    // show invariants of the vertices and the edges.

    /// Places vertex @p i, when there is such a vertex.
    void setPos(int i, QPointF position);
    void setPos(int i, double x, double y, double z);
    /// Labels the vertices with numbers; an empty vector clears all labels.
    void setLabels(const QVector<double> &values);
    void resetLabels();
    /// Labels the edges with the numbers of a matrix (row i, column j < i), or clears their labels when not @p on.
    void setELabels(const QVector<QVector<double>> &values, bool on);
    /// Highlights the edges whose number in the matrix (row i, column j < i) is 1, or none when not @p on.
    void setEHilight(const QVector<QVector<double>> &values, bool on);
    /// Colours the vertices by index; an empty vector gives all vertices colour 0.
    void setColors(const QVector<double> &values);
    void resetColors();
    /// Sizes the vertices in proportion to numbers; an empty vector makes all vertices equal.
    void setSizes(const QVector<double> &values);
    void resetSizes();
    /// Highlights vertex @p k alone (none when it is -1) and tells so.
    void hilight(int k);

    // Layout and geometry.

    /// Places the vertices on a circle around the origin.
    void place_circle(double diameter);
    /// Moves the centroid of the vertices to the origin.
    void center();
    /// Centres the vertices and turns them about the x, the y and the z axis, in this order; angles in radians.
    void rotate(double ax, double ay, double az);
    /// Fits x and y into a box of w x h around the origin, each on its own; z becomes 0.
    void scaleCoords(double w, double h);
    /// Fits x, y and z into a box of w x h x d around the origin, each on its own. Nothing in this program calls it.
    void scaleCoords(double w, double h, double d);
    /// Fits the vertices into a cube of side @p s around the origin and keeps their proportions.
    void scaleCoords(double s);
    /// Zooms the view, unless a scene unit would become shorter than 0.07 or longer than 100 pixels.
    void scaleView(double factor);
    /// Starts or stops the spinning of the drawing.
    void toggleAnim();
    /// Starts showing the best graph at intervals, while an optimisation run lasts. Nothing in this program runs one.
    void optimizationStarts();
    /// Stops that, whether or not it was started.
    void optimizationStops();
    /// The sum of the lengths of the current graph's edges in the plane. Takes no lock.
    double sum_edges_length() const;
    /// Exchanges vertices of the current graph, while the items keep their places, until no exchange shortens the
    /// drawing; returns the total edge length.
    double reorganize();
    /// Relabels the current graph at random.
    void relabel();
    /// Moves up to @p k random edges of the current graph, when it has 2 vertices at least. Nothing in this program
    /// calls it: it is a step of an optimisation run.
    void perturb(int k);

    // Editing.

    /// The slot of the vertex that was pressed last. Nothing in this program calls it.
    int getLastClickedNode() const { return lastClickedNode; }
    /// Makes the best graph the current one again: changes that were not published are lost.
    void best_restore();
    /// Records the current graph as the present state of the undo history, in place of all states that were undone.
    void backup();

    // Files and texts. All texts are Latin-1. A file is written completely or not at all. Nothing in this program calls
    // autosave(), autoload(), or the readers and writers of texts except loadg6(QString, bool).

    /// Writes the current vertices, with names and places, and the best graph's edges on them to a graph file; false
    /// when that is not possible.
    bool save(const QString &path) const;
    /// Reads a graph file and publishes its graph. False when the file cannot be read, which a box tells and which
    /// leaves the graph as it was, or when it is no graph file; what was read so far then stays in the current graph.
    bool open(const QString &path);
    /// Writes the graph file of the working directory, if possible.
    void autosave() const;
    /// Reads what autosave() wrote, as open() does; no box tells when the file cannot be read.
    bool autoload();
    /// Writes an edge list of the current graph: the vertex numbers of one edge a line; false when that is not
    /// possible.
    bool export_graph(const QString &path) const;
    /// Reads an edge list and publishes its graph, whose vertices are the labels of the list in sorted order. False
    /// when the file cannot be read, which a box tells and which leaves the graph as it was, or when it has more labels
    /// than there are slots; the current graph is then empty.
    bool import_el(const QString &path);

    /// Reads one line of graph6 into the current graph, which has new vertices then; false when it is not a graph of
    /// 2..31 vertices: the vertices are created then, as far as there are slots, and the rest of the line is left in
    /// the stream. A line ends with \n, \r or both. Bits that are missing from the line are 0.
    bool loadg6(std::istream &in);
    /// Reads a graph6 string of 2..31 vertices into the current graph; false for any other vertex count, which is
    /// taken over all the same. With @p fresh the vertices are created anew and published before the edges are read,
    /// without it the vertex items keep their places. Bits that are missing from the string are 0.
    bool loadg6(const QString &g6, bool fresh);
    /// The graph6 string of the current graph, "0" when it counts more vertices than there are slots.
    QString g6currentGraphData() const;

    /// The best graph as its vertex count, a blank, and a 1 or 0 for each pair of vertices (1, 0), (2, 0), (2, 1), ...
    QString graphData() const;
    /// The current graph in the same form.
    QString currentGraphData() const;
    /// Reads that form into the current graph and makes it the best one. With @p fresh the vertices are created anew,
    /// none is selected and the change is told; without it the vertex items keep their places. A missing pair is 0.
    void loadolm(const QString &text, bool fresh);
    /// Reads that form into the current graph.
    void loadCurrentGraph(const QString &text);

    /// Shows a graph6 string of 2..31 vertices, all of it, on the circle: one step that can be undone. Otherwise a line
    /// tells what is wrong, nothing changes, and the result is false.
    bool showGraph6(const QString &text);

    // Printing and pictures.

    /// What is shown, without marks of the selection.
    Drawing drawing() const;

    /// Draws the current graph into a square of side @p size, in device units, shifted by (@p dx, @p dy), which nothing
    /// in this program asks for. Moves the vertices.
    void print(QPainter *painter, double size, double dx = 0.0, double dy = 0.0);

public slots:
    /// Sets the radius, in scene units, of all vertex items.
    void slot_set_node_radius(double radius);
    /// Places all items at random radii along evenly spaced directions.
    void slot_randomPosition();

    // The usual box is a cube, into which a drawing is fitted with its proportions. @p uniform is ignored.

    /// Fits the drawing into the usual box.
    void slot_rescale(bool uniform);
    /// Sets the side of the usual box, in scene units, and fits the drawing into it.
    void slot_rescale_graph(int size);
    void slot_scale_graph(int size, bool uniform);

    /// Shortens the edges by relabelling, and reports their length.
    void slot_reorganize();
    /// Relabels the current graph at random, and neither counts nor shows that.
    void slot_relabel();

    // The file commands: each asks for a file, carries out the operation and tells when it failed. After a success the
    // file's directory is the working directory.
    void slot_open();
    void slot_save();
    void slot_import_graph();
    void slot_export_graph();
    /// Asks for a file and prints the graph to it, in PDF, on a page of 80 mm x 80 mm.
    void slot_print();

    /// Asks for a file and writes a picture of what is shown, in the format that the suffix tells.
    void slot_export_picture();

    // The clipboard.

    void slot_copy_graph6();
    /// Puts a picture of what is shown into the clipboard, in pixels and as SVG.
    void slot_copy_picture();
    /// Shows the graph6 string that is in the clipboard.
    void slot_paste_graph6();

    // The layouts. Each places the vertices of the current graph so that they fill the view, publishes and shows it,
    // and is in force until another one is chosen. Where one is not possible, a line tells why, and no vertex moves.

    void slot_layout_circle();
    void slot_layout_kamada_kawai();
    void slot_layout_fruchterman_reingold();
    void slot_layout_planar();
    void slot_layout_levels();
    /// To be called when another graph stands on the circle: places it by the layout that is in force.
    void slot_follow_layout();

    // What is written on the vertices, until the best graph changes.

    void slot_show_numbers();
    void slot_show_names();
    /// With sizes.
    void slot_show_degrees();
    /// From the nearest selected vertex, with colours.
    void slot_show_distances();
    void slot_show_nothing();

    // Editing.

    void slot_select_all();
    void slot_unselect_all();
    void slot_invert_selection();
    /// In the edge-drawing mode clicks toggle edges: the first one picks a vertex, the next ones its neighbours.
    void setEdgeEditMode(bool on);
    /// What a double-click on empty space adds.
    void slot_set_add_k() { addMode = NewVertex::Clique; }
    void slot_set_add_bip() { addMode = NewVertex::Bipartite; }
    void slot_set_add_tail() { addMode = NewVertex::Tail; }
    /// Restores the state before the present one, as far as it was recorded.
    void slot_undo();
    /// Restores the state that was undone last.
    void slot_redo();
    /// Counts a change and emits signal_interactive_graph_changed().
    void slot_update();

    // Structural commands. Each one publishes and shows its result and records it for undo.

    /// Adds a vertex at the last mouse position, joins it to the selection and adds it to the selection: repeated, this
    /// builds a clique. Nothing happens when all slots are in use.
    void addK();
    /// The same without a change of the selection: repeated, this builds a complete bipartite graph.
    void addBip();
    /// The same with the new vertex as the only selected one: repeated, this builds a path.
    void addTail();
    /// Joins all pairs of selected vertices.
    void slot_adde();
    /// Separates all pairs of selected vertices.
    void slot_reme();
    /// Separates the selected vertices from the others.
    void slot_remcut();
    /// Adds a vertex at the last mouse position.
    void slot_addv();
    /// Removes the selected vertices; the last vertices move into their slots, with their items.
    void slot_remv();
    /// Joins the selected vertices that are separate and separates those that are joined.
    void slot_complement();
    /// Adds a copy of the graph that the selected vertices induce, and selects it instead of them. Nothing happens when
    /// there are too few slots.
    void slot_duplicate();
    /// The same, with each copy joined to its source.
    void slot_duplicate_link();
    /// The same, with each copy joined to the neighbours of its source.
    void slot_duplicate_twins();
    /// The same, with each copy joined to its source and to the neighbours of its source.
    void slot_duplicate_link_twins();
    /// Joins all pairs of vertices at the largest distance. A disconnected or a complete graph gets a message instead.
    void slot_link_diameter();
    /// Joins one pair of vertices at the largest distance, one of small degrees, under the same conditions.
    void slot_link_one_diameter();

signals:
    // The keys Page Down, Page Up, Home and End: another graph of the list that is browsed is asked for.

    void signal_next_graph();
    void signal_previous_graph();
    void signal_first_graph();
    void signal_last_graph();

    // Of the others this program receives signal_best_graph_changed() alone, in the viewer itself.

    /// The key R: an optimisation run, a variable neighbourhood search, is asked for.
    void signal_start_vns();
    /// The key H: the end of the run is asked for.
    void signal_stop_vns();
    /// Never emitted.
    void coordschanged();
    /// There is a new best graph, from changeBest() or from loadolm() with fresh vertices.
    void signal_best_graph_changed();
    /// Never emitted; @p on would tell the edge-drawing mode.
    void signal_set_edit_mode(bool on);
    /// A line for a console, in @p colour. The bool and the int are left to the receiver to interpret.
    void signal_console(QString text, bool, int, QColor colour);
    /// hilight() has highlighted vertex @p k alone; -1 stands for none.
    void signal_hilight_node(int k);
    /// The key M: a new placement of the vertices is asked for.
    void signal_place_graph();
    /// The space bar: the next graph is asked for.
    void signal_load_next();
    /// A key was pressed, or slot_reorganize(), slot_update() or a slot of the selection was called.
    void signal_interactive_graph_changed();

protected:
    /// Adds the edges of an edge list whose labels are vertex names, and publishes the graph. At a label that names no
    /// vertex the graph is emptied, and the result is false. Writes the vertices of each line, and such a label, to the
    /// standard error stream.
    bool importEdges(const QByteArray &text);

    bool event(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    enum class TextKind {
        GraphFile,
        Autosave, ///< the text of a graph file with the change counter on a line after the vertex count
    };
    /// An angle in radians, 3.14159265 / 64: what one key press or one tick of the timer turns the drawing by.
    static constexpr double rotationStep = 0.04908738515625;
    /// Of the circle that vertices without places of their own stand on, in scene units.
    static constexpr double circleDiameter = 200.0;

    struct MenuEntry;
    struct MenuSwitch;
    using Command = void (Graph::*)();
    enum class NewVertex : int { Clique, Bipartite, Tail };
    enum class Layout { Circle, KamadaKawai, FruchtermanReingold, Planar, Levels };
    enum class Shown { Nothing, Numbers, Names, Degrees, FromSelection };

    static bool isSlot(int i) { return i >= 0 && i < MAX_NODES; }
    /// The number of slots that a vertex count stands for, whatever a reader made of the count.
    static int usedSlots(int count) { return qBound(0, count, MAX_NODES); }
    bool isVertex(int i) const { return i >= 0 && i < usedSlots(nbNodes); }

    void createScene();
    void createItems();
    void countChange();
    void setNbNodes(int count);
    void swapVertices(int i, int j);
    void showBestGraph();
    template<typename Apply> void forEachDisplayedEdge(Apply apply);
    void setEdge(int i, int j, bool joined);
    void setPairs(int count, const std::function<bool(int)> &isJoined);
    QByteArray graphText(TextKind kind) const;
    bool saveText(const QString &path, TextKind kind) const;
    bool readGraph(const QByteArray &text, TextKind kind);
    int vertexNamed(const QString &label) const;
    bool importOnCircle(const QString &path);
    void warnOfNoEdge();
    QString autosavePath() const;
    QString askForFile(const QString &title, const QString &filter, const QStringList &suffixes,
                       Qt::CaseSensitivity letters);
    bool mayReplace(const QString &title, const QString &fileName);
    bool withinMemory(const std::function<bool()> &operation);
    void concludeFileCommand(bool done, const QString &path, const QString &failure);
    void warn(const QString &title, const QString &text);
    void tell(const QString &line);
    bool askForPixels(int &width, bool &transparent);
    void recordPresentState();
    void showDroppedFile(const QString &path);

    QVector<QVector<bool>> currentAdjacency() const;
    QSizeF roomForDrawing() const;
    void choose(Layout chosen);
    bool placeByLayout();
    void placeOnCircle();
    void write(Shown what, const QVector<double> &values);
    void clearWhatIsOutdated();

    QVector<int> verticesAmong(const QList<QGraphicsItem *> &items) const;
    QVector<int> verticesAt(QPointF point) const;
    Node *pressedVertex() const;
    void drawEdgeAt(QPointF point);
    void pressAt(QPointF point, bool alt);
    void joinSelectionTo(int vertex);
    void dragTo(QPointF point);
    void describeVertex(int vertex);
    void refreshInformation();
    void refreshNames();
    void moveView(int key, bool alt);
    void releaseModifiers();
    void restoreFromHistory();
    static QString keyText(Command command);

    void clearEntries(int slot);
    void commit();
    void addJoinedVertex(NewVertex kind);
    QVector<int> selectedVertices(int count) const;
    void fillHole(int slot, int last);
    void duplicate(bool asTwins, bool linked);
    void linkDiametralPairs(bool onlyOne);

    void showMenu(QPoint position);
    QMenu *createMenu();
    void addEntries(QMenu *menu, const QVector<MenuEntry> &entries);
    QAction *addSwitch(QMenu *menu, const MenuSwitch &entry);
    void addModes(QMenu *menu, const QVector<MenuSwitch> &modes);
    MenuSwitch modeOf(const QString &text, bool on, Command command, bool enabled = true);
    static QString withKey(const QString &text, Command command);

    QGraphicsScene *scene = nullptr;
    QVector<Node *> nodes;
    QVector<QVector<Edge *>> edges;
    QVector<QVector<bool>> adjacency;
    QVector<QVector<bool>> bestAdjacency;
    QString name;
    int id = 0;
    int bestId = 0;
    int displayedId = 0;
    int optTimerId = 0;
    int optTimerInterval = 200;
    int rotationTimerId = 0;
    int rotationTimerInterval = 500;
    bool interactive;
    bool violated = false;
    mutable QMutex bestLock;
    mutable QMutex currentLock;
    int nbNodes = 0;
    int bestNbNodes = 0;
    QPoint lastMousePos;
    QString workDir;
    QGraphicsRectItem *selectionRect = nullptr;
    QMenu *shownMenu = nullptr; // the last one that was shown; a child of the view
    QLabel *notice = nullptr;   // the line for the user, while there is one
    Layout layout = Layout::Circle;
    Shown written = Shown::Nothing;
    QString shownGraph; // the graph that it was written for
    double rescaleSize = 300.0;
    bool uniformScale = false; // whether the last fit kept the proportions; nothing depends on it
    NewVertex addMode = NewVertex::Clique;
    bool altHeld = false;
    bool ctrlHeld = false;
    bool rubberBanding = false;
    QPointF pressScenePos;
    bool nodeMoved = false;
    int lastClickedNode = 0;
    QList<Graph *> history;
    int historyIndex = -1;
    bool edgeEditMode = false;
    QTime pressTime;
};

#endif
