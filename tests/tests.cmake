# The core: no widgets.
tavoline_test(tst_tavgraph tavoline_core)

# The viewer.

# The window.
