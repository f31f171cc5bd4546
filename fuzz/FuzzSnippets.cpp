// Exports of other text expanders, by both readers.
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/SnippetImport.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace brimquill;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    for (const char* extension : {"json", "yml"}) {
        for (const auto& snippet : SnippetImport::parse(input, extension)) {
            if (snippet.text.empty()) std::abort();
            if (text::validUtf8(snippet.text) != snippet.text) std::abort();
            if (text::validUtf8(snippet.name) != snippet.name) std::abort();
        }
    }
    return 0;
}
