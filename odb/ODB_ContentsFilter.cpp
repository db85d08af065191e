#include "odb/ODB_ContentsFilter.h"

G_DEFINE_CLASS(ODB_ContentsFilter, GStreamable);
