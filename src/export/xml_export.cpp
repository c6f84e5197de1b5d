#include "export/xml_export.h"

#include "entry/entry_amount.h"
#include "entry/note_text.h"
#include "export/code_page_text.h"
#include "export/export_file.h"
#include "export/markup_writer.h"
#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

constexpr std::u16string_view kLabels[] = {u"(Default)",  u"UTF-8", u"UTF-16",
                                           u"ISO-8859-1", u"Big-5", u"Shift-JIS"};

}  // namespace

std::u16string_view encodingLabel(std::uint16_t encoding) {
    return encoding < std::size(kLabels) ? kLabels[encoding] : std::u16string_view();
}

std::u16string xmlDeclaration(std::uint16_t encoding) {
    std::u16string d = u"<?xml version=\"1.0\"";
    if (encoding > 0 && !encodingLabel(encoding).empty()) {
        d += u" encoding=\"";
        d += encodingLabel(encoding);
        d += u'"';
    }
    d += u"?>\r\n";
    return d;
}

// Twelve-hour hours without a marker: 13:30 is "01:30:00". Files have
// always been written so, and readers of them expect it.
XmlItems::XmlItems(const ExportSettings& env)
    : env_(env), date_(u"yyyy-MM-dd"), time_(u"hh:mm:ss", false) {}

void XmlItems::write(MarkupWriter& out, const TimeEntry& e) {
    SYSTEMTIME when{};
    const bool dated = fileTimeToSystemTime(e.date, &when);

    out.start(u"ITEM");
    out.attrib(u"Billable", e.billable ? u"Y" : u"N");
    out.attrib(u"Paid", e.paid ? u"Y" : u"N");
    text_.clear();
    if (dated) date_.append(when, text_);
    out.leaf(u"DATE", text_);
    out.leaf(u"CLIENT", e.client);
    out.leaf(u"PROJECT", e.project);
    out.leaf(u"PHASE", e.phase);
    out.leaf(u"TASK", e.task);
    if (hasStartTime(e)) {
        SYSTEMTIME start = when;
        start.wSecond = 0;
        text_.clear();
        time_.append(start, text_);
        out.leaf(u"START", text_);
    }
    text_.clear();
    appendHundredths(e.duration, text_);
    out.leaf(u"DURATION", text_);
    out.leaf(u"CURRENCY", e.currency);
    if (e.rate * 0.01 != 0) {
        out.start(u"RATE");
        text_.clear();
        appendInteger(e.rateType, text_);
        out.attrib(u"Type", text_);
        text_.clear();
        appendHundredths(e.rate, text_);
        out.text(text_);
        out.end();
    }
    text_.clear();
    appendTwoDecimals(EntryAmount(e, env_.settings), text_);
    out.leaf(u"AMOUNT", text_);
    out.leaf(u"BILLTO", e.billTo);
    out.leaf(u"CUSTOM1", e.custom1);
    out.leaf(u"CUSTOM2", e.custom2);
    out.leaf(u"CUSTOM3", e.custom3);
    if (!e.notes.empty()) {
        text_.clear();
        appendNoteText(e.notes, text_);
        if (!text_.empty()) out.leaf(u"NOTES", text_);
    }
    out.end();
}

namespace {

// The file's bytes of each entry: its item, in the file's encoding.
class XmlBytes final : public EntryBytes {
  public:
    explicit XmlBytes(const ExportSettings& env)
        : items_(env), wide_(env.settings.encoding == kEncodingUtf16), bytes_(env.codePage) {}
    void append(const TimeEntry& entry, std::string& out) override {
        text_.clear();
        items_.write(markup_, entry);
        if (wide_) {
            out.append(reinterpret_cast<const char*>(text_.data()),
                       text_.size() * sizeof(char16_t));
        } else {
            bytes_.append(out, text_);
        }
    }

  private:
    XmlItems items_;
    bool wide_;
    CodePageText bytes_;
    std::u16string text_;
    MarkupWriter markup_{text_};
};

}  // namespace

bool ExportXml(EntryTable& table, const std::string& fileName, const EntryFilter& filter,
               const ExportSettings& env, std::string* error) {
    ExportFile file(fileName, env.codePage);
    if (file.create()) {
        const std::uint16_t encoding = env.settings.encoding;
        const bool wide = encoding == kEncodingUtf16;
        if (wide) {
            static constexpr std::uint8_t kByteOrderMark[] = {0xFF, 0xFE};
            file.writeRaw(kByteOrderMark, sizeof kByteOrderMark);
            file.writeWide(xmlDeclaration(encoding));
        } else {
            file.writeConverted(xmlDeclaration(encoding));
        }
        std::u16string text;
        const auto drain = [&] {
            wide ? file.writeWide(text) : file.writeConverted(text);
            text.clear();
        };
        MarkupWriter out(text);
        out.start(u"ITEMS");
        bool items = false;
        writeMatching(
            table, filter, [&env] { return std::make_unique<XmlBytes>(env); },
            [&](std::string_view bytes) {
                if (!items) {
                    // The items are written by writers of their own.
                    out.contentFollows();
                    drain();
                    items = true;
                }
                return file.writeNarrow(bytes);
            });
        out.end();
        drain();
        file.finish();
    }
    if (error) *error = file.error();
    return file.ok();
}

}  // namespace qb
