#ifndef TAVOLINE_TAVMAINWIDGET_H
#define TAVOLINE_TAVMAINWIDGET_H

#include <QString>
#include <QStringList>
#include <QVector>
#include <QWidget>

class Graph;
class QComboBox;
class QGridLayout;
class QLabel;
class QLayout;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QSlider;
class QTextEdit;
class TAVManager;

/// The central widget: the panels with every command, the console, and the viewer in which a list is browsed.
///
/// It computes nothing: a command reads the name line, the list choosers and a file dialog, and calls the manager;
/// the manager's signals bring the results back.
class TAVMainWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TAVMainWidget(QWidget *parent = nullptr);
    /// Stops a load that is still running.
    ~TAVMainWidget() override;

    /// The list manager that the widget drives. Only the tour and the tests ask for it, to wait for its signals.
    TAVManager *getManager() const { return manager; }

    /// Starts to load the database @p file, as slot_open() does with the file that was chosen. After one that cannot be
    /// opened there is no database, either, and the console says why.
    void loadDatabase(const QString &file);
    /// Lets the file dialogs start in @p directory, without a change of the settings.
    void setWorkDir(const QString &directory) { workDir = directory; }

public slots:
    // The database. A cancelled dialog is not caught: the empty name is a file that cannot be opened.

    /// Asks for a database file and starts to load it.
    void slot_open();
    /// Empties the database; lists and panels stay.
    void slot_clear();
    /// Asks for the directory in which the file dialogs start and keeps it in the settings; none after a cancelled
    /// dialog.
    void slot_set_wd();

    // The manager's work and what it reports.

    /// Disables the lists panel while the manager works.
    void slot_manager_busy();
    /// Enables the lists panel.
    void slot_manager_ready();
    /// Enables the lists panel and shows the panel of the chosen mode. The comparison and the visualization panel wait
    /// for a click on their mode.
    void slot_database_loaded();
    /// Resets the progress bar. After a load that failed the lists panel stays disabled.
    void slot_database_empty();
    /// Shows @p done of @p total on the progress bar.
    void slot_progress(int done, int total);
    /// Appends a paragraph of plain text to the console.
    void slot_console(const QString &text);
    /// Refills every list chooser; all fall back to the first list.
    void slot_list_changed();

    /// Shows the panels of the chosen mode; before the first database has loaded there are none.
    void slot_adjust_mode();

    // New lists, named as the name line says, from old ones and from files.

    void slot_list_sub();
    void slot_list_over();
    /// Leaves the lists panel enabled, unlike the others.
    void slot_list_file();
    void slot_list_union();
    void slot_list_inter();
    void slot_list_except();
    void slot_list_rem();
    void slot_list_save();

    // Files of the database, each chosen in a dialog.

    void slot_save_all();
    void slot_save_inv1();
    void slot_load_inv1();
    void slot_load_inv2();

    // Invariants: the manager's operations of like names.

    void slot_avg_sub1();
    void slot_avg_over1();
    void slot_avg_all1();
    void slot_min_sub1();
    void slot_min_over1();
    void slot_min_all1();
    void slot_max_sub1();
    void slot_max_over1();
    void slot_max_all1();
    void slot_exch_1_2();
    void slot_i1_gets_i2();
    void slot_i2_gets_i1();

    // Lists, named as the name line says, by comparing the invariants.

    void slot_list_i1_ge_i2();
    void slot_list_i1_le_i2();
    void slot_list_i1_eq_i2subs();
    void slot_list_i1_ge_i2subs();
    void slot_list_i1_le_i2subs();
    void slot_list_i1_eq_i2over();
    void slot_list_i1_ge_i2over();
    void slot_list_i1_le_i2over();
    void slot_list_i1_gt_i2subs();
    void slot_list_i1_lt_i2subs();
    void slot_list_i1_gt_i2over();
    void slot_list_i1_lt_i2over();

    /// Shows the next graph of the chosen list, after the last one the first.
    void slot_next_graph();
    /// Shows the previous graph of the chosen list, before the first one the last.
    void slot_prev_graph();
    /// The same with the first and with the last graph.
    void slot_first_graph();
    void slot_last_graph();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    using Slot = void (TAVMainWidget::*)();
    struct Command {
        const char *text;
        Slot slot;
        QString tip;
        const char *icon = nullptr;
    };

    void connectManager();
    void createCombos();
    QWidget *createPanel(const char *name, const QString &shownName);
    QWidget *createModePanel();
    QWidget *createListsPanel();
    QWidget *createInvariantsPanel();
    QWidget *createComparisonPanel();
    QWidget *createVisualizationPanel();
    static QLayout *createSentence(std::initializer_list<QWidget *> words);
    QPushButton *createButton(const Command &command);
    QRadioButton *createModeButton(const char *text, const QString &tip);
    void keepKeyboardInViewer(QWidget *control, Qt::FocusPolicy policy);
    void arrangePanels();
    void orderTabStops();
    void keepLastLineInSight();

    void startLoading(const QString &file);
    QString startDir() const;
    QString askForFileToOpen(const char *filter);
    QString askForFileToSave(const char *filter);
    void derive(void (TAVManager::*derivation)());
    void compare(bool (TAVManager::*builder)(const QString &));
    void showGraphAt(int newPosition);
    bool browseChosenList();
    void showNothing();
    void showPosition(const QString &text);

    TAVManager *manager;
    Graph *view = nullptr;
    QString workDir; // every file dialog starts here, or in "./" when it is empty

    QWidget *modePanel = nullptr;
    QWidget *listsPanel = nullptr;
    QWidget *invariantsPanel = nullptr;
    QWidget *comparisonPanel = nullptr;
    QWidget *visualizationPanel = nullptr;
    QLineEdit *newListName = nullptr;

    QComboBox *closureSource = nullptr;
    QComboBox *interFirst = nullptr;
    QComboBox *interSecond = nullptr;
    QComboBox *unionFirst = nullptr;
    QComboBox *unionSecond = nullptr;
    QComboBox *removeChoice = nullptr;
    QComboBox *saveChoice = nullptr;
    QComboBox *exceptFirst = nullptr;
    QComboBox *exceptSecond = nullptr;
    QComboBox *browseChoice = nullptr;
    QVector<QComboBox *> combos; // all of them, in the order in which they are refilled

    QRadioButton *invariantsMode = nullptr;
    QRadioButton *listsMode = nullptr;
    QRadioButton *visualizationMode = nullptr;
    QProgressBar *progressBar = nullptr;
    QTextEdit *console = nullptr;
    QLabel *positionLabel = nullptr;

    bool hasLoaded = false;     // a database, at least once
    bool followsConsole = true; // the console shows its last line
    int position = 0;           // of the graph shown, in browsedNames
    QVector<QString> browsedNames;
    QString browsedList;
};

#endif
