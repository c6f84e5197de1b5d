#include "import/import_pipeline.h"

#include <unordered_map>
#include <unordered_set>

#include "entry/duration_rule.h"
#include "entry/entry_form.h"
#include "entry/note_text.h"
#include "import/import_origins.h"
#include "import/readers.h"
#include "platform/calendar.h"
#include "platform/data_file.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/entry_save.h"

namespace qb {
namespace {

const std::u16string& orOption(const std::u16string& value, const std::u16string& option) {
    return value.empty() ? option : value;
}

// Notes of this system break lines with CR LF.
std::u16string crLfNote(const std::u16string& note) {
    std::u16string out;
    out.reserve(note.size());
    for (std::size_t i = 0; i < note.size(); ++i) {
        if (note[i] == u'\n' && (i == 0 || note[i - 1] != u'\r')) out += u'\r';
        out += note[i];
    }
    return out;
}

// Names are one line in every list: a line break or tab that another tool
// let into a description becomes a space.
std::u16string oneLine(const std::u16string& text) {
    std::u16string out;
    out.reserve(text.size());
    for (char16_t c : text) {
        const bool control = c < 0x20 || c == 0x7F || (c >= 0x80 && c <= 0x9F);
        if (!control) {
            out += c;
        } else if (!out.empty() && out.back() != u' ') {
            out += u' ';
        }
    }
    while (!out.empty() && out.back() == u' ') out.pop_back();
    return out;
}

// The editor's boxes as a user would fill them from the row: a new entry's
// defaults first, then what the row says, then the options for what it
// leaves empty.
EntryForm formOf(const ImportRow& row, const ImportOptions& options, const TimeEntry& fresh) {
    EntryForm form = formFromEntry(fresh);
    form.day = row.day;
    form.start = row.start;
    form.client = oneLine(orOption(row.client, options.client));
    form.project = oneLine(orOption(row.project, options.project));
    form.task = oneLine(orOption(row.task, options.task));
    if (row.seconds) {
        form.spanSeconds = *row.seconds;
    } else {
        form.duration = row.hours;
    }
    form.billable = row.billable.value_or(options.billable.value_or(fresh.billable));
    if (form.billable) {
        form.rate = orOption(row.rate, options.rate);
        if (form.rate.empty()) form.rate = u"0";
        form.currency = orOption(row.currency, orOption(options.currency, fresh.currency));
        form.fixed = row.fixedRate;
    }
    if (!row.note.empty()) form.notes = noteBytes(crLfNote(row.note));
    return form;
}

std::string hoursText(double hours) {
    return stringPrintf("%.2f", hours);
}

// Checks the row by the editor's rules; on success `entry` is what OK stores.
bool checkRow(const ImportRow& row, const ImportOptions& options, const Settings& settings,
              TimeEntry& entry, std::string* reason) {
    const TimeEntry fresh = prepareEntry(nullptr, settings, row.day);
    const EntryForm form = formOf(row, options, fresh);
    entry = fresh;
    // What a refused row shows of itself.
    setEntryDay(entry, row.day);
    if (row.start) setStartTime(entry, *row.start);
    entry.client = form.client;
    entry.project = form.project;
    entry.task = form.task;
    if (!row.problem.empty()) {
        *reason = row.problem;
        return false;
    }
    if (!row.seconds && row.hours.empty()) {
        *reason = utf16ToUtf8(kDurationBlankMessage);
        return false;
    }
    FormResult result = applyForm(form, settings, entry);
    if (!result.ok) {
        *reason = utf16ToUtf8(result.message);
        if (result.message == kDurationRangeMessage) {
            // Say what the file holds, so the line is easy to find and fix.
            *reason += row.seconds ? " (" + hoursText(*row.seconds / 3600.0) + " hours)"
                                   : " (" + utf16ToUtf8(row.hours) + ")";
        }
        return false;
    }
    return true;
}

// Every text the master data learns from an entry, in one key.
std::u16string masterTexts(const TimeEntry& e) {
    std::u16string key;
    for (const std::u16string* t : {&e.client, &e.project, &e.task, &e.billTo, &e.phase,
                                    &e.currency, &e.custom1, &e.custom2, &e.custom3}) {
        key += *t;
        key += u'\x1f';
    }
    return key;
}

}  // namespace

ImportSummary importFile(ImportFormat format, std::string_view bytes, const ImportOptions& options,
                         ImportTarget& target, bool dryRun, const RowObserver& observe) {
    ImportSummary summary;
    ImportOrigins origins(target.file);
    if (!origins.load()) {
        summary.status = ImportStatus::kFailed;
        return summary;
    }
    if (!dryRun && !target.file.beginBatch()) {
        summary.status = ImportStatus::kFailed;
        return summary;
    }
    bool failed = false;
    // Rows of the same content in one file are different pieces of work:
    // the second is told apart by its number.
    std::unordered_map<std::uint64_t, std::size_t> seen;
    seen.reserve(bytes.size() / 64);  // no record of any format is shorter
    // The master data learns each combination of texts once.
    std::unordered_set<std::u16string> learned;
    RowOutcome out;
    summary.read = readRows(format, bytes, options, [&](ImportRow& row) {
        std::uint64_t key = originKey(format, row.identity);
        if (std::size_t n = ++seen[key]; n > 1) {
            key = originKey(format, row.identity + '\x1d' + std::to_string(n));
        }
        out.line = row.line;
        out.reason.clear();
        if (origins.contains(key)) {
            ++summary.already;
            out.fate = RowFate::kKnown;
            // Only a preview shows the rows it leaves alone.
            if (dryRun) {
                checkRow(row, options, target.settings, out.entry, &out.reason);
                out.reason.clear();
            }
            if (observe) observe(out);
            return true;
        }
        if (!checkRow(row, options, target.settings, out.entry, &out.reason)) {
            ++summary.refused;
            out.fate = RowFate::kRefused;
            if (observe) observe(out);
            return true;
        }
        // After a refusal the rest is still checked, but no longer written.
        if (!dryRun && summary.refused == 0) {
            const bool learn = learned.insert(masterTexts(out.entry)).second;
            if (saveEditedEntry(target.file, target.entries, target.masters, out.entry, learn) !=
                    EntrySave::kSaved ||
                !origins.remember(key, out.entry.recordOid)) {
                failed = true;
                return false;
            }
        }
        ++summary.imported;
        out.fate = RowFate::kAdded;
        if (observe) observe(out);
        return true;
    });
    if (!summary.read.ok) {
        summary.status = ImportStatus::kUnreadable;
        ++summary.refused;  // the record the file could not go past
    } else if (failed) {
        summary.status = ImportStatus::kFailed;
    } else if (summary.refused > 0) {
        summary.status = ImportStatus::kRefused;
    }
    if (summary.status != ImportStatus::kDone) summary.imported = 0;
    if (!dryRun) {
        if (summary.status == ImportStatus::kDone) {
            if (!target.file.commitBatch()) {
                summary.status = ImportStatus::kFailed;
                summary.imported = 0;
            }
        } else {
            target.file.rollbackBatch();
        }
    }
    return summary;
}

std::string summaryLine(const ImportSummary& summary) {
    return stringPrintf("imported %zu, already imported %zu, refused %zu", summary.imported,
                        summary.already, summary.refused);
}

}  // namespace qb
