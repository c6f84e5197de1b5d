#include "report/report_generator.h"

#include <cstdio>
#include <cstring>
#include <map>
#include "entry/entry_amount.h"
#include "export/code_page_text.h"
#include "export/export_file.h"

#include "export/markup_writer.h"
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

// The page goes to the file in pieces of about this many code units.
constexpr std::size_t kDrainUnits = 1 << 15;

struct Sums {
    double hours = 0;
    double amount = 0;
};

struct FooterSums {
    double billableHours = 0;
    double unpaidAmount = 0;
    double paidAmount = 0;
    double nonBillableHours = 0;

    void add(bool billable, bool paid, std::uint16_t duration, double amount) {
        const double hours = duration * 0.01;
        if (billable) {
            billableHours += hours;
            (paid ? paidAmount : unpaidAmount) += amount;
        } else {
            nonBillableHours += hours;
        }
    }
};

// What the sums need of an entry, kept with its row.
struct RowSums {
    double amount;
    std::uint16_t duration;
    bool billable;
    bool paid;
};

void addRow(const RowSums& row, Sums& sums, FooterSums& footer) {
    sums.hours += row.duration * 0.01;
    sums.amount += row.amount;
    footer.add(row.billable, row.paid, row.duration, row.amount);
}

// The page's markup on its way to the file.
class PageOut {
  public:
    explicit PageOut(ExportFile& file) : file_(file), markup(text_, u" />") {}

    void drainIfFull() {
        if (text_.size() >= kDrainUnits) drain();
    }
    void drain() {
        file_.writeConverted(text_);
        text_.clear();
    }
    ExportFile& file() { return file_; }

  private:
    ExportFile& file_;
    std::u16string text_;

  public:
    MarkupWriter markup;
};

// Writes the tables of a report under the body element.
class TableWriter {
  public:
    TableWriter(MarkupWriter& out, const ReportRequest& request)
        : out_(out),
          env_(request.env),
          pictures_(request.env.locale),
          fields_(shownFields(request.layout)) {}

    void open() {
        out_.start(u"table");
        out_.attrib(u"border", u"0");
        out_.attrib(u"class", u"Data");
        out_.attrib(u"cellpadding", u"2");
        out_.start(u"tr");
        for (int f : fields_) cell(out_, u"th", reportFieldTitle(f, env_.settings), false);
        out_.end();
    }

    // A row, into `out` (the page's writer, or one of its own).
    void row(MarkupWriter& out, const TimeEntry& e) {
        out.start(u"tr");
        for (int f : fields_) {
            text_.clear();
            appendReportCell(f, e, env_, pictures_, text_);
            cell(out, u"td", text_, reportFieldRightAligned(f));
        }
        out.end();
    }

    void total(const Sums& sums) {
        out_.start(u"tr");
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            if (i == 0) {
                cell(out_, u"td", u"Total", false);
            } else if (fields_[i] == kFieldDuration) {
                cell(out_, u"td", ascii(stringPrintf("%.02fh", sums.hours)), true);
            } else if (fields_[i] == kFieldAmount) {
                cell(out_, u"td", ascii(stringPrintf("%.02f", sums.amount)), true);
            } else {
                cell(out_, u"td", u" ", false);
            }
        }
        out_.end();
    }

    void close() { out_.end(); }

  private:
    static void cell(MarkupWriter& out, std::u16string_view tag, std::u16string_view text,
                     bool right) {
        if (right) {
            out.leaf(tag, text, {{u"class", u"Data"}, {u"align", u"right"}});
        } else {
            out.leaf(tag, text, {{u"class", u"Data"}});
        }
    }

    MarkupWriter& out_;
    const ExportSettings& env_;
    EntryPictures pictures_;
    std::vector<int> fields_;
    std::u16string text_;  // a cell's text on its way
};

void openPage(MarkupWriter& doc, const ReportRequest& request) {
    const std::u16string title = request.layout.title();
    doc.start(u"html");
    doc.attrib(u"xmlns", u"http://www.w3.org/1999/xhtml");
    doc.start(u"head");
    doc.leaf(u"title", title);
    doc.start(u"meta");
    doc.attrib(u"name", u"Generator");
    doc.attrib(u"content", u"Quillarbor");
    doc.end();
    doc.start(u"style");
    doc.attrib(u"type", u"text/css");
    doc.text(kStyle);
    doc.end();
    doc.end();
    doc.start(u"body");
    doc.leaf(u"h1", title);
    std::u16string dates;
    const EntryFilter& c = *request.criteria;
    if (request.layout.dateSelection() == kDateRange) {
        dates =
            u"From " + shortDate(request.env, c.start) + u" To " + shortDate(request.env, c.end);
    } else if (request.layout.dateSelection() == kStartDateOnly) {
        dates = u"Date: " + shortDate(request.env, c.start);
    }
    doc.leaf(u"h2", dates);
}

void addFooter(MarkupWriter& doc, const ReportRequest& request, const FooterSums& sums) {
    const ReportLayout& layout = request.layout;
    doc.start(u"p");
    const auto line = [&](FooterLine which, const std::u16string& text,
                          std::u16string_view style = {}) {
        if (layout.footerHidden(which) != 0) return;
        doc.start(u"span");
        if (!style.empty()) doc.attrib(u"style", style);
        doc.text(text);
        doc.end();
        doc.start(u"br");
        doc.end();
    };
    line(FooterLine::kBillableHours,
         u"Total Billable Hours" + ascii(stringPrintf(": %.02fh", sums.billableHours)));
    line(FooterLine::kUnpaidAmount,
         u"Total Unpaid Amount" + ascii(stringPrintf(": %.02f", sums.unpaidAmount)));
    line(FooterLine::kPaidAmount,
         u"Total Paid Amount" + ascii(stringPrintf(": %.02f", sums.paidAmount)));
    line(FooterLine::kNonBillableHours,
         u"Total Non-Billable Hours" + ascii(stringPrintf(": %.02fh", sums.nonBillableHours)));
    line(FooterLine::kReportDate, u"Report Date: " + shortDate(request.env, request.today),
         u"font-size : xx-small;");
    doc.end();
}

// The heading before a group's table.
void groupHeading(MarkupWriter& doc, const ReportRequest& request, const std::u16string& heading) {
    // A group without a field to name it has no heading to show.
    if (request.layout.groupRule() != 0 || heading.empty()) {
        doc.start(u"hr");
        doc.end();
    } else {
        doc.leaf(u"h3", heading);
    }
}

// A row as the writers make it, on whichever thread: its sums, its group's
// key, the group's heading and the row's bytes in the code page. A writer
// makes the heading only where its key differs from that of the row it made
// before: the first row of a group in date order always is such a row.
struct MadeRow {
    RowSums sums;
    GroupKey::Value value;
    std::u16string heading;
    std::string_view bytes;
};

// How a made row travels: this, the key's text, the heading, the bytes.
struct MadeRowHead {
    std::uint32_t bytes;
    std::uint32_t valueUnits;
    std::uint32_t headingUnits;
    std::int64_t valueNumber;
    RowSums sums;
};

void appendUnits(std::string& out, std::u16string_view text) {
    out.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
}

void takeUnits(std::string_view& in, std::uint32_t units, std::u16string& text) {
    text.resize(units);
    std::memcpy(text.data(), in.data(), units * sizeof(char16_t));
    in.remove_prefix(units * sizeof(char16_t));
}

// The next row of what the writers made; false at its end.
bool takeRow(std::string_view& in, MadeRow& row) {
    MadeRowHead head;
    if (in.size() < sizeof head) return false;
    std::memcpy(&head, in.data(), sizeof head);
    in.remove_prefix(sizeof head);
    row.sums = head.sums;
    row.value.number = head.valueNumber;
    takeUnits(in, head.valueUnits, row.value.text);
    takeUnits(in, head.headingUnits, row.heading);
    row.bytes = in.substr(0, head.bytes);
    in.remove_prefix(head.bytes);
    return true;
}

// Makes the rows of the entries, one writer for each thread that makes them.
class RowBytes final : public EntryBytes {
  public:
    explicit RowBytes(const ReportRequest& request)
        : request_(request),
          key_(request.layout.groupBy()),
          table_(markup_, request),
          pictures_(request.env.locale),
          code_(request.env.codePage) {}

    void append(const TimeEntry& e, std::string& out) override {
        text_.clear();
        table_.row(markup_, e);
        row_.clear();
        code_.append(row_, text_);
        GroupKey::Value value = key_.valueOf(e);
        heading_.clear();
        if (first_ || value != last_) heading_ = key_.heading(e, request_.env, pictures_);
        first_ = false;
        const MadeRowHead head{
            static_cast<std::uint32_t>(row_.size()),
            static_cast<std::uint32_t>(value.text.size()),
            static_cast<std::uint32_t>(heading_.size()),
            value.number,
            {EntryAmount(e, request_.env.settings), e.duration, e.billable, e.paid}};
        out.append(reinterpret_cast<const char*>(&head), sizeof head);
        appendUnits(out, value.text);
        appendUnits(out, heading_);
        out.append(row_);
        last_ = std::move(value);
    }

  private:
    const ReportRequest& request_;
    GroupKey key_;
    std::u16string text_;
    MarkupWriter markup_{text_, u" />"};
    TableWriter table_;
    EntryPictures pictures_;
    CodePageText code_;
    std::string row_;
    std::u16string heading_;
    bool first_ = true;
    GroupKey::Value last_;  // the key of the row made before
};

// The walk comes in date order; groups of another key are kept aside, each
// row already written in the code page with what its sums need, in memory up
// to a bound and beyond it in a temporary file, and then written group by
// group in the order of their keys.
class GroupSpool {
  public:
    // The rows that do not stay in memory go to a scratch file beside `target`.
    explicit GroupSpool(const std::string& target) : spill_(target) {}
    GroupSpool(const GroupSpool&) = delete;
    GroupSpool& operator=(const GroupSpool&) = delete;

    // Keeps a row; false when the temporary file fails.
    bool add(const MadeRow& made) {
        auto [it, added] = groups_.try_emplace(made.value);
        Group& g = it->second;
        if (added) g.heading = made.heading;
        const Row row{static_cast<std::uint32_t>(made.bytes.size()), made.sums};
        g.pending.append(reinterpret_cast<const char*>(&row), sizeof row);
        g.pending.append(made.bytes);
        held_ += sizeof row + made.bytes.size();
        return held_ < kHeldBytes || spillAll();
    }

    // Writes every group: heading, table, rows, total.
    bool write(PageOut& page, TableWriter& table, const ReportRequest& request,
               FooterSums& footer) {
        std::string block;
        for (auto& [value, g] : groups_) {
            groupHeading(page.markup, request, g.heading);
            table.open();
            page.drain();
            Sums sums;
            for (const auto& [offset, size] : g.spilled) {
                block.resize(size);
                if (!spill_.readAt(offset, block.data(), size).isOk()) return false;
                replay(block, page.file(), sums, footer);
            }
            replay(g.pending, page.file(), sums, footer);
            std::string().swap(g.pending);
            table.total(sums);
            table.close();
            page.drainIfFull();
        }
        return true;
    }

  private:
    struct Row {
        std::uint32_t bytes;
        RowSums sums;
    };
    struct Group {
        std::u16string heading;
        std::string pending;                                         // rows not spilled yet
        std::vector<std::pair<std::uint64_t, std::size_t>> spilled;  // offset, size
    };
    // Rows held in memory before they go to the scratch file: the more, the
    // larger (and fewer) the pieces read back per group.
    static constexpr std::size_t kHeldBytes = std::size_t{4} << 20;

    bool spillAll() {
        if (!spill_.isOpen() && !spill_.openScratch().isOk()) return false;
        for (auto& [value, g] : groups_) {
            if (g.pending.empty()) continue;
            g.spilled.emplace_back(spill_.size(), g.pending.size());
            if (!spill_.write(g.pending).isOk()) return false;
            std::string().swap(g.pending);
        }
        held_ = 0;
        return true;
    }

    static void replay(std::string_view rows, ExportFile& file, Sums& sums, FooterSums& footer) {
        while (rows.size() >= sizeof(Row)) {
            Row row;
            std::memcpy(&row, rows.data(), sizeof row);
            rows.remove_prefix(sizeof row);
            file.writeRaw(rows.data(), row.bytes);
            rows.remove_prefix(row.bytes);
            addRow(row.sums, sums, footer);
        }
    }

    std::map<GroupKey::Value, Group> groups_;
    std::size_t held_ = 0;
    FileWriter spill_;
};

// Writes the tables of the entries the walk gives, in date order.
bool writeTables(PageOut& page, const ReportRequest& request, EntryTable& entries,
                 FooterSums& footer) {
    TableWriter table(page.markup, request);
    GroupKey key(request.layout.groupBy());
    const bool grouped = request.layout.type() == kGroupedReport;
    const bool spooled = grouped && !key.keepsDateOrder();
    GroupSpool spool(page.file().fileName());
    bool spoolOk = true;
    bool open = !grouped;  // a table without groups is there even without rows
    if (open) table.open();
    long rows = 0;
    Sums sums;
    MadeRow row;
    writeMatching(
        entries, *request.criteria, [&request] { return std::make_unique<RowBytes>(request); },
        [&](std::string_view made) {
            while (takeRow(made, row)) {
                if (spooled) {
                    if (!(spoolOk = spool.add(row))) return false;
                    continue;
                }
                if (grouped && key.startsGroup(row.value)) {
                    if (open) {
                        table.total(sums);
                        table.close();
                    }
                    groupHeading(page.markup, request, row.heading);
                    table.open();
                    open = true;
                    sums = Sums();
                }
                page.drain();
                page.file().writeRaw(row.bytes.data(), row.bytes.size());
                addRow(row.sums, sums, footer);
                ++rows;
            }
            return page.file().ok();
        });
    if (spooled) return spoolOk && spool.write(page, table, request, footer);
    if (open && (grouped || rows > 0)) table.total(sums);
    if (open) table.close();
    return true;
}

}  // namespace

ReportGenerator::ReportGenerator(EntryTable& table, const ReportLayout& layout, ExportSettings env,
                                 const SYSTEMTIME& today)
    : table_(table), layout_(layout), env_(std::move(env)), today_(today) {}

bool ReportGenerator::generate(const std::string& fileName, const EntryFilter& criteria,
                               std::string* error) {
    ExportFile file(fileName, env_.codePage);
    bool spooled = true;
    if (file.create()) {
        file.writeConverted(kDocType);
        const ReportRequest request{layout_, &criteria, env_, today_};
        PageOut page(file);
        openPage(page.markup, request);
        FooterSums footer;
        spooled = writeTables(page, request, table_, footer);
        addFooter(page.markup, request, footer);
        page.markup.end();  // body
        page.markup.end();  // html
        page.drain();
        if (spooled) file.finish();
    }
    if (error) *error = spooled ? file.error() : "cannot write the temporary file of " + fileName;
    return spooled && file.ok();
}

}  // namespace qb
