#pragma once

// An element-tree text document kept as its own text: each addition edits
// the text in place, so the text is always the document, with no separate
// serialisation. Written elements each start a line and end in CR LF, with
// no indentation. It also parses a text and then navigates and reads it.
//
// Navigation has a main position and a child position under it, as the
// element cursor of this system has always had. Operations answer false (or
// an empty string) and change nothing when they cannot be done; only a
// parse sets the error text.
//
// Additions in document order (each child after the last one) cost time in
// proportion to what they add, so a document of any size is built in linear
// time.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qb {

class MarkupDocument {
  public:
    MarkupDocument();
    ~MarkupDocument();
    MarkupDocument(MarkupDocument&&) noexcept;
    MarkupDocument& operator=(MarkupDocument&&) noexcept;

    // Replaces the text and parses it; true when a root element was parsed.
    // An empty text empties the document. On a parse error the text stays,
    // the positions are cleared and GetError() tells why.
    bool SetDoc(std::u16string_view text);
    bool IsWellFormed() const;
    const std::u16string& GetDoc() const;
    const std::u16string& GetError() const;

    // Moves the main position to its next sibling of that name (any name when
    // empty), or to the first such element when there is no main position.
    bool FindElem(std::u16string_view name = {});
    // Moves the child position to the next child of the main element of that
    // name (any when empty).
    bool FindChildElem(std::u16string_view name = {});
    bool IntoElem();
    bool OutOfElem();

    // A sibling after the main position; at the top level, the root element
    // of an empty document. An empty text gives the empty form "<name/>".
    bool AddElem(std::u16string_view name, std::u16string_view text = {});
    // A child of the main element after the child position (after the last
    // child when there is none); it becomes the child position.
    bool AddChildElem(std::u16string_view name, std::u16string_view text = {});
    bool AddAttrib(std::u16string_view name, std::u16string_view value);
    bool AddChildAttrib(std::u16string_view name, std::u16string_view value);

    std::u16string GetTagName() const;
    std::u16string GetChildTagName() const;
    std::u16string GetData() const;
    std::u16string GetChildData() const;
    std::u16string GetAttrib(std::u16string_view name) const;
    std::u16string GetChildAttrib(std::u16string_view name) const;

    std::int32_t level() const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// The escapes of written text: "<", "&" and ">" in element text; also the
// apostrophe and the double quote in attribute values.
std::u16string escapeMarkupText(std::u16string_view text);
std::u16string escapeMarkupAttrib(std::u16string_view value);
// The five named references back to their characters; any other "&" stays.
std::u16string unescapeMarkup(std::u16string_view text);

}  // namespace qb
