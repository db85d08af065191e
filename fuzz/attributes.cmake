zmr_add_fuzz(attributes SOURCES fuzz_attributes.cpp LINK zmr_odb)
zmr_add_fuzz(filters SOURCES fuzz_filters.cpp MemoryFile.h LINK zmr_odb)
zmr_add_fuzz(movie_names SOURCES fuzz_movie_names.cpp MemoryFile.h LINK zmr_odb)
