#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Factory.h"

#include <syslog.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace brimquill::platform {

void installSystemLog() {
    openlog("brimquill", LOG_PID, LOG_USER);
    log::setSink([](std::string_view line) {
        // What others wrote may stand in a line; it must not begin a line of its own.
        std::string text(line);
        std::replace_if(
            text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, ' ');
        syslog(LOG_NOTICE, "%s", text.c_str());
        text += '\n';
        std::fwrite(text.data(), 1, text.size(), stderr);
    });
}

}  // namespace brimquill::platform
