# Hours of random work: odb_soak --minutes 60 --seed S. The tests run it for two seconds; for long
# runs it is built with the benchmarks, which are optimised.
set(source ${PROJECT_SOURCE_DIR}/tests/odb)
add_executable(odb_soak
    ${source}/DatabaseModel.h ${source}/DatabaseModel.cpp
    ${source}/TestObjects.h ${source}/TestObjects.cpp
    ${source}/odb_soak.cpp
)
zmr_link_objects(odb_soak zmr_odb)
target_link_libraries(odb_soak PRIVATE zmr_test_headers zmr_warnings)
