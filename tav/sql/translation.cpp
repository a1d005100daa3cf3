#include "translation.h"

#include "commandline.h"
#include "derivation.h"
#include "inputfile.h"
#include "listfile.h"
#include "selection.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace
{
/// Walks and closures have a statement for each level.
constexpr int mostLevels = 200;
/// A closure of more graphs is not put in order: that is the work of one processor.
constexpr qint64 mostSorted = 50'000'000;
/// A longer list is no text for a statement.
constexpr int mostNames = 100'000;
constexpr int namesAtOnce = 1000;
/// A command has a statement for each slice.
constexpr qint64 mostSlices = 100'000;

/// The values of all graphs, in a table of that name.
struct Values {
    QString table;
    bool areOrdinary = true; ///< as in ValueSource
    bool hasTiny = false;
};
using Invariant = std::shared_ptr<const Values>;

struct List {
    QString name;
    QString table;
    bool isPlain16; ///< whether UTF-16 sorts the names as UTF-8 does
    /// Whether there is a graph in it when the script comes here. A list without graphs is none.
    bool isKnown;
};

struct DerivationCommand {
    const char *name;
    Derivation derivation;
};

constexpr std::array derivationCommands = {
    DerivationCommand{"avg-sub", {Derivation::Average, true, false}},
    DerivationCommand{"avg-super", {Derivation::Average, false, true}},
    DerivationCommand{"avg-all", {Derivation::Average, true, true}},
    DerivationCommand{"min-sub", {Derivation::Minimum, true, false}},
    DerivationCommand{"min-super", {Derivation::Minimum, false, true}},
    DerivationCommand{"min-all", {Derivation::Minimum, true, true}},
    DerivationCommand{"max-sub", {Derivation::Maximum, true, false}},
    DerivationCommand{"max-super", {Derivation::Maximum, false, true}},
    DerivationCommand{"max-all", {Derivation::Maximum, true, true}},
};

struct WalkCommand {
    const char *name;
    Neighbours neighbours;
    Match match;
};

constexpr std::array walkCommands = {
    WalkCommand{"list-eq-subs", Neighbours::Sub, Match::Equal},
    WalkCommand{"list-ge-subs", Neighbours::Sub, Match::AtLeast},
    WalkCommand{"list-le-subs", Neighbours::Sub, Match::AtMost},
    WalkCommand{"list-gt-subs", Neighbours::Sub, Match::Above},
    WalkCommand{"list-lt-subs", Neighbours::Sub, Match::Below},
    WalkCommand{"list-eq-supers", Neighbours::Over, Match::Equal},
    WalkCommand{"list-ge-supers", Neighbours::Over, Match::AtLeast},
    WalkCommand{"list-le-supers", Neighbours::Over, Match::AtMost},
    WalkCommand{"list-gt-supers", Neighbours::Over, Match::Above},
    WalkCommand{"list-lt-supers", Neighbours::Over, Match::Below},
};

template<typename Commands> auto findCommand(const Commands &commands, const char *name)
{
    const auto found =
        std::find_if(commands.begin(), commands.end(), [&](const auto &one) { return qstrcmp(one.name, name) == 0; });
    return found != commands.end() ? &*found : nullptr;
}

/// The command would fail, whatever the values are.
struct Failing {
    QString reason;
};

QStringList partsOf(int count)
{
    QStringList names;
    for (int part = 0; part < count; ++part) {
        names.append(partName(part));
    }
    return names;
}
} // namespace

class Translation::Writer
{
public:
    Writer(QString scriptName, TranslationOptions chosen, std::vector<TableFolder> tableFolders)
        : script(std::move(scriptName))
        , options(chosen)
        , dialect(chosen.engine)
        , folders(std::move(tableFolders))
    {
        text.comment(QStringLiteral("%1 for %2, as 'tav sql' wrote it.").arg(inputName(script), dialect.name()));
        add(QStringLiteral("DROP SCHEMA IF EXISTS tavoline CASCADE"));
        add(QStringLiteral("CREATE SCHEMA tavoline"));
        add(QStringLiteral("USE tavoline"));
        // Who needs a list that is empty ends here.
        add(dialect.createTable(QStringLiteral("needed"), QStringLiteral("line BIGINT, graphs BIGINT")));
    }

    void addRemark(const QString &line)
    {
        if (!line.trimmed().isEmpty()) {
            text.comment(line.trimmed());
        }
    }

    void addStep(const QString &line, const ScriptStep &next)
    {
        step = &next;
        text.blankLine();
        text.comment(QStringLiteral("%1: %2").arg(QString::number(step->line), line.trimmed()));
        try {
            write();
        } catch (const Failing &failing) {
            if (!step->mayFail) {
                throw CommandError(script, step->line,
                                   QStringLiteral("%1 fails: %2").arg(commandName(), failing.reason));
            }
            text.comment(QStringLiteral("fails, and is passed over: %1").arg(failing.reason));
        }
    }

    QByteArray finish()
    {
        if (database != nullptr) {
            text.blankLine();
            text.comment(QStringLiteral("For more questions: the invariants at the end."));
            add(QStringLiteral("CREATE VIEW i1 AS SELECT * FROM %1").arg(inv1->table));
            add(QStringLiteral("CREATE VIEW i2 AS SELECT * FROM %1").arg(inv2->table));
        }
        return text.bytes();
    }

private:
    void add(const QString &statement) { text.statement(statement); }
    void remark(const QString &line) { text.comment(line); }
    QString commandName() const { return QLatin1String(step->command->name); }
    const QString &argument(int place) const { return step->arguments.at(place); }

    [[noreturn]] void refuse(const QString &reason) const
    {
        throw CommandError(script, step->line, QStringLiteral("%1 is not possible: %2").arg(commandName(), reason));
    }

    Writing writing()
    {
        const qint64 graphs = database->manifest.graphs;
        if (graphs / options.graphsAtOnce > mostSlices) {
            refuse(QStringLiteral("with %1 of %2 graphs in a statement, the text would be too long; a larger number "
                                  "for '--slice' would help")
                       .arg(options.graphsAtOnce)
                       .arg(graphs));
        }
        return {dialect, database->manifest, std::min(options.graphsAtOnce, graphs), text};
    }

    void write()
    {
        const char *name = step->command->name;
        if (const DerivationCommand *command = findCommand(derivationCommands, name)) {
            derive(command->derivation);
            return;
        }
        if (const WalkCommand *command = findCommand(walkCommands, name)) {
            expectFewLevels();
            makeListOfDatabase([&](const QString &table) {
                writeWalk(writing(), comparedTables(), command->neighbours, command->match, table);
            });
            return;
        }
        struct OtherCommand {
            const char *name;
            void (Writer::*write)();
        };
        static constexpr std::array commands = {
            OtherCommand{"load", &Writer::load},
            OtherCommand{"clear", &Writer::clear},
            OtherCommand{"save-graphs", &Writer::saveGraphs},
            OtherCommand{"load-i1", &Writer::loadInv1},
            OtherCommand{"load-i2", &Writer::loadInv2},
            OtherCommand{"compute-i1", &Writer::computeInv1},
            OtherCommand{"compute-i2", &Writer::computeInv2},
            OtherCommand{"save-i1", &Writer::saveInv1},
            OtherCommand{"i1-gets-i2", &Writer::inv1GetsInv2},
            OtherCommand{"i2-gets-i1", &Writer::inv2GetsInv1},
            OtherCommand{"exchange", &Writer::exchange},
            OtherCommand{"list-ge", &Writer::listAtLeast},
            OtherCommand{"list-le", &Writer::listAtMost},
            OtherCommand{"supers", &Writer::listSupers},
            OtherCommand{"subs", &Writer::listSubs},
            OtherCommand{"list-from-file", &Writer::listFromFile},
            OtherCommand{"list-from-graphs", &Writer::listFromGraphs},
            OtherCommand{"union", &Writer::listUnion},
            OtherCommand{"intersection", &Writer::listIntersection},
            OtherCommand{"difference", &Writer::listDifference},
            OtherCommand{"remove-list", &Writer::removeList},
            OtherCommand{"save-list", &Writer::saveList},
            OtherCommand{"lists", &Writer::printLists},
            OtherCommand{"show", &Writer::show},
        };
        if (const OtherCommand *command = findCommand(commands, name)) {
            (this->*command->write)();
        } else {
            refuse(QStringLiteral("it has no counterpart in SQL"));
        }
    }

    // The database.

    void load()
    {
        QStringList names;
        for (const QString &path : step->arguments) {
            names.append(fileNameOf(path));
        }
        const auto found = std::find_if(folders.begin(), folders.end(),
                                        [&](const TableFolder &folder) { return folder.manifest.databases == names; });
        if (found == folders.end()) {
            refuse(QStringLiteral("the tables of %1 are not given").arg(quoted(names.join(QLatin1Char(' ')))));
        }
        clear();
        database = &*found;
        loaded.assign(database->manifest.values.size(), {});
        const int parts = database->manifest.parts;
        add(dialect.createTableAs(QStringLiteral("graph")) +
            dialect.graphRows(database->path + QLatin1Char('/') + graphsFolder, partsOf(parts)));
        const Invariant none = newValues({});
        add(dialect.createTable(none->table, QStringLiteral("id BIGINT, lvl SMALLINT, v DOUBLE")));
        inv1 = none;
        inv2 = none;
    }

    void clear()
    {
        if (database == nullptr) {
            return;
        }
        setInvariants(nullptr, nullptr);
        add(QStringLiteral("DROP TABLE graph"));
        database = nullptr;
    }

    void expectDatabase() const
    {
        if (database == nullptr) {
            throw Failing{QStringLiteral("there is no database")};
        }
    }

    void expectFewLevels() const
    {
        if (database != nullptr && int(database->manifest.levels.size()) > mostLevels) {
            refuse(QStringLiteral("with a statement for each of %1 levels, the text would be too long")
                       .arg(database->manifest.levels.size()));
        }
    }

    void saveGraphs()
    {
        expectDatabase();
        save(QStringLiteral("SELECT name FROM graph ORDER BY id"), argument(0));
    }

    void save(const QString &query, const QString &path)
    {
        const QString place = QDir::cleanPath(path);
        const bool isUsed = place.isEmpty() || place == QLatin1String(".") || place == QLatin1String("/") ||
                            place == QLatin1String("..") || place.endsWith(QLatin1String("/.."));
        if (isUsed && options.engine == Engine::Spark) {
            refuse(QStringLiteral("Spark would replace all that is in the folder %1").arg(quoted(path)));
        }
        add(dialect.save(query, path));
    }

    // The invariants. A table of values is never changed: what changes is which one I1 or I2 is.

    Invariant newValues(Values values)
    {
        values.table = QStringLiteral("values_%1").arg(++valuesCount);
        return std::make_shared<const Values>(values);
    }

    /// Sets both, and drops the tables of values that are neither any more.
    void setInvariants(Invariant first, Invariant second)
    {
        const Invariant old1 = std::exchange(inv1, std::move(first));
        const Invariant old2 = std::exchange(inv2, std::move(second));
        dropUnused(old1);
        if (old1 != old2) {
            dropUnused(old2);
        }
        if (inv1) {
            remark(QStringLiteral("I1 is %1, I2 is %2.").arg(inv1->table, inv2->table));
        }
    }

    void dropUnused(const Invariant &values)
    {
        if (values != inv1 && values != inv2) {
            add(QStringLiteral("DROP TABLE %1").arg(values->table));
        }
    }

    /// The values of a source of the database; nothing when there is no such source.
    Invariant valuesOf(QString ValueSource::*key, const QString &name)
    {
        expectDatabase();
        const std::vector<ValueSource> &sources = database->manifest.values;
        const auto source = std::find_if(sources.begin(), sources.end(),
                                         [&](const ValueSource &one) { return one.*key == name && !name.isEmpty(); });
        if (source == sources.end()) {
            refuse(QStringLiteral("the tables in %1 have no values of %2").arg(quoted(database->path), quoted(name)));
        }
        std::weak_ptr<const Values> &known = loaded[source - sources.begin()];
        if (Invariant values = known.lock()) {
            return values;
        }
        Invariant values = newValues({{}, source->areOrdinary, source->hasTiny});
        known = values;
        add(dialect.createTableAs(values->table) +
            dialect.valueRows(database->path + QLatin1Char('/') + source->folder, partsOf(database->manifest.parts)));
        return values;
    }

    Invariant fileValues() { return valuesOf(&ValueSource::file, fileNameOf(argument(0))); }
    Invariant computedValues() { return valuesOf(&ValueSource::expression, argument(0).simplified()); }
    void loadInv1() { setInvariants(fileValues(), inv2); }
    void loadInv2() { setInvariants(inv1, fileValues()); }
    void computeInv1() { setInvariants(computedValues(), inv2); }
    void computeInv2() { setInvariants(inv1, computedValues()); }
    void inv1GetsInv2() { changeInvariants(inv2, inv2); }
    void inv2GetsInv1() { changeInvariants(inv1, inv1); }
    void exchange() { changeInvariants(inv2, inv1); }

    /// Without a database there is nothing to change.
    void changeInvariants(const Invariant &first, const Invariant &second)
    {
        if (database != nullptr) {
            setInvariants(first, second);
        }
    }

    void saveInv1()
    {
        refuse(QStringLiteral("an engine does not write numbers with six digits as the window does; the view i1 holds "
                              "the values"));
    }

    void derive(const Derivation &derivation)
    {
        if (database == nullptr) {
            return;
        }
        // The sum of finite values may be tiny, and that of infinite ones NaN.
        const bool isAverage = derivation.function == Derivation::Average;
        const Invariant values = newValues({{}, inv1->areOrdinary, inv1->hasTiny || isAverage});
        writeDerivation(writing(), derivation, inv1->table, inv1->areOrdinary, values->table);
        setInvariants(inv1, values);
    }

    // The lists: tables of names and their places. Names with the same place stand in alphabetical order.

    List *findList(const QString &name)
    {
        const auto list = std::find_if(lists.begin(), lists.end(), [&](const List &one) { return one.name == name; });
        return list != lists.end() ? &*list : nullptr;
    }

    /// Makes sure that a command may make a list of the name that is its first argument.
    void expectNewName()
    {
        const QString &name = argument(0);
        if (name.isEmpty()) {
            throw Failing{QStringLiteral("the name of a list cannot be empty")};
        }
        if (const List *list = findList(name)) {
            if (list->isKnown) {
                throw Failing{QStringLiteral("there is a list %1 already").arg(quoted(name))};
            }
            refuse(QStringLiteral("whether there is a list %1 already is not known before; '-remove-list' would help")
                       .arg(quoted(name)));
        }
    }

    /// The list that an argument names. Unless the line may fail, the SQL ends here when it is empty.
    List &sourceList(int place)
    {
        const QString &name = argument(place);
        List *list = findList(name);
        const QString missing = QStringLiteral("there is no list %1").arg(quoted(name));
        if (list == nullptr) {
            throw Failing{missing};
        }
        if (!list->isKnown && !step->mayFail) {
            const QString message = QStringLiteral("%1:%2: %3 failed: %4")
                                        .arg(inputName(script), QString::number(step->line), commandName(), missing);
            add(QStringLiteral("INSERT INTO needed SELECT %1, CASE WHEN count(*) > 0 THEN count(*) ELSE %2 END FROM %3")
                    .arg(QString::number(step->line), dialect.failure(message), list->table));
            list->isKnown = true;
        }
        return *list;
    }

    /// The condition that a list is there; empty when it is.
    static QStringList isThere(const List &list)
    {
        return list.isKnown ? QStringList() : QStringList{QStringLiteral("EXISTS (SELECT * FROM %1)").arg(list.table)};
    }

    QString nextTable() const { return QStringLiteral("list_%1").arg(listCount + 1); }

    void addList(bool isPlain16, bool isKnown)
    {
        lists.push_back({argument(0), nextTable(), isPlain16, isKnown});
        ++listCount;
    }

    /// Makes a list of graphs of the database by @p write, which is given the name of the table.
    template<typename Write> void makeListOfDatabase(Write write)
    {
        expectNewName();
        if (database == nullptr) {
            remark(QStringLiteral("makes no list: there is no database"));
            return;
        }
        write(nextTable());
        addList(database->manifest.isPlain16, false);
    }

    ComparedTables comparedTables() const { return {inv1->table, inv2->table, inv1->hasTiny || inv2->hasTiny}; }
    void compare(bool isAtLeast)
    {
        makeListOfDatabase(
            [&](const QString &table) { writeComparison(writing(), comparedTables(), isAtLeast, table); });
    }
    void listAtLeast() { compare(true); }
    void listAtMost() { compare(false); }

    void listSubs() { listClosure(true); }
    void listSupers() { listClosure(false); }

    void listClosure(bool isDown)
    {
        expectNewName();
        const List &source = sourceList(1);
        expectFewLevels();
        if (database != nullptr && !options.sortsClosures && database->manifest.graphs > mostSorted) {
            refuse(QStringLiteral("the order of a list among %1 graphs would be the work of one processor; with "
                                  "'--sorted' it is that of the database")
                       .arg(database->manifest.graphs));
        }
        makeListOfDatabase([&](const QString &table) { writeClosure(isDown, source.table, table); });
    }

    /// The table reached has the graphs that are d links away from those of the list, each with its rank among these.
    void writeClosure(bool isDown, const QString &source, const QString &target)
    {
        const bool isSorted = options.sortsClosures;
        const auto ranked = [&](const QString &order) {
            return isSorted ? QString() : QStringLiteral(", row_number() OVER (ORDER BY %1)").arg(order);
        };
        add(dialect.createTable(QStringLiteral("reached"), isSorted
                                                               ? QStringLiteral("id BIGINT, d BIGINT")
                                                               : QStringLiteral("id BIGINT, d BIGINT, rank BIGINT")));
        add(QStringLiteral("INSERT INTO reached\nSELECT g.id, 0%1\nFROM graph g\n"
                           "WHERE EXISTS (SELECT * FROM %2 a WHERE a.name = g.name)")
                .arg(ranked(QStringLiteral("g.id")), source));
        const int top = int(database->manifest.levels.size()) - 1;
        for (int distance = 1; distance <= top; ++distance) {
            add(closureStep(isDown, distance, ranked(QStringLiteral("f.place"))));
        }
        const QString place = isSorted ? QStringLiteral("g.id") : QStringLiteral("r.d * 4294967296 + r.rank");
        add(dialect.createTableAs(target) +
            QStringLiteral("SELECT %1 AS pos, g.name\nFROM graph g\nJOIN reached r ON r.id = g.id").arg(place));
        add(QStringLiteral("DROP TABLE reached"));
    }

    QString closureStep(bool isDown, int distance, const QString &rank) const
    {
        const QString minor = isDown ? QStringLiteral("pos") : QStringLiteral("id");
        const QString place = options.sortsClosures
                                  ? QString()
                                  : QStringLiteral(", min(%1) AS place")
                                        .arg(dialect.pair(QStringLiteral("e.rank"), QLatin1String("e.") + minor));
        const QString parentRank = options.sortsClosures ? QString() : QStringLiteral(", r.rank");
        QString links;
        if (isDown) {
            links = QStringLiteral("SELECT %1%2\nFROM graph g JOIN reached r ON r.id = g.id\nWHERE r.d = %3")
                        .arg(options.sortsClosures ? dialect.elements(QStringLiteral("g.subs"))
                                                   : dialect.elementsAndPlaces(QStringLiteral("g.subs")),
                             parentRank, QString::number(distance - 1));
        } else {
            links = QStringLiteral("SELECT l.id%1\nFROM (SELECT id, %2 FROM graph WHERE lvl >= %3) l\n"
                                   "JOIN reached r ON r.id = l.s\nWHERE r.d = %4")
                        .arg(parentRank, dialect.elements(QStringLiteral("subs")), QString::number(distance),
                             QString::number(distance - 1));
        }
        const QString end = isDown ? QStringLiteral("s") : QStringLiteral("id");
        const QString reached =
            QStringLiteral("SELECT e.%1 AS id%2\nFROM %3\n"
                           "WHERE NOT EXISTS (SELECT * FROM reached o WHERE o.id = e.%1)\nGROUP BY e.%1")
                .arg(end, place, nested(links, QStringLiteral("e")));
        return QStringLiteral("INSERT INTO reached\nSELECT f.id, %1%2\nFROM %3")
            .arg(QString::number(distance), rank, nested(reached, QStringLiteral("f")));
    }

    void listFromFile()
    {
        expectNewName();
        QFile file(argument(1));
        QString reason;
        if (!openForReading(file, &reason)) {
            throw Failing{reason};
        }
        const std::optional<QStringList> names = readNames(file);
        if (!names) {
            throw Failing{readFault(file)};
        }
        if (names->size() > mostNames) {
            refuse(QStringLiteral("%1 has more than %2 names").arg(quoted(argument(1)), QString::number(mostNames)));
        }
        if (names->isEmpty()) {
            remark(QStringLiteral("makes no list: the file is empty"));
            return;
        }
        add(dialect.createTable(nextTable(), QStringLiteral("pos BIGINT, name %1").arg(dialect.textType())));
        bool isPlain16 = true;
        for (int first = 0; first < names->size(); first += namesAtOnce) {
            QStringList rows;
            for (int place = first; place < std::min(first + namesAtOnce, names->size()); ++place) {
                const QString &name = names->at(place);
                rows.append(QStringLiteral("    (%1, %2)").arg(QString::number(place), dialect.literal(name)));
                isPlain16 = isPlain16 && std::none_of(name.begin(), name.end(),
                                                      [](QChar character) { return character.isSurrogate(); });
            }
            add(QStringLiteral("INSERT INTO %1 VALUES\n%2").arg(nextTable(), rows.join(QStringLiteral(",\n"))));
        }
        addList(isPlain16, true);
    }

    void listFromGraphs()
    {
        refuse(QStringLiteral("an engine does not know which graphs are isomorphic; 'tav names' finds the names for "
                              "'list-from-file'"));
    }

    void listUnion()
    {
        expectNewName();
        const List a = sourceList(1);
        const List b = sourceList(2);
        if (!a.isPlain16 || !b.isPlain16) {
            refuse(QStringLiteral("an engine sorts names with characters beyond U+FFFF in another way"));
        }
        const QString conditions = where(isThere(a) + isThere(b));
        add(dialect.createTableAs(nextTable()) +
            QStringLiteral(
                "SELECT CAST(0 AS BIGINT) AS pos, name\nFROM (SELECT name FROM %1 UNION SELECT name FROM %2) u%3")
                .arg(a.table, b.table, conditions));
        addList(true, a.isKnown && b.isKnown);
    }

    void listIntersection() { listPartOf(QStringLiteral("EXISTS")); }
    void listDifference() { listPartOf(QStringLiteral("NOT EXISTS")); }

    void listPartOf(const QString &condition)
    {
        expectNewName();
        const List a = sourceList(1);
        const List b = sourceList(2);
        const QStringList conditions =
            QStringList{QStringLiteral("%1 (SELECT * FROM %2 b WHERE b.name = a.name)").arg(condition, b.table)} +
            isThere(b);
        add(dialect.createTableAs(nextTable()) + QStringLiteral("SELECT a.pos, a.name\nFROM %1 a\nWHERE %2")
                                                     .arg(a.table, conditions.join(QStringLiteral(" AND "))));
        addList(a.isPlain16, false);
    }

    void removeList()
    {
        const List list = sourceList(0);
        add(QStringLiteral("DROP TABLE %1").arg(list.table));
        lists.erase(std::find_if(lists.begin(), lists.end(), [&](const List &one) { return one.name == list.name; }));
    }

    static QString namesIn(const List &list)
    {
        return QStringLiteral("SELECT name FROM %1 ORDER BY pos, name").arg(list.table);
    }

    void saveList()
    {
        const List &list = sourceList(0);
        if (!list.isKnown) {
            refuse(QStringLiteral("whether there is a list %1 is not known before; without '-' the script ends when "
                                  "there is none")
                       .arg(quoted(list.name)));
        }
        save(namesIn(list), argument(1));
    }

    void printLists()
    {
        QStringList rows;
        for (const List &list : lists) {
            rows.append(QStringLiteral("SELECT %1 AS place, %2 AS name, count(*) AS length FROM %3")
                            .arg(QString::number(rows.size() + 1), dialect.literal(list.name), list.table));
        }
        if (!rows.isEmpty()) {
            add(QStringLiteral("SELECT name, length\nFROM %1\nWHERE length > 0\nORDER BY place")
                    .arg(nested(rows.join(QStringLiteral("\nUNION ALL\n")), QStringLiteral("l"))));
        }
    }

    void show() { add(namesIn(sourceList(0))); }

    QString script;
    TranslationOptions options;
    Dialect dialect;
    SqlText text;
    std::vector<TableFolder> folders;
    const ScriptStep *step = nullptr;

    const TableFolder *database = nullptr; // the one that is loaded
    Invariant inv1;
    Invariant inv2;
    std::vector<std::weak_ptr<const Values>> loaded; // by source of the database
    std::vector<List> lists;
    int valuesCount = 0;
    int listCount = 0;
};

Translation::Translation(QString script, TranslationOptions options, std::vector<TableFolder> folders)
    : writer(std::make_unique<Writer>(std::move(script), options, std::move(folders)))
{
}

Translation::~Translation() = default;

void Translation::addRemark(const QString &line)
{
    writer->addRemark(line);
}

void Translation::addStep(const QString &line, const ScriptStep &step)
{
    writer->addStep(line, step);
}

QByteArray Translation::finish()
{
    return writer->finish();
}
