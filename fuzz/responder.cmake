zmr_add_fuzz(scenes SOURCES fuzz_scenes.cpp LINK zmr_responder)
