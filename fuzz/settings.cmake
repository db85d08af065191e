zmr_add_fuzz(ini SOURCES fuzz_ini.cpp MemoryFile.h LINK zmr_settings)
