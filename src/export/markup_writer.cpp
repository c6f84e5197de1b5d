#include "export/markup_writer.h"

#include <algorithm>

namespace qb {

void appendEscaped(std::u16string& out, std::u16string_view text, bool attribute) {
    std::size_t from = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        // Every character escaped comes no later than '>'.
        if (text[i] > u'>') continue;
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

namespace {

bool needsEscapes(std::u16string_view text, bool attribute) {
    for (char16_t c : text) {
        if (c > u'>') continue;
        if (c == u'<' || c == u'&' || c == u'>' || (attribute && (c == u'\'' || c == u'"'))) {
            return true;
        }
    }
    return false;
}

char16_t* put(char16_t* at, std::u16string_view text) {
    return std::copy(text.begin(), text.end(), at);
}

}  // namespace

void MarkupWriter::leaf(std::u16string_view name, std::u16string_view text,
                        std::initializer_list<Attribute> attributes) {
    closeStartTag();
    // Most leaves need no escapes: they are then written in one piece.
    bool plain = !needsEscapes(text, false);
    std::size_t size = 1 + name.size() +
                       (text.empty() ? emptyClose_.size() : 1 + text.size() + 3 + name.size()) + 2;
    for (const Attribute& a : attributes) {
        plain = plain && !needsEscapes(a.value, true);
        size += 1 + a.name.size() + 2 + a.value.size() + 1;
    }
    if (plain) {
        const std::size_t from = out_.size();
        out_.resize(from + size);
        char16_t* at = out_.data() + from;
        *at++ = u'<';
        at = put(at, name);
        for (const Attribute& a : attributes) {
            *at++ = u' ';
            at = put(at, a.name);
            at = put(at, u"=\"");
            at = put(at, a.value);
            *at++ = u'"';
        }
        if (text.empty()) {
            at = put(at, emptyClose_);
        } else {
            *at++ = u'>';
            at = put(at, text);
            at = put(at, u"</");
            at = put(at, name);
            *at++ = u'>';
        }
        put(at, u"\r\n");
        return;
    }
    out_ += u'<';
    out_ += name;
    for (const Attribute& a : attributes) attrib(a.name, a.value);
    if (text.empty()) {
        out_ += emptyClose_;
    } else {
        out_ += u'>';
        appendEscaped(out_, text, false);
        out_ += u"</";
        out_ += name;
        out_ += u'>';
    }
    out_ += u"\r\n";
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
