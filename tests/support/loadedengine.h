// An engine with a small database.
#ifndef TAVOLINE_TESTS_LOADEDENGINE_H
#define TAVOLINE_TESTS_LOADEDENGINE_H

#include "TAVgraph.h"
#include "TAVsearchengine.h"
#include "testfiles.h"

#include <QVector>

#include <optional>

/// An invariant of some records; no value is "missing".
using Values = QVector<std::optional<double>>;

/// An engine with a small database, and a directory of its own for files.
class LoadedEngine
{
public:
    /// Loads the text of a database file.
    explicit LoadedEngine(const QByteArray &database)
    {
        engine.setFilename(write("database.tav", database));
        engine.run();
    }
    ~LoadedEngine() { engine.eraseDatabase(); }
    LoadedEngine(const LoadedEngine &) = delete;
    LoadedEngine &operator=(const LoadedEngine &) = delete;

    QString path(const char *name) const { return folder.path(name); }
    QString write(const char *name, const QByteArray &bytes) const { return folder.write(name, bytes); }

    TAVGraph &graph(int position) const { return *engine.records().at(position); }

    /// Sets I1 or I2 of the records in order.
    void setInv1(const Values &values) { setAll(values, &TAVGraph::setInv1); }
    void setInv2(const Values &values) { setAll(values, &TAVGraph::setInv2); }

    /// I1 or I2 of all records in words, "NA" when missing.
    QString inv1() const { return describe(&TAVGraph::getInv1, &TAVGraph::getErrInv1); }
    QString inv2() const { return describe(&TAVGraph::getInv2, &TAVGraph::getErrInv2); }

    TAVSearchEngine engine;

private:
    void setAll(const Values &values, void (TAVGraph::*set)(double, bool))
    {
        int position = 0;
        for (const std::optional<double> &value : values) {
            (graph(position++).*set)(value.value_or(0.0), !value);
        }
    }

    QString describe(double (TAVGraph::*value)() const, bool (TAVGraph::*missing)() const) const
    {
        QStringList words;
        for (const TAVGraph *record : engine.records()) {
            words.append((record->*missing)() ? QStringLiteral("NA") : QString::number((record->*value)(), 'g', 12));
        }
        return words.join(QLatin1Char(' '));
    }

    TestFolder folder;
};

#endif
