#include "Brimquill/AppDelegate.h"

#include "BrimquillCore/Foundation/Log.h"
#include "BrimquillCore/Placeholders.h"
#include "BrimquillCore/SecretDetector.h"

#include <QPointer>

#include <exception>
#include <string>

namespace brimquill {
namespace {

/// After the start, in seconds: capture runs, and the first panel should come up as quickly as the next.
constexpr double viewPreparationDelay = 0.5;

std::string expandSnippet(const std::string& text) {
    try {
        return Placeholders::expand(text);
    } catch (const std::exception&) {
        // Amounts in it that no date can take: what the user wrote is still better than nothing.
        return text;
    }
}

bool isPaletteVisible() {
    return false;
}

}  // namespace

AppDelegate::AppDelegate(platform::Services& services, ClipStore& store, AppSettings& settings,
                         NotificationCenter& center)
    : services_(services),
      store_(store),
      settings_(settings),
      viewHost_(settings, services.appearance(), services.panels()),
      hud_(viewHost_, services.screens(), services.runLoop(), isPaletteVisible),
      toast_({viewHost_, settings, services.screens(), services.runLoop(), isPaletteVisible}),
      pasteService_({services.pasteboard(), services.workspace(), services.accessibility(), services.syntheticKeys(),
                     services.runLoop(), hud_, center, expandSnippet}),
      watcher_({store, settings, pasteService_, toast_, nullptr, center, services.pasteboard(), services.workspace(),
                services.eventMonitors(), services.runLoop()}),
      hotKeys_(services.hotKeys()) {}

void AppDelegate::applicationDidFinishLaunching() {
    connectSettings();
    watcher_.start();
    log::write("ready");
    log::write("accessibility trusted=" + std::to_string(services_.accessibility().isProcessTrusted()));
    services_.instance().setReopenHandler([this] { applicationShouldHandleReopen(); });
    services_.runLoop().asyncAfter(viewPreparationDelay, [self = QPointer(this)] {
        if (self) self->prepareViews();
    });
}

/// What each change of a setting starts, stops or tunes.
void AppDelegate::connectSettings() {
    connect(&settings_, &AppSettings::maxHistoryItemsChanged, this,
            [this] { store_.retentionLimit = settings_.maxHistoryItems(); });
    connect(&settings_, &AppSettings::secretAutoExpiryChanged, this,
            [this] { SecretDetector::autoExpiryEnabled = settings_.secretAutoExpiry(); });
}

void AppDelegate::prepareViews() {
    hud_.prepare();
    toast_.prepare();
}

void AppDelegate::applicationShouldHandleReopen() {
    log::write("reopen event");
    hud_.show("Brimquill is running", "doc.on.clipboard.fill");
}

}  // namespace brimquill
