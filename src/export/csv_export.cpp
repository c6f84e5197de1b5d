#include "export/csv_export.h"

#include "entry/entry_amount.h"
#include "entry/note_text.h"
#include "export/code_page_text.h"
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

void field(std::u16string& line, std::u16string_view value) {
    line += u",\"";
    line += value;
    line += u'"';
}

// The text with each CR LF replaced by `substitute`.
void appendSubstituted(std::u16string& out, std::u16string_view text,
                       std::u16string_view substitute) {
    for (std::size_t from = 0;;) {
        const std::size_t at = text.find(u"\r\n", from);
        if (at == std::u16string_view::npos) {
            out.append(text.substr(from));
            return;
        }
        out.append(text.substr(from, at - from));
        out.append(substitute);
        from = at + 2;
    }
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

CsvLines::CsvLines(const ExportSettings& env)
    : env_(env),
      pictures_(env.locale),
      breakSubstitute_(lineBreakSubstitute(env.settings.breakSub)) {}

void CsvLines::append(const TimeEntry& e, std::u16string& line) {
    SYSTEMTIME when;
    const bool dated = fileTimeToSystemTime(e.date, &when);
    line += u'"';
    pictures_.appendDate(dated, when, line);
    line += u'"';
    field(line, e.client);
    field(line, e.project);
    field(line, e.phase);
    field(line, e.task);
    line += u",\"";
    if (dated && hasStartTime(when)) pictures_.appendTime(dated, when, line);
    line += u"\",\"";
    appendHundredths(e.duration, line);
    line += e.billable ? u"\",\"Y" : u"\",\"N";
    line += e.paid ? u"\",\"Y\"" : u"\",\"N\"";
    field(line, e.currency);
    line += u",\"";
    if (e.rate != 0) appendHundredths(e.rate, line);
    line += u"\",\"";
    if (e.billable) appendInteger(e.rateType, line);
    line += u"\",\"";
    if (e.billable) appendTwoDecimals(EntryAmount(e, env_.settings), line);
    line += u'"';
    field(line, e.billTo);
    field(line, e.custom1);
    field(line, e.custom2);
    field(line, e.custom3);
    line += u",\"";
    if (!e.notes.empty()) {
        note_.clear();
        appendNoteText(e.notes, note_);
        appendSubstituted(line, note_, breakSubstitute_);
    }
    line += u"\"\r\n";
}

std::u16string csvLine(const TimeEntry& entry, const ExportSettings& env) {
    std::u16string line;
    CsvLines(env).append(entry, line);
    return line;
}

namespace {

// The file's bytes of each entry: its line in the code page.
class CsvBytes final : public EntryBytes {
  public:
    explicit CsvBytes(const ExportSettings& env) : lines_(env), text_(env.codePage) {}
    void append(const TimeEntry& entry, std::string& out) override {
        line_.clear();
        lines_.append(entry, line_);
        text_.append(out, line_);
    }

  private:
    CsvLines lines_;
    CodePageText text_;
    std::u16string line_;
};

}  // namespace

bool ExportCsv(EntryTable& table, const std::string& fileName, const EntryFilter& filter,
               const ExportSettings& env, std::string* error) {
    ExportFile file(fileName, env.codePage);
    if (file.create() && file.writeConverted(csvHeader(env.settings))) {
        writeMatching(
            table, filter, [&env] { return std::make_unique<CsvBytes>(env); },
            [&file](std::string_view bytes) { return file.writeNarrow(bytes); });
        file.finish();
    }
    if (error) *error = file.error();
    return file.ok();
}

}  // namespace qb
