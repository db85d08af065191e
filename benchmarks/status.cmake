zmr_add_benchmark(status
    SOURCES bench_status.cpp
    LINK zmr_settings)
