#include "dialect.h"

namespace
{
/// Reads lines whose fields are separated by tabs, nothing in which means anything else but that an empty one is NULL.
/// Nor does the name of a folder.
QString readLines(const QStringList &files, const QString &columns)
{
    return QStringLiteral("FROM read_csv([%1],\n"
                          "    auto_detect = false, header = false, delim = '\\t', quote = '', escape = '',\n"
                          "    hive_partitioning = false, columns = {%2})")
        .arg(files.join(QStringLiteral(", ")), columns);
}

/// In ASCII, as the encoding in which spark-sql reads a script depends on the locale.
QString escaped(const QString &text)
{
    constexpr ushort lastOfAscii = 0x7F;
    QString ascii;
    for (const QChar unit : text) {
        ascii += unit.unicode() <= lastOfAscii
                     ? QString(unit)
                     : QStringLiteral("\\u%1").arg(uint(unit.unicode()), 4, 16, QLatin1Char('0'));
    }
    return ascii;
}

QString splitLines(const QString &folder)
{
    QString path = folder;
    return QStringLiteral("FROM (SELECT split(value, '\\t') AS f FROM text.`%1`) t")
        .arg(path.replace(QLatin1Char('`'), QLatin1String("``")));
}
} // namespace

QString Dialect::name() const
{
    return isDuckDb() ? QStringLiteral("DuckDB") : QStringLiteral("Spark");
}

QString Dialect::textType() const
{
    return isDuckDb() ? QStringLiteral("VARCHAR") : QStringLiteral("STRING");
}

QString Dialect::literal(const QString &text) const
{
    QString inside = text;
    if (isDuckDb()) {
        inside.replace(QLatin1Char('\''), QLatin1String("''"));
    } else {
        inside.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\''), QLatin1String("\\'"));
        inside.replace(QLatin1String("${"), QLatin1String("\\u0024{")); // else Spark would put in a variable
        inside = escaped(inside);
    }
    return QLatin1Char('\'') + inside + QLatin1Char('\'');
}

QString Dialect::createTable(const QString &name, const QString &columns) const
{
    return QStringLiteral("CREATE TABLE %1 (%2)").arg(name, columns) +
           (isDuckDb() ? QString() : QStringLiteral(" USING PARQUET"));
}

QString Dialect::createTableAs(const QString &name) const
{
    return QStringLiteral("CREATE TABLE %1 ").arg(name) +
           (isDuckDb() ? QStringLiteral("AS\n") : QStringLiteral("USING PARQUET AS\n"));
}

QString Dialect::elements(const QString &array) const
{
    return (isDuckDb() ? QStringLiteral("unnest(%1) AS s") : QStringLiteral("explode(%1) AS s")).arg(array);
}

QString Dialect::elementsAndPlaces(const QString &array) const
{
    return (isDuckDb() ? QStringLiteral("unnest(%1) AS s, generate_subscripts(%1, 1) AS pos")
                       : QStringLiteral("posexplode(%1) AS (pos, s)"))
        .arg(array);
}

QString Dialect::pair(const QString &major, const QString &minor) const
{
    return (isDuckDb() ? QStringLiteral("{'major': %1, 'minor': %2}")
                       : QStringLiteral("named_struct('major', %1, 'minor', %2)"))
        .arg(major, minor);
}

QString Dialect::nan() const
{
    return QStringLiteral("CAST('nan' AS DOUBLE)");
}

QString Dialect::failure(const QString &text) const
{
    return QStringLiteral("CAST(%1(%2) AS BIGINT)")
        .arg(isDuckDb() ? QStringLiteral("error") : QStringLiteral("raise_error"), literal(text));
}

QString Dialect::graphRows(const QString &folder, const QStringList &files) const
{
    if (isDuckDb()) {
        QStringList texts;
        for (const QString &file : files) {
            texts.append(literal(folder + QLatin1Char('/') + file));
        }
        return QStringLiteral("SELECT id, lvl, self = 1 AS self, name, CAST(split(subs, ',') AS BIGINT[]) AS subs\n") +
               readLines(texts, QStringLiteral("'id': 'BIGINT', 'lvl': 'SMALLINT', 'self': 'SMALLINT', 'name': "
                                               "'VARCHAR', 'subs': 'VARCHAR'"));
    }
    return QStringLiteral("SELECT CAST(f[0] AS BIGINT) AS id, CAST(f[1] AS SMALLINT) AS lvl, f[2] = '1' AS self,\n"
                          "    f[3] AS name, CASE WHEN f[4] <> '' THEN CAST(split(f[4], ',') AS ARRAY<BIGINT>) END AS "
                          "subs\n") +
           splitLines(folder);
}

QString Dialect::valueRows(const QString &folder, const QStringList &files) const
{
    if (isDuckDb()) {
        QStringList texts;
        for (const QString &file : files) {
            texts.append(literal(folder + QLatin1Char('/') + file));
        }
        return QStringLiteral("SELECT id, lvl, v\n") +
               readLines(texts, QStringLiteral("'id': 'BIGINT', 'lvl': 'SMALLINT', 'v': 'DOUBLE'"));
    }
    return QStringLiteral(
               "SELECT CAST(f[0] AS BIGINT) AS id, CAST(f[1] AS SMALLINT) AS lvl, CAST(f[2] AS DOUBLE) AS v\n") +
           splitLines(folder);
}

QString Dialect::save(const QString &query, const QString &path) const
{
    if (isDuckDb()) {
        return QStringLiteral("COPY (%1)\nTO %2 (FORMAT csv, HEADER false, DELIMITER '\\t', QUOTE '', ESCAPE '', "
                              "COMPRESSION none)")
            .arg(query, literal(path));
    }
    return QStringLiteral("INSERT OVERWRITE DIRECTORY %1 USING TEXT\n%2").arg(literal(path), query);
}
