// Timewarrior's `timew export` and Watson's frames file: both are one JSON
// array of records. The array is read as a stream, one record at a time,
// so a file of 100,000 intervals never becomes one document in memory.

#include <nlohmann/json.hpp>

#include "import/import_time.h"
#include "import/readers.h"
#include "platform/text.h"

namespace qb {
namespace {

using nlohmann::json;

using RecordVisitor = std::function<bool(std::size_t record, const json& value)>;

// Calls `visit` for each element of the top-level array with its number
// (from 1). `what` names the file for the messages.
ReadStatus forEachRecord(std::string_view bytes, const char* what, const RecordVisitor& visit) {
    std::size_t record = 0;
    bool topIsArray = false;
    bool stopped = false;
    auto callback = [&](int depth, json::parse_event_t event, json& parsed) {
        if (depth == 0 && event == json::parse_event_t::array_start) topIsArray = true;
        if (depth == 0 && (event == json::parse_event_t::object_start)) return false;
        if (depth != 1 || stopped) return true;
        const bool done = event == json::parse_event_t::object_end ||
                          event == json::parse_event_t::array_end ||
                          (event == json::parse_event_t::value && !parsed.is_structured());
        if (!done) return true;
        ++record;
        if (!visit(record, parsed)) stopped = true;
        return false;  // drop the record: it has been handled
    };
    try {
        json top = json::parse(bytes.begin(), bytes.end(), callback);
        if (!topIsArray) {
            return ReadStatus::failure(0, std::string("not ") + what + ": it holds no JSON array");
        }
    } catch (const json::parse_error& e) {
        if (!topIsArray && record == 0) {
            return ReadStatus::failure(0, std::string("not ") + what + ": it is not JSON");
        }
        if (e.byte >= bytes.size()) {
            return ReadStatus::failure(record + 1, "the file ends inside this record (cut short?)");
        }
        return ReadStatus::failure(record + 1, "not valid JSON here");
    } catch (const json::exception&) {
        return ReadStatus::failure(record + 1, "not valid JSON here");
    }
    return {};
}

std::u16string textOf(const json& value) {
    return value.is_string() ? utf8ToUtf16(value.get_ref<const std::string&>()) : std::u16string();
}

const json* member(const json& object, const char* name) {
    auto it = object.find(name);
    return it == object.end() ? nullptr : &*it;
}

// Start, end and duration from two moments; a problem when either fails.
void setSpan(ImportRow& row, const Moment& start, const Moment& end) {
    row.day = start.local;
    row.start = start.local;
    row.seconds = secondsBetween(start, end);
}

std::u16string joined(const std::vector<std::u16string>& words) {
    std::u16string out;
    for (const auto& w : words) {
        if (w.empty()) continue;
        if (!out.empty()) out += u' ';
        out += w;
    }
    return out;
}

bool readTimewInterval(std::size_t record, const json& value, const ImportOptions& options,
                       ImportRow& row) {
    row.line = record;
    if (!value.is_object()) {
        row.problem = "not a Timewarrior interval";
        return false;
    }
    const json* start = member(value, "start");
    const json* end = member(value, "end");
    const json* tags = member(value, "tags");
    const json* annotation = member(value, "annotation");
    std::vector<std::u16string> others;
    std::u16string task;
    std::string identity;
    if (tags && tags->is_array()) {
        for (const json& tag : *tags) {
            if (!tag.is_string()) continue;
            const std::string& t = tag.get_ref<const std::string&>();
            identity += t;
            identity += '\x1f';
            if (t.rfind("client:", 0) == 0) {
                row.client = utf8ToUtf16(t.substr(7));
            } else if (t.rfind("project:", 0) == 0) {
                row.project = utf8ToUtf16(t.substr(8));
            } else if (t.rfind("task:", 0) == 0) {
                task = utf8ToUtf16(t.substr(5));
            } else {
                others.push_back(utf8ToUtf16(t));
            }
        }
    }
    if (annotation) row.note = textOf(*annotation);
    if (task.empty()) {
        // Tags that only repeat the client or the project say nothing of the task.
        const std::u16string& client = row.client.empty() ? options.client : row.client;
        const std::u16string& project = row.project.empty() ? options.project : row.project;
        for (auto& t : others) {
            if (t == client || t == project) t.clear();
        }
        task = joined(others);
    }
    row.task = std::move(task);
    const std::string startText = start && start->is_string() ? start->get<std::string>() : "";
    const std::string endText = end && end->is_string() ? end->get<std::string>() : "";
    row.identity =
        startText + '\x1e' + endText + '\x1e' + identity + '\x1e' + utf16ToUtf8(row.note);
    Moment from, to;
    if (!parseMoment(startText, &from)) {
        row.problem = startText.empty() ? "the interval has no start"
                                        : "cannot read the start '" + startText + "'";
    } else if (endText.empty()) {
        row.problem = "the interval is still open (no end)";
    } else if (!parseMoment(endText, &to)) {
        row.problem = "cannot read the end '" + endText + "'";
    } else {
        setSpan(row, from, to);
    }
    return true;
}

bool unixMoment(const json& value, Moment* out) {
    if (value.is_number_integer()) return momentFromUnix(value.get<std::int64_t>(), out);
    if (value.is_number_float()) {
        // Seconds beyond a 64-bit count (or NaN) name no moment; converting
        // them would be undefined.
        const double seconds = value.get<double>();
        if (!(seconds > -9.2e18 && seconds < 9.2e18)) return false;
        return momentFromUnix(static_cast<std::int64_t>(seconds), out);
    }
    if (value.is_string()) return parseMoment(value.get_ref<const std::string&>(), out);
    return false;
}

std::string dumpOf(const json* value) {
    return value ? value->dump() : std::string();
}

// A frame of Watson's frames file: [start, stop, project, id, tags,
// updated_at], times in Unix seconds; `watson log --json` writes objects
// with the same fields named, times as ISO text.
void readWatsonFrame(std::size_t record, const json& value, ImportRow& row) {
    row.line = record;
    const json* start = nullptr;
    const json* stop = nullptr;
    const json* project = nullptr;
    const json* id = nullptr;
    const json* tags = nullptr;
    if (value.is_array() && value.size() >= 3) {
        start = &value[0];
        stop = &value[1];
        project = &value[2];
        if (value.size() > 3) id = &value[3];
        if (value.size() > 4) tags = &value[4];
    } else if (value.is_object() && member(value, "stop")) {
        start = member(value, "start");
        stop = member(value, "stop");
        project = member(value, "project");
        id = member(value, "id");
        tags = member(value, "tags");
    } else {
        row.problem = "not a Watson frame";
        return;
    }
    row.project = project ? textOf(*project) : std::u16string();
    std::vector<std::u16string> words;
    if (tags && tags->is_array()) {
        for (const json& t : *tags) words.push_back(textOf(t));
    }
    row.task = joined(words);
    if (row.task.empty()) row.task = row.project;
    if (id && id->is_string() && !id->get_ref<const std::string&>().empty()) {
        row.identity = "id:" + id->get<std::string>();
    } else {
        row.identity = dumpOf(start) + '\x1e' + dumpOf(stop) + '\x1e' + dumpOf(project) + '\x1e' +
                       dumpOf(tags);
    }
    Moment from, to;
    if (!start || !unixMoment(*start, &from)) {
        row.problem = "cannot read the frame's start";
    } else if (!stop || !unixMoment(*stop, &to)) {
        row.problem = "cannot read the frame's stop";
    } else {
        setSpan(row, from, to);
    }
}

}  // namespace

ReadStatus readTimewarrior(std::string_view bytes, const ImportOptions& options,
                           const RowSink& sink) {
    ReadStatus status;
    ReadStatus read =
        forEachRecord(bytes, "a `timew export` file", [&](std::size_t n, const json& v) {
            ImportRow row;
            if (!readTimewInterval(n, v, options, row)) {
                status = ReadStatus::failure(n, "not a Timewarrior interval (a JSON object)");
                return false;
            }
            return sink(row);
        });
    return read.ok ? status : read;
}

ReadStatus readWatson(std::string_view bytes, const ImportOptions&, const RowSink& sink) {
    ReadStatus status;
    ReadStatus read =
        forEachRecord(bytes, "a Watson frames file", [&](std::size_t n, const json& v) {
            ImportRow row;
            readWatsonFrame(n, v, row);
            if (row.problem == "not a Watson frame") {
                status =
                    ReadStatus::failure(n, "not a Watson frame (start, stop, project, id, tags)");
                return false;
            }
            return sink(row);
        });
    return read.ok ? status : read;
}

}  // namespace qb
