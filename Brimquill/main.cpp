#include "Brimquill/AppDelegate.h"
#include "Brimquill/Settings/AppDefaults.h"
#include "Brimquill/Settings/AppSettings.h"
#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/Foundation/Log.h"
#include "BrimquillCore/Placeholders.h"
#include "BrimquillCore/SecretDetector.h"
#include "BrimquillCore/SelfTest.h"
#include "Platform/Factory.h"

#include <QApplication>
#include <QFont>
#include <QSocketNotifier>

#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <future>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace brimquill;

/// The families in which a character is looked for, in their order: signs such as ↩ are to look like the text around
/// them, so the coloured emoji come last.
void setFonts(QApplication& application) {
    QFont font = application.font();
    font.setFamilies({QStringLiteral("Noto Sans"), QStringLiteral("Noto Sans Math"), QStringLiteral("Noto Color Emoji"),
                      QStringLiteral("Noto Sans Symbols"), QStringLiteral("Noto Sans Symbols 2")});
    application.setFont(font);
}

/// The signals that ask a program to end, as something the run loop can wait for. To be called while there is one
/// thread only, so that all inherit the mask.
int endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

/// True while the run loop runs.
bool isRunning = false;

/// Qt ends the process from within the run loop when the display is lost. The objects of the program still stand then,
/// and threads use them: what `exit` would tear down under them goes with the process instead.
void endAtOnceWhileRunning() {
    if (isRunning) _exit(EXIT_FAILURE);
}

QtMessageHandler defaultMessageHandler = nullptr;

/// The toolkit says that the display is lost just before it ends the process; `exit` would by then take things from
/// under its own threads as well.
void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (isRunning && message.startsWith(QLatin1String("The X11 connection broke"))) {
        log::write("the X display is lost");
        _exit(EXIT_FAILURE);
    }
    defaultMessageHandler(type, context, message);
}

int runApplication(int argc, char** argv, int signals, ClipStore& store, AppSettings& settings,
                   platform::Services*& services) {
    setenv("QT_QUICK_BACKEND", "software", 0);
    // With many clips this takes a good part of the start: it is done while the toolkit starts.
    const auto firstItems =
        std::async(std::launch::async, [&store] { return ClipboardWatcher::allItems(store); }).share();
    QApplication application(argc, argv);
    // Panels come and go; the program stays.
    QApplication::setQuitOnLastWindowClosed(false);
    setFonts(application);
    const auto owned = platform::createServices(store.databaseURL.parent_path().string());
    services = owned.get();
    int status = 0;
    if (owned->instance().claim()) {
        settings.setLaunchAtLogin(owned->loginItem().isEnabled());
        AppDelegate delegate({*owned, store, settings, NotificationCenter::defaultCenter(),
                              AppDefaults::screenCapture(), std::vector<std::string>(argv, argv + argc), nullptr,
                              firstItems});
        QSocketNotifier ending(signals, QSocketNotifier::Read);
        QObject::connect(&ending, &QSocketNotifier::activated, &application, &QApplication::quit);
        delegate.applicationDidFinishLaunching();
        defaultMessageHandler = qInstallMessageHandler(handleMessage);
        std::atexit(endAtOnceWhileRunning);
        isRunning = true;
        status = QApplication::exec();
        isRunning = false;
    }
    services = nullptr;
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    const int signals = endSignals();
    platform::installSystemLog();
    // 1. The store exists before any setting is read.
    ClipStore& store = ClipStore::shared();
    AppSettings settings(AppDefaults::store(), &AppDefaults::screenCapture(), false);
    platform::Services* services = nullptr;
    // 2. What the core is told of the program around it.
    store.retentionLimit = settings.maxHistoryItems();
    SecretDetector::autoExpiryEnabled = settings.secretAutoExpiry();
    Placeholders::clipboardProvider = [&services] {
        return services ? services->pasteboard().string().value_or("") : std::string();
    };
    // 3. The engines check themselves, with nothing of the user interface started.
    const std::vector<std::string> arguments(argv, argv + argc);
    if (std::find(arguments.begin(), arguments.end(), "--selftest") != arguments.end()) {
        return runSelfTest(store, std::cout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    // 4. Everything else.
    const int status = runApplication(argc, argv, signals, store, settings, services);
    Placeholders::clipboardProvider = [] { return std::string(); };
    return status;
}
