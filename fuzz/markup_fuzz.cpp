// Parses arbitrary text as a markup document and walks every element the
// parse found, reading names, data and attributes; a document that parsed
// must keep parsing after an element is added to it.

#include <cstddef>
#include <cstdint>

#include "export/markup_document.h"
#include "fuzz_support.h"

namespace {

void walk(qb::MarkupDocument& doc, int depth) {
    while (doc.FindElem()) {
        doc.GetTagName();
        doc.GetData();
        doc.GetAttrib(u"name");
        while (doc.FindChildElem()) {
            doc.GetChildTagName();
            doc.GetChildData();
            doc.GetChildAttrib(u"value");
        }
        if (depth < 32 && doc.IntoElem()) {
            walk(doc, depth + 1);
            doc.OutOfElem();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text = qb::fuzz::utf16(data, size);
    qb::unescapeMarkup(text);
    qb::MarkupDocument doc;
    if (!doc.SetDoc(text)) return 0;
    walk(doc, 0);
    if (doc.AddChildElem(u"Added", u"a < b & c") && !qb::MarkupDocument().SetDoc(doc.GetDoc())) {
        __builtin_trap();
    }
    return 0;
}
