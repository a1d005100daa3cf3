// The index of canonical forms: what is looked up in it, and that no damage of its bytes goes unnoticed.

#include "canonicalform.h"
#include "formindex.h"
#include "graph6.h"
#include "isomorphismtable.h"

#include <QtTest>

#include <cstring>
#include <dlfcn.h>
#include <map>
#include <random>
#include <string>
#include <utility>

namespace
{
const QString notAnIndex = QStringLiteral("not the index of a database");
const QString damaged = QStringLiteral("damaged; 'tav index' makes it anew");
const FileMark someFile = {1234, 0x0123456789abcdef};

// Where the numbers of the header stand.
constexpr size_t byteOrderPlace = 8;
constexpr size_t versionPlace = 12;
constexpr size_t formsPlace = 16;
constexpr size_t checksumPlace = 20;
constexpr size_t sizePlace = 28;
constexpr size_t graphsPlace = 44;

/// Where the number of the graphs of an order stands; that of the order 63, which is none, is where the header ends.
constexpr size_t countPlace(size_t order)
{
    return 52 + 8 * order;
}

constexpr size_t headerLength = countPlace(63);

template<typename Number> Number numberAt(const std::string &bytes, size_t place)
{
    Number number;
    std::memcpy(&number, bytes.data() + place, sizeof number);
    return number;
}

template<typename Number> std::string with(std::string bytes, size_t place, Number number)
{
    const auto *const given = reinterpret_cast<const char *>(&number);
    for (size_t i = 0; i < sizeof number; ++i) {
        bytes.at(place + i) = given[i];
    }
    return bytes;
}

std::string sealed(std::string bytes)
{
    sealFormIndex(bytes);
    return bytes;
}

/// The index of six graphs: those of the numbers 1 and 4 are the same.
std::string smallIndex()
{
    FormIndexMaker maker;
    maker.add(1, "");
    maker.add(2, "\x80");
    maker.add(3, "\xe0");
    maker.add(3, std::string_view("\0", 1));
    maker.add(2, "\x80");
    maker.add(62, std::string(237, 'x'));
    return maker.finish(someFile);
}

QString faultOf(const std::string &bytes)
{
    FormIndex index;
    return index.open(bytes);
}

bool formsAreReversed = false;
} // namespace

/// Stands before the function of nauty, and can turn round the order of the vertices in the canonical form.
extern "C" void densenauty(uint64_t *rows, int *labels, int *partition, int *orbits, void *options, void *statistics,
                           int words, int order, uint64_t *form)
{
    using Function = void(uint64_t *, int *, int *, int *, void *, void *, int, int, uint64_t *);
    static auto *const ofNauty = reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, "densenauty"));
    ofNauty(rows, labels, partition, orbits, options, statistics, words, order, form);
    if (formsAreReversed) {
        const std::vector<uint64_t> given(form, form + order);
        for (int v = 0; v < order; ++v) {
            form[v] = 0;
            for (int u = 0; u < order; ++u) {
                if ((given[order - 1 - v] & SmallGraph::bit(order - 1 - u)) != 0) {
                    form[v] |= SmallGraph::bit(u);
                }
            }
        }
    }
}

class TestFormIndex : public QObject
{
    Q_OBJECT

private slots:
    void aFewGraphsByHand()
    {
        const std::string bytes = smallIndex();
        FormIndex index;
        QCOMPARE(index.open(bytes), QString());
        QCOMPARE(index.graphCount(), quint64(6));
        QVERIFY(index.database() == someFile);
        QVERIFY(index.numberOf(1, "") == 0U);
        QVERIFY(index.numberOf(2, "\x80") == 1U); // the first of two
        QVERIFY(index.numberOf(3, "\xe0") == 2U);
        QVERIFY(index.numberOf(3, std::string_view("\0", 1)) == 3U);
        QVERIFY(index.numberOf(62, std::string(237, 'x')) == 5U);
        QVERIFY(!index.numberOf(0, ""));
        QVERIFY(!index.numberOf(2, std::string_view("\0", 1)));
        QVERIFY(!index.numberOf(3, "\x80"));
        QVERIFY(!index.numberOf(62, std::string(236, 'x') + 'y'));
        for (int order = 0; order <= SmallGraph::maxOrder; ++order) {
            QCOMPARE(index.hasGraphsOf(order), order == 1 || order == 2 || order == 3 || order == 62);
        }
    }

    void theLayout()
    {
        const std::string bytes = smallIndex();
        QCOMPARE(QByteArray(bytes.data(), 8), QByteArray("tavforms"));
        QCOMPARE(numberAt<quint32>(bytes, byteOrderPlace), 0x01020304U);
        QCOMPARE(numberAt<quint32>(bytes, versionPlace), 1U);
        QCOMPARE(numberAt<quint32>(bytes, formsPlace), canonicalFormsChecksum());
        QCOMPARE(numberAt<quint64>(bytes, sizePlace), someFile.size);
        QCOMPARE(numberAt<quint64>(bytes, sizePlace + 8), someFile.checksum);
        QCOMPARE(numberAt<quint64>(bytes, graphsPlace), quint64(6));
        QCOMPARE(numberAt<quint64>(bytes, countPlace(2)), quint64(2));
        // Each order has one bucket, with two bounds, and entries of a key and a number.
        QCOMPARE(bytes.size(),
                 headerLength + 4 * size_t(8) + (0 + 4) + 2 * size_t(1 + 4) + 2 * size_t(1 + 4) + (237 + 4));
        QCOMPARE(numberAt<quint32>(bytes, headerLength), 0U);
        QCOMPARE(numberAt<quint32>(bytes, headerLength + 4), 1U);
        QCOMPARE(bytes.substr(headerLength + 8 + 4 + 8, 5), std::string("\x80\x01\0\0\0", 5));
    }

    /// Another nauty, or other options of it, may label the canonical forms otherwise.
    void otherFormsHaveAnotherChecksum()
    {
        const quint32 checksum = canonicalFormsChecksum();
        QCOMPARE(canonicalFormsChecksum(), checksum);
        formsAreReversed = true;
        const quint32 ofOthers = canonicalFormsChecksum();
        formsAreReversed = false;
        QVERIFY(ofOthers != checksum);
        QCOMPARE(canonicalFormsChecksum(), checksum);
    }

    void noGraphs()
    {
        const std::string bytes = FormIndexMaker().finish({0, 7});
        QCOMPARE(bytes.size(), headerLength);
        FormIndex index;
        QCOMPARE(index.open(bytes), QString());
        QCOMPARE(index.graphCount(), quint64(0));
        QVERIFY(!index.numberOf(0, ""));
    }

    /// A maker that has finished begins anew.
    void aSecondIndex()
    {
        FormIndexMaker maker;
        maker.add(2, "\x80");
        const std::string first = maker.finish(someFile);
        QCOMPARE(maker.graphCount(), quint64(0));
        maker.add(2, "\x80");
        QCOMPARE(maker.finish(someFile), first);
    }

    /// Random keys, half of which come again, in an index and in a map.
    void manyKeys_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {1, 3, 4, 5, 100, 5000}) {
            QTest::newRow(QByteArray::number(count).constData()) << count;
        }
    }

    void manyKeys()
    {
        QFETCH(int, count);
        const unsigned seed = 1000 + count;
        std::mt19937 random(seed);
        const auto randomKey = [&random](int order) {
            std::string key((order * (order - 1) / 2 + 7) / 8, '\0');
            for (char &byte : key) {
                byte = char(random() % 7);
            }
            return key;
        };
        std::map<std::pair<int, std::string>, quint32> expected;
        FormIndexMaker maker;
        for (int i = 0; i < count; ++i) {
            const int order = int(random() % 9);
            const std::string key = randomKey(order);
            expected.try_emplace({order, key}, quint32(i));
            maker.add(order, key);
        }
        const std::string bytes = maker.finish(someFile);
        FormIndex index;
        QCOMPARE(index.open(bytes), QString());
        for (int i = 0; i < 20000; ++i) {
            const int order = int(random() % 10);
            const std::string key = randomKey(order);
            const auto place = expected.find({order, key});
            const std::optional<quint32> found = index.numberOf(order, key);
            QVERIFY2(place == expected.end() ? !found : found == place->second, qPrintable(QString::number(seed)));
        }
        for (const auto &[graph, number] : expected) {
            QVERIFY(index.numberOf(graph.first, graph.second) == number);
        }
    }

    void everyByteThatChangesIsNoticed()
    {
        const std::string bytes = smallIndex();
        for (size_t place = 0; place < bytes.size(); ++place) {
            for (const int change : {0x01, 0x80, 0xff}) {
                const QString fault = faultOf(with(bytes, place, char(bytes[place] ^ change)));
                if (place < byteOrderPlace) {
                    QCOMPARE(fault, notAnIndex);
                } else if (place >= versionPlace && place < formsPlace) {
                    QVERIFY2(fault.startsWith(QStringLiteral("an index of version ")), qPrintable(fault));
                } else if (place >= formsPlace && place < checksumPlace) {
                    QCOMPARE(fault, QStringLiteral("made with another version of nauty; 'tav index' makes it anew"));
                } else {
                    QCOMPARE(fault, damaged);
                }
            }
        }
    }

    void everyLengthButTheRightOneIsNoticed()
    {
        const std::string bytes = smallIndex();
        for (size_t length = 0; length < bytes.size(); ++length) {
            QCOMPARE(faultOf(bytes.substr(0, length)), damaged);
        }
        QCOMPARE(faultOf(bytes + '\0'), damaged);
        QCOMPARE(faultOf(bytes), QString());
    }

    void otherVersionsAndMachines()
    {
        const std::string bytes = smallIndex();
        QCOMPARE(faultOf(with(bytes, versionPlace, quint32(2))),
                 QStringLiteral("an index of version 2, not 1; 'tav index' makes it anew"));
        QCOMPARE(faultOf(with(bytes, byteOrderPlace, quint32(0x04030201))),
                 QStringLiteral("made on a machine with another order of bytes; 'tav index' makes it anew"));
    }

    /// Numbers that contradict each other under the right checksum are refused before anything is looked up.
    void contradictions_data()
    {
        QTest::addColumn<QByteArray>("index");
        const std::string bytes = smallIndex();
        const auto row = [](const char *name, std::string contradictory) {
            contradictory = sealed(contradictory);
            QTest::newRow(name) << QByteArray(contradictory.data(), int(contradictory.size()));
        };
        row("fewer graphs", with(bytes, graphsPlace, quint64(5)));
        row("more graphs", with(bytes, graphsPlace, quint64(7)));
        row("an order without its graph", with(with(bytes, countPlace(62), quint64(0)), graphsPlace, quint64(5)));
        row("an order that has none", with(with(bytes, countPlace(0), quint64(1)), graphsPlace, quint64(7)));
        row("graphs beyond 64 bits", with(bytes, countPlace(1), ~quint64(0)));
        row("graphs beyond 32 bits",
            with(with(bytes, countPlace(1), quint64(1) << 32), graphsPlace, (quint64(1) << 32) + 5));
        // So many that their bytes, counted with 64 bits, seem to be 16.
        row("bytes beyond 64 bits", with(bytes, countPlace(2), quint64(3074457345618258604)));
        row("a byte less", bytes.substr(0, bytes.size() - 1));
        row("more graphs of an order than bytes",
            with(with(bytes, countPlace(1), quint64(3)), graphsPlace, quint64(8)));
        row("an entry before the first", with(bytes, headerLength, quint32(2)));
        row("an entry behind the last", with(bytes, headerLength + 4, quint32(2)));
        row("one entry less", with(bytes, headerLength + 4, quint32(0)));
        row("a number that no graph has", with(bytes, headerLength + 8, quint32(6)));
        row("bytes behind the end", bytes + "four");
    }

    void contradictions()
    {
        QFETCH(QByteArray, index);
        QCOMPARE(faultOf(index.toStdString()), damaged);
    }

    void whatIsRefusedHasNoGraphs()
    {
        const std::string bytes = smallIndex();
        FormIndex index;
        QCOMPARE(index.open(bytes), QString());
        QCOMPARE(index.open(sealed(with(bytes, bytes.size() - 4, quint32(6)))), damaged); // the last number
        QVERIFY(!index.numberOf(2, "\x80"));
        QVERIFY(!index.hasGraphsOf(2));
        QCOMPARE(index.graphCount(), quint64(0));
    }

    /// The keys of real graphs have the length that the index expects.
    void everyOrder()
    {
        FormIndexMaker maker;
        std::vector<std::string> keys;
        for (int order = 0; order <= SmallGraph::maxOrder; ++order) {
            SmallGraph path;
            path.order = order;
            for (int v = 1; v < order; ++v) {
                path.addEdge(v - 1, v);
            }
            keys.push_back(IsomorphismTable::keyOf(canonicalForm(path)));
            maker.add(order, keys.back());
        }
        const std::string bytes = maker.finish(someFile);
        FormIndex index;
        QCOMPARE(index.open(bytes), QString());
        for (int order = 0; order <= SmallGraph::maxOrder; ++order) {
            QVERIFY(index.numberOf(order, keys[order]) == quint32(order));
        }
    }
};

QTEST_APPLESS_MAIN(TestFormIndex)
#include "tst_formindex.moc"
