find_library(ZMR_LMDB lmdb)
find_library(ZMR_SQLITE sqlite3)
if(ZMR_LMDB AND ZMR_SQLITE)
    zmr_add_benchmark(store
        SOURCES bench_store.cpp StorePeers.h StorePeers.cpp
        LINK zmr_store ${ZMR_LMDB} ${ZMR_SQLITE}
    )
    # Else the first call of each system function would look it up within what is measured.
    target_link_options(bench_store PRIVATE -Wl,-z,now)
endif()
