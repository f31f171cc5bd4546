#include "Platform/Headless/World.h"
#include "tests/platform/Desktop.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <vector>

namespace brimquill::platform {
namespace {

TEST(Instance, TheDesktopInMemoryHandsOverToo) {
    World world;
    int reopened = 0;
    EXPECT_TRUE(world.instance().claim());
    world.instance().setReopenHandler([&] { ++reopened; });
    world.instance().reopen();
    EXPECT_EQ(reopened, 1);
    world.instance().setRunsElsewhere(true);
    EXPECT_FALSE(world.instance().claim());
}

/// Starts of the program, each a process of its own.
class DesktopInstanceTest : public testing::Test {
protected:
    /// A start with this data directory; it tells what it came to.
    std::unique_ptr<QProcess> start(const QString& data = QStringLiteral("/data")) {
        auto process = std::make_unique<QProcess>();
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime_.path());
        process->setProcessEnvironment(environment);
        process->start(QCoreApplication::applicationFilePath(), {QStringLiteral("--claim"), data});
        return process;
    }
    static bool tells(QProcess& process, const char* word) {
        return eventually([&] { return told(process).contains(word); });
    }
    static QByteArray told(QProcess& process) {
        auto more = process.property("told").toByteArray() + process.readAllStandardOutput();
        process.setProperty("told", more);
        return more;
    }
    static void send(QProcess& process, int signal) { kill(static_cast<pid_t>(process.processId()), signal); }
    static void end(QProcess& process) {
        send(process, SIGKILL);
        EXPECT_TRUE(eventually([&] { return process.state() == QProcess::NotRunning; }));
    }
    /// Connections to the first start until it takes no more.
    std::vector<std::unique_ptr<QLocalSocket>> crowd() const {
        const auto sockets = QDir(runtime_.path()).entryInfoList({QStringLiteral("*.socket")}, QDir::System);
        std::vector<std::unique_ptr<QLocalSocket>> connections;
        while (sockets.size() == 1 && connections.size() < 10'000) {
            auto connection = std::make_unique<QLocalSocket>();
            connection->connectToServer(sockets.front().filePath());
            if (connection->state() != QLocalSocket::ConnectedState) break;
            connections.push_back(std::move(connection));
        }
        return connections;
    }

    QTemporaryDir runtime_;
};

TEST_F(DesktopInstanceTest, TheFirstStartStaysAndIsToldOfTheOthers) {
    auto first = start();
    ASSERT_TRUE(tells(*first, "first"));
    for (const char* times : {"reopened 1", "reopened 2"}) {
        auto second = start();
        EXPECT_TRUE(tells(*second, "second"));
        EXPECT_TRUE(tells(*first, times));
    }
    auto elsewhere = start(QStringLiteral("/other data"));
    EXPECT_TRUE(tells(*elsewhere, "first"));
    EXPECT_FALSE(told(*first).contains("reopened 3"));
    end(*elsewhere);
    end(*first);
    auto next = start();
    EXPECT_TRUE(tells(*next, "first")) << "what a program that was killed leaves behind is in nobody's way";
    auto second = start();
    EXPECT_TRUE(tells(*second, "second"));
    EXPECT_TRUE(tells(*next, "reopened 1"));
    end(*next);
}

TEST_F(DesktopInstanceTest, AProgramThatHangsDoesNotHoldTheSecondStart) {
    auto first = start();
    ASSERT_TRUE(tells(*first, "first"));
    send(*first, SIGSTOP);
    auto second = start();
    EXPECT_TRUE(tells(*second, "second"));
    {
        const auto crowded = crowd();
        EXPECT_GT(crowded.size(), 0U);
        auto third = start();
        EXPECT_TRUE(tells(*third, "second")) << "also where its queue is full";
    }
    send(*first, SIGCONT);
    EXPECT_TRUE(tells(*first, "reopened 1")) << "it hears of the start when it goes on";
    end(*first);
}

TEST_F(DesktopInstanceTest, AStartThatMeetsTheEndOfTheFirstTakesItsPlace) {
    auto first = start();
    ASSERT_TRUE(tells(*first, "first"));
    send(*first, SIGSTOP);
    auto second = start();
    ASSERT_TRUE(tells(*second, "claiming"));
    end(*first);
    // It may have given up by then, on a very slow machine; the next start does not.
    EXPECT_TRUE(eventually([&] { return told(*second).contains("first") || told(*second).contains("second"); }));
    if (!told(*second).contains("first")) second = start();
    EXPECT_TRUE(tells(*second, "first"));
    end(*second);
}

}  // namespace
}  // namespace brimquill::platform
