#include "Platform/Factory.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Desktop/JsonUserDefaults.h"
#include "Platform/Desktop/LimitedDesktop.h"
#include "Platform/X11/X11Desktop.h"

#include <cstdlib>

namespace brimquill::platform {
namespace {

constexpr const char* standardSuite = "brimquill";

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

bool canBeFileName(const std::string& suite) {
    constexpr std::size_t longest = 200;
    return !suite.empty() && suite.size() <= longest && suite.front() != '.' && suite.find('/') == std::string::npos;
}

}  // namespace

std::unique_ptr<UserDefaults> createUserDefaults(const std::string& suite) {
    std::string name = suite.empty() ? environment("BRIMQUILL_DEFAULTS_SUITE") : suite;
    if (name.empty()) name = standardSuite;
    if (!canBeFileName(name)) {
        log::write("the preferences \"" + name + "\" cannot be opened; the standard ones are used");
        name = standardSuite;
    }
    return std::make_unique<JsonUserDefaults>(userDefaultsDirectory(), name);
}

std::unique_ptr<Services> createServices(const std::string& dataDirectory) {
    auto defaults = createUserDefaults({});
    std::string reason;
    if (auto desktop = createX11Desktop(defaults, dataDirectory, reason)) return desktop;
    log::write("this desktop serves in part only: " + reason);
    return std::make_unique<LimitedDesktop>(std::move(defaults), dataDirectory);
}

}  // namespace brimquill::platform
