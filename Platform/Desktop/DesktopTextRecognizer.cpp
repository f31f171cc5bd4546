#include "Platform/Desktop/DesktopTextRecognizer.h"

#include "BrimquillCore/Foundation/Log.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QString>

#include <unistd.h>
#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

namespace brimquill::platform {
namespace {

/// An answer longer than this is no picture's text.
constexpr qsizetype longestAnswer = 16 << 20;

std::vector<std::string> strings(const nlohmann::json& answer, const char* key) {
    std::vector<std::string> result;
    const auto list = answer.find(key);
    if (list == answer.end() || !list->is_array()) return result;
    for (const auto& entry : *list) {
        if (entry.is_string()) result.push_back(entry.get<std::string>());
    }
    return result;
}

/// Ends a process without waiting for it to agree, or for its end.
void abandon(std::unique_ptr<QProcess> process) {
    process->disconnect();
    auto* ending = process.release();
    if (ending->state() == QProcess::NotRunning) return ending->deleteLater();
    QObject::connect(ending, &QProcess::finished, ending, &QObject::deleteLater);
    QObject::connect(ending, &QProcess::errorOccurred, ending, [ending](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) ending->deleteLater();
    });
    ending->kill();
}

/// Seconds of processor time that a process has used; 0 when it is gone.
double processorTime(qint64 process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    const std::string stat{std::istreambuf_iterator<char>(file), {}};
    // Behind the name, which may hold anything, the 12th and 13th fields.
    std::istringstream fields(stat.substr(std::min(stat.size(), stat.rfind(')') + 1)));
    std::string skipped;
    for (int field = 0; field < 11; ++field)
        fields >> skipped;
    double user = 0, system = 0;
    fields >> user >> system;
    return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

}  // namespace

DesktopTextRecognizer::DesktopTextRecognizer(RunLoop& runLoop, Options options)
    : runLoop_(runLoop), options_(std::move(options)) {}

DesktopTextRecognizer::~DesktopTextRecognizer() {
    if (!helper_) return;
    helper_->disconnect();
    helper_->kill();
    helper_->waitForFinished(1000);
}

void DesktopTextRecognizer::recognize(const std::string& path, QualityOfService qos, std::function<void(Result)> done) {
    const auto goesLater = [qos](const Request& other) {
        return qos == QualityOfService::userInitiated && other.qos == QualityOfService::utility;
    };
    waiting_.insert(std::find_if(waiting_.begin(), waiting_.end(), goesLater), {path, qos, std::move(done)});
    startNext();
}

void DesktopTextRecognizer::startNext() {
    if (current_ || waiting_.empty()) return;
    current_ = std::make_unique<Request>(std::move(waiting_.front()));
    waiting_.pop_front();
    idle_.reset();
    const bool isLow = current_->qos == QualityOfService::utility;
    if (!isLow && isHelperLowered_) dropHelper();  // somebody waits
    if (!helper_) startHelper();
    isHelperLowered_ = isHelperLowered_ || isLow;
    answer_.clear();
    // A path that is no valid UTF-8 cannot be asked for; the answer to it is then that there is no such picture.
    const nlohmann::json request{{"path", current_->path}, {"low", isLow}};
    const auto line = request.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) + "\n";
    helper_->write(line.data(), static_cast<qint64>(line.size()));
    timeAtStart_ = timeSeen_ = processorTime(helper_->processId());
    looks_ = 0;
    awaitAnswer();
}

void DesktopTextRecognizer::awaitAnswer() {
    deadline_ = runLoop_.after(options_.deadline, [this] { checkProgress(); });
}

/// Goes on waiting for a helper that still works and has only been given little of the processor.
void DesktopTextRecognizer::checkProgress() {
    constexpr int mostLooks = 10;
    const Token deadline = std::move(deadline_);
    const double time = processorTime(helper_->processId());
    if (time > timeSeen_ && time - timeAtStart_ < options_.deadline && ++looks_ < mostLooks) {
        timeSeen_ = time;
        return awaitAnswer();
    }
    log::write("text recognition took too long and was given up");
    dropHelper();
    finish({});
}

void DesktopTextRecognizer::startHelper() {
    helper_ = std::make_unique<QProcess>();
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("OMP_THREAD_LIMIT"), QStringLiteral("1"));
    helper_->setProcessEnvironment(environment);
    helper_->setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(helper_.get(), &QProcess::readyReadStandardOutput, helper_.get(), [this] { readAnswer(); });
    const auto failed = [this] {
        runLoop_.async([this, process = helper_.get()] {
            if (helper_.get() != process) return;  // replaced meanwhile
            dropHelper();
            finish({});
        });
    };
    QObject::connect(helper_.get(), &QProcess::finished, helper_.get(), failed);
    QObject::connect(helper_.get(), &QProcess::errorOccurred, helper_.get(), failed);
    helper_->start(options_.helper.empty()
                       ? QCoreApplication::applicationDirPath() + QStringLiteral("/brimquill-recognizer")
                       : QString::fromStdString(options_.helper),
                   {});
}

void DesktopTextRecognizer::dropHelper() {
    isHelperLowered_ = false;
    if (helper_) abandon(std::move(helper_));
}

void DesktopTextRecognizer::readAnswer() {
    answer_ += helper_->readAllStandardOutput();
    const auto end = answer_.indexOf('\n');
    if (end < 0 && answer_.size() < longestAnswer) return;
    const auto answer =
        nlohmann::json::parse(answer_.constData(), answer_.constData() + std::max<qsizetype>(end, 0), nullptr, false);
    if (!answer.is_object()) {
        dropHelper();
        finish({});
        return;
    }
    finish({strings(answer, "codes"), strings(answer, "lines")});
}

void DesktopTextRecognizer::finish(Result result) {
    deadline_.reset();
    answer_.clear();
    if (!current_) return;
    const auto request = std::move(current_);
    // The next begins after this one was told, so that an answer never overtakes another.
    runLoop_.async([done = std::move(request->done), result = std::move(result)] { done(result); });
    if (waiting_.empty()) idle_ = runLoop_.after(options_.idleTime, [this] { dropHelper(); });
    startNext();
}

}  // namespace brimquill::platform
