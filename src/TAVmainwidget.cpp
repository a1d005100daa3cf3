#include "TAVmainwidget.h"

#include "TAVmanager.h"
#include "applicationtitle.h"
#include "graph.h"
#include "inputfile.h"
#include "shortened.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QButtonGroup>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSettings>
#include <QSlider>
#include <QTextCursor>
#include <QTextEdit>

#include <iostream>
#include <new>
#include <utility>

namespace
{
constexpr char databaseFilter[] = "File type (*.tav)";
constexpr char listFilter[] = "File type (*.g6)";
constexpr char invariantFilter[] = "File type (*.txt)";

const QColor panelColour(255, 255, 235);
const QColor lightButtonColour(239, 239, 239);
constexpr double vertexRadius = 20.0;
constexpr int smallestViewHeight = 340;
constexpr double circleDiameter = 200.0;
constexpr int smallestZoom = 5;
constexpr int largestZoom = 1000;
constexpr int initialZoom = 300;
constexpr int buttonsPerRow = 3;
constexpr int longestConsoleLine = 10000; // characters
constexpr int longestTipLine = 60;        // characters

QString workDirKey()
{
    return QStringLiteral("wd");
}

/// The colours of a panel. It is light in every theme: from a dark one it takes the selection only, since what stands
/// on the panel would be light on light otherwise, or look pressed and checked.
QPalette panelPalette(const QPalette &theme)
{
    const bool isDark = theme.color(QPalette::Window).lightness() < theme.color(QPalette::WindowText).lightness();
    QPalette colours = isDark ? QPalette(lightButtonColour, panelColour) : theme;
    colours.setColor(QPalette::Window, panelColour);
    colours.setColor(QPalette::Highlight, theme.color(QPalette::Highlight));
    colours.setColor(QPalette::HighlightedText, theme.color(QPalette::HighlightedText));
    return colours;
}

QIcon icon(const char *name)
{
    return QIcon(QStringLiteral(":/images/%1.png").arg(QLatin1String(name)));
}

/// A sentence in lines of a length that is read at a glance. QToolTip makes one long line of a text that is not HTML.
QString inLines(const QString &sentence)
{
    QString text;
    int length = 0; // of the last line
    const QStringList words = sentence.split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (length + 1 + word.size() > longestTipLine) {
            text += QLatin1Char('\n');
            length = 0;
        } else if (length > 0) {
            text += QLatin1Char(' ');
            ++length;
        }
        text += word;
        length += word.size();
    }
    return text;
}

/// Explains a control to who points at it and to who has its description read out. The name is for a control whose
/// text does not tell what it is.
void explain(QWidget *control, const QString &sentence, const QString &name = {})
{
    control->setToolTip(inLines(sentence));
    control->setAccessibleDescription(sentence);
    if (!name.isEmpty()) {
        control->setAccessibleName(name);
    }
}

/// Names the parts of a widget that scrolls: a screen reader takes them for widgets of their own.
void nameParts(QAbstractScrollArea *area)
{
    const QList<QWidget *> parts = area->findChildren<QWidget *>();
    for (QWidget *part : parts) {
        part->setAccessibleName(area->accessibleName());
    }
}

/// Adds the widgets of a layout, and those of the layouts within, that take the keyboard.
void addTabStops(const QLayout *layout, QVector<QWidget *> &stops)
{
    for (int i = 0; i < layout->count(); ++i) {
        QWidget *widget = layout->itemAt(i)->widget();
        const QLayout *inner = widget != nullptr ? widget->layout() : layout->itemAt(i)->layout();
        if (inner != nullptr) {
            addTabStops(inner, stops);
        } else if (widget != nullptr && widget->focusPolicy() != Qt::NoFocus) {
            stops.append(widget);
        }
    }
}

/// What a button does that derives I2 from I1 of the neighbours.
QString derivationTip(const char *value, const char *neighbours)
{
    return QStringLiteral("Sets I2 of every graph to the %1 I1 among its %2; without any, I2 is missing.")
        .arg(QLatin1String(value), QLatin1String(neighbours));
}

/// What a button does that compares I1 of a graph with its own I2.
QString comparisonTip(const char *relation)
{
    return QStringLiteral("Lists the graphs whose I1 is %1 their own I2.").arg(QLatin1String(relation));
}

/// What a button does that compares I1 of a graph with I2 of the graphs below or above it.
QString walkTip(const char *relation, const char *direction)
{
    return QStringLiteral("Lists the graphs whose I1 is %1 I2 of every graph %2 them that is reached; a graph without "
                          "I2 is neither compared nor passed, and at least one must be compared.")
        .arg(QLatin1String(relation), QLatin1String(direction));
}

/// The name of the next list. A file that is dragged is no text for it: it is left to the window.
class NameLine : public QLineEdit
{
protected:
    void dragEnterEvent(QDragEnterEvent *event) override
    {
        if (event->mimeData()->hasUrls()) {
            event->ignore();
        } else {
            QLineEdit::dragEnterEvent(event);
        }
    }
};
} // namespace

TAVMainWidget::TAVMainWidget(QWidget *parent) : QWidget(parent), manager(new TAVManager)
{
    workDir = QSettings().value(workDirKey()).toString();
    setAccessibleName(tr("Panels"));
    connectManager();
    createCombos();
    modePanel = createModePanel();
    visualizationPanel = createVisualizationPanel();
    invariantsPanel = createInvariantsPanel();
    comparisonPanel = createComparisonPanel();
    listsPanel = createListsPanel();
    arrangePanels();
    show();
}

TAVMainWidget::~TAVMainWidget()
{
    delete manager;
}

// The database.

void TAVMainWidget::slot_open()
{
    startLoading(askForFileToOpen(databaseFilter));
}

void TAVMainWidget::loadDatabase(const QString &file)
{
    QFile database(file);
    if (openForReading(database)) {
        startLoading(file);
        return;
    }
    // There is no database then, as after the button.
    slot_manager_busy();
    manager->resetDatabase();
    slot_console(tr("Unable to open file :") + file);
}

void TAVMainWidget::startLoading(const QString &file)
{
    slot_manager_busy();
    manager->loadDatabase(file);
}

void TAVMainWidget::slot_clear()
{
    manager->resetDatabase();
}

void TAVMainWidget::slot_set_wd()
{
    workDir = QFileDialog::getExistingDirectory(this, tr(applicationTitle), startDir(), QFileDialog::ShowDirsOnly);
    QSettings().setValue(workDirKey(), workDir);
}

// What the manager reports.

void TAVMainWidget::slot_manager_busy()
{
    listsPanel->setEnabled(false);
}

void TAVMainWidget::slot_manager_ready()
{
    listsPanel->setEnabled(true);
}

void TAVMainWidget::slot_database_loaded()
{
    hasLoaded = true;
    progressBar->setValue(0);
    listsPanel->setEnabled(true);
    if (listsMode->isChecked()) {
        listsPanel->show();
    }
    if (invariantsMode->isChecked()) {
        invariantsPanel->show();
    }
}

void TAVMainWidget::slot_database_empty()
{
    progressBar->setValue(0);
}

void TAVMainWidget::slot_progress(int done, int total)
{
    progressBar->setMaximum(total);
    progressBar->setValue(done);
}

// QTextEdit::append() takes a text that looks like HTML for HTML. A list may have any name.
void TAVMainWidget::slot_console(const QString &text)
{
    QTextCursor end(console->document());
    end.movePosition(QTextCursor::End);
    if (!console->document()->isEmpty()) {
        end.insertBlock();
    }
    end.insertText(shortened(text, longestConsoleLine));
}

void TAVMainWidget::slot_list_changed()
{
    const QStringList names = manager->listNames();
    for (QComboBox *combo : qAsConst(combos)) {
        combo->clear();
        combo->addItems(names);
    }
}

// The panels.

void TAVMainWidget::slot_adjust_mode()
{
    if (!hasLoaded) {
        return;
    }
    const std::pair<QWidget *, QRadioButton *> panels[] = {
        {listsPanel, listsMode},
        {invariantsPanel, invariantsMode},
        {comparisonPanel, invariantsMode},
        {visualizationPanel, visualizationMode},
    };
    // Panels of two modes at a time would need a larger window, which would not become smaller again.
    for (const auto &[panel, mode] : panels) {
        if (!mode->isChecked()) {
            panel->hide();
        }
    }
    for (const auto &[panel, mode] : panels) {
        if (mode->isChecked()) {
            panel->show();
        }
    }
}

// New lists from old ones and from files.

void TAVMainWidget::slot_list_sub()
{
    slot_manager_busy();
    manager->addSubsList(newListName->text(), closureSource->currentText());
}

void TAVMainWidget::slot_list_over()
{
    slot_manager_busy();
    manager->addOverList(newListName->text(), closureSource->currentText());
}

void TAVMainWidget::slot_list_file()
{
    const QString file = askForFileToOpen(listFilter);
    manager->addListFromFile(newListName->text(), file);
}

void TAVMainWidget::slot_list_union()
{
    slot_manager_busy();
    manager->addUnionList(newListName->text(), unionFirst->currentText(), unionSecond->currentText());
}

void TAVMainWidget::slot_list_inter()
{
    slot_manager_busy();
    manager->addInterList(newListName->text(), interFirst->currentText(), interSecond->currentText());
}

void TAVMainWidget::slot_list_except()
{
    slot_manager_busy();
    manager->addExceptList(newListName->text(), exceptFirst->currentText(), exceptSecond->currentText());
}

void TAVMainWidget::slot_list_rem()
{
    slot_manager_busy();
    manager->remList(removeChoice->currentText());
}

void TAVMainWidget::slot_list_save()
{
    slot_manager_busy();
    const QString file = askForFileToSave(listFilter);
    manager->saveList(saveChoice->currentText(), file);
}

// Files of the database.

void TAVMainWidget::slot_save_all()
{
    slot_manager_busy();
    manager->saveGraphs(askForFileToSave(listFilter));
}

void TAVMainWidget::slot_save_inv1()
{
    slot_manager_busy();
    manager->saveInv1(askForFileToSave(invariantFilter));
}

void TAVMainWidget::slot_load_inv1()
{
    slot_manager_busy();
    manager->loadInv1(askForFileToOpen(invariantFilter));
}

void TAVMainWidget::slot_load_inv2()
{
    slot_manager_busy();
    manager->loadInv2(askForFileToOpen(invariantFilter));
}

// clang-format off

// Invariants.

void TAVMainWidget::slot_avg_sub1()   { derive(&TAVManager::avgSub1); }
void TAVMainWidget::slot_avg_over1()  { derive(&TAVManager::avgOver1); }
void TAVMainWidget::slot_avg_all1()   { derive(&TAVManager::avgAll1); }
void TAVMainWidget::slot_min_sub1()   { derive(&TAVManager::minSub1); }
void TAVMainWidget::slot_min_over1()  { derive(&TAVManager::minOver1); }
void TAVMainWidget::slot_min_all1()   { derive(&TAVManager::minAll1); }
void TAVMainWidget::slot_max_sub1()   { derive(&TAVManager::maxSub1); }
void TAVMainWidget::slot_max_over1()  { derive(&TAVManager::maxOver1); }
void TAVMainWidget::slot_max_all1()   { derive(&TAVManager::maxAll1); }
void TAVMainWidget::slot_exch_1_2()   { derive(&TAVManager::exch_1_2); }
void TAVMainWidget::slot_i1_gets_i2() { derive(&TAVManager::I1getsI2); }
void TAVMainWidget::slot_i2_gets_i1() { derive(&TAVManager::I2getsI1); }

// Lists by comparing the invariants.

void TAVMainWidget::slot_list_i1_ge_i2()     { compare(&TAVManager::addI1geI2List); }
void TAVMainWidget::slot_list_i1_le_i2()     { compare(&TAVManager::addI1leI2List); }
void TAVMainWidget::slot_list_i1_eq_i2subs() { compare(&TAVManager::addI1eqI2subsList); }
void TAVMainWidget::slot_list_i1_ge_i2subs() { compare(&TAVManager::addI1geI2subsList); }
void TAVMainWidget::slot_list_i1_le_i2subs() { compare(&TAVManager::addI1leI2subsList); }
void TAVMainWidget::slot_list_i1_eq_i2over() { compare(&TAVManager::addI1eqI2overList); }
void TAVMainWidget::slot_list_i1_ge_i2over() { compare(&TAVManager::addI1geI2overList); }
void TAVMainWidget::slot_list_i1_le_i2over() { compare(&TAVManager::addI1leI2overList); }
void TAVMainWidget::slot_list_i1_gt_i2subs() { compare(&TAVManager::addI1gtI2subsList); }
void TAVMainWidget::slot_list_i1_lt_i2subs() { compare(&TAVManager::addI1ltI2subsList); }
void TAVMainWidget::slot_list_i1_gt_i2over() { compare(&TAVManager::addI1gtI2overList); }
void TAVMainWidget::slot_list_i1_lt_i2over() { compare(&TAVManager::addI1ltI2overList); }

// clang-format on

void TAVMainWidget::derive(void (TAVManager::*derivation)())
{
    slot_manager_busy();
    (manager->*derivation)();
}

void TAVMainWidget::compare(bool (TAVManager::*builder)(const QString &))
{
    slot_manager_busy();
    (manager->*builder)(newListName->text());
}

// Browsing.

void TAVMainWidget::slot_next_graph()
{
    showGraphAt(position + 1);
}

void TAVMainWidget::slot_prev_graph()
{
    showGraphAt(position - 1);
}

void TAVMainWidget::slot_first_graph()
{
    showGraphAt(0);
}

void TAVMainWidget::slot_last_graph()
{
    showGraphAt(-1); // the one before the first is the last
}

/// Beyond the ends of the list begins its other end.
void TAVMainWidget::showGraphAt(int newPosition)
{
    slot_manager_busy();
    position = newPosition;
    if (!browseChosenList()) {
        return;
    }
    if (browsedNames.isEmpty()) {
        showNothing();
        return;
    }
    if (position >= browsedNames.size()) {
        position = 0;
    }
    if (position < 0) {
        position = browsedNames.size() - 1;
    }
    const QString &name = browsedNames.at(position);
    if (view->loadg6(name, true)) {
        view->place_circle(circleDiameter);
        view->changeBest();
        view->update_display();
        view->slot_follow_layout();
        showPosition(QString::number(position + 1) + QLatin1Char('/') + QString::number(browsedNames.size()) +
                     QLatin1Char(' ') + shortened(name));
    } else {
        std::cerr << "Failed to load graph" << std::endl;
        showNothing();
    }
    slot_manager_ready();
}

/// Fetches the names of the chosen list when another one was browsed before; returns false, with a console line, when
/// there is no memory for them.
bool TAVMainWidget::browseChosenList()
{
    const QString list = browseChoice->currentText();
    if (list == browsedList) {
        return true;
    }
    try {
        browsedNames = manager->getList(list).toVector();
    } catch (const std::bad_alloc &) {
        slot_console(tr("Not enough memory."));
        slot_manager_ready();
        return false;
    }
    browsedList = list;
    return true;
}

void TAVMainWidget::showNothing()
{
    view->clear();
    view->best_backup();
    showPosition({});
    view->update_display();
}

void TAVMainWidget::showPosition(const QString &text)
{
    positionLabel->setText(text);
    positionLabel->setAccessibleName(text.isEmpty() ? tr("No graph of a list is shown.") : tr("Graph %1").arg(text));
}

// The name is empty when the dialog was cancelled. The operation that gets it fails, and says so.
QString TAVMainWidget::askForFileToOpen(const char *filter)
{
    return QFileDialog::getOpenFileName(this, tr(applicationTitle), startDir(), tr(filter));
}

QString TAVMainWidget::askForFileToSave(const char *filter)
{
    return QFileDialog::getSaveFileName(this, tr(applicationTitle), startDir(), tr(filter));
}

// Where the file dialogs start. Without a directory QFileDialog would start where it was last, in any program.
QString TAVMainWidget::startDir() const
{
    return workDir.isEmpty() ? QStringLiteral("./") : workDir;
}

// Construction.

void TAVMainWidget::connectManager()
{
    connect(manager, &TAVManager::signal_progress, this, &TAVMainWidget::slot_progress);
    connect(manager, &TAVManager::signal_database_empty, this, &TAVMainWidget::slot_database_empty);
    connect(manager, &TAVManager::signal_database_loaded, this, &TAVMainWidget::slot_database_loaded);
    connect(manager, &TAVManager::signal_lists_changed, this, &TAVMainWidget::slot_list_changed);
    connect(manager, &TAVManager::signal_manager_ready, this, &TAVMainWidget::slot_manager_ready);
    connect(manager, &TAVManager::signal_console, this, &TAVMainWidget::slot_console);
}

void TAVMainWidget::createCombos()
{
    const struct {
        QComboBox *&combo;
        const char *name;
        QString shownName;
        QString tip;
    } all[] = {
        {closureSource, "closureSource", tr("Source list"),
         tr("Chooses the list whose super-graphs or sub-graphs are built.")},
        {interFirst, "interFirst", tr("First list of the intersection"),
         tr("Chooses the list whose order the intersection keeps.")},
        {interSecond, "interSecond", tr("Second list of the intersection"),
         tr("Chooses the list that the graphs must be in, too.")},
        {unionFirst, "unionFirst", tr("First list of the union"), tr("Chooses the first list of the union.")},
        {unionSecond, "unionSecond", tr("Second list of the union"), tr("Chooses the second list of the union.")},
        {removeChoice, "removeChoice", tr("List to remove"), tr("Chooses the list to remove.")},
        {exceptFirst, "exceptFirst", tr("List that is kept"), tr("Chooses the list that graphs are left out of.")},
        {exceptSecond, "exceptSecond", tr("List that is left out"),
         tr("Chooses the list of the graphs that are left out.")},
        {saveChoice, "saveChoice", tr("List to save"), tr("Chooses the list to save.")},
        {browseChoice, "browseChoice", tr("List to browse"), tr("Chooses the list to browse.")},
    };
    for (const auto &entry : all) {
        entry.combo = new QComboBox(this);
        entry.combo->setObjectName(QLatin1String(entry.name));
        // QComboBox grows with its longest entry otherwise, and a long list name would widen the window.
        entry.combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        entry.combo->setMinimumContentsLength(12);
        explain(entry.combo, entry.tip, entry.shownName);
        entry.combo->view()->setAccessibleName(entry.shownName);
        combos.append(entry.combo);
    }
}

QWidget *TAVMainWidget::createPanel(const char *name, const QString &shownName)
{
    auto *panel = new QWidget(this);
    panel->setObjectName(QLatin1String(name));
    panel->setAccessibleName(shownName);
    panel->setPalette(panelPalette(palette()));
    panel->setAutoFillBackground(true);
    panel->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum); // the console gets the room that is left
    return panel;
}

QWidget *TAVMainWidget::createModePanel()
{
    QWidget *panel = createPanel("modePanel", tr("Database and mode"));
    auto *grid = new QGridLayout(panel);
    grid->addWidget(createButton({"Load database", &TAVMainWidget::slot_open,
                                  tr("Loads a database file in place of the database that is loaded."), "open"}),
                    0, 0);
    grid->addWidget(createButton({"Set work directory", &TAVMainWidget::slot_set_wd,
                                  tr("Chooses the folder in which the file dialogs start.")}),
                    1, 0);
    grid->addWidget(createButton({"Save all graphs", &TAVMainWidget::slot_save_all,
                                  tr("Saves the names of all graphs of the database to a file, one a line."), "save"}),
                    2, 0);
    grid->addWidget(new QLabel(tr("Mode :")), 0, 1);
    listsMode = createModeButton("Lists manipulation", tr("Shows the commands for lists, once a database has loaded."));
    invariantsMode = createModeButton(
        "Invariants manipulation", tr("Shows the commands for the invariants I1 and I2, once a database has loaded."));
    visualizationMode = createModeButton(
        "Visualization", tr("Shows the viewer, in which a list is browsed, once a database has loaded."));
    grid->addWidget(listsMode, 1, 1);
    grid->addWidget(invariantsMode, 2, 1);
    grid->addWidget(visualizationMode, 1, 2);
    listsMode->setChecked(true);
    auto *modes = new QButtonGroup(panel);
    modes->addButton(listsMode);
    modes->addButton(invariantsMode);
    modes->addButton(visualizationMode);
    return panel;
}

QWidget *TAVMainWidget::createVisualizationPanel()
{
    QWidget *panel = createPanel("visualizationPanel", tr("Visualization"));
    view = new Graph(QStringLiteral("VIZ"), true);
    view->setMinimumHeight(smallestViewHeight);
    view->slot_set_node_radius(vertexRadius);
    connect(view, &Graph::signal_next_graph, this, &TAVMainWidget::slot_next_graph);
    connect(view, &Graph::signal_previous_graph, this, &TAVMainWidget::slot_prev_graph);
    connect(view, &Graph::signal_first_graph, this, &TAVMainWidget::slot_first_graph);
    connect(view, &Graph::signal_last_graph, this, &TAVMainWidget::slot_last_graph);
    view->clear();
    view->best_backup();
    view->update_display();
    view->setAccessibleName(tr("Viewer"));
    view->setAccessibleDescription(
        tr("Shows a graph, which the mouse, the keys and the menu of the right button change."));
    nameParts(view);

    auto *zoom = new QSlider(Qt::Horizontal);
    zoom->setObjectName(QStringLiteral("zoom"));
    zoom->setRange(smallestZoom, largestZoom);
    zoom->setValue(initialZoom);
    view->slot_scale_graph(zoom->value(), false);
    connect(zoom, &QSlider::valueChanged, view, &Graph::slot_rescale_graph);
    explain(zoom, tr("Sets the size of the drawing."), tr("Size of the drawing"));

    positionLabel = new QLabel;
    positionLabel->setObjectName(QStringLiteral("position"));
    positionLabel->setTextFormat(Qt::PlainText);
    positionLabel->setTextInteractionFlags(Qt::TextSelectableByMouse); // which would take the keyboard
    positionLabel->setAlignment(Qt::AlignCenter);
    positionLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long name moves nothing
    showPosition({});

    QPushButton *previous = createButton({"<<=", &TAVMainWidget::slot_prev_graph,
                                          tr("Shows the previous graph of the list, before the first one the last.")});
    previous->setAccessibleName(tr("Previous graph"));
    QPushButton *next = createButton({"=>>", &TAVMainWidget::slot_next_graph,
                                      tr("Shows the next graph of the list, after the last one the first.")});
    next->setAccessibleName(tr("Next graph"));
    keepKeyboardInViewer(zoom, Qt::TabFocus);
    keepKeyboardInViewer(previous, Qt::TabFocus);
    keepKeyboardInViewer(next, Qt::TabFocus);
    keepKeyboardInViewer(positionLabel, Qt::NoFocus);

    auto *grid = new QGridLayout(panel);
    grid->addWidget(new QLabel(tr("GraphList : ")), 0, 0);
    grid->addWidget(browseChoice, 0, 1);
    grid->addWidget(zoom, 0, 2);
    grid->addWidget(view, 1, 0, 3, 3);
    grid->addWidget(previous, 4, 0, Qt::AlignLeft);
    grid->addWidget(positionLabel, 4, 1);
    grid->addWidget(next, 4, 2, Qt::AlignRight);
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(2, 1);
    panel->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    panel->hide();
    return panel;
}

QWidget *TAVMainWidget::createInvariantsPanel()
{
    constexpr char subs[] = "direct sub-graphs";
    constexpr char supers[] = "direct super-graphs";
    constexpr char all[] = "direct sub-graphs and direct super-graphs";
    const Command commands[] = {
        {"Load I1", &TAVMainWidget::slot_load_inv1,
         tr("Reads I1 from a file with one line a graph, in the order of the database."), "open"},
        {"Load I2", &TAVMainWidget::slot_load_inv2,
         tr("Reads I2 from a file with one line a graph, in the order of the database."), "open"},
        {"Save Inv1", &TAVMainWidget::slot_save_inv1, tr("Saves I1 of every graph to a file, NA where it is missing."),
         "save"},
        {"I1 <- I2", &TAVMainWidget::slot_i1_gets_i2, tr("Copies I2 of every graph into its I1.")},
        {"I2 <- I1", &TAVMainWidget::slot_i2_gets_i1, tr("Copies I1 of every graph into its I2.")},
        {"I1 <-> I2", &TAVMainWidget::slot_exch_1_2, tr("Exchanges I1 and I2 of every graph.")},
        {"I2 = Avg sub I1", &TAVMainWidget::slot_avg_sub1, derivationTip("average", subs)},
        {"I2 = Avg super I1", &TAVMainWidget::slot_avg_over1, derivationTip("average", supers)},
        {"I2 = Avg all I1", &TAVMainWidget::slot_avg_all1, derivationTip("average", all)},
        {"I2 = Min sub I1", &TAVMainWidget::slot_min_sub1, derivationTip("smallest", subs)},
        {"I2 = Min super I1", &TAVMainWidget::slot_min_over1, derivationTip("smallest", supers)},
        {"I2 = Min all I1", &TAVMainWidget::slot_min_all1, derivationTip("smallest", all)},
        {"I2 = Max sub I1", &TAVMainWidget::slot_max_sub1, derivationTip("largest", subs)},
        {"I2 = Max super I1", &TAVMainWidget::slot_max_over1, derivationTip("largest", supers)},
        {"I2 = Max all I1", &TAVMainWidget::slot_max_all1, derivationTip("largest", all)},
    };
    QWidget *panel = createPanel("invariantsPanel", tr("Invariants"));
    auto *grid = new QGridLayout(panel);
    int count = 0;
    for (const Command &command : commands) {
        grid->addWidget(createButton(command), count / buttonsPerRow, count % buttonsPerRow);
        ++count;
    }
    panel->hide();
    return panel;
}

// ">=" and "<=" along a walk compare the other way round than ">" and "<": the tips say what is compared, not what the
// buttons are called.
QWidget *TAVMainWidget::createComparisonPanel()
{
    const Command commands[] = {
        {"List I1 >= I2", &TAVMainWidget::slot_list_i1_ge_i2, comparisonTip("at least")},
        {"List I1 <= I2", &TAVMainWidget::slot_list_i1_le_i2, comparisonTip("at most")},
        {"List I1 == I2 (all subs)", &TAVMainWidget::slot_list_i1_eq_i2subs, walkTip("equal to", "below")},
        {"List I1 >= I2 (all subs)", &TAVMainWidget::slot_list_i1_ge_i2subs, walkTip("at most", "below")},
        {"List I1 <= I2 (all subs)", &TAVMainWidget::slot_list_i1_le_i2subs, walkTip("at least", "below")},
        {"List I1 == I2 (all super)", &TAVMainWidget::slot_list_i1_eq_i2over, walkTip("equal to", "above")},
        {"List I1 >= I2 (all super)", &TAVMainWidget::slot_list_i1_ge_i2over, walkTip("at most", "above")},
        {"List I1 <= I2 (all super)", &TAVMainWidget::slot_list_i1_le_i2over, walkTip("at least", "above")},
        {"List I1 > I2 (all subs)", &TAVMainWidget::slot_list_i1_gt_i2subs, walkTip("greater than", "below")},
        {"List I1 < I2 (all subs)", &TAVMainWidget::slot_list_i1_lt_i2subs, walkTip("less than", "below")},
        {"List I1 > I2 (all super)", &TAVMainWidget::slot_list_i1_gt_i2over, walkTip("greater than", "above")},
        {"List I1 < I2 (all super)", &TAVMainWidget::slot_list_i1_lt_i2over, walkTip("less than", "above")},
    };
    QWidget *panel = createPanel("comparisonPanel", tr("Comparisons"));
    auto *grid = new QGridLayout(panel);
    grid->addWidget(new QLabel(tr("Make lists : ")), 0, 0);
    int count = 0;
    for (const Command &command : commands) {
        grid->addWidget(createButton(command), 1 + count / buttonsPerRow, count % buttonsPerRow);
        ++count;
    }
    panel->hide();
    return panel;
}

QWidget *TAVMainWidget::createListsPanel()
{
    const Command over = {"Build Super-Graphs", &TAVMainWidget::slot_list_over,
                          tr("Builds the list of the chosen list's graphs that the database has and of all graphs "
                             "above them."),
                          "build"};
    const Command sub = {"Build Sub-Graphs", &TAVMainWidget::slot_list_sub,
                         tr("Builds the list of the chosen list's graphs that the database has and of all graphs "
                            "below them."),
                         "build"};
    const Command file = {"From file.", &TAVMainWidget::slot_list_file,
                          tr("Builds a list from a file with one name a line."), "open"};
    const Command unite = {"Union of ", &TAVMainWidget::slot_list_union,
                           tr("Builds the sorted list of the graphs of both lists, each one once."), "clustering"};
    const Command inter = {"Intersection of", &TAVMainWidget::slot_list_inter,
                           tr("Builds the list of the first list's graphs that are in the second list, too."),
                           "clustering"};
    const Command except = {"GraphList", &TAVMainWidget::slot_list_except,
                            tr("Builds the list of the first list's graphs that are not in the second list."),
                            "clustering"};
    const Command remove = {"Remove GraphList : ", &TAVMainWidget::slot_list_rem,
                            tr("Removes the chosen list and leaves files as they are."), "new"};
    const Command save = {"Save GraphList : ", &TAVMainWidget::slot_list_save,
                          tr("Saves the names of the chosen list to a file, one a line."), "save"};
    QPushButton *exceptButton = createButton(except);
    exceptButton->setAccessibleName(tr("GraphList except"));

    QWidget *panel = createPanel("listsPanel", tr("Lists"));
    auto *grid = new QGridLayout(panel);
    int row = 0;
    const auto addLine = [grid, &row](QWidget *number, std::initializer_list<QWidget *> sentence) {
        if (number != nullptr) {
            grid->addWidget(number, row, 0);
        }
        grid->addLayout(createSentence(sentence), row, 1);
        ++row;
    };
    const auto label = [](const QString &text) { return new QLabel(text); };
    addLine(label(tr("1)")), {createButton(over), createButton(sub), label(tr("from GraphList ")), closureSource});
    addLine(label(tr("2)")), {createButton(file)});
    addLine(label(tr("3)")), {createButton(unite), unionFirst, label(tr(" and ")), unionSecond});
    addLine(label(tr("4)")), {createButton(inter), interFirst, label(tr(" and ")), interSecond});
    addLine(label(tr("5)")), {exceptButton, exceptFirst, label(tr(" except ")), exceptSecond});
    addLine(nullptr, {createButton(remove), removeChoice});
    addLine(nullptr, {createButton(save), saveChoice});
    grid->setColumnStretch(1, 1);
    panel->setEnabled(false);
    panel->hide();
    return panel;
}

QLayout *TAVMainWidget::createSentence(std::initializer_list<QWidget *> words)
{
    auto *sentence = new QHBoxLayout;
    for (QWidget *word : words) {
        sentence->addWidget(word);
    }
    sentence->addStretch();
    return sentence;
}

QPushButton *TAVMainWidget::createButton(const Command &command)
{
    auto *button = new QPushButton(tr(command.text), this);
    if (command.icon != nullptr) {
        button->setIcon(icon(command.icon));
    }
    explain(button, command.tip);
    connect(button, &QPushButton::clicked, this, command.slot);
    return button;
}

QRadioButton *TAVMainWidget::createModeButton(const char *text, const QString &tip)
{
    auto *button = new QRadioButton(tr(text), this);
    explain(button, tip);
    connect(button, &QRadioButton::clicked, this, &TAVMainWidget::slot_adjust_mode);
    return button;
}

// Who steps through a list with the mouse looks at the viewer, and means its Ctrl+D, not that of the window, which
// empties the database.
void TAVMainWidget::keepKeyboardInViewer(QWidget *control, Qt::FocusPolicy policy)
{
    control->setFocusPolicy(policy);
    control->installEventFilter(this);
}

bool TAVMainWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        view->setFocus(Qt::MouseFocusReason);
    }
    return QWidget::eventFilter(watched, event);
}

void TAVMainWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange) {
        for (QWidget *panel : {modePanel, listsPanel, invariantsPanel, comparisonPanel, visualizationPanel}) {
            panel->setPalette(panelPalette(palette()));
        }
    }
    QWidget::changeEvent(event);
}

void TAVMainWidget::arrangePanels()
{
    newListName = new NameLine;
    newListName->setObjectName(QStringLiteral("newListName"));
    explain(newListName, tr("Names the list that the next command builds."), tr("Name of the new list"));
    console = new QTextEdit;
    console->setObjectName(QStringLiteral("console"));
    console->setReadOnly(true);
    console->setUndoRedoEnabled(false);
    console->setAccessibleName(tr("Console"));
    console->setAccessibleDescription(tr("Tells what the commands did."));
    nameParts(console);
    keepLastLineInSight();
    progressBar = new QProgressBar;
    progressBar->setRange(0, 100);
    progressBar->setValue(0);
    progressBar->setAccessibleName(tr("Progress"));
    progressBar->setAccessibleDescription(tr("Tells how far the load of a database is."));

    auto *grid = new QGridLayout(this);
    grid->addWidget(modePanel, 0, 0, 1, 2);
    grid->addWidget(new QLabel(tr("Build new GraphList ")), 1, 0);
    grid->addWidget(newListName, 1, 1);
    grid->addWidget(listsPanel, 2, 0, 1, 2);
    grid->addWidget(invariantsPanel, 3, 0, 1, 2);
    grid->addWidget(comparisonPanel, 4, 0, 1, 2);
    grid->addWidget(visualizationPanel, 5, 0, 1, 2);
    grid->addWidget(console, 6, 0, 3, 2);
    grid->addWidget(progressBar, 9, 0, 1, 2);
    orderTabStops();
}

/// Lets Tab go through the panels from top to bottom. The widgets of a panel come in the order in which they were put
/// into its layout.
void TAVMainWidget::orderTabStops()
{
    QVector<QWidget *> stops;
    addTabStops(layout(), stops);
    for (int i = 1; i < stops.size(); ++i) {
        setTabOrder(stops[i - 1], stops[i]);
    }
}

// The console shows its last line when lines are added and when panels take room from it, unless the user has scrolled
// up.
void TAVMainWidget::keepLastLineInSight()
{
    QScrollBar *scrollBar = console->verticalScrollBar();
    connect(scrollBar, &QScrollBar::valueChanged, this,
            [this, scrollBar](int value) { followsConsole = value == scrollBar->maximum(); });
    connect(scrollBar, &QScrollBar::rangeChanged, this, [this, scrollBar](int /*start*/, int end) {
        if (followsConsole) {
            scrollBar->setValue(end);
        }
    });
}
