find_library(ZMR_SQLITE sqlite3)
if(ZMR_SQLITE)
    zmr_add_benchmark(odb_filters SOURCES bench_odb_filters.cpp LINK zmr_odb ${ZMR_SQLITE})
endif()
