#pragma once

#include "Platform/RunLoop.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>

namespace brimquill {

/// Finishes pieces of work on the main thread in the order in which they were added, though some must be prepared away
/// from it first. Between two of them there is a pause, so that keys are answered. Main thread.
class OrderedWork final {
public:
    /// A preparation that takes longer than this, in seconds, is given up: reading a file may take for ever.
    static constexpr double preparationLimit = 30;
    /// Seconds between two pieces, in which what the first one shows is painted.
    static constexpr double pause = 0.01;

    /// Runs on a background thread and touches nothing of the main one; false gives the piece up.
    using Prepare = std::function<bool()>;
    using Finish = std::function<void()>;

    explicit OrderedWork(platform::RunLoop& runLoop) : runLoop_(runLoop) {}

    /// Runs `finish` now, or in a turn of its own when all that was added before is done.
    void add(Finish finish) { add(nullptr, std::move(finish)); }
    /// Runs `prepare` when all that was added before is done, then, if it answers true, `finish`.
    void add(Prepare prepare, Finish finish);
    /// For a piece that is being finished: runs `rest` in the next turn, before all that waits.
    void addNext(Finish rest) { pieces_.push_front({nullptr, std::move(rest)}); }

private:
    struct Piece {
        Prepare prepare;
        Finish finish;
    };
    void runNext();
    void prepareFront();
    void prepared(std::uint64_t piece, bool succeeded);
    void finishFront(bool succeeded);
    void runNextInAnotherTurn();

    platform::RunLoop& runLoop_;
    std::deque<Piece> pieces_;
    platform::Token limit_;
    /// Counts preparations, so that the result of one that was given up is told from that of the next.
    std::uint64_t current_ = 0;
    /// While a piece is prepared, or the next one waits for its turn.
    bool isBusy_ = false;
    /// Gone with this object; a result that comes later finds nobody.
    std::shared_ptr<OrderedWork*> self_ = std::make_shared<OrderedWork*>(this);
};

}  // namespace brimquill
