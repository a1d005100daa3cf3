#ifndef TAVOLINE_COMPARISON_H
#define TAVOLINE_COMPARISON_H

#include <QStringList>
#include <QVector>

class TAVGraph;

/// The names, in database order, of the records whose invariants are both present with I1 at least I2 (within
/// TOLERANCE).
QStringList namesWhereI1AtLeastI2(const QVector<TAVGraph *> &graphs);

/// The same with I1 at most I2.
QStringList namesWhereI1AtMostI2(const QVector<TAVGraph *> &graphs);

#endif
