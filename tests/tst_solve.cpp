// The linear solver.

#include "solve.h"
#include "support/stderrcapture.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <random>

namespace
{
using Matrix = QVector<QVector<double>>;

bool areClose(const QVector<double> &actual, const QVector<double> &expected)
{
    return actual.size() == expected.size() &&
           std::equal(actual.cbegin(), actual.cend(), expected.cbegin(),
                      [](double a, double b) { return std::abs(a - b) <= 1e-9 * std::max(1.0, std::abs(b)); });
}

/// The same elimination, step by step on plain arrays, to compare with.
QVector<double> solveLiterally(Matrix A, QVector<double> b)
{
    const int n = b.size();
    QVector<double> colMean(n, 0.0);
    QVector<int> perm(n);
    double vMean = 0;
    for (int j = 0; j < n; ++j) {
        perm[j] = j;
        for (int i = 0; i < n; ++i) {
            colMean[j] += A[i][j];
        }
        colMean[j] /= n;
        vMean += b[j];
    }
    vMean /= n;
    for (int i = 0; i < n; ++i) {
        b[i] -= vMean;
        for (int j = 0; j < n; ++j) {
            A[i][j] -= colMean[j];
        }
    }
    for (int k = 0; k < n; ++k) {
        double pivot = A[k][k];
        int pr = k;
        int pq = k;
        for (int r = k; r < n; ++r) {
            for (int q = k; q < n; ++q) {
                if (std::fabs(A[r][q]) > std::fabs(pivot)) {
                    pivot = A[r][q];
                    pr = r;
                    pq = q;
                }
            }
        }
        if (std::fabs(pivot) > 0.0001) {
            for (int j = 0; j < n; ++j) {
                std::swap(A[k][j], A[pr][j]);
            }
            std::swap(b[k], b[pr]);
            for (int i = 0; i < n; ++i) {
                std::swap(A[i][k], A[i][pq]);
            }
            std::swap(perm[k], perm[pq]);
            for (int j = 0; j < n; ++j) {
                A[k][j] /= pivot;
            }
            b[k] /= pivot;
            for (int i = 0; i < n; ++i) {
                if (i != k) {
                    const double f = A[i][k];
                    for (int j = 0; j < n; ++j) {
                        if (j != k) {
                            A[i][j] -= f * A[k][j];
                        }
                    }
                    b[i] -= f * b[k];
                    A[i][k] = 0;
                }
            }
        } else {
            for (int j = k; j < n; ++j) {
                b[j] = 0;
            }
            break;
        }
    }
    QVector<double> x;
    for (int q = 0; q < n; ++q) {
        for (int j = 0; j < n; ++j) {
            if (perm[j] == q) {
                x.append(b[j]);
            }
        }
    }
    double intercept = vMean;
    for (int q = 0; q < n; ++q) {
        intercept -= x[q] * colMean[q];
    }
    x.append(intercept);
    return x;
}

Matrix randomMatrix(int n, int rank, std::mt19937 &random)
{
    std::uniform_real_distribution<double> entry(-10.0, 10.0);
    Matrix M(n, QVector<double>(n));
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            M[i][j] = j < rank ? entry(random) : M[i][j - rank];
        }
    }
    return M;
}
} // namespace

class TestSolve : public QObject
{
    Q_OBJECT

private slots:
    void handSolvedSystems_data();
    void handSolvedSystems();
    void undeterminedUnknownsAreZero();
    void smallPivotsCountAsZero();
    void consistentSystemsAreSolvedExactly();
    void agreesWithTheEliminationWrittenOut();
    void sizesThatDoNotFit_data();
    void sizesThatDoNotFit();
};

void TestSolve::handSolvedSystems_data()
{
    QTest::addColumn<Matrix>("M");
    QTest::addColumn<QVector<double>>("v");
    QTest::addColumn<QVector<double>>("expected");
    // One equation is centred away: the unknown is not determined and the intercept is all there is.
    QTest::newRow("one equation") << Matrix{{4}} << QVector<double>{12} << QVector<double>{0, 12};
    // Through (1, 3) and (2, 5) in the first column: slope 2, intercept 1.
    QTest::newRow("a line") << Matrix{{1, 0}, {2, 0}} << QVector<double>{3, 5} << QVector<double>{2, 0, 1};
    // The second column varies most, so that the columns are exchanged and put back.
    QTest::newRow("a line in the second column")
        << Matrix{{0, 1}, {0, 2}} << QVector<double>{3, 5} << QVector<double>{0, 2, 1};
    // v = 2 a - b + 5 at (0, 0), (1, 0), (0, 1).
    QTest::newRow("a plane") << Matrix{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}} << QVector<double>{5, 7, 4}
                             << QVector<double>{2, -1, 0, 5};
}

void TestSolve::handSolvedSystems()
{
    QFETCH(Matrix, M);
    QFETCH(QVector<double>, v);
    QFETCH(QVector<double>, expected);
    QVERIFY(areClose(solve(M, v), expected));
}

void TestSolve::undeterminedUnknownsAreZero()
{
    // Equal columns: the first takes everything, the second nothing.
    QVERIFY(areClose(solve({{1, 1, 1}, {2, 2, 2}, {4, 4, 4}}, {10, 20, 40}), {10, 0, 0, 0}));
    QCOMPARE(solve({{3, 3}, {3, 3}}, {1, 2}), (QVector<double>{0, 0, 1.5}));
}

void TestSolve::smallPivotsCountAsZero()
{
    // Centred, the only entries are -0.0001 and 0.0001, and -0.0002 and 0.0002.
    QCOMPARE(solve({{0, 0}, {0.0002, 0}}, {0, 1}), (QVector<double>{0, 0, 0.5}));
    QVERIFY(areClose(solve({{0, 0}, {0.0004, 0}}, {0, 1}), {2500, 0, 0}));
}

void TestSolve::consistentSystemsAreSolvedExactly()
{
    std::mt19937 random(11);
    for (int n = 1; n <= 12; ++n) {
        const Matrix M = randomMatrix(n, n, random);
        const QVector<double> wanted = randomMatrix(n, n, random)[0];
        QVector<double> v(n, 3.25);
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                v[i] += M[i][j] * wanted[j];
            }
        }
        const QVector<double> found = solve(M, v);
        QCOMPARE(found.size(), n + 1);
        for (int i = 0; i < n; ++i) {
            double value = found[n];
            for (int j = 0; j < n; ++j) {
                value += M[i][j] * found[j];
            }
            QVERIFY2(std::abs(value - v[i]) < 1e-7, qPrintable(QStringLiteral("n = %1, equation %2").arg(n).arg(i)));
        }
    }
}

void TestSolve::agreesWithTheEliminationWrittenOut()
{
    std::mt19937 random(12);
    for (int round = 0; round < 200; ++round) {
        const int n = 2 + round % 9;
        const Matrix M = randomMatrix(n, 1 + int(random() % n), random);
        const QVector<double> v = randomMatrix(n, n, random)[0];
        QVERIFY2(areClose(solve(M, v), solveLiterally(M, v)), qPrintable(QStringLiteral("round %1").arg(round)));
    }
}

void TestSolve::sizesThatDoNotFit_data()
{
    QTest::addColumn<Matrix>("M");
    QTest::addColumn<QVector<double>>("v");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("2 x 3 for 2") << Matrix{{1, 2, 3}, {4, 5, 6}} << QVector<double>{1, 2}
                                 << QByteArray("DIMENSION ERROR IN solve()\nVEC :2\nMAT :2 x 3\n");
    QTest::newRow("a row too few") << Matrix{{1, 2}} << QVector<double>{1, 2}
                                   << QByteArray("DIMENSION ERROR IN solve()\nVEC :2\nMAT :1 x 2\n");
    QTest::newRow("short last row") << Matrix{{1, 2}, {3}} << QVector<double>{1, 2}
                                    << QByteArray("DIMENSION ERROR IN solve()\nVEC :2\nMAT :2 x 2\n");
    QTest::newRow("no rows") << Matrix{} << QVector<double>{1}
                             << QByteArray("DIMENSION ERROR IN solve()\nVEC :1\nMAT :0 x 0\n");
}

void TestSolve::sizesThatDoNotFit()
{
    QFETCH(Matrix, M);
    QFETCH(QVector<double>, v);
    int thrown = 0;
    StderrCapture errors;
    try {
        solve(M, v);
    } catch (int value) {
        thrown = value;
    }
    QTEST(errors.take(), "message");
    QCOMPARE(thrown, 1);
}

QTEST_APPLESS_MAIN(TestSolve)
#include "tst_solve.moc"
