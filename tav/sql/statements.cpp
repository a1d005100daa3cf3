#include "statements.h"

#include "plaintext.h"

#include <algorithm>

namespace
{
/// The ids from @p first to @p last in as many ranges as hold @p atOnce of @p graphs each.
void appendRanges(std::vector<Slice> &slices, Slice slice, const LevelSummary &graphs, qint64 atOnce)
{
    const qint64 count = (graphs.graphs + atOnce - 1) / atOnce;
    const qint64 length = (graphs.last - graphs.first + count) / count;
    slice.hasIds = count > 1;
    for (slice.first = graphs.first; slice.first <= graphs.last; slice.first += length) {
        slice.last = std::min(slice.first + length - 1, graphs.last);
        slices.push_back(slice);
    }
}
} // namespace

void SqlText::comment(const QString &line)
{
    text.append("-- ").append(plainText(line).toUtf8());
    text.append(line.endsWith(QLatin1Char('\\')) ? " \n" : "\n"); // Spark goes on behind a backslash at the end
}

void SqlText::statement(const QString &statement)
{
    text.append(statement.toUtf8()).append(";\n");
}

std::vector<Slice> Writing::slicesOf(int level) const
{
    std::vector<Slice> slices;
    appendRanges(slices, {true, level, level, false, 0, 0}, manifest.levels[level], graphsAtOnce);
    return slices;
}

std::vector<Slice> Writing::slicesFrom(int lowest) const
{
    std::vector<Slice> slices;
    qint64 graphs = 0; // in the last slice
    for (int level = lowest; level <= topLevel(); ++level) {
        const LevelSummary &summary = manifest.levels[level];
        graphs += summary.graphs;
        if (level > lowest && graphs <= graphsAtOnce) {
            slices.back().highest = level;
            continue;
        }
        appendRanges(slices, {true, level, level, false, 0, 0}, summary, graphsAtOnce);
        graphs = summary.graphs;
    }
    return slices;
}

std::vector<Slice> Writing::slicesOfAll() const
{
    std::vector<Slice> slices;
    appendRanges(slices, {}, {manifest.graphs, 0, manifest.graphs - 1}, graphsAtOnce);
    return slices;
}

QStringList conditionsFor(const Slice &slice, const QString &alias, int shift, bool withIds)
{
    QStringList conditions;
    if (slice.hasLevels) {
        const QString lowest = QString::number(slice.lowest + shift);
        conditions.append(
            slice.lowest == slice.highest
                ? QStringLiteral("%1lvl = %2").arg(alias, lowest)
                : QStringLiteral("%1lvl BETWEEN %2 AND %3").arg(alias, lowest, QString::number(slice.highest + shift)));
    }
    if (slice.hasIds && withIds) {
        conditions.append(QStringLiteral("%1id BETWEEN %2 AND %3").arg(alias).arg(slice.first).arg(slice.last));
    }
    return conditions;
}

QString where(const QStringList &conditions)
{
    return conditions.isEmpty() ? QString() : QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
}

QString nested(const QString &query, const QString &name)
{
    QString inside = query;
    inside.replace(QLatin1Char('\n'), QLatin1String("\n    "));
    return QStringLiteral("(\n    %1\n) %2").arg(inside, name);
}
