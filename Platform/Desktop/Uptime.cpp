#include "Platform/Desktop/Uptime.h"

#include <chrono>

namespace brimquill::platform {

double uptime() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace brimquill::platform
