#include "graph.h"
#include "node.h"

#include <QActionGroup>
#include <QMenu>

/// An entry that carries out a command; without a text, a separator.
struct Graph::MenuEntry {
    QString text;
    Command command = nullptr;
    bool enabled = true;
    /// What it takes to show the result of a command that does not show it by itself.
    Command showResult = nullptr;
};

/// An entry that switches something on or off, or chooses one of several modes.
struct Graph::MenuSwitch {
    QString text;
    bool on;
    std::function<void(bool)> set;
    bool enabled = true;
    /// What the key beside the entry carries out.
    Command command = nullptr;
};

void Graph::showMenu(QPoint position)
{
    const bool dragging = rubberBanding || (!edgeEditMode && pressedVertex() != nullptr);
    if (dragging) {
        return; // The menu would get the release of the button, and the drag would not end.
    }
    // Deleted here and not when it closes: the dialog of an entry runs its event loop inside a handler of the menu.
    delete shownMenu;
    shownMenu = createMenu();
    shownMenu->popup(viewport()->mapToGlobal(position));
}

QMenu *Graph::createMenu()
{
    const int n = usedSlots(nbNodes);
    const int selected = selectedVertices(n).size();
    const bool any = n > 0;
    const bool pair = n > 1;
    const bool room = n < MAX_NODES;
    const bool selection = selected > 0;
    const bool selectedPair = selected > 1;
    const bool roomForCopy = selection && n + selected <= MAX_NODES;

    auto *menu = new QMenu(this);
    addEntries(menu, {{tr("&Undo"), &Graph::slot_undo, historyIndex > 0},
                      {tr("&Redo"), &Graph::slot_redo, historyIndex < history.size() - 1},
                      {}});
    addModes(menu->addMenu(tr("Double-click &adds")),
             {{tr("&Clique vertex"), addMode == NewVertex::Clique, [this](bool) { slot_set_add_k(); }},
              {tr("&Bipartite vertex"), addMode == NewVertex::Bipartite, [this](bool) { slot_set_add_bip(); }},
              {tr("&Tail vertex"), addMode == NewVertex::Tail, [this](bool) { slot_set_add_tail(); }}});
    addSwitch(menu, {tr("Draw &edges"), edgeEditMode, [this](bool on) { setEdgeEditMode(on); }});
    menu->addSeparator();
    addEntries(menu->addMenu(tr("&Select")), {{tr("&All"), &Graph::slot_select_all, any},
                                              {tr("&None"), &Graph::slot_unselect_all, selection},
                                              {tr("&Invert"), &Graph::slot_invert_selection, any}});
    addEntries(menu->addMenu(tr("Ed&it")), {{tr("&Add vertex"), &Graph::slot_addv, room},
                                            {tr("Add &clique vertex"), &Graph::addK, room},
                                            {tr("Add &bipartite vertex"), &Graph::addBip, room},
                                            {tr("Add &tail vertex"), &Graph::addTail, room},
                                            {tr("&Remove selected vertices"), &Graph::slot_remv, selection},
                                            {},
                                            {tr("&Join selected vertices"), &Graph::slot_adde, selectedPair},
                                            {tr("&Separate selected vertices"), &Graph::slot_reme, selectedPair},
                                            {tr("C&omplement selection"), &Graph::slot_complement, selectedPair},
                                            {tr("Cut selection o&ff"), &Graph::slot_remcut, selection},
                                            {},
                                            {tr("&Link all diametral pairs"), &Graph::slot_link_diameter, pair},
                                            {tr("Link one &diametral pair"), &Graph::slot_link_one_diameter, pair}});
    addEntries(menu->addMenu(tr("Dup&licate selection")),
               {{tr("&Copy"), &Graph::slot_duplicate, roomForCopy},
                {tr("Copy &linked to its source"), &Graph::slot_duplicate_link, roomForCopy},
                {tr("&False twins"), &Graph::slot_duplicate_twins, roomForCopy},
                {tr("&True twins"), &Graph::slot_duplicate_link_twins, roomForCopy}});
    QMenu *layoutMenu = menu->addMenu(tr("La&yout"));
    addModes(
        layoutMenu,
        {modeOf(tr("&Circle"), layout == Layout::Circle, &Graph::slot_layout_circle, any),
         modeOf(tr("Spring (&Kamada and Kawai)"), layout == Layout::KamadaKawai, &Graph::slot_layout_kamada_kawai, any),
         modeOf(tr("Spring (&Fruchterman and Reingold)"), layout == Layout::FruchtermanReingold,
                &Graph::slot_layout_fruchterman_reingold, any),
         modeOf(tr("&Planar"), layout == Layout::Planar, &Graph::slot_layout_planar, any),
         modeOf(tr("Le&vels from the selection"), layout == Layout::Levels, &Graph::slot_layout_levels, selection)});
    layoutMenu->addSeparator();
    addEntries(layoutMenu, {{tr("&Random placement"), &Graph::slot_randomPosition, any, &Graph::update_display},
                            {tr("R&eorganise"), &Graph::slot_reorganize, pair, &Graph::commit},
                            {tr("Re&label"), &Graph::slot_relabel, pair, &Graph::commit}});
    addSwitch(layoutMenu, {tr("&Spin"), rotationTimerId != 0, [this](bool) { toggleAnim(); }});
    addModes(menu->addMenu(tr("Sho&w")),
             {modeOf(tr("Vertex &numbers"), written == Shown::Numbers, &Graph::slot_show_numbers, any),
              modeOf(tr("N&ames"), written == Shown::Names, &Graph::slot_show_names, any),
              modeOf(tr("&Degrees"), written == Shown::Degrees, &Graph::slot_show_degrees, any),
              modeOf(tr("Di&stances from the selected vertex"), written == Shown::FromSelection,
                     &Graph::slot_show_distances, selection),
              modeOf(tr("N&othing"), written == Shown::Nothing, &Graph::slot_show_nothing)});
    addEntries(menu, {{},
                      {tr("Copy as &graph6"), &Graph::slot_copy_graph6, any},
                      {tr("&Copy as picture"), &Graph::slot_copy_picture, any},
                      {tr("Paste grap&h6"), &Graph::slot_paste_graph6},
                      {},
                      {tr("&Open..."), &Graph::slot_open},
                      {tr("Sa&ve..."), &Graph::slot_save},
                      {tr("I&mport..."), &Graph::slot_import_graph},
                      {tr("E&xport..."), &Graph::slot_export_graph},
                      {tr("Expor&t picture..."), &Graph::slot_export_picture, any},
                      {tr("&Print..."), &Graph::slot_print}});
    return menu;
}

void Graph::addEntries(QMenu *menu, const QVector<MenuEntry> &entries)
{
    for (const MenuEntry &entry : entries) {
        if (entry.text.isEmpty()) {
            menu->addSeparator();
            continue;
        }
        QAction *action = menu->addAction(withKey(entry.text, entry.command));
        action->setEnabled(entry.enabled);
        connect(action, &QAction::triggered, this, [this, entry]() {
            (this->*entry.command)();
            if (entry.showResult != nullptr) {
                (this->*entry.showResult)();
            }
        });
    }
}

QAction *Graph::addSwitch(QMenu *menu, const MenuSwitch &entry)
{
    QAction *action = menu->addAction(withKey(entry.text, entry.command));
    action->setEnabled(entry.enabled);
    action->setCheckable(true);
    action->setChecked(entry.on);
    connect(action, &QAction::triggered, this, entry.set);
    return action;
}

void Graph::addModes(QMenu *menu, const QVector<MenuSwitch> &modes)
{
    auto *group = new QActionGroup(menu);
    for (const MenuSwitch &mode : modes) {
        group->addAction(addSwitch(menu, mode));
    }
}

/// One of several modes, which a command chooses.
Graph::MenuSwitch Graph::modeOf(const QString &text, bool on, Command command, bool enabled)
{
    return {text, on, [this, command](bool) { (this->*command)(); }, enabled, command};
}

/// The key of the command is shown as text behind the tab. It is no shortcut of the action: keyPressEvent() handles it.
QString Graph::withKey(const QString &text, Command command)
{
    const QString key = keyText(command);
    return key.isEmpty() ? text : text + QLatin1Char('\t') + key;
}
