zmr_add_benchmark(odb SOURCES bench_odb.cpp LINK zmr_odb)
