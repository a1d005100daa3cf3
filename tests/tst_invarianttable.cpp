// The catalogue of invariants, and the page that describes them: one row for each, with what the catalogue says and the
// values that it computes.

#include "support/namedgraphs.h"
#include "support/testfiles.h"

#include <QRegularExpression>
#include <QtTest>

namespace
{
QString cell(QString text)
{
    return text.replace(QLatin1Char('|'), QLatin1String("\\|"));
}

QString rowOf(const Invariant &invariant)
{
    const QStringList description = QString::fromUtf8(invariant.description).split(QStringLiteral("; NA "));
    return QStringLiteral("| `%1` | %2 | %3 | %4 | %5 | %6 |")
        .arg(QLatin1String(invariant.name), cell(description.first()),
             cell(description.size() > 1 ? description.last() : QString()),
             QString::fromLatin1(textOf(invariant.name, edgeless(0))),
             QString::fromLatin1(textOf(invariant.name, edgeless(1))), cell(QString::fromUtf8(invariant.source)))
        .replace(QRegularExpression(QStringLiteral(" {2,}")), QStringLiteral(" "));
}
} // namespace

class TestInvariantTable : public QObject
{
    Q_OBJECT

private slots:
    void everyInvariantHasItsRow()
    {
        QStringList expected;
        QString group;
        for (const Invariant &invariant : invariants()) {
            if (group != QLatin1String(invariant.group)) {
                group = QLatin1String(invariant.group);
                expected += QStringLiteral("### ") + group;
            }
            expected += rowOf(invariant);
        }
        QStringList rows;
        const QString page = QString::fromUtf8(contents(QStringLiteral(TAVOLINE_SOURCES "/docs/invariants.md")));
        for (const QString &line : page.split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("### ")) || line.startsWith(QLatin1String("| `"))) {
                rows += line;
            }
        }
        for (const QString &row : expected) {
            QVERIFY2(rows.contains(row), qPrintable(QStringLiteral("missing: ") + row));
        }
        QCOMPARE(rows, expected);
    }

    void namesAndTexts()
    {
        QSet<QString> names;
        QStringList groups;
        for (const Invariant &invariant : invariants()) {
            const QString name = QLatin1String(invariant.name);
            QVERIFY2(QRegularExpression(QStringLiteral("^[a-z]+(-[a-z]+)*$")).match(name).hasMatch(), invariant.name);
            QVERIFY2(!names.contains(name), invariant.name);
            names += name;
            const QString group = QLatin1String(invariant.group);
            if (groups.isEmpty() || groups.last() != group) {
                QVERIFY2(!groups.contains(group), invariant.group); // a group stands together
                groups += group;
            }
            QVERIFY2(qstrlen(invariant.description) > 0 && !QByteArray(invariant.description).contains('\n'),
                     invariant.name);
            QVERIFY2(!QByteArray(invariant.source).contains('\n'), invariant.name);
        }
    }

    /// Where a value of the two smallest graphs is undefined, the description says so.
    void undefinedValues()
    {
        for (const Invariant &invariant : invariants()) {
            const bool isUndefined = !valueOf(invariant.name, edgeless(0)) || !valueOf(invariant.name, edgeless(1));
            QVERIFY2(!isUndefined || QByteArray(invariant.description).contains("; NA "), invariant.name);
        }
    }
};

QTEST_APPLESS_MAIN(TestInvariantTable)
#include "tst_invarianttable.moc"
