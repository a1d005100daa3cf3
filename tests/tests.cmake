# The core: no widgets.
tavoline_test(tst_tavgraph tavoline_core)
tavoline_test(tst_databaseline tavoline_core)
tavoline_test(tst_linereader tavoline_core)
tavoline_test(tst_searchengine tavoline_core)
tavoline_test(tst_graphlist tavoline_core)
tavoline_test(tst_manager tavoline_core)
tavoline_test(tst_loading tavoline_core)

# The viewer.

# The window.
tavoline_window_test(tst_browsing window_fixture)
tavoline_window_test(tst_mainwidget window_fixture)
tavoline_window_test(tst_mainwindow window_fixture)
