// Lists of graphs by their values and those of all graphs below or above them.
//
// A walk is one statement for each level. The table walk gets, for each graph, its I2, v, and the smallest and the
// largest I2 of all graphs that it has in sight, lo and hi; a graph whose I2 is missing or NaN passes nothing on. The
// words are explained in neighbourwalk.cpp.

#include "selection.h"

#include <utility>

namespace
{
/// Behind the tables i (of I1) and m, in which lo and hi are the range of the I2 in sight.
QString testOf(Match match)
{
    switch (match) {
    case Match::Equal:
        return QStringLiteral("abs(m.lo - i.v) < 1e-8 AND abs(m.hi - i.v) < 1e-8");
    case Match::AtLeast:
        return QStringLiteral("m.lo >= i.v - 1e-8");
    case Match::AtMost:
        return QStringLiteral("i.v + 1e-8 >= m.hi");
    case Match::Above:
        return QStringLiteral("i.v - 1e-8 > m.hi");
    case Match::Below:
        return QStringLiteral("m.lo > i.v + 1e-8");
    }
    return {};
}

/// Makes the list of the graphs whose ids a query finds, each once.
void makeList(const Writing &writing, const QString &list, const QString &ids)
{
    writing.add(writing.dialect.createTableAs(list) +
                QStringLiteral("SELECT g.id AS pos, g.name\nFROM graph g\nJOIN %1 ON f.id = g.id")
                    .arg(nested(ids, QStringLiteral("f"))));
}

/// The table of ids into which several statements put what they find.
void makeFound(const Writing &writing)
{
    writing.add(writing.dialect.createTable(QStringLiteral("found"), QStringLiteral("id BIGINT")));
}

void insertFound(const Writing &writing, const QString &query)
{
    writing.add(QStringLiteral("INSERT INTO found\n") + query);
}

void makeListOfFound(const Writing &writing, const QString &list)
{
    makeList(writing, list, QStringLiteral("SELECT DISTINCT id FROM found"));
    writing.add(QStringLiteral("DROP TABLE found"));
}

/// The walks from all graphs, or those around barriers: for each x in the table barrier, those from graphs with that
/// I1, without the graphs that are barriers for it.
class WalkWriter
{
public:
    WalkWriter(const Writing &use, ComparedTables compared, Neighbours direction, Match test, bool aroundBarriers)
        : writing(use)
        , tables(std::move(compared))
        , isDown(direction == Neighbours::Sub)
        , match(test)
        , isBarred(aroundBarriers)
    {
        for (const char *end : {"lo", "hi"}) {
            const bool isLow = qstrcmp(end, "lo") == 0;
            const bool isNeeded = match == Match::Equal || (match == Match::AtLeast || match == Match::Below) == isLow;
            if (isNeeded) {
                ends.append(QLatin1String(end));
            }
        }
    }

    /// Whether the graphs at the end of the ways are so many that they are listed without being stored.
    bool isLastDirect() const { return isDown && writing.isLarge(writing.topLevel()); }

    /// Fills the table walk.
    void fill() const
    {
        QString columns = isBarred ? QStringLiteral("x DOUBLE, ") : QString();
        columns += QStringLiteral("id BIGINT, lvl SMALLINT, v DOUBLE");
        for (const QString &end : ends) {
            columns += QStringLiteral(", %1 DOUBLE").arg(end);
        }
        writing.add(writing.dialect.createTable(QStringLiteral("walk"), columns));
        const int top = writing.topLevel();
        for (int step = 0; step <= top; ++step) {
            const int level = isDown ? step : top - step;
            if (isDown ? level < top || !isLastDirect() : level < top || !isFirstDirect()) {
                fillLevel(level);
            }
        }
    }

    /// The query for the ids of the graphs in the table walk that are to be listed.
    QString listed() const
    {
        return QStringLiteral("SELECT m.id\nFROM walk m\nJOIN %1 i ON i.id = m.id AND i.lvl = m.lvl%2\n"
                              "WHERE NOT isnan(i.v) AND %3")
            .arg(tables.inv1, ownBarriers(), testOf(match));
    }

    /// Puts those at the end of the ways into the table found.
    void findLast() const
    {
        const int top = writing.topLevel();
        for (const Slice &slice : writing.slicesOf(top)) {
            insertFound(writing, QStringLiteral("SELECT m.id\nFROM %1\nJOIN %2 i ON i.id = m.id%3\n"
                                                "WHERE %4 AND NOT isnan(i.v) AND %5")
                                     .arg(nested(met(withOwn({waysDown(top, slice)}, top, slice)), QStringLiteral("m")),
                                          tables.inv1, ownBarriers(),
                                          conditionsFor(slice, QStringLiteral("i.")).join(QStringLiteral(" AND ")),
                                          testOf(match)));
        }
    }

private:
    /// Whether the graphs at the beginning of the ways are so many that their I2 is not stored once more.
    bool isFirstDirect() const
    {
        return !isBarred && !isDown && writing.manifest.isRegular && writing.isLarge(writing.topLevel());
    }

    /// The condition for the walks that begin at a graph.
    QString ownBarriers() const { return isBarred ? QStringLiteral(" AND i.v = m.x") : QString(); }

    QString keys(const QString &xAlias, const QString &idAlias) const
    {
        return (isBarred ? xAlias + QStringLiteral("x, ") : QString()) + idAlias + QStringLiteral("id");
    }

    /// Both ends, as @p pattern says for %1, for another list of columns.
    QString eachEnd(const QString &pattern) const
    {
        QString text;
        for (const QString &end : ends) {
            text += QString(pattern).replace(QLatin1String("%1"), end);
        }
        return text;
    }

    /// "least(w.v, w.lo) AS lo" or the same for the other end.
    QString passed() const
    {
        QString text;
        for (const QString &end : ends) {
            text += QStringLiteral(", %1(w.v, w.%2) AS %2")
                        .arg(end == QLatin1String("lo") ? QStringLiteral("least") : QStringLiteral("greatest"), end);
        }
        return text;
    }

    /// The I2 of the graphs in a slice, as v.
    QString own(const Slice &slice) const
    {
        if (isBarred) {
            return QStringLiteral("SELECT b.x, y.id, y.v FROM %1 y CROSS JOIN barrier b%2")
                .arg(tables.inv2,
                     where(conditionsFor(slice, QStringLiteral("y.")) +
                           QStringList{QStringLiteral("NOT isnan(y.v)"), QStringLiteral("abs(y.v - b.x) <> 1e-8")}));
        }
        return QStringLiteral("SELECT id, v FROM %1%2")
            .arg(tables.inv2, where(conditionsFor(slice) + QStringList{QStringLiteral("NOT isnan(v)")}));
    }

    /// What graphs in a slice of a level get from those below them.
    QString waysDown(int level, const Slice &slice) const
    {
        const QString from = writing.manifest.isRegular ? QStringLiteral("lvl = %1").arg(level - 1)
                                                        : QStringLiteral("lvl < %1").arg(level);
        const QString neighbours = QStringLiteral("SELECT %1, v%2 FROM walk WHERE %3 AND v IS NOT NULL")
                                       .arg(keys({}, {}), eachEnd(QStringLiteral(", %1")), from);
        return QStringLiteral("SELECT %1%2\nFROM (SELECT id, %3 FROM graph%4) g\nJOIN (%5) w ON w.id = g.s")
            .arg(keys(QStringLiteral("w."), QStringLiteral("g.")), passed(),
                 writing.dialect.elements(QStringLiteral("subs")), where(conditionsFor(slice)), neighbours);
    }

    /// What graphs of a level get from those in a slice above them.
    QString waysUp(int level, const Slice &slice) const
    {
        const bool isRegular = writing.manifest.isRegular;
        const bool isDirect = isFirstDirect() && level + 1 == writing.topLevel();
        QStringList conditions =
            conditionsFor(slice, QStringLiteral("g.")) + conditionsFor(slice, QStringLiteral("w."));
        if (!isRegular) {
            conditions += {QStringLiteral("g.lvl > %1").arg(level), QStringLiteral("w.lvl > %1").arg(level)};
        }
        conditions.append(isDirect ? QStringLiteral("NOT isnan(w.v)") : QStringLiteral("w.v IS NOT NULL"));
        const QString links =
            QStringLiteral("SELECT %1%2%3\nFROM graph g JOIN %4 w ON w.id = g.id\nWHERE %5")
                .arg(isBarred ? QStringLiteral("w.x, ") : QString(), writing.dialect.elements(QStringLiteral("g.subs")),
                     isDirect ? eachEnd(QStringLiteral(", w.v AS %1")) : passed(),
                     isDirect ? tables.inv2 : QStringLiteral("walk"), conditions.join(QStringLiteral(" AND ")));
        const QString target =
            isRegular ? QString() : QStringLiteral("\nJOIN graph t ON t.id = e.s\nWHERE t.lvl = %1").arg(level);
        return QStringLiteral("SELECT %1e.s AS id%2\nFROM %3%4")
            .arg(isBarred ? QStringLiteral("e.x, ") : QString(), eachEnd(QStringLiteral(", e.%1")),
                 nested(links, QStringLiteral("e")), target);
    }

    /// What graphs in a slice of a level get by links to themselves.
    QString waysToThemselves(int level, const Slice &slice) const
    {
        return QStringLiteral("SELECT %1%2\nFROM graph g\nJOIN (%3) y ON y.id = g.id\nWHERE g.lvl = %4 AND g.self")
            .arg(keys(QStringLiteral("y."), QStringLiteral("g.")), eachEnd(QStringLiteral(", y.v AS %1")), own(slice))
            .arg(level);
    }

    /// With what graphs in a slice of a level get by links to themselves.
    QStringList withOwn(QStringList ways, int level, const Slice &slice) const
    {
        if (writing.manifest.hasLoops) {
            ways.append(waysToThemselves(level, slice));
        }
        return ways;
    }

    /// The range of all that a graph gets.
    QString met(const QStringList &ways) const
    {
        const QString rows = nested(ways.join(QStringLiteral("\nUNION ALL\n")), QStringLiteral("n"));
        QString columns = keys({}, {});
        for (const QString &end : ends) {
            columns += QStringLiteral(", %1(%2) AS %2")
                           .arg(end == QLatin1String("lo") ? QStringLiteral("min") : QStringLiteral("max"), end);
        }
        return QStringLiteral("SELECT %1\nFROM %2\nGROUP BY %3").arg(columns, rows, keys({}, {}));
    }

    std::vector<Slice> slicesOf(int level) const
    {
        return isBarred ? std::vector<Slice>{{true, level, level, false, 0, 0}} : writing.slicesOf(level);
    }

    void fillLevel(int level) const
    {
        if (isDown) {
            for (const Slice &slice : slicesOf(level)) {
                insert(level, slice, level > 0 ? QStringList{waysDown(level, slice)} : QStringList());
            }
            return;
        }
        const Slice whole{true, level, level, false, 0, 0};
        std::vector<Slice> above;
        if (level < writing.topLevel()) {
            above = writing.manifest.isRegular ? slicesOf(level + 1)
                    : isBarred                 ? std::vector<Slice>{{}}
                                               : writing.slicesOfAll();
        }
        if (above.size() < 2) {
            QStringList ways;
            for (const Slice &slice : above) {
                ways.append(waysUp(level, slice));
            }
            insert(level, whole, ways);
            return;
        }
        writing.add(writing.dialect.createTable(QStringLiteral("part"),
                                                QStringLiteral("id BIGINT") + eachEnd(QStringLiteral(", %1 DOUBLE"))));
        for (const Slice &slice : above) {
            writing.add(QStringLiteral("INSERT INTO part\n") + met({waysUp(level, slice)}));
        }
        insert(level, whole, {QStringLiteral("SELECT id%1 FROM part").arg(eachEnd(QStringLiteral(", %1")))});
        writing.add(QStringLiteral("DROP TABLE part"));
    }

    /// Inserts the graphs in a slice of a level, which get their ranges on some ways.
    void insert(int level, const Slice &slice, QStringList ways) const
    {
        ways = withOwn(ways, level, slice);
        if (ways.isEmpty()) {
            writing.add(QStringLiteral("INSERT INTO walk\nSELECT %1, %2, y.v%3\nFROM (%4) y")
                            .arg(keys(QStringLiteral("y."), QStringLiteral("y.")), QString::number(level),
                                 eachEnd(QStringLiteral(", NULL")), own(slice)));
            return;
        }
        const QString keysOfBoth =
            (isBarred ? QStringLiteral("coalesce(m.x, y.x), ") : QString()) + QStringLiteral("coalesce(m.id, y.id)");
        writing.add(QStringLiteral("INSERT INTO walk\nSELECT %1, %2, y.v%3\nFROM %4\nFULL JOIN (%5) y ON %6y.id = m.id")
                        .arg(keysOfBoth, QString::number(level), eachEnd(QStringLiteral(", m.%1")),
                             nested(met(ways), QStringLiteral("m")), own(slice),
                             isBarred ? QStringLiteral("y.x = m.x AND ") : QString()));
    }

    const Writing &writing;
    ComparedTables tables;
    bool isDown;
    Match match;
    bool isBarred;
    QStringList ends; // of the range: those that the test needs
};

/// The x for which there are barriers, as few as there are. An x of 2^-24 or more has none, nor has it an I2 of 2^-23
/// or more: see barriers.cpp.
QString barriers(const ComparedTables &tables)
{
    return QStringLiteral("SELECT DISTINCT x.v AS x\n"
                          "FROM (SELECT DISTINCT v FROM %1 WHERE abs(v) < 5.9604644775390625e-8) x\n"
                          "CROSS JOIN (SELECT DISTINCT v FROM %2 WHERE abs(v) < 1.1920928955078125e-7) y\n"
                          "WHERE abs(y.v - x.v) = 1e-8")
        .arg(tables.inv1, tables.inv2);
}
} // namespace

void writeComparison(const Writing &writing, const ComparedTables &tables, bool isAtLeast, const QString &list)
{
    const auto query = [&](const Slice &slice) {
        QStringList conditions =
            conditionsFor(slice, QStringLiteral("i.")) + conditionsFor(slice, QStringLiteral("y."));
        conditions += {QStringLiteral("NOT isnan(i.v)"), QStringLiteral("NOT isnan(y.v)"),
                       isAtLeast ? QStringLiteral("i.v >= y.v - 1e-8") : QStringLiteral("y.v + 1e-8 >= i.v")};
        return QStringLiteral("SELECT i.id\nFROM %1 i\nJOIN %2 y ON y.id = i.id\nWHERE %3")
            .arg(tables.inv1, tables.inv2, conditions.join(QStringLiteral(" AND ")));
    };
    const std::vector<Slice> slices = writing.slicesOfAll();
    if (slices.size() == 1) {
        makeList(writing, list, query(slices.front()));
        return;
    }
    makeFound(writing);
    for (const Slice &slice : slices) {
        insertFound(writing, query(slice));
    }
    makeListOfFound(writing, list);
}

void writeWalk(const Writing &writing, const ComparedTables &tables, Neighbours neighbours, Match match,
               const QString &list)
{
    const bool hasBarriers = match == Match::Equal && tables.canHaveBarriers;
    const WalkWriter walk(writing, tables, neighbours, match, false);
    walk.fill();
    if (!hasBarriers && !walk.isLastDirect()) {
        makeList(writing, list, walk.listed());
        writing.add(QStringLiteral("DROP TABLE walk"));
        return;
    }
    makeFound(writing);
    insertFound(writing, walk.listed());
    if (walk.isLastDirect()) {
        walk.findLast();
    }
    writing.add(QStringLiteral("DROP TABLE walk"));
    if (hasBarriers) {
        writing.add(writing.dialect.createTableAs(QStringLiteral("barrier")) + barriers(tables));
        const WalkWriter aroundBarriers(writing, tables, neighbours, match, true);
        aroundBarriers.fill();
        insertFound(writing, aroundBarriers.listed());
        if (aroundBarriers.isLastDirect()) {
            aroundBarriers.findLast();
        }
        writing.add(QStringLiteral("DROP TABLE walk"));
        writing.add(QStringLiteral("DROP TABLE barrier"));
    }
    makeListOfFound(writing, list);
}
