#include "Brimquill/Capture/OrderedWork.h"

#include <utility>

namespace brimquill {

void OrderedWork::add(Prepare prepare, Finish finish) {
    pieces_.push_back({std::move(prepare), std::move(finish)});
    if (!isPreparing_) runNext();
}

void OrderedWork::runNext() {
    while (!pieces_.empty() && !isPreparing_) {
        if (pieces_.front().prepare) {
            prepareFront();
        } else {
            const Finish finish = std::move(pieces_.front().finish);
            pieces_.pop_front();
            finish();
        }
    }
}

void OrderedWork::prepareFront() {
    isPreparing_ = true;
    const std::uint64_t piece = ++current_;
    limit_ = runLoop_.after(preparationLimit, [this, piece] { prepared(piece, false); });
    runLoop_.global(platform::QualityOfService::userInitiated,
                    [prepare = std::move(pieces_.front().prepare), piece, &runLoop = runLoop_,
                     weak = std::weak_ptr<OrderedWork*>(self_)] {
                        const bool succeeded = prepare();
                        runLoop.async([weak, piece, succeeded] {
                            if (const auto self = weak.lock()) (*self)->prepared(piece, succeeded);
                        });
                    });
}

void OrderedWork::prepared(std::uint64_t piece, bool succeeded) {
    if (!isPreparing_ || piece != current_) return;
    isPreparing_ = false;
    const Finish finish = std::move(pieces_.front().finish);
    pieces_.pop_front();
    // The token goes last: this may run from the timer itself, whose closure holds `piece`.
    const platform::Token limit = std::move(limit_);
    if (succeeded) finish();
    runNext();
}

}  // namespace brimquill
