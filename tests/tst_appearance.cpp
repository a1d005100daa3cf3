// How the window looks where a pixel of it is four of the screen, in a dark theme, and with letters of twice the size.

#include "nodedisplay.h"
#include "support/darktheme.h"
#include "support/literals.h"
#include "support/mainwindowfixture.h"
#include "support/patience.h"
#include "support/windowdriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTableWidget>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace
{
constexpr int scale = 2;
}

class TestAppearance : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("QT_SCALE_FACTOR", QByteArray::number(scale)); }

private slots:
    void init();
    void cleanup();

    void iconsAreSharp();
    void radioButtonsInADarkTheme_data();
    void radioButtonsInADarkTheme();
    void textIsReadable_data();
    void textIsReadable();
    void aLightThemeKeepsItsColours();
    void largeTextsFit_data();
    void largeTextsFit();
    void smallestSize();
    void allNeighboursAreSeen();

private:
    QPalette usualPalette;
    QFont usualFont;
};

namespace
{
const QStringList modes = words({"Lists manipulation", "Invariants manipulation", "Visualization"});

/// Loads a database, so that every mode has its panels.
void loadSmall(MainWindowFixture &fixture)
{
    QVERIFY(fixture.load(fixture.write(QStringLiteral("small.tav"), "@\nA_\t0\nBw\t1\n")));
}

/// The shown widgets of a type.
template<typename Type> QList<Type *> shown(const QWidget &window)
{
    QList<Type *> found = window.findChildren<Type *>();
    found.erase(std::remove_if(found.begin(), found.end(), [](Type *widget) { return !widget->isVisible(); }),
                found.end());
    return found;
}

/// The mean difference of the pixels that @p icon covers from those of @p image, where it fits best near the place
/// @p near.
double difference(const QImage &image, const QImage &icon, QPoint near)
{
    constexpr int distance = 4;
    double least = std::numeric_limits<double>::max();
    for (int dx = -distance; dx <= distance; ++dx) {
        for (int dy = -distance; dy <= distance; ++dy) {
            double sum = 0;
            int count = 0;
            for (int x = 0; x < icon.width(); ++x) {
                for (int y = 0; y < icon.height(); ++y) {
                    const QColor expected = icon.pixelColor(x, y);
                    const QPoint place = near + QPoint(dx + x, dy + y);
                    if (expected.alpha() == 255 && image.valid(place)) {
                        const QColor actual = image.pixelColor(place);
                        sum += std::abs(actual.red() - expected.red()) + std::abs(actual.green() - expected.green()) +
                               std::abs(actual.blue() - expected.blue());
                        ++count;
                    }
                }
            }
            least = std::min(least, sum / count);
        }
    }
    return least;
}

/// The contrast of two colours, from 1 to 21, as the Web Content Accessibility Guidelines define it.
double contrast(const QColor &a, const QColor &b)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    const auto luminance = [&](const QColor &colour) {
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
    };
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

/// What a widget is, for a message.
QString described(const QWidget *widget)
{
    return QLatin1String(widget->metaObject()->className()) + QLatin1Char(' ') + widget->property("text").toString();
}

/// Adds a row a mode and a theme, which comes before the window or while it is there.
void addThemeRows()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<bool>("changes");
    QTest::newRow("light") << false << false;
    QTest::newRow("dark") << true << false;
    QTest::newRow("becomes dark") << true << true;
    QTest::newRow("becomes light") << false << true;
}
} // namespace

void TestAppearance::init()
{
    usualPalette = QApplication::palette();
    usualFont = QApplication::font();
}

void TestAppearance::cleanup()
{
    QApplication::setPalette(usualPalette);
    QApplication::setFont(usualFont);
}

/// Each pixel of the screen is one of the picture.
void TestAppearance::iconsAreSharp()
{
    MainWindowFixture fixture;
    loadSmall(fixture);
    int count = 0;
    for (const QString &mode : modes) {
        driver::click(fixture.window, mode);
        const QList<QAbstractButton *> buttons = shown<QAbstractButton>(*fixture.window);
        for (QAbstractButton *button : buttons) {
            if (button->icon().isNull() || !button->isEnabled()) {
                continue;
            }
            const QSize size = button->iconSize() * scale;
            const QImage icon =
                button->icon().pixmap(1000).toImage().scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            const QImage image = button->grab().toImage();
            QCOMPARE(image.size(), button->size() * scale);
            // A tool button shows its icon in the middle, another one before its text.
            const int text = qobject_cast<QToolButton *>(button) != nullptr
                                 ? 0
                                 : button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width() + 4;
            const QPoint middle((image.width() - text * scale - size.width()) / 2,
                                (image.height() - size.height()) / 2);
            const double found = difference(image, icon, middle);
            QVERIFY2(found < 3, qPrintable(described(button) + QStringLiteral(" differs by %1").arg(found)));
            ++count;
        }
    }
    QVERIFY2(count > 3 * 4 + 10, "the tool bar's in each mode, and those of the panels");
}

void TestAppearance::radioButtonsInADarkTheme_data()
{
    addThemeRows();
}

/// One that is not checked is empty, that is, light as the panel.
void TestAppearance::radioButtonsInADarkTheme()
{
    QFETCH(bool, isDark);
    QFETCH(bool, changes);
    QApplication::setPalette(isDark != changes ? darkTheme() : usualPalette);
    const MainWindowFixture fixture;
    QApplication::setPalette(isDark ? darkTheme() : usualPalette);
    QCoreApplication::sendPostedEvents();
    const QList<QRadioButton *> buttons = shown<QRadioButton>(*fixture.window);
    QCOMPARE(buttons.size(), 3);
    for (QRadioButton *button : buttons) {
        QStyleOptionButton option;
        option.initFrom(button);
        const QRect indicator = button->style()->subElementRect(QStyle::SE_RadioButtonIndicator, &option, button);
        const QColor middle = button->grab().toImage().pixelColor(indicator.center() * scale);
        QVERIFY2(button->isChecked() ? middle.lightness() < 128 : middle.lightness() > 240,
                 qPrintable(described(button) + QLatin1Char(' ') + middle.name()));
    }
}

void TestAppearance::textIsReadable_data()
{
    addThemeRows();
}

void TestAppearance::textIsReadable()
{
    constexpr double least = 4.5; // what the guidelines ask for
    QFETCH(bool, isDark);
    QFETCH(bool, changes);
    QApplication::setPalette(isDark != changes ? darkTheme() : usualPalette);
    MainWindowFixture fixture;
    loadSmall(fixture);
    QApplication::setPalette(isDark ? darkTheme() : usualPalette);
    for (const QString &mode : modes) {
        driver::click(fixture.window, mode);
        const QList<QWidget *> widgets = shown<QWidget>(*fixture.window);
        for (const QWidget *widget : widgets) {
            if (!widget->isEnabled()) {
                continue;
            }
            const QPair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
                {QPalette::WindowText, QPalette::Window},
                {QPalette::ButtonText, QPalette::Button},
                {QPalette::Text, QPalette::Base},
            };
            for (const auto &[text, ground] : pairs) {
                const double found = contrast(widget->palette().color(text), widget->palette().color(ground));
                QVERIFY2(found >= least, qPrintable(described(widget) + QStringLiteral(": %1").arg(found)));
            }
        }
    }
}

void TestAppearance::aLightThemeKeepsItsColours()
{
    QPalette theme = usualPalette;
    theme.setColor(QPalette::Button, QColor(200, 220, 240));
    theme.setColor(QPalette::WindowText, QColor(0, 0, 80));
    QApplication::setPalette(theme);
    const MainWindowFixture fixture;
    for (const QRadioButton *button : shown<QRadioButton>(*fixture.window)) {
        QCOMPARE(button->palette().color(QPalette::Button), QColor(200, 220, 240));
        QCOMPARE(button->palette().color(QPalette::WindowText), QColor(0, 0, 80));
        QCOMPARE(button->palette().color(QPalette::Window), QColor(255, 255, 235));
    }
}

void TestAppearance::largeTextsFit_data()
{
    QTest::addColumn<QString>("mode");
    for (const QString &mode : modes) {
        QTest::newRow(qPrintable(mode)) << mode;
    }
}

/// No text is cut off, and no widget is smaller than it wants to be at least.
void TestAppearance::largeTextsFit()
{
    QFETCH(QString, mode);
    QFont font = usualFont;
    font.setPointSizeF(2 * usualFont.pointSizeF());
    QApplication::setFont(font);
    MainWindowFixture fixture;
    loadSmall(fixture);
    driver::click(fixture.window, mode);
    QCoreApplication::processEvents();
    int count = 0;
    const QList<QWidget *> widgets = shown<QWidget>(*fixture.window);
    for (QWidget *widget : widgets) {
        const auto *button = qobject_cast<QAbstractButton *>(widget);
        const auto *label = qobject_cast<QLabel *>(widget);
        if (button == nullptr && label == nullptr && qobject_cast<QLineEdit *>(widget) == nullptr &&
            qobject_cast<QComboBox *>(widget) == nullptr && qobject_cast<QProgressBar *>(widget) == nullptr &&
            qobject_cast<QTextEdit *>(widget) == nullptr) {
            continue;
        }
        const QString text = described(widget);
        const QSize needed = widget->minimumSizeHint();
        QVERIFY2(widget->width() >= needed.width() && widget->height() >= needed.height(),
                 qPrintable(text + QStringLiteral(" %1 x %2, needs %3 x %4")
                                       .arg(widget->width())
                                       .arg(widget->height())
                                       .arg(needed.width())
                                       .arg(needed.height())));
        const bool showsText = qobject_cast<QToolButton *>(widget) == nullptr;
        QVERIFY2(!showsText ||
                     widget->width() >=
                         widget->fontMetrics().size(Qt::TextShowMnemonic, widget->property("text").toString()).width(),
                 qPrintable(text));
        QVERIFY2(fixture.window->rect().contains(QRect(widget->mapTo(fixture.window, QPoint()), widget->size())),
                 qPrintable(text));
        QCOMPARE(widget->font().pointSizeF(), font.pointSizeF());
        ++count;
    }
    QVERIFY(count > 15);
}

/// The window is not larger than the panels of its mode need, and does not grow from mode to mode.
void TestAppearance::smallestSize()
{
    MainWindowFixture fixture;
    loadSmall(fixture);
    for (const int mode : {0, 1, 2, 1, 0, 2, 0}) {
        QCoreApplication::postEvent(fixture.window, new QEvent(QEvent::LayoutRequest)); // as a new text does
        for (QRadioButton *button : shown<QRadioButton>(*fixture.window)) {
            if (button->text() == modes[mode]) {
                button->click();
            }
        }
        QCoreApplication::processEvents();
        QCOMPARE(fixture.window->minimumSize(), QSize(800, 800));
        QCOMPARE(fixture.window->size(), QSize(800, 800));
    }
    fixture.window->centralWidget()->setMinimumHeight(1000);
    QTRY_VERIFY_WITH_TIMEOUT(fixture.window->minimumHeight() > 1000, patience);
    fixture.window->centralWidget()->setMinimumHeight(0);
    QTRY_COMPARE_WITH_TIMEOUT(fixture.window->minimumSize(), QSize(800, 800), patience);
}

/// A long text in the information dialog of a vertex is broken into lines, all of which are shown.
void TestAppearance::allNeighboursAreSeen()
{
    QStringList names;
    for (int i = 1; i <= 12; ++i) {
        names.append(QStringLiteral("Node %1").arg(i));
    }
    const QString text = names.join(QStringLiteral(", "));
    NodeDisplay dialog(QStringLiteral("Node 13"));
    dialog.setText(QStringLiteral("Neighbours"), text);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog, patience));
    const auto *table = dialog.findChild<QTableWidget *>();
    const auto neededHeight = [&] {
        const QRect column(0, 0, table->columnWidth(0) - 8, 1000);
        return table->fontMetrics().boundingRect(column, Qt::TextWordWrap, text).height();
    };
    QTRY_VERIFY_WITH_TIMEOUT(table->rowHeight(0) >= neededHeight(), patience);
    QVERIFY(neededHeight() > 2 * table->fontMetrics().height());
}

QTEST_MAIN(TestAppearance)
#include "tst_appearance.moc"
