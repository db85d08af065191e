#pragma once

/// A place in a list or a map; null is behind the last.
struct PlatformPosition_;
using POSITION = PlatformPosition_*;
