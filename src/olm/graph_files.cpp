#include "graph.h"
#include "graph6.h"
#include "node.h"
#include "numbertext.h"
#include "outputfile.h"
#include "random.h"
#include "shortened.h"
#include "textfile.h"

#include <QByteArray>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QMutexLocker>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <new>
#include <set>
#include <string>
#include <utility>

namespace
{
int toInt(QLatin1String field)
{
    return QString(field).toInt();
}

/// The coordinate that a field holds; 0 for infinity and NaN, where QGraphicsScene cannot place an item.
double toCoordinate(QLatin1String field)
{
    const double value = QString(field).toDouble();
    return std::isfinite(value) ? value : 0.0;
}

/// Reads name and place of the first @p count vertices, a line each; false at the first line that is too short.
bool readVertices(TextParts &lines, const QVector<Node *> &nodes, int count)
{
    for (int i = 0; i < count; ++i) {
        TextParts fields = TextParts::fields(lines.next());
        const QLatin1String name = fields.next();
        const QLatin1String x = fields.next();
        if (fields.atEnd()) {
            return false;
        }
        nodes[i]->setName(name);
        nodes[i]->setPosition(toCoordinate(x), toCoordinate(fields.next()));
        nodes[i]->setSelected(false);
    }
    return true;
}

/// Reads @p count entries of a matrix, each of which is followed by a tab unless it ends the line; false when the line
/// has fewer, or more.
bool readMatrix(QLatin1String line, int count, QVector<bool> &entries)
{
    TextParts fields = TextParts::fields(line);
    for (int k = 0; k < count; ++k) {
        if (fields.atEnd()) {
            return false;
        }
        entries.append(toInt(fields.next()) != 0);
    }
    return count == 0 || (fields.next().isEmpty() && fields.atEnd());
}

/// The two labels of a line of an edge list.
struct Labels {
    QLatin1String first;
    QLatin1String second;
};

/// Takes lines of an edge list up to the first that has two fields or more, the labels; false when there is none.
bool takeLabels(TextParts &lines, Labels &ends)
{
    while (!lines.atEnd()) {
        TextParts fields = TextParts::fields(lines.next());
        ends.first = fields.next();
        if (!fields.atEnd()) {
            ends.second = fields.next();
            return true;
        }
    }
    return false;
}

/// The lines of an edge list, without the empty ones.
struct LineCount {
    int edges = 0;
    int others = 0;
};

LineCount countLines(const QByteArray &text)
{
    LineCount count;
    TextParts lines = TextParts::lines(text);
    while (!lines.atEnd()) {
        const QLatin1String line = lines.next();
        // QLatin1String::contains() takes memory and would end the program without it.
        if (std::find(line.begin(), line.end(), '\t') != line.end()) {
            ++count.edges;
        } else if (!line.isEmpty()) {
            ++count.others;
        }
    }
    return count;
}

/// Whether an edge list can be read and there is nothing in it to import.
bool isWithoutEdges(const QString &path)
{
    QByteArray text;
    return readTextFile(path, text) && countLines(text).edges == 0;
}

bool isGraph6Size(int n)
{
    return n >= 2 && n < Graph::MAX_NODES;
}

/// The rest of a line of the stream, up to @p length characters of it; what is longer is skipped.
std::string restOfLine(std::istream &in, size_t length)
{
    std::string line;
    char character = 0;
    while (in.get(character) && character != '\n' && character != '\r') {
        if (line.size() < length) {
            line.push_back(character);
        }
    }
    if (character == '\r' && in.peek() == '\n') {
        in.get();
    }
    return line;
}

/// A text that is a vertex count, a blank, and one character a pair.
struct CountAndBits {
    explicit CountAndBits(const QString &data)
    {
        const QStringList fields = data.split(QLatin1Char(' '));
        count = fields.value(0).toInt();
        bits = fields.value(1);
    }
    bool isJoined(int index) const { return index < bits.size() && bits[index] == QLatin1Char('1'); }

    int count;
    QString bits;
};

/// The text that CountAndBits reads, from isJoined(j, i) for the pairs i < j.
template<typename IsJoined> QString countAndBits(int count, IsJoined isJoined)
{
    QString text = QString::number(count) + QLatin1Char(' ');
    for (int j = 1; j < count; ++j) {
        for (int i = 0; i < j; ++i) {
            text.append(QLatin1Char(isJoined(j, i) ? '1' : '0'));
        }
    }
    return text;
}
} // namespace

/// Goes through the pairs (0, 1), (0, 2), (1, 2), ... of the first @p count slots and joins pair k when isJoined(k),
/// or else separates it.
void Graph::setPairs(int count, const std::function<bool(int)> &isJoined)
{
    int index = 0;
    for (int j = 1; j < usedSlots(count); ++j) {
        for (int i = 0; i < j; ++i) {
            setEdge(i, j, isJoined(index));
            ++index;
        }
    }
}

// Graph files.

/// The text of a graph file; bestLock is held.
QByteArray Graph::graphText(TextKind kind) const
{
    const int n = usedSlots(nbNodes);
    QString text = QString::number(n) + QLatin1Char('\n');
    if (kind == TextKind::Autosave) {
        text += QString::number(id) + QLatin1Char('\n');
    }
    for (int i = 0; i < n; ++i) {
        const QPointF place = nodes[i]->position();
        text += nodes[i]->nodeName() + QLatin1Char('\t') + numberText(place.x()) + QLatin1Char('\t') +
                numberText(place.y()) + QLatin1Char('\n');
    }
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            text += QLatin1String(bestAdjacency[i][j] ? "1\t" : "0\t");
        }
    }
    return text.toLatin1();
}

bool Graph::saveText(const QString &path, TextKind kind) const
{
    const QMutexLocker locker(&bestLock);
    return writeFile(path, [&](OutputFile &device) { device.write(graphText(kind)); }) == WriteResult::Written;
}

bool Graph::readGraph(const QByteArray &text, TextKind kind)
{
    clear();
    best_backup();
    TextParts lines = TextParts::lines(text);
    const int n = toInt(lines.next());
    if (kind == TextKind::Autosave) {
        id = toInt(lines.next());
    } else {
        emit signal_console(QStringLiteral("Graph:%1").arg(n), false, 1, Qt::gray);
        id = olm_rand(1000000);
    }
    for (int i = 0; i < n && addNode(); ++i) {
    }
    {
        const QMutexLocker locker(&bestLock);
        QVector<bool> entries;
        if (nbNodes != n || !readVertices(lines, nodes, n) || !readMatrix(lines.next(), n * n, entries)) {
            std::cerr << "ERROR IN FILE FORMAT" << std::endl;
            return false;
        }
        for (int i = 0; i < n; ++i) {
            for (int j = i + 1; j < n; ++j) {
                setEdge(i, j, entries[i * n + j]);
            }
        }
        countChange();
    }
    changeBest();
    return true;
}

bool Graph::save(const QString &path) const
{
    return saveText(path, TextKind::GraphFile);
}

bool Graph::open(const QString &path)
{
    QByteArray text;
    if (!readTextFile(path, text)) {
        warn(QStringLiteral("Opening"), QStringLiteral("Cannot open graph"));
        return false;
    }
    return readGraph(text, TextKind::GraphFile);
}

QString Graph::autosavePath() const
{
    QString path = workDir;
    if (!path.isEmpty()) {
        path += QLatin1Char('/');
    }
    return path + QStringLiteral(".olmgr");
}

void Graph::autosave() const
{
    saveText(autosavePath(), TextKind::Autosave);
}

bool Graph::autoload()
{
    QByteArray text;
    if (!readTextFile(autosavePath(), text)) {
        return false;
    }
    return readGraph(text, TextKind::Autosave);
}

// Edge lists.

bool Graph::export_graph(const QString &path) const
{
    const QMutexLocker locker(&bestLock);
    QString text;
    for (int i = 0; i < usedSlots(nbNodes); ++i) {
        for (int j = i + 1; j < usedSlots(nbNodes); ++j) {
            if (edge(i, j)) {
                text += QStringLiteral("%1\t%2\n").arg(i).arg(j);
            }
        }
    }
    return writeFile(path, [&](OutputFile &device) { device.write(text.toLatin1()); }) == WriteResult::Written;
}

bool Graph::import_el(const QString &path)
{
    QByteArray text;
    if (!readTextFile(path, text)) {
        warn(QStringLiteral("Opening"), QStringLiteral("Cannot open graph"));
        return false;
    }
    clear();
    best_backup();
    std::set<QLatin1String> labels;
    TextParts lines = TextParts::lines(text);
    for (Labels ends; takeLabels(lines, ends);) {
        labels.insert({ends.first, ends.second});
    }
    const int n = int(labels.size());
    emit signal_console(QStringLiteral("Graph:%1").arg(n), false, 1, Qt::gray);
    id = olm_rand(1000000);
    if (n > MAX_NODES) {
        return false;
    }
    int vertex = 0;
    for (const QLatin1String label : labels) {
        addNode();
        nodes[vertex]->setName(label);
        std::cerr << qPrintable(nodes[vertex]->getName()) << std::endl;
        ++vertex;
    }
    return importEdges(text);
}

bool Graph::importEdges(const QByteArray &text)
{
    QMutexLocker locker(&bestLock);
    TextParts lines = TextParts::lines(text);
    for (Labels ends; takeLabels(lines, ends);) {
        const int a = vertexNamed(ends.first);
        const int b = vertexNamed(ends.second);
        std::cerr << a << " " << b << std::endl;
        for (const auto &[vertex, label] : {std::pair(a, ends.first), std::pair(b, ends.second)}) {
            if (vertex < 0) {
                std::cerr << qPrintable(QString(label)) << std::endl;
            }
        }
        if (a < 0 || b < 0) {
            clear();
            return false;
        }
        addEdge(a, b);
    }
    std::cerr << "Import complete" << std::endl;
    countChange();
    locker.unlock();
    changeBest();
    return true;
}

/// The last vertex of that name, -1 when there is none.
int Graph::vertexNamed(const QString &label) const
{
    for (int vertex = usedSlots(nbNodes) - 1; vertex >= 0; --vertex) {
        if (nodes[vertex]->getName() == label) {
            return vertex;
        }
    }
    return -1;
}

// graph6.

bool Graph::loadg6(std::istream &in)
{
    countChange();
    char size = 0;
    const int n = graph6::valueOf(in.get(size) ? size : '\0');
    setNbNodes(n);
    clear();
    for (int i = 0; i < n; ++i) {
        addNode();
    }
    if (!isGraph6Size(n)) {
        return false;
    }
    const std::string pairs = restOfLine(in, size_t(graph6::pairLength(n)));
    setPairs(n, [&](int pair) { return graph6::isEdge(pairs, pair); });
    return true;
}

bool Graph::loadg6(const QString &g6, bool fresh)
{
    countChange();
    // QChar::toLatin1() makes NUL, which is no size, of what is not Latin-1; QString::toLatin1() makes "?", the size 0.
    const int n = graph6::valueOf(g6.isEmpty() ? '\0' : g6[0].toLatin1());
    setNbNodes(n);
    if (fresh) {
        clear();
        for (int i = 0; i < n; ++i) {
            addNode();
        }
        best_backup();
    }
    if (!isGraph6Size(n)) {
        return false;
    }
    const std::string pairs = g6.mid(1).toLatin1().toStdString();
    setPairs(n, [&](int pair) { return graph6::isEdge(pairs, pair); });
    return true;
}

QString Graph::g6currentGraphData() const
{
    if (nbNodes > MAX_NODES) {
        std::cerr << "Graph too large for g6 format" << std::endl;
        return QStringLiteral("0");
    }
    return QString::fromStdString(graph6::encode(usedSlots(nbNodes), [this](int u, int v) { return edge(u, v); }));
}

bool Graph::showGraph6(const QString &text)
{
    const int n = text.isEmpty() ? 0 : graph6::valueOf(text[0].toLatin1());
    const bool right = isGraph6Size(n) && text.size() == graph6::stringLength(n) &&
                       std::all_of(text.cbegin(), text.cend(),
                                   [](QChar character) { return graph6::isCharacter(character.toLatin1()); });
    if (!right) {
        constexpr int longest = 60;
        tell(tr("This is no graph6 string of 2 to 31 vertices: %1").arg(shortened(text, longest).simplified()));
        return false;
    }
    recordPresentState();
    loadg6(text, true);
    placeOnCircle();
    commit();
    return true;
}

// Count and bits.

QString Graph::graphData() const
{
    const QMutexLocker locker(&bestLock);
    return countAndBits(usedSlots(bestNbNodes), [this](int j, int i) { return bestAdjacency[j][i]; });
}

QString Graph::currentGraphData() const
{
    return countAndBits(usedSlots(nbNodes), [this](int j, int i) { return edge(j, i); });
}

void Graph::loadolm(const QString &text, bool fresh)
{
    countChange();
    const CountAndBits graph(text);
    setNbNodes(graph.count);
    if (fresh) {
        clear();
        best_backup();
        for (int i = 0; i < graph.count && addNode(); ++i) {
        }
        best_backup();
    }
    setPairs(graph.count, [&](int index) { return graph.isJoined(index); });
    best_backup();
    if (fresh) {
        slot_unselect_all();
        emit signal_best_graph_changed();
    }
}

void Graph::loadCurrentGraph(const QString &text)
{
    countChange();
    const CountAndBits graph(text);
    setNbNodes(graph.count);
    setPairs(graph.count, [&](int index) { return graph.isJoined(index); });
}

// The file commands.

void Graph::slot_open()
{
    const QString path =
        QFileDialog::getOpenFileName(this, QStringLiteral("Choose graph to load"), workDir, QStringLiteral("*.golm3"));
    releaseModifiers();
    const bool done = withinMemory([&] { return open(path); });
    update_display();
    concludeFileCommand(done, path, QStringLiteral("Failed to load graph."));
}

void Graph::slot_save()
{
    const QString path = askForFile(QStringLiteral("Save graph as"), QStringLiteral("*.golm3"),
                                    {QStringLiteral("golm3")}, Qt::CaseSensitive);
    releaseModifiers();
    const bool done = withinMemory([&] { return save(path); });
    concludeFileCommand(done, path, QStringLiteral("Failed to save graph."));
}

/// The file to write, with one of the suffixes, which are those of the filters in their order; empty when the dialog
/// was cancelled. @p letters tells whether a suffix in other letters, such as PDF, is one of them. QFileDialog would
/// ask about the name without the suffix before it replaces a file, so that the question is put here.
QString Graph::askForFile(const QString &title, const QString &filter, const QStringList &suffixes,
                          Qt::CaseSensitivity letters)
{
    const bool visible = isVisible();
    QString proposed = workDir;
    for (;;) {
        QString chosenFilter;
        const QString chosen = QFileDialog::getSaveFileName(this, title, proposed, filter, &chosenFilter,
                                                            QFileDialog::DontConfirmOverwrite);
        if (chosen.isEmpty()) {
            return {};
        }
        const int chosenKind = qMax(0, filter.split(QStringLiteral(";;")).indexOf(chosenFilter));
        QString path = chosen;
        if (!suffixes.contains(QFileInfo(chosen).suffix(), letters)) {
            path += QLatin1Char('.') + suffixes[chosenKind];
        }
        const QFileInfo file(path);
        if (!file.exists() || file.isDir() || mayReplace(title, file.fileName())) {
            return path;
        }
        if (visible && !isVisible()) {
            return {}; // The end of the session closed the question.
        }
        proposed = chosen;
    }
}

/// Asks whether a file may be replaced, in the words of QFileDialog.
bool Graph::mayReplace(const QString &title, const QString &fileName)
{
    QMessageBox question(QMessageBox::Warning, title,
                         QFileDialog::tr("%1 already exists.\nDo you want to replace it?").arg(fileName),
                         QMessageBox::Yes | QMessageBox::No, this);
    question.setTextFormat(Qt::PlainText);
    question.setDefaultButton(QMessageBox::No);
    return question.exec() == QMessageBox::Yes;
}

void Graph::slot_import_graph()
{
    const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("Choose graph to import"), workDir,
                                                      QStringLiteral("*.edgelist"));
    releaseModifiers();
    const bool done = withinMemory([&] { return importOnCircle(path); });
    update_display();
    concludeFileCommand(done, path, QStringLiteral("Failed to import graph."));
    if (done && nbNodes == 0 && QFileInfo(path).size() > 0) {
        warnOfNoEdge();
    }
}

/// Imports an edge list, whose vertices import_el() leaves on one point. A line tells what was passed over.
bool Graph::importOnCircle(const QString &path)
{
    QByteArray text;
    if (!import_el(path) || !readTextFile(path, text)) {
        return false;
    }
    placeOnCircle();
    update_display(); // takes the line about the graph before away, which would take the new one, too
    const LineCount count = countLines(text);
    if (count.edges > 0 && count.others > 0) {
        tell(tr("Lines without a tab between two labels, passed over: %1").arg(count.others));
    }
    return true;
}

void Graph::warnOfNoEdge()
{
    warn(QStringLiteral("Warning"),
         tr("There is no edge in this file: a line must hold the labels of two vertices with a tab between them."));
}

void Graph::slot_export_graph()
{
    const QString path =
        QFileDialog::getSaveFileName(this, QStringLiteral("Export graph as"), workDir, QStringLiteral("*.edgelist"));
    releaseModifiers();
    const bool done = withinMemory([&] { return export_graph(path); });
    concludeFileCommand(done, path, QStringLiteral("Failed to export graph."));
}

void Graph::showDroppedFile(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    const bool done = withinMemory([&] {
        if (suffix == QLatin1String("edgelist")) {
            if (isWithoutEdges(path)) {
                warnOfNoEdge();
                return true;
            }
            return importOnCircle(path);
        }
        if (suffix == QLatin1String("golm3")) {
            return open(path);
        }
        QByteArray text;
        const bool readable = readTextFile(path, text);
        if (readable) {
            showGraph6(QString(TextParts::lines(text).next()).trimmed());
        }
        return readable;
    });
    update_display();
    concludeFileCommand(done, path, QStringLiteral("Failed to load graph."));
}

/// Returns what @p operation returns; false, after a warning, when it runs out of memory. Qt ends the program at an
/// exception that nobody catches, with all that is open in it.
bool Graph::withinMemory(const std::function<bool()> &operation)
{
    try {
        return operation();
    } catch (const std::bad_alloc &) {
        warn(QStringLiteral("Warning"), QStringLiteral("Not enough memory."));
        return false;
    }
}

void Graph::concludeFileCommand(bool done, const QString &path, const QString &failure)
{
    if (done) {
        setWD(QFileInfo(path).dir().path());
    } else {
        warn(QStringLiteral("Warning"), failure);
    }
}

void Graph::warn(const QString &title, const QString &text)
{
    QMessageBox::warning(this, title, text);
}
