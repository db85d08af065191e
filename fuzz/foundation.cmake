zmr_add_fuzz(streams SOURCES fuzz_streams.cpp LINK zmr_foundation)
zmr_add_fuzz(flate SOURCES fuzz_flate.cpp LINK zmr_foundation)
