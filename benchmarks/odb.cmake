zmr_add_benchmark(odb SOURCES bench_odb.cpp LINK zmr_odb)
include(${PROJECT_SOURCE_DIR}/tests/odb/odb_soak.cmake)
