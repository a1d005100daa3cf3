#ifndef TAVOLINE_MANIFEST_H
#define TAVOLINE_MANIFEST_H

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

/// The graphs of one level. The level of a graph is the number of links in the longest chain below it, links to itself
/// left out, so that no link leads from a graph to another of its own level.
struct LevelSummary {
    qint64 graphs = 0;
    qint64 first = 0; ///< the smallest id of them
    qint64 last = 0;  ///< the largest

    bool operator==(const LevelSummary &other) const
    {
        return graphs == other.graphs && first == other.first && last == other.last;
    }
};

/// The values that an invariant file or an expression gives to the graphs.
struct ValueSource {
    QString file;       ///< the name of the file without its folders, or else
    QString expression; ///< the expression
    QString folder;     ///< of the table
    qint64 bytes = 0;   ///< of the table
    /// Whether all values are finite, and so far from the largest number that no sum of them is infinite.
    bool areOrdinary = true;
    /// Whether a value other than 0 is so small that another may differ from it by exactly the tolerance.
    bool hasTiny = false;
};

/// What the tables of a database hold, for those who write questions to them.
struct Manifest {
    QStringList databases; ///< the names of the files, without their folders, one behind the other
    int parts = 1;         ///< the number of files of each table
    qint64 graphs = 0;
    qint64 links = 0;
    qint64 bytes = 0;      ///< of the table of the graphs
    bool isRegular = true; ///< whether every link leads exactly one level down
    bool hasLoops = false; ///< whether a graph has a link to itself
    bool isPlain16 = true; ///< whether UTF-16 sorts the names as UTF-8 does
    std::vector<LevelSummary> levels;
    std::vector<ValueSource> values;
};

/// The version of the tables that this program writes and reads.
constexpr int tablesVersion = 1;

/// The most levels that tables can have.
constexpr int levelLimit = 1 << 15;

/// The name of the manifest in the folder of the tables, and of the folder of the table of the graphs.
inline const QString manifestName = QStringLiteral("manifest.json");
inline const QString graphsFolder = QStringLiteral("graphs");

/// The name of a file of a table, the first of which is @p part 0.
QString partName(int part);

/// The name of a file without its folders.
QString fileNameOf(const QString &path);

QByteArray manifestText(const Manifest &manifest);

/// Reads the text of a manifest. Throws CommandError, naming the tables @p folder, when it is none, or one of another
/// version, or says what cannot be.
Manifest parseManifest(const QByteArray &text, const QString &folder);

/// Reads the manifest of the tables in @p folder and compares it with the files that are there. Throws CommandError
/// when it cannot be read or does not fit.
Manifest readManifest(const QString &folder);

#endif
