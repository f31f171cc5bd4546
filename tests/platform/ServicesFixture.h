#pragma once

#include "Platform/Desktop/JsonUserDefaults.h"
#include "Platform/Factory.h"
#include "Platform/Headless/World.h"
#include "tests/platform/Desktop.h"

#include <gtest/gtest.h>

namespace brimquill::platform {

/// The same demands on the desktop in memory and on the real one.
class ServicesFixture : public testing::TestWithParam<bool> {
protected:
    ServicesFixture() {
        if (GetParam()) {
            services_ = createServices(userDefaultsDirectory().string());
        } else {
            auto world = std::make_unique<World>();
            world_ = world.get();
            services_ = std::move(world);
        }
    }
    bool until(const std::function<bool()>& condition) {
        if (world_ == nullptr) return eventually(condition);
        for (int step = 0; step < 1000 && !condition(); ++step)
            world_->advance(0.01);
        return condition();
    }
    void pressHotKey() {
        if (world_ != nullptr) {
            world_->hotKeys().fire(key::v, {true, true, false, false});
        } else {
            ASSERT_EQ(runCommand("xdotool key super+shift+v"), 0);
        }
    }

    World* world_ = nullptr;
    std::unique_ptr<Services> services_;
};

/// The names of the two desktops in a test's own name.
inline std::string backendName(const testing::TestParamInfo<bool>& backend) {
    return backend.param ? "X11" : "Headless";
}

}  // namespace brimquill::platform
