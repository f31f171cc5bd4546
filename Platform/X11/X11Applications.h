#pragma once

#include <string>
#include <string_view>

namespace brimquill::platform {

/// How a program takes a paste.
enum class PasteKeys { controlV, controlShiftV, shiftInsert };

/// What is known of certain programs by their window class.
struct X11Application {
    /// Lower case.
    std::string_view windowClass;
    std::string_view bundleIdentifier;
    PasteKeys paste = PasteKeys::controlV;
};

/// The entry of a window class, in any case; null for programs not listed.
const X11Application* knownApplication(const std::string& windowClass);

}  // namespace brimquill::platform
