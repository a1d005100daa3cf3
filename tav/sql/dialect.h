#ifndef TAVOLINE_DIALECT_H
#define TAVOLINE_DIALECT_H

#include <QString>
#include <QStringList>

enum class Engine { DuckDb, Spark };

/// What two SQL engines say in different ways. Everything else is the same for both.
class Dialect
{
public:
    explicit Dialect(Engine sqlEngine) : engine(sqlEngine) {}

    /// The name of the engine.
    QString name() const;

    /// The type of a column of texts.
    QString textType() const;
    /// A text in quotation marks.
    QString literal(const QString &text) const;
    /// How a statement begins that makes a table of the given columns, or of the rows of a query that follows.
    QString createTable(const QString &name, const QString &columns) const;
    QString createTableAs(const QString &name) const;

    /// In the list of a SELECT: each element of the array @p array in a row of its own, as s, and with its place, as
    /// pos.
    QString elements(const QString &array) const;
    QString elementsAndPlaces(const QString &array) const;
    /// A value that is compared first by @p major, then by @p minor.
    QString pair(const QString &major, const QString &minor) const;
    /// The value NaN.
    QString nan() const;
    /// A number that cannot be computed: to compute it ends the script with the message @p text.
    QString failure(const QString &text) const;

    /// A query for the rows of the table of the graphs, whose files are @p files in the folder @p folder.
    QString graphRows(const QString &folder, const QStringList &files) const;
    /// The same for a table of values.
    QString valueRows(const QString &folder, const QStringList &files) const;
    /// A statement that writes what the query @p query finds, a name a row, at the path @p path.
    QString save(const QString &query, const QString &path) const;

private:
    bool isDuckDb() const { return engine == Engine::DuckDb; }

    Engine engine;
};

#endif
