zmr_add_fuzz(library SOURCES fuzz_library.cpp MemoryFile.h LINK zmr_store)
