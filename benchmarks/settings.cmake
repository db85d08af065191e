find_path(ZMR_SIMPLEINI_FOLDER SimpleIni.h)
find_library(ZMR_SIMPLEINI simpleini)
if(ZMR_SIMPLEINI_FOLDER AND ZMR_SIMPLEINI)
    zmr_add_benchmark(settings SOURCES bench_settings.cpp LINK zmr_settings ${ZMR_SIMPLEINI})
    target_include_directories(bench_settings SYSTEM PRIVATE ${ZMR_SIMPLEINI_FOLDER})
    # Texts of bytes only: the header of the other converter is not in the package.
    target_compile_definitions(bench_settings PRIVATE SI_NO_CONVERSION)
endif()
