zmr_add_fuzz(mediators SOURCES fuzz_mediators.cpp CountedFiles.h LINK zmr_odb)
