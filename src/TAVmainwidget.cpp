#include "TAVmainwidget.h"

#include "TAVmanager.h"
#include "applicationtitle.h"
#include "olm/graph.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSettings>
#include <QSlider>
#include <QTextCursor>
#include <QTextEdit>

#include <iostream>

namespace
{
constexpr char databaseFilter[] = "File type (*.tav)";
constexpr char listFilter[] = "File type (*.g6)";

const QColor panelColour(255, 255, 235);
constexpr double vertexRadius = 20.0;
constexpr double circleDiameter = 200.0;
constexpr int smallestZoom = 5;
constexpr int largestZoom = 1000;
constexpr int initialZoom = 300;
constexpr int buttonsPerRow = 3;

QString workDirKey()
{
    return QStringLiteral("wd");
}

QIcon icon(const char *name)
{
    return QIcon(QStringLiteral(":/images/%1.png").arg(QLatin1String(name)));
}
} // namespace

TAVMainWidget::TAVMainWidget(QWidget *parent) : QWidget(parent), manager(new TAVManager)
{
    workDir = QSettings().value(workDirKey()).toString();
    if (workDir.isEmpty()) {
        workDir = QStringLiteral("./");
    }
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
    const QString file = askForFileToOpen(databaseFilter);
    slot_manager_busy();
    manager->loadDatabase(file);
}

void TAVMainWidget::slot_clear()
{
    manager->resetDatabase();
}

void TAVMainWidget::slot_set_wd()
{
    workDir = QFileDialog::getExistingDirectory(this, tr(applicationTitle), workDir, QFileDialog::ShowDirsOnly);
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

// The comparison and the visualization panel wait for a click on their mode.
void TAVMainWidget::slot_database_loaded()
{
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

// Not QTextEdit::append(), which would take a list name that looks like markup for markup.
void TAVMainWidget::slot_console(const QString &text)
{
    QTextCursor end(console->document());
    end.movePosition(QTextCursor::End);
    if (!console->document()->isEmpty()) {
        end.insertBlock();
    }
    end.insertText(text);
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
    if (!listsPanel->isVisible() && !invariantsPanel->isVisible() && !comparisonPanel->isVisible() &&
        !visualizationPanel->isVisible()) {
        return;
    }
    listsPanel->setVisible(listsMode->isChecked());
    invariantsPanel->setVisible(invariantsMode->isChecked());
    comparisonPanel->setVisible(invariantsMode->isChecked());
    visualizationPanel->setVisible(visualizationMode->isChecked());
}

// The commands.

void TAVMainWidget::slot_list_file()
{
    manager->addListFromFile(newListName->text(), askForFileToOpen(listFilter));
}

void TAVMainWidget::slot_unavailable()
{
    const auto *button = qobject_cast<QPushButton *>(sender());
    slot_console(tr("\"%1\" is not available yet.").arg(button->text().trimmed()));
}

// Browsing.

void TAVMainWidget::slot_next_graph()
{
    stepThroughList(1);
}

void TAVMainWidget::slot_prev_graph()
{
    stepThroughList(-1);
}

void TAVMainWidget::stepThroughList(int step)
{
    slot_manager_busy();
    position += step;
    const QString list = browseChoice->currentText();
    if (list != browsedList) {
        browsedList = list;
        browsedNames = manager->getList(list).toVector();
    }
    if (browsedNames.isEmpty()) {
        view->clear();
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
        positionLabel->setText(QString::number(position + 1) + QLatin1Char('/') + QString::number(browsedNames.size()) +
                               QLatin1Char(' ') + name);
    } else {
        std::cerr << "Failed to load graph" << std::endl;
        view->clear();
        view->best_backup();
        positionLabel->clear();
        view->update_display();
    }
    slot_manager_ready();
}

// An empty name when the dialog was cancelled: the operation that gets it fails on it and says so.
QString TAVMainWidget::askForFileToOpen(const char *filter)
{
    return QFileDialog::getOpenFileName(this, tr(applicationTitle), workDir, tr(filter));
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
    } all[] = {
        {closureSource, "closureSource"}, {interFirst, "interFirst"},     {interSecond, "interSecond"},
        {unionFirst, "unionFirst"},       {unionSecond, "unionSecond"},   {removeChoice, "removeChoice"},
        {exceptFirst, "exceptFirst"},     {exceptSecond, "exceptSecond"}, {saveChoice, "saveChoice"},
        {browseChoice, "browseChoice"},
    };
    for (const auto &entry : all) {
        entry.combo = new QComboBox(this);
        entry.combo->setObjectName(QLatin1String(entry.name));
        // A long list name must not widen the window.
        entry.combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        entry.combo->setMinimumContentsLength(12);
        combos.append(entry.combo);
    }
}

QWidget *TAVMainWidget::createPanel(const char *name)
{
    auto *panel = new QWidget(this);
    panel->setObjectName(QLatin1String(name));
    QPalette colours = panel->palette();
    colours.setColor(QPalette::Window, panelColour);
    colours.setColor(QPalette::WindowText, Qt::black); // legible on the light panel in a dark theme too
    panel->setPalette(colours);
    panel->setAutoFillBackground(true);
    return panel;
}

QWidget *TAVMainWidget::createModePanel()
{
    QWidget *panel = createPanel("modePanel");
    auto *grid = new QGridLayout(panel);
    grid->addWidget(createButton({"Load database", &TAVMainWidget::slot_open, "open"}), 0, 0);
    grid->addWidget(createButton({"Set work directory", &TAVMainWidget::slot_set_wd}), 1, 0);
    grid->addWidget(createButton({"Save all graphs", &TAVMainWidget::slot_unavailable, "save"}), 2, 0);
    grid->addWidget(new QLabel(tr("Mode :")), 0, 1);
    listsMode = createModeButton("Lists manipulation");
    invariantsMode = createModeButton("Invariants manipulation");
    visualizationMode = createModeButton("Visualization");
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
    QWidget *panel = createPanel("visualizationPanel");
    view = new Graph(QStringLiteral("VIZ"), true);
    view->slot_set_node_radius(vertexRadius);
    view->clear();
    view->best_backup();
    view->update_display();

    auto *zoom = new QSlider(Qt::Horizontal);
    zoom->setObjectName(QStringLiteral("zoom"));
    zoom->setRange(smallestZoom, largestZoom);
    zoom->setValue(initialZoom);
    view->slot_scale_graph(zoom->value(), false);
    connect(zoom, &QSlider::valueChanged, view, &Graph::slot_rescale_graph);

    positionLabel = new QLabel;
    positionLabel->setObjectName(QStringLiteral("position"));
    positionLabel->setTextFormat(Qt::PlainText);
    positionLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    positionLabel->setAlignment(Qt::AlignCenter);

    auto *grid = new QGridLayout(panel);
    grid->addWidget(new QLabel(tr("GraphList : ")), 0, 0);
    grid->addWidget(browseChoice, 0, 1);
    grid->addWidget(zoom, 0, 2);
    grid->addWidget(view, 1, 0, 3, 3);
    grid->addWidget(createButton({"<<=", &TAVMainWidget::slot_prev_graph}), 4, 0, Qt::AlignLeft);
    grid->addWidget(positionLabel, 4, 1);
    grid->addWidget(createButton({"=>>", &TAVMainWidget::slot_next_graph}), 4, 2, Qt::AlignRight);
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(2, 1);
    panel->hide();
    return panel;
}

QWidget *TAVMainWidget::createInvariantsPanel()
{
    const Slot later = &TAVMainWidget::slot_unavailable;
    const Command commands[] = {
        {"Load I1", later, "open"}, {"Load I2", later, "open"},   {"Save Inv1", later, "save"},
        {"I1 <- I2", later},        {"I2 <- I1", later},          {"I1 <-> I2", later},
        {"I2 = Avg sub I1", later}, {"I2 = Avg super I1", later}, {"I2 = Avg all I1", later},
        {"I2 = Min sub I1", later}, {"I2 = Min super I1", later}, {"I2 = Min all I1", later},
        {"I2 = Max sub I1", later}, {"I2 = Max super I1", later}, {"I2 = Max all I1", later},
    };
    QWidget *panel = createPanel("invariantsPanel");
    auto *grid = new QGridLayout(panel);
    int count = 0;
    for (const Command &command : commands) {
        grid->addWidget(createButton(command), count / buttonsPerRow, count % buttonsPerRow);
        ++count;
    }
    panel->hide();
    return panel;
}

QWidget *TAVMainWidget::createComparisonPanel()
{
    const Slot later = &TAVMainWidget::slot_unavailable;
    const Command commands[] = {
        {"List I1 >= I2", later},
        {"List I1 <= I2", later},
        {"List I1 == I2 (all subs)", later},
        {"List I1 >= I2 (all subs)", later},
        {"List I1 <= I2 (all subs)", later},
        {"List I1 == I2 (all super)", later},
        {"List I1 >= I2 (all super)", later},
        {"List I1 <= I2 (all super)", later},
        {"List I1 > I2 (all subs)", later},
        {"List I1 < I2 (all subs)", later},
        {"List I1 > I2 (all super)", later},
        {"List I1 < I2 (all super)", later},
    };
    QWidget *panel = createPanel("comparisonPanel");
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
    const Slot later = &TAVMainWidget::slot_unavailable;
    QWidget *panel = createPanel("listsPanel");
    auto *grid = new QGridLayout(panel);
    const auto addLine = [grid](const QString &number, QLayout *sentence) {
        const int row = grid->rowCount();
        grid->addWidget(new QLabel(number), row, 0);
        grid->addLayout(sentence, row, 1);
    };
    addLine(tr("1)"), createSentence({createButton({"Build Super-Graphs", later, "build"}),
                                      createButton({"Build Sub-Graphs", later, "build"}),
                                      new QLabel(tr("from GraphList ")), closureSource}));
    addLine(tr("2)"), createSentence({createButton({"From file.", &TAVMainWidget::slot_list_file, "open"})}));
    addLine(tr("3)"), createSentence({createButton({"Union of ", later, "clustering"}), unionFirst,
                                      new QLabel(tr(" and ")), unionSecond}));
    addLine(tr("4)"), createSentence({createButton({"Intersection of", later, "clustering"}), interFirst,
                                      new QLabel(tr(" and ")), interSecond}));
    addLine(tr("5)"), createSentence({createButton({"GraphList", later, "clustering"}), exceptFirst,
                                      new QLabel(tr(" except ")), exceptSecond}));
    addLine(QString(), createSentence({createButton({"Remove GraphList : ", later, "new"}), removeChoice}));
    addLine(QString(), createSentence({createButton({"Save GraphList : ", later, "save"}), saveChoice}));
    grid->setColumnStretch(1, 1);
    panel->setEnabled(false);
    panel->hide();
    return panel;
}

QHBoxLayout *TAVMainWidget::createSentence(std::initializer_list<QWidget *> words)
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
    connect(button, &QPushButton::clicked, this, command.slot);
    return button;
}

QRadioButton *TAVMainWidget::createModeButton(const char *text)
{
    auto *button = new QRadioButton(tr(text), this);
    connect(button, &QRadioButton::clicked, this, &TAVMainWidget::slot_adjust_mode);
    return button;
}

void TAVMainWidget::arrangePanels()
{
    newListName = new QLineEdit;
    newListName->setObjectName(QStringLiteral("newListName"));
    console = new QTextEdit;
    console->setObjectName(QStringLiteral("console"));
    console->setReadOnly(true);
    // The last line stays in sight when lines are added and when a panel takes room from the console.
    QScrollBar *scrollBar = console->verticalScrollBar();
    connect(scrollBar, &QScrollBar::rangeChanged, scrollBar, [scrollBar](int, int end) { scrollBar->setValue(end); });
    progressBar = new QProgressBar;
    progressBar->setRange(0, 100);
    progressBar->setValue(0);

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
}
