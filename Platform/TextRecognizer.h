#pragma once

#include "Platform/RunLoop.h"

#include <functional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// Reads the words and the barcodes off a picture. Main thread.
class TextRecognizer {
public:
    struct Result {
        /// What the barcodes say, and the lines of text in reading order. UTF-8.
        std::vector<std::string> codes, lines;
        friend bool operator==(const Result&, const Result&) = default;
    };

    virtual ~TextRecognizer() = default;
    /// `done` is called once, on the main thread, never from within this call; with nothing in it when the file cannot
    /// be read, holds nothing readable, or takes too long. Pictures that somebody waits for (`userInitiated`) go first.
    virtual void recognize(const std::string& path, QualityOfService qos, std::function<void(Result)> done) = 0;
};

}  // namespace brimquill::platform
