zmr_add_fuzz(bmp SOURCES fuzz_bmp.cpp LINK zmr_graphics)
zmr_add_fuzz(tga SOURCES fuzz_tga.cpp LINK zmr_graphics)
zmr_add_fuzz(images SOURCES fuzz_images.cpp LINK zmr_graphics)
