#pragma once

// Markup written as it is produced: each element goes out as it is closed,
// escaped on the way, into a text the caller drains to the file whenever it
// likes. The bytes are those of a MarkupDocument built by the same calls:
// each element starts a line and ends in CR LF, an element without children
// or text is written in the empty form, no indentation.

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace qb {

class MarkupWriter {
  public:
    // `emptyClose` ends an empty element ("/>", or " />" for HTML pages).
    explicit MarkupWriter(std::u16string& out, std::u16string_view emptyClose = u"/>")
        : out_(out), emptyClose_(emptyClose) {}

    // Starts an element under the open one; its start tag stays open for
    // attributes until its text or a child comes.
    void start(std::u16string_view name);
    void attrib(std::u16string_view name, std::u16string_view value);
    // The text of the element just started (an element has text or
    // children, not both).
    void text(std::u16string_view text);
    // Closes the innermost open element.
    void end();
    // The innermost open element gets content written elsewhere (elements of
    // another writer, which start at its depth 0): closes its start tag.
    void contentFollows() { closeStartTag(); }

    struct Attribute {
        std::u16string_view name;
        std::u16string_view value;
    };
    // An element with text (or empty) and the attributes, at once: what
    // start, attrib, text and end write.
    void leaf(std::u16string_view name, std::u16string_view text,
              std::initializer_list<Attribute> attributes = {});
    std::size_t depth() const { return open_.size(); }

  private:
    void closeStartTag();

    struct Open {
        std::size_t nameAt;  // where its name is kept in names_
        std::size_t nameSize;
        bool tagOpen;  // "<name attr..." without its ">" yet
        bool content;  // has text or children
    };
    std::u16string& out_;
    std::u16string_view emptyClose_;
    std::u16string names_;  // the open elements' names, one after another
    std::vector<Open> open_;
};

// Appends the escapes of written text: "<", "&" and ">" in element text; also
// the apostrophe and the double quote in attribute values.
void appendEscaped(std::u16string& out, std::u16string_view text, bool attribute);

}  // namespace qb
