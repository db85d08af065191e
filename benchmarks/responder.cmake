find_package(Qt6 COMPONENTS Widgets QUIET)
if(Qt6_FOUND)
    zmr_add_benchmark(responder
        SOURCES bench_responder.cpp ResponderPeers.h ResponderPeersPlain.cpp ResponderPeersQt.cpp
        LINK zmr_responder Qt6::Widgets)
endif()
