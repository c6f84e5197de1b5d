#pragma once

// The XML export: root ITEMS, one ITEM per entry, after a declaration whose
// encoding label comes from the Encoding setting. The label is only a label:
// every choice but UTF-16 writes the ANSI code page.

#include <string>

#include "export/export_settings.h"
#include "platform/date_format.h"

namespace qb {

class EntryTable;
class MarkupWriter;
struct EntryFilter;
struct TimeEntry;

inline constexpr std::uint16_t kEncodingUtf16 = 2;

// "(Default)", "UTF-8", "UTF-16", "ISO-8859-1", "Big-5", "Shift-JIS" for
// 0-5; empty for any other index.
std::u16string_view encodingLabel(std::uint16_t encoding);
// The declaration line, CR LF included. An index without a label is
// declared as the default.
std::u16string xmlDeclaration(std::uint16_t encoding);

// Writes the ITEMs of one export under its open ITEMS element.
class XmlItems {
  public:
    explicit XmlItems(const ExportSettings& env);
    void write(MarkupWriter& out, const TimeEntry& entry);

  private:
    const ExportSettings& env_;
    DatePicture date_;
    TimePicture time_;
    std::u16string text_;  // a field's text on its way
};

// Writes the declaration and the document, item by item as the entries are
// walked. False when the file cannot be
// created or a write fails (`error` then names the file and the reason); the
// file is then left as it was.
bool ExportXml(EntryTable& table, const std::string& fileName, const EntryFilter& filter,
               const ExportSettings& env, std::string* error = nullptr);

}  // namespace qb
