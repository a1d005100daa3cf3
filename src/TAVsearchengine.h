#ifndef TAVOLINE_TAVSEARCHENGINE_H
#define TAVOLINE_TAVSEARCHENGINE_H

#include <QString>
#include <QStringList>
#include <QThread>
#include <QVector>

class TAVGraph;
struct DatabaseLine;

/// The database: every record, in the order of the file, and the thread that loads the file.
///
/// start() loads the file named by setFilename() on the engine's own thread. Until one of the two end signals of that
/// load has been delivered, or the thread was asked to stop and waited for, no other operation may be called: nothing
/// locks the records. All other operations run in the caller's thread.
class TAVSearchEngine : public QThread
{
    Q_OBJECT

public:
    TAVSearchEngine();
    /// Does not delete the records: the owner calls eraseDatabase() first.
    ~TAVSearchEngine() override;

    /// Stores the path of the database file that the next run() reads.
    void setFilename(const QString &path);

    /// Reads the file, appending its records to the database: reports lines, progress and outcome through the signals
    /// and ends with signal_load_succedded() or signal_load_failed(). A failure leaves the database empty. A thread
    /// that was asked to stop (requestInterruption()) returns without an outcome, its records still there.
    void run() override;

    /// Reads the file @p path in the caller's thread, in pieces of at most 1023 bytes, and returns whether it could be
    /// opened and read and every index was good; a bad index or a read error leaves the database empty.
    bool loadData(const QString &path);

    /// Takes back the traversal mark of every record; says "Database cleared." although it deletes nothing.
    void clear();

    /// Deletes every record.
    void eraseDatabase();

    /// The records in the order of the file.
    const QVector<TAVGraph *> &records() const { return graphs; }

signals:
    void signal_load_failed();
    void signal_load_succedded();
    void signal_progress(int current, int total);
    void signal_console(QString text);

private:
    enum class Outcome { Done, Failed, Interrupted };

    Outcome countLines(qint64 &lineCount);
    Outcome readRecords(qint64 lineCount, qint64 &linkCount);
    bool addRecord(const DatabaseLine &line);
    void rejectFormat();
    void rejectUnreadable(const QString &path);

    QString filename;
    QVector<TAVGraph *> graphs;
    QStringList spareListA;
    QStringList spareListB;
};

#endif
