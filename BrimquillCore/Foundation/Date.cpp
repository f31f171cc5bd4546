#include "BrimquillCore/Foundation/Date.h"

#include <chrono>

namespace brimquill {

Date Date::now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return {std::chrono::duration<double>(sinceEpoch).count()};
}

}  // namespace brimquill
