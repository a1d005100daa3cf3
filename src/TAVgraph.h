#ifndef TAVOLINE_TAVGRAPH_H
#define TAVOLINE_TAVGRAPH_H

#include <QList>
#include <QString>

#include <initializer_list>

/// One graph of the database: its name, its direct sub-graphs and super-graphs, and its two invariants.
///
/// The links are plain pointers to records of the same database; the engine owns every record. A list may hold a
/// record more than once, and a record may be in its own lists: the database file decides.
/// An invariant is missing ("NA") when its flag says so, whatever the number beside the flag is.
class TAVGraph
{
public:
    /// A record without links whose invariants are both missing.
    explicit TAVGraph(QString name);

    void addSub(TAVGraph *graph) { sub.append(graph); }
    void addOver(TAVGraph *graph) { over.append(graph); }
    void setSub(const QList<TAVGraph *> &graphs) { sub = graphs; }
    void setOver(const QList<TAVGraph *> &graphs) { over = graphs; }

    QString getName() const { return name; }
    QList<TAVGraph *> getSub() const { return sub; }
    QList<TAVGraph *> getOver() const { return over; }

    // The same by reference: a copy of a QList changes its reference count, which a walk would do for every record.
    const QList<TAVGraph *> &subGraphs() const { return sub; }
    const QList<TAVGraph *> &superGraphs() const { return over; }

    /// Sets the value of I1 and whether it is missing (@p err true means missing).
    void setInv1(double value, bool err);
    /// Sets the value of I2 and whether it is missing (@p err true means missing).
    void setInv2(double value, bool err);
    double getInv1() const { return inv1; }
    double getInv2() const { return inv2; }
    void setErrInv1(bool err) { errInv1 = err; }
    void setErrInv2(bool err) { errInv2 = err; }
    bool getErrInv1() const { return errInv1; }
    bool getErrInv2() const { return errInv2; }

    /// The record's position in the database; the engine sets it.
    void setPosition(int index) { position = index; }
    int getPosition() const { return position; }

    void setChecked(bool value) { checked = value; }
    bool isChecked() const { return checked; }
    void resetChecked() { checked = false; }

    /// Swaps I1 and I2, missing or not.
    void exch_1_2();
    /// I1 becomes I2, missing or not.
    void I1getsI2();
    /// I2 becomes I1, missing or not.
    void I2getsI1();

    // I2 becomes the mean, the smallest or the largest I1 of the neighbours whose I1 is present: the sub-graphs (Sub),
    // the super-graphs (Over) or both, sub-graphs first (All). A neighbour counts each time that it occurs. With no
    // such neighbour I2 becomes missing and keeps its number.
    void avgSub1();
    void avgOver1();
    void avgAll1();
    void minSub1();
    void minOver1();
    void minAll1();
    void maxSub1();
    void maxOver1();
    void maxAll1();

private:
    using Lists = std::initializer_list<const QList<TAVGraph *> *>;
    void average(Lists lists);
    template<typename Better> void extremum(Lists lists, Better better);

    QList<TAVGraph *> sub;
    QList<TAVGraph *> over;
    QString name;
    bool checked = false;
    double inv1 = 0.0;
    double inv2 = 0.0;
    bool errInv1 = true;
    bool errInv2 = true;
    int position = -1;
};

#endif
