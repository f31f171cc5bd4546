#include "Platform/Desktop/DesktopScreenCapture.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Desktop/ScreenshotDirectory.h"

#include <QFile>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

#include <utility>

namespace brimquill::platform {

DesktopScreenCapture::DesktopScreenCapture(RunLoop& runLoop, Options options)
    : runLoop_(runLoop), options_(std::move(options)) {}

DesktopScreenCapture::~DesktopScreenCapture() {
    done_ = nullptr;
    end();
}

ScreenCapture::Launch DesktopScreenCapture::captureInteractively(const std::string& target,
                                                                 std::function<void()> done) {
    const auto program = QStandardPaths::findExecutable(QString::fromStdString(options_.tool));
    if (program.isEmpty()) return Launch::failed;
    end();
    done_ = std::move(done);
    tool_ = std::make_unique<QProcess>();
    tool_->setStandardOutputFile(QProcess::nullDevice());
    tool_->setStandardErrorFile(QProcess::nullDevice());
    const auto ended = [this, process = tool_.get(), target] {
        // The tool writes as the user's mask says; what it saw of the screen is for the user alone.
        QFile::setPermissions(QString::fromStdString(target), QFile::ReadOwner | QFile::WriteOwner);
        runLoop_.async([this, process] {
            if (tool_.get() == process) end();
        });
    };
    QObject::connect(tool_.get(), &QProcess::finished, tool_.get(), ended);
    QObject::connect(tool_.get(), &QProcess::errorOccurred, tool_.get(), ended);
    tool_->start(program, {QStringLiteral("--select"), QStringLiteral("--hidecursor"), QString::fromStdString(target)});
    timeout_ = runLoop_.after(options_.longest, [this] {
        log::write("screen capture was not finished and was given up");
        end();
    });
    return Launch::started;
}

std::optional<std::string> DesktopScreenCapture::savingDirectory() const {
    return screenshotDirectory();
}

/// Ends the tool, if it still runs, and tells who waits for it.
void DesktopScreenCapture::end() {
    timeout_.reset();
    if (const auto tool = std::move(tool_)) {
        tool->disconnect();
        if (tool->state() != QProcess::NotRunning) {
            tool->terminate();
            if (!tool->waitForFinished(200)) {
                tool->kill();
                tool->waitForFinished(1000);
            }
        }
    }
    if (const auto done = std::exchange(done_, nullptr)) done();
}

}  // namespace brimquill::platform
