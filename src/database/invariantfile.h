#ifndef TAVOLINE_INVARIANTFILE_H
#define TAVOLINE_INVARIANTFILE_H

#include <QString>
#include <QVector>

class OutputFile;
class QIODevice;
class TAVGraph;

/// How the reading of an invariant file ended.
enum class InvariantOutcome {
    Complete, ///< every record got its value
    TooShort, ///< the file has fewer lines than there are records
    TooFewFields,
    OtherName,  ///< a line names another graph than the record whose turn it is
    Unreadable, ///< a read error, or a line that is too long
};

struct InvariantReading {
    InvariantOutcome outcome = InvariantOutcome::Complete;
    QString expectedName; ///< for OtherName
    QString foundName;
};

/// Reads an invariant file: a header line, then a line for each record of @p graphs, in their order. @p set gives the
/// value to the record. Lines behind the last record are not read. On any outcome but Complete the records of the lines
/// before the fault keep their new values.
InvariantReading readInvariantFile(QIODevice &file, const QVector<TAVGraph *> &graphs,
                                   void (TAVGraph::*set)(double value, bool missing));

/// Writes an invariant file of I1.
void writeInvariantFile(const QVector<TAVGraph *> &graphs, OutputFile &file);

/// Writes the names of the records, one a line.
void writeNameFile(const QVector<TAVGraph *> &graphs, OutputFile &file);

#endif
