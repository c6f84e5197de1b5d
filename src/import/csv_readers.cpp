// The CSV and TSV exports: Toggl Track's and Clockify's detailed reports,
// Kimai's export, Harvest's time report and Hamster's TSV. Columns are found
// by their header names, so exports with extra or reordered columns read
// the same.

#include <cmath>
#include <cstdio>

#include "import/csv_reader.h"
#include "import/import_time.h"
#include "import/readers.h"
#include "platform/text.h"

namespace qb {
namespace {

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
        s.remove_suffix(1);
    return s;
}

// One record with its header.
class Record {
  public:
    Record(const std::vector<std::string>& fields) : fields_(fields) {}
    std::string_view at(int column) const {
        if (column < 0 || static_cast<std::size_t>(column) >= fields_.size()) return {};
        return trimmed(fields_[static_cast<std::size_t>(column)]);
    }
    std::u16string text(int column) const { return utf8ToUtf16(at(column)); }

  private:
    const std::vector<std::string>& fields_;
};

using RecordVisitor = std::function<bool(const Record&, ImportRow&)>;

// Reads the header, checks that it names every required column, then hands
// each record over. `what` names the format for the messages.
ReadStatus forEachRecord(std::string_view bytes, char delimiter, const char* what,
                         std::vector<std::string>* header,
                         std::initializer_list<std::initializer_list<std::string_view>> required,
                         const std::function<void(const std::vector<std::string>&)>& onHeader,
                         const RecordVisitor& visit) {
    CsvReader reader(bytes, delimiter);
    std::size_t line = 0;
    if (!reader.next(header, &line))
        return ReadStatus::failure(0, std::string("not ") + what + ": the file is empty");
    for (const auto& names : required) {
        if (columnOf(*header, names) < 0) {
            return ReadStatus::failure(line, std::string("not ") + what + ": no column '" +
                                                 std::string(*names.begin()) + "'");
        }
    }
    onHeader(*header);
    std::vector<std::string> fields;
    while (reader.next(&fields, &line)) {
        if (reader.unterminated()) {
            return ReadStatus::failure(line, "the file ends inside a quoted field (cut short?)");
        }
        if (fields.size() == 1 && trimmed(fields[0]).empty()) continue;
        ImportRow row;
        row.line = line;
        for (const auto& f : fields) {
            row.identity += trimmed(f);
            row.identity += '\x1f';
        }
        if (fields.size() < header->size()) {
            row.problem = "the line has " + std::to_string(fields.size()) +
                          " fields where the header has " + std::to_string(header->size()) +
                          " (cut short?)";
        }
        if (!visit(Record(fields), row)) return {};
    }
    return {};
}

// "Yes"/"No" and their relatives; none for anything else.
std::optional<bool> yesNo(std::string_view text) {
    if (text == "Yes" || text == "yes" || text == "YES" || text == "true" || text == "1")
        return true;
    if (text == "No" || text == "no" || text == "NO" || text == "false" || text == "0")
        return false;
    return std::nullopt;
}

// A money amount as the exports write it ("1,234.50", "95,00", "$95.00") as
// a plain decimal number text; empty when it holds none.
std::string plainAmount(std::string_view text) {
    std::string digits;
    for (char c : text) {
        if ((c >= '0' && c <= '9') || c == '.' || c == ',' || c == '-') digits.push_back(c);
    }
    const std::size_t comma = digits.rfind(',');
    const std::size_t point = digits.rfind('.');
    std::string out;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const char c = digits[i];
        if (c == ',') {
            // A comma after the last point (or with no point) is the decimal one.
            if (comma == i && (point == std::string::npos || point < comma)) out.push_back('.');
        } else if (c == '.') {
            if (point == i && (comma == std::string::npos || comma < point)) out.push_back('.');
        } else {
            out.push_back(c);
        }
    }
    return out.find_first_of("0123456789") == std::string::npos ? std::string() : out;
}

// The currency in a header such as "Amount (USD)".
std::u16string currencyInHeader(std::string_view header) {
    const std::size_t open = header.find('(');
    const std::size_t close = header.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close <= open + 1)
        return {};
    return utf8ToUtf16(trimmed(header.substr(open + 1, close - open - 1)));
}

int columnStarting(const std::vector<std::string>& header, std::string_view prefix) {
    for (std::size_t i = 0; i < header.size(); ++i) {
        std::string_view h = trimmed(header[i]);
        if (h.size() >= prefix.size()) {
            bool same = true;
            for (std::size_t k = 0; k < prefix.size() && same; ++k) {
                same = std::tolower(static_cast<unsigned char>(h[k])) ==
                       std::tolower(static_cast<unsigned char>(prefix[k]));
            }
            if (same) return static_cast<int>(i);
        }
    }
    return -1;
}

// A duration column: H:MM[:SS] as seconds, else decimal hours as text.
void setDuration(std::string_view text, ImportRow& row, const char* column) {
    if (text.empty()) return;
    std::int64_t seconds = 0;
    if (text.find(':') != std::string_view::npos) {
        if (parseClockDuration(text, &seconds)) {
            row.seconds = seconds;
        } else if (row.problem.empty()) {
            row.problem = std::string("cannot read the ") + column + " '" + std::string(text) + "'";
        }
        return;
    }
    const std::string number = plainAmount(text);
    if (number.empty()) {
        if (row.problem.empty())
            row.problem = std::string("cannot read the ") + column + " '" + std::string(text) + "'";
        return;
    }
    row.hours = utf8ToUtf16(number);
}

// The start and the end from a date column and a time column each; an end
// without its own date is on the start's day, or the next when it is
// earlier (work over midnight).
struct TimeColumns {
    int startDate = -1, startTime = -1, endDate = -1, endTime = -1;
};

void setTimes(const Record& r, const TimeColumns& c, ImportRow& row) {
    if (!row.problem.empty()) return;
    const std::string_view sd = r.at(c.startDate);
    const std::string_view st = r.at(c.startTime);
    Moment start;
    SYSTEMTIME day{};
    // Some exports write the whole moment into the time column.
    if (!st.empty() && parseMoment(st, &start)) {
        day = start.local;
    } else {
        if (!parseDay(sd, &day)) {
            row.problem = sd.empty() ? "the date is missing"
                                     : "impossible or unreadable date '" + std::string(sd) + "'";
            return;
        }
        row.day = day;
        if (st.empty()) return;  // a day without a start time
        SYSTEMTIME time{};
        if (!parseTimeOfDay(st, &time) || !combine(day, time, &start)) {
            row.problem = "cannot read the start time '" + std::string(st) + "'";
            return;
        }
    }
    row.day = start.local;
    row.start = start.local;
    const std::string_view ed = r.at(c.endDate);
    const std::string_view et = r.at(c.endTime);
    if (et.empty()) return;
    Moment end;
    if (parseMoment(et, &end)) {
        row.seconds = secondsBetween(start, end);
        return;
    }
    SYSTEMTIME endDay = day;
    if (!ed.empty() && !parseDay(ed, &endDay)) {
        row.problem = "impossible or unreadable end date '" + std::string(ed) + "'";
        return;
    }
    SYSTEMTIME time{};
    if (!parseTimeOfDay(et, &time) || !combine(endDay, time, &end)) {
        row.problem = "cannot read the end time '" + std::string(et) + "'";
        return;
    }
    std::int64_t span = secondsBetween(start, end);
    if (span < 0 && ed.empty()) span += 24 * 3600;
    row.seconds = span;
}

std::u16string joinedNote(std::u16string first, const std::u16string& second) {
    if (second.empty()) return first;
    if (!first.empty()) first += u"\r\n";
    return first + second;
}

std::u16string rateText(double amount, double hours) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.2f", amount / hours);
    return utf8ToUtf16(buffer);
}

}  // namespace

ReadStatus readToggl(std::string_view bytes, const ImportOptions&, const RowSink& sink) {
    std::vector<std::string> header;
    int client = -1, project = -1, task = -1, description = -1, billable = -1, duration = -1,
        tags = -1, amount = -1;
    TimeColumns times;
    std::u16string currency;
    return forEachRecord(
        bytes, 0, "a Toggl Track detailed CSV export", &header,
        {{"Start date"}, {"Start time"}, {"Description"}, {"Duration"}},
        [&](const std::vector<std::string>& h) {
            client = columnOf(h, {"Client"});
            project = columnOf(h, {"Project"});
            task = columnOf(h, {"Task"});
            description = columnOf(h, {"Description"});
            billable = columnOf(h, {"Billable"});
            duration = columnOf(h, {"Duration"});
            tags = columnOf(h, {"Tags"});
            amount = columnStarting(h, "Amount (");
            if (amount >= 0) currency = currencyInHeader(h[static_cast<std::size_t>(amount)]);
            times = {columnOf(h, {"Start date"}), columnOf(h, {"Start time"}),
                     columnOf(h, {"End date", "Stop date"}),
                     columnOf(h, {"End time", "Stop time"})};
        },
        [&](const Record& r, ImportRow& row) {
            row.client = r.text(client);
            row.project = r.text(project);
            const std::u16string taskText = r.text(task);
            const std::u16string descriptionText = r.text(description);
            row.task = taskText.empty() ? descriptionText : taskText;
            row.note =
                joinedNote(taskText.empty() ? std::u16string() : descriptionText, r.text(tags));
            row.billable = yesNo(r.at(billable));
            setTimes(r, times, row);
            if (!row.seconds) setDuration(r.at(duration), row, "duration");
            const std::string money = plainAmount(r.at(amount));
            if (!money.empty() && row.seconds && *row.seconds > 0) {
                row.rate = rateText(std::strtod(money.c_str(), nullptr), *row.seconds / 3600.0);
                row.currency = currency;
            }
            return sink(row);
        });
}

ReadStatus readClockify(std::string_view bytes, const ImportOptions&, const RowSink& sink) {
    std::vector<std::string> header;
    int client = -1, project = -1, task = -1, description = -1, billable = -1, clock = -1,
        decimal = -1, tags = -1, rate = -1;
    TimeColumns times;
    std::u16string currency;
    return forEachRecord(
        bytes, 0, "a Clockify detailed CSV export", &header,
        {{"Start Date"}, {"Start Time"}, {"Description"}, {"Duration (h)", "Duration (decimal)"}},
        [&](const std::vector<std::string>& h) {
            client = columnOf(h, {"Client"});
            project = columnOf(h, {"Project"});
            task = columnOf(h, {"Task"});
            description = columnOf(h, {"Description"});
            billable = columnOf(h, {"Billable"});
            clock = columnOf(h, {"Duration (h)"});
            decimal = columnOf(h, {"Duration (decimal)"});
            tags = columnOf(h, {"Tags"});
            rate = columnStarting(h, "Billable Rate (");
            if (rate >= 0) currency = currencyInHeader(h[static_cast<std::size_t>(rate)]);
            times = {columnOf(h, {"Start Date"}), columnOf(h, {"Start Time"}),
                     columnOf(h, {"End Date"}), columnOf(h, {"End Time"})};
        },
        [&](const Record& r, ImportRow& row) {
            row.client = r.text(client);
            row.project = r.text(project);
            const std::u16string taskText = r.text(task);
            const std::u16string descriptionText = r.text(description);
            row.task = taskText.empty() ? descriptionText : taskText;
            row.note =
                joinedNote(taskText.empty() ? std::u16string() : descriptionText, r.text(tags));
            row.billable = yesNo(r.at(billable));
            setTimes(r, times, row);
            if (!row.seconds) setDuration(r.at(clock), row, "duration");
            if (!row.seconds && row.hours.empty()) setDuration(r.at(decimal), row, "duration");
            const std::string money = plainAmount(r.at(rate));
            if (!money.empty()) {
                row.rate = utf8ToUtf16(money);
                row.currency = currency;
            }
            return sink(row);
        });
}

ReadStatus readKimai(std::string_view bytes, const ImportOptions&, const RowSink& sink) {
    std::vector<std::string> header;
    int customer = -1, project = -1, activity = -1, description = -1, duration = -1, hourly = -1,
        fixed = -1, currencyColumn = -1;
    TimeColumns times;
    return forEachRecord(
        bytes, 0, "a Kimai CSV export", &header, {{"Date"}, {"Customer"}, {"Activity"}},
        [&](const std::vector<std::string>& h) {
            customer = columnOf(h, {"Customer"});
            project = columnOf(h, {"Project"});
            activity = columnOf(h, {"Activity"});
            description = columnOf(h, {"Description"});
            duration = columnOf(h, {"Duration"});
            hourly = columnOf(h, {"Hourly rate", "Hourly price"});
            fixed = columnOf(h, {"Fixed rate", "Fixed price"});
            currencyColumn = columnOf(h, {"Currency"});
            times = {columnOf(h, {"Date"}), columnOf(h, {"From", "Begin"}), -1,
                     columnOf(h, {"To", "End"})};
        },
        [&](const Record& r, ImportRow& row) {
            row.client = r.text(customer);
            row.project = r.text(project);
            row.task = r.text(activity);
            row.note = r.text(description);
            setTimes(r, times, row);
            if (!row.seconds) setDuration(r.at(duration), row, "duration");
            const std::string fixedAmount = plainAmount(r.at(fixed));
            const std::string hourlyAmount = plainAmount(r.at(hourly));
            if (!fixedAmount.empty()) {
                row.billable = true;
                row.fixedRate = true;
                row.rate = utf8ToUtf16(fixedAmount);
            } else if (!hourlyAmount.empty()) {
                row.billable = true;
                row.rate = utf8ToUtf16(hourlyAmount);
            }
            row.currency = r.text(currencyColumn);
            return sink(row);
        });
}

ReadStatus readHarvest(std::string_view bytes, const ImportOptions&, const RowSink& sink) {
    std::vector<std::string> header;
    int client = -1, project = -1, task = -1, notes = -1, hours = -1;
    TimeColumns times;
    return forEachRecord(
        bytes, 0, "a Harvest time CSV", &header, {{"Date"}, {"Client"}, {"Task"}, {"Hours"}},
        [&](const std::vector<std::string>& h) {
            client = columnOf(h, {"Client"});
            project = columnOf(h, {"Project"});
            task = columnOf(h, {"Task"});
            notes = columnOf(h, {"Notes"});
            hours = columnOf(h, {"Hours"});
            times = {columnOf(h, {"Date"}), columnOf(h, {"Started At", "Start Time"}), -1,
                     columnOf(h, {"Ended At", "End Time"})};
        },
        [&](const Record& r, ImportRow& row) {
            row.client = r.text(client);
            row.project = r.text(project);
            row.task = r.text(task);
            row.note = r.text(notes);
            setTimes(r, times, row);
            // The hours are what Harvest bills, whatever the clock times say.
            row.seconds.reset();
            setDuration(r.at(hours), row, "hours");
            if (row.problem.empty() && !row.seconds && row.hours.empty())
                row.problem = "the hours are missing";
            return sink(row);
        });
}

ReadStatus readHamster(std::string_view bytes, const ImportOptions&, const RowSink& sink) {
    std::vector<std::string> header;
    int activity = -1, category = -1, description = -1, tags = -1, minutes = -1;
    TimeColumns times;
    return forEachRecord(
        bytes, '\t', "a Hamster TSV export", &header, {{"activity"}, {"start time"}},
        [&](const std::vector<std::string>& h) {
            activity = columnOf(h, {"activity"});
            category = columnOf(h, {"category"});
            description = columnOf(h, {"description"});
            tags = columnOf(h, {"tags"});
            minutes = columnOf(h, {"duration minutes"});
            times = {-1, columnOf(h, {"start time"}), -1, columnOf(h, {"end time"})};
        },
        [&](const Record& r, ImportRow& row) {
            row.client = r.text(category);
            row.task = r.text(activity);
            row.note = joinedNote(r.text(description), r.text(tags));
            setTimes(r, times, row);
            if (row.problem.empty() && !row.start)
                row.problem =
                    "cannot read the start time '" + std::string(r.at(times.startTime)) + "'";
            if (!row.seconds && row.problem.empty()) {
                const std::string m = plainAmount(r.at(minutes));
                if (m.empty()) {
                    row.problem = "the end time and the duration are missing";
                } else {
                    row.seconds = static_cast<std::int64_t>(
                        std::llround(std::strtod(m.c_str(), nullptr) * 60));
                }
            }
            return sink(row);
        });
}

}  // namespace qb
