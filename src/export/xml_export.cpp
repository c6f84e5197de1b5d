#include "export/xml_export.h"

#include "entry/entry_amount.h"
#include "entry/note_text.h"
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

// Markup is written to the file in pieces of about this many code units.
constexpr std::size_t kDrainUnits = 1 << 15;

std::u16string ascii(const std::string& s) {
    return std::u16string(s.begin(), s.end());
}

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

void writeXmlItem(MarkupWriter& out, const TimeEntry& e, const ExportSettings& env) {
    static const std::u16string kDatePicture = u"yyyy-MM-dd";
    // Twelve-hour hours without a marker: 13:30 is "01:30:00". Files have
    // always been written so, and readers of them expect it.
    static const std::u16string kTimePicture = u"hh:mm:ss";
    SYSTEMTIME when{};
    fileTimeToSystemTime(e.date, &when);

    out.start(u"ITEM");
    out.attrib(u"Billable", e.billable ? u"Y" : u"N");
    out.attrib(u"Paid", e.paid ? u"Y" : u"N");
    out.leaf(u"DATE", getDateFormat(env.locale, 0, when, &kDatePicture));
    out.leaf(u"CLIENT", e.client);
    out.leaf(u"PROJECT", e.project);
    out.leaf(u"PHASE", e.phase);
    out.leaf(u"TASK", e.task);
    if (hasStartTime(e)) {
        SYSTEMTIME start = when;
        start.wSecond = 0;
        out.leaf(u"START", getTimeFormat(env.locale, 0, start, &kTimePicture));
    }
    out.leaf(u"DURATION", ascii(hundredthsText(e.duration)));
    out.leaf(u"CURRENCY", e.currency);
    if (e.rate * 0.01 != 0) {
        out.start(u"RATE");
        out.attrib(u"Type", ascii(stringPrintf("%d", e.rateType)));
        out.text(ascii(hundredthsText(e.rate)));
        out.end();
    }
    out.leaf(u"AMOUNT", ascii(stringPrintf("%.02f", EntryAmount(e, env.settings))));
    out.leaf(u"BILLTO", e.billTo);
    out.leaf(u"CUSTOM1", e.custom1);
    out.leaf(u"CUSTOM2", e.custom2);
    out.leaf(u"CUSTOM3", e.custom3);
    if (!e.notes.empty()) {
        std::u16string note = noteText(e);
        if (!note.empty()) out.leaf(u"NOTES", note);
    }
    out.end();
}

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
        walkMatching(table, filter, [&](const TimeEntry& e) {
            writeXmlItem(out, e, env);
            if (text.size() >= kDrainUnits) drain();
            return file.ok();
        });
        out.end();
        drain();
        file.finish();
    }
    if (error) *error = file.error();
    return file.ok();
}

}  // namespace qb
