// Linking the records of a database both ways, on all processors.

#include "databaselinks.h"

#include <QtTest>

#include <atomic>
#include <memory>
#include <random>

class TestDatabaseLinks : public QObject
{
    Q_OBJECT

private slots:
    void linksAreThoseOfLinkingOneByOne_data()
    {
        QTest::addColumn<int>("existing");
        QTest::newRow("an empty database") << 0;
        QTest::newRow("records that were there before") << 5;
    }

    void linksAreThoseOfLinkingOneByOne()
    {
        QFETCH(int, existing);
        std::mt19937 random(7);
        for (int repetition = 0; repetition < 300; ++repetition) {
            const int added = int(random() % 50);
            std::vector<std::unique_ptr<TAVGraph>> records;
            std::vector<std::unique_ptr<TAVGraph>> expected;
            QVector<TAVGraph *> graphs;
            for (int i = 0; i < existing + added; ++i) {
                records.push_back(std::make_unique<TAVGraph>(QString::number(i)));
                expected.push_back(std::make_unique<TAVGraph>(QString::number(i)));
                graphs.append(records.back().get());
            }
            const auto link = [](auto &all, int graph, int subGraph) {
                all[graph]->addSub(all[subGraph].get());
                all[subGraph]->addOver(all[graph].get());
            };
            for (int i = 1; i < existing; ++i) {
                link(records, i, i - 1);
                link(expected, i, i - 1);
            }
            std::vector<RecordLinks> links;
            for (int i = 0; i < added; ++i) {
                if (links.empty() || random() % 4 == 0) {
                    links.emplace_back();
                }
                const int position = existing + i;
                links.back().counts.push_back(int(random() % 6));
                for (int k = links.back().counts.back(); k > 0; --k) {
                    // The first records are named most often, as in real databases; the last may never be.
                    const int index = int(random() % (random() % 2 == 0 ? qMin(position + 1, 3) : position + 1));
                    links.back().indices.push_back(index);
                    link(expected, position, index);
                }
            }
            linkRecords(graphs, existing, std::move(links), [] { return false; });
            const auto names = [](const QList<TAVGraph *> &list) {
                QStringList result;
                for (const TAVGraph *graph : list) {
                    result.append(graph->getName());
                }
                return result;
            };
            for (size_t i = 0; i < records.size(); ++i) {
                QCOMPARE(names(records[i]->getSub()), names(expected[i]->getSub()));
                QCOMPARE(names(records[i]->getOver()), names(expected[i]->getOver()));
            }
        }
    }

    void linkingStopsWhenAsked()
    {
        TAVGraph graph(QStringLiteral("A"));
        std::vector<RecordLinks> links(1);
        links[0] = {{1}, {0}};
        linkRecords({&graph}, 0, std::move(links), [] { return true; });
        QVERIFY(graph.getSub().isEmpty());
        QVERIFY(graph.getOver().isEmpty());
    }

    void listsTakeNoMoreRoomThanTheyNeed()
    {
        // A list that shares its room with others, or has room to grow, would hold the memory of all of them.
        TAVGraph a(QStringLiteral("A"));
        TAVGraph b(QStringLiteral("B"));
        std::vector<RecordLinks> links(1);
        links[0] = {{0, 2}, {0, 0}};
        linkRecords({&a, &b}, 0, std::move(links), [] { return false; });
        QVERIFY(b.subGraphs().isDetached());
        QVERIFY(a.superGraphs().isDetached());
    }

    /// Of a large database, most lists would be copied for each further file.
    void listsThatGetNoLinksStay()
    {
        TAVGraph a(QStringLiteral("A"));
        TAVGraph b(QStringLiteral("B"));
        TAVGraph c(QStringLiteral("C"));
        TAVGraph d(QStringLiteral("D"));
        a.addOver(&b);
        b.addOver(&c);
        const auto *listOfA = &a.superGraphs().first();
        std::vector<RecordLinks> links(1);
        links[0] = {{1}, {1}};
        linkRecords({&a, &b, &c, &d}, 3, std::move(links), [] { return false; });
        QCOMPARE(b.superGraphs(), (QList<TAVGraph *>{&c, &d}));
        QCOMPARE(a.superGraphs(), QList<TAVGraph *>{&b});
        QCOMPARE(&a.superGraphs().first(), listOfA);
    }

    /// Asked to stop at any moment, it makes no list of a part of the links that belong in it.
    void whereverItStopsNoListIsIncomplete()
    {
        constexpr int count = 40;
        for (int moment = 0; moment < 30; ++moment) {
            std::vector<std::unique_ptr<TAVGraph>> records;
            QVector<TAVGraph *> graphs;
            std::vector<RecordLinks> links;
            for (int i = 0; i < count; ++i) {
                records.push_back(std::make_unique<TAVGraph>(QString::number(i)));
                graphs.append(records.back().get());
                if (i % 10 == 0) {
                    links.emplace_back();
                }
                links.back().counts.push_back(1);
                links.back().indices.push_back(0);
            }
            std::atomic<int> asked = 0;
            linkRecords(graphs, 0, std::move(links), [&] { return asked++ >= moment; });
            const int over = graphs.at(0)->superGraphs().size();
            QVERIFY2(over == 0 || over == count, QByteArray::number(over).constData());
            for (const TAVGraph *graph : qAsConst(graphs)) {
                QVERIFY(graph->subGraphs().size() <= 1);
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestDatabaseLinks)
#include "tst_databaselinks.moc"
