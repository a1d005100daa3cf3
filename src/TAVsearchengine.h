#ifndef TAVOLINE_TAVSEARCHENGINE_H
#define TAVOLINE_TAVSEARCHENGINE_H

#include "TAVgraph.h"
#include "neighbourwalk.h"

#include <QString>
#include <QStringList>
#include <QThread>
#include <QVector>

#include <optional>
#include <vector>

struct DatabaseChunk;
struct DatabaseLine;
struct InvariantReading;
class OutputFile;
class QFile;

/// The database: every record, in the order of the file, and the thread that loads the file.
///
/// start() loads the files named by setFilenames() on the engine's own thread. Until one of the two end signals of that
/// load has been delivered, or the thread was asked to stop and waited for, no other operation may be called: nothing
/// locks the records. All other operations run in the caller's thread.
class TAVSearchEngine : public QThread
{
    Q_OBJECT

public:
    TAVSearchEngine();
    /// Frees the records.
    ~TAVSearchEngine() override;

    /// Stores the path of the database file that the next run() reads.
    void setFilename(const QString &path);
    /// The same for several files, which the next run() reads one behind the other: a database and parts of it.
    void setFilenames(const QStringList &paths);

    /// Reads the files, appending their records to the database: reports lines, progress and outcome through the
    /// signals and ends with signal_load_succedded() or signal_load_failed(). A failure leaves the database empty. A
    /// thread that was asked to stop (requestInterruption()) returns without an outcome, its records still there.
    void run() override;

    /// Reads the file @p path in the caller's thread, in pieces of at most 1023 bytes, and returns whether it could be
    /// opened and read and every index was good; a bad index or a read error leaves the database empty. Nothing in this
    /// program calls it.
    bool loadData(const QString &path);

    /// Takes back the traversal mark of every record; says "Database cleared." although it deletes nothing.
    void clear();

    /// Deletes every record.
    void eraseDatabase();

    // Files. A save is complete or does not happen: it returns false, with what stood in the file untouched, when the
    // database is empty (with a console line) or the file cannot be written.

    /// Writes the names of all graphs, one a line.
    bool saveGraphs(const QString &path);
    /// Writes I1 of all graphs: a header line, then the name, a tab and the value or "NA", one graph a line.
    bool saveInv1(const QString &path);
    /// Reads I1 from a file of that shape, in which the graphs stand in the order of the database. Returns true when
    /// every graph got its value; on a failure, which is told on the console, the graphs read so far keep theirs.
    bool loadInv1(const QString &path);
    /// The same for I2.
    bool loadInv2(const QString &path);

    /// Sets I1 of all graphs, in the order of the database; @p values has as many. An I1 without a value is missing.
    void setInv1(const std::vector<std::optional<double>> &values);
    /// The same for I2.
    void setInv2(const std::vector<std::optional<double>> &values);

    // Closures: the given graphs that are in the database, in its order, then, breadth first, all graphs below or
    // above them.

    QStringList subgraphs(const QStringList &names);
    QStringList overgraphs(const QStringList &names);

    // The operation of the same name on every record.

    void avgSub1();
    void avgOver1();
    void avgAll1();
    void minSub1();
    void minOver1();
    void minAll1();
    void maxSub1();
    void maxOver1();
    void maxAll1();
    void exch_1_2();
    void I1getsI2();
    void I2getsI1();

    // The names, in database order, of the graphs whose invariants are both present with I1 at least, or at most, I2
    // (within TOLERANCE).

    QStringList I1geI2graphs() const;
    QStringList I1leI2graphs() const;

    // The names, in database order, of the graphs that a walk through all sub-graphs or super-graphs lists: see
    // walkNeighbours(). In the ge and le members I2 of the neighbours is at least, or at most, I1 of the graph; in the
    // gt and lt members I1 of the graph is above, or below, I2 of the neighbours.

    QStringList I1eqI2subsgraphs();
    QStringList I1eqI2overgraphs();
    QStringList I1geI2subsgraphs();
    QStringList I1leI2subsgraphs();
    QStringList I1geI2overgraphs();
    QStringList I1leI2overgraphs();
    QStringList I1gtI2subsgraphs();
    QStringList I1ltI2subsgraphs();
    QStringList I1gtI2overgraphs();
    QStringList I1ltI2overgraphs();

    /// Why the last operation that opened, read or wrote a file could not, in the words of the system; empty when it
    /// could, or failed for another reason. Of several files to load, it is the name of the one that failed, with the
    /// reason, whichever that is.
    QString fileFault() const { return fault; }

    /// The records in the order of the file.
    const QVector<TAVGraph *> &records() const { return graphs; }

signals:
    /// run() has failed; the database is empty.
    void signal_load_failed();
    /// run() has read all files whole. The name is spelt so on purpose.
    void signal_load_succedded();
    /// run() is at line @p current of the @p total of a file; every 10 000 lines.
    void signal_progress(int current, int total);
    /// A line of @p text for the console, plain and without its end.
    void signal_console(QString text);

private:
    enum class Outcome { Done, Failed, Interrupted };

    struct FileSize {
        qint64 lines = 0;
        qint64 bytes = 0;
    };

    bool readPieces(QFile &file);
    Outcome readFile(const QString &path, qint64 &linkCount);
    Outcome count(const QString &path, FileSize &size);
    Outcome readRecords(const QString &path, const FileSize &counted, qint64 &linkCount);
    std::optional<qint64> addRecords(DatabaseChunk &chunk);
    bool addRecord(const DatabaseLine &line);
    void reject(const QString &reason);
    void rejectFormat();
    void rejectForMemory();
    void rejectShorter(const FileSize &read, const FileSize &counted);
    void rejectUnreadable(const QFile &file);
    bool openDatabase(QFile &file);

    using SetInvariant = void (TAVGraph::*)(double value, bool missing);
    using DescribeFault = QString (*)(const InvariantReading &reading);
    bool loadInvariant(const QString &path, SetInvariant set, DescribeFault describe);
    void setInvariant(const std::vector<std::optional<double>> &values, SetInvariant set);
    using WriteRecords = void (*)(const QVector<TAVGraph *> &graphs, OutputFile &file);
    bool save(const QString &path, WriteRecords write);
    QStringList closure(const QStringList &names, Neighbours neighbours);
    void forEachGraph(void (TAVGraph::*operation)());
    QStringList walk(Neighbours neighbours, Match match);

    QStringList filenames = {QString()};
    QString fault;     // of a file
    QString rejection; // why a file that could be read is no database
    QVector<TAVGraph *> graphs;
    QStringList spareListA;                     // emptied by clear(); nothing else uses it
    QStringList spareListB;                     // the same
    std::vector<std::vector<TAVGraph>> storage; // the records themselves; none of the inner vectors ever grows anew
};

#endif
