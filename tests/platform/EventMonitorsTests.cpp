#include "tests/platform/ForeignClient.h"
#include "tests/platform/ServicesFixture.h"

#include <QWindow>

#include <gmock/gmock.h>

namespace brimquill::platform {
namespace {

using testing::ElementsAre;

class EventMonitorsTest : public ServicesFixture {
protected:
    void click(Point point) {
        if (world_ != nullptr) {
            world_->click(point);
        } else {
            other().click(static_cast<int>(point.x), static_cast<int>(point.y));
        }
    }
    void changeModifier(bool shift, bool isDown) {
        const auto keycode = shift ? position::shift : position::super;
        if (world_ != nullptr) {
            (shift ? held_.shift : held_.command) = isDown;
            world_->changeModifiers(held_);
        } else if (isDown) {
            other().keysDown({keycode});
        } else {
            other().keysUp({keycode});
        }
    }

private:
    ForeignClient& other() {
        if (!other_) other_.emplace();
        return *other_;
    }
    std::optional<ForeignClient> other_;
    Modifiers held_;
};
INSTANTIATE_TEST_SUITE_P(Backends, EventMonitorsTest, testing::Bool(), backendName);

TEST_P(EventMonitorsTest, AClickGoesToTheMonitorsOfWhomItHits) {
    std::vector<Point> global;
    int local = 0, keys = 0;
    auto& monitors = services_->eventMonitors();
    const Token seen =
        monitors.addGlobalMonitor(EventMask::mouseDown, [&](const Event& event) { global.push_back(event.location); });
    const Token own = monitors.addLocalMonitor(EventMask::mouseDown, [&](const Event&) {
        ++local;
        return false;
    });
    const Token others = monitors.addGlobalMonitor(EventMask::keyDown, [&](const Event&) { ++keys; });
    QWindow body, line;
    auto panel = services_->panels().makePanel(body, PanelRole::passive);
    auto display = services_->panels().makePanel(line, PanelRole::display);
    panel->show({300, 300, 200, 100});
    display->show({600, 300, 200, 100});
    ASSERT_TRUE(until([&] { return panel->isVisible() && display->isVisible(); }));
    click({350, 350});
    EXPECT_TRUE(until([&] { return local == 1; }));
    click({350, 250});
    EXPECT_TRUE(until([&] { return global.size() == 1; }));
    click({650, 350});
    EXPECT_TRUE(until([&] { return global.size() == 2; }));
    EXPECT_THAT(global, ElementsAre(Point{350, 250}, Point{650, 350})) << "what only shows lets clicks through";
    EXPECT_EQ(local, 1);
    EXPECT_EQ(keys, 0);
}

TEST_P(EventMonitorsTest, ModifiersAreToldAsTheyChange) {
    std::vector<Modifiers> seen;
    double last = 0;
    Token monitor = services_->eventMonitors().addGlobalMonitor(EventMask::flagsChanged, [&](const Event& event) {
        seen.push_back(event.modifiers);
        EXPECT_GE(event.uptime, last);
        EXPECT_LE(event.uptime, services_->runLoop().uptime());
        last = event.uptime;
    });
    for (const auto& [shift, isDown] :
         {std::pair(true, true), std::pair(false, true), std::pair(true, false), std::pair(false, false)}) {
        const auto before = seen.size();
        changeModifier(shift, isDown);
        EXPECT_TRUE(until([&] { return seen.size() == before + 1; }));
    }
    EXPECT_THAT(seen, ElementsAre(Modifiers{.shift = true}, Modifiers{.command = true, .shift = true},
                                  Modifiers{.command = true}, Modifiers{}));
    monitor.reset();
    int later = 0;
    const Token next =
        services_->eventMonitors().addGlobalMonitor(EventMask::flagsChanged, [&](const Event&) { ++later; });
    changeModifier(true, true);
    changeModifier(true, false);
    EXPECT_TRUE(until([&] { return later == 2; }));
    EXPECT_EQ(seen.size(), 4U) << "one that has gone sees nothing";
}

}  // namespace
}  // namespace brimquill::platform
