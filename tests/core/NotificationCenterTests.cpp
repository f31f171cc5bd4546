#include "BrimquillCore/Foundation/NotificationCenter.h"

#include <gmock/gmock.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace brimquill {
namespace {

using ::testing::ElementsAre;

class NotificationCenterTest : public ::testing::Test {
protected:
    NotificationCenter::Handler note(std::string word) {
        return [this, word = std::move(word)](const Notification&) { heard.push_back(word); };
    }

    NotificationCenter center;
    std::vector<std::string> heard;
    int sender = 0, otherSender = 0;
};

TEST_F(NotificationCenterTest, CallsWhoObservesTheNameAndTheSenderInOrder) {
    const auto first = center.observe("Changed", nullptr, note("any"));
    const auto second = center.observe("Changed", &sender, note("sender"));
    const auto third = center.observe("Other", nullptr, note("other"));
    const auto fourth = center.observe("Changed", nullptr, [this](const Notification& notification) {
        heard.push_back(notification.userInfo.at("key"));
    });
    center.post({"Changed", &sender, {{"key", "value"}}});
    EXPECT_THAT(heard, ElementsAre("any", "sender", "value"));
    heard.clear();
    center.post({"Changed", &otherSender, {{"key", "v"}}});
    center.post({"Changed", nullptr, {{"key", "w"}}});
    EXPECT_THAT(heard, ElementsAre("any", "v", "any", "w"));
}

TEST_F(NotificationCenterTest, EndsWithItsHolder) {
    NotificationCenter::Observation kept;
    {
        const auto dropped = center.observe("n", nullptr, note("dropped"));
        auto moved = center.observe("n", nullptr, note("moved"));
        kept = std::move(moved);
    }
    center.post({"n", nullptr, {}});
    EXPECT_THAT(heard, ElementsAre("moved"));
    kept = center.observe("n", nullptr, note("replaced"));
    center.post({"n", nullptr, {}});
    kept.cancel();
    kept.cancel();
    center.post({"n", nullptr, {}});
    EXPECT_THAT(heard, ElementsAre("moved", "replaced"));
}

TEST_F(NotificationCenterTest, ObserversMayPostRegisterAndCancel) {
    NotificationCenter::Observation first, second, late;
    first = center.observe("n", nullptr, [&](const auto&) {
        heard.push_back("first");
        second.cancel();
        first.cancel();
        late = center.observe("n", nullptr, note("late"));
        center.post({"inner", nullptr, {}});
    });
    second = center.observe("n", nullptr, note("second"));
    const auto inner = center.observe("inner", nullptr, note("inner"));
    center.post({"n", nullptr, {}});
    EXPECT_THAT(heard, ElementsAre("first", "inner"));
    center.post({"n", nullptr, {}});
    EXPECT_THAT(heard, ElementsAre("first", "inner", "late"));
}

TEST_F(NotificationCenterTest, ObservationOutlivesTheCenter) {
    NotificationCenter::Observation observation;
    {
        NotificationCenter brief;
        observation = brief.observe("n", nullptr, note("heard"));
        brief.post({"n", nullptr, {}});
    }
    observation.cancel();
    EXPECT_THAT(heard, ElementsAre("heard"));
}

TEST_F(NotificationCenterTest, CancellingWaitsForACallOnAnotherThread) {
    std::mutex mutex;
    std::condition_variable changed;
    bool isInside = false, mayLeave = false;
    std::atomic<bool> hasLeft = false;
    auto observation = center.observe("n", nullptr, [&](const auto&) {
        std::unique_lock lock(mutex);
        isInside = true;
        changed.notify_all();
        changed.wait(lock, [&] { return mayLeave; });
        hasLeft = true;
    });
    std::thread poster([&] { center.post({"n", nullptr, {}}); });
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return isInside; });
    }
    bool hadLeftAtCancel = false;
    std::thread canceller([&] {
        observation.cancel();
        hadLeftAtCancel = hasLeft;
    });
    {
        const std::lock_guard lock(mutex);
        mayLeave = true;
        changed.notify_all();
    }
    poster.join();
    canceller.join();
    EXPECT_TRUE(hadLeftAtCancel);
}

TEST_F(NotificationCenterTest, ThreadsMayPostRegisterAndCancelAtOnce) {
    std::atomic<int> calls = 0;
    std::vector<std::thread> threads(4);
    const auto steady = center.observe("n", nullptr, [&calls](const auto&) { ++calls; });
    for (auto& thread : threads) {
        thread = std::thread([this] {
            for (int round = 0; round < 500; ++round) {
                const auto brief = center.observe("n", nullptr, [](const auto&) {});
                center.post({"n", nullptr, {}});
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(calls, 2000);
}

}  // namespace
}  // namespace brimquill
