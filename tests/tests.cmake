# The core: no widgets.
tavoline_test(tst_tavgraph tavoline_core)
tavoline_test(tst_databaseline tavoline_core)
tavoline_test(tst_linereader tavoline_core)
tavoline_test(tst_searchengine tavoline_core)
tavoline_test(tst_graphlist tavoline_core)
tavoline_test(tst_manager tavoline_core)
tavoline_test(tst_loading tavoline_core)

# The viewer.
tavoline_test(tst_random tavoline_viewer)
tavoline_test(tst_solve tavoline_viewer)
tavoline_test(tst_graph6 tavoline_viewer)
tavoline_test(tst_graph_counter tavoline_viewer)
tavoline_window_test(tst_graph_editing tavoline_viewer)
tavoline_window_test(tst_graph_layout tavoline_viewer)
tavoline_window_test(tst_graph_model tavoline_viewer)

# The window.
tavoline_window_test(tst_browsing window_fixture)
tavoline_window_test(tst_mainwidget window_fixture)
tavoline_window_test(tst_mainwindow window_fixture)
