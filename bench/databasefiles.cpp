#include "databasefiles.h"

#include "values.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace
{
/// A file that is being written. The destructor ends the program if not everything could be written.
class NewFile
{
public:
    explicit NewFile(const QString &path) : file(path)
    {
        if (!file.open(QIODevice::WriteOnly)) {
            fail();
        }
    }
    ~NewFile()
    {
        if (!complete || !file.flush()) {
            fail();
        }
    }
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    void write(const QByteArray &bytes) { complete = complete && file.write(bytes) == bytes.size(); }

private:
    void fail() const { qFatal("cannot write %s", qPrintable(file.fileName())); }

    QFile file;
    bool complete = true;
};

void openToRead(QFile &file)
{
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("cannot read %s", qPrintable(file.fileName()));
    }
}

/// The name of a line of a database, with a newline.
QByteArray nameLine(const QByteArray &line)
{
    const auto end =
        std::find_if(line.begin(), line.end(), [](char character) { return character == '\t' || character == '\n'; });
    return line.left(int(end - line.begin())) + '\n';
}

void appendNumber(QByteArray &text, double value)
{
    constexpr int significantDigits = 6;
    std::array<char, 32> digits;
    const std::to_chars_result written = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                                       std::chars_format::general, significantDigits);
    text.append(digits.data(), int(written.ptr - digits.data()));
}
} // namespace

DatabaseFiles::DatabaseFiles(const QString &databasePath, QString temporaryFolder) : folder(std::move(temporaryFolder))
{
    QFile database(databasePath);
    openToRead(database);
    NewFile all(path(QStringLiteral("all.g6")));
    NewFile halfFile(path(QStringLiteral("half.g6")));
    NewFile otherHalfFile(path(QStringLiteral("other-half.g6")));
    NewFile thousandFile(path(QStringLiteral("thousand.g6")));
    std::vector<bool> hasSuperGraph;
    for (; !database.atEnd(); ++graphs) {
        const QByteArray line = database.readLine();
        const QByteArray name = nameLine(line);
        const bool inHalf = graphs % 2 == 0;
        const bool inOtherHalf = graphs % 4 < 2;
        all.write(name);
        if (inHalf) {
            halfFile.write(name);
            ++half;
        }
        if (inOtherHalf) {
            otherHalfFile.write(name);
            ++otherHalf;
        }
        bothHalves += inHalf && inOtherHalf ? 1 : 0;
        if (2000 * database.pos() / database.size() > 2 * thousand) { // in the middle of each thousandth of the file
            thousandFile.write(name);
            ++thousand;
        }
        hasSuperGraph.push_back(false);
        addLinks(line, hasSuperGraph);
    }
    withSuperGraphs = std::count(hasSuperGraph.begin(), hasSuperGraph.end(), true);
}

/// Counts the links of a line. Its graph is the last one of @p hasSuperGraph.
void DatabaseFiles::addLinks(const QByteArray &line, std::vector<bool> &hasSuperGraph)
{
    const char *const end = line.constData() + line.size();
    const char *at = std::find(line.constData(), end, '\t');
    const bool hasSubGraph = at != end;
    bool hasLevelSubGraph = false;
    while (at != end && *at == '\t') {
        uint32_t subGraph = 0;
        at = std::from_chars(at + 1, end, subGraph).ptr;
        hasSuperGraph.at(subGraph) = true;
        hasLevelSubGraph = hasLevelSubGraph || nearLevel(subGraph) == level(subGraph);
        ++links;
    }
    withSubGraphs += hasSubGraph ? 1 : 0;
    withLevelSubGraphs += hasLevelSubGraph ? 1 : 0;
}

void DatabaseFiles::writeInvariant(const QString &name, Value value) const
{
    QFile names(path(QStringLiteral("all.g6")));
    openToRead(names);
    NewFile file(path(name));
    file.write("GRAPH\tINV1\n");
    for (uint32_t line = 0; !names.atEnd(); ++line) {
        QByteArray text = names.readLine();
        text.back() = '\t';
        if (std::isnan(value(line))) {
            text.append("NA");
        } else {
            appendNumber(text, value(line));
        }
        file.write(text.append('\n'));
    }
}

bool haveSameContents(const QString &pathA, const QString &pathB)
{
    constexpr qint64 pieceLength = 1 << 20;
    QFile a(pathA);
    QFile b(pathB);
    openToRead(a);
    openToRead(b);
    while (!a.atEnd() && !b.atEnd()) {
        if (a.read(pieceLength) != b.read(pieceLength)) {
            return false;
        }
    }
    return a.atEnd() && b.atEnd();
}
