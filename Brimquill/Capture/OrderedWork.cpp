#include "Brimquill/Capture/OrderedWork.h"

#include <utility>

namespace brimquill {

void OrderedWork::add(Prepare prepare, Finish finish) {
    pieces_.push_back({std::move(prepare), std::move(finish)});
    if (!isBusy_) runNext();
}

void OrderedWork::runNext() {
    isBusy_ = true;
    if (pieces_.front().prepare)
        prepareFront();
    else
        finishFront(true);
}

void OrderedWork::prepareFront() {
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
    if (piece != current_) return;
    ++current_;
    // The token goes last: this may run from the timer itself, whose closure holds `piece`.
    const platform::Token limit = std::move(limit_);
    finishFront(succeeded);
}

void OrderedWork::finishFront(bool succeeded) {
    const Finish finish = std::move(pieces_.front().finish);
    pieces_.pop_front();
    runNextInAnotherTurn();
    if (succeeded) finish();
}

void OrderedWork::runNextInAnotherTurn() {
    runLoop_.asyncAfter(pause, [weak = std::weak_ptr<OrderedWork*>(self_)] {
        const auto self = weak.lock();
        if (!self) return;
        (*self)->isBusy_ = false;
        if (!(*self)->pieces_.empty()) (*self)->runNext();
    });
}

}  // namespace brimquill
