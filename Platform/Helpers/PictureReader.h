#pragma once

#include <QImage>

#include <memory>
#include <string>
#include <vector>

namespace tesseract {
class TessBaseAPI;
}

namespace brimquill::helpers {

/// Reads text and barcodes off picture files. Made for a process of its own: recognition takes memory and time, and a
/// hostile picture may end it.
class PictureReader final {
public:
    struct Reading {
        std::vector<std::string> codes, lines;
    };

    PictureReader();
    ~PictureReader();
    PictureReader(const PictureReader&) = delete;
    PictureReader& operator=(const PictureReader&) = delete;

    /// Empty when the file is no picture that can be decoded within the limits.
    Reading read(const std::string& path);

private:
    bool prepareRecognition();
    std::vector<std::string> lines(const QImage& picture);
    void give(const QImage& picture);
    bool isTextSmall();

    std::unique_ptr<tesseract::TessBaseAPI> recognition_;
    bool isPrepared_ = false;
};

}  // namespace brimquill::helpers
