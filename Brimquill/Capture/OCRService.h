#pragma once

#include "Brimquill/Paste/PasteService.h"
#include "Brimquill/Surfaces/CaptureToast.h"
#include "Brimquill/Surfaces/HUD.h"
#include "BrimquillCore/ClipStore.h"
#include "Platform/RunLoop.h"
#include "Platform/ScreenCapture.h"
#include "Platform/TextRecognizer.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace brimquill {

/// Reads text off pictures: off a rectangle of the screen that the user drags out, and off picture files for the
/// watchers. Main thread.
class OCRService final {
public:
    /// What it works with; everything must outlive it.
    struct Environment {
        ClipStore& store;
        PasteService& pasteService;
        CaptureToast& toast;
        HUD& hud;
        NotificationCenter& center;
        platform::RunLoop& runLoop;
        platform::TextRecognizer& recognizer;
        platform::ScreenCapture& screenCapture;
    };

    explicit OCRService(Environment environment);

    /// Lets the user snip the screen; what can be read there becomes a clip and lies on the pasteboard. The completion
    /// gets the clip, or nothing when the user cancelled or nothing could be read.
    void captureAndRecognize(const std::function<void(std::optional<ClipItem>)>& completion);

    /// The completion always runs, later, with the payloads of barcodes and then the lines of text, a line each; empty
    /// when there are none.
    void recognizeText(const std::string& path, platform::QualityOfService qos,
                       std::function<void(std::string)> completion);

private:
    void keep(const std::string& path, const std::string& text,
              const std::function<void(std::optional<ClipItem>)>& completion);

    Environment environment_;
    /// Gone with this object; what comes later finds nobody.
    std::shared_ptr<OCRService*> self_ = std::make_shared<OCRService*>(this);
};

}  // namespace brimquill
