#include <chrono>
#include <cstdio>

#include "bench/chat/Figures.h"
#include "bench/chat/Floods.h"
#include "bench/chat/Kit.h"
#include "bench/chat/Measurements.h"
#include "supportsdk/platform/Stanza.h"

namespace supportsdk::bench {}  // namespace supportsdk::bench
