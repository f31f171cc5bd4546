#include "Platform/Desktop/DesktopInstance.h"
#include "tests/platform/Desktop.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QWindow>

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <string_view>

namespace brimquill::platform {

bool eventually(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 20'000) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::yieldCurrentThread();
        QThread::msleep(1);
    }
    return true;
}

namespace {
QByteArray busAddress;
}  // namespace

std::string privateBus() {
    return busAddress.toStdString();
}

int runCommand(const std::string& command) {
    return QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), QString::fromStdString(command)});
}

}  // namespace brimquill::platform

namespace {

/// A display of the tests' own, on the first free number, with a window manager that is ready.
class TestDisplay final {
public:
    bool start() {
        server_.setProcessChannelMode(QProcess::SeparateChannels);
        server_.start(QStringLiteral("Xvfb"),
                      {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                       QStringLiteral("0"), QStringLiteral("1280x800x24"), QStringLiteral("-nolisten"),
                       QStringLiteral("tcp"), QStringLiteral("-noreset")});
        while (!server_.canReadLine()) {
            if (!server_.waitForReadyRead(30'000)) return false;
        }
        qputenv("DISPLAY", ":" + server_.readLine().trimmed());
        manager_.setStandardErrorFile(QProcess::nullDevice());
        manager_.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
        return manager_.waitForStarted(30'000);
    }
    ~TestDisplay() {
        for (QProcess* process : {&manager_, &server_}) {
            process->terminate();
            process->waitForFinished(10'000);
        }
    }

private:
    QProcess server_, manager_;
};

/// A message bus that starts nothing by itself.
class TestBus final {
public:
    bool start(const QString& folder) {
        QFile configuration(folder + QStringLiteral("/bus.conf"));
        if (!configuration.open(QIODevice::WriteOnly)) return false;
        configuration.write("<busconfig><type>session</type><listen>unix:tmpdir=" + folder.toLocal8Bit() +
                            "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                            "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
        configuration.close();
        daemon_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--config-file=") + configuration.fileName(),
                                                      QStringLiteral("--print-address"), QStringLiteral("--nofork")});
        while (!daemon_.canReadLine()) {
            if (!daemon_.waitForReadyRead(30'000)) return false;
        }
        brimquill::platform::busAddress = daemon_.readLine().trimmed();
        return true;
    }
    ~TestBus() {
        daemon_.kill();
        daemon_.waitForFinished(10'000);
    }

private:
    QProcess daemon_;
};

/// Whether the window manager manages a window now. One that is taking over yet may leave a window that was made
/// meanwhile unmapped for ever, so each attempt makes its own.
bool managesAWindow(int milliseconds) {
    QWindow probe;
    probe.resize(50, 50);
    probe.show();
    const auto command =
        "xprop -id " + std::to_string(probe.winId()) + " WM_STATE 2>&1 | grep -q 'window state: Normal'";
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        if (brimquill::platform::runCommand(command) == 0) return true;
    }
    return false;
}

bool waitForWindowManager() {
    for (const int milliseconds : {500, 1000, 2000, 4000, 8000, 16000}) {
        if (managesAWindow(milliseconds)) return true;
    }
    return false;
}

/// Stands for a start of the program: tells what it came to, and stays if it is the first.
int claim(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    brimquill::platform::DesktopInstance instance(argv[2]);
    std::cout << "claiming" << std::endl;
    if (!instance.claim()) {
        std::cout << "second" << std::endl;
        return 0;
    }
    int times = 0;
    instance.setReopenHandler([&times] { std::cout << "reopened " << ++times << std::endl; });
    std::cout << "first" << std::endl;
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string_view(argv[1]) == "--claim") return claim(argc, argv);
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("QT_QPA_PLATFORM", "xcb");
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    TestDisplay display;
    if (!display.start()) return 2;
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    TestBus bus;
    if (!waitForWindowManager()) return 3;
    if (!bus.start(home.path())) return 4;
    return RUN_ALL_TESTS();
}
