#include "Brimquill/Palette/PickerFilter.h"

namespace brimquill {
namespace {

template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

std::string kindLabel(ClipKind kind) {
    switch (kind) {
        case ClipKind::text:
            return "Text";
        case ClipKind::image:
            return "Images";
        case ClipKind::ocr:
            return "Screen OCR";
        case ClipKind::file:
            return "Files";
    }
    return {};
}

}  // namespace

std::string label(const PickerFilter& filter) {
    return std::visit(
        Overloaded{[](const scope::Folder& f) { return f.path; }, [](const scope::Tag& t) { return "#" + t.tag; },
                   [](const scope::Kind& k) { return kindLabel(k.kind); }, [](const scope::App& a) { return a.name; },
                   [](const scope::Clipboard&) { return std::string("Clipboard"); },
                   [](const scope::Snippets&) { return std::string("Snippets"); },
                   [](const scope::Stack&) { return std::string("Stack"); },
                   [](const scope::Emoji&) { return std::string("Emoji"); }},
        filter);
}

std::string key(const PickerFilter& filter) {
    return std::visit(Overloaded{[](const scope::Folder& f) { return "folder:" + std::to_string(f.folder.id); },
                                 [](const scope::Tag& t) { return "tag:" + t.tag; },
                                 [](const scope::Kind& k) { return "kind:" + std::string(rawValue(k.kind)); },
                                 [](const scope::App& a) { return "app:" + a.name; },
                                 [](const scope::Clipboard&) { return std::string("clipboard"); },
                                 [](const scope::Snippets&) { return std::string("snippets"); },
                                 [](const scope::Stack&) { return std::string("stack"); },
                                 [](const scope::Emoji&) { return std::string("emoji"); }},
                      filter);
}

}  // namespace brimquill
