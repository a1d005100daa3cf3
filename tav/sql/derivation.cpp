#include "derivation.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{
/// What is computed of the values of the neighbours of a graph, at once or in two steps.
struct Aggregate {
    QString whole;   ///< of the values v in the rows with places pos
    QString columns; ///< of the table of parts
    QString part;    ///< the columns of a part
    QString ofParts; ///< of the parts
};

QString extremum(const char *function, const QString &value, const QString &place, const QString &first,
                 const Dialect &dialect)
{
    return QStringLiteral("CASE WHEN isnan(min_by(%1, %2)) THEN %3 ELSE %4 END")
        .arg(first, place, dialect.nan(), QString(QLatin1String(function)).arg(value));
}

/// For both engines NaN is greater than every number and equal to itself. Here it has to be the result when the first
/// neighbour has it, and else to be passed over.
Aggregate aggregateOf(const Derivation &derivation, bool isOrdinary, const Dialect &dialect)
{
    if (derivation.function == Derivation::Average) {
        return {QStringLiteral("sum(v) / count(*)"), QStringLiteral("v DOUBLE, n BIGINT"),
                QStringLiteral("sum(v), count(*)"), QStringLiteral("sum(v) / sum(n)")};
    }
    const bool isMinimum = derivation.function == Derivation::Minimum;
    if (isOrdinary) {
        const QString best = isMinimum ? QStringLiteral("min(v)") : QStringLiteral("max(v)");
        return {best, QStringLiteral("v DOUBLE"), best, best};
    }
    const char *best = isMinimum ? "min(%1)" : "max(%1) FILTER (WHERE NOT isnan(%1))";
    const QString v = QStringLiteral("v");
    const QString pos = QStringLiteral("pos");
    const QString whole = extremum(best, v, pos, v, dialect);
    return {whole, QStringLiteral("v DOUBLE, pos BIGINT, front DOUBLE"),
            QString(QLatin1String(best)).arg(v) + QStringLiteral(", min(pos), min_by(v, pos)"),
            extremum(best, v, pos, QStringLiteral("front"), dialect)};
}

class DerivationWriter
{
public:
    DerivationWriter(const Writing &use, const Derivation &what, QString sourceTable, bool isOrdinary,
                     QString targetTable)
        : writing(use)
        , derivation(what)
        , source(std::move(sourceTable))
        , target(std::move(targetTable))
        , hasPlaces(!isOrdinary && what.function != Derivation::Average)
        , isRegular(use.manifest.isRegular)
        , aggregate(aggregateOf(what, isOrdinary, use.dialect))
    {
    }

    void write()
    {
        const std::vector<Slice> all = writing.slicesOfAll();
        if (all.size() == 1) {
            QStringList pairs;
            if (derivation.overSubs) {
                pairs.append(pairsBelow(all.front()));
            }
            if (derivation.overSupers) {
                pairs.append(pairsAbove(all.front()));
            }
            writing.add(writing.dialect.createTableAs(target) + valuesOf(pairs));
            return;
        }
        writing.add(writing.dialect.createTable(target, QStringLiteral("id BIGINT, lvl SMALLINT, v DOUBLE")));
        if (!derivation.overSupers) {
            insertFromBelow(isRegular ? writing.slicesFrom(1) : all);
        } else if (!isRegular) {
            insertInParts(derivation.overSubs ? all : std::vector<Slice>(), all);
        } else if (derivation.overSubs) {
            for (int level = 0; level <= writing.topLevel(); ++level) {
                const bool isTop = level == writing.topLevel();
                insert(level > 0 ? writing.slicesOf(level) : std::vector<Slice>(),
                       isTop ? std::vector<Slice>() : writing.slicesOf(level + 1));
            }
        } else {
            insertFromAbove(writing.slicesFrom(1));
        }
    }

private:
    QString key() const { return isRegular ? QStringLiteral("id, lvl") : QStringLiteral("id"); }

    /// The rows of graphs in a slice and their sub-graphs' values.
    QString pairsBelow(const Slice &slice) const
    {
        const QString subs = QStringLiteral("subs");
        const QString links =
            QStringLiteral("SELECT id, lvl, %1 FROM graph%2")
                .arg(hasPlaces ? writing.dialect.elementsAndPlaces(subs) : writing.dialect.elements(subs),
                     where(conditionsFor(slice)));
        const QString values =
            isRegular && slice.hasLevels
                ? QStringLiteral("(SELECT id, v FROM %1%2)").arg(source, where(conditionsFor(slice, {}, -1, false)))
                : source;
        return QStringLiteral("SELECT g.id%1, i.v%2\nFROM (%3) g\nJOIN %4 i ON i.id = g.s")
            .arg(isRegular ? QStringLiteral(", g.lvl") : QString(),
                 hasPlaces ? QStringLiteral(", CAST(g.pos AS BIGINT) AS pos") : QString(), links, values);
    }

    /// The rows of the sub-graphs of graphs in a slice and these graphs' values.
    QString pairsAbove(const Slice &slice) const
    {
        // The places behind those of all sub-graphs.
        const QString place = hasPlaces ? QStringLiteral(", 4294967296 + g.id AS pos") : QString();
        const QString level = isRegular ? QStringLiteral(", g.lvl - 1 AS lvl") : QString();
        const QString links =
            QStringLiteral("SELECT i.v, %1%2%3 FROM graph g JOIN %4 i ON i.id = g.id%5")
                .arg(writing.dialect.elements(QStringLiteral("g.subs")), level, place, source,
                     where(conditionsFor(slice, QStringLiteral("g.")) + conditionsFor(slice, QStringLiteral("i."))));
        return QStringLiteral("SELECT s AS id%1, v%2\nFROM (%3) e")
            .arg(isRegular ? QStringLiteral(", lvl") : QString(), hasPlaces ? QStringLiteral(", pos") : QString(),
                 links);
    }

    /// The rows of the target, of the aggregates in a query that is grouped by the key.
    QString rowsOf(const QString &expression, const QString &rows) const
    {
        const QString values = QStringLiteral("SELECT %1, %2 AS v\nFROM %3\nGROUP BY %1").arg(key(), expression, rows);
        return isRegular ? values
                         : QStringLiteral("SELECT a.id, g.lvl, a.v\nFROM %1\nJOIN graph g ON g.id = a.id")
                               .arg(nested(values, QStringLiteral("a")));
    }

    QString valuesOf(const QStringList &pairs) const
    {
        return rowsOf(aggregate.whole, nested(pairs.join(QStringLiteral("\nUNION ALL\n")), QStringLiteral("n")));
    }

    void insertValues(const QStringList &pairs) const
    {
        writing.add(QStringLiteral("INSERT INTO %1\n").arg(target) + valuesOf(pairs));
    }

    void insertFromBelow(const std::vector<Slice> &slices) const
    {
        for (const Slice &slice : slices) {
            insertValues({pairsBelow(slice)});
        }
    }

    /// A level that is not in one slice makes its values of parts.
    void insertFromAbove(const std::vector<Slice> &slices) const
    {
        for (auto slice = slices.begin(); slice != slices.end();) {
            const auto end = std::find_if(std::next(slice), slices.end(),
                                          [&](const Slice &other) { return other.lowest != slice->lowest; });
            insert({}, {slice, end});
            slice = end;
        }
    }

    /// Inserts the values that come from the neighbours below the graphs in some slices, and from those above, in
    /// others.
    void insert(const std::vector<Slice> &below, const std::vector<Slice> &above) const
    {
        if (below.size() > 1 || above.size() > 1) {
            insertInParts(below, above);
            return;
        }
        if (below.empty() && above.empty()) {
            return; // on the only level nothing has a neighbour
        }
        QStringList pairs;
        for (const Slice &slice : below) {
            pairs.append(pairsBelow(slice));
        }
        for (const Slice &slice : above) {
            pairs.append(pairsAbove(slice));
        }
        insertValues(pairs);
    }

    void insertInParts(const std::vector<Slice> &below, const std::vector<Slice> &above) const
    {
        const QString columns = isRegular ? QStringLiteral("id BIGINT, lvl SMALLINT, ") : QStringLiteral("id BIGINT, ");
        writing.add(writing.dialect.createTable(QStringLiteral("part"), columns + aggregate.columns));
        for (const Slice &slice : below) {
            insertPart(pairsBelow(slice));
        }
        for (const Slice &slice : above) {
            insertPart(pairsAbove(slice));
        }
        writing.add(QStringLiteral("INSERT INTO %1\n").arg(target) + rowsOf(aggregate.ofParts, QStringLiteral("part")));
        writing.add(QStringLiteral("DROP TABLE part"));
    }

    void insertPart(const QString &pairs) const
    {
        writing.add(QStringLiteral("INSERT INTO part\nSELECT %1, %2\nFROM %3\nGROUP BY %1")
                        .arg(key(), aggregate.part, nested(pairs, QStringLiteral("n"))));
    }

    const Writing &writing;
    Derivation derivation;
    QString source;
    QString target;
    bool hasPlaces;
    bool isRegular;
    Aggregate aggregate;
};
} // namespace

void writeDerivation(const Writing &writing, const Derivation &derivation, const QString &source, bool isOrdinary,
                     const QString &target)
{
    DerivationWriter(writing, derivation, source, isOrdinary, target).write();
}
