#pragma once

#include "BrimquillCore/Foundation/Date.h"

namespace brimquill {

/// The first moment of the day in which `date` lies, in the user's time zone of this moment. Where a clock change
/// leaves out midnight, the first moment there is. Any thread.
Date startOfDay(Date date);

}  // namespace brimquill
