#include "Brimquill/AppDelegate.h"

#include "BrimquillCore/Foundation/Log.h"
#include "BrimquillCore/Placeholders.h"
#include "BrimquillCore/SecretDetector.h"

#include <QPointer>

#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <utility>

namespace brimquill {
namespace {

/// After the start, in seconds, what the command line asked to be shown is shown: capture runs by then.
constexpr double pickerDelay = 0.5;

std::string expandSnippet(const std::string& text) {
    try {
        return Placeholders::expand(text);
    } catch (const std::exception&) {
        // Amounts in it that no date can take: what the user wrote is still better than nothing.
        return text;
    }
}

bool contains(const std::vector<std::string>& arguments, const char* wanted) {
    return std::find(arguments.begin(), arguments.end(), wanted) != arguments.end();
}

}  // namespace

AppDelegate::AppDelegate(Environment environment)
    : environment_(std::move(environment)),
      services_(environment_.services),
      store_(environment_.store),
      settings_(environment_.settings),
      viewHost_(settings_, services_.appearance(), services_.panels()),
      hud_(viewHost_, services_.screens(), services_.runLoop(), [this] { return palette_.isVisible(); }),
      toast_({viewHost_, settings_, services_.screens(), services_.runLoop(), [this] { return palette_.isVisible(); }}),
      tagPanel_(store_, {viewHost_, services_.screens(), services_.pasteboard(), services_.runLoop(),
                         services_.eventMonitors()}),
      editPanel_(store_, {viewHost_, services_.screens(), services_.pasteboard(), services_.runLoop(),
                          services_.eventMonitors()}),
      pasteService_({services_.pasteboard(), services_.workspace(), services_.accessibility(),
                     services_.syntheticKeys(), services_.runLoop(), hud_, environment_.center, expandSnippet}),
      stack_(store_, pasteService_, hud_, services_.defaults()),
      ocr_({store_, pasteService_, toast_, hud_, environment_.center, services_.runLoop(), services_.textRecognizer(),
            services_.screenCapture()}),
      watcher_({store_, settings_, pasteService_, toast_,
                [this](const std::string& path, platform::QualityOfService qos,
                       std::function<void(std::string)> completion) {
                    ocr_.recognizeText(path, qos, std::move(completion));
                },
                environment_.center, services_.pasteboard(), services_.workspace(), services_.eventMonitors(),
                services_.runLoop(), environment_.firstItems}),
      secureInput_(services_.secureInput(), services_.runLoop()),
      screenshots_({store_, settings_, toast_, ocr_, environment_.screenCapture, services_.folderWatcher(),
                    services_.runLoop(), services_.screenCapture()}),
      picker_({store_, environment_.center, services_.runLoop(), services_.defaults(),
               [this] { return stack_.itemIds(); }}),
      pickerActions_({picker_, store_, pasteService_, settings_, services_.workspace(), hud_, expandSnippet}),
      palette_({picker_, pickerActions_, services_, settings_, viewHost_, environment_.center, tagPanel_, editPanel_,
                stack_}),
      hotKeys_(services_.hotKeys()) {}

void AppDelegate::applicationDidFinishLaunching() {
    connectSettings();
    watcher_.start();
    log::write("ready");
    secureInput_.start();
    registerHotKeys();
    log::write("accessibility trusted=" + std::to_string(services_.accessibility().isProcessTrusted()));
    screenshots_.onCapture = [this] { watcher_.reload({}); };
    if (settings_.captureScreenshotFiles()) screenshots_.start();
    connect(&toast_, &CaptureToastPanel::opened, this, [this] { palette_.show(); });
    services_.instance().setReopenHandler([this] { applicationShouldHandleReopen(); });
    if (contains(environment_.arguments, "--picker")) {
        services_.runLoop().asyncAfter(pickerDelay, [self = QPointer(this)] {
            if (self) self->palette_.toggle();
        });
    }
}

void AppDelegate::registerHotKeys() {
    using platform::Modifiers;
    namespace key = platform::key;
    hotKeys_.registerHotKey(key::v, Modifiers{.command = true, .shift = true}, "⇧⌘V palette", [this] {
        log::write("palette hotkey fired");
        palette_.toggle();
    });
    hotKeys_.registerHotKey(key::v, Modifiers{.command = true, .option = true}, "⌥⌘V stack",
                            [this] { pasteNextFromStack(); });
    hotKeys_.registerHotKey(key::two, Modifiers{.command = true, .shift = true}, "⇧⌘2 OCR", [this] {
        log::write("OCR hotkey fired");
        snip();
    });
}

/// What is pasted is for the application below, not for a field of the palette or of a form.
void AppDelegate::pasteNextFromStack() {
    palette_.close();
    tagPanel_.panel().resignKey();
    editPanel_.panel().resignKey();
    stack_.pasteNext();
}

/// The program's own panels are out of the way, and have let go of the keyboard, before the screen is captured.
void AppDelegate::snip() {
    palette_.close();
    tagPanel_.close();
    editPanel_.setAside();
    ++snipsUnderWay_;
    ocr_.captureAndRecognize([self = QPointer(this)](const std::optional<ClipItem>& captured) {
        if (self) self->finishSnip(captured);
    });
}

void AppDelegate::finishSnip(const std::optional<ClipItem>& captured) {
    watcher_.reload({});
    // The next snip may have begun: it ends the one before it.
    if (--snipsUnderWay_ == 0) editPanel_.bringBack();
    if (!captured || !settings_.organizeAfterCapture()) return;
    tagPanel_.show(*captured, OrganizeView::Field::tags,
                   [self = QPointer(this)] {
                       if (self) self->watcher_.reload({});
                   },
                   {.title = "Organize Capture", .dismissLabel = "Skip"});
}

/// What each change of a setting starts, stops or tunes.
void AppDelegate::connectSettings() {
    connect(&settings_, &AppSettings::maxHistoryItemsChanged, this,
            [this] { store_.retentionLimit = settings_.maxHistoryItems(); });
    connect(&settings_, &AppSettings::secretAutoExpiryChanged, this,
            [this] { SecretDetector::autoExpiryEnabled = settings_.secretAutoExpiry(); });
    connect(&settings_, &AppSettings::launchAtLoginChanged, this, [this] { applyLaunchAtLogin(); });
    connect(&settings_, &AppSettings::captureScreenshotFilesChanged, this, [this] {
        if (settings_.captureScreenshotFiles()) {
            screenshots_.start();
        } else {
            screenshots_.stop();
        }
    });
}

void AppDelegate::applyLaunchAtLogin() {
    if (const auto failure = services_.loginItem().setEnabled(settings_.launchAtLogin())) {
        std::cout << "Launch at login unavailable: " << *failure << std::endl;
    }
}

bool AppDelegate::isTourDue() const {
    return environment_.showTour && !services_.defaults().boolean("onboardingShown").value_or(false);
}

void AppDelegate::applicationShouldHandleReopen() {
    log::write("reopen event (visible windows=" + std::to_string(palette_.isVisible()) + ")");
    if (isTourDue()) {
        environment_.showTour();
        return;
    }
    palette_.show();
    hud_.show("Brimquill is running in your menu bar · ⇧⌘V opens this palette", "menubar.arrow.up.rectangle");
}

}  // namespace brimquill
