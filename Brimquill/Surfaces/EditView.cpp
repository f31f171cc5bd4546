#include "Brimquill/Surfaces/EditView.h"

#include "Brimquill/Surfaces/TextExtent.h"
#include "BrimquillCore/Foundation/Text.h"

#include <QQuickTextDocument>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace brimquill {
namespace {

/// What is counted at each key, in UTF-16 units; and how long the keys must pause before more is, in seconds.
constexpr int quicklyCounted = 20000;
constexpr double countDelay = 0.2;

/// How a text ends its lines, if it does so in one way.
QString lineEndOf(const std::string& text) {
    const auto ends = std::count(text.begin(), text.end(), '\n');
    std::ptrdiff_t pairs = 0;
    for (auto at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2))
        ++pairs;
    return ends > 0 && pairs == ends ? QStringLiteral("\r\n") : QStringLiteral("\n");
}

}  // namespace

EditView::EditView(ClipItem item, ClipStore& store, platform::RunLoop& runLoop)
    : item_(std::move(item)),
      store_(store),
      runLoop_(runLoop),
      lineEnd_(lineEndOf(item_.text)),
      count_(text::characterCount(item_.text)) {
    const auto extent = TextExtent::of(QString::fromStdString(item_.text));
    isEditable_ = extent.isEditable();
    hasWords_ = extent.hasWords();
}

QString EditView::status() const {
    if (hasRefused_) return QStringLiteral("Too long to be inserted here");
    return QStringLiteral("%1 characters").arg(count_);
}

bool EditView::admits(const QString& inserted) {
    auto extent = TextExtent::of(inserted);
    if (document_) extent.length += document_->characterCount() - 1;  // it counts an end of its own
    hasRefused_ = !isEditable_ || !extent.isEditable();
    if (hasRefused_) {
        Q_EMIT statusChanged();
    } else if (hasWords_ && !extent.hasWords()) {
        hasWords_ = false;
        Q_EMIT hasWordsChanged();
    }
    return !hasRefused_;
}

void EditView::edit(QQuickTextDocument* document) {
    if (document != nullptr && document->textDocument() != nullptr) edit(*document->textDocument());
}

void EditView::edit(QTextDocument& document) {
    document_ = &document;
    connect(&document, &QTextDocument::contentsChanged, this, &EditView::documentChanged);
}

void EditView::documentChanged() {
    isEdited_ = true;
    if (std::exchange(hasRefused_, false)) Q_EMIT statusChanged();
    if (document_->characterCount() <= quicklyCounted) return recount();
    countWork_ = runLoop_.after(countDelay, [this] { recount(); });
}

void EditView::recount() {
    countWork_.reset();
    count_ = text::characterCount(editedText());
    Q_EMIT statusChanged();
}

/// As the document holds it, which knows one end of a line alone; and its own way to plain text turns no-break spaces
/// into blanks.
std::string EditView::editedText() const {
    if (!isEditable_ || !isEdited_ || !document_) return item_.text;
    QString raw = document_->toRawText();
    raw.replace(QChar::ParagraphSeparator, lineEnd_);
    raw.replace(QChar::LineSeparator, lineEnd_);
    return raw.toStdString();
}

void EditView::save() {
    if (const auto text = editedText(); text != item_.text) store_.updateText(item_.id, text);
    Q_EMIT done();
}

}  // namespace brimquill
