// Every large allocation of the operations behind the window fails once: the failure is told, the lists survive, and
// what is said to have succeeded is right.

#include "TAVmanager.h"
#include "support/failingallocations.h"
#include "support/heapuse.h"
#include "support/literals.h"
#include "support/loading.h"
#include "support/testfiles.h"

#include <QtTest>

#include <functional>
#include <memory>

namespace
{
/// A manager with the sample database, average distances as both invariants, and some lists.
class Desk
{
public:
    Desk()
    {
        QObject::connect(&manager, &TAVManager::signal_console, [this](const QString &line) { console.append(line); });
        load();
        manager.loadInv1(example("connected-8.averagedistance.txt"));
        manager.loadInv2(example("connected-8.averagedistance.txt"));
        manager.addI1leI2List(QStringLiteral("all"));
        manager.addI1geI2subsList(QStringLiteral("some"));
    }

    /// Loads the sample database and returns whether it is there.
    bool load() { return loadAndWait(manager, example("connected-8.tav")); }

    QMap<QString, QStringList> lists()
    {
        QMap<QString, QStringList> all;
        for (const QString &name : manager.listNames()) {
            all.insert(name, manager.getList(name));
        }
        return all;
    }

    TAVManager manager;
    QStringList console;
    TestFolder folder;
};

const QString newName = QStringLiteral("new");

using Operation = std::function<bool(Desk &)>;

/// An operation that tells nothing but on the console.
Operation derivation(void (TAVManager::*operation)())
{
    return [operation](Desk &desk) {
        desk.console.clear();
        (desk.manager.*operation)();
        return desk.console.isEmpty();
    };
}

Operation invariantLoad(void (TAVManager::*operation)(const QString &))
{
    return [operation](Desk &desk) {
        (desk.manager.*operation)(example("connected-8.diameter.txt"));
        return desk.console.last().startsWith(QLatin1String("Read "));
    };
}
} // namespace

Q_DECLARE_METATYPE(Operation)

class TestMemory : public QObject
{
    Q_OBJECT

private slots:
    void operations_data();
    void operations();
    void loads_data();
    void loads();
    void aManagerGivesItsMemoryBack();
};

void TestMemory::operations_data()
{
    QTest::addColumn<Operation>("operation");
    const auto builder = [](const char *title, bool (TAVManager::*add)(const QString &)) {
        QTest::newRow(title) << Operation([add](Desk &desk) { return (desk.manager.*add)(newName); });
    };
    const auto combination = [](const char *title,
                                bool (TAVManager::*add)(const QString &, const QString &, const QString &)) {
        QTest::newRow(title) << Operation(
            [add](Desk &desk) { return (desk.manager.*add)(newName, QStringLiteral("all"), QStringLiteral("some")); });
    };
    combination("union", &TAVManager::addUnionList);
    combination("intersection", &TAVManager::addInterList);
    combination("difference", &TAVManager::addExceptList);
    QTest::newRow("graphs below") << Operation(
        [](Desk &desk) { return desk.manager.addSubsList(newName, QStringLiteral("some")); });
    QTest::newRow("graphs above") << Operation(
        [](Desk &desk) { return desk.manager.addOverList(newName, QStringLiteral("some")); });
    builder("I1 >= I2", &TAVManager::addI1geI2List);
    builder("walk down", &TAVManager::addI1geI2subsList);
    builder("walk up", &TAVManager::addI1leI2overList);
    builder("walk for equality", &TAVManager::addI1eqI2subsList);
    QTest::newRow("average") << derivation(&TAVManager::avgAll1);
    QTest::newRow("exchange") << derivation(&TAVManager::exch_1_2);
    QTest::newRow("load I1") << invariantLoad(&TAVManager::loadInv1);
    QTest::newRow("load I2") << invariantLoad(&TAVManager::loadInv2);
    QTest::newRow("list from a file") << Operation(
        [](Desk &desk) { return desk.manager.addListFromFile(newName, example("connected-8.averagedistance.txt")); });
    QTest::newRow("save a list") << Operation(
        [](Desk &desk) { return desk.manager.saveList(QStringLiteral("all"), desk.folder.path("saved")); });
    QTest::newRow("save the names") << Operation(
        [](Desk &desk) { return desk.manager.saveGraphs(desk.folder.path("saved")); });
    QTest::newRow("save I1") << Operation([](Desk &desk) { return desk.manager.saveInv1(desk.folder.path("saved")); });
}

void TestMemory::operations()
{
    QFETCH(Operation, operation);
    Desk untroubled;
    QVERIFY(operation(untroubled));
    const QMap<QString, QStringList> expected = untroubled.lists();
    const QByteArray saved =
        QFile::exists(untroubled.folder.path("saved")) ? contents(untroubled.folder.path("saved")) : "";

    for (const Shortage shortage : {Shortage::Once, Shortage::FromThenOn}) {
        Desk desk;
        const QMap<QString, QStringList> before = desk.lists();
        bool isShort = true;
        for (int number = 1; isShort; ++number) {
            QFile old(desk.folder.path("saved"));
            if (!saved.isEmpty()) {
                QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
                old.close();
            }
            startShortage(shortage, number);
            const bool succeeded = operation(desk);
            isShort = hasAllocationFailed();
            startShortage(Shortage::None);

            if (succeeded) { // with less memory, or all that it needs
                QCOMPARE(desk.lists(), expected);
                desk.manager.remList(newName);
            } else {
                QVERIFY(isShort);
                QVERIFY2(desk.console.contains(QStringLiteral("Not enough memory.")),
                         qPrintable(desk.console.join(QLatin1Char('\n'))));
            }
            QCOMPARE(desk.lists(), before);
            if (!saved.isEmpty()) {
                QCOMPARE(contents(desk.folder.path("saved")), succeeded ? saved : QByteArray("old"));
                QCOMPARE(QDir(desk.folder.path()).entryList(QDir::Files | QDir::Hidden), words({"saved"}));
            }
            QVERIFY2(number < 1000, "the same allocation again and again");
        }
    }
}

void TestMemory::loads_data()
{
    QTest::addColumn<int>("shortage");
    QTest::newRow("once") << int(Shortage::Once);
    QTest::newRow("from then on") << int(Shortage::FromThenOn);
}

void TestMemory::loads()
{
    QFETCH(int, shortage);
    Desk desk;
    const QMap<QString, QStringList> before = desk.lists();
    int failures = 0;
    bool isShort = true;
    for (int number = 1; isShort; ++number) {
        desk.console.clear();
        startShortage(Shortage(shortage), number);
        const bool loaded = desk.load();
        isShort = hasAllocationFailed();
        startShortage(Shortage::None);
        if (loaded) {
            QCOMPARE(desk.console.last(), QStringLiteral("Data loaded : 12113 nodes and 71258 links."));
        } else {
            ++failures;
            QVERIFY(isShort);
            QCOMPARE(desk.console.last(), QStringLiteral("Not enough memory."));
            QVERIFY(!desk.manager.saveGraphs(desk.folder.path("saved")));
            QCOMPARE(desk.console.last(), QStringLiteral("No data to save."));
        }
        QCOMPARE(desk.lists(), before);
        QVERIFY2(number < 1000, "the same allocation again and again");
    }
    QVERIFY(failures > 3);
}

/// A manager frees its records and its lists.
void TestMemory::aManagerGivesItsMemoryBack()
{
    { // what Qt sets up once stays
        const Desk first;
    }
    const size_t before = heapUse();
    {
        const Desk second;
        QVERIFY(heapUse() > before + 1000000);
    }
    QVERIFY2(heapUse() < before + 10000, QByteArray::number(qulonglong(heapUse() - before)).constData());
}

QTEST_GUILESS_MAIN(TestMemory)
#include "tst_memory.moc"
