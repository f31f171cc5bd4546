#pragma once

#include "Platform/Accessibility.h"
#include "Platform/HandlerList.h"
#include "Platform/Instance.h"
#include "Platform/LoginItem.h"
#include "Platform/OpenPanel.h"
#include "Platform/RunLoop.h"
#include "Platform/Screens.h"
#include "Platform/SystemAppearance.h"

#include <optional>
#include <utility>

namespace brimquill::platform {

/// The services that are little more than a value somebody sets.

class HeadlessAccessibility final : public Accessibility {
public:
    void setTrusted(bool trusted) { isTrusted_ = trusted; }
    int promptCount() const { return promptCount_; }

    bool isProcessTrusted() override { return isTrusted_; }
    bool isProcessTrustedWithPrompt() override {
        ++promptCount_;
        return isTrusted_;
    }

private:
    bool isTrusted_ = true;
    int promptCount_ = 0;
};

class HeadlessScreens final : public Screens {
public:
    /// The user goes over to this screen.
    void setMain(std::optional<Screen> screen) { main_ = screen; }
    /// The screen that the user works on becomes another under their hands; tells the observers.
    void change(Screen screen) {
        main_ = screen;
        observers_.callAll();
    }
    void setMouseLocation(Point point) { mouseLocation_ = point; }

    std::optional<Screen> main() override { return main_; }
    Point mouseLocation() override { return mouseLocation_; }
    Token observe(std::function<void()> changed) override { return observers_.add(std::move(changed)); }

private:
    HandlerList<std::function<void()>> observers_;
    std::optional<Screen> main_ = Screen{{0, 0, 1920, 1080}, {0, 32, 1920, 1000}, 1};
    Point mouseLocation_{960, 540};
};

class HeadlessAppearance final : public SystemAppearance {
public:
    /// Tells the observers.
    void set(bool prefersDark, bool reduceMotion) {
        prefersDark_ = prefersDark;
        reduceMotion_ = reduceMotion;
        observers_.callAll();
    }

    bool prefersDark() const override { return prefersDark_; }
    bool reduceMotion() const override { return reduceMotion_; }
    Token observe(std::function<void()> changed) override { return observers_.add(std::move(changed)); }

private:
    HandlerList<std::function<void()>> observers_;
    bool prefersDark_ = false, reduceMotion_ = false;
};

/// Answers on the main queue with what was scripted: nothing, as when the user cancels, unless a path was set.
class HeadlessOpenPanel final : public OpenPanel {
public:
    explicit HeadlessOpenPanel(RunLoop& runLoop) : runLoop_(runLoop) {}
    void setAnswer(std::optional<std::string> path) { answer_ = std::move(path); }
    void setSaveAnswer(std::optional<SaveAnswer> answer) { saveAnswer_ = std::move(answer); }
    const std::vector<Request>& requests() const { return requests_; }
    const std::vector<SaveRequest>& saveRequests() const { return saveRequests_; }

    void run(const Request& request, std::function<void(std::optional<std::string>)> done) override {
        requests_.push_back(request);
        runLoop_.async([answer = answer_, done = std::move(done)] { done(answer); });
    }
    void runSave(const SaveRequest& request, std::function<void(std::optional<SaveAnswer>)> done) override {
        saveRequests_.push_back(request);
        runLoop_.async([answer = saveAnswer_, done = std::move(done)] { done(answer); });
    }

private:
    RunLoop& runLoop_;
    std::vector<Request> requests_;
    std::vector<SaveRequest> saveRequests_;
    std::optional<std::string> answer_;
    std::optional<SaveAnswer> saveAnswer_;
};

class HeadlessInstance final : public Instance {
public:
    /// Somebody else runs already.
    void setRunsElsewhere(bool runs) { runsElsewhere_ = runs; }
    /// The program is opened again.
    void reopen() {
        if (handler_) handler_();
    }

    bool claim() override { return !runsElsewhere_; }
    void setReopenHandler(std::function<void()> handler) override { handler_ = std::move(handler); }

private:
    std::function<void()> handler_;
    bool runsElsewhere_ = false;
};

class HeadlessLoginItem final : public LoginItem {
public:
    /// From now on every change fails with these words; nothing lets changes succeed.
    void setFailure(std::optional<std::string> words) { failure_ = std::move(words); }

    bool isEnabled() const override { return isEnabled_; }
    std::optional<std::string> setEnabled(bool enabled) override {
        if (!failure_) isEnabled_ = enabled;
        return failure_;
    }

private:
    std::optional<std::string> failure_;
    bool isEnabled_ = false;
};

}  // namespace brimquill::platform
