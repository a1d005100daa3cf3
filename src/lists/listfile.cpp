#include "listfile.h"

#include "linereader.h"
#include "outputfile.h"
#include "parallel.h"
#include "textline.h"

std::optional<QStringList> readNames(QIODevice &file)
{
    QStringList names;
    LineReader reader(file);
    std::string_view line;
    LineReader::Status status = LineReader::Status::Line;
    bool isFirst = true;
    for (; (status = reader.next(line)) == LineReader::Status::Line; isFirst = false) {
        const std::string_view name = isFirst ? withoutByteOrderMark(line) : line;
        if (!name.empty()) { // Qt would allocate for an empty text, too
            names.append(textOf(name));
        }
    }
    return status == LineReader::Status::End ? std::make_optional(names) : std::nullopt;
}

void writeNames(const QStringList &names, OutputFile &file)
{
    const auto linesOf = [&names](int begin, int end) {
        QByteArray lines;
        for (int i = begin; i < end; ++i) {
            if (i > 0) {
                lines.append('\n');
            }
            lines.append(names.at(i).toLatin1());
        }
        return lines;
    };
    forEachPiece(names.size(), recordsPerPiece, linesOf, [&file](const QByteArray &lines) { file.write(lines); });
}
