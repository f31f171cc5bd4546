#pragma once

#include "Platform/TextRecognizer.h"

#include <QByteArray>
#include <QProcess>

#include <deque>
#include <memory>
#include <string>

namespace brimquill::platform {

/// Recognition by a helper process, one picture at a time. A picture that crashes, hangs or bloats the helper costs
/// that picture's text and nothing else: the helper is started anew for the next. It ends when idle, and its memory
/// with it.
class DesktopTextRecognizer final : public TextRecognizer {
public:
    struct Options {
        /// Empty stands for the helper that is installed beside this program.
        std::string helper;
        /// Seconds that one picture may take of the processor, and for which the helper may stand still: on a busy
        /// machine a picture takes longer, up to ten times that. Seconds that the helper stays with nothing to do.
        double deadline = 30, idleTime = 30;
    };

    DesktopTextRecognizer(RunLoop& runLoop, Options options);
    ~DesktopTextRecognizer() override;

    void recognize(const std::string& path, QualityOfService qos, std::function<void(Result)> done) override;
    /// Whether a helper runs now.
    bool isHelperRunning() const { return helper_ != nullptr; }

private:
    struct Request {
        std::string path;
        QualityOfService qos;
        std::function<void(Result)> done;
    };

    void startNext();
    void startHelper();
    void dropHelper();
    void awaitAnswer();
    void checkProgress();
    void readAnswer();
    void finish(Result result);

    RunLoop& runLoop_;
    Options options_;
    std::deque<Request> waiting_;
    std::unique_ptr<Request> current_;
    std::unique_ptr<QProcess> helper_;
    /// Whether the helper has lowered its priority, which it cannot raise again.
    bool isHelperLowered_ = false;
    QByteArray answer_;
    /// Processor time of the helper when it was given the picture and when it was last looked at; how often that was.
    double timeAtStart_ = 0, timeSeen_ = 0;
    int looks_ = 0;
    Token deadline_, idle_;
};

}  // namespace brimquill::platform
