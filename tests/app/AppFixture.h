#pragma once

#include "Brimquill/Capture/ClipboardWatcher.h"
#include "Brimquill/Paste/PasteService.h"
#include "Brimquill/Settings/AppSettings.h"
#include "BrimquillCore/ClipStore.h"
#include "Platform/Headless/World.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace brimquill {

/// A directory of its own, gone with this.
class TemporaryDirectory final {
public:
    TemporaryDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "brimquill-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TemporaryDirectory() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Keeps what was flashed.
class RecordedHUD final : public HUD {
public:
    void show(const std::string& text, const std::string& symbol) override { lines.emplace_back(text, symbol); }
    std::vector<std::pair<std::string, std::string>> lines;
};

/// Keeps what was confirmed.
class RecordedToast final : public CaptureToast {
public:
    void show(const Content& content, Occasion occasion) override {
        contents.push_back(content);
        occasions.push_back(occasion);
    }
    std::vector<Content> contents;
    std::vector<Occasion> occasions;
};

/// The services of capture and paste on a desktop of their own.
class AppFixture : public testing::Test {
protected:
    TemporaryDirectory directory;
    platform::World world;
    NotificationCenter center;
    ClipStore store{directory.path(), center, [this] { return world.runLoop().now(); }};
    AppSettings settings{world.defaults(), nullptr, false};
    RecordedHUD hud;
    RecordedToast toast;
    PasteService pasteService{{world.pasteboard(), world.workspace(), world.accessibility(), world.syntheticKeys(),
                               world.runLoop(), hud, center, [](const std::string& text) { return "<" + text + ">"; }}};
};

}  // namespace brimquill
