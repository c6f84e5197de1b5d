#include "export/markup_writer.h"

namespace qb {

void appendEscaped(std::u16string& out, std::u16string_view text, bool attribute) {
    std::size_t from = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::u16string_view escape;
        switch (text[i]) {
            case u'<':
                escape = u"&lt;";
                break;
            case u'&':
                escape = u"&amp;";
                break;
            case u'>':
                escape = u"&gt;";
                break;
            case u'\'':
                if (attribute) escape = u"&apos;";
                break;
            case u'"':
                if (attribute) escape = u"&quot;";
                break;
            default:
                break;
        }
        if (escape.empty()) continue;
        out.append(text.substr(from, i - from));
        out += escape;
        from = i + 1;
    }
    out.append(text.substr(from));
}

void MarkupWriter::closeStartTag() {
    if (open_.empty() || !open_.back().tagOpen) return;
    out_ += u">\r\n";
    open_.back().tagOpen = false;
    open_.back().content = true;
}

void MarkupWriter::start(std::u16string_view name) {
    closeStartTag();
    out_ += u'<';
    out_ += name;
    open_.push_back({names_.size(), name.size(), true, false});
    names_ += name;
}

void MarkupWriter::attrib(std::u16string_view name, std::u16string_view value) {
    out_ += u' ';
    out_ += name;
    out_ += u"=\"";
    appendEscaped(out_, value, true);
    out_ += u'"';
}

void MarkupWriter::text(std::u16string_view text) {
    if (text.empty()) return;
    out_ += u'>';
    appendEscaped(out_, text, false);
    open_.back().tagOpen = false;
    open_.back().content = true;
}

void MarkupWriter::end() {
    const Open e = open_.back();
    open_.pop_back();
    if (!e.content) {
        out_ += emptyClose_;
    } else {
        out_ += u"</";
        out_.append(names_, e.nameAt, e.nameSize);
        out_ += u'>';
    }
    out_ += u"\r\n";
    names_.resize(e.nameAt);
}

}  // namespace qb
