#include "export/markup_document.h"

#include <vector>

#include "export/markup_writer.h"
#include "platform/string_printf.h"
#include "platform/text.h"

namespace qb {
namespace {

using Offset = std::uint32_t;
using Index = std::uint32_t;

// Where one element lies in the text and how it hangs in the tree. Record 0
// stands for the document itself.
struct ElementPos {
    Offset startTagBegin = 0;  // its "<"
    Offset startTagEnd = 0;    // its ">"
    Offset endTagBegin = 0;    // "<" of the end tag; the "/" of an empty element
    Offset endTagEnd = 0;      // final ">"
    Offset following = 0;      // where the content after the element begins
    Index parent = 0;
    Index firstChild = 0;
    Index nextSibling = 0;
};

constexpr std::u16string_view kWhiteSpace = u" \t\n\r";
constexpr std::u16string_view kSpecials = u"<>=\\/?!";

bool isWhite(char16_t c) {
    return kWhiteSpace.find(c) != std::u16string_view::npos;
}
bool isSpecial(char16_t c) {
    return kSpecials.find(c) != std::u16string_view::npos;
}

struct Token {
    bool found = false;
    bool quoted = false;
    std::size_t begin = 0;  // the token's text, quotes excluded
    std::size_t end = 0;
    std::size_t next = 0;  // where the following token's search starts

    std::u16string_view in(const std::u16string& text) const {
        return std::u16string_view(text).substr(begin, end - begin);
    }
    bool is(const std::u16string& text, char16_t c) const {
        return found && !quoted && end == begin + 1 && text[begin] == c;
    }
};

Token nextToken(const std::u16string& text, std::size_t from) {
    Token t;
    std::size_t p = from;
    while (p < text.size() && isWhite(text[p])) ++p;
    t.next = p;
    if (p >= text.size()) return t;
    t.found = true;
    if (text[p] == u'"') {
        t.quoted = true;
        t.begin = p + 1;
        std::size_t close = text.find(u'"', t.begin);
        t.end = close == std::u16string::npos ? text.size() : close;
        t.next = close == std::u16string::npos ? text.size() : close + 1;
    } else if (isSpecial(text[p])) {
        t.begin = p;
        t.end = t.next = p + 1;
    } else {
        t.begin = p;
        while (p < text.size() && !isWhite(text[p]) && !isSpecial(text[p])) ++p;
        t.end = t.next = p;
    }
    return t;
}

std::u16string escape(std::u16string_view text, bool attribute) {
    std::u16string out;
    out.reserve(text.size() + text.size() / 10 + 7);
    appendEscaped(out, text, attribute);
    return out;
}

std::u16string withName(const char* format, std::u16string_view name) {
    return utf8ToUtf16(stringPrintf(format, utf16ToUtf8(name).c_str()));
}

}  // namespace

std::u16string escapeMarkupText(std::u16string_view text) {
    return escape(text, false);
}
std::u16string escapeMarkupAttrib(std::u16string_view value) {
    return escape(value, true);
}

std::u16string unescapeMarkup(std::u16string_view text) {
    static constexpr struct {
        std::u16string_view name;  // after the "&"
        char16_t c;
    } kRefs[] = {
        {u"lt;", u'<'}, {u"amp;", u'&'}, {u"gt;", u'>'}, {u"apos;", u'\''}, {u"quot;", u'"'}};
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'&') {
            bool replaced = false;
            for (const auto& r : kRefs) {
                if (text.substr(i + 1, r.name.size()) == r.name) {
                    out += r.c;
                    i += r.name.size();
                    replaced = true;
                    break;
                }
            }
            if (replaced) continue;
        }
        out += text[i];
    }
    return out;
}

struct MarkupDocument::Impl {
    std::u16string text;
    std::int32_t level = 0;
    std::u16string error;
    std::vector<ElementPos> pos{ElementPos{}};
    // Last child of each record, so that appending a child never walks its
    // siblings.
    std::vector<Index> lastChild{0};
    Index main = 0;
    Index child = 0;

    void resetTable() {
        pos.assign(1, ElementPos{});
        lastChild.assign(1, 0);
        main = child = 0;
        level = 0;
    }

    Index take() {
        pos.push_back(ElementPos{});
        lastChild.push_back(0);
        return static_cast<Index>(pos.size() - 1);
    }
    void giveBack() {
        pos.pop_back();
        lastChild.pop_back();
    }

    bool isEmpty(Index i) const { return pos[i].startTagEnd == pos[i].endTagBegin + 1; }

    std::u16string tagName(Index i) const {
        if (i == 0) return {};
        Token t = nextToken(text, pos[i].startTagBegin + 1);
        return t.found ? std::u16string(t.in(text)) : std::u16string();
    }

    void link(Index i, Index parent, Index prev) {
        pos[i].parent = parent;
        if (prev == 0) {
            pos[i].nextSibling = pos[parent].firstChild;
            pos[parent].firstChild = i;
            if (lastChild[parent] == 0) lastChild[parent] = i;
        } else {
            pos[i].nextSibling = pos[prev].nextSibling;
            pos[prev].nextSibling = i;
            if (lastChild[parent] == prev) lastChild[parent] = i;
        }
    }

    void shiftSubtree(Index root, Offset delta) {
        std::vector<Index> stack{root};
        while (!stack.empty()) {
            Index i = stack.back();
            stack.pop_back();
            ElementPos& p = pos[i];
            p.startTagBegin += delta;
            p.startTagEnd += delta;
            p.endTagBegin += delta;
            p.endTagEnd += delta;
            p.following += delta;
            for (Index c = p.firstChild; c != 0; c = pos[c].nextSibling) stack.push_back(c);
        }
    }

    // Text grew by `delta` inside or right after element i: everything that
    // follows i moves, and each ancestor's end tag with it.
    void shiftAfter(Index i, Offset delta) {
        for (Index s = pos[i].nextSibling; s != 0; s = pos[s].nextSibling) shiftSubtree(s, delta);
        for (Index a = pos[i].parent; a != 0; a = pos[a].parent) {
            pos[a].endTagBegin += delta;
            pos[a].endTagEnd += delta;
            pos[a].following += delta;
            for (Index s = pos[a].nextSibling; s != 0; s = pos[s].nextSibling) {
                shiftSubtree(s, delta);
            }
        }
    }

    Index findSibling(Index from, std::u16string_view name) const {
        for (Index i = from; i != 0; i = pos[i].nextSibling) {
            if (name.empty() || tagName(i) == name) return i;
        }
        return 0;
    }

    bool add(std::u16string_view name, std::u16string_view data, bool asChild);
    bool addAttrib(Index i, std::u16string_view name, std::u16string_view value);
    std::u16string data(Index i) const;
    std::u16string attrib(Index i, std::u16string_view name) const;
    Index parseElem(Index parent, std::size_t& scan);
    bool fail(const std::u16string& message) {
        error = message;
        return false;
    }
};

bool MarkupDocument::Impl::add(std::u16string_view name, std::u16string_view data, bool asChild) {
    Index parent = 0;
    Index prev = 0;
    if (asChild) {
        if (main == 0) return false;
        parent = main;
        prev = child != 0 ? child : lastChild[main];
    } else if (level == 0) {
        if (pos[0].firstChild != 0) return false;
        text.clear();
        resetTable();
    } else {
        if (main == 0) return false;
        parent = pos[main].parent;
        prev = main;
    }

    std::u16string element(1, u'<');
    element += name;
    const std::u16string escaped = escapeMarkupText(data);
    if (escaped.empty()) {
        element += u"/>\r\n";
    } else {
        element += u'>';
        element += escaped;
        element += u"</";
        element += name;
        element += u">\r\n";
    }
    const auto nameLen = static_cast<Offset>(name.size());
    const auto len = static_cast<Offset>(element.size());

    const Index i = take();
    Offset at = 0;
    bool opened = false;  // the parent was empty and now holds the element
    if (prev != 0) {
        at = pos[prev].following;
    } else if (parent != 0 && pos[parent].firstChild != 0) {
        at = pos[pos[parent].firstChild].startTagBegin;
    } else if (parent != 0 && isEmpty(parent)) {
        // "<p/>" opens up: "<p>", CR LF, the child, "</p>".
        ElementPos& p = pos[parent];
        const std::u16string parentName = tagName(parent);
        std::u16string replacement = u">\r\n" + element + u"</" + parentName;
        const Offset slash = p.endTagBegin;
        text.replace(slash, 1, replacement);
        at = slash + 3;
        p.startTagEnd = slash;
        p.endTagBegin = at + len;
        p.endTagEnd = p.endTagBegin + static_cast<Offset>(parentName.size()) + 2;
        const auto delta = static_cast<Offset>(replacement.size() - 1);
        p.following += delta;
        shiftAfter(parent, delta);
        opened = true;
    } else if (parent != 0) {
        at = pos[parent].endTagBegin;
    }
    if (!opened) text.insert(at, element);

    ElementPos& e = pos[i];
    e.startTagBegin = at;
    if (escaped.empty()) {
        e.startTagEnd = at + nameLen + 2;
        e.endTagBegin = e.startTagEnd - 1;
        e.endTagEnd = e.startTagEnd;
    } else {
        e.startTagEnd = at + nameLen + 1;
        e.endTagBegin = e.startTagEnd + static_cast<Offset>(escaped.size()) + 1;
        e.endTagEnd = e.endTagBegin + nameLen + 2;
    }
    e.following = e.endTagEnd + 3;
    link(i, parent, prev);
    if (!opened) shiftAfter(i, len);

    if (asChild) {
        child = i;
    } else {
        main = i;
        child = 0;
    }
    return true;
}

bool MarkupDocument::Impl::addAttrib(Index i, std::u16string_view name, std::u16string_view value) {
    if (i == 0) return false;
    std::u16string attribute(1, u' ');
    attribute += name;
    attribute += u"=\"";
    attribute += escapeMarkupAttrib(value);
    attribute += u'"';
    const auto delta = static_cast<Offset>(attribute.size());
    ElementPos& e = pos[i];
    const bool empty = isEmpty(i);
    text.insert(empty ? e.endTagBegin : e.startTagEnd, attribute);
    e.startTagEnd += delta;
    e.endTagBegin += delta;
    e.endTagEnd += delta;
    e.following += delta;
    for (Index c = e.firstChild; c != 0; c = pos[c].nextSibling) shiftSubtree(c, delta);
    shiftAfter(i, delta);
    return true;
}

std::u16string MarkupDocument::Impl::data(Index i) const {
    if (i == 0 || pos[i].firstChild != 0 || isEmpty(i)) return {};
    const std::size_t begin = pos[i].startTagEnd + 1;
    const std::size_t end = pos[i].endTagBegin;
    std::size_t p = begin;
    while (p < end && isWhite(text[p])) ++p;
    constexpr std::u16string_view kCdata = u"<![CDATA[";
    if (std::u16string_view(text).substr(p, kCdata.size()) == kCdata) {
        const std::size_t close = text.find(u"]]>", p + kCdata.size());
        if (close != std::u16string::npos && close < end) {
            return text.substr(p + kCdata.size(), close - p - kCdata.size());
        }
    }
    return unescapeMarkup(std::u16string_view(text).substr(begin, end - begin));
}

std::u16string MarkupDocument::Impl::attrib(Index i, std::u16string_view name) const {
    if (i == 0) return {};
    Token t = nextToken(text, pos[i].startTagBegin + 1);  // the tag name
    for (t = nextToken(text, t.next); t.found; t = nextToken(text, t.next)) {
        if (t.is(text, u'>') || t.is(text, u'/')) break;
        if (t.quoted || t.is(text, u'=') || t.in(text) != name) continue;
        Token equals = nextToken(text, t.next);
        if (!equals.found) break;
        Token value = nextToken(text, equals.next);
        if (!value.found) break;
        if (equals.is(text, u'=') && value.quoted) return unescapeMarkup(value.in(text));
        t = equals;
    }
    return {};
}

// Parses one element under `parent` from `scan`: its index, 0 when the
// parent's end tag comes first, or -1 (as Index) after an error.
Index MarkupDocument::Impl::parseElem(Index parent, std::size_t& scan) {
    constexpr Index kError = static_cast<Index>(-1);
    const Index i = take();
    pos[i].parent = parent;
    const auto failWith = [&](const std::u16string& message) {
        error = message;
        giveBack();
        return kError;
    };
    std::u16string name;
    for (;;) {
        const std::size_t lt = text.find(u'<', scan);
        if (lt == std::u16string::npos) return failWith(u"Element tag not found");
        scan = lt;
        const Token t = nextToken(text, lt + 1);
        if (!t.found) return failWith(u"Abrupt end within tag");
        if (t.quoted) return failWith(u"Tag starts with quote");
        std::u16string_view terminator;
        if (t.is(text, u'?')) {
            terminator = u"?>";
        } else if (t.is(text, u'!')) {
            const char16_t after = t.end < text.size() ? text[t.end] : u'\0';
            terminator = after == u'[' ? u"]]>" : after == u'-' ? u"-->" : u">";
        } else if (t.is(text, u'/')) {
            giveBack();
            return 0;
        }
        if (!terminator.empty()) {
            const std::size_t close = text.find(terminator, t.end);
            if (close == std::u16string::npos) return failWith(u"End of tag not found");
            scan = close + terminator.size();
            continue;
        }
        name = std::u16string(t.in(text));
        const std::size_t gt = text.find(u'>', t.end);
        if (gt == std::u16string::npos) return failWith(u"End of tag not found");
        pos[i].startTagBegin = static_cast<Offset>(lt);
        pos[i].startTagEnd = static_cast<Offset>(gt);
        break;
    }
    ElementPos& self = pos[i];
    const auto nextLtOrEnd = [&](std::size_t from) {
        const std::size_t lt = text.find(u'<', from);
        return static_cast<Offset>(lt == std::u16string::npos ? text.size() : lt);
    };
    if (text[self.startTagEnd - 1] == u'/') {
        self.endTagBegin = self.startTagEnd - 1;
        self.endTagEnd = self.startTagEnd;
        self.following = nextLtOrEnd(self.startTagEnd + 1);
        scan = self.following;
        return i;
    }
    scan = pos[i].startTagEnd + 1;
    Index prev = 0;
    for (;;) {
        const Index c = parseElem(i, scan);
        if (c == kError) return kError;
        if (c == 0) break;
        pos[c].nextSibling = 0;
        if (prev == 0) {
            pos[i].firstChild = c;
        } else {
            pos[prev].nextSibling = c;
        }
        lastChild[i] = c;
        prev = c;
        scan = pos[c].endTagEnd + 1;
    }
    const std::size_t lt = text.find(u'<', scan);
    if (lt == std::u16string::npos) {
        return failWith(withName("End tag of %s element not found", name));
    }
    Token t = nextToken(text, lt + 1);
    if (!t.is(text, u'/')) return failWith(withName("Expecting end tag of element %s", name));
    t = nextToken(text, t.next);
    if (!t.found || t.quoted || t.in(text) != name) {
        if (!t.found) return failWith(withName("End tag not completed for element %s", name));
        return failWith(withName("End tag does not correspond to %s", name));
    }
    for (t = nextToken(text, t.next); !t.is(text, u'>'); t = nextToken(text, t.next)) {
        if (!t.found) return failWith(withName("End tag not completed for element %s", name));
    }
    pos[i].endTagBegin = static_cast<Offset>(lt);
    pos[i].endTagEnd = static_cast<Offset>(t.begin);
    pos[i].following = nextLtOrEnd(t.begin + 1);
    scan = pos[i].following;
    return i;
}

MarkupDocument::MarkupDocument() : impl_(std::make_unique<Impl>()) {}
MarkupDocument::~MarkupDocument() = default;
MarkupDocument::MarkupDocument(MarkupDocument&&) noexcept = default;
MarkupDocument& MarkupDocument::operator=(MarkupDocument&&) noexcept = default;

bool MarkupDocument::SetDoc(std::u16string_view text) {
    Impl& d = *impl_;
    d.text = std::u16string(text);
    d.resetTable();
    d.error.clear();
    if (text.empty()) return false;
    d.pos.reserve(text.size() / 64 + 8);
    d.lastChild.reserve(text.size() / 64 + 8);
    std::size_t scan = 0;
    const Index root = d.parseElem(0, scan);
    if (root == static_cast<Index>(-1) || root == 0) {
        d.resetTable();
        return false;
    }
    d.pos[0].firstChild = root;
    d.lastChild[0] = root;
    return true;
}

bool MarkupDocument::IsWellFormed() const {
    return impl_->pos[0].firstChild != 0;
}
const std::u16string& MarkupDocument::GetDoc() const {
    return impl_->text;
}
const std::u16string& MarkupDocument::GetError() const {
    return impl_->error;
}
std::int32_t MarkupDocument::level() const {
    return impl_->level;
}

bool MarkupDocument::FindElem(std::u16string_view name) {
    Impl& d = *impl_;
    const Index from = d.main != 0 ? d.pos[d.main].nextSibling : d.pos[0].firstChild;
    const Index found = d.findSibling(from, name);
    if (found == 0) return false;
    d.main = found;
    d.child = 0;
    return true;
}

bool MarkupDocument::FindChildElem(std::u16string_view name) {
    Impl& d = *impl_;
    if (d.main == 0 && !FindElem()) return false;
    if (d.isEmpty(d.main)) return false;
    const Index from = d.child != 0 ? d.pos[d.child].nextSibling : d.pos[d.main].firstChild;
    const Index found = d.findSibling(from, name);
    if (found == 0) return false;
    d.child = found;
    return true;
}

bool MarkupDocument::IntoElem() {
    Impl& d = *impl_;
    if (d.child == 0 && !FindChildElem()) return false;
    d.main = d.child;
    d.child = 0;
    ++d.level;
    return true;
}

bool MarkupDocument::OutOfElem() {
    Impl& d = *impl_;
    if (d.level == 0 || d.main == 0) return false;
    d.child = d.main;
    d.main = d.pos[d.main].parent;
    --d.level;
    return true;
}

bool MarkupDocument::AddElem(std::u16string_view name, std::u16string_view text) {
    return impl_->add(name, text, false);
}
bool MarkupDocument::AddChildElem(std::u16string_view name, std::u16string_view text) {
    return impl_->add(name, text, true);
}
bool MarkupDocument::AddAttrib(std::u16string_view name, std::u16string_view value) {
    return impl_->addAttrib(impl_->main, name, value);
}
bool MarkupDocument::AddChildAttrib(std::u16string_view name, std::u16string_view value) {
    return impl_->addAttrib(impl_->child, name, value);
}

std::u16string MarkupDocument::GetTagName() const {
    return impl_->tagName(impl_->main);
}
std::u16string MarkupDocument::GetChildTagName() const {
    return impl_->tagName(impl_->child);
}
std::u16string MarkupDocument::GetData() const {
    return impl_->data(impl_->main);
}
std::u16string MarkupDocument::GetChildData() const {
    return impl_->data(impl_->child);
}
std::u16string MarkupDocument::GetAttrib(std::u16string_view name) const {
    return impl_->attrib(impl_->main, name);
}
std::u16string MarkupDocument::GetChildAttrib(std::u16string_view name) const {
    return impl_->attrib(impl_->child, name);
}

}  // namespace qb
