# The readers of the sample module, bytes in.
set(module ${PROJECT_SOURCE_DIR}/samples/scene_module)
set(readers
    ${module}/ObjText.cpp
    ${module}/StlData.cpp
    ${module}/TextScanner.cpp
    ${module}/TriangleMesh.cpp
    ${module}/VertexTable.cpp
)
zmr_add_fuzz(obj SOURCES fuzz_obj.cpp ${readers} LINK zmr_foundation)
zmr_add_fuzz(stl SOURCES fuzz_stl.cpp ${readers} LINK zmr_foundation)
foreach(target IN ITEMS fuzz_obj fuzz_stl)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/samples)
endforeach()
