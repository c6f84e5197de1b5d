#include "export/xml_export.h"

#include "entry/entry_amount.h"
#include "entry/note_text.h"
#include "export/export_file.h"
#include "export/markup_document.h"
#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

constexpr std::u16string_view kLabels[] = {u"(Default)",  u"UTF-8", u"UTF-16",
                                           u"ISO-8859-1", u"Big-5", u"Shift-JIS"};

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

void addXmlItem(MarkupDocument& doc, const TimeEntry& e, const ExportSettings& env) {
    static const std::u16string kDatePicture = u"yyyy-MM-dd";
    // Twelve-hour hours without a marker: 13:30 is "01:30:00". Files have
    // always been written so, and readers of them expect it.
    static const std::u16string kTimePicture = u"hh:mm:ss";
    SYSTEMTIME when{};
    fileTimeToSystemTime(e.date, &when);

    doc.AddChildElem(u"ITEM");
    doc.AddChildAttrib(u"Billable", e.billable ? u"Y" : u"N");
    doc.AddChildAttrib(u"Paid", e.paid ? u"Y" : u"N");
    doc.IntoElem();
    doc.AddChildElem(u"DATE", getDateFormat(env.locale, 0, when, &kDatePicture));
    doc.AddChildElem(u"CLIENT", e.client);
    doc.AddChildElem(u"PROJECT", e.project);
    doc.AddChildElem(u"PHASE", e.phase);
    doc.AddChildElem(u"TASK", e.task);
    if (hasStartTime(e)) {
        SYSTEMTIME start = when;
        start.wSecond = 0;
        doc.AddChildElem(u"START", getTimeFormat(env.locale, 0, start, &kTimePicture));
    }
    doc.AddChildElem(u"DURATION", ascii(stringPrintf("%.2f", e.duration * 0.01)));
    doc.AddChildElem(u"CURRENCY", e.currency);
    if (e.rate * 0.01 != 0) {
        doc.AddChildElem(u"RATE", ascii(stringPrintf("%.2f", e.rate * 0.01)));
        doc.AddChildAttrib(u"Type", ascii(stringPrintf("%d", e.rateType)));
    }
    doc.AddChildElem(u"AMOUNT", ascii(stringPrintf("%.02f", EntryAmount(e, env.settings))));
    doc.AddChildElem(u"BILLTO", e.billTo);
    doc.AddChildElem(u"CUSTOM1", e.custom1);
    doc.AddChildElem(u"CUSTOM2", e.custom2);
    doc.AddChildElem(u"CUSTOM3", e.custom3);
    if (!e.notes.empty()) {
        std::u16string note = noteText(e);
        if (!note.empty()) doc.AddChildElem(u"NOTES", note);
    }
    doc.OutOfElem();
}

MarkupDocument buildXmlDocument(EntryTable& table, const EntryFilter& filter,
                                const ExportSettings& env) {
    MarkupDocument doc;
    doc.AddElem(u"ITEMS");
    walkMatching(table, filter, [&](const TimeEntry& e) {
        addXmlItem(doc, e, env);
        return true;
    });
    return doc;
}

bool ExportXml(EntryTable& table, const std::string& fileName, const EntryFilter& filter,
               const ExportSettings& env, std::string* error) {
    ExportFile file(fileName, env.codePage);
    if (file.create()) {
        const std::uint16_t encoding = env.settings.encoding;
        const std::u16string declaration = xmlDeclaration(encoding);
        if (encoding == kEncodingUtf16) {
            static constexpr std::uint8_t kByteOrderMark[] = {0xFF, 0xFE};
            file.writeRaw(kByteOrderMark, sizeof kByteOrderMark);
            file.writeWide(declaration);
            if (file.ok()) file.writeWide(buildXmlDocument(table, filter, env).GetDoc());
        } else {
            file.writeConverted(declaration);
            if (file.ok()) file.writeConverted(buildXmlDocument(table, filter, env).GetDoc());
        }
        file.finish();
    }
    if (error) *error = file.error();
    return file.ok();
}

}  // namespace qb
