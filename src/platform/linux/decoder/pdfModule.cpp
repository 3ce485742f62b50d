#include <poppler-qt6.h>

#include <QFile>

#include "platform/linux/decoder/facts.h"
#include "platform/linux/decoder/modules.h"
#include "platform/linux/decoder/readPicture.h"

// The first page of a PDF document, and what it says of itself.

namespace {

constexpr double kPointsAnInch = 72;

void addFacts(const Poppler::Document& document, Preview& preview) {
    auto at = preview.facts.begin();
    const auto add = [&](const char* name, const std::string& value) {
        if (!value.empty()) at = preview.facts.insert(at, {name, value}) + 1;
    };
    add("Title", document.title().simplified().left(200).toStdString());
    add("Author", document.author().simplified().left(200).toStdString());
    add("Pages", numberText(document.numPages()));
}

void drawPage(const Poppler::Page& page, uint32_t pixels, Preview& preview) {
    const QSizeF size = page.pageSizeF();
    const double longest = std::max(size.width(), size.height());
    if (longest < 1) return;
    const double resolution = kPointsAnInch * pixels / longest;
    preview.picture = toPicture(page.renderToImage(resolution, resolution), pixels);
}

}  // namespace

void trovastDecode(int handle, uint32_t pixels, Preview& preview) {
    QFile file;
    if (!file.open(handle, QIODevice::ReadOnly)) return;
    const auto document = Poppler::Document::load(&file);
    if (!document) {
        preview.message = "The document cannot be read: it is damaged.";
        return;
    }
    if (document->isLocked()) {
        preview.message = "The document is locked by a password.";
        return;
    }
    addFacts(*document, preview);
    document->setRenderHint(Poppler::Document::Antialiasing);
    document->setRenderHint(Poppler::Document::TextAntialiasing);
    const auto page = document->page(0);
    if (page) drawPage(*page, pixels, preview);
    if (preview.picture)
        preview.kind = Preview::Kind::picture;
    else
        preview.message = "The document has no page that can be shown.";
}
