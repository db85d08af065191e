find_library(ZMR_LMDB lmdb)
find_library(ZMR_SQLITE sqlite3)
if(ZMR_LMDB AND ZMR_SQLITE)
    zmr_add_benchmark(store
        SOURCES bench_store.cpp StorePeers.h StorePeers.cpp
        LINK zmr_store ${ZMR_LMDB} ${ZMR_SQLITE}
    )
endif()
