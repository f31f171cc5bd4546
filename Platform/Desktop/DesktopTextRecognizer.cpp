#include "Platform/Desktop/DesktopTextRecognizer.h"

#include "BrimquillCore/Foundation/Log.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QString>

#include <algorithm>
#include <nlohmann/json.hpp>
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

}  // namespace

DesktopTextRecognizer::DesktopTextRecognizer(RunLoop& runLoop, Options options)
    : runLoop_(runLoop), options_(std::move(options)) {}

DesktopTextRecognizer::~DesktopTextRecognizer() {
    dropHelper();
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
    if (!helper_) startHelper();
    answer_.clear();
    // A path that is no valid UTF-8 cannot be asked for; the answer to it is then that there is no such picture.
    const nlohmann::json request{{"path", current_->path}};
    const auto line = request.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) + "\n";
    helper_->write(line.data(), static_cast<qint64>(line.size()));
    deadline_ = runLoop_.after(options_.deadline, [this] {
        log::write("text recognition took too long and was given up");
        dropHelper();
        finish({});
    });
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

/// Ends the helper without waiting for it to agree.
void DesktopTextRecognizer::dropHelper() {
    if (!helper_) return;
    auto* process = helper_.release();
    process->disconnect();
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
        return;
    }
    process->kill();
    process->waitForFinished(1000);
    process->deleteLater();
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
