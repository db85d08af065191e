#include "graphics/AbstractImage.h"

AbstractImage::~AbstractImage() = default;
