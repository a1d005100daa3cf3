#ifndef TAVOLINE_STATEMENTS_H
#define TAVOLINE_STATEMENTS_H

#include "dialect.h"
#include "manifest.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

/// The text of a script in SQL.
class SqlText
{
public:
    /// Adds a line of comment, as plain text.
    void comment(const QString &line);
    void statement(const QString &text);
    void blankLine() { text.append('\n'); }
    const QByteArray &bytes() const { return text; }

private:
    QByteArray text;
};

/// Graphs that are worked on at once: those of some consecutive levels with ids in a range, or all.
struct Slice {
    bool hasLevels = false; ///< else all levels
    int lowest = 0;
    int highest = 0;
    bool hasIds = false; ///< else all ids
    qint64 first = 0;
    qint64 last = 0;
};

/// What the writers of statements need to know.
struct Writing {
    Dialect dialect;
    Manifest manifest;
    qint64 graphsAtOnce; ///< about as many graphs are worked on at once at most
    SqlText &text;

    int topLevel() const { return int(manifest.levels.size()) - 1; }
    bool isLarge(int level) const { return manifest.levels[level].graphs > graphsAtOnce; }
    /// The graphs of a level.
    std::vector<Slice> slicesOf(int level) const;
    /// The graphs of the levels from @p lowest to the top; small levels are put together.
    std::vector<Slice> slicesFrom(int lowest) const;
    /// All graphs, by id alone.
    std::vector<Slice> slicesOfAll() const;
    void add(const QString &statement) const { text.statement(statement); }
};

/// The conditions for the graphs of a slice; their columns begin with @p alias. Those for the levels are for levels
/// that are higher by @p shift, and ids are left out with @p withIds false.
QStringList conditionsFor(const Slice &slice, const QString &alias = QString(), int shift = 0, bool withIds = true);

/// " WHERE ...", or nothing without conditions.
QString where(const QStringList &conditions);

/// A query in brackets, its lines indented, with a name.
QString nested(const QString &query, const QString &name);

#endif
