#include "odb/GInputAVIFile.h"

GInputAVIFile::GInputAVIFile(const char*) {}

GInputAVIFile::~GInputAVIFile() = default;
