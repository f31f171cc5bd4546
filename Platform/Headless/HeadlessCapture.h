#pragma once

#include "Platform/FolderWatcher.h"
#include "Platform/HandlerList.h"
#include "Platform/RunLoop.h"
#include "Platform/ScreenCapture.h"
#include "Platform/SecureInput.h"
#include "Platform/TextRecognizer.h"

#include <fstream>
#include <map>
#include <set>
#include <utility>

namespace brimquill::platform {

/// Answers with the result set for a path, or for every path, after the time it is told to take.
class HeadlessTextRecognizer final : public TextRecognizer {
public:
    struct Request {
        std::string path;
        QualityOfService qos;
    };

    explicit HeadlessTextRecognizer(RunLoop& runLoop) : runLoop_(runLoop) {}
    void setResult(Result result) { result_ = std::move(result); }
    void setSeconds(double seconds) { seconds_ = seconds; }
    const std::vector<Request>& requests() const { return requests_; }

    void recognize(const std::string& path, QualityOfService qos, std::function<void(Result)> done) override {
        requests_.push_back({path, qos});
        runLoop_.asyncAfter(seconds_, [result = result_, done = std::move(done)] { done(result); });
    }

private:
    RunLoop& runLoop_;
    Result result_;
    double seconds_ = 0.2;
    std::vector<Request> requests_;
};

/// Plays a user who drags out a rectangle with the bytes set, or who cancels when none were.
class HeadlessScreenCapture final : public ScreenCapture {
public:
    explicit HeadlessScreenCapture(RunLoop& runLoop) : runLoop_(runLoop) {}
    void setPicture(std::string bytes) { picture_ = std::move(bytes); }
    void setAvailable(bool available) { isAvailable_ = available; }
    void setSavingDirectory(std::optional<std::string> directory) { savingDirectory_ = std::move(directory); }
    std::optional<std::string> savingDirectory() const override { return savingDirectory_; }
    const std::vector<std::string>& targets() const { return targets_; }

    Launch captureInteractively(const std::string& target, std::function<void()> done) override {
        targets_.push_back(target);
        if (!isAvailable_) return Launch::failed;
        runLoop_.asyncAfter(1.0, [picture = picture_, target, done = std::move(done)] {
            if (!picture.empty()) std::ofstream(target, std::ios::binary) << picture;
            done();
        });
        return Launch::started;
    }

private:
    RunLoop& runLoop_;
    std::string picture_;
    std::optional<std::string> savingDirectory_;
    bool isAvailable_ = true;
    std::vector<std::string> targets_;
};

class HeadlessFolderWatcher final : public FolderWatcher {
public:
    /// Tells who watches the folder.
    void change(const std::string& directory) { handlers_[directory].callAll(); }
    void setUnwatchable(const std::string& directory) { unwatchable_.insert(directory); }

    Token watch(const std::string& directory, std::function<void()> changed) override {
        if (unwatchable_.contains(directory)) return nullptr;
        return handlers_[directory].add(std::move(changed));
    }

private:
    std::map<std::string, HandlerList<std::function<void()>>> handlers_;
    std::set<std::string> unwatchable_;
};

class HeadlessSecureInput final : public SecureInput {
public:
    void set(bool enabled, std::optional<std::string> holderName = {}) {
        isEnabled_ = enabled;
        holderName_ = std::move(holderName);
    }
    /// Tells that a hold has lasted.
    void confirm() { observers_.callAll(); }
    bool isEnabled() override { return isEnabled_; }
    Token observe(std::function<void()> changed) override { return observers_.add(std::move(changed)); }
    std::optional<std::string> holderName() override { return holderName_; }

private:
    bool isEnabled_ = false;
    std::optional<std::string> holderName_;
    HandlerList<std::function<void()>> observers_;
};

}  // namespace brimquill::platform
