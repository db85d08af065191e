zmr_add_fuzz(mediators SOURCES fuzz_mediators.cpp MemoryFile.h LINK zmr_odb)
