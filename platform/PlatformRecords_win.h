#pragma once

#include "platform/Windows.h"
