#pragma once

#include "BrimquillCore/Foundation/Date.h"

#include <iosfwd>

namespace brimquill {

class ClipStore;

/// Runs the program's own fifteen checks of its engines on `store`, one line of `output` for each and a closing line,
/// and gives the number of those that failed: 0 is success. A failed check does not stop the others. Leaves two
/// deleted clips in the store. `clock` has to be the store's. Any thread.
int runSelfTest(ClipStore& store, std::ostream& output, const Clock& clock = Date::now);

}  // namespace brimquill
