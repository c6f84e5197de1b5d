#include "report/report_generator.h"

#include "entry/entry_amount.h"
#include "export/export_file.h"
#include "export/markup_document.h"
#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "report/group_key.h"
#include "report/report_fields.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

constexpr std::u16string_view kDocType =
    u"<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" "
    u"\"http://www.w3.org/TR/html4/loose.dtd\">\r\n";
constexpr std::u16string_view kStyle =
    u"table.Data { border : 2px solid Black; border-collapse : collapse; font-size : 10pt; }\r\n"
    u"th.Data, td.Data { border : 1px solid black;  }\r\n";

std::u16string ascii(const std::string& s) {
    return std::u16string(s.begin(), s.end());
}

std::u16string shortDate(const ExportSettings& env, const SYSTEMTIME& day) {
    return getDateFormat(env.locale, DATE_SHORTDATE, day, nullptr);
}

struct Sums {
    double hours = 0;
    double amount = 0;
};

struct FooterSums {
    double billableHours = 0;
    double unpaidAmount = 0;
    double paidAmount = 0;
    double nonBillableHours = 0;

    void add(const TimeEntry& e, double amount) {
        const double hours = e.duration * 0.01;
        if (e.billable) {
            billableHours += hours;
            (e.paid ? paidAmount : unpaidAmount) += amount;
        } else {
            nonBillableHours += hours;
        }
    }
};

// Writes the tables of a report under the body element (the main position).
class TableWriter {
  public:
    TableWriter(MarkupDocument& doc, const ReportRequest& request)
        : doc_(doc), env_(request.env), fields_(shownFields(request.layout)) {}

    void open() {
        doc_.AddChildElem(u"table");
        doc_.AddChildAttrib(u"border", u"0");
        doc_.AddChildAttrib(u"class", u"Data");
        doc_.AddChildAttrib(u"cellpadding", u"2");
        doc_.IntoElem();
        doc_.AddChildElem(u"tr");
        doc_.IntoElem();
        for (int f : fields_) cell(u"th", reportFieldTitle(f, env_.settings), false);
        doc_.OutOfElem();
    }

    void row(const TimeEntry& e) {
        doc_.AddChildElem(u"tr");
        doc_.IntoElem();
        for (int f : fields_) cell(u"td", reportCellText(f, e, env_), reportFieldRightAligned(f));
        doc_.OutOfElem();
    }

    void total(const Sums& sums) {
        doc_.AddChildElem(u"tr");
        doc_.IntoElem();
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            if (i == 0) {
                cell(u"td", u"Total", false);
            } else if (fields_[i] == kFieldDuration) {
                cell(u"td", ascii(stringPrintf("%.02fh", sums.hours)), true);
            } else if (fields_[i] == kFieldAmount) {
                cell(u"td", ascii(stringPrintf("%.02f", sums.amount)), true);
            } else {
                cell(u"td", u" ", false);
            }
        }
        doc_.OutOfElem();
    }

    void close() { doc_.OutOfElem(); }

  private:
    void cell(std::u16string_view tag, std::u16string_view text, bool right) {
        doc_.AddChildElem(tag, text);
        doc_.AddChildAttrib(u"class", u"Data");
        if (right) doc_.AddChildAttrib(u"align", u"right");
    }

    MarkupDocument& doc_;
    const ExportSettings& env_;
    std::vector<int> fields_;
};

void openPage(MarkupDocument& doc, const ReportRequest& request) {
    const std::u16string title = request.layout.title();
    doc.AddElem(u"html");
    doc.AddAttrib(u"xmlns", u"http://www.w3.org/1999/xhtml");
    doc.AddChildElem(u"head");
    doc.IntoElem();
    doc.AddChildElem(u"title", title);
    doc.AddChildElem(u"meta");
    doc.AddChildAttrib(u"name", u"Generator");
    doc.AddChildAttrib(u"content", u"Quillarbor");
    doc.AddChildElem(u"style", kStyle);
    doc.AddChildAttrib(u"type", u"text/css");
    doc.OutOfElem();
    doc.AddChildElem(u"body");
    doc.IntoElem();
    doc.AddChildElem(u"h1", title);
    std::u16string dates;
    const EntryFilter& c = *request.criteria;
    if (request.layout.dateSelection() == kDateRange) {
        dates =
            u"From " + shortDate(request.env, c.start) + u" To " + shortDate(request.env, c.end);
    } else if (request.layout.dateSelection() == kStartDateOnly) {
        dates = u"Date: " + shortDate(request.env, c.start);
    }
    doc.AddChildElem(u"h2", dates);
}

void addFooter(MarkupDocument& doc, const ReportRequest& request, const FooterSums& sums) {
    const ReportLayout& layout = request.layout;
    doc.AddChildElem(u"p");
    doc.IntoElem();
    const auto line = [&](FooterLine which, std::u16string text) {
        if (layout.footerHidden(which) != 0) return false;
        doc.AddChildElem(u"span", text);
        return true;
    };
    const auto br = [&](bool shown) {
        if (shown) doc.AddChildElem(u"br");
    };
    br(line(FooterLine::kBillableHours,
            u"Total Billable Hours" + ascii(stringPrintf(": %.02fh", sums.billableHours))));
    br(line(FooterLine::kUnpaidAmount,
            u"Total Unpaid Amount" + ascii(stringPrintf(": %.02f", sums.unpaidAmount))));
    br(line(FooterLine::kPaidAmount,
            u"Total Paid Amount" + ascii(stringPrintf(": %.02f", sums.paidAmount))));
    br(line(FooterLine::kNonBillableHours,
            u"Total Non-Billable Hours" + ascii(stringPrintf(": %.02fh", sums.nonBillableHours))));
    if (line(FooterLine::kReportDate, u"Report Date: " + shortDate(request.env, request.today))) {
        doc.AddChildAttrib(u"style", u"font-size : xx-small;");
        doc.AddChildElem(u"br");
    }
    doc.OutOfElem();
}

void addGrouped(MarkupDocument& doc, const ReportRequest& request, std::vector<TimeEntry>& entries,
                FooterSums& footer) {
    GroupKey key(request.layout.groupBy());
    key.sort(entries);
    TableWriter table(doc, request);
    Sums group;
    bool open = false;
    for (const TimeEntry& e : entries) {
        if (key.startsGroup(e)) {
            if (open) {
                table.total(group);
                table.close();
            }
            const std::u16string heading = key.heading(e, request.env);
            // A group without a field to name it has no heading to show.
            if (request.layout.groupRule() != 0 || heading.empty()) {
                doc.AddChildElem(u"hr");
            } else {
                doc.AddChildElem(u"h3", heading);
            }
            table.open();
            open = true;
            group = Sums();
        }
        const double amount = EntryAmount(e, request.env.settings);
        table.row(e);
        group.hours += e.duration * 0.01;
        group.amount += amount;
        footer.add(e, amount);
    }
    if (open) {
        table.total(group);
        table.close();
    }
}

void addFlat(MarkupDocument& doc, const ReportRequest& request,
             const std::vector<TimeEntry>& entries, FooterSums& footer) {
    TableWriter table(doc, request);
    table.open();
    Sums all;
    for (const TimeEntry& e : entries) {
        const double amount = EntryAmount(e, request.env.settings);
        table.row(e);
        all.hours += e.duration * 0.01;
        all.amount += amount;
        footer.add(e, amount);
    }
    if (!entries.empty()) table.total(all);
    table.close();
}

}  // namespace

MarkupDocument buildReport(const ReportRequest& request, std::vector<TimeEntry> entries) {
    MarkupDocument doc;
    openPage(doc, request);
    FooterSums footer;
    if (request.layout.type() == kGroupedReport) {
        addGrouped(doc, request, entries, footer);
    } else {
        addFlat(doc, request, entries, footer);
    }
    addFooter(doc, request, footer);
    return doc;
}

std::u16string reportFileText(const MarkupDocument& page) {
    const std::u16string& text = page.GetDoc();
    std::u16string out(kDocType);
    out.reserve(kDocType.size() + text.size() + text.size() / 16);
    std::size_t from = 0;
    for (std::size_t at = text.find(u"/>"); at != std::u16string::npos;
         at = text.find(u"/>", from)) {
        out.append(text, from, at - from);
        out += u" />";
        from = at + 2;
    }
    out.append(text, from, std::u16string::npos);
    return out;
}

ReportGenerator::ReportGenerator(EntryTable& table, const ReportLayout& layout, ExportSettings env,
                                 const SYSTEMTIME& today)
    : table_(table), layout_(layout), env_(std::move(env)), today_(today) {}

bool ReportGenerator::generate(const std::string& fileName, const EntryFilter& criteria,
                               std::string* error) {
    std::vector<TimeEntry> entries;
    walkMatching(table_, criteria, [&](const TimeEntry& e) {
        entries.push_back(e);
        return true;
    });
    std::u16string text;
    {
        ReportRequest request{layout_, &criteria, env_, today_};
        MarkupDocument page = buildReport(request, std::move(entries));
        text = reportFileText(page);
    }
    ExportFile file(fileName, env_.codePage);
    if (file.create()) {
        const std::u16string_view docType = std::u16string_view(text).substr(0, kDocType.size());
        file.writeConverted(docType);
        file.writeConverted(std::u16string_view(text).substr(kDocType.size()));
        file.finish();
    }
    if (error) *error = file.error();
    return file.ok();
}

}  // namespace qb
