// Templates of snippets: whatever they hold, expansion ends and gives valid UTF-8.
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/Placeholders.h"

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

using namespace brimquill;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("LC_ALL", "en_US.UTF-8", 1);
    Placeholders::clipboardProvider = [] { return std::string(" {date} \xC3\xA4|"); };
    Placeholders::hoardProvider = [](std::int64_t offset) { return std::to_string(offset); };
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input = text::validUtf8({reinterpret_cast<const char*>(data), size});
    try {
        const auto result = Placeholders::expand(input, [] { return Date{1706713445}; });
        if (text::validUtf8(result) != result) std::abort();
        if (input.find('}') == std::string::npos && result != input) std::abort();
    } catch (const std::overflow_error&) {
        // An offset beyond 64 bits is outside the contract.
        return -1;
    }
    return 0;
}
