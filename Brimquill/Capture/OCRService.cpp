#include "Brimquill/Capture/OCRService.h"

#include "Brimquill/Surfaces/TourEvents.h"
#include "BrimquillCore/Foundation/Files.h"
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/Foundation/Uuid.h"
#include "BrimquillCore/SecretDetector.h"

#include <filesystem>
#include <utility>

namespace brimquill {

OCRService::OCRService(Environment environment) : environment_(environment) {}

void OCRService::captureAndRecognize(const std::function<void(std::optional<ClipItem>)>& completion) {
    const auto target =
        (environment_.store.imagesDirectory / ("ocr-" + text::uppercased(makeUuid()) + ".png")).string();
    const auto captured = [weak = std::weak_ptr(self_), target, completion] {
        const auto self = weak.lock();
        if (!self) return;
        std::error_code error;
        if (!std::filesystem::exists(target, error)) return completion(std::nullopt);  // cancelled
        (*self)->recognizeText(target, platform::QualityOfService::userInitiated,
                               [weak, target, completion](const std::string& text) {
                                   if (const auto service = weak.lock()) (*service)->keep(target, text, completion);
                               });
    };
    if (environment_.screenCapture.captureInteractively(target, captured) == platform::ScreenCapture::Launch::failed) {
        environment_.hud.show("Could not launch screencapture", "exclamationmark.triangle.fill");
        completion(std::nullopt);
    }
}

void OCRService::keep(const std::string& path, const std::string& text,
                      const std::function<void(std::optional<ClipItem>)>& completion) {
    if (text::trimmed(text).empty()) {
        files::removeFile(path);
        environment_.hud.show("No text found", "eye.slash");
        return completion(std::nullopt);
    }
    auto clip = environment_.store.insert(text, ClipKind::ocr, {.app = "Screen OCR", .bundleId = {}}, path,
                                          SecretDetector::expiryDate(text, environment_.runLoop.now()));
    const auto secret = clip ? PasteService::soonestSecret({&*clip, 1}) : std::nullopt;
    environment_.pasteService.write({.string = text}, secret);
    environment_.toast.show({path, "Captured " + std::to_string(text::characterCount(text)) + " characters",
                             "On your clipboard · in your hoard"},
                            CaptureToast::Occasion::answer);
    environment_.center.post({TourEvents::didCapture, nullptr, {{"kind", "ocr"}}});
    completion(std::move(clip));
}

void OCRService::recognizeText(const std::string& path, platform::QualityOfService qos,
                               std::function<void(std::string)> completion) {
    environment_.recognizer.recognize(path, qos,
                                      [completion = std::move(completion)](platform::TextRecognizer::Result result) {
                                          auto pieces = std::move(result.codes);
                                          pieces.insert(pieces.end(), result.lines.begin(), result.lines.end());
                                          completion(text::join(pieces, "\n"));
                                      });
}

}  // namespace brimquill
