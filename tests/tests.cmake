# The sources.
tavoline_test(tst_layout)
target_compile_definitions(tst_layout PRIVATE
    TAVOLINE_SOURCES="${PROJECT_SOURCE_DIR}"
    TAVOLINE_BUILD="${PROJECT_BINARY_DIR}")

# The programs.
tavoline_test(tst_hardening)
target_compile_definitions(tst_hardening PRIVATE
    READELF_PROGRAM="${CMAKE_READELF}"
    TAVOLINE_PROGRAM="$<TARGET_FILE:tavoline>"
    $<$<BOOL:${TAVOLINE_TAV}>:TAVOLINE_TAV="$<TARGET_FILE:tav>">
    $<$<NOT:$<CONFIG:Debug>>:TAVOLINE_CHECKED>)
add_dependencies(tst_hardening tavoline)
if(TAVOLINE_TAV)
    add_dependencies(tst_hardening tav)
endif()

tavoline_test(tst_installation Qt5::Gui)
target_compile_definitions(tst_installation PRIVATE
    TAVOLINE_BUILD="${PROJECT_BINARY_DIR}"
    TAVOLINE_VERSION="${PROJECT_VERSION}"
    APPSTREAMCLI_PROGRAM="${APPSTREAMCLI}"
    CMAKE_PROGRAM="${CMAKE_COMMAND}"
    DESKTOP_FILE_VALIDATE_PROGRAM="${DESKTOP_FILE_VALIDATE}"
    MAN_PROGRAM="${MAN}"
    UPDATE_DESKTOP_DATABASE_PROGRAM="${UPDATE_DESKTOP_DATABASE}"
    UPDATE_MIME_DATABASE_PROGRAM="${UPDATE_MIME_DATABASE}"
    XDG_MIME_PROGRAM="${XDG_MIME}")
add_dependencies(tst_installation tavoline)

# The core: no widgets.
tavoline_test(tst_tavgraph tavoline_record)
tavoline_test(tst_inputfile tavoline_files)
tavoline_test(tst_outputfile tavoline_files watched_calls)
tavoline_test(tst_replacement tavoline_files watched_calls)
tavoline_test(tst_databaseline tavoline_database)
tavoline_test(tst_databasechunk tavoline_database tavoline_base)
tavoline_test(tst_databaselinks tavoline_database)
tavoline_test(tst_nameset tavoline_queries)
tavoline_test(tst_parallel tavoline_base)
tavoline_test(tst_linereader tavoline_files)
tavoline_test(tst_textline tavoline_files)
tavoline_test(tst_searchengine tavoline_core)
tavoline_test(tst_graphlist tavoline_core)
tavoline_test(tst_manager tavoline_core)
tavoline_test(tst_longlines tavoline_core)
tavoline_test(tst_listalgebra tavoline_lists tavoline_base)
tavoline_test(tst_loading tavoline_core)
tavoline_test(tst_invariantline tavoline_database)
tavoline_test(tst_invariantfiles tavoline_core)
tavoline_test(tst_queries tavoline_core)
tavoline_test(tst_queries_random tavoline_core)
tavoline_patient_test(tst_queries_random)
if(NOT TAVOLINE_SANITIZE) # the sanitizers have allocation functions of their own
    tavoline_test(tst_memory tavoline_core failing_allocations)
    tavoline_slow_tests(tst_memory)
endif()

# The drawing.
tavoline_test(tst_places tavoline_drawing)
tavoline_test(tst_springlayout tavoline_drawing)
tavoline_test(tst_planarlayout tavoline_drawing)
tavoline_test(tst_levellayout tavoline_drawing)
tavoline_test(tst_pictures tavoline_drawing)
target_compile_definitions(tst_pictures PRIVATE
    NEATO_PROGRAM="${NEATO}"
    PDFLATEX_PROGRAM="${PDFLATEX}")

# The viewer.
tavoline_test(tst_random tavoline_viewer)
tavoline_test(tst_solve tavoline_viewer)
tavoline_test(tst_distances tavoline_viewer)
tavoline_test(tst_textfile tavoline_viewer)
tavoline_test(tst_graph6 tavoline_viewer)
tavoline_window_test(tst_graph_layout tavoline_viewer)
tavoline_window_test(tst_graph_model tavoline_viewer item_image)
tavoline_window_test(tst_node tavoline_viewer item_image)
tavoline_window_test(tst_edge tavoline_viewer item_image)
tavoline_window_test(tst_nodedisplay tavoline_viewer)
tavoline_window_test(tst_graph_files tavoline_viewer)
tavoline_window_test(tst_graph_printing tavoline_viewer)
tavoline_test(tst_graph_commands tavoline_viewer)
tavoline_window_test(tst_graph_interaction tavoline_viewer)
tavoline_window_test(tst_graph_menu tavoline_viewer)
tavoline_window_test(tst_graph_drawing tavoline_viewer tavoline_drawing)
if(NOT TAVOLINE_SANITIZE)
    tavoline_test(tst_graph_memory tavoline_viewer window_driver failing_allocations)
    tavoline_slow_tests(tst_graph_memory)
endif()

# The window.
tavoline_test(tst_program tavoline_ui tavoline_base tavoline_files)
target_sources(tst_program PRIVATE ${PROJECT_SOURCE_DIR}/src/main.cpp)
set_source_files_properties(${PROJECT_SOURCE_DIR}/src/main.cpp PROPERTIES COMPILE_DEFINITIONS main=tavolineMain)
target_compile_definitions(tst_program PRIVATE
    GROFF_PROGRAM="${GROFF}"
    TAVOLINE_PROGRAM="$<TARGET_FILE:tavoline>"
    TAVOLINE_SOURCES="${PROJECT_SOURCE_DIR}")
add_dependencies(tst_program tavoline)
tavoline_window_test(tst_accessibility window_fixture)
tavoline_window_test(tst_appearance window_fixture)
tavoline_window_test(tst_browsing window_fixture)
tavoline_window_test(tst_commands window_fixture)
tavoline_window_test(tst_loadraces window_fixture)
tavoline_patient_test(tst_loadraces)
tavoline_window_test(tst_mainwidget window_fixture)
tavoline_window_test(tst_mainwindow window_fixture)
tavoline_test(tst_manual window_fixture)
tavoline_test(tst_failingcalls window_fixture watched_calls)
tavoline_window_test(tst_monkey window_fixture)
tavoline_patient_test(tst_monkey)

tavoline_slow_tests(tst_failingcalls tst_loadraces tst_longlines tst_monkey tst_queries_random tst_searchengine
    tst_commands tst_graph_commands tst_loading tst_mainwidget tst_pictures)

# The companion program.
if(NOT TAVOLINE_TAV)
    return()
endif()
tavoline_test(tst_smallgraph tav_graphs)
tavoline_test(tst_invariants tav_commands tav_console)
tavoline_test(tst_expression tav_expressions tav_console)
tavoline_test(tst_exactelimination tav_commands)
tavoline_test(tst_hamiltoncycle tav_commands)
tavoline_test(tst_invariants_counts tav_commands)
tavoline_test(tst_invariants_degrees tav_commands)
tavoline_test(tst_invariants_distances tav_commands)
tavoline_test(tst_invariants_properties tav_commands)
tavoline_test(tst_invariants_spectra tav_commands)
tavoline_test(tst_invariants_cycles tav_commands)
tavoline_test(tst_invariants_subsets tav_commands)
tavoline_test(tst_invariant_reference tav_commands)
tavoline_patient_test(tst_invariant_reference)
tavoline_test(tst_invarianttable tav_commands)
target_compile_definitions(tst_invarianttable PRIVATE TAVOLINE_SOURCES="${PROJECT_SOURCE_DIR}")
tavoline_test(tst_plaintext tav_console)
tavoline_test(tst_progress tav_console)
tavoline_test(tst_standardoutput tav_console)
tavoline_test(tst_interruption tav_processes)
tavoline_test(tst_workers tav_processes tav_console ${CMAKE_DL_LIBS})
tavoline_test(tst_formindex tav_graphs ${CMAKE_DL_LIBS})
tavoline_tool_test(tst_graphinput tav_graphs)
tavoline_tool_test(tst_tav_build tavoline_core)
tavoline_tool_test(tst_tav)
tavoline_tool_test(tst_tav_index)
tavoline_tool_test(tst_tav_info tavoline_core)
tavoline_tool_test(tst_tav_run tav_commands tav_console tav_scripts)
tavoline_tool_test(tst_faults)
tavoline_tool_test(tst_tav_export tav_tables watched_calls)
tavoline_tool_test(tst_tav_filter)
tavoline_tool_test(tst_tav_invariant tavoline_core)
tavoline_tool_test(tst_tav_part)
tavoline_tool_test(tst_tav_run_parts)
tavoline_tool_test(tst_cluster)
tavoline_tool_test(tst_tav_names)
tavoline_tool_test(tst_tav_sql tav_sql tav_console)
tavoline_tool_test(tst_tav_manual)
tavoline_tool_test(tst_guide)
if(NOT TAVOLINE_SANITIZE)
    tavoline_tool_test(tst_tav_memory)
    target_compile_definitions(tst_tav_memory PRIVATE
        TAVOLINE_FAILING_ALLOCATIONS="$<TARGET_FILE:failing_allocations_preload>")
    add_dependencies(tst_tav_memory failing_allocations_preload)
    tavoline_slow_tests(tst_tav_memory)
endif()
tavoline_tool_test(tst_tav_calls)
target_compile_definitions(tst_tav_calls PRIVATE TAVOLINE_FAILING_CALLS="$<TARGET_FILE:failing_calls>")
add_dependencies(tst_tav_calls failing_calls)
tavoline_slow_tests(tst_invariant_reference tst_tav_calls tst_faults tst_tav_build tst_tav_filter tst_tav_invariant
    tst_tav_part tst_tav_run tst_tav_run_parts)
