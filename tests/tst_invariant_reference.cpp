// Every invariant of the companion program, held against values that tests/reference/invariants.py found in other ways:
// of the connected graphs on up to eight vertices, and of 300 named and random ones on up to 40.

#include "support/namedgraphs.h"
#include "support/testfiles.h"

#include <QtTest>

#include <cmath>
#include <map>

namespace
{
/// The values of an invariant as text, in the order of the graphs; empty where none is known.
struct Values {
    bool areIntegers;
    QList<QByteArray> texts;
};

struct Reference {
    QList<QByteArray> graphs;                // graph6 strings
    QList<QByteArray> titles;                // of the named ones
    std::map<QByteArray, Values> invariants; // by name
};

Reference readReference(const char *file)
{
    Reference reference;
    for (const QByteArray &line : contents(QStringLiteral(TAVOLINE_BUILD_DATA "/") + QLatin1String(file)).split('\n')) {
        QList<QByteArray> fields = line.split('\t');
        const QByteArray head = fields.takeFirst();
        if (head == "graph") {
            reference.graphs = fields;
        } else if (head == "title") {
            reference.titles = fields;
        } else if (!head.isEmpty()) {
            const bool areIntegers = fields.takeFirst() == "integer";
            reference.invariants[head] = {areIntegers, fields};
        }
    }
    return reference;
}

const Reference &connectedGraphs()
{
    static const Reference reference = readReference("invariants-connected-8.tsv");
    return reference;
}

const Reference &namedGraphs()
{
    static const Reference reference = readReference("invariants-named.tsv");
    return reference;
}

/// Integers are exact as far as a double holds every one. The reference has nine digits of the other values, and writes
/// as zero what is below 1e-11.
bool agree(const InvariantValue &found, const QByteArray &expected, bool areIntegers)
{
    if (!found || expected == "NA") {
        return !found && expected == "NA";
    }
    const double value = expected.toDouble();
    if (areIntegers) {
        return std::abs(*found - value) <= (std::abs(value) < 0x1p53 ? 0.0 : 1e-12 * std::abs(value));
    }
    return std::abs(*found - value) <= 1e-8 * std::abs(value) + 1e-11;
}

/// What is wrong with the value of an invariant for the graph @p index; empty when nothing is, or when the reference
/// knows no value.
QByteArray difference(const Reference &reference, int index, const Invariant &invariant, GraphFacts &facts)
{
    const Values &values = reference.invariants.at(invariant.name);
    const QByteArray &expected = values.texts.at(index);
    if (expected.isEmpty()) {
        return {};
    }
    const InvariantValue found = invariant.valueOf(facts);
    if (agree(found, expected, values.areIntegers)) {
        return {};
    }
    const QByteArray title = reference.titles.isEmpty() ? QByteArray() : " (" + reference.titles.at(index) + ')';
    return QByteArray(invariant.name) + " of " + reference.graphs.at(index) + title + ": expected " + expected +
           ", found " + (found ? QByteArray::number(*found, 'g', 17) : "NA");
}
} // namespace

class TestInvariantReference : public QObject
{
    Q_OBJECT

private slots:
    void everyInvariantHasOne();
    void theGraphs();
    void alone_data();
    void alone();
    void together();
};

void TestInvariantReference::everyInvariantHasOne()
{
    for (const Reference *reference : {&connectedGraphs(), &namedGraphs()}) {
        for (const Invariant &invariant : invariants()) {
            const auto found = reference->invariants.find(invariant.name);
            QVERIFY2(found != reference->invariants.end(), invariant.name);
            QCOMPARE(found->second.texts.size(), reference->graphs.size());
            QVERIFY2(found->second.areIntegers == (invariant.kind == ValueKind::Integer), invariant.name);
        }
        QCOMPARE(reference->invariants.size(), invariants().size());
    }
}

void TestInvariantReference::theGraphs()
{
    QList<QByteArray> expected;
    for (const QByteArray &line : contents(example("connected-8.tav")).trimmed().split('\n')) {
        expected.append(line.split('\t').first().trimmed());
    }
    QCOMPARE(expected.size(), 12113);
    QCOMPARE(connectedGraphs().graphs, expected);
    QCOMPARE(namedGraphs().graphs.size(), 300);
    QCOMPARE(namedGraphs().titles.size(), 300);
}

void TestInvariantReference::alone_data()
{
    QTest::addColumn<const Reference *>("reference");
    QTest::addColumn<const Invariant *>("invariant");
    for (const Invariant &invariant : invariants()) {
        QTest::addRow("%s, connected", invariant.name) << &connectedGraphs() << &invariant;
        QTest::addRow("%s, named", invariant.name) << &namedGraphs() << &invariant;
    }
}

Q_DECLARE_METATYPE(const Reference *)
Q_DECLARE_METATYPE(const Invariant *)

void TestInvariantReference::alone()
{
    QFETCH(const Reference *, reference);
    QFETCH(const Invariant *, invariant);
    if (reference->invariants.count(invariant->name) == 0) {
        QFAIL("The reference does not have it.");
    }
    QByteArrayList differences;
    for (int i = 0; i < reference->graphs.size(); ++i) {
        GraphFacts facts(decoded(reference->graphs.at(i)));
        const QByteArray text = difference(*reference, i, *invariant, facts);
        if (!text.isEmpty()) {
            differences.append(text);
        }
    }
    QVERIFY2(
        differences.isEmpty(),
        (QByteArray::number(differences.size()) + " values, such as\n" + differences.mid(0, 5).join('\n')).constData());
}

/// What one invariant leaves behind in the facts that they share must not change another: from the last to the first,
/// and once more.
void TestInvariantReference::together()
{
    const Reference &reference = connectedGraphs();
    for (int i = 0; i < 996; ++i) { // up to seven vertices
        GraphFacts facts(decoded(reference.graphs.at(i)));
        for (const bool isSecond : {false, true}) {
            for (size_t k = 0; k < invariants().size(); ++k) {
                const Invariant &invariant = invariants()[isSecond ? k : invariants().size() - 1 - k];
                const QByteArray text = difference(reference, i, invariant, facts);
                QVERIFY2(text.isEmpty(), text.constData());
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestInvariantReference)
#include "tst_invariant_reference.moc"
