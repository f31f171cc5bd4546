#pragma once

#include <filesystem>

/// Tells screenshots from other pictures.
namespace brimquill::ScreenshotFile {

/// Whether the file holds a complete picture: one that is still being written is not.
bool isComplete(const std::filesystem::path& file);

/// Whether it is a screenshot: by what the common tools write into the picture's text, or because its name begins with
/// "screenshot", in any case. A file that cannot be read is judged by its name.
bool isScreenshot(const std::filesystem::path& file);

}  // namespace brimquill::ScreenshotFile
