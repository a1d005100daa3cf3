#include "manifest.h"

#include "commandline.h"
#include "regularfile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{
const QString format = QStringLiteral("Tavoline tables");

/// What is wrong with a manifest.
struct Unfit {
    QString what;
};

/// Takes the members of an object of a manifest, which must be there.
class Members
{
public:
    Members(const QJsonValue &value, QString what) : object(value.toObject()), name(std::move(what))
    {
        if (!value.isObject()) {
            throw Unfit{name};
        }
    }

    QString text(const char *key) const { return member(key, &QJsonValue::isString).toString(); }
    bool flag(const char *key) const { return member(key, &QJsonValue::isBool).toBool(); }
    QJsonArray array(const char *key) const { return member(key, &QJsonValue::isArray).toArray(); }

    /// A whole number from @p least to @p most.
    qint64 number(const char *key, qint64 least, qint64 most) const
    {
        const double value = member(key, &QJsonValue::isDouble).toDouble();
        if (!(value >= double(least) && value <= double(most)) || value != std::floor(value)) {
            throw Unfit{nameOf(key)};
        }
        return qint64(value);
    }

    bool contains(const char *key) const { return object.contains(QLatin1String(key)); }
    QString nameOf(const char *key) const
    {
        return name.isEmpty() ? QString(QLatin1String(key)) : name + QLatin1Char('.') + QLatin1String(key);
    }

private:
    QJsonValue member(const char *key, bool (QJsonValue::*isKind)() const) const
    {
        QJsonValue value = object.value(QLatin1String(key));
        if (!(value.*isKind)()) {
            throw Unfit{nameOf(key)};
        }
        return value;
    }

    QJsonObject object;
    QString name;
};

constexpr qint64 mostGraphs = qint64(1) << 31;
constexpr qint64 mostBytes = qint64(1) << 53; // which a number of JSON holds
constexpr int mostParts = 9999;

LevelSummary readLevel(const Members &members, qint64 graphs)
{
    LevelSummary level;
    level.graphs = members.number("graphs", 1, graphs);
    level.first = members.number("first", 0, graphs - level.graphs);
    level.last = members.number("last", level.first + level.graphs - 1, graphs - 1);
    return level;
}

/// Whether there is a database with such levels: every graph stands behind one of the level below it.
bool canBe(const std::vector<LevelSummary> &levels, qint64 graphs)
{
    qint64 sum = 0;
    qint64 last = 0;
    for (const LevelSummary &level : levels) {
        sum += level.graphs;
        last = std::max(last, level.last);
    }
    const auto doesNotRise = [](const LevelSummary &one, const LevelSummary &next) { return one.first >= next.first; };
    return sum == graphs && last == graphs - 1 && levels.front().first == 0 &&
           std::adjacent_find(levels.begin(), levels.end(), doesNotRise) == levels.end();
}

ValueSource readValues(const Members &members, int number)
{
    ValueSource values;
    const bool isFile = members.contains("file");
    const char *key = isFile ? "file" : "expression";
    QString &source = isFile ? values.file : values.expression;
    source = members.text(key);
    if (source.isEmpty()) {
        throw Unfit{members.nameOf(key)};
    }
    values.folder = members.text("folder");
    if (values.folder != QStringLiteral("values-%1").arg(number)) { // so that no path leads elsewhere
        throw Unfit{members.nameOf("folder")};
    }
    values.bytes = members.number("bytes", 0, mostBytes);
    values.areOrdinary = members.flag("ordinary");
    values.hasTiny = members.flag("tiny");
    return values;
}

Manifest read(const Members &members)
{
    Manifest manifest;
    for (const QJsonValue name : members.array("databases")) {
        manifest.databases.append(name.toString());
    }
    if (manifest.databases.isEmpty() || manifest.databases.contains(QString())) {
        throw Unfit{QStringLiteral("databases")};
    }
    manifest.parts = int(members.number("parts", 1, mostParts));
    manifest.graphs = members.number("graphs", 1, mostGraphs);
    manifest.links = members.number("links", 0, mostBytes);
    manifest.bytes = members.number("bytes", 0, mostBytes);
    manifest.isRegular = members.flag("regular");
    manifest.hasLoops = members.flag("loops");
    manifest.isPlain16 = members.flag("plain");
    for (const QJsonValue level : members.array("levels")) {
        manifest.levels.push_back(readLevel(Members(level, QStringLiteral("levels")), manifest.graphs));
    }
    const int levelCount = int(manifest.levels.size());
    if (levelCount == 0 || levelCount > levelLimit || !canBe(manifest.levels, manifest.graphs) ||
        (manifest.isRegular && manifest.hasLoops)) {
        throw Unfit{QStringLiteral("levels")};
    }
    QSet<QString> sources;
    for (const QJsonValue member : members.array("values")) {
        const ValueSource values =
            readValues(Members(member, QStringLiteral("values")), int(manifest.values.size()) + 1);
        const QString source = values.file + QLatin1Char('\n') + values.expression;
        if (sources.contains(source)) {
            throw Unfit{QStringLiteral("values")};
        }
        sources.insert(source);
        manifest.values.push_back(values);
    }
    return manifest;
}

CommandError unfit(const QString &folder, const QString &reason)
{
    return CommandError(QStringLiteral("%1: %2").arg(folder, reason));
}

/// Throws CommandError unless the files of a table can be read, have as many bytes as its manifest says, and are alone
/// in their folder: Spark reads whatever is there, but for names that begin with a dot.
void checkTable(const QString &folder, const QString &table, int parts, qint64 bytes)
{
    const QString path = folder + QLatin1Char('/') + table;
    QStringList others = QDir(path).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    qint64 found = 0;
    for (int part = 0; part < parts; ++part) {
        QFile file(path + QLatin1Char('/') + partName(part));
        openRegular(file);
        found += sizeOf(file);
        others.removeOne(partName(part));
    }
    if (!others.isEmpty()) {
        throw unfit(folder, QStringLiteral("%1 is no file of the table %2, and must not be in its folder")
                                .arg(quoted(others.first()), quoted(table)));
    }
    if (found != bytes) {
        throw unfit(folder, QStringLiteral("the table %1 has %2 bytes, and its manifest says %3")
                                .arg(quoted(table), QString::number(found), QString::number(bytes)));
    }
}
} // namespace

QString partName(int part)
{
    return QStringLiteral("part-%1.tsv").arg(part + 1, 4, 10, QLatin1Char('0'));
}

QString fileNameOf(const QString &path)
{
    return path.section(QLatin1Char('/'), -1);
}

QByteArray manifestText(const Manifest &manifest)
{
    QJsonArray levels;
    for (const LevelSummary &level : manifest.levels) {
        levels.append(QJsonObject{{QStringLiteral("graphs"), level.graphs},
                                  {QStringLiteral("first"), level.first},
                                  {QStringLiteral("last"), level.last}});
    }
    QJsonArray values;
    for (const ValueSource &source : manifest.values) {
        const bool isFile = !source.file.isEmpty();
        values.append(QJsonObject{
            {isFile ? QStringLiteral("file") : QStringLiteral("expression"), isFile ? source.file : source.expression},
            {QStringLiteral("folder"), source.folder},
            {QStringLiteral("bytes"), source.bytes},
            {QStringLiteral("ordinary"), source.areOrdinary},
            {QStringLiteral("tiny"), source.hasTiny}});
    }
    const QJsonObject object{{QStringLiteral("format"), format},
                             {QStringLiteral("version"), tablesVersion},
                             {QStringLiteral("databases"), QJsonArray::fromStringList(manifest.databases)},
                             {QStringLiteral("parts"), manifest.parts},
                             {QStringLiteral("graphs"), manifest.graphs},
                             {QStringLiteral("links"), manifest.links},
                             {QStringLiteral("bytes"), manifest.bytes},
                             {QStringLiteral("regular"), manifest.isRegular},
                             {QStringLiteral("loops"), manifest.hasLoops},
                             {QStringLiteral("plain"), manifest.isPlain16},
                             {QStringLiteral("levels"), levels},
                             {QStringLiteral("values"), values}};
    return QJsonDocument(object).toJson();
}

Manifest parseManifest(const QByteArray &text, const QString &folder)
{
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    const double version = object.value(QStringLiteral("version")).toDouble(std::nan("")); // NaN differs from itself
    if (object.value(QStringLiteral("format")) != format || version != std::floor(version)) {
        throw unfit(folder, QStringLiteral("the manifest is not one of tables that 'tav export' writes"));
    }
    if (version != tablesVersion) {
        throw unfit(folder, QStringLiteral("tables of version %1; this program reads version %2")
                                .arg(QString::number(version, 'g', 15), QString::number(tablesVersion)));
    }
    try {
        return read(Members(object, QString()));
    } catch (const Unfit &fault) {
        throw unfit(folder, QStringLiteral("the manifest does not fit: '%1'").arg(fault.what));
    }
}

Manifest readManifest(const QString &folder)
{
    QFile file(folder + QLatin1Char('/') + manifestName);
    openRegular(file);
    const QByteArray text = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        throw cannotRead(file.fileName(), file.errorString());
    }
    Manifest manifest = parseManifest(text, folder);
    checkTable(folder, graphsFolder, manifest.parts, manifest.bytes);
    for (const ValueSource &source : manifest.values) {
        checkTable(folder, source.folder, manifest.parts, source.bytes);
    }
    return manifest;
}
