#include "export/csv_export.h"

#include "entry/entry_amount.h"
#include "entry/note_text.h"
#include "export/export_file.h"
#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

constexpr std::u16string_view kHeaderStart =
    u"\"Date\",\"Client\",\"Project\",\"Phase\",\"Task\",\"Start\",\"Duration(h)\","
    u"\"Billable\",\"Paid\",\"Currency\",\"Rate\",\"Rate Type\",\"Amount\",\"Bill To\",\"";

std::u16string ascii(const std::string& s) {
    return std::u16string(s.begin(), s.end());
}

void field(std::u16string& line, std::u16string_view value) {
    line += u",\"";
    line += value;
    line += u'"';
}

std::u16string substituteBreaks(const std::u16string& text, std::u16string_view substitute) {
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
            out += substitute;
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

}  // namespace

std::u16string_view lineBreakSubstitute(std::uint16_t breakSub) {
    switch (breakSub) {
        case 1:
            return u"  ";
        case 2:
            return u"~`";
        case 3:
            return u"|";
        default:
            return u" ";
    }
}

std::u16string csvHeader(const Settings& settings) {
    std::u16string header(kHeaderStart);
    for (const std::u16string* caption :
         {&settings.custom1Caption, &settings.custom2Caption, &settings.custom3Caption}) {
        header += *caption;
        header += u"\",\"";
    }
    header += u"Note\"\r\n";
    return header;
}

std::u16string csvLine(const TimeEntry& e, const ExportSettings& env) {
    SYSTEMTIME when{};
    fileTimeToSystemTime(e.date, &when);
    std::u16string line;
    line.reserve(256);
    line += u'"';
    line += getDateFormat(env.locale, DATE_SHORTDATE, when, nullptr);
    line += u'"';
    field(line, e.client);
    field(line, e.project);
    field(line, e.phase);
    field(line, e.task);
    field(line, hasStartTime(e) ? getTimeFormat(env.locale, TIME_NOSECONDS, when, nullptr)
                                : std::u16string());
    field(line, ascii(hundredthsText(e.duration)));
    field(line, e.billable ? u"Y" : u"N");
    field(line, e.paid ? u"Y" : u"N");
    field(line, e.currency);
    field(line, e.rate != 0 ? ascii(hundredthsText(e.rate)) : std::u16string());
    field(line, e.billable ? ascii(stringPrintf("%d", e.rateType)) : std::u16string());
    field(line, e.billable ? ascii(stringPrintf("%.02f", EntryAmount(e, env.settings)))
                           : std::u16string());
    field(line, e.billTo);
    field(line, e.custom1);
    field(line, e.custom2);
    field(line, e.custom3);
    std::u16string note = e.notes.empty() ? std::u16string() : noteText(e);
    field(line, substituteBreaks(note, lineBreakSubstitute(env.settings.breakSub)));
    line += u"\r\n";
    return line;
}

bool ExportCsv(EntryTable& table, const std::string& fileName, const EntryFilter& filter,
               const ExportSettings& env, std::string* error) {
    ExportFile file(fileName, env.codePage);
    if (file.create() && file.writeConverted(csvHeader(env.settings))) {
        // Lines go to the file in batches of whole lines: one write per line
        // would spend most of the export in the kernel.
        constexpr std::size_t kBatchBytes = 1 << 16;
        std::string batch;
        batch.reserve(kBatchBytes + 4096);
        walkMatching(table, filter, [&](const TimeEntry& e) {
            file.appendConverted(batch, csvLine(e, env));
            if (batch.size() >= kBatchBytes) {
                file.writeRaw(batch.data(), batch.size());
                batch.clear();
            }
            return file.ok();
        });
        file.writeRaw(batch.data(), batch.size());
        file.finish();
    }
    if (error) *error = file.error();
    return file.ok();
}

}  // namespace qb
